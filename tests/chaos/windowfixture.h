// SPDX-License-Identifier: MIT
// Runs the program of windowprocess.cpp as a child process. The test's thread.
#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QVariantMap>

class WindowFixture
{
public:
    WindowFixture() = default;
    ~WindowFixture();
    Q_DISABLE_COPY_MOVE(WindowFixture)

    /// Returns false when the window does not answer.
    [[nodiscard]] bool start(const QProcessEnvironment &environment);
    /// Stops the process (SIGSTOP); resume() continues it (SIGCONT).
    void stop() const;
    void resume() const;
    /// Closes the input of the process, which ends it. Returns its exit code, -1 when it did not end normally.
    [[nodiscard]] int finish();

    /// Sends a command and returns at once.
    void send(const QByteArray &command);
    /// Waits for the answer to the oldest command without one; empty when none comes in time.
    [[nodiscard]] QByteArray answer();
    [[nodiscard]] bool hasAnswer() const { return mProcess.canReadLine(); }
    [[nodiscard]] QByteArray ask(const QByteArray &command);
    [[nodiscard]] QJsonObject show();
    /// Whether the window can be used and shows the profiles and macros of `document`.
    [[nodiscard]] bool shows(const QVariantMap &document);

private:
    QProcess mProcess;
};
