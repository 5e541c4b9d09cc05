// SPDX-License-Identifier: MIT
// The lines of the event list, and whose lines they are: it keeps the shown lines, the latest request for lines, the
// latest reply, and whether the lines are about to be replaced. Owned by the macros tab. Main thread only.
#pragma once

#include <QScopedValueRollback>
#include <QStringList>
#include <QVariantMap>

/// A macro is a record of the settings document. Two records are the same macro if they have the same identifier and
/// the same events. Without an identifier, the records must be equal.
class MacroLines
{
public:
    /// Row n of the event list is entry n.
    [[nodiscard]] const QStringList &shown() const { return mShown; }
    /// True if this row is a delay. Delays and events alternate, but some events have a delay and no row of their own.
    /// A line that is not one of the daemon's is a delay in an odd row. False if there is no such row.
    [[nodiscard]] bool isDelay(int row) const;
    /// False if lines of these events, under this identifier, were requested last and have come. Also false during a
    /// replacement.
    [[nodiscard]] bool areOutdatedFor(const QVariantMap &macro) const;

    // A request
    void beginRequest(const QVariantMap &macro);
    /// Shows lines from the daemon. They also answer an open request.
    void take(const QStringList &lines);
    /// Returns true if lines have come since beginRequest(). Otherwise shows the latest reply if it was for this
    /// macro, and else no lines; the lines are then outdated.
    [[nodiscard]] bool endRequest();

    // The latest reply
    /// Shows the latest reply. Returns false, and changes nothing, if it was not for this macro.
    [[nodiscard]] bool showReplyFor(const QVariantMap &macro);
    /// Forgets the latest reply, which an edit of the events has outdated. The shown lines stay.
    void forgetReply();

    // Times at which the tab must not fetch lines. Each ends with the returned object.
    /// An operation is in progress that fetches the lines at its end.
    [[nodiscard]] QScopedValueRollback<bool> beginReplacement() { return QScopedValueRollback(mIsReplacing, true); }
    /// The selection follows the selected macro, which has moved or is gone: its lines stay.
    [[nodiscard]] QScopedValueRollback<bool> beginFollowing() { return QScopedValueRollback(mIsFollowing, true); }
    [[nodiscard]] bool areFollowing() const { return mIsFollowing; }

    // Lines that do not answer a request
    void clear() { mShown.clear(); }
    /// Adds a line that was recorded.
    void append(const QString &line) { mShown.append(line); }

private:
    QStringList mShown;
    QVariantMap mRequestedMacro; ///< empty when no lines came
    QVariantMap mRepliedMacro;   ///< the macro of the latest reply
    QStringList mReply;
    bool mHaveLinesCome = false; ///< since the latest request
    bool mIsReplacing = false;
    bool mIsFollowing = false;
};
