// SPDX-License-Identifier: MIT
// A copy of the settings for each local day on which something changes, beside the settings. Owned by the DeviceDaemon;
// main thread only.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>

/// Each copy is the state at the beginning of its day: "settings-2026-11-21.plist". It is never overwritten, even if
/// the clock goes back.
class DailyBackups
{
public:
    static constexpr qsizetype maximumCount = 30;

    /// The copies are in `folder`.
    explicit DailyBackups(const QString &folder) : mFolder(folder) {}

    /// For tests.
    void setToday(std::function<QDate()> today) { mToday = std::move(today); }

    /// Call this before each change. If this is the first change of the day, writes `document` and removes the oldest
    /// copies beyond maximumCount. Logs a failure, which does not prevent the change.
    void beforeChange(const QVariantMap &document);
    /// Call this if the change could not be stored: a copy that beforeChange() has just made goes.
    void changeFailed();

    /// Whether a file with this name is a copy of a day.
    [[nodiscard]] static bool isName(const QString &fileName);

    /// The days with a copy, as "2026-11-21", the newest first.
    [[nodiscard]] QStringList days() const;
    /// The bytes of the copy of a day. The error is the system's reason, or says that there is none.
    [[nodiscard]] Result<QByteArray> read(const QString &day) const;
    /// Removes all copies. False if one is still there.
    [[nodiscard]] bool clear();

private:
    [[nodiscard]] QString path(const QString &day) const;
    void removeOldest(const QString &newest) const;

    QString mFolder;
    std::function<QDate()> mToday = QDate::currentDate;
    QDate mDay;    // of the last change
    QString mMade; // by the last beforeChange(); a path
};
