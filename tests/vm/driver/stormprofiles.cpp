// SPDX-License-Identifier: MIT
#include "tests/vm/driver/stormprofiles.h"

#include "tests/vm/driver/failure.h"

#include <linux/input-event-codes.h>

#include <fstream>
#include <map>
#include <sstream>

namespace {

using Key = KeyModel::Key;
using Kind = KeyModel::Assignment::Kind;

constexpr int macroCount = 3;
constexpr Key keyN = 0x11;
constexpr Key keyZ = 0x1D;
constexpr std::array<Key, 8> sentKeys{0x04, 0x1B, 0x1C, 0x1E, 0x1F, 0xE0, 0xE1, 0};
constexpr std::array<Key, 4> macroKeys{0x0B, 0x0C, 0x0D, 0xE4}; // H, I, J, Right Control

const std::map<Key, int> codes{
    {0x04, KEY_A},          {0x05, KEY_B},         {0x06, KEY_C},         {0x07, KEY_D},        {0x08, KEY_E},
    {0x09, KEY_F},          {0x0A, KEY_G},         {0x0B, KEY_H},         {0x0C, KEY_I},        {0x0D, KEY_J},
    {0x11, KEY_N},          {0x1B, KEY_X},         {0x1C, KEY_Y},         {0x1D, KEY_Z},        {0x1E, KEY_1},
    {0x1F, KEY_2},          {0x39, KEY_CAPSLOCK},  {0x70, KEY_F21},       {0x71, KEY_F22},      {0x72, KEY_F23},
    {0xE0, KEY_LEFTCTRL},   {0xE1, KEY_LEFTSHIFT}, {0xE2, KEY_LEFTALT},   {0xE3, KEY_LEFTMETA}, {0xE4, KEY_RIGHTCTRL},
    {0xE5, KEY_RIGHTSHIFT}, {0xE6, KEY_RIGHTALT},  {0xE7, KEY_RIGHTMETA},
};

KeyModel::Assignment randomAssignment(std::mt19937 &random, std::vector<int> &freeMacros)
{
    constexpr std::array repeats{1, 2, 5, KeyModel::untilReleased, KeyModel::untilPressedAgain};
    constexpr std::array kinds{Kind::defaultKey, Kind::singleKey, Kind::singleKey, Kind::singleKey,
                               Kind::singleKey,  Kind::nothing,   Kind::macro,     Kind::profile};
    KeyModel::Assignment assignment{.kind = kinds[random() % kinds.size()]};
    if (assignment.kind == Kind::singleKey) {
        assignment.key = sentKeys[random() % sentKeys.size()];
        for (Key modifier = KeyModel::firstModifier; modifier < KeyModel::firstModifier + 8; ++modifier) {
            if (modifier != macroKeys.back() && random() % 4 == 0)
                assignment.modifiers.insert(modifier);
        }
    } else if (assignment.kind == Kind::profile) {
        assignment.number = static_cast<int>(random() % StormProfiles::boundProfile);
    } else if (assignment.kind == Kind::macro && !freeMacros.empty()) {
        // On one key alone, so its rounds can be counted.
        assignment.number = freeMacros.back();
        freeMacros.pop_back();
        assignment.repeat = repeats[random() % repeats.size()];
    } else {
        assignment.kind = assignment.kind == Kind::macro ? Kind::nothing : assignment.kind;
    }
    return assignment;
}

std::string integer(const std::string &name, int value)
{
    return "<key>" + name + "</key><integer>" + std::to_string(value) + "</integer>";
}

std::string entryText(const KeyModel::Assignment &assignment)
{
    int command = 45;
    int param1 = assignment.number;
    int param2 = 0;
    switch (assignment.kind) {
    case Kind::defaultKey: break;
    case Kind::singleKey:
        command = 16;
        param1 = assignment.key;
        for (const Key modifier : assignment.modifiers)
            param2 |= 1 << (modifier - KeyModel::firstModifier);
        break;
    case Kind::nothing: command = 20; break;
    case Kind::macro:
        command = 10;
        param2 = assignment.repeat;
        break;
    case Kind::profile: command = 17; break;
    }
    return "<dict>" + integer("command", command) + integer("param1", param1) + integer("param2", param2) + "</dict>";
}

void import(Machine &machine, const std::string &what, const std::string &path, const std::string &content)
{
    std::ofstream(path) << "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" << content << "</dict></plist>";
    machine.mustControl({what, "import", path});
}

} // namespace

StormProfiles::StormProfiles(std::mt19937 &random)
{
    for (int number = 0; number < macroCount; ++number) {
        KeyModel::Macro macro;
        for (int count = static_cast<int>(random() % 4); count > 0; --count)
            macro.push_back({.pause = std::chrono::milliseconds(random() % 3),
                             .key = macroKeys[random() % macroKeys.size()],
                             .isDown = random() % 2 == 0});
        macro.push_back({.pause = std::chrono::milliseconds(2), .key = endOfRound(number), .isDown = true});
        macro.push_back({.pause = std::chrono::milliseconds(2), .key = endOfRound(number), .isDown = false});
        macros.push_back(macro);
    }
    profiles.emplace_back();
    for (int number = 1; number <= boundProfile; ++number) {
        std::vector<int> freeMacros{0, 1, 2};
        KeyModel::Profile &profile = profiles.emplace_back();
        for (const std::uint8_t key : pressedKeys)
            profile[key] = randomAssignment(random, freeMacros);
        profile[keyN] = {};
        profile[keyZ] = {.kind = Kind::nothing};
    }
}

void StormProfiles::install(Machine &machine) const
{
    for (std::size_t number = 0; number < macros.size(); ++number) {
        std::string events;
        for (const KeyModel::MacroEvent &event : macros[number])
            events += "<dict>" + integer("command", event.isDown)
                      + integer("delay", static_cast<int>(event.pause.count())) + integer("page", 7)
                      + integer("argument", event.key) + "</dict>";
        import(machine, "macro", machine.folder() + "/Storm.KestraMacro",
               "<key>MacroName</key><string>Storm</string>" + integer("delay", 20)
                   + "<key>sequence</key><dict><key>Events</key><array>" + events + "</array></dict>");
    }
    for (std::size_t number = 1; number < profiles.size(); ++number) {
        std::string keys;
        for (const auto &[key, assignment] : profiles[number])
            keys += "<key>" + std::to_string(key) + "</key>" + entryText(assignment);
        std::string text = "<key>ProfileName</key><string>Storm</string><key>Keys</key><dict>" + keys + "</dict>";
        if (number == boundProfile)
            text += integer("AutoSwitchOn", 1) + "<key>AppInfo</key><dict><key>identifier</key><string>" + application
                    + "</string></dict>";
        import(machine, "profile", machine.folder() + "/Storm.KestraProfile", text);
    }
}

int StormProfiles::codeOf(Key key)
{
    if (key >= KeyModel::firstOther)
        return key - KeyModel::firstOther;
    const auto found = codes.find(key);
    if (found == codes.end())
        throw Failure("no code of usage " + std::to_string(key));
    return found->second;
}

bool StormProfiles::isOfMacro(int code)
{
    return code == KEY_H || code == KEY_I || code == KEY_J || code == KEY_RIGHTCTRL
           || (code >= KEY_F21 && code <= KEY_F23);
}
