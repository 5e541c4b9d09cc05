// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/realtimekeeper.h"

#include <algorithm>
#include <utility>

RealtimeKeeper::RealtimeKeeper(Services services, std::chrono::milliseconds firstPause, QObject *parent)
    : QObject(parent), mServices(std::move(services)), mPause(firstPause)
{
    mTimer.setSingleShot(true);
    mTimer.setTimerType(Qt::VeryCoarseTimer);
    mTimer.callOnTimeout(this, &RealtimeKeeper::check);
}

void RealtimeKeeper::start()
{
    check();
}

/// The kernel reports no change of the priority. The timer starts again when the answer has come.
void RealtimeKeeper::check()
{
    if (mServices.isRealTime())
        return report();
    if (mIsKnown)
        report(); // the request may take a while
    mServices.request([this] { report(); });
}

void RealtimeKeeper::report()
{
    const bool isRealTime = mServices.isRealTime();
    const bool isNews = !std::exchange(mIsKnown, true) || isRealTime != mIsRealTime;
    mIsRealTime = isRealTime;
    mTimer.start(mPause);
    mPause = std::min(mPause * 2, longestPause);
    if (isNews)
        Q_EMIT found(isRealTime);
}
