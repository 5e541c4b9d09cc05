// SPDX-License-Identifier: MIT
#include "tests/daemon/keyboards/linux/stormsettings.h"

#include "keys/keymapping.h"
#include "macros/macrorecord.h"

#include <linux/input-event-codes.h>

#include <array>

using namespace Qt::StringLiterals;
using StormSettings::StormKey;
using Key = KeyModel::Key;

namespace {

constexpr Key mouseButton = KeyModel::firstOther + BTN_LEFT;

const std::vector<StormKey> firstKeys{
    {KEY_A, 0x70004},         {KEY_B, 0x70005},        {KEY_C, 0x70006},         {KEY_D, 0x70007},
    {KEY_1, 0x7001E},         {KEY_F1, 0x7003A},       {KEY_F15, 0x7006A},       {KEY_CAPSLOCK, 0x70039},
    {KEY_ENTER, 0x70028},     {KEY_ESC, 0x70029},      {KEY_BACKSPACE, 0x7002A}, {KEY_LEFTCTRL, 0x700E0},
    {KEY_LEFTSHIFT, 0x700E1}, {KEY_LEFTALT, 0x700E2},  {KEY_LEFTMETA, 0x700E3},  {KEY_RIGHTSHIFT, 0x700E5},
    {KEY_RIGHTMETA, 0x700E7}, {KEY_VOLUMEUP, 0xC00E9}, {BTN_SIDE, 0x90004},
};
// The system has changed some of its keys, and it has a code for M1.
const std::vector<StormKey> secondKeys{
    {KEY_A, 0x70004},      {KEY_B, 0x70005},         {KEY_C, 0x70006},         {KEY_1, 0x7001E},
    {KEY_MACRO1, 0x7006A}, {KEY_LEFTCTRL, 0x70039},  {KEY_DELETE, 0x7002A},    {KEY_ENTER, 0x70028},
    {KEY_ESC, 0x70029},    {KEY_LEFTSHIFT, 0x700E1}, {KEY_RIGHTMETA, 0x700E7}, {KEY_MUTE, 0xC00E2},
};
// It reports no HID usages.
const std::vector<StormKey> thirdKeys{
    {KEY_A, 0},     {KEY_B, 0},         {KEY_D, 0},        {KEY_1, 0},       {KEY_F15, 0},      {KEY_CAPSLOCK, 0},
    {KEY_ENTER, 0}, {KEY_BACKSPACE, 0}, {KEY_LEFTCTRL, 0}, {KEY_LEFTALT, 0}, {KEY_LEFTMETA, 0}, {KEY_VOLUMEUP, 0},
};

const std::vector<Key> sentKeys{4, 5, 6, 30, 31, 43, 106, 224, 225, 227, 0};
const std::vector<Key> macroKeys{4, 5, 31, 32, 224, 225, 230, mouseButton};

} // namespace

const std::vector<StormKey> &StormSettings::keysOf(int keyboard)
{
    return keyboard == 0 ? firstKeys : keyboard == 1 ? secondKeys : thirdKeys;
}

const std::vector<Key> &StormSettings::assignableKeys()
{
    static const std::vector<Key> keys{4, 5, 6, 7, 30, 58, 106, 57, 40, 41, 42, 76, 224, 225, 226, 227, 229, 231};
    return keys;
}

Key StormSettings::systemKeyOf(quint16 code)
{
    const HidUsage usage = KeyCodes::systemKeyOfCode(code);
    return usage.page == HidUsage::keyboardPage ? usage.usage : KeyModel::firstOther + usage.usage;
}

Key StormSettings::labelOf(quint16 code, quint32 scanCode)
{
    if (code == KEY_MACRO1)
        return 106;
    if (scanCode == 0)
        return systemKeyOf(code);
    return (scanCode >> 16) == HidUsage::keyboardPage ? static_cast<Key>(scanCode & 0xFFFF)
                                                      : KeyModel::firstOther + code;
}

quint16 StormSettings::codeOf(Key key)
{
    return key >= KeyModel::firstOther
               ? static_cast<quint16>(key - KeyModel::firstOther)
               : KeyCodes::linuxCode({HidUsage::keyboardPage, static_cast<quint16>(key)}).value_or(KEY_RESERVED);
}

KeyModel::Assignment StormSettings::randomAssignment(QRandomGenerator &random)
{
    using Kind = KeyModel::Assignment::Kind;
    constexpr std::array repeats{1, 1, 2, 3, 10, KeyModel::untilPressedAgain, KeyModel::untilReleased};
    constexpr std::array kinds{Kind::defaultKey, Kind::singleKey, Kind::singleKey, Kind::singleKey,
                               Kind::nothing,    Kind::macro,     Kind::macro,     Kind::profile};
    KeyModel::Assignment assignment{.kind = oneOf(kinds, random.generate())};
    switch (assignment.kind) {
    case Kind::defaultKey:
    case Kind::nothing: break;
    case Kind::singleKey: {
        assignment.key = oneOf(sentKeys, random.generate());
        const quint32 mask = random.bounded(3) == 0 ? 0xFFU : random.generate() & random.generate();
        for (Key bit = 0; bit < 8 && random.bounded(8) != 0; ++bit) {
            if (mask & (1U << bit))
                assignment.modifiers.insert(KeyModel::firstModifier + bit);
        }
        break;
    }
    case Kind::macro:
        assignment.number = random.bounded(macroCount + 1);
        assignment.repeat = oneOf(repeats, random.generate());
        break;
    case Kind::profile: assignment.number = random.bounded(profileCount + 1); break;
    }
    return assignment;
}

QVariantMap StormSettings::entryOf(const KeyModel::Assignment &assignment, bool isLaunch)
{
    using Kind = KeyModel::Assignment::Kind;
    using Command = KeyMappings::Assignment;
    const auto entry = [](Command command, const QVariant &param1, int param2) {
        return QVariantMap{{u"command"_s, qint32(command)}, {u"param1"_s, param1}, {u"param2"_s, param2}};
    };
    switch (assignment.kind) {
    case Kind::defaultKey: return entry(Command::defaultKey, 0, 0);
    case Kind::singleKey: {
        int modifiers = 0;
        for (const Key key : assignment.modifiers)
            modifiers |= 1 << (key - KeyModel::firstModifier);
        return entry(Command::singleKey, assignment.key, modifiers);
    }
    case Kind::nothing:
        return isLaunch ? entry(Command::launchProgram, u"/a.desktop"_s, 0) : entry(Command::disabled, 0, 0);
    case Kind::macro: return entry(Command::playMacro, assignment.number, assignment.repeat);
    case Kind::profile: return entry(Command::switchProfile, assignment.number, 0);
    }
    return {};
}

KeyModel::Macro StormSettings::randomMacro(QRandomGenerator &random)
{
    const bool hasPauses = random.bounded(3) != 0;
    KeyModel::Macro macro;
    for (int count = random.bounded(7); count > 0; --count)
        macro.push_back({.pause = std::chrono::milliseconds(hasPauses ? random.bounded(9) : 0),
                         .key = oneOf(macroKeys, random.generate()),
                         .isDown = random.bounded(2) == 0});
    return macro;
}

QVariantMap StormSettings::recordOf(const KeyModel::Macro &macro, int macroId)
{
    QVariantList events;
    for (const KeyModel::MacroEvent &event : macro) {
        const bool isButton = event.key >= KeyModel::firstOther;
        events += MacroRecord::eventRecord(
            {.command = event.isDown ? MacroRecord::keyDown : MacroRecord::keyUp,
             .delayMs = static_cast<int>(event.pause.count()),
             .page = isButton ? HidUsage::buttonPage : HidUsage::keyboardPage,
             .argument = static_cast<uint>(isButton ? event.key - mouseButton + 1 : event.key)});
    }
    return MacroRecord::withEvents({{u"macroID"_s, macroId}}, events);
}
