// SPDX-License-Identifier: MIT
// Decides what the status line shows: the state, a report of an event for a while, or that a command waits. Owned by
// the hub; main thread only.
#pragma once

#include "app/statuswords.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <optional>

class ConnectionNotice;
class StatusLine;

/// The times of the status line. Tests substitute their own.
struct StatusTimes
{
    std::chrono::milliseconds untilWaitIsShown{500};
    std::chrono::milliseconds report{15'000};
};

/// A report stays for StatusTimes::report, until the next one, or until a later action of the user has succeeded.
/// Successes in the same round of the event loop belong to the same action: they leave the report, because the user has
/// not seen it yet. Afterwards the line shows the state again.
class StatusReporter : public QObject
{
    Q_OBJECT

public:
    explicit StatusReporter(StatusTimes times, QObject *parent = nullptr);

    /// Shows everything in `line` from now on.
    void setLine(StatusLine *line);

    /// Also shows the state in `notice` from now on.
    void setNotice(ConnectionNotice *notice);

    void setState(const StatusState &state);
    void report(const StatusReport &report);
    /// Must be called when the daemon has made a change of the user.
    void changeSucceeded();

    /// The wait of one command. It must be called again and again during the wait. When the wait has lasted for
    /// StatusTimes::untilWaitIsShown, it paints the line and sends it to the display, without processing an event.
    class Wait
    {
    public:
        explicit Wait(StatusReporter &reporter) : mReporter(reporter) {}
        ~Wait();
        Wait(const Wait &) = delete;
        Wait &operator=(const Wait &) = delete;

        void operator()();
        /// An answer has come. Reports a wait that was shown afterwards as well: not every display shows a picture that
        /// is painted during a wait, and a screen reader gets no answer then.
        void end();

    private:
        StatusReporter &mReporter;
        std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
        bool mIsShown = false;
    };

private:
    void show();

    StatusTimes mTimes;
    QPointer<StatusLine> mLine;
    QPointer<ConnectionNotice> mNotice;
    StatusState mState;
    std::optional<StatusReport> mReport;
    bool mIsReportSeen = false; ///< the event loop has run since the report
    bool mIsWaiting = false;
    QTimer mReportEnd;
    QTimer mReportSeen;
};
