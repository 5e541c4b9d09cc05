// SPDX-License-Identifier: MIT
#include "app/application.h"

#include "app/keyboard_configuratorappdelegate.h"
#include "app/keyboardmaincontroller.h"
#include "app/mainwindow.h"
#include "app/util/resources.h"
#include "app/util/text.h"
#include "platform/terminationsignals.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

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
    parser.addPositionalArgument(u"file"_s, localizedText("lkeyArgumentFile"), u"[file]"_s);
    parser.process(application);
    return {parser.isSet(restored) || application.isSessionRestored(), parser.isSet(background),
            parser.isSet(withoutNotice), parser.positionalArguments()};
}

/// Writes "ready" to standard output once the opened device has been painted; bench/startup.py waits for it.
class ReadyReporter : public QObject
{
public:
    explicit ReadyReporter(QWidget *window) : QObject(window) { window->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // The first painting comes with the window's exposure, every other by a request of the window's own.
        if (event->type() != QEvent::UpdateRequest && event->type() != QEvent::Paint)
            return false;
        watched->removeEventFilter(this);
        // After the painting that this event asks for.
        QTimer::singleShot(0, this, [] {
            std::puts("ready");
            std::fflush(stdout);
        });
        return false;
    }
};

} // namespace

QVariantMap launchUserInfo(const Launch &launch)
{
    if (launch.isRestored || launch.isForBackground || !launch.files.isEmpty())
        return {{launchIsDefaultLaunchKey, false}};
    if (launch.isWithoutNotice)
        return {};
    return {{launchIsDefaultLaunchKey, true}};
}

void installTexts(const QString &folder, const QStringList &languages)
{
    const auto install = [&folder](const QString &language) {
        auto *table = new QTranslator(QCoreApplication::instance());
        if (table->load(language, folder))
            return QCoreApplication::installTranslator(table);
        delete table;
        return false;
    };
    install(u"en"_s);
    for (QString language : languages) {
        language.replace(u'-', u'_');
        if (language.section(u'_', 0, 0) == "en"_L1 || install(language))
            return;
    }
}

int runConfigurator(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"kestra-configurator"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRA_VERSION));
    QGuiApplication::setDesktopFileName(u"org.quillkestra.Configurator"_s);
    installTexts(resourcePath(u"texts"_s), QLocale::system().uiLanguages());
    QGuiApplication::setApplicationDisplayName(localizedText("lkeyProductName"));
    const Launch launch = parseCommandLine(application);

    MainWindow window;
    KeyboardMainController controller;
    window.assemble(&controller);
    Keyboard_ConfiguratorAppDelegate delegate(&window, &controller);
    const TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, &application, &QApplication::quit);
    QObject::connect(&application, &QApplication::aboutToQuit, &delegate,
                     &Keyboard_ConfiguratorAppDelegate::applicationWillTerminate);
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &delegate,
                     [&delegate](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationInactive)
                             delegate.applicationWillResignActive();
                     });
    if (qEnvironmentVariableIsSet("KESTRA_BENCH_READY")) {
        QObject::connect(&controller, &KeyboardMainController::deviceInitialized, &window,
                         [&window] { new ReadyReporter(&window); });
    }

    const QVariantMap userInfo = launchUserInfo(launch);
    delegate.applicationWillFinishLaunching(userInfo);
    window.show();
    // From the event loop, so that the window is on the screen while the device is opened.
    QTimer::singleShot(0, &delegate, [&delegate, userInfo] { delegate.applicationDidFinishLaunching(userInfo); });
    return QApplication::exec();
}
