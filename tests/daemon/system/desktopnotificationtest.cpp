// SPDX-License-Identifier: MIT
// The on-screen display with a simulated notification service on a private bus.
#include "daemon/system/desktopnotification.h"
#include "tests/support/notificationservice.h"
#include "tests/support/testmain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

class DesktopNotificationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheProfilesName();
    void nameIsShownOnOneLine();
    void staysUnlessItIsTransient();
    void nextNotificationReplacesTheBubble();
    void busyServiceGetsTheLastNotification();
    void slowServiceBlocksNoCaller();
    void missingServiceIsSilent();
    void restartedServiceGetsANewBubble();
    void serviceThatStartsLaterGetsLastingNotifications();
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
    QCOMPARE(bubble.hints.value(u"urgency"_s).typeId(), int(QMetaType::UChar)); // services ignore other types
    QCOMPARE(bubble.hints.value(u"urgency"_s), QVariant::fromValue(uchar(1)));  // GNOME shows nothing below this
}

void DesktopNotificationTest::nameIsShownOnOneLine()
{
    NotificationService service;
    DesktopNotification notification(QDBusConnection::sessionBus());
    notification.show({.summary = u"Game\n\u202eexe"_s, .body = {}});
    QTRY_COMPARE(service.summaries(), QStringList{u"Game  exe"_s});
}

void DesktopNotificationTest::staysUnlessItIsTransient()
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

void DesktopNotificationTest::nextNotificationReplacesTheBubble()
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

void DesktopNotificationTest::busyServiceGetsTheLastNotification()
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

void DesktopNotificationTest::slowServiceBlocksNoCaller()
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
        // The bus answers in order. Its answer to this call shows that it has refused the notification.
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(NotificationService::name(), u"/"_s,
                                                                          u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
        QCoreApplication::processEvents();
        notification.show({.summary = u"B"_s, .body = {}});
        QCoreApplication::processEvents();
    }
    qInstallMessageHandler(previous);
    QCOMPARE(logged, QStringList());
}

void DesktopNotificationTest::restartedServiceGetsANewBubble()
{
    DesktopNotification notification(QDBusConnection::sessionBus());
    auto service = std::make_unique<NotificationService>();
    notification.show({.summary = u"A"_s, .body = {}});
    QTRY_COMPARE(service->bubbles.size(), 1);
    // The service's answer precedes the answer to this call, so the next notification is not held back.
    QVERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.quillkestra.Nobody"_s));
    QCoreApplication::processEvents();
    service.reset();
    notification.show({.summary = u"lost"_s, .body = {}});
    service = std::make_unique<NotificationService>();
    // The last one is held back until the refusal of the lost one has arrived.
    QTRY_VERIFY((notification.show({.summary = u"B"_s, .body = {}}), QTest::qWait(0), !service->bubbles.isEmpty()));
    QCOMPARE(service->bubbles.first().replacesId, 0U);
}

// A daemon may show a notification before the desktop has started.
void DesktopNotificationTest::serviceThatStartsLaterGetsLastingNotifications()
{
    DesktopNotification lasting(QDBusConnection::sessionBus());
    DesktopNotification passing(QDBusConnection::sessionBus());
    lasting.show({.summary = u"first"_s, .body = {}, .isPassing = false});
    lasting.show({.summary = u"lasting"_s, .body = {}, .isPassing = false});
    passing.show({.summary = u"passing"_s, .body = {}});
    // The bus answers in order. Its answer to this call shows that it has refused the notifications.
    QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(NotificationService::name(), u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
    QCoreApplication::processEvents();
    auto service = std::make_unique<NotificationService>();
    QTRY_COMPARE(service->summaries(), QStringList{u"lasting"_s});
    service.reset();
    service = std::make_unique<NotificationService>();
    lasting.show({.summary = u"next"_s, .body = {}, .isPassing = false});
    QTRY_COMPARE(service->summaries(), QStringList{u"next"_s}); // without the earlier one
}

QTEST_GUILESS_MAIN(DesktopNotificationTest)
#include "desktopnotificationtest.moc"
