// SPDX-License-Identifier: MIT
// What the window knows of the service itself, with the real daemon.
#include "app/servicestatus.h"

#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

QVariantMap named(const QString &name)
{
    return {{u"ProfileName"_s, name}};
}

} // namespace

class ServiceStatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void followsTheDaemon();
    void knowsWhyTheProfileIsActive();
    void missesTheExtensionOfGnomeShell();
    void reportsEachProblemOfTheSettingsOnce();
    void startAsksWithoutWaiting();
    void noticesThatASilentDaemonAnswersAgain();

private:
    bool rename(const QString &name)
    {
        return mDaemon
            ->request(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(name)}})
            .has_value();
    }

    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<ServiceStatus> mStatus;
};

void ServiceStatusTest::init()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mStatus = std::make_unique<ServiceStatus>();
}

void ServiceStatusTest::cleanup()
{
    mStatus.reset();
    mDaemon.reset();
}

void ServiceStatusTest::followsTheDaemon()
{
    QSignalSpy come(mStatus.get(), &ServiceStatus::daemonHasCome);
    QSignalSpy gone(mStatus.get(), &ServiceStatus::daemonHasGone);
    QVERIFY(!mStatus->isRunning());
    mStatus->start();
    QTRY_COMPARE(mStatus->isRunning(), std::optional(false));
    QCOMPARE(gone.size(), 1);
    QVERIFY(mDaemon->start());
    QTRY_COMPARE(mStatus->isRunning(), std::optional(true));
    QCOMPARE(come.size(), 1);
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(QString()));
    mDaemon->kill();
    QTRY_COMPARE(mStatus->isRunning(), std::optional(false));
    QVERIFY(!mStatus->profileApplication());
    QVERIFY(mDaemon->start());
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(QString()));
}

void ServiceStatusTest::knowsWhyTheProfileIsActive()
{
    QVERIFY(mDaemon->start());
    QVERIFY(mDaemon->request(
        Command::addProfile,
        {{u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, u"Game"_s},
                                                     {u"AppInfo"_s, QVariantMap{{u"identifier"_s, u"game"_s}}},
                                                     {u"AutoSwitchOn"_s, 1}}}}));
    QVERIFY(mDaemon->request(Command::switchProfile, {{u"ProfileID"_s, 0}}));
    mStatus->start();
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(QString()));
    QCOMPARE(runKestractl({u"focus"_s, u"game"_s}).exitCode, 0);
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(u"game"_s));
    // A choice by hand of the active profile changes the reason alone.
    QVERIFY(mDaemon->request(Command::switchProfile, {{u"ProfileID"_s, 1}}));
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(QString()));
}

void ServiceStatusTest::missesTheExtensionOfGnomeShell()
{
    mDaemon->environment().insert(u"WAYLAND_DISPLAY"_s, u"no-compositor"_s);
    QVERIFY(mDaemon->start());
    mStatus->start();
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(QString()));
    QVERIFY(!mStatus->needsShellExtension());
    QSignalSpy changes(mStatus.get(), &ServiceStatus::changed);
    QSignalSpy missing(mStatus.get(), &ServiceStatus::shellExtensionMissing);
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"shell"_s);
    const auto guard = qScopeGuard([] { QDBusConnection::disconnectFromBus(u"shell"_s); });
    QVERIFY(bus.registerService(u"org.gnome.Shell"_s));
    QTRY_VERIFY(mStatus->needsShellExtension());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(missing.size(), 1);
    ServiceStatus laterStatus;
    laterStatus.start();
    QTRY_VERIFY(laterStatus.needsShellExtension());
    QDBusMessage report =
        QDBusMessage::createMethodCall(u"org.quillkestra.QuillCoreEngineMsgPort"_s, u"/FrontApplication"_s,
                                       u"org.quillkestra.FrontApplication"_s, u"Tell"_s);
    report << u"game"_s;
    QCOMPARE(bus.call(report).type(), QDBusMessage::ReplyMessage);
    QTRY_VERIFY(!mStatus->needsShellExtension());
    QVERIFY(bus.unregisterService(u"org.gnome.Shell"_s));
    QVERIFY(bus.registerService(u"org.gnome.Shell"_s)); // another one, which has not reported
    QTRY_VERIFY(mStatus->needsShellExtension());
    QCOMPARE(missing.size(), 2);
    mDaemon->kill();
    QTRY_VERIFY(!mStatus->needsShellExtension());
    QCOMPARE(missing.size(), 2);
}

void ServiceStatusTest::reportsEachProblemOfTheSettingsOnce()
{
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    QVERIFY(mDaemon->start());
    QVERIFY(rename(u"first"_s));
    mDaemon->terminate();
    writeFile(path, "damage");
    QVERIFY(mDaemon->start());
    QSignalSpy problems(mStatus.get(), &ServiceStatus::problemFound);
    mStatus->start();
    QTRY_COMPARE(problems.size(), 1);
    QVERIFY2(problems.at(0).at(0).toString().contains(u"settings.plist"_s),
             qPrintable(problems.at(0).at(0).toString()));
    // While the daemon runs, another program replaces the file.
    QVERIFY(rename(u"second"_s));
    writeFile(path, "another program's");
    QVERIFY(rename(u"third"_s));
    QTRY_COMPARE(problems.size(), 2);
    QVERIFY2(problems.at(1).at(0).toString().contains(u"replaced"_s), qPrintable(problems.at(1).at(0).toString()));
}

void ServiceStatusTest::startAsksWithoutWaiting()
{
    QVERIFY(mDaemon->start());
    mDaemon->stop(); // answers nothing
    QSignalSpy changed(mStatus.get(), &ServiceStatus::changed);
    mStatus->start();
    QTRY_COMPARE(mStatus->isRunning(), std::optional(true)); // the bus knows
    QVERIFY(!mStatus->profileApplication());
    mDaemon->resume();
    QTRY_COMPARE(mStatus->profileApplication(), std::optional(QString()));
}

void ServiceStatusTest::noticesThatASilentDaemonAnswersAgain()
{
    QVERIFY(mDaemon->start());
    QSignalSpy answers(mStatus.get(), &ServiceStatus::daemonAnswers);
    mDaemon->stop();
    mStatus->awaitAnswer();
    mStatus->start();
    QTRY_COMPARE(mStatus->isRunning(), std::optional(true));
    QCOMPARE(answers.size(), 0);
    mDaemon->resume();
    QTRY_COMPARE(answers.size(), 1);
    // One that ends does not answer; the next one does.
    mDaemon->stop();
    mStatus->awaitAnswer();
    mDaemon->kill();
    QTRY_COMPARE(mStatus->isRunning(), std::optional(false));
    QVERIFY(mDaemon->start());
    QTRY_COMPARE(mStatus->isRunning(), std::optional(true));
    QCOMPARE(answers.size(), 1);
    mStatus->awaitAnswer();
    QTRY_COMPARE(answers.size(), 2);
}

QTEST_GUILESS_MAIN(ServiceStatusTest)
#include "servicestatustest.moc"
