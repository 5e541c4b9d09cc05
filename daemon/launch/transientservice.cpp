// SPDX-License-Identifier: MIT
#include "daemon/launch/transientservice.h"

#include "daemon/system/usermanager.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QUuid>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

// Structures of the manager's StartTransientUnit, org.freedesktop.systemd1(5). The namespace has a name, because the
// functions that write them are found by their types.
namespace TransientService {

struct Property // (sv)
{
    QString name;
    QDBusVariant value;
};

struct Command // (sasas)
{
    QString program;
    QStringList arguments; // the program's name first
    QStringList flags;
};

struct Auxiliary // (sa(sv)), of which there are none
{
    QString name;
    QList<Property> properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Property &property)
{
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Property &property)
{
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const Command &command)
{
    argument.beginStructure();
    argument << command.program << command.arguments << command.flags;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Command &command)
{
    argument.beginStructure();
    argument >> command.program >> command.arguments >> command.flags;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const Auxiliary &auxiliary)
{
    argument.beginStructure();
    argument << auxiliary.name << auxiliary.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Auxiliary &auxiliary)
{
    argument.beginStructure();
    argument >> auxiliary.name >> auxiliary.properties;
    argument.endStructure();
    return argument;
}

} // namespace TransientService

Q_DECLARE_METATYPE(TransientService::Property)
Q_DECLARE_METATYPE(TransientService::Command)
Q_DECLARE_METATYPE(TransientService::Auxiliary)

namespace {

using TransientService::Auxiliary;
using TransientService::Command;
using TransientService::Property;

void registerShapes()
{
    qDBusRegisterMetaType<Property>();
    qDBusRegisterMetaType<QList<Property>>();
    qDBusRegisterMetaType<Command>();
    qDBusRegisterMetaType<QList<Command>>();
    qDBusRegisterMetaType<Auxiliary>();
    qDBusRegisterMetaType<QList<Auxiliary>>();
}

QList<Property> propertiesOf(const QStringList &command, const QString &workingDirectory)
{
    const auto property = [](QLatin1StringView name, const QVariant &value) {
        return Property{.name = name, .value = QDBusVariant(value)};
    };
    const QString program = command.constFirst();
    // Literally: "$HOME" in an argument is not a variable.
    const QList<Command> start{{.program = program, .arguments = command, .flags = {u"no-env-expand"_s}}};
    return {property("Description"_L1, u"%1, started by a key"_s.arg(program)),
            property("Type"_L1, u"exec"_s),
            property("ExecStartEx"_L1, QVariant::fromValue(start)),
            property("WorkingDirectory"_L1, workingDirectory),
            property("StandardInput"_L1, u"null"_s),
            property("StandardOutput"_L1, u"null"_s),
            property("StandardError"_L1, u"null"_s),
            property("Slice"_L1, u"app.slice"_s),
            property("ExitType"_L1, u"cgroup"_s), // a program may continue in a process that it has started
            property("CollectMode"_L1, u"inactive-or-failed"_s)};
}

} // namespace

bool TransientService::isNeeded()
{
    return ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1;
}

void TransientService::start(const QDBusConnection &bus, const QStringList &command, const QString &workingDirectory,
                             QObject *context, const std::function<void(const QString &reason)> &failed)
{
    registerShapes();
    const QString unit = u"app-quillkestra-%1.service"_s.arg(QUuid::createUuid().toString(QUuid::Id128));
    QDBusMessage message = QDBusMessage::createMethodCall(UserManager::service, UserManager::path,
                                                          UserManager::interface, u"StartTransientUnit"_s);
    message.setArguments({unit, u"fail"_s, QVariant::fromValue(propertiesOf(command, workingDirectory)),
                          QVariant::fromValue(QList<Auxiliary>())});
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [failed](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        if (finished->isError())
            failed(finished->error().message());
    });
}
