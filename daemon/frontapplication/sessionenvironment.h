// SPDX-License-Identifier: MIT
// The variables by which programs find the desktop, for a daemon that was started before there was one: taken from the
// service manager of the user, to whom the desktop tells them. Owned by the DesktopSearch; the daemon's thread, and no
// other may read the environment while read() is under way.
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

    /// Asks the manager and sets, changes and removes variables as it says. One that the process was started with stays
    /// as it was. `done` runs once, also when there is no manager; never within the call.
    void read(std::function<void()> done);

    /// The variables that are taken over.
    [[nodiscard]] static QStringList variables();

private:
    void take(const QStringList &assignments);

    QDBusConnection mBus;
    QStringList mTaken; // the variables that the process was started without
};
