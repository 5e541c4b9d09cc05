// SPDX-License-Identifier: MIT
#include "tests/chaos/windowfixture.h"

#include "base/settingskeys.h"
#include "tests/chaos/chaosrun.h"
#include "tests/support/stoppedprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcessEnvironment>

#include <csignal>

using namespace Qt::StringLiterals;

WindowFixture::~WindowFixture()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    resume(); // a test that failed may have left it stopped
    mProcess.kill();
    mProcess.waitForFinished();
}

bool WindowFixture::start(const QProcessEnvironment &environment)
{
    mProcess.setProcessEnvironment(environment);
    mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mProcess.start(QStringLiteral(KESTRA_WINDOW_PROCESS), QStringList());
    return mProcess.waitForStarted() && !show().isEmpty();
}

void WindowFixture::stop() const
{
    stopProcess(mProcess.processId());
}

void WindowFixture::resume() const
{
    ::kill(static_cast<pid_t>(mProcess.processId()), SIGCONT);
}

int WindowFixture::finish()
{
    mProcess.closeWriteChannel();
    if (!awaitEvents([this] { return mProcess.state() == QProcess::NotRunning; }))
        return -1;
    return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
}

void WindowFixture::send(const QByteArray &command)
{
    mProcess.write(command + '\n');
    mProcess.waitForBytesWritten();
}

QByteArray WindowFixture::answer()
{
    const bool isThere = awaitEvents([this] { return hasAnswer() || mProcess.state() == QProcess::NotRunning; });
    return isThere ? mProcess.readLine().trimmed() : QByteArray();
}

QByteArray WindowFixture::ask(const QByteArray &command)
{
    send(command);
    return answer();
}

QJsonObject WindowFixture::show()
{
    return QJsonDocument::fromJson(ask("show")).object();
}

bool WindowFixture::shows(const QVariantMap &document)
{
    const QJsonObject shown = show();
    const auto isShown = [&](QLatin1StringView key, QLatin1StringView name) {
        return shown.value(name).toArray() == QJsonArray::fromVariantList(document.value(key).toList());
    };
    return shown.value(u"isEnabled"_s).toBool() && isShown(SettingsKeys::profiles, "profiles"_L1)
           && isShown(SettingsKeys::macros, "macros"_L1);
}
