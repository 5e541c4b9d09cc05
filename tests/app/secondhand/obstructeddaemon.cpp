// SPDX-License-Identifier: MIT
#include "tests/app/secondhand/obstructeddaemon.h"

#include "base/qlcoreutility.h"
#include "base/status.h"
#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/deadlinetimer.h"
#include "daemonlink/daemontransport.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

/// The parts of a serving daemon, without hardware and without a desktop.
struct ObstructedDaemon::Parts
{
    Parts(const ObstructedDaemon &owner, const QDBusConnection &bus, const QVariantMap &document)
        : store(owner.mFolder.path()), isOpen(store.open()), notifications(bus),
          daemon(store, keyboard, services(owner), document), keyboardObject(keyboard)
    {
        QObject::connect(&timer, &DeadlineTimer::reached, &daemon, &DeviceDaemon::wake);
    }

    [[nodiscard]] DaemonServices services(const ObstructedDaemon &owner)
    {
        return {.sendReply = [&owner](const QString &client, qint32 number,
                                      const QVariantMap &reply) { owner.sendReply(client, number, reply); },
                .postNotification = [this](const QString &name,
                                           const QVariantMap &info) { notifications.post(name, info); },
                .watchClient = [](const QString &) {},
                .launchProgram = [](const QString &) {},
                .now = DeadlineTimer::now,
                .wakeAt = [this](std::optional<DeadlineTimer::Time> time) { timer.setDeadline(time); }};
    }

    SettingsStore store;
    bool isOpen;
    VirtualKeyboard keyboard;
    DeadlineTimer timer;
    DistributedNotificationCenter notifications;
    DeviceDaemon daemon;
    VirtualKeyboardObject keyboardObject;
    std::unique_ptr<LocalMessagePort> port;
};

ObstructedDaemon::ObstructedDaemon(const QVariantMap &document)
    : mConnectionName(u"obstructed-daemon-%1"_s.arg(quintptr(this)))
{
    mThread.run([&] {
        const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, mConnectionName);
        mParts = std::make_unique<Parts>(*this, bus, SettingsDocument::completed(document));
        const auto take = [this](qint32 number, const std::optional<QByteArray> &data) {
            return receive(number, data);
        };
        mParts->port = LocalMessagePort::create(DaemonProtocol::requestPortName, take, bus);
        if (!mParts->isOpen || !mParts->keyboardObject.registerOn(bus) || !mParts->port)
            qFatal("the daemon of the test cannot serve");
    });
}

ObstructedDaemon::~ObstructedDaemon()
{
    mThread.run([this] {
        mParts->daemon.shutDown();
        mParts.reset();
        QDBusConnection::disconnectFromBus(mConnectionName);
    });
    setReplyPollInterval(replyPollInterval);
}

void ObstructedDaemon::setObstructed(const std::optional<ObstructedCommand> &command)
{
    const std::scoped_lock lock(mMutex);
    mObstructed = command;
}

bool ObstructedDaemon::hasObstructed() const
{
    const std::scoped_lock lock(mMutex);
    return mHasObstructed;
}

std::optional<QByteArray> ObstructedDaemon::receive(qint32 number, const std::optional<QByteArray> &data)
{
    const QVariantMap request = QlCoreUtility::convertDataToDictionary(data).value_or(QVariantMap());
    const bool isOfConfigurator =
        request.value(DaemonProtocol::responsePortName).toString() == DaemonProtocol::configuratorReplyPortName;
    std::optional<Obstruction> obstruction;
    {
        const std::scoped_lock lock(mMutex);
        if (isOfConfigurator && mObstructed && int(mObstructed->command) == number) {
            obstruction = mObstructed->obstruction;
            mHasObstructed = true;
        }
    }
    if (isOfConfigurator)
        setReplyPollInterval(obstruction == Obstruction::unanswered ? std::chrono::microseconds(0) : replyPollInterval);
    // Like the daemon's process, it answers a message before it handles it.
    QMetaObject::invokeMethod(
        &mParts->daemon,
        [this, number, data, obstruction] {
            if (!obstruction)
                mParts->daemon.handleMessage(number, data);
            else if (obstruction != Obstruction::unanswered)
                refuse(number, *obstruction);
        },
        Qt::QueuedConnection);
    return {};
}

void ObstructedDaemon::refuse(qint32 number, Obstruction obstruction)
{
    QVariantMap reply{{DaemonProtocol::returnStatus, int(Status::notSaved)}};
    if (obstruction == Obstruction::refusedWithDocument)
        reply.insert(DaemonProtocol::returnDictionary, mParts->daemon.document());
    sendReply(DaemonProtocol::configuratorReplyPortName, number, reply);
}

void ObstructedDaemon::sendReply(const QString &port, qint32 number, const QVariantMap &reply) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(port), u"/MessagePort"_s,
                                                          u"org.quillkestra.MessagePort"_s, u"SendRequest"_s);
    message << number << QlCoreUtility::convertDictionaryToData(reply).value_or(QByteArray());
    QDBusConnection(mConnectionName).call(message, QDBus::NoBlock);
}
