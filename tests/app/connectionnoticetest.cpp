// SPDX-License-Identifier: MIT
// The header's notice without a keyboard and without its service.
#include "app/connectionnotice.h"

#include "app/servicestart.h"
#include "app/statusreporter.h"
#include "base/text.h"
#include "platform/mnemonics.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Service = StatusState::Service;

namespace {

const QString unit = u"quill-kestra-daemon.service"_s;

/// A simulated service manager of the user, on the test's bus during its lifetime.
class ServiceManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Manager")

public:
    ServiceManager() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"manager"_s))
    {
        mBus.registerObject(u"/org/freedesktop/systemd1"_s, this, QDBusConnection::ExportScriptableSlots);
        isOnBus = mBus.registerService(u"org.freedesktop.systemd1"_s);
    }
    ~ServiceManager() override
    {
        mBus.unregisterService(u"org.freedesktop.systemd1"_s);
        QDBusConnection::disconnectFromBus(u"manager"_s);
    }

    bool isOnBus = false;
    QString state = u"enabled"_s; ///< of the unit's file; empty: it is not installed
    bool refusesStart = false;
    QStringList calls;

public Q_SLOTS:
    Q_SCRIPTABLE QString GetUnitFileState(const QString &name)
    {
        if (state.isEmpty() || name != unit)
            sendErrorReply(u"org.freedesktop.DBus.Error.FileNotFound"_s);
        return state;
    }
    Q_SCRIPTABLE void ResetFailedUnit(const QString &name) { calls += u"reset "_s + name; }
    Q_SCRIPTABLE QDBusObjectPath StartUnit(const QString &name, const QString &mode)
    {
        calls += u"start "_s + name + u' ' + mode;
        if (refusesStart)
            sendErrorReply(QDBusError::AccessDenied);
        return QDBusObjectPath(u"/org/freedesktop/systemd1/job/7"_s);
    }

private:
    QDBusConnection mBus;
};

/// The visible buttons of a notice, and its text.
QStringList offersOf(const ConnectionNotice &notice)
{
    QStringList offers{notice.findChild<QLabel *>(u"mConnectionNoticeText"_s)->text()};
    for (const QPushButton *button : notice.findChildren<QPushButton *>()) {
        if (!button->isHidden())
            offers += Mnemonics::plainText(button->text());
    }
    return offers;
}

} // namespace

class ConnectionNoticeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installTexts(textsFolder(), {u"en"_s}); }

    void offersWhatHelps_data()
    {
        QTest::addColumn<int>("service");
        QTest::addColumn<bool>("isAttached");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("button");
        const QString noService = u"The keyboard service does not respond."_s;
        QTest::newRow("not opened yet") << int(Service::awaited) << false << QString() << QString();
        QTest::newRow("all is well") << int(Service::running) << true << QString() << QString();
        QTest::newRow("no keyboard") << int(Service::running) << false
                                     << u"No keyboard. Connect it, or choose another one."_s << u"Keyboard…"_s;
        QTest::newRow("silent") << int(Service::silent) << true << noService << u"Troubleshooting"_s;
        QTest::newRow("absent") << int(Service::absent) << false << noService << u"Troubleshooting"_s;
    }

    void offersWhatHelps()
    {
        QFETCH(int, service);
        QFETCH(bool, isAttached);
        QFETCH(QString, text);
        ConnectionNotice notice;
        StatusReporter reporter(StatusTimes{});
        reporter.setNotice(&notice);
        reporter.setState({.service = static_cast<Service>(service), .isAttached = isAttached});
        QCOMPARE(notice.isHidden(), text.isEmpty());
        if (!text.isEmpty())
            QCOMPARE(notice.findChild<QLabel *>(u"mConnectionNoticeText"_s)->text(), text);
        QStringList offered;
        for (const QPushButton *button : notice.findChildren<QPushButton *>()) {
            if (!notice.isHidden() && !button->isHidden())
                offered += button->text();
        }
        QTEST(offered.join(u','), "button");
        // It ends with its reason.
        reporter.setState({.service = Service::running, .isAttached = true});
        QVERIFY(notice.isHidden());
    }

    void offersToStartAStoppedService()
    {
        const QStringList help{u"The keyboard service does not respond."_s, u"Troubleshooting"_s};
        const QStringList start{u"The keyboard service is not running."_s, u"Start"_s};
        const QStringList starting{u"The keyboard service is starting…"_s, u"Start"_s};
        const QStringList failure{u"The keyboard service could not be started."_s, u"Troubleshooting"_s};
        ConnectionNotice notice;
        QSignalSpy missed(&notice, &ConnectionNotice::serviceMissed);
        QSignalSpy requested(&notice, &ConnectionNotice::startRequested);
        notice.setCanStartService(true); // too early: the service has not been missed
        notice.show({.service = Service::absent});
        QCOMPARE(missed.size(), 1);
        QCOMPARE(offersOf(notice), help);
        notice.setCanStartService(true);
        QCOMPARE(offersOf(notice), start);
        notice.show({.service = Service::absent, .isAttached = true});
        QCOMPARE(missed.size(), 1);
        QCOMPARE(offersOf(notice), start);
        auto *button = notice.findChild<QPushButton *>(u"mConnectionNoticeHelp"_s);
        button->click();
        QCOMPARE(requested.size(), 1);
        QCOMPARE(offersOf(notice), starting);
        QVERIFY(!button->isEnabled());
        notice.show({.service = Service::absent, .isAttached = true});
        QCOMPARE(offersOf(notice), starting);
        notice.showStartFailure();
        QCOMPARE(offersOf(notice), failure);
        QSignalSpy helped(&notice, &ConnectionNotice::helpRequested);
        button->click();
        QCOMPARE(helped.size(), 1);
        QCOMPARE(requested.size(), 1);
        // Who has read the help can try again.
        QCOMPARE(missed.size(), 2);
        QCOMPARE(offersOf(notice), failure);
        notice.setCanStartService(true);
        QCOMPARE(offersOf(notice), start);
        // A service that ran meanwhile can be started again.
        notice.show({.service = Service::running, .isAttached = true});
        QVERIFY(notice.isHidden());
        notice.show({.service = Service::absent});
        QCOMPARE(missed.size(), 3);
        QCOMPARE(offersOf(notice), help);
        notice.setCanStartService(false);
        QCOMPARE(offersOf(notice), help);
        // One that hangs is running.
        notice.show({.service = Service::silent});
        notice.setCanStartService(true);
        QCOMPARE(offersOf(notice), help);
    }

    void aServiceThatDoesNotComeCouldNotBeStarted()
    {
        ConnectionNotice notice(nullptr, 1ms);
        notice.show({.service = Service::absent});
        notice.setCanStartService(true);
        notice.findChild<QPushButton *>(u"mConnectionNoticeHelp"_s)->click();
        QTRY_COMPARE(offersOf(notice),
                     (QStringList{u"The keyboard service could not be started."_s, u"Troubleshooting"_s}));
    }

    void aServiceThatHasComeWasStarted()
    {
        ConnectionNotice notice(nullptr, 1ms);
        notice.show({.service = Service::absent});
        notice.setCanStartService(true);
        notice.findChild<QPushButton *>(u"mConnectionNoticeHelp"_s)->click();
        notice.show({.service = Service::running});
        // The limit ends before this timer, which starts later.
        QTimer later;
        later.setSingleShot(true);
        QSignalSpy passed(&later, &QTimer::timeout);
        later.start(1ms);
        QTRY_COMPARE(passed.size(), 1);
        QCOMPARE(offersOf(notice), (QStringList{u"No keyboard. Connect it, or choose another one."_s, u"Keyboard…"_s}));
        notice.show({.service = Service::absent});
        QCOMPARE(offersOf(notice), (QStringList{u"The keyboard service does not respond."_s, u"Troubleshooting"_s}));
    }

    void findsTheServiceOfTheServiceManager_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("canStart");
        QTest::newRow("enabled") << u"enabled"_s << true;
        QTest::newRow("disabled") << u"disabled"_s << true;
        QTest::newRow("masked") << u"masked"_s << false;
        QTest::newRow("masked until the end of the session") << u"masked-runtime"_s << false;
        QTest::newRow("not installed") << QString() << false;
    }

    void findsTheServiceOfTheServiceManager()
    {
        QFETCH(QString, state);
        ServiceManager manager;
        QVERIFY(manager.isOnBus);
        manager.state = state;
        ServiceStart start(QDBusConnection::sessionBus());
        QSignalSpy found(&start, &ServiceStart::found);
        start.look();
        QTRY_COMPARE(found.size(), 1);
        QTEST(found.first().first().toBool(), "canStart");
        QCOMPARE(manager.calls, QStringList());
    }

    void findsNothingWithoutAServiceManager()
    {
        ServiceStart start(QDBusConnection::sessionBus());
        QSignalSpy found(&start, &ServiceStart::found);
        start.look();
        QTRY_COMPARE(found.size(), 1);
        QCOMPARE(found.first().first().toBool(), false);
        QSignalSpy failed(&start, &ServiceStart::failed);
        start.start();
        QTRY_COMPARE(failed.size(), 1);
    }

    void startsTheService()
    {
        ServiceManager manager;
        ServiceStart start(QDBusConnection::sessionBus());
        QSignalSpy failed(&start, &ServiceStart::failed);
        start.start();
        const QStringList calls{u"reset "_s + unit, u"start "_s + unit + u" replace"_s};
        QTRY_COMPARE(manager.calls, calls);
        manager.refusesStart = true;
        start.start();
        QTRY_COMPARE(failed.size(), 1); // the first start has been answered before
        QCOMPARE(manager.calls, calls + calls);
    }

    void theWindowStartsTheService()
    {
        ServiceManager manager;
        const HubResources resources;
        const Hub hub;
        auto *notice = hub.find<ConnectionNotice>("mConnectionNotice");
        const auto offers = [notice] { return offersOf(*notice); };
        notice->show({.service = Service::absent});
        QTRY_COMPARE(offers(), (QStringList{u"The keyboard service is not running."_s, u"Start"_s}));
        manager.refusesStart = true;
        hub.find<QPushButton>("mConnectionNoticeHelp")->click();
        QTRY_COMPARE(offers().first(), u"The keyboard service could not be started."_s);
        QCOMPARE(manager.calls, (QStringList{u"reset "_s + unit, u"start "_s + unit + u" replace"_s}));
    }

    void buttonsOpenTheChooserAndTheHelp()
    {
        ConnectionNotice notice;
        QSignalSpy keyboards(&notice, &ConnectionNotice::keyboardsRequested);
        QSignalSpy help(&notice, &ConnectionNotice::helpRequested);
        notice.findChild<QPushButton *>(u"mConnectionNoticeKeyboards"_s)->click();
        QCOMPARE(keyboards.size(), 1);
        QCOMPARE(help.size(), 0);
        notice.findChild<QPushButton *>(u"mConnectionNoticeHelp"_s)->click();
        QCOMPARE(help.size(), 1);
    }
};

QTEST_MAIN(ConnectionNoticeTest)
#include "connectionnoticetest.moc"
