// SPDX-License-Identifier: MIT
#include "bench/benchprogram.h"

#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "platform/messageport.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>

using namespace Qt::StringLiterals;

BenchDaemon::BenchDaemon(const QVariantMap &document)
{
    const QString folder = mState.filePath(u"quill-kestra"_s);
    QDir().mkpath(folder);
    const std::optional<QByteArray> data = PropertyList::writeBinary(document);
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

BenchDaemon::~BenchDaemon()
{
    mProcess.terminate();
    mProcess.waitForFinished();
}

BenchProgram::BenchProgram(const QVariantMap &document) : daemon(document)
{
    window.assemble(&controller);
    controller.setMMainWindow(&window);
    window.show();
    QApplication::processEvents();
    controller.initializeDevice();
    if (controller.profilesArray().size() != document.value(SettingsKeys::profiles).toList().size())
        qFatal("the daemon did not answer with its document");
    QApplication::processEvents();
}
