// SPDX-License-Identifier: MIT
// The on-screen display against a notification service of the test's own, on a private bus.
#include "daemon/system/desktopnotification.h"
#include "tests/support/testmain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString serviceName = u"org.freedesktop.Notifications"_s;

} // namespace

/// What stands at /org/freedesktop/Notifications.
class NotificationService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Bubble
    {
        QString application;
        uint replacesId;
        QString summary;
        QString body;
        QVariantMap hints;
        int expireMs;
    };

    NotificationService() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"service"_s))
    {
        mBus.registerObject(u"/org/freedesktop/Notifications"_s, this, QDBusConnection::ExportScriptableSlots);
        mBus.registerService(serviceName);
    }
    ~NotificationService() override
    {
        mBus.unregisterService(serviceName);
        QDBusConnection::disconnectFromBus(u"service"_s);
    }

    /// From now on calls are kept waiting until answer().
    void hold() { mIsHolding = true; }
    void answer()
    {
        mIsHolding = false;
        for (const QDBusMessage &call : std::exchange(mHeld, {}))
            mBus.send(call.createReply(QVariant(++mLastId)));
    }
    [[nodiscard]] QStringList summaries() const
    {
        QStringList result;
        for (const Bubble &bubble : bubbles)
            result += bubble.summary;
        return result;
    }

    QList<Bubble> bubbles;

public Q_SLOTS:
    Q_SCRIPTABLE uint Notify(const QString &application, uint replacesId, const QString &, const QString &summary,
                             const QString &body, const QStringList &, const QVariantMap &hints, int expireMs)
    {
        bubbles += {application, replacesId, summary, body, hints, expireMs};
        if (mIsHolding) {
            setDelayedReply(true);
            mHeld += message();
            return 0;
        }
        return replacesId != 0 ? replacesId : ++mLastId;
    }

private:
    QDBusConnection mBus;
    QList<QDBusMessage> mHeld;
    bool mIsHolding = false;
    uint mLastId = 40;
};

class DesktopNotificationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheProfilesName();
    void staysWhereItIsNotPassing();
    void nextOneReplacesTheBubble();
    void busyServiceGetsTheLastOne();
    void slowServiceHoldsNobodyUp();
    void missingServiceIsSilent();
    void serviceThatStartsAgainGetsANewBubble();
};

void DesktopNotificationTest::showsTheProfilesName()
{
    NotificationService service;
    DesktopNotification notification(QDBusConnection::sessionBus());
    notification.show({.summary = u"Spïele"_s, .body = {}});
    QTRY_COMPARE(service.summaries(), QStringList{u"Spïele"_s});
    const NotificationService::Bubble bubble = service.bubbles.first();
    QCOMPARE(bubble.application, u"Quill Kestra"_s);
    QCOMPARE(bubble.replacesId, 0U);
    QVERIFY(bubble.expireMs > 0);
    QCOMPARE(bubble.hints.value(u"transient"_s), QVariant(true));
    QCOMPARE(bubble.hints.value(u"desktop-entry"_s), QVariant(u"org.quillkestra.Configurator"_s));
    QCOMPARE(bubble.hints.value(u"urgency"_s).typeId(), int(QMetaType::UChar)); // another type is ignored by services
}

void DesktopNotificationTest::staysWhereItIsNotPassing()
{
    NotificationService service;
    DesktopNotification notification(QDBusConnection::sessionBus());
    notification.show({.summary = u"A"_s, .body = u"Why"_s, .isPassing = false});
    QTRY_COMPARE(service.summaries(), QStringList{u"A"_s});
    const NotificationService::Bubble bubble = service.bubbles.first();
    QCOMPARE(bubble.body, u"Why"_s);
    QCOMPARE(bubble.expireMs, -1);
    QCOMPARE(bubble.hints.value(u"transient"_s), QVariant(false));
    QCOMPARE(bubble.hints.value(u"urgency"_s), QVariant::fromValue(uchar(1)));
}

void DesktopNotificationTest::nextOneReplacesTheBubble()
{
    NotificationService service;
    DesktopNotification notification(QDBusConnection::sessionBus());
    for (const QString &name : {u"A"_s, u"B"_s, u"C"_s}) {
        notification.show({.summary = name, .body = {}});
        QTRY_COMPARE(service.summaries().value(service.bubbles.size() - 1), name);
    }
    QCOMPARE(service.bubbles.at(1).replacesId, 41U);
    QCOMPARE(service.bubbles.at(2).replacesId, 41U);
}

void DesktopNotificationTest::busyServiceGetsTheLastOne()
{
    NotificationService service;
    service.hold();
    DesktopNotification notification(QDBusConnection::sessionBus());
    notification.show({.summary = u"A"_s, .body = {}});
    QTRY_COMPARE(service.bubbles.size(), 1);
    notification.show({.summary = u"B"_s, .body = {}});
    notification.show({.summary = u"C"_s, .body = {}});
    service.answer();
    QTRY_COMPARE(service.summaries(), QStringList({u"A"_s, u"C"_s}));
    QCOMPARE(service.bubbles.at(1).replacesId, 41U);
}

void DesktopNotificationTest::slowServiceHoldsNobodyUp()
{
    NotificationService service;
    service.hold();
    DesktopNotification notification(QDBusConnection::sessionBus());
    QElapsedTimer timer;
    timer.start();
    notification.show({.summary = u"A"_s, .body = {}});
    notification.show({.summary = u"B"_s, .body = {}});
    QVERIFY(timer.elapsed() < 1000); // the call itself has a limit of 5 s
    QTRY_COMPARE(service.bubbles.size(), 1);
    service.answer();
}

void DesktopNotificationTest::missingServiceIsSilent()
{
    QStringList logged;
    static QStringList *lines = nullptr;
    lines = &logged;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { lines->append(text); });
    {
        DesktopNotification notification(QDBusConnection::sessionBus());
        notification.show({.summary = u"A"_s, .body = {}});
        // The bus answers in order: when it has answered this, it has refused the notification.
        QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(serviceName, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
        QCoreApplication::processEvents();
        notification.show({.summary = u"B"_s, .body = {}});
        QCoreApplication::processEvents();
    }
    qInstallMessageHandler(previous);
    QCOMPARE(logged, QStringList());
}

void DesktopNotificationTest::serviceThatStartsAgainGetsANewBubble()
{
    DesktopNotification notification(QDBusConnection::sessionBus());
    auto service = std::make_unique<NotificationService>();
    notification.show({.summary = u"A"_s, .body = {}});
    QTRY_COMPARE(service->bubbles.size(), 1);
    // What the service answered is on the bus before the answer to this, so the next one is not kept back.
    QVERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.quillkestra.Nobody"_s));
    QCoreApplication::processEvents();
    service.reset();
    notification.show({.summary = u"lost"_s, .body = {}});
    service = std::make_unique<NotificationService>();
    // Until the refusal of the lost one has arrived, the last one is kept back.
    QTRY_VERIFY((notification.show({.summary = u"B"_s, .body = {}}), QTest::qWait(0), !service->bubbles.isEmpty()));
    QCOMPARE(service->bubbles.first().replacesId, 0U);
}

QTEST_GUILESS_MAIN(DesktopNotificationTest)
#include "desktopnotificationtest.moc"
