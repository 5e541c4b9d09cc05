// SPDX-License-Identifier: MIT
// The rules that a program registers on the bus, and the messages that it therefore receives: names that it does not
// observe do not wake it.
#include "platform/distributednotificationcenter.h"
#include "tests/support/testmain.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QtTest>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

const QString name = u"Device Attached 271"_s;
const QString otherName = u"Device Removed 271"_s;

std::atomic<int> messagesOfName = 0;
std::atomic<int> messagesOfOtherName = 0;

/// QtDBus reports each message that reaches the process (QDBUS_DEBUG).
void countMessages(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.contains("got message (signal)"_L1) || !text.contains("Posted"_L1))
        return;
    if (text.contains(name))
        ++messagesOfName;
    if (text.contains(otherName))
        ++messagesOfOtherName;
}

} // namespace

class NotificationFilteringTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanupTestCase() { QDBusConnection::disconnectFromBus(u"poster"_s); }
    void subscribesToEachNameOnce();
    void unsubscribesAfterTheLastObservation();
    void unsubscribesWhenTheObserverIsDestroyed();
    void unobservedNamesAreNotSent();

private:
    /// The rules that the bus holds for this process's notifications, from its own statistics.
    [[nodiscard]] static QStringList rules();

    QDBusConnection mPosterConnection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"poster"_s);
    QObject mObserver;
};

QStringList NotificationFilteringTest::rules()
{
    const QDBusMessage reply = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus.Debug.Stats"_s, u"GetAllMatchRules"_s));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {u"no statistics"_s};
    const auto all = qdbus_cast<QMap<QString, QStringList>>(reply.arguments().at(0));
    QStringList found;
    for (const QString &rule : all.value(QDBusConnection::sessionBus().baseService())) {
        if (rule.contains("org.quillkestra.DistributedNotificationCenter"_L1))
            found.append(rule);
    }
    return found;
}

void NotificationFilteringTest::subscribesToEachNameOnce()
{
    DistributedNotificationCenter center(QDBusConnection::sessionBus());
    if (rules() == QStringList{u"no statistics"_s})
        QSKIP("this bus gives no statistics");
    QCOMPARE(rules(), QStringList());
    QObject second;
    for (int i = 0; i < 3; ++i) {
        center.addObserver(&mObserver, name, [](const DistributedNotification &) {});
        center.addObserver(&second, name, [](const DistributedNotification &) {});
    }
    QCOMPARE(rules().size(), 1);
    QVERIFY2(rules().at(0).contains("arg0='%1'"_L1.arg(name)), qPrintable(rules().at(0)));
    center.addObserver(&mObserver, otherName, [](const DistributedNotification &) {});
    QCOMPARE(rules().size(), 2);
}

void NotificationFilteringTest::unsubscribesAfterTheLastObservation()
{
    DistributedNotificationCenter center(QDBusConnection::sessionBus());
    if (rules() == QStringList{u"no statistics"_s})
        QSKIP("this bus gives no statistics");
    QObject second;
    center.addObserver(&mObserver, name, [](const DistributedNotification &) {});
    center.addObserver(&second, name, [](const DistributedNotification &) {});
    center.removeObserver(&mObserver, name);
    QCOMPARE(rules().size(), 1);
    center.removeObserver(&second, name);
    QTRY_COMPARE(rules(), QStringList());
}

void NotificationFilteringTest::unsubscribesWhenTheObserverIsDestroyed()
{
    DistributedNotificationCenter center(QDBusConnection::sessionBus());
    if (rules() == QStringList{u"no statistics"_s})
        QSKIP("this bus gives no statistics");
    {
        QObject observer;
        center.addObserver(&observer, name, [](const DistributedNotification &) {});
        center.addObserver(&observer, otherName, [](const DistributedNotification &) {});
        QCOMPARE(rules().size(), 2);
    }
    QTRY_COMPARE(rules(), QStringList());
}

void NotificationFilteringTest::unobservedNamesAreNotSent()
{
    DistributedNotificationCenter center(QDBusConnection::sessionBus());
    DistributedNotificationCenter poster(mPosterConnection);
    int delivered = 0;
    center.addObserver(&mObserver, name, [&](const DistributedNotification &) { ++delivered; });
    QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));

    const QtMessageHandler before = qInstallMessageHandler(countMessages);
    for (int i = 0; i < 10; ++i) {
        poster.post(otherName);
        poster.post(name);
    }
    const bool wereDelivered = QTest::qWaitFor([&] { return delivered == 10; });
    qInstallMessageHandler(before);
    QVERIFY(wereDelivered);
    QCOMPARE(messagesOfName.load(), 10); // the count does work
    QCOMPARE(messagesOfOtherName.load(), 0);
}

int main(int argc, char *argv[])
{
    qputenv("QDBUS_DEBUG", "1"); // read once, when the first connection is made
    QCoreApplication application(argc, argv);
    NotificationFilteringTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "notificationfilteringtest.moc"
