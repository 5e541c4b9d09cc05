// SPDX-License-Identifier: MIT
// Follows the application in front through the first source that works, and finds another one when that is lost. Owned
// by the DaemonSession; main thread only.
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
        QLatin1StringView name; ///< as shown in the status
        std::function<std::unique_ptr<FrontApplicationSource>()> make;
    };

    /// Tries sources in the order of `kinds`.
    explicit FrontApplicationWatch(std::vector<SourceKind> kinds);

    /// Begins with the first kind, unless a source works or all are being tried. The outcome is sourceFound() or
    /// sourceMissing(), later.
    void start();
    /// Begins with the first kind although a source works: a better one may have appeared.
    void startOver() { tryKind(0); }
    [[nodiscard]] bool isTrying() const { return mSource && !mIsReady; }

    /// The working source, or FrontApplicationKeys::noSource.
    [[nodiscard]] QString sourceName() const;
    /// Whether the source reports every application; false without a source.
    [[nodiscard]] bool seesAllWindows() const { return mIsReady && mSource->seesAllWindows(); }
    [[nodiscard]] const FrontApplication &application() const { return mApplication; }

    /// Overrides the application in front, for callers other than a source. Applies until the next report from any
    /// caller or source.
    void report(const FrontApplication &application);
    /// The same for `client`, a unique name of the bus. False if the source takes no reports of it.
    [[nodiscard]] bool reportBy(const QString &client, const FrontApplication &application);

Q_SIGNALS:
    void sourceFound();
    /// No source works, or the working one was lost without a replacement. Only start() tries again.
    void sourceMissing();
    void applicationChanged(const FrontApplication &application);
    /// A report of this client has been taken.
    void clientReported(const QString &client);

private:
    void tryKind(std::size_t index);
    void sourceFailed(const QString &reason);
    void setApplication(const FrontApplication &application);

    std::vector<SourceKind> mKinds;
    std::size_t mKind = 0; // of mSource
    std::unique_ptr<FrontApplicationSource> mSource;
    int mAttempt = 0; // distinguishes mSource from earlier ones
    bool mIsReady = false;
    bool mHasSaidNone = false; // logged once, not at every start()
    FrontApplication mApplication;
    QTimer mNothingInFront;
};
