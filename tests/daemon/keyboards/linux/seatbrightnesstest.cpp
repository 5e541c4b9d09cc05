// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/seatbrightness.h"
#include "tests/support/testmain.h"

#include <QDBusContext>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// A simulated session of the login manager.
class StandInSession : public QObject, public QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")

public:
    bool mRefuses = false;
    QStringList mCalls;

public Q_SLOTS:
    void SetBrightness(const QString &subsystem, const QString &name, uint brightness)
    {
        mCalls += u"%1 %2 %3"_s.arg(subsystem, name).arg(brightness);
        if (mRefuses)
            sendErrorReply(QDBusError::AccessDenied, u"not at the seat"_s);
    }
};

class SeatBrightnessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void asksTheSessionAtTheSeat();
    void refusalIsLoggedOnce();
    void missingLoginManagerIsLoggedOnce();
    void missingBusIsLoggedOnce();

private:
    std::unique_ptr<StandInSession> mSession;
    std::unique_ptr<SeatBrightness> mBrightness;
};

void SeatBrightnessTest::init()
{
    mSession = std::make_unique<StandInSession>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(
        bus.registerObject(u"/org/freedesktop/login1/session/auto"_s, mSession.get(), QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(u"org.freedesktop.login1"_s));
    mBrightness = std::make_unique<SeatBrightness>(QDBusConnection::sessionBus);
}

void SeatBrightnessTest::cleanup()
{
    QDBusConnection::sessionBus().unregisterService(u"org.freedesktop.login1"_s);
    mBrightness.reset();
    mSession.reset();
}

void SeatBrightnessTest::asksTheSessionAtTheSeat()
{
    mBrightness->set(u"laptop::kbd_backlight"_s, 2);
    mBrightness->set(u"laptop::kbd_backlight"_s, 3);
    const QStringList expected{u"leds laptop::kbd_backlight 2"_s, u"leds laptop::kbd_backlight 3"_s};
    QTRY_COMPARE(mSession->mCalls, expected);
}

void SeatBrightnessTest::refusalIsLoggedOnce()
{
    mSession->mRefuses = true;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"LED a::b: not at the seat"_s));
    mBrightness->set(u"a::b"_s, 1);
    QTRY_VERIFY(mBrightness->findChildren<QObject *>().isEmpty());
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    mBrightness->set(u"a::b"_s, 2);
    QTRY_COMPARE(mSession->mCalls.size(), 2);
    QTRY_VERIFY(mBrightness->findChildren<QObject *>().isEmpty());
}

void SeatBrightnessTest::missingLoginManagerIsLoggedOnce()
{
    QVERIFY(QDBusConnection::sessionBus().unregisterService(u"org.freedesktop.login1"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"LED a::b: "_s));
    mBrightness->set(u"a::b"_s, 1);
    mBrightness->set(u"a::b"_s, 2);
    QTRY_VERIFY(mBrightness->findChildren<QObject *>().isEmpty());
}

void SeatBrightnessTest::missingBusIsLoggedOnce()
{
    mBrightness = std::make_unique<SeatBrightness>([] { return QDBusConnection(u"none"_s); });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"LED a::b: there is no system bus"_s));
    mBrightness->set(u"a::b"_s, 1);
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    mBrightness->set(u"a::b"_s, 2);
}

QTEST_GUILESS_MAIN(SeatBrightnessTest)
#include "seatbrightnesstest.moc"
