// SPDX-License-Identifier: MIT
// What a person does in the window that has a beginning and an end, as a table. Values; the test's thread.
#pragma once

#include "tests/app/secondhand/scene.h"

#include <functional>
#include <vector>

/// What becomes of an operation when something else happens in the middle of it depends on what it is ...
enum class OperationKind {
    nameEdit,  ///< a name half-typed in a table
    sheet,     ///< a sheet, a panel or an alert that is up
    popUp,     ///< a menu that is open
    recording, ///< keys being recorded
    drag       ///< a slider held by the mouse
};

/// ... and on what it is about.
enum class Subject {
    none,          ///< it makes a new record
    profile,       ///< the selected profile, by its name
    profilesKey,   ///< a key of the selected profile
    profilesLight, ///< the light of the selected profile
    macro,         ///< the selected macro, by its name
    events         ///< the events of the selected macro
};

/// A way in which the person ends an operation.
struct End
{
    const char *name;
    std::function<void(Scene &)> act;
    std::function<void(Scene &)> change;     ///< what it changes, as the ledger has it; empty: nothing
    QList<DaemonProtocol::Command> commands; ///< what the window sends for it
};

struct Operation
{
    const char *name;
    Tab tab;
    OperationKind kind;
    Subject subject;
    std::function<void(Scene &)> begin; ///< what it changes at once it also enters into the ledger
    std::function<bool(const Scene &)> isOpen;
    QList<DaemonProtocol::Command> beginCommands;
    std::vector<End> ends;
    std::function<void(QVariantMap &document)> prepare = {}; ///< changes the settings that it begins with
    /// What is wrong with what it leaves besides the settings; empty when nothing is.
    std::function<QString(const Scene &, bool isCarriedOut)> outcome = {};
};

[[nodiscard]] std::vector<Operation> profileOperations();
[[nodiscard]] std::vector<Operation> macroOperations();
[[nodiscard]] std::vector<Operation> keyOperations();
[[nodiscard]] std::vector<Operation> lightingOperations();

/// The default profile that new and restored profiles are made from.
[[nodiscard]] QVariantMap defaultProfile(const Scene &scene);
