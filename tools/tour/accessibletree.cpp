// SPDX-License-Identifier: MIT
#include "tools/tour/accessibletree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible"_L1;
constexpr auto componentInterface = "org.a11y.atspi.Component"_L1;
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties"_L1;
constexpr auto textInterface = "org.a11y.atspi.Text"_L1;
constexpr int callLimitMs = 2000;
constexpr int maximumDepth = 40;
constexpr uint screenCoordinates = 0;

struct StateBit
{
    int bit; ///< AtspiStateType
    QLatin1StringView name;
};
constexpr StateBit stateBits[] = {{4, "checked"_L1},   {8, "enabled"_L1},  {12, "focused"_L1},
                                  {23, "selected"_L1}, {25, "showing"_L1}, {24, "sensitive"_L1}};

QStringList stateNames(const QDBusArgument &words)
{
    QList<uint> bits;
    words >> bits;
    QStringList names;
    for (const StateBit &state : stateBits) {
        const qsizetype word = state.bit / 32;
        if (word < bits.size() && (bits.at(word) >> (state.bit % 32) & 1U))
            names.append(state.name);
    }
    return names;
}

QRect rectangle(const QDBusArgument &argument)
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return {x, y, width, height};
}

} // namespace

AccessibleTree::AccessibleTree(const QDBusConnection &connection, uint pid) : mConnection(connection)
{
    const QDBusConnectionInterface *bus = mConnection.interface();
    if (!bus)
        return;
    const QStringList services = bus->registeredServiceNames();
    for (const QString &service : services) {
        if (!service.startsWith(u':') || bus->servicePid(service) != pid)
            continue;
        mService = service;
        if (!childPaths(u"/org/a11y/atspi/accessible/root"_s).isEmpty())
            return;
    }
    mService.clear();
}

QVariant AccessibleTree::call(const QString &path, QLatin1StringView interface, QLatin1StringView method,
                              const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(mService, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = mConnection.call(message, QDBus::Block, callLimitMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().first();
}

QStringList AccessibleTree::childPaths(const QString &path) const
{
    QStringList paths;
    const QVariant children = call(path, accessibleInterface, "GetChildren"_L1, {});
    if (children.metaType() != QMetaType::fromType<QDBusArgument>())
        return paths;
    const auto argument = children.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString service;
        QDBusObjectPath child;
        argument.beginStructure();
        argument >> service >> child;
        argument.endStructure();
        paths.append(child.path());
    }
    argument.endArray();
    return paths;
}

AccessibleControl AccessibleTree::control(const QString &path) const
{
    const auto property = [&](QLatin1StringView name) {
        const QVariant value = call(path, propertiesInterface, "Get"_L1, {QString(accessibleInterface), QString(name)});
        return value.value<QDBusVariant>().variant().toString();
    };
    AccessibleControl result{.name = property("Name"_L1),
                             .description = property("Description"_L1),
                             .value = {},
                             .role = call(path, accessibleInterface, "GetRoleName"_L1, {}).toString(),
                             .states = {},
                             .screenRect = {}};
    const QVariant states = call(path, accessibleInterface, "GetState"_L1, {});
    if (states.metaType() == QMetaType::fromType<QDBusArgument>())
        result.states = stateNames(states.value<QDBusArgument>());
    if (result.role == "combo box"_L1)
        result.value = call(path, textInterface, "GetText"_L1, {0, -1}).toString();
    const QVariant extents = call(path, componentInterface, "GetExtents"_L1, {screenCoordinates});
    if (extents.metaType() == QMetaType::fromType<QDBusArgument>())
        result.screenRect = rectangle(extents.value<QDBusArgument>());
    return result;
}

void AccessibleTree::collect(const QString &path, int depth, QList<AccessibleControl> &controls) const
{
    if (depth > maximumDepth)
        return;
    const AccessibleControl here = control(path);
    if (here.states.contains("showing"_L1))
        controls.append(here);
    const QStringList paths = childPaths(path);
    for (const QString &child : paths)
        collect(child, depth + 1, controls);
}

QList<AccessibleControl> AccessibleTree::showingControls() const
{
    QList<AccessibleControl> controls;
    if (isPresent())
        collect(u"/org/a11y/atspi/accessible/root"_s, 0, controls);
    return controls;
}
