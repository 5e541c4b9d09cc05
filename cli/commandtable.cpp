// SPDX-License-Identifier: MIT
#include "cli/commandtable.h"

namespace {

// The texts are English and fixed: kestractl is written for scripts and terminals, and what it prints is documented.
constexpr CommandRow rows[] = {
    {QLatin1StringView("status"), QLatin1StringView(""), 0, 0, QLatin1StringView("--json"),
     QLatin1StringView("show whether the daemon runs, the keyboard, its firmware and what is active"), showStatus},
    {QLatin1StringView("document"), QLatin1StringView(""), 0, 0, QLatin1StringView("--json --plist"),
     QLatin1StringView("print all settings, as JSON or as a binary property list"), showDocument},
    {QLatin1StringView("profile list"), QLatin1StringView(""), 0, 0, QLatin1StringView("--json"),
     QLatin1StringView("list the profiles; the active one is marked with *"), listProfiles},
    {QLatin1StringView("profile switch"), QLatin1StringView("N|NAME"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("make profile number N, or the profile called NAME, the active one"), switchToProfile},
    {QLatin1StringView("key"), QLatin1StringView("KEY [KIND] [ARGUMENT]"), 1, 3,
     QLatin1StringView("--json --modifiers --repeat"),
     QLatin1StringView("show what a key does in the active profile, or assign it something else"), showOrAssignKey,
     keyCommandForms},
    {QLatin1StringView("focus"), QLatin1StringView("NAME"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("tell the daemon which application is in front, where the desktop does not"),
     tellFrontApplication},
    {QLatin1StringView("light"), QLatin1StringView("[SETTING] [VALUE]"), 0, 2, QLatin1StringView("--json"),
     QLatin1StringView("show the light of the active profile, or change it"), showOrSetLight, lightCommandForms},
    {QLatin1StringView("macro list"), QLatin1StringView(""), 0, 0, QLatin1StringView("--json"),
     QLatin1StringView("list the macros, with the number of their events"), listMacros},
    {QLatin1StringView("macro show"), QLatin1StringView("N|NAME"), 1, 1, QLatin1StringView("--json"),
     QLatin1StringView("show the events of a macro"), showMacro},
    {QLatin1StringView("macro add"), QLatin1StringView("[NAME]"), 0, 1, QLatin1StringView(""),
     QLatin1StringView("add a macro without events"), addMacro},
    {QLatin1StringView("macro rename"), QLatin1StringView("N|NAME NEWNAME"), 2, 2, QLatin1StringView(""),
     QLatin1StringView("give a macro another name"), renameMacro},
    {QLatin1StringView("macro delete"), QLatin1StringView("N|NAME"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("delete a macro, and what keys had to do with it"), deleteMacro},
    {QLatin1StringView("macro import"), QLatin1StringView("FILE"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("add the macro of a macro file"), importMacro},
    {QLatin1StringView("macro export"), QLatin1StringView("N|NAME FILE"), 2, 2, QLatin1StringView(""),
     QLatin1StringView("write a macro to a macro file"), exportMacro},
    {QLatin1StringView("macro record"), QLatin1StringView("N|NAME"), 1, 1, QLatin1StringView("--append --seconds"),
     QLatin1StringView("record the keys of the keyboard, until Return or for some seconds"), recordMacro,
     recordMacroForms},
    {QLatin1StringView("macro play"), QLatin1StringView("N|NAME"), 1, 1, QLatin1StringView("--seconds"),
     QLatin1StringView("press the key of the virtual keyboard that plays a macro"), playMacro, playMacroForms},
    {QLatin1StringView("keyboard press"), QLatin1StringView("KEY"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("press a key of the virtual keyboard and hold it"), pressKey},
    {QLatin1StringView("keyboard release"), QLatin1StringView("KEY"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("release a key of the virtual keyboard"), releaseKey},
    {QLatin1StringView("keyboard sent"), QLatin1StringView(""), 0, 0, QLatin1StringView("--json"),
     QLatin1StringView("list the keys that the computer now sees held on the virtual keyboard"), showSentKeys},
    {QLatin1StringView("keyboard attach"), QLatin1StringView(""), 0, 0, QLatin1StringView(""),
     QLatin1StringView("plug the virtual keyboard in"), attachKeyboard},
    {QLatin1StringView("keyboard remove"), QLatin1StringView(""), 0, 0, QLatin1StringView(""),
     QLatin1StringView("unplug the virtual keyboard"), removeKeyboard},
    {QLatin1StringView("keyboard game-mode"), QLatin1StringView(""), 0, 0, QLatin1StringView(""),
     QLatin1StringView("press the virtual keyboard's game mode key"), pressGameMode},
    {QLatin1StringView("keyboard macro-key"), QLatin1StringView(""), 0, 0, QLatin1StringView(""),
     QLatin1StringView("press the virtual keyboard's Macro key, which records a macro on the fly"), pressMacroKey},
    {QLatin1StringView("keyboard brightness"), QLatin1StringView("N|up|down"), 1, 1, QLatin1StringView(""),
     QLatin1StringView("press the virtual keyboard's brightness keys, or set its brightness from 0 to 4"),
     setBrightness},
};

} // namespace

std::span<const CommandRow> commandTable()
{
    return rows;
}
