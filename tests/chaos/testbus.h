// SPDX-License-Identifier: MIT
// A session bus that a test can end, in addition to the test's own. The test's thread.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>

class TestBus
{
public:
    TestBus() = default;
    ~TestBus() { end(); }
    Q_DISABLE_COPY_MOVE(TestBus)

    /// Returns false when the bus does not start.
    [[nodiscard]] bool start()
    {
        using namespace Qt::StringLiterals;
        mProcess.start(u"dbus-daemon"_s, {u"--config-file="_s + QStringLiteral(KESTRA_SESSION_CONFIGURATION),
                                          u"--nofork"_s, u"--print-address=1"_s});
        if (!mProcess.waitForStarted())
            return false;
        while (!mProcess.canReadLine() && mProcess.waitForReadyRead()) {
        }
        mAddress = QString::fromUtf8(mProcess.readLine().trimmed());
        return !mAddress.isEmpty();
    }

    void end()
    {
        mProcess.kill();
        mProcess.waitForFinished();
    }

    /// `environment` with this bus as the session bus.
    [[nodiscard]] QProcessEnvironment in(QProcessEnvironment environment) const
    {
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), mAddress);
        return environment;
    }

private:
    QProcess mProcess;
    QString mAddress;
};
