// SPDX-License-Identifier: MIT
#include "app/application.h"

#include "app/afterpainting.h"
#include "app/fileopener.h"
#include "app/keyboard_configuratorappdelegate.h"
#include "app/keyboardmaincontroller.h"
#include "app/mainwindow.h"
#include "app/productlogo.h"
#include "base/daemonprotocol.h"
#include "base/filesizesignal.h"
#include "base/resources.h"
#include "base/text.h"
#include "platform/sessionbus.h"
#include "platform/singleinstance.h"
#include "platform/terminationsignals.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFontInfo>
#include <QFontMetrics>
#include <QLocale>
#include <QSettings>

#include <cstdio>
#include <dlfcn.h>
#include <functional>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

Launch parseCommandLine(const QGuiApplication &application)
{
    const QCommandLineOption restored(u"restored"_s, localizedText("lkeyOptionRestored"));
    const QCommandLineOption background(u"background"_s, localizedText("lkeyOptionBackground"));
    const QCommandLineOption withoutNotice(u"no-launch-notice"_s, localizedText("lkeyOptionNoLaunchNotice"));
    QCommandLineParser parser;
    parser.setApplicationDescription(localizedText("lkeyProductName"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({restored, background, withoutNotice});
    parser.addPositionalArgument(u"file"_s, localizedText("lkeyArgumentFile"), u"[file…]"_s);
    parser.process(application);
    return {parser.isSet(restored) || application.isSessionRestored(), parser.isSet(background),
            parser.isSet(withoutNotice), parser.positionalArguments()};
}

/// Reports to bench/startup.py and the tests, which wait for it.
void reportReady()
{
    QGuiApplication::sync(); // the display has the picture
    std::puts("ready");
    std::fflush(stdout);
}

/// Reads the list of fonts, for which the first text would otherwise wait. Must run beside the main thread, which waits
/// for the display meanwhile. The library need not be loaded: Qt is linked with it or does without it.
void prepareFonts()
{
    if (const auto initialize = reinterpret_cast<int (*)()>(::dlsym(RTLD_DEFAULT, "FcInit")))
        initialize();
}

/// Loads the font of all texts. Where the desktop names an alias such as "Sans Serif", uses the font's own name, for
/// two reasons. An alias is loaded as two fonts, an empty one and the actual one. Only under its own name does a font
/// have weights from which the keyboard picture can choose an existing one.
void prepareFont()
{
    QFont font = QApplication::font();
    const QString family = QFontInfo(font).family();
    if (font.family() != family) {
        font.setFamily(family);
        QApplication::setFont(font);
    }
    QFontMetrics(font).height();
}

QtMessageHandler defaultMessageHandler = nullptr;

/// Suppresses failures, also those of the libraries. Still writes messages that a debugging variable enables, and the
/// reason for a fatal error.
void writeNoFailures(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtWarningMsg && type != QtCriticalMsg)
        defaultMessageHandler(type, context, message);
}

/// The dialogs for files and colours would otherwise leave a file in the user's settings folder; they have no option to
/// prevent it.
void keepNoDialogSettings()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/dev/null"_s); // nothing can be kept there
}

MainControllerServices services()
{
    MainControllerServices result;
#ifdef KESTRA_BUILT_WITH_TESTS
    // Tests run beside daemons that they did not start.
    if (qEnvironmentVariableIsSet("KESTRA_SPARE_DAEMONS"))
        result.endProcesses = [](const QString &) {};
#endif
    return result;
}

/// Names the application and installs its texts.
void nameApplication()
{
    QCoreApplication::setApplicationName(u"kestra-configurator"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRA_VERSION));
    QGuiApplication::setDesktopFileName(u"org.quillkestra.Configurator"_s);
    installTexts(resourcePath(u"texts"_s), QLocale::system().uiLanguages());
    QGuiApplication::setApplicationDisplayName(localizedText("lkeyProductName")); // one of the texts
}

/// Connects to the session bus, and loads the font meanwhile.
void connectToBus()
{
    const std::jthread bus([] { (void)sharedSessionBus(); });
    prepareFont();
}

/// Shows the window when another instance is started.
void showOnActivation(const SingleInstance &instance, MainWindow &window)
{
    QObject::connect(&instance, &SingleInstance::activationRequested, &window, [&window] {
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
        window.show();
        window.raise();
        window.activateWindow();
    });
}

/// Makes the window and its controllers, shows the window and runs until the program quits. Returns the exit code.
int runWindow(const SingleInstance &instance, const Launch &launch)
{
    QGuiApplication::setWindowIcon(productLogo(64, 2));
    // Before the hub, whose controllers use its widgets to the end.
    MainWindow window;
    KeyboardMainController controller(services());
    window.assemble(&controller);
    Keyboard_ConfiguratorAppDelegate delegate(&window, &controller, [&window](const std::function<void()> &function) {
        new AfterPainting(&window, function);
    });
    // Before the launch: after it, every end must go through the delegate, also an end by a signal.
    const TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, qApp, &QApplication::quit);
    connectToApplication(delegate);
    if (qEnvironmentVariableIsSet("KESTRA_BENCH_READY")) {
        QObject::connect(&controller, &KeyboardMainController::deviceInitialized, &window,
                         [&window] { new AfterPainting(&window, reportReady); });
    }

    const QVariantMap userInfo = launchUserInfo(launch);
    delegate.applicationWillFinishLaunching(userInfo);
    showOnActivation(instance, window);
    window.show();
    FileOpener opener(controller, window);
    QObject::connect(&instance, &SingleInstance::openingRequested, &opener, &FileOpener::open);
    opener.open(launch.files);
    // After the window is shown: the delegate puts a sheet into it, and opens the keyboard once it is painted.
    delegate.applicationDidFinishLaunching(userInfo);
    return QApplication::exec();
}

} // namespace

QVariantMap launchUserInfo(const Launch &launch)
{
    if (launch.isRestored || launch.isForBackground)
        return {{launchIsDefaultLaunchKey, false}};
    if (launch.isWithoutNotice)
        return {};
    return {{launchIsDefaultLaunchKey, true}};
}

void connectToApplication(Keyboard_ConfiguratorAppDelegate &delegate)
{
    QObject::connect(qGuiApp, &QGuiApplication::aboutToQuit, &delegate,
                     &Keyboard_ConfiguratorAppDelegate::applicationWillTerminate);
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &delegate,
                     [&delegate](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationInactive)
                             delegate.applicationWillResignActive();
                     });
}

int runConfigurator(int argc, char *argv[])
{
    makeFileSizeLimitAnError(); // before other threads run
    // Before the application, whose libraries also report failures.
    defaultMessageHandler = qInstallMessageHandler(writeNoFailures);
    // Before the application: this thread waits for the display meanwhile.
    const std::jthread fonts(prepareFonts);
    QApplication application(argc, argv);
    keepNoDialogSettings(); // after the desktop's theme has read its settings
    nameApplication();
    // After the texts, which describe the options. Before the bus, which "--help" does not need.
    const Launch launch = parseCommandLine(application);

    connectToBus();
    // Before any widget is made, because a second instance must not show a window.
    const SingleInstance instance(DaemonProtocol::configuratorIdentifier);
    if (instance.isAnotherRunning()) {
        // Two instances would take each other's replies from the one reply port.
        QStringList addresses; // this process knows the folder that a path starts from
        for (const QString &argument : launch.files)
            addresses += addressOfArgument(argument);
        if (addresses.isEmpty())
            instance.activateOther();
        else
            instance.openInOther(addresses);
        return 0;
    }
    return runWindow(instance, launch);
}
