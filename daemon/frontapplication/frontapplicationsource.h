// SPDX-License-Identifier: MIT
// One way to learn which application is in front. Owned by the FrontApplicationWatch; the daemon's thread.
#pragma once

#include "daemon/frontapplication/frontapplication.h"

#include <QObject>

#include <utility>

/// Tells by events of the desktop, never by asking again and again, and never waits for the desktop once it has
/// started: a desktop that hangs must not take the daemon with it.
class FrontApplicationSource : public QObject
{
    Q_OBJECT

public:
    /// Begins; the outcome is ready() or unusable().
    virtual void start() = 0;

    /// False when some applications of this desktop are hidden from it.
    [[nodiscard]] virtual bool seesAllWindows() const { return true; }

Q_SIGNALS:
    /// It works: what is in front follows, now and at every change.
    void ready();
    void applicationChanged(const FrontApplication &application);
    /// It is not there, or is gone; nothing comes any more. `reason` is for the log. May be emitted in start().
    void unusable(const QString &reason);

protected:
    /// Emits unusable(), the first time.
    void fail(const QString &reason)
    {
        if (!std::exchange(mHasFailed, true))
            Q_EMIT unusable(reason);
    }
    [[nodiscard]] bool hasFailed() const { return mHasFailed; }

private:
    bool mHasFailed = false;
};
