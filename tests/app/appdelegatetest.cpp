// SPDX-License-Identifier: MIT
// The launches and the end of the program.
#include "app/application.h"
#include "app/keyboard_configuratorappdelegate.h"
#include "base/propertylist.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"

#include <QDBusConnectionInterface>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

class AppDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void distinguishesTheLaunches_data();
    void distinguishesTheLaunches();
    void opensAtOnceAfterADefaultLaunch();
    void opensAtOnceWithoutTheFlag();
    void waitsForTheDaemonAfterAnyOtherLaunch();
    void looksForTheDaemonOnlyAfterTheFirstWait();
    void stopsWaitingWhenItEnds();
    void terminatesInOrder();
    void keepsTheLastSelectedKeyWhenItEndsWaiting();
    void waitsInTheBackgroundAndEndsBySignal();
    void yieldsToTheFirstInstance();
    void findsTheFirstInstanceBeforeItCreatesWidgets();
    void stopsARecordingWhenItResignsActive();
    void resignsActiveWhenTheApplicationLosesTheFocus();
    void quitsAfterTheLastWindow();
    void quitsOnSignals_data();
    void quitsOnSignals();
    void quitsWhenItsWindowIsClosed();

private:
    HubResources mResources;
};

void AppDelegateTest::distinguishesTheLaunches_data()
{
    QTest::addColumn<Launch>("launch");
    QTest::addColumn<QVariant>("flag");
    QTest::newRow("normal") << Launch() << QVariant(true);
    QTest::newRow("restored") << Launch{true, false, false, {}} << QVariant(false);
    QTest::newRow("background") << Launch{false, true, false, {}} << QVariant(false);
    QTest::newRow("with a file") << Launch{false, false, false, {u"a.KestraMacro"_s}} << QVariant(true);
    QTest::newRow("restored with a file") << Launch{true, false, false, {u"a.KestraMacro"_s}} << QVariant(false);
    QTest::newRow("without notice") << Launch{false, false, true, {}} << QVariant();
    QTest::newRow("restored without notice") << Launch{true, false, true, {}} << QVariant(false);
}

void AppDelegateTest::distinguishesTheLaunches()
{
    QFETCH(Launch, launch);
    QFETCH(QVariant, flag);
    const QVariantMap userInfo = launchUserInfo(launch);
    QCOMPARE(userInfo.value(u"NSApplicationLaunchIsDefaultLaunchKey"_s), flag);
    QCOMPARE(userInfo.isEmpty(), !flag.isValid());
}

void AppDelegateTest::opensAtOnceAfterADefaultLaunch()
{
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    bool wasUp = false;
    // The sheet appears, and the opening that follows at once closes it.
    auto *sheet = hub.find<Sheet>("mRestoringStateWindow");
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get());
    struct ShowFilter : QObject
    {
        bool *wasUp;
        bool eventFilter(QObject *, QEvent *event) override
        {
            *wasUp = *wasUp || event->type() == QEvent::Show;
            return false;
        }
    } filter;
    filter.wasUp = &wasUp;
    sheet->installEventFilter(&filter);
    delegate.applicationDidFinishLaunching({{launchIsDefaultLaunchKey, true}});
    QVERIFY(wasUp);
    QVERIFY(!sheet->isUp());
    QVERIFY(!sheet->isVisible());
    QCOMPARE(daemon.commands(), (std::vector<int>{0, 4}));
    QCOMPARE(hub.controller->mainWindow(), hub.window.get());
    sheet->removeEventFilter(&filter);
}

void AppDelegateTest::opensAtOnceWithoutTheFlag()
{
    const ScriptedDaemon daemon(sampleDocument());
    const Hub hub;
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get());
    delegate.applicationDidFinishLaunching({{u"something else"_s, true}});
    QCOMPARE(daemon.commands(), (std::vector<int>{0, 4}));
}

void AppDelegateTest::waitsForTheDaemonAfterAnyOtherLaunch()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.disappear();
    const Hub hub;
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get(), callAtOnce,
                                              std::chrono::milliseconds(5));
    QSignalSpy initialized(hub.controller.get(), &KeyboardMainController::deviceInitialized);
    delegate.applicationDidFinishLaunching({{launchIsDefaultLaunchKey, false}});
    auto *sheet = hub.find<Sheet>("mRestoringStateWindow");
    QVERIFY(sheet->isVisible());
    // After many polls without a daemon the window is still there, and nothing is opened.
    QVERIFY(!initialized.wait(100));
    QVERIFY(sheet->isVisible());
    daemon.appear();
    QTRY_COMPARE(initialized.count(), 1);
    QCOMPARE(daemon.commands(), (std::vector<int>{0, 4}));
    QVERIFY(!sheet->isUp());
}

void AppDelegateTest::looksForTheDaemonOnlyAfterTheFirstWait()
{
    const ScriptedDaemon daemon(sampleDocument()); // running from the beginning
    const Hub hub;
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get(), callAtOnce,
                                              std::chrono::hours(1));
    std::stop_source stop;
    stop.request_stop(); // during the first wait
    delegate.doLoopInBackground(stop.get_token());
    QCoreApplication::processEvents();
    QCOMPARE(daemon.commands(), std::vector<int>());
}

void AppDelegateTest::stopsWaitingWhenItEnds()
{
    const Hub hub;
    QElapsedTimer timer;
    timer.start();
    {
        Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get(), callAtOnce,
                                                  std::chrono::hours(1));
        delegate.applicationDidFinishLaunching({{launchIsDefaultLaunchKey, false}});
    }
    QVERIFY(timer.elapsed() < 5000);
}

void AppDelegateTest::terminatesInOrder()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get());
    hub.find<QAbstractButton>("mW")->click();
    hub.controller->selectTabAtIndex(2);
    hub.find<TableView>("mMacroTableView")->selectRow(0);
    hub.find<QPushButton>("mRecordMacroDetails")->click();
    daemon.forgetRequests();
    delegate.applicationWillTerminate();
    const std::vector<int> commands = daemon.commands();
    QVERIFY(commands.size() >= 3);
    QCOMPARE(std::vector<int>(commands.begin(), commands.begin() + 3), (std::vector<int>{38, 19, 20}));
    const auto resource = PropertyList::readPropertyListFile(mResources.kestraPlist());
    QCOMPARE(resource->value(u"Device Info"_s).toMap().value(u"Last selected key"_s).toString(), u"26"_s);
}

void AppDelegateTest::keepsTheLastSelectedKeyWhenItEndsWaiting()
{
    const auto lastKey = [this] {
        return PropertyList::readPropertyListFile(mResources.kestraPlist())
            ->value(u"Device Info"_s)
            .toMap()
            .value(u"Last selected key"_s)
            .toString();
    };
    ScriptedDaemon daemon(sampleDocument());
    {
        Hub hub;
        hub.open(daemon);
        hub.find<QAbstractButton>("mR")->click();
        hub.controller->saveLastSelectedKey();
        QCOMPARE(lastKey(), u"21"_s);
    }
    daemon.forgetRequests();
    const Hub hub;
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get(), callAtOnce,
                                              std::chrono::hours(1));
    delegate.applicationDidFinishLaunching({{launchIsDefaultLaunchKey, false}});
    delegate.applicationWillTerminate();
    QCOMPARE(daemon.commands(), std::vector<int>{38});
    QCOMPARE(lastKey(), u"21"_s);
}

namespace {

/// The program as a process that may not end daemons outside the test. Sets `variable` to 1 for it.
std::unique_ptr<QProcess> configurator(const QStringList &arguments = {}, const QString &variable = {})
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"KESTRA_BENCH_READY"_s, u"1"_s);
    environment.insert(u"KESTRA_SPARE_DAEMONS"_s, u"1"_s);
    if (!variable.isEmpty())
        environment.insert(variable, u"1"_s);
    process->setProcessEnvironment(environment);
    process->start(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/kestra-configurator"_s, arguments);
    return process;
}

bool isOwned(const QString &busName)
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(busName);
}

} // namespace

void AppDelegateTest::waitsInTheBackgroundAndEndsBySignal()
{
    ScriptedDaemon daemon(sampleDocument());
    daemon.disappear();
    const auto program = configurator({u"--background"_s});
    QTRY_VERIFY_WITH_TIMEOUT(isOwned(u"org.quillkestra.KeyboardConfiguratorReplyPort"_s), 20000);
    QVERIFY(!program->waitForFinished(100));
    QCOMPARE(daemon.commands(), std::vector<int>());
    daemon.appear();
    QTRY_COMPARE_WITH_TIMEOUT(daemon.count(Command::openDevice), 1, 20000);
    ::kill(pid_t(program->processId()), SIGTERM);
    QVERIFY(program->waitForFinished(20000));
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
}

void AppDelegateTest::yieldsToTheFirstInstance()
{
    ScriptedDaemon daemon(sampleDocument());
    const auto first = configurator();
    QSignalSpy output(first.get(), &QProcess::readyReadStandardOutput);
    QVERIFY(output.wait(20000));
    const auto second = configurator();
    QVERIFY(second->waitForFinished(20000));
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(daemon.count(Command::openDevice), 1);
    QCOMPARE(daemon.count(Command::releaseDevice), 0);
    QCOMPARE(first->state(), QProcess::Running);
    first->terminate();
    QVERIFY(first->waitForFinished(20000));
}

void AppDelegateTest::findsTheFirstInstanceBeforeItCreatesWidgets()
{
    // Qt looks for its bridges to assistive technology when the first text is put into a widget. In this mode it logs
    // the search.
    const QString tellsPlugins = u"QT_DEBUG_PLUGINS"_s;
    const auto hasMadeWidgets = [](QProcess &program) {
        const QByteArray messages = program.readAllStandardError();
        return messages.contains("/platforms") && messages.contains("/accessiblebridge");
    };
    const ScriptedDaemon daemon(sampleDocument());
    const auto first = configurator({}, tellsPlugins);
    QSignalSpy output(first.get(), &QProcess::readyReadStandardOutput);
    QVERIFY(output.wait(20000));
    const auto second = configurator({}, tellsPlugins);
    QVERIFY(second->waitForFinished(20000));
    QVERIFY(!hasMadeWidgets(*second));
    first->terminate();
    QVERIFY(first->waitForFinished(20000));
    QVERIFY(hasMadeWidgets(*first)); // the check does find widgets
}

void AppDelegateTest::stopsARecordingWhenItResignsActive()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get());
    delegate.applicationWillResignActive();
    QCOMPARE(daemon.count(Command::stopMacroRecording), 0);
    hub.controller->selectTabAtIndex(2);
    hub.find<TableView>("mMacroTableView")->selectRow(0);
    hub.find<QPushButton>("mRecordMacroDetails")->click();
    delegate.applicationWillResignActive();
    QCOMPARE(daemon.count(Command::stopMacroRecording), 1);
}

void AppDelegateTest::resignsActiveWhenTheApplicationLosesTheFocus()
{
    ScriptedDaemon daemon(sampleDocument());
    Hub hub;
    hub.open(daemon);
    Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get());
    connectToApplication(delegate);
    hub.controller->selectTabAtIndex(2);
    hub.find<TableView>("mMacroTableView")->selectRow(0);
    hub.find<QPushButton>("mRecordMacroDetails")->click();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QCOMPARE(daemon.count(Command::stopMacroRecording), 0);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    QCOMPARE(daemon.count(Command::stopMacroRecording), 1);
}

void AppDelegateTest::quitsAfterTheLastWindow()
{
    const Hub hub;
    const Keyboard_ConfiguratorAppDelegate delegate(hub.window.get(), hub.controller.get());
    QVERIFY(delegate.applicationShouldTerminateAfterLastWindowClosed());
}

void AppDelegateTest::quitsOnSignals_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP, the end of the session") << SIGHUP;
}

void AppDelegateTest::quitsOnSignals()
{
    QFETCH(int, signalNumber);
    ScriptedDaemon daemon(sampleDocument());
    const auto program = configurator();
    QSignalSpy output(program.get(), &QProcess::readyReadStandardOutput);
    QVERIFY(output.wait(20000));
    QCOMPARE(program->readAllStandardOutput().trimmed(), "ready");
    ::kill(pid_t(program->processId()), signalNumber);
    QVERIFY(program->waitForFinished(20000));
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
    QCOMPARE(daemon.count(Command::releaseDevice), 1);
}

void AppDelegateTest::quitsWhenItsWindowIsClosed()
{
    const Hub hub;
    QSignalSpy aboutToQuit(QCoreApplication::instance(), &QCoreApplication::aboutToQuit);
    // Another window that stays open, like that of the help.
    QWidget other;
    other.show();
    QTimer::singleShot(0, hub.window.get(), &QWidget::close);
    QTimer::singleShot(20000, QCoreApplication::instance(), [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(aboutToQuit.count(), 1);
}

QTEST_MAIN(AppDelegateTest)
#include "appdelegatetest.moc"
