// SPDX-License-Identifier: MIT
// The table of operations: actions of a user that have a beginning and an end. Values; used on the test's thread.
#pragma once

#include "tests/app/secondhand/scene.h"

#include <functional>
#include <vector>

/// The kind decides, together with the subject, whether an operation survives an event.
enum class OperationKind {
    nameEdit,  ///< the user is typing a name in a table
    sheet,     ///< a sheet, a panel or an alert is open
    question,  ///< as sheet; without the keyboard it waits, and comes again
    popUp,     ///< a menu is open
    recording, ///< keys are being recorded
    click,     ///< a button is offered; nothing has begun
    drag       ///< the mouse holds a slider, or keys hold a value that is not yet stored
};

/// The subject of an operation.
enum class Subject {
    none,          ///< nothing that exists: the operation creates a record
    profile,       ///< the selected profile, by its name
    profilesKey,   ///< a key of the selected profile
    profilesLight, ///< the key lighting of the selected profile
    macro,         ///< the selected macro, by its name
    newMacro,      ///< the last macro, which the operation has added, for a key of the selected profile
    events         ///< the events of the selected macro
};

/// A way in which the user ends an operation.
struct End
{
    const char *name;
    std::function<void(Scene &)> act;
    std::function<void(Scene &)> change;     ///< enters the change into the ledger; empty: no change
    QList<DaemonProtocol::Command> commands; ///< the window's requests
};

struct Operation
{
    const char *name;
    Tab tab;
    OperationKind kind;
    Subject subject;
    std::function<void(Scene &)> begin; ///< also enters immediate changes into the ledger
    std::function<bool(const Scene &)> isOpen;
    QList<DaemonProtocol::Command> beginCommands;
    std::vector<End> ends;
    std::function<void(QVariantMap &document)> prepare = {}; ///< changes the start settings
    /// Enters into the ledger what stays when an event ends the operation, and its subject still exists.
    std::function<void(Scene &)> whenEnded = {};
    /// Checks effects besides the settings. Returns the problem; empty without one.
    std::function<QString(const Scene &, bool isCarriedOut)> outcome = {};
};

[[nodiscard]] std::vector<Operation> profileOperations();
[[nodiscard]] std::vector<Operation> macroOperations();
[[nodiscard]] std::vector<Operation> keyOperations();
[[nodiscard]] std::vector<Operation> lightingOperations();

/// The default profile that new and restored profiles are made from.
[[nodiscard]] QVariantMap defaultProfile(const Scene &scene);
