// SPDX-License-Identifier: MIT
// A source of the application in front. Owned by the FrontApplicationWatch; main thread only.
#pragma once

#include "base/frontapplication.h"

#include <QObject>

#include <utility>

/// Uses events of the desktop, without polling. Never waits for the desktop after the start: a desktop that hangs must
/// not block the daemon.
class FrontApplicationSource : public QObject
{
    Q_OBJECT

public:
    /// Begins; the outcome is ready() or unusable().
    virtual void start() = 0;

    /// False if some applications of this desktop are hidden from it.
    [[nodiscard]] virtual bool seesAllWindows() const { return true; }

    /// Whether clients of the bus may report the application as well; `client` is the unique name of one.
    [[nodiscard]] virtual bool takesReportsOf(const QString & /*client*/) const { return true; }

Q_SIGNALS:
    /// The source works. It then signals the application in front, now and at every change.
    void ready();
    void applicationChanged(const FrontApplication &application);
    /// The source does not exist or has disappeared; no more signals follow. `reason` is for the log. start() may emit
    /// this.
    void unusable(const QString &reason);

protected:
    /// Emits unusable(), the first time only.
    void fail(const QString &reason)
    {
        if (!std::exchange(mHasFailed, true))
            Q_EMIT unusable(reason);
    }
    [[nodiscard]] bool hasFailed() const { return mHasFailed; }

private:
    bool mHasFailed = false;
};
