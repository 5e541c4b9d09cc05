// SPDX-License-Identifier: MIT
#include "daemon/requestport.h"

#include "base/daemonprotocol.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/system/continuesignal.h"
#include "platform/messageport.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>

#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Receives the messages. Lives on the port's thread.
class RequestReceiver : public QObject
{
public:
    RequestReceiver(QDBusConnection bus, const RequestPort::Take &take, const RequestPort::Clock &clock)
        : mBus(std::move(bus)), mTake(take), mClock(clock)
    {
        connect(&mContinueSignal, &ContinueSignal::received, this, [this] { noticeStandstill(); });
        mTicking.setInterval(mClock.tick);
        connect(&mTicking, &QTimer::timeout, this, [this] { tick(); });
    }

    /// Returns the answer to the sender.
    std::optional<QByteArray> receive(const QString &sender, qint32 number, const std::optional<QByteArray> &data)
    {
        noticeStandstill();
        mLastMessage = mClock.now();
        mLastSignOfLife = mLastMessage;
        if (!mTicking.isActive())
            mTicking.start();
        const RequestMessage message{
            .number = number, .data = data, .readAt = mUnanswered == 0 ? std::optional(mLastMessage) : std::nullopt};
        const Status status = mTake(sender, message);
        if (status == Status::ok)
            return {};
        std::optional<QByteArray> reply =
            PropertyList::writeBinary(QVariantMap{{DaemonProtocol::returnStatus, static_cast<int>(status)}});
        if (reply)
            replyToRefused(message, *reply);
        return reply;
    }

private:
    static void replyToRefused(const RequestMessage &message, const QByteArray &reply)
    {
        const bool isAwaited = message.readAt.has_value();
        if (!isAwaited || !message.data || message.data->size() > RequestPort::maximumRefusedBytes)
            return;
        const std::optional<QVariantMap> request = QlCoreUtility::convertDataToDictionary(message.data);
        if (const std::optional<QString> port = request ? replyPortOf(*request) : std::nullopt)
            RemoteMessagePort::unchecked(*port).post(message.number, reply);
    }

    void tick()
    {
        noticeStandstill();
        mLastSignOfLife = mClock.now();
        if (*mLastSignOfLife - mLastMessage < tickingTime)
            return;
        mTicking.stop();
        mLastSignOfLife.reset();
    }

    void noticeStandstill()
    {
        const bool hasContinued = mContinueSignal.take();
        if (hasContinued || (mLastSignOfLife && mClock.now() - *mLastSignOfLife > RequestPort::standstill))
            catchUp();
    }

    /// Calls the bus: all messages that arrive before its answer waited during the standstill.
    void catchUp()
    {
        ++mUnanswered;
        const QDBusMessage question = QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s);
        auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(question), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            --mUnanswered;
            watcher->deleteLater();
        });
    }

    static constexpr auto tickingTime = 20s;

    QDBusConnection mBus;
    const RequestPort::Take &mTake;
    const RequestPort::Clock &mClock;
    ContinueSignal mContinueSignal;
    QTimer mTicking;
    std::chrono::microseconds mLastMessage{};
    std::optional<std::chrono::microseconds> mLastSignOfLife; // absent while there are no ticks
    int mUnanswered = 0;                                      // calls to the bus
};

} // namespace

RequestPort::RequestPort(const QDBusConnection &bus, Take take) : RequestPort(bus, std::move(take), Clock()) {}

RequestPort::RequestPort(const QDBusConnection &bus, Take take, Clock clock)
    : mBus(bus), mTake(std::move(take)), mClock(std::move(clock))
{
    setObjectName("requests"_L1);
}

RequestPort::~RequestPort()
{
    if (!isRunning() && !isFinished())
        return; // never started
    quit();
    mHasEnded.get_future().wait(); // synchronises in terms of C++, unlike QThread::wait()
    wait();
}

bool RequestPort::serve()
{
    start();
    return mIsServing.get_future().get();
}

void RequestPort::run()
{
    serveUntilQuit();
    mHasEnded.set_value(); // the receiver and the port have gone
}

void RequestPort::serveUntilQuit()
{
    RequestReceiver receiver(mBus, mTake, mClock);
    const auto receive = [&receiver](const QString &sender, qint32 number, const std::optional<QByteArray> &data) {
        return receiver.receive(sender, number, data);
    };
    const std::unique_ptr<LocalMessagePort> port =
        LocalMessagePort::create(DaemonProtocol::requestPortName, receive, mBus);
    mIsServing.set_value(port != nullptr);
    if (port)
        exec();
}
