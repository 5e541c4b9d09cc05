// SPDX-License-Identifier: MIT
#include "app/statusreporter.h"

#include "app/connectionnotice.h"
#include "platform/flushdisplay.h"
#include "platform/statusline.h"

StatusReporter::StatusReporter(StatusTimes times, QObject *parent) : QObject(parent), mTimes(times)
{
    mReportEnd.setSingleShot(true);
    connect(&mReportEnd, &QTimer::timeout, this, [this] {
        mReport.reset();
        show();
    });
    mReportSeen.setSingleShot(true);
    connect(&mReportSeen, &QTimer::timeout, this, [this] { mIsReportSeen = true; });
}

void StatusReporter::setLine(StatusLine *line)
{
    mLine = line;
    show();
}

void StatusReporter::setNotice(ConnectionNotice *notice)
{
    mNotice = notice;
    if (mNotice)
        mNotice->show(mState);
}

void StatusReporter::setState(const StatusState &state)
{
    mState = state;
    if (mNotice)
        mNotice->show(mState);
    show();
}

void StatusReporter::report(const StatusReport &report)
{
    mReport = report;
    mIsReportSeen = false;
    mReportSeen.start(0);
    mReportEnd.start(mTimes.report);
    show();
}

void StatusReporter::changeSucceeded()
{
    if (!mReport || !mIsReportSeen)
        return;
    mReportEnd.stop();
    mReport.reset();
    show();
}

void StatusReporter::show()
{
    if (!mLine)
        return;
    if (mIsWaiting)
        mLine->setText(StatusWords::ofWait());
    else
        mLine->setText(mReport ? StatusWords::ofReport(*mReport) : StatusWords::ofState(mState));
}

StatusReporter::Wait::~Wait()
{
    if (!mIsShown)
        return;
    mReporter.mIsWaiting = false;
    mReporter.show();
}

void StatusReporter::Wait::operator()()
{
    if (mIsShown || std::chrono::steady_clock::now() - mStart < mReporter.mTimes.untilWaitIsShown)
        return;
    mIsShown = true;
    mReporter.mIsWaiting = true;
    mReporter.show();
    if (!mReporter.mLine)
        return;
    mReporter.mLine->repaint();
    flushDisplay();
}

void StatusReporter::Wait::end()
{
    if (!mIsShown)
        return;
    const auto waited = std::chrono::steady_clock::now() - mStart;
    mReporter.report({.event = StatusReport::Event::lateReply,
                      .number = int(std::chrono::ceil<std::chrono::seconds>(waited).count())});
}
