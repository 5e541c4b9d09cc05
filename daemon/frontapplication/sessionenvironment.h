// SPDX-License-Identifier: MIT
// The variables by which programs find the desktop, for a daemon that started before the desktop. The desktop passes
// them to the user's service manager, where this class reads them. Owned by the DesktopSearch; main thread only. No
// other thread may read the environment during read().
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <functional>

class SessionEnvironment : public QObject
{
    Q_OBJECT

public:
    explicit SessionEnvironment(const QDBusConnection &bus);

    /// Requests the manager's variables, then sets, changes and removes them accordingly. Variables with which the
    /// process was started remain unchanged. Calls `done` once, even without a manager, but never before this returns.
    void read(std::function<void()> done);

    /// The names of the variables that are copied.
    [[nodiscard]] static QStringList variables();

private:
    void take(const QStringList &assignments);

    QDBusConnection mBus;
    QStringList mTaken; // variables with which the process was not started
};
