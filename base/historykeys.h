// SPDX-License-Identifier: MIT
// The bus object with the history of the settings: its name, its errors, the keys of an entry and their values. The
// daemon keeps the keys and values of an entry on the disk too: never rename one. docs/daemon-protocol.md explains
// them.
#pragma once

#include <QLatin1StringView>

namespace HistoryKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name, and the names of its errors
inline constexpr Key objectPath{"/History"};
inline constexpr Key interfaceName{"org.quillkestra.History"};
inline constexpr Key unknownError{"org.quillkestra.History.Error.Unknown"};
inline constexpr Key outdatedError{"org.quillkestra.History.Error.Outdated"};
inline constexpr Key notInEffectError{"org.quillkestra.History.Error.NotInEffect"};
inline constexpr Key unreachableError{"org.quillkestra.History.Error.Unreachable"};
inline constexpr Key invalidError{"org.quillkestra.History.Error.Invalid"};
inline constexpr Key faultyError{"org.quillkestra.History.Error.Faulty"};
inline constexpr Key unreadableError{"org.quillkestra.History.Error.Unreadable"};
inline constexpr Key notSavedError{"org.quillkestra.History.Error.NotSaved"};

// Every entry
inline constexpr Key id{"Id"};
inline constexpr Key time{"Time"}; // milliseconds since 1970, UTC
inline constexpr Key author{"Author"};
inline constexpr Key kind{"Kind"};
inline constexpr Key state{"State"};
inline constexpr Key next{"Next"}; // of at most two entries

// Values of the author
inline constexpr Key authorConfigurator{"configurator"};
inline constexpr Key authorKestractl{"kestractl"};
inline constexpr Key authorKeyboard{"keyboard"};
inline constexpr Key authorClient{"client"};
inline constexpr Key authorUnknown{"unknown"};

// Values of the state
inline constexpr Key stateDone{"done"};
inline constexpr Key stateUndone{"undone"};
inline constexpr Key stateOutOfReach{"out of reach"};

// Values of "Next": what the call of this name does with the entry
inline constexpr Key nextUndo{"undo"};
inline constexpr Key nextRedo{"redo"};

// The change, by its kind
inline constexpr Key profile{"Profile"};
inline constexpr Key macro{"Macro"};
inline constexpr Key name{"Name"};
inline constexpr Key key{"Key"};
inline constexpr Key assignment{"Assignment"};
inline constexpr Key count{"Count"};
inline constexpr Key value{"Value"};
inline constexpr Key isOn{"On"};
inline constexpr Key color{"Color"};
inline constexpr Key application{"Application"};
inline constexpr Key target{"Target"};
inline constexpr Key change{"Change"};

// Values of the kind
inline constexpr Key kindKey{"key"};
inline constexpr Key kindKeys{"keys"};
inline constexpr Key kindProfileAdded{"profile added"};
inline constexpr Key kindProfileDeleted{"profile deleted"};
inline constexpr Key kindProfileRenamed{"profile renamed"};
inline constexpr Key kindProfileChosen{"profile chosen"};
inline constexpr Key kindProfileBound{"profile bound"};
inline constexpr Key kindProfileUnbound{"profile unbound"};
inline constexpr Key kindProfileDisplay{"profile display"};
inline constexpr Key kindProfileChanged{"profile changed"};
inline constexpr Key kindProfilesMoved{"profiles moved"};
inline constexpr Key kindLight{"light"};
inline constexpr Key kindBrightness{"brightness"};
inline constexpr Key kindColor{"color"};
inline constexpr Key kindEffect{"effect"};
inline constexpr Key kindMacroAdded{"macro added"};
inline constexpr Key kindMacroDeleted{"macro deleted"};
inline constexpr Key kindMacroRenamed{"macro renamed"};
inline constexpr Key kindMacroRecorded{"macro recorded"};
inline constexpr Key kindMacroChanged{"macro changed"};
inline constexpr Key kindEventsAdded{"events added"};
inline constexpr Key kindEventsRemoved{"events removed"};
inline constexpr Key kindEventsChanged{"events changed"};
inline constexpr Key kindDelaysSet{"delays set"};
inline constexpr Key kindGameMode{"game mode"};
inline constexpr Key kindSeveral{"several"};
inline constexpr Key kindUndo{"undo"};
inline constexpr Key kindRedo{"redo"};
inline constexpr Key kindRestore{"restore"};
inline constexpr Key kindDocument{"document"};
inline constexpr Key kindElsewhere{"elsewhere"};

// The outcome of Restore and Preview
inline constexpr Key isAlone{"Alone"};
inline constexpr Key others{"Others"};
inline constexpr Key newest{"Newest"};

// The outcome of Show, and the further keys and kinds of its parts
inline constexpr Key parts{"Parts"};
inline constexpr Key before{"Before"};
inline constexpr Key after{"After"};
inline constexpr Key index{"Index"};
inline constexpr Key event{"Event"};
inline constexpr Key kindEvents{"events"};
inline constexpr Key kindEvent{"event"};

} // namespace HistoryKeys
