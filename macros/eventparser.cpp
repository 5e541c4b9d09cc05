// SPDX-License-Identifier: MIT
#include "macros/eventparser.h"

#include "macros/macrorecord.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Modifier
{
    quint8 bit;
    int hid;
    QLatin1StringView name;
};

// The boot keyboard's modifier byte (Device Class Definition for HID 1.11, section 8.3), lowest bit first.
constexpr std::array modifiers{
    Modifier{0x01, 224, "Left Control"_L1},  Modifier{0x02, 225, "Left Shift"_L1},
    Modifier{0x04, 226, "Left Alt"_L1},      Modifier{0x08, 227, "Left Command"_L1},
    Modifier{0x10, 228, "Right Control"_L1}, Modifier{0x20, 229, "Right Shift"_L1},
    Modifier{0x40, 230, "Right Alt"_L1},     Modifier{0x80, 231, "Right Command"_L1},
};

struct KeyName
{
    int hid;
    QLatin1StringView name;
};

// Sorted by code. Deliberate, as in the keyboard's legends: 42 (backspace) and 76 (forward delete) share a name, 100
// (the non-US backslash key) is "|", 71 is "Screen Lock" and 83 (Num Lock) is "Clear".
constexpr std::array keyNames{
    KeyName{40, "Return"_L1},      KeyName{41, "Escape"_L1},     KeyName{42, "Delete"_L1},
    KeyName{43, "Tab"_L1},         KeyName{44, "Space"_L1},      KeyName{45, "-"_L1},
    KeyName{46, "="_L1},           KeyName{47, "["_L1},          KeyName{48, "]"_L1},
    KeyName{49, "\\"_L1},          KeyName{51, ";"_L1},          KeyName{52, "'"_L1},
    KeyName{53, "`"_L1},           KeyName{54, ","_L1},          KeyName{55, "."_L1},
    KeyName{56, "/"_L1},           KeyName{57, "Caps Lock"_L1},  KeyName{58, "F1"_L1},
    KeyName{59, "F2"_L1},          KeyName{60, "F3"_L1},         KeyName{61, "F4"_L1},
    KeyName{62, "F5"_L1},          KeyName{63, "F6"_L1},         KeyName{64, "F7"_L1},
    KeyName{65, "F8"_L1},          KeyName{66, "F9"_L1},         KeyName{67, "F10"_L1},
    KeyName{68, "F11"_L1},         KeyName{69, "F12"_L1},        KeyName{70, "Print Screen"_L1},
    KeyName{71, "Screen Lock"_L1}, KeyName{72, "Pause"_L1},      KeyName{73, "Insert"_L1},
    KeyName{74, "Home"_L1},        KeyName{75, "Page Up"_L1},    KeyName{76, "Delete"_L1},
    KeyName{77, "End"_L1},         KeyName{78, "Page Down"_L1},  KeyName{79, "Right Arrow"_L1},
    KeyName{80, "Left Arrow"_L1},  KeyName{81, "Down Arrow"_L1}, KeyName{82, "Up Arrow"_L1},
    KeyName{83, "Clear"_L1},       KeyName{84, "Numpad /"_L1},   KeyName{85, "Numpad *"_L1},
    KeyName{86, "Numpad -"_L1},    KeyName{87, "Numpad +"_L1},   KeyName{88, "Numpad Enter"_L1},
    KeyName{89, "Numpad 1"_L1},    KeyName{90, "Numpad 2"_L1},   KeyName{91, "Numpad 3"_L1},
    KeyName{92, "Numpad 4"_L1},    KeyName{93, "Numpad 5"_L1},   KeyName{94, "Numpad 6"_L1},
    KeyName{95, "Numpad 7"_L1},    KeyName{96, "Numpad 8"_L1},   KeyName{97, "Numpad 9"_L1},
    KeyName{98, "Numpad 0"_L1},    KeyName{99, "Numpad ."_L1},   KeyName{100, "|"_L1},
    KeyName{101, "Menu"_L1},       KeyName{102, "Power"_L1},     KeyName{103, "Numpad ="_L1},
    KeyName{104, "F13"_L1},        KeyName{105, "F14"_L1},       KeyName{106, "F15"_L1},
    KeyName{107, "F16"_L1},        KeyName{108, "F17"_L1},       KeyName{109, "F18"_L1},
    KeyName{110, "F19"_L1},        KeyName{111, "F20"_L1},       KeyName{112, "F21"_L1},
    KeyName{113, "F22"_L1},        KeyName{114, "F23"_L1},       KeyName{115, "F24"_L1},
};

constexpr int firstCharacterKey = 4; // A; the letters and digits end before firstNamedKey
constexpr int firstNamedKey = 40;    // Return
constexpr uint lastNamedButton = 9;

QLatin1StringView modifierName(int hid)
{
    const auto found = std::ranges::find(modifiers, hid, &Modifier::hid);
    return found == modifiers.end() ? QLatin1StringView() : found->name;
}

QLatin1StringView keyName(int hid)
{
    const auto found = std::ranges::lower_bound(keyNames, hid, {}, &KeyName::hid);
    return found != keyNames.end() && found->hid == hid ? found->name : modifierName(hid);
}

struct ParsedEvent
{
    quint8 command; // only the low 8 bits are compared
    quint8 page;
    uint argument;
};

ParsedEvent parsed(const QVariantMap &event)
{
    const MacroRecord::Event fields = MacroRecord::eventFields(event);
    return {static_cast<quint8>(fields.command), static_cast<quint8>(fields.page), fields.argument};
}

bool hasLine(const ParsedEvent &event)
{
    if (event.command != MacroRecord::keyDown && event.command != MacroRecord::keyUp)
        return false;
    return event.page == MacroRecord::keyboardPage
           || (event.page == MacroRecord::buttonPage && event.argument >= 1 && event.argument <= lastNamedButton);
}

QString buttonName(uint button)
{
    switch (button) {
    case 1: return u"Left Button"_s;
    case 2: return u"Right Button"_s;
    default: return u"Button %1"_s.arg(button);
    }
}

} // namespace

std::optional<QList<int>> eventParser::sHeldKeys;

bool eventParser::hasEventLine(const QVariantMap &event)
{
    return hasLine(parsed(event));
}

QStringList eventParser::parseSequence(const QVariantMap &event)
{
    const int delayMs = MacroRecord::eventFields(event).delayMs;
    QStringList lines{QString::number(delayMs / 1000.0, 'f', 3) + " seconds delay\n"_L1};
    const ParsedEvent fields = parsed(event);
    if (!hasLine(fields))
        return lines;
    const bool isDown = fields.command == MacroRecord::keyDown;
    const QString name = nameOfKeyOrButton(event);
    // Deliberate: a button line ends in a newline, like a delay line; a key line does not.
    if (fields.page == MacroRecord::keyboardPage)
        lines += (isDown ? "Key Press "_L1 : "Key Release "_L1) + name;
    else
        lines += name + (isDown ? " down\n"_L1 : " up\n"_L1);
    return lines;
}

QString eventParser::nameOfKeyOrButton(const QVariantMap &event)
{
    const ParsedEvent fields = parsed(event);
    if (!hasLine(fields))
        return {};
    return fields.page == MacroRecord::keyboardPage ? getStringWithHIDWithModifier(static_cast<int>(fields.argument), 0)
                                                    : buttonName(fields.argument);
}

QStringList eventParser::getMessagesArray(const QVariantList &sequence)
{
    QStringList lines;
    for (const QVariant &event : sequence)
        lines += parseSequence(event.toMap());
    if (!lines.isEmpty())
        lines.removeFirst(); // the first event's delay line
    return lines;
}

QString eventParser::getStringWithHIDWithModifier(int hid, int modifier)
{
    if (!sHeldKeys)
        sHeldKeys.emplace();
    QString name;
    // The unmasked modifier decides: 256 gives no modifier name, but still the " + " below.
    if (modifier != 0) {
        QList<int> held;
        getModifierHIDRetVal(static_cast<quint8>(modifier), held);
        QStringList names;
        for (const int code : std::as_const(held))
            names += modifierName(code);
        name = names.join(" + "_L1);
        if (hid < 0 || hid > 3)
            name += " + "_L1;
    } else if (!sHeldKeys->isEmpty()) {
        sHeldKeys.reset();
    }
    if (hid >= firstCharacterKey && hid < firstNamedKey)
        name += QLatin1Char(returnASCII(static_cast<quint8>(hid)));
    else
        name += keyName(hid);
    return name;
}

char eventParser::returnASCII(quint8 hid)
{
    if (hid >= 4 && hid <= 29)
        return static_cast<char>('A' + (hid - 4));
    if (hid >= 30 && hid <= 38)
        return static_cast<char>('1' + (hid - 30));
    return hid == 39 ? '0' : '\0';
}

void eventParser::getModifierHIDRetVal(quint8 modifier, QList<int> &retVal)
{
    for (const Modifier &entry : modifiers) {
        if (modifier & entry.bit)
            retVal += entry.hid;
    }
}

void eventParser::manageHIDStack(QList<int> &held)
{
    if (!sHeldKeys || sHeldKeys->isEmpty()) {
        sHeldKeys = held;
        return;
    }
    QList<int> &stack = *sHeldKeys;
    stack.removeIf([&](int hid) { return !held.contains(hid); });
    // Released keys were removed above, so only newly pressed keys are missing.
    qsizetype missing = held.size() - stack.size();
    for (const int hid : std::as_const(held)) {
        if (missing <= 0)
            break;
        if (!stack.contains(hid)) {
            stack += hid;
            --missing;
        }
    }
    held = stack;
}
