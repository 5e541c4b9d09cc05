// SPDX-License-Identifier: MIT
// One change of a key as the user feels it: from the call of the hub, over the bus, through the real daemon and its
// disk, back into the document and onto the screen. Run it on a bus of its own:
//   dbus-run-session -- build/release/bin/bench_updatekey
#include "app/application.h"
#include "app/keyboardmaincontroller.h"
#include "app/mainwindow.h"
#include "app/util/propertylist.h"
#include "app/util/resources.h"
#include "app/util/settingskeys.h"
#include "keys/keyboardkeyscontroller.h"
#include "platform/messageport.h"
#include "tests/support/fulldocument.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The real daemon with the full document, on state of its own.
class Daemon
{
public:
    Daemon()
    {
        const QString folder = mState.filePath(u"quill-kestra"_s);
        QDir().mkpath(folder);
        const std::optional<QByteArray> data = PropertyList::writeBinary(fullDocument());
        if (!data || !PropertyList::writeFileAtomically(folder + u"/settings.plist"_s, *data))
            qFatal("cannot write the settings");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_STATE_HOME"_s, mState.path());
        mProcess.setProcessEnvironment(environment);
        mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        mProcess.start(QCoreApplication::applicationDirPath() + u"/QuillKestraDaemon"_s, QStringList());
        QElapsedTimer timer;
        timer.start();
        while (!RemoteMessagePort::open(DaemonProtocol::requestPortName) && timer.elapsed() < 5000)
            mProcess.waitForReadyRead(10);
    }
    ~Daemon()
    {
        mProcess.terminate();
        mProcess.waitForFinished();
    }

private:
    QTemporaryDir mState;
    QProcess mProcess;
};

struct Program
{
    Program()
    {
        window.assemble(&controller);
        controller.setMMainWindow(&window);
        window.show();
        QApplication::processEvents();
        controller.initializeDevice();
        if (controller.profilesArray().size() != 20)
            qFatal("the daemon did not answer with the full document");
        QApplication::processEvents();
    }

    Daemon daemon;
    MainWindow window;
    KeyboardMainController controller;
};

void updateKeyAndRedraw(benchmark::State &state)
{
    Program program;
    QWidget *picture = program.window.findChild<QWidget *>(u"mKeysBox"_s);
    int command = 20;
    for (auto _ : state) {
        QVariantMap keys = program.controller.currentProfileDict().value(SettingsKeys::keys).toMap();
        QVariantMap entry = keys.value(u"4"_s).toMap();
        command = command == 20 ? 45 : 20;
        entry[SettingsKeys::command] = command;
        keys[u"4"_s] = entry;
        program.controller.updateKeySettings({{SettingsKeys::keys, keys}});
        picture->repaint();
    }
    const QVariantMap stored = program.controller.currentProfileDict().value(SettingsKeys::keys).toMap();
    if (stored.value(u"4"_s).toMap().value(SettingsKeys::command).toInt() != command)
        state.SkipWithError("the change did not come back");
}

void selectKeyAndRedraw(benchmark::State &state)
{
    Program program;
    QWidget *picture = program.window.findChild<QWidget *>(u"mKeysBox"_s);
    KeyboardKeysController *keys = program.controller.keysController();
    bool isFirst = true;
    for (auto _ : state) {
        isFirst ? keys->clickA(nullptr) : keys->clickL(nullptr);
        isFirst = !isFirst;
        picture->repaint();
    }
}

BENCHMARK(updateKeyAndRedraw)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(50)->Repetitions(5);
BENCHMARK(selectKeyAndRedraw)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(200)->Repetitions(5);

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    installTexts(resourcePath(u"texts"_s), {u"en"_s});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
