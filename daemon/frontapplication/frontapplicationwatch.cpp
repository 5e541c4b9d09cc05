// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/frontapplicationwatch.h"

#include "base/frontapplicationkeys.h"
#include "daemon/system/logging.h"

using namespace Qt::StringLiterals;

namespace {

// Between two windows, many desktops have a moment without any, which is not a change of its own.
constexpr std::chrono::milliseconds betweenWindows{40};

} // namespace

FrontApplicationWatch::FrontApplicationWatch(std::vector<SourceKind> kinds) : mKinds(std::move(kinds))
{
    mNothingInFront.setSingleShot(true);
    mNothingInFront.setInterval(betweenWindows);
    mNothingInFront.setTimerType(Qt::PreciseTimer);
    mNothingInFront.callOnTimeout(this, [this] { setApplication({}); });
}

QString FrontApplicationWatch::sourceName() const
{
    return mIsReady ? mKinds.at(mKind).name : FrontApplicationKeys::noSource;
}

void FrontApplicationWatch::start()
{
    if (!mSource)
        tryKind(0);
}

void FrontApplicationWatch::tryKind(std::size_t index)
{
    mIsReady = false;
    mSource.reset();
    ++mAttempt;
    if (index >= mKinds.size()) {
        if (!std::exchange(mHasSaidNone, true))
            qCInfo(lcFront, "no source reports the application in front: profiles follow reports of clients alone");
        Q_EMIT sourceMissing();
        return;
    }
    mKind = index;
    mSource = mKinds.at(index).make();
    connect(mSource.get(), &FrontApplicationSource::ready, this, [this] {
        mIsReady = true;
        mHasSaidNone = false;
        qCInfo(lcFront, "%s reports the application in front", mKinds.at(mKind).name.data());
        Q_EMIT sourceFound();
    });
    connect(mSource.get(), &FrontApplicationSource::applicationChanged, this, &FrontApplicationWatch::report);
    // Queued: a source must not be destroyed while it emits the signal. It may then have been replaced.
    connect(
        mSource.get(), &FrontApplicationSource::unusable, this,
        [this, attempt = mAttempt](const QString &reason) {
            if (attempt == mAttempt)
                sourceFailed(reason);
        },
        Qt::QueuedConnection);
    mSource->start();
}

void FrontApplicationWatch::sourceFailed(const QString &reason)
{
    if (mIsReady)
        qCWarning(lcFront, "desktop: %s: %s", mKinds.at(mKind).name.data(), qUtf8Printable(reason));
    else
        qCDebug(lcFront, "desktop: %s: %s", mKinds.at(mKind).name.data(), qUtf8Printable(reason));
    if (!mIsReady)
        return tryKind(mKind + 1);
    report({}); // its windows disappeared with it
    tryKind(0);
}

void FrontApplicationWatch::report(const FrontApplication &application)
{
    if (application.isNone()) {
        mNothingInFront.start();
        return;
    }
    mNothingInFront.stop();
    setApplication(application);
}

bool FrontApplicationWatch::reportBy(const QString &client, const FrontApplication &application)
{
    if (mIsReady && !mSource->takesReportsOf(client))
        return false;
    report(application);
    Q_EMIT clientReported(client);
    return true;
}

void FrontApplicationWatch::setApplication(const FrontApplication &application)
{
    if (application == mApplication)
        return;
    mApplication = application;
    qCDebug(lcFront, "in front: \"%s\"", qUtf8Printable(application.name()));
    Q_EMIT applicationChanged(application);
}
