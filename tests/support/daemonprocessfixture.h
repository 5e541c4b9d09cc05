// SPDX-License-Identifier: MIT
// A QuillKestraDaemon process for one test, with its settings in a temporary folder, and a client of it. Used on the
// test's thread; needs a private session bus.
#pragma once

#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "tests/support/stoppedprocess.h"

#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QVariantMap>

#include <csignal>
#include <functional>
#include <memory>
#include <optional>

class DaemonProcessFixture : public QObject
{
    Q_OBJECT

public:
    struct Reply
    {
        qint32 command = -1;
        QVariantMap values;
    };

    DaemonProcessFixture();
    ~DaemonProcessFixture() override;

    /// Starts `path` in place of the daemon of the build, from the next start on.
    void setProgram(const QString &path) { mProgram = path; }

    /// Starts the daemon and waits for its port. Returns false when the daemon ends or the port does not appear.
    [[nodiscard]] bool start(const std::function<void()> &inChild = {});
    /// Kills it as a crash would (SIGKILL) and waits until the bus has noticed.
    void kill();
    /// Ends it by SIGTERM and returns its exit code.
    int terminate() { return sendSignal(SIGTERM); }
    int sendSignal(int signalNumber);
    /// Suspends the process (stopProcess()), and resumes it (SIGCONT).
    void stop() const { stopProcess(processId()); }
    void resume() const { ::kill(static_cast<pid_t>(processId()), SIGCONT); }
    [[nodiscard]] bool isRunning() const { return mProcess && mProcess->state() == QProcess::Running; }
    [[nodiscard]] qint64 processId() const { return mProcess ? mProcess->processId() : 0; }
    /// Its log output since the start.
    [[nodiscard]] const QByteArray &log() { return mLog += mProcess->readAllStandardError(); }

    /// Runs another daemon to its end with `arguments`, in the same environment or with another state folder.
    QProcess *runAnother(const QStringList &arguments, const QString &stateHome = {});

    /// Sends a request that names this client's port; does not wait.
    void send(DaemonProtocol::Command command, QVariantMap request = {});
    /// Sends a request and waits for the reply; absent when none came in time.
    std::optional<Reply> request(DaemonProtocol::Command command, const QVariantMap &request = {});
    [[nodiscard]] QList<Reply> &replies() { return mReplies; }

    /// Calls a method of the virtual keyboard. Returns the name of the error; empty on success.
    QString callKeyboard(const QString &method, const QVariantList &arguments = {});
    [[nodiscard]] QVariant keyboardProperty(const QString &name);

    /// Stores `document` as the settings with which the daemon starts.
    [[nodiscard]] bool store(const QVariantMap &document) const;
    [[nodiscard]] QString settingsFolder() const { return mFolder.filePath(QStringLiteral("state/quill-kestra")); }
    [[nodiscard]] QProcessEnvironment &environment() { return mEnvironment; }
    [[nodiscard]] static QString portName() { return QStringLiteral("DaemonTestReplyPort"); }

private:
    QTemporaryDir mFolder;
    QProcessEnvironment mEnvironment;
    QString mProgram;
    std::unique_ptr<QProcess> mProcess;
    std::unique_ptr<QProcess> mOther;
    std::unique_ptr<LocalMessagePort> mPort;
    QList<Reply> mReplies;
    QByteArray mLog;
};
