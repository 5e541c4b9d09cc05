// SPDX-License-Identifier: MIT
// The program of windowprocess.cpp, as a child of the test. The test's thread.
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

    /// False when it does not come.
    [[nodiscard]] bool start(const QProcessEnvironment &environment);
    /// Lets the process stand still (SIGSTOP), and lets it continue (SIGCONT).
    void stop() const;
    void resume() const;
    /// Ends it as closing its input does; its exit code, -1 when it did not end normally.
    [[nodiscard]] int finish();

    /// Sends a command and returns at once.
    void send(const QByteArray &command);
    /// Waits for the answer to the oldest command without one; empty when there is none in the end.
    [[nodiscard]] QByteArray answer();
    [[nodiscard]] bool hasAnswer() const { return mProcess.canReadLine(); }
    [[nodiscard]] QByteArray ask(const QByteArray &command);
    [[nodiscard]] QJsonObject show();
    /// Whether it can be used and shows the profiles and macros of `document`.
    [[nodiscard]] bool shows(const QVariantMap &document);

private:
    QProcess mProcess;
};
