// SPDX-License-Identifier: MIT
// The settings that the daemon must have. A ledger begins with the daemon's document and applies every change to it by
// the daemon's own rules. It also follows the rows of the records that an operation is about. A value.
#pragma once

#include "base/daemonprotocol.h"

#include <QStringList>
#include <QVariantMap>

#include <optional>

/// The way in which the daemon obstructs a command. It never carries out an obstructed command.
enum class Obstruction {
    refused,             ///< the reply has a status other than 0, and no document
    refusedWithDocument, ///< the reply has a status other than 0, and the unchanged document
    unanswered           ///< there is no reply
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
    /// `document`: the daemon's whole document. `profile`, `macro`: the rows that the operation is about.
    Ledger(QVariantMap document, int profile, int macro);

    [[nodiscard]] const QVariantMap &document() const { return mDocument; }
    [[nodiscard]] int profile() const { return mProfile; } ///< -1 after its deletion
    [[nodiscard]] int macro() const { return mMacro; }     ///< -1 after its deletion
    void setProfile(int row) { mProfile = row; }
    void setMacro(int row) { mMacro = row; }
    [[nodiscard]] int activeProfile() const;
    [[nodiscard]] QVariantList profiles() const;
    [[nodiscard]] QVariantList macros() const;
    [[nodiscard]] QVariantMap profileRecord() const; ///< of profile(); empty after its deletion
    [[nodiscard]] QVariantMap macroRecord() const;   ///< of macro(); empty after its deletion

    void setObstructed(const std::optional<ObstructedCommand> &command) { mObstructed = command; }
    [[nodiscard]] bool isObstructed(Command command) const;
    [[nodiscard]] std::optional<Obstruction> obstructionOf(Command command) const;

    /// Applies a request of another client. When the rules refuse it, returns false and records a problem.
    bool follow(Command command, const QVariantMap &request);
    /// Applies a request of the window. Returns false and changes nothing when the request is obstructed.
    bool apply(Command command, const QVariantMap &request);
    /// Changes these keys of the profile that the operation is about.
    bool changeProfile(const QVariantMap &settings);
    /// Gives a key of that profile this assignment.
    bool assignKey(int code, int assignment, const QVariant &param1, const QVariant &param2);
    /// Empties the entries of the kind `assignment` (10 macro, 17 profile) that point to the deleted row or to a row
    /// from `count` on, as the window does after a deletion.
    void dropAssignments(int assignment, int deletedRow, int count);
    /// Saves recorded events, whose delays are not yet known, for the macro that the operation is about.
    void recordEvents(const QVariantList &events, bool isAppended);
    /// Replaces the events of that macro.
    void replaceEvents(const QVariantList &events);
    /// Copies the delays of recorded events from `actual`, the daemon's document.
    void adoptRecordedDelays(const QVariantMap &actual);

    /// Requests that the rules refused: mistakes in the test.
    [[nodiscard]] const QStringList &problems() const { return mProblems; }

private:
    void moveRows(Command command, const QVariantMap &request);

    QVariantMap mDocument;
    int mProfile = -1;
    int mMacro = -1;
    std::optional<ObstructedCommand> mObstructed;
    QStringList mProblems;
};

/// The differences of two property lists in values and types, each with its path; empty when they are equal.
[[nodiscard]] QStringList differences(const QVariant &actual, const QVariant &expected, const QString &path = {});
