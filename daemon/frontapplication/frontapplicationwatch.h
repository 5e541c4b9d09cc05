// SPDX-License-Identifier: MIT
// Follows the application in front through the first source that works here, and finds another one when that is lost.
// Owned by the daemon's process; the daemon's thread.
#pragma once

#include "daemon/frontapplication/frontapplicationsource.h"

#include <QLatin1StringView>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class FrontApplicationWatch : public QObject
{
    Q_OBJECT

public:
    struct SourceKind
    {
        QLatin1StringView name; ///< as the status shows it
        std::function<std::unique_ptr<FrontApplicationSource>()> make;
    };

    /// Sources are tried in the order of `kinds`.
    explicit FrontApplicationWatch(std::vector<SourceKind> kinds);

    /// Begins with the first kind, unless a source works or all are being tried. The outcome is sourceFound() or
    /// sourceMissing(), later.
    void start();
    [[nodiscard]] bool isTrying() const { return mSource && !mIsReady; }

    /// The source that tells, or FrontApplicationKeys::noSource.
    [[nodiscard]] QString sourceName() const;
    /// Whether the source tells of every application; false without a source.
    [[nodiscard]] bool seesAllWindows() const { return mIsReady && mSource->seesAllWindows(); }
    [[nodiscard]] const FrontApplication &application() const { return mApplication; }

    /// What somebody tells who is no source. It counts until the next report of anyone.
    void report(const FrontApplication &application);

Q_SIGNALS:
    void sourceFound();
    /// None works, or the one that did is gone and none takes its place: only start() leads on.
    void sourceMissing();
    void applicationChanged(const FrontApplication &application);

private:
    void tryKind(std::size_t index);
    void sourceFailed(const QString &reason);
    void setApplication(const FrontApplication &application);

    std::vector<SourceKind> mKinds;
    std::size_t mKind = 0; // of mSource
    std::unique_ptr<FrontApplicationSource> mSource;
    bool mIsReady = false;
    bool mHasSaidNone = false; // once in the log, not at every start()
    FrontApplication mApplication;
    QTimer mNothingInFront;
};
