// SPDX-License-Identifier: MIT
// What the daemon's settings have to be, worked out beside the daemon: begins with its document and follows every
// change with the daemon's own rules for documents. Knows where the records went that an operation is about. A value.
#pragma once

#include "base/daemonprotocol.h"

#include <QStringList>
#include <QVariantMap>

#include <optional>

/// How a daemon keeps a command from being carried out.
enum class Obstruction {
    refused,             ///< the reply has a status other than 0, and no document
    refusedWithDocument, ///< likewise, with the document as it still is
    unanswered           ///< no reply comes
};

struct ObstructedCommand
{
    DaemonProtocol::Command command;
    Obstruction obstruction;
};

class Ledger
{
public:
    using Command = DaemonProtocol::Command;

    Ledger() = default;
    /// `document`: a whole document as the daemon keeps it. `profile`, `macro`: rows of what the operation is about.
    Ledger(QVariantMap document, int profile, int macro);

    [[nodiscard]] const QVariantMap &document() const { return mDocument; }
    [[nodiscard]] int profile() const { return mProfile; } ///< -1 once it was deleted
    [[nodiscard]] int macro() const { return mMacro; }     ///< -1 once it was deleted
    void setProfile(int row) { mProfile = row; }
    void setMacro(int row) { mMacro = row; }
    [[nodiscard]] int activeProfile() const;
    [[nodiscard]] QVariantList profiles() const;
    [[nodiscard]] QVariantList macros() const;
    [[nodiscard]] QVariantMap profileRecord() const; ///< of profile(); empty when it is gone
    [[nodiscard]] QVariantMap macroRecord() const;   ///< of macro(); empty when it is gone

    void setObstructed(const std::optional<ObstructedCommand> &command) { mObstructed = command; }
    [[nodiscard]] bool isObstructed(Command command) const;
    [[nodiscard]] std::optional<Obstruction> obstructionOf(Command command) const;

    /// A request of another client. False, and a problem, when the rules refuse it.
    bool follow(Command command, const QVariantMap &request);
    /// A request of the window. False when it is obstructed and so changes nothing.
    bool apply(Command command, const QVariantMap &request);
    /// Changes these keys of the profile that the operation is about.
    bool changeProfile(const QVariantMap &settings);
    /// Gives a key of that profile this assignment.
    bool assignKey(int code, int assignment, const QVariant &param1, const QVariant &param2);
    /// The window drops the assignments of the kind `assignment` (10 macro, 17 profile) to the deleted row, and to rows
    /// from `count` on.
    void dropAssignments(int assignment, int deletedRow, int count);
    /// The events that were recorded for the macro that the operation is about, without their delays.
    void recordEvents(const QVariantList &events, bool isAppended);
    /// Takes the delays of recorded events over from `actual`, as the recording alone knows them.
    void adoptRecordedDelays(const QVariantMap &actual);

    /// What could not be followed: a mistake of the test.
    [[nodiscard]] const QStringList &problems() const { return mProblems; }

private:
    void moveRows(Command command, const QVariantMap &request);

    QVariantMap mDocument;
    int mProfile = -1;
    int mMacro = -1;
    std::optional<ObstructedCommand> mObstructed;
    QStringList mProblems;
};

/// Where two property lists differ, each place by its path and both values; empty when they are equal, also in type.
[[nodiscard]] QStringList differences(const QVariant &actual, const QVariant &expected, const QString &path = {});
