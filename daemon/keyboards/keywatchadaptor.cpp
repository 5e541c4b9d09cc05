// SPDX-License-Identifier: MIT
#include "daemon/keyboards/keywatchadaptor.h"

#include "base/keywatchkeys.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// The file name of the program and the number of its process.
QString programOf(uint processId)
{
    const QString executable = QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(processId));
    const QString name = executable.isEmpty() ? u"?"_s : QFileInfo(executable).fileName();
    return u"%1 (%2)"_s.arg(name).arg(processId);
}

QDBusMessage errorOf(const QDBusMessage &call, KeyWatch::Refusal refusal)
{
    switch (refusal) {
    case KeyWatch::Refusal::busy:
        return call.createErrorReply(KeyWatchKeys::busyError,
                                     u"Another program is watching the keys, or asks for it. Try again later."_s);
    case KeyWatch::Refusal::noService:
        return call.createErrorReply(
            KeyWatchKeys::noQuestionError,
            u"The desktop must ask you first, but no notification service answers in this session."_s);
    case KeyWatch::Refusal::noButtons:
        return call.createErrorReply(KeyWatchKeys::noQuestionError,
                                     u"The desktop must ask you first, but its notifications have no buttons."_s);
    case KeyWatch::Refusal::refused:
        return call.createErrorReply(KeyWatchKeys::refusedError,
                                     u"The question of the desktop was answered with no, or dismissed."_s);
    case KeyWatch::Refusal::unanswered:
        return call.createErrorReply(
            KeyWatchKeys::refusedError,
            u"The question of the desktop was not answered within %1 seconds."_s.arg(KeyWatch::answerLimit.count()));
    case KeyWatch::Refusal::failed: break;
    }
    return call.createErrorReply(QDBusError::Failed, u"The system has no pipe left."_s);
}

} // namespace

KeyWatchObject::KeyWatchObject(KeyWatch &watch, QObject *parent) : QObject(parent)
{
    new KeyWatchAdaptor(watch, this);
}

bool KeyWatchObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(KeyWatchKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

KeyWatchAdaptor::KeyWatchAdaptor(KeyWatch &watch, KeyWatchObject *object)
    : QDBusAbstractAdaptor(object), mWatch(watch), mObject(object)
{
}

QDBusUnixFileDescriptor KeyWatchAdaptor::Start()
{
    mObject->setDelayedReply(true);
    const QDBusMessage call = mObject->message();
    QDBusConnection bus = mObject->connection();
    const auto answer = [call, bus](const Result<int, KeyWatch::Refusal> &readingEnd) mutable {
        if (!readingEnd) {
            bus.send(errorOf(call, readingEnd.error()));
            return;
        }
        QDBusUnixFileDescriptor descriptor;
        descriptor.giveFileDescriptor(*readingEnd);
        bus.send(call.createReply(QVariant::fromValue(descriptor)));
    };
    const QDBusMessage question = [&call] {
        QDBusMessage message =
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                           u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
        message.setArguments({call.service()});
        return message;
    }();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, call, answer] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> processId = *watcher;
        if (!processId.isError()) // otherwise the caller has left the bus
            mWatch.start(call.service(), programOf(processId.value()), answer);
    });
    return {};
}
