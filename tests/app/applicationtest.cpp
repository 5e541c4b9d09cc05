// SPDX-License-Identifier: MIT
// The program leaves behind only its own files and writes nothing to its standard error. The test starts itself again
// as the program, and operates it like a user.
#include "app/application.h"
#include "app/mainwindow.h"
#include "macros/macrocommands.h"
#include "platform/colorwell.h"
#include "platform/filepanels.h"
#include "platform/pulldownbutton.h"
#include "platform/singleinstance.h"
#include "platform/tableview.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/rawposter.h"
#include "tests/support/testdesktop.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QApplication>
#include <QColorDialog>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDirIterator>
#include <QProcess>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWindow>

#include <cstdio>
#include <future>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

namespace {

constexpr const char *useVariable = "KESTRA_TEST_USE";
constexpr const char *logVariable = "KESTRA_TEST_LOG";
constexpr int limitMs = 20'000;

template <typename Widget> Widget *shown(const QWidget *parent, const char *name)
{
    Widget *widget = nullptr;
    const auto isShown = [&] {
        widget = parent->findChild<Widget *>(QLatin1StringView(name));
        return widget && widget->isVisible();
    };
    return QTest::qWaitFor(isShown, limitMs) ? widget : nullptr;
}

/// Opens a panel from a menu command, and closes it.
bool usePanel(const QWidget *window, const char *menu, int tag, const char *panelName)
{
    auto *panelMenu = window->findChild<PulldownButton *>(QLatin1StringView(menu));
    QAction *item = panelMenu ? panelMenu->itemWithTag(tag) : nullptr;
    if (!item)
        return false;
    item->trigger();
    auto *panel = shown<QFileDialog>(window, panelName);
    if (!panel)
        return false;
    panel->setViewMode(QFileDialog::List);
    panel->setDirectory(QDir::rootPath());
    panel->reject();
    return true;
}

bool useColorDialog(const QWidget *window)
{
    auto *well = shown<ColorWell>(window, "mMainColor");
    if (!well)
        return false;
    well->click();
    const auto *dialog = shown<QColorDialog>(well, "colorDialog");
    if (!dialog)
        return false;
    for (auto *button : dialog->findChildren<QPushButton *>()) {
        if (button->text().contains(u"Add to Custom Colors"_s, Qt::CaseInsensitive)) {
            button->click();
            return true;
        }
    }
    return false;
}

/// Operates everything that a user would; returns true when all of it exists.
bool useEverything()
{
    MainWindow *window = nullptr;
    for (QWidget *each : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<MainWindow *>(each))
            window = found;
    }
    auto *tabs = window ? window->findChild<QTabWidget *>(u"mKeyboardTabView"_s) : nullptr;
    const auto *key = window ? window->findChild<QAbstractButton *>(u"mW"_s) : nullptr;
    if (!tabs || !key || !QTest::qWaitFor([key] { return key->isEnabled(); }, limitMs))
        return false;
    window->findChild<QAbstractButton *>(u"mW"_s)->click();
    tabs->setCurrentIndex(1);
    if (!usePanel(window, "mSettingsProfile", ProfileCommands::importProfile, "mProfileFileBrowserPanel"))
        return false;
    tabs->setCurrentIndex(2);
    window->findChild<TableView *>(u"mMacroTableView"_s)->selectRow(0);
    if (!usePanel(window, "mSettingsMacro", MacroCommands::exportMacro, "mSavePanel"))
        return false;
    tabs->setCurrentIndex(3);
    return useColorDialog(window);
}

/// Logs the events of the program's windows to a file, each when it begins.
class Logger : public QObject
{
public:
    explicit Logger(const QString &path) : mFile(path) { mIsOpen = mFile.open(QIODevice::WriteOnly); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (!mIsOpen || !widget || widget->objectName().isEmpty())
            return false;
        const QWindow *window = widget->window()->windowHandle();
        if (event->type() == QEvent::Paint && window && window->isExposed())
            write("painted", widget);
        if (event->type() == QEvent::Hide)
            write("hidden", widget);
        return false;
    }

private:
    void write(const char *what, const QWidget *widget)
    {
        mFile.write(QByteArray(what) + ' ' + widget->objectName().toUtf8() + '\n');
        mFile.flush();
    }

    QFile mFile;
    bool mIsOpen = false;
};

const QString applicationInterface = u"org.freedesktop.Application"_s;

QString applicationPath()
{
    return u'/' + QString(DaemonProtocol::configuratorIdentifier).replace(u'.', u'/');
}

QDBusMessage activation(const QVariantMap &platformData)
{
    QDBusMessage call = QDBusMessage::createMethodCall(DaemonProtocol::configuratorIdentifier, applicationPath(),
                                                       applicationInterface, u"Activate"_s);
    call << platformData;
    return call;
}

/// In the place of a running configurator: keeps what a second start sends.
class ActivationReceiver : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    QList<QVariantMap> received;

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData) { received += platformData; }
    Q_SCRIPTABLE void Open(const QStringList &, const QVariantMap &platformData) { received += platformData; }
};

/// For the program that this test starts.
void useProgram()
{
    if (const QString log = qEnvironmentVariable(logVariable); !log.isEmpty()) {
        auto *logger = new Logger(log);
        logger->setParent(qApp);
        qApp->installEventFilter(logger);
    }
    if (qEnvironmentVariableIsSet(useVariable)) {
        QTimer::singleShot(0, qApp, [] {
            std::puts(useEverything() ? "used" : "not used");
            std::fflush(stdout);
            QApplication::quit();
        });
    }
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(useProgram)

class ApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void leavesOnlyItsOwnFiles();
    void writesNoFailureToStandardError_data();
    void writesNoFailureToStandardError();
    void appearsBeforeItSendsARequest_data();
    void appearsBeforeItSendsARequest();
    void programContinuesAndQuitsAfterLargeNotifications();
    void secondStartHandsItsFilesOver_data();
    void secondStartHandsItsFilesOver();
    void secondStartHandsItsTokenOver_data();
    void secondStartHandsItsTokenOver();
    void anActivationGetsItsToken_data();
    void anActivationGetsItsToken();
    void theCompositorGetsTheToken();

private:
    /// Starts this test as the program, for a user without any files.
    void start(const QProcessEnvironment &changes, const QStringList &arguments = {});
    /// All files of the user, with their paths below the home folder.
    [[nodiscard]] QStringList userFiles() const;

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<QProcess> mProgram;
};

void ApplicationTest::init()
{
    mProgram = std::make_unique<QProcess>();
    mFolder = std::make_unique<QTemporaryDir>();
    const QDir folder(mFolder->path());
    QVERIFY(folder.mkpath(u"home/Documents"_s) && folder.mkpath(u"runtime"_s));
    QCOMPARE(QProcess::execute(u"cp"_s, {u"-r"_s, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources"_s,
                                         folder.filePath(u"resources"_s)}),
             0);
}

void ApplicationTest::start(const QProcessEnvironment &changes, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name.startsWith(u"XDG_"_s))
            environment.remove(name);
    }
    environment.insert(u"HOME"_s, mFolder->filePath(u"home"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, mFolder->filePath(u"runtime"_s));
    environment.insert(u"QUILL_KESTRA_RESOURCES"_s, mFolder->filePath(u"resources"_s));
    environment.insert(u"KESTRA_TEST_PROGRAM"_s, u"1"_s);
    environment.insert(u"KESTRA_BENCH_READY"_s, u"1"_s);
    environment.insert(u"KESTRA_SPARE_DAEMONS"_s, u"1"_s);
    environment.insert(changes);
    mProgram->setProcessEnvironment(environment);
    mProgram->start(QCoreApplication::applicationFilePath(), arguments);
    QVERIFY(mProgram->waitForStarted());
}

QStringList ApplicationTest::userFiles() const
{
    QStringList files;
    const QDir home(mFolder->filePath(u"home"_s));
    for (QDirIterator all(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); all.hasNext();)
        files += home.relativeFilePath(all.next());
    // The index that the system's font library creates for every program.
    files.removeIf([](const QString &file) { return file.startsWith(u".cache/fontconfig/"_s); });
    return files;
}

void ApplicationTest::leavesOnlyItsOwnFiles()
{
    const ScriptedDaemon daemon(sampleDocument());
    QProcessEnvironment changes;
    changes.insert(QString::fromLatin1(useVariable), u"1"_s);
    start(changes);
    QVERIFY(mProgram->waitForFinished(3 * limitMs));
    QCOMPARE(mProgram->exitStatus(), QProcess::NormalExit);
    QVERIFY(mProgram->readAllStandardOutput().split('\n').contains("used"));
    QStringList files = userFiles();
    files.removeAll(u".local/share/quill-kestra/Kestra.plist"_s);
    QCOMPARE(files, QStringList());
}

void ApplicationTest::writesNoFailureToStandardError_data()
{
    QTest::addColumn<QString>("failure");
    for (const char *failure : {"none", "no bus", "full disk", "damaged resources"})
        QTest::newRow(failure) << QString::fromLatin1(failure);
}

void ApplicationTest::writesNoFailureToStandardError()
{
    QFETCH(QString, failure);
    const ScriptedDaemon daemon(sampleDocument());
    QProcessEnvironment changes;
    if (failure == u"no bus")
        changes.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + mFolder->filePath(u"none"_s));
    if (failure == u"damaged resources") {
        writeFile(mFolder->filePath(u"resources/Kestra.plist"_s), "{ half");
        QVERIFY(QDir(mFolder->filePath(u"resources/texts"_s)).removeRecursively());
    }
    if (failure == u"full disk") {
        mProgram->setChildProcessModifier([] {
            const rlimit nothing{1, 1};
            ::setrlimit(RLIMIT_FSIZE, &nothing);
        });
    }
    start(changes);
    QTRY_VERIFY_WITH_TIMEOUT(mProgram->canReadLine(), limitMs);
    QCOMPARE(mProgram->readLine().trimmed(), "ready");
    mProgram->terminate();
    QVERIFY(mProgram->waitForFinished(limitMs));
    QCOMPARE(mProgram->exitStatus(), QProcess::NormalExit);
    QCOMPARE(mProgram->exitCode(), 0);
    QCOMPARE(mProgram->readAllStandardError(), QByteArray());
}

void ApplicationTest::appearsBeforeItSendsARequest_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("answersRequests");
    QTest::addColumn<bool>("showsSheet");
    for (const bool answers : {true, false}) {
        const char *daemon = answers ? "daemon answers" : "daemon answers the bus alone";
        QTest::addRow("normal, %s", daemon) << QStringList() << answers << true;
        QTest::addRow("background, %s", daemon) << QStringList{u"--background"_s} << answers << true;
        QTest::addRow("without notice, %s", daemon) << QStringList{u"--no-launch-notice"_s} << answers << false;
    }
}

void ApplicationTest::appearsBeforeItSendsARequest()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, answersRequests);
    QFETCH(bool, showsSheet);
    const QString logPath = mFolder->filePath(u"log"_s);
    std::promise<QByteArray> logAtRequest;
    std::future<QByteArray> atRequest = logAtRequest.get_future();
    ScriptedDaemon daemon(sampleDocument());
    daemon.setScript(Command::openDevice, [&](const auto &) {
        QFile log(logPath);
        logAtRequest.set_value(log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray());
        const auto reply = ScriptedDaemon::encoded({{u"ReturnStatus"_s, 1}});
        return answersRequests ? std::vector<ScriptedDaemon::Reply>{{reply}} : std::vector<ScriptedDaemon::Reply>();
    });
    QProcessEnvironment changes;
    changes.insert(QString::fromLatin1(logVariable), logPath);
    start(changes, arguments);
    const bool isAsked = atRequest.wait_for(std::chrono::milliseconds(limitMs)) == std::future_status::ready;
    mProgram->terminate();
    QVERIFY(mProgram->waitForFinished(limitMs));
    QVERIFY(isAsked);
    const QByteArrayList log = atRequest.get().split('\n');
    QVERIFY(log.contains("painted mMainWindow"));
    QVERIFY(log.contains("painted mA"));
    // The sheet was shown and hidden.
    QCOMPARE(log.contains("painted mRestoringStateWindow"), showsSheet);
    QCOMPARE(log.indexOf("hidden mRestoringStateWindow") > log.indexOf("painted mRestoringStateWindow"), showsSheet);
}

void ApplicationTest::programContinuesAndQuitsAfterLargeNotifications()
{
    const QString profileUpdated(DaemonProtocol::profileUpdated);
    ScriptedDaemon daemon(sampleDocument());
    daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, 1}});
    const RawPoster other;
    start({});
    QTRY_VERIFY_WITH_TIMEOUT(mProgram->canReadLine(), limitMs);
    QCOMPARE(mProgram->readLine().trimmed(), "ready");
    daemon.forgetRequests();
    for (int count = 0; count < 6; ++count)
        other.post(profileUpdated, 40'000'000);
    other.waitUntilPosted();
    QTRY_COMPARE_WITH_TIMEOUT(daemon.count(Command::readSettings), 6, limitMs);
    daemon.postNotification(profileUpdated);
    QTRY_COMPARE_WITH_TIMEOUT(daemon.count(Command::readSettings), 7, limitMs);
    // A program that no longer reads from the bus would not release the device, and would wait for the bus at its end.
    mProgram->terminate();
    QVERIFY(mProgram->waitForFinished(limitMs));
    QCOMPARE(mProgram->exitStatus(), QProcess::NormalExit);
    QCOMPARE(daemon.count(Command::releaseDevice), 1);
}

void ApplicationTest::secondStartHandsItsFilesOver_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("paths");
    QTest::newRow("none") << QStringList() << QStringList();
    QTest::newRow("path from the folder of the caller, and address")
        << QStringList{u"a b.KestraProfile"_s, u"file:///tmp/c%20d.KestraMacro"_s}
        << QStringList{u"runtime/a b.KestraProfile"_s, u"/tmp/c d.KestraMacro"_s};
    // The first instance reports them.
    for (const QString &argument : {u"https://example.org/x.KestraProfile"_s, u"file://elsewhere/x"_s, u""_s})
        QTest::addRow("not a local file: %s", qPrintable(argument)) << QStringList{argument} << QStringList{argument};
}

void ApplicationTest::secondStartHandsItsFilesOver()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, paths);
    const SingleInstance first(DaemonProtocol::configuratorIdentifier);
    QVERIFY(!first.isAnotherRunning());
    QSignalSpy activations(&first, &SingleInstance::activationRequested);
    QSignalSpy openings(&first, &SingleInstance::openingRequested);
    mProgram->setWorkingDirectory(mFolder->filePath(u"runtime"_s));
    start({}, arguments);
    QTRY_COMPARE_WITH_TIMEOUT(mProgram->state(), QProcess::NotRunning, limitMs);
    QCOMPARE(mProgram->exitCode(), 0);
    QCOMPARE(activations.size(), 1);
    QStringList handedOver;
    for (const QList<QVariant> &opening : openings) {
        for (const QString &address : opening.first().toStringList())
            handedOver += paths.contains(address) ? address : QUrl(address).toLocalFile();
    }
    for (QString &path : paths)
        path = arguments.contains(path) || QFileInfo(path).isAbsolute() ? path : mFolder->filePath(path);
    QCOMPARE(handedOver, paths);
}

void ApplicationTest::secondStartHandsItsTokenOver_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QVariantMap>("platformData");
    const QVariantMap both{{u"activation-token"_s, u"a token"_s}, {u"desktop-startup-id"_s, u"an ID"_s}};
    for (const bool hasFile : {false, true}) {
        const QStringList arguments = hasFile ? QStringList{u"/tmp/a.KestraMacro"_s} : QStringList();
        const char *file = hasFile ? "a file" : "no file";
        QTest::addRow("%s, started by the desktop", file) << arguments << both;
        QTest::addRow("%s, started elsewhere", file) << arguments << QVariantMap();
    }
}

void ApplicationTest::secondStartHandsItsTokenOver()
{
    QFETCH(QStringList, arguments);
    QFETCH(QVariantMap, platformData);
    QDBusConnection bus = QDBusConnection::sessionBus();
    ActivationReceiver first;
    QVERIFY(bus.registerObject(applicationPath(), &first, QDBusConnection::ExportScriptableSlots));
    QVERIFY(bus.registerService(DaemonProtocol::configuratorIdentifier));
    const auto guard = qScopeGuard([&bus] {
        bus.unregisterService(DaemonProtocol::configuratorIdentifier);
        bus.unregisterObject(applicationPath());
    });
    QProcessEnvironment changes;
    changes.insert(u"DESKTOP_STARTUP_ID"_s, platformData.value(u"desktop-startup-id"_s).toString());
    changes.insert(u"XDG_ACTIVATION_TOKEN"_s, platformData.value(u"activation-token"_s).toString());
    start(changes, arguments);
    QTRY_COMPARE_WITH_TIMEOUT(mProgram->state(), QProcess::NotRunning, limitMs);
    QCOMPARE(first.received, QList{platformData});
}

void ApplicationTest::anActivationGetsItsToken_data()
{
    QTest::addColumn<QVariantMap>("platformData");
    QTest::addColumn<QString>("token");
    const auto token = [](const QVariant &value) { return QVariantMap{{u"activation-token"_s, value}}; };
    const QVariantMap startup{{u"desktop-startup-id"_s, u"an ID"_s}};
    QTest::newRow("none") << QVariantMap() << QString();
    QTest::newRow("token") << token(u"a token"_s) << u"a token"_s;
    QTest::newRow("startup ID") << startup << u"an ID"_s;
    QVariantMap both = token(u"a token"_s);
    both.insert(startup);
    QTest::newRow("both") << both << u"a token"_s;
    QTest::newRow("other type") << token(QVariantMap{{u"a token"_s, u"a token"_s}}) << QString();
    // A message of this size would end the connection to the compositor, and with it the program.
    QTest::newRow("too long") << token(QString(5000, u'a')) << QString();
}

void ApplicationTest::anActivationGetsItsToken()
{
    QFETCH(QVariantMap, platformData);
    const SingleInstance instance(DaemonProtocol::configuratorIdentifier);
    QVERIFY(!instance.isAnotherRunning());
    QStringList tokens;
    connect(&instance, &SingleInstance::activationRequested, this,
            [&tokens] { tokens += qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); });
    const QDBusConnection client = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"client"_s);
    const auto guard = qScopeGuard([] { QDBusConnection::disconnectFromBus(u"client"_s); });
    const QDBusPendingCallWatcher call(client.asyncCall(activation(platformData)));
    QTRY_VERIFY(call.isFinished());
    QCOMPARE(tokens.size(), 1);
    QTEST(tokens.first(), "token");
    // A program that this one starts later does not get it.
    QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

void ApplicationTest::theCompositorGetsTheToken()
{
    TestDesktop desktop(TestDesktop::Kind::wayland);
    QVERIFY(desktop.start());
    ScriptedDaemon daemon(sampleDocument());
    daemon.setReply(Command::openDevice, {{u"ReturnStatus"_s, 1}});
    QProcessEnvironment changes = desktop.in({});
    changes.insert(u"WAYLAND_DEBUG"_s, u"client"_s); // writes each message to the compositor
    start(changes);
    QTRY_VERIFY_WITH_TIMEOUT(mProgram->canReadLine(), limitMs);
    QDBusConnection::sessionBus().call(activation({{u"activation-token"_s, u"token-of-the-click"_s}}));
    QByteArray messages;
    const auto isActivated = [&] {
        messages += mProgram->readAllStandardError();
        return messages.contains(".activate(\"token-of-the-click\", wl_surface@");
    };
    QVERIFY(QTest::qWaitFor(isActivated, limitMs));
    mProgram->terminate();
    QVERIFY(mProgram->waitForFinished(limitMs));
    QCOMPARE(mProgram->exitStatus(), QProcess::NormalExit);
}

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsSet("KESTRA_TEST_PROGRAM"))
        return runConfigurator(argc, argv);
    QApplication application(argc, argv);
    ApplicationTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "applicationtest.moc"
