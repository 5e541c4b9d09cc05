// SPDX-License-Identifier: MIT
#include "keys/keynames.h"

#include "keys/keylayout.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct NameRow
{
    int code;
    QLatin1StringView name;
    QLatin1StringView alias; ///< the legend, or another usual name; may be empty
};

// In the order of the key table.
constexpr NameRow nameRows[] = {
    {41, "Escape"_L1, "Esc"_L1},
    {58, "F1"_L1, {}},
    {59, "F2"_L1, {}},
    {60, "F3"_L1, {}},
    {61, "F4"_L1, {}},
    {62, "F5"_L1, {}},
    {63, "F6"_L1, {}},
    {64, "F7"_L1, {}},
    {65, "F8"_L1, {}},
    {66, "F9"_L1, {}},
    {67, "F10"_L1, {}},
    {68, "F11"_L1, {}},
    {69, "F12"_L1, {}},
    {104, "F13"_L1, {}},
    {105, "F14"_L1, {}},
    {83, "Numlock"_L1, {}},
    {70, "Print Screen"_L1, "Print"_L1},
    {71, "Scroll Lock"_L1, "Scroll"_L1},
    {72, "Pause"_L1, {}},
    {53, "Grave"_L1, "`"_L1},
    {30, "1"_L1, {}},
    {31, "2"_L1, {}},
    {32, "3"_L1, {}},
    {33, "4"_L1, {}},
    {34, "5"_L1, {}},
    {35, "6"_L1, {}},
    {36, "7"_L1, {}},
    {37, "8"_L1, {}},
    {38, "9"_L1, {}},
    {39, "0"_L1, {}},
    {45, "Dash"_L1, "-"_L1},
    {46, "Equal"_L1, "="_L1},
    {42, "Backspace"_L1, {}},
    {43, "Tab"_L1, {}},
    {20, "Q"_L1, {}},
    {26, "W"_L1, {}},
    {8, "E"_L1, {}},
    {21, "R"_L1, {}},
    {23, "T"_L1, {}},
    {28, "Y"_L1, {}},
    {24, "U"_L1, {}},
    {12, "I"_L1, {}},
    {18, "O"_L1, {}},
    {19, "P"_L1, {}},
    {47, "Left Bracket"_L1, "["_L1},
    {48, "Right Bracket"_L1, "]"_L1},
    {49, "Backslash"_L1, "\\"_L1},
    {57, "Caps Lock"_L1, {}},
    {4, "A"_L1, {}},
    {22, "S"_L1, {}},
    {7, "D"_L1, {}},
    {9, "F"_L1, {}},
    {10, "G"_L1, {}},
    {11, "H"_L1, {}},
    {13, "J"_L1, {}},
    {14, "K"_L1, {}},
    {15, "L"_L1, {}},
    {51, "Semicolon"_L1, ";"_L1},
    {52, "Single Quote"_L1, "'"_L1},
    {40, "Enter"_L1, "Return"_L1},
    {225, "Left Shift"_L1, {}},
    {29, "Z"_L1, {}},
    {27, "X"_L1, {}},
    {6, "C"_L1, {}},
    {25, "V"_L1, {}},
    {5, "B"_L1, {}},
    {17, "N"_L1, {}},
    {16, "M"_L1, {}},
    {54, "Comma"_L1, ","_L1},
    {55, "Period"_L1, "."_L1},
    {56, "Slash"_L1, "/"_L1},
    {229, "Right Shift"_L1, {}},
    {224, "Left Control"_L1, {}},
    {226, "Left Option"_L1, "Left Alt"_L1},
    {227, "Left Command"_L1, {}},
    {44, "Space"_L1, {}},
    {231, "Right Command"_L1, {}},
    {230, "Right Option"_L1, "Right Alt"_L1},
    {228, "Right Control"_L1, {}},
    {74, "Home"_L1, {}},
    {75, "Page Up"_L1, {}},
    {76, "Delete"_L1, {}},
    {77, "End"_L1, {}},
    {78, "Page Down"_L1, {}},
    {82, "Up Arrow"_L1, "Up"_L1},
    {80, "Left Arrow"_L1, "Left"_L1},
    {81, "Down Arrow"_L1, "Down"_L1},
    {79, "Right Arrow"_L1, "Right"_L1},
    {73, "Insert"_L1, {}},
    {156, "Clear"_L1, {}},
    {103, "Numpad Equal"_L1, "Numpad ="_L1},
    {84, "Numpad Divide"_L1, "Numpad /"_L1},
    {85, "Numpad Multiply"_L1, "Numpad *"_L1},
    {86, "Numpad Minus"_L1, "Numpad -"_L1},
    {95, "Numpad 7"_L1, {}},
    {96, "Numpad 8"_L1, {}},
    {97, "Numpad 9"_L1, {}},
    {87, "Numpad Plus"_L1, "Numpad +"_L1},
    {92, "Numpad 4"_L1, {}},
    {93, "Numpad 5"_L1, {}},
    {94, "Numpad 6"_L1, {}},
    {89, "Numpad 1"_L1, {}},
    {90, "Numpad 2"_L1, {}},
    {91, "Numpad 3"_L1, {}},
    {88, "Numpad Enter"_L1, {}},
    {98, "Numpad 0"_L1, {}},
    {99, "Numpad Dot"_L1, "Numpad ."_L1},
    {111, "T1"_L1, {}},
    {112, "T2"_L1, {}},
    {113, "T3"_L1, {}},
    {114, "T4"_L1, {}},
    {146, "T5"_L1, {}},
    {147, "T6"_L1, {}},
    {140, "T7"_L1, {}},
    {106, "M1"_L1, {}},
    {107, "M2"_L1, {}},
    {108, "M3"_L1, {}},
    {109, "M4"_L1, {}},
    {110, "M5"_L1, {}},
};

bool isSame(QLatin1StringView name, const QString &text)
{
    return !name.isEmpty() && name.compare(text, Qt::CaseInsensitive) == 0;
}

std::optional<int> codeInLayout(const QString &text)
{
    const bool isHexadecimal = text.startsWith("0x"_L1, Qt::CaseInsensitive);
    bool isNumber = false;
    const int code = isHexadecimal ? text.sliced(2).toInt(&isNumber, 16) : text.toInt(&isNumber, 10);
    if (!isNumber || !KeyLayout::rowForCode(code))
        return std::nullopt;
    return code;
}

} // namespace

QString keyName(int code)
{
    for (const NameRow &row : nameRows)
        if (row.code == code)
            return row.name;
    return {};
}

QStringList usualKeyNames(int code)
{
    const auto row = std::ranges::find(nameRows, code, &NameRow::code);
    if (row == std::end(nameRows))
        return {};
    return row->alias.isEmpty() ? QStringList{row->name} : QStringList{row->name, row->alias};
}

QStringList keyNames(int code)
{
    QStringList names = usualKeyNames(code);
    const KeyRow *row = KeyLayout::rowForCode(code);
    if (row && !names.isEmpty() && !names.contains(row->outlet.sliced(1), Qt::CaseInsensitive))
        names += row->outlet.sliced(1);
    return names;
}

std::optional<int> keyCodeForName(const QString &text)
{
    const QString wanted = text.trimmed();
    for (const NameRow &row : nameRows)
        if (isSame(row.name, wanted) || isSame(row.alias, wanted))
            return row.code;
    for (const KeyRow &row : KeyLayout::selectableKeys())
        if (isSame(row.outlet.sliced(1), wanted))
            return row.code;
    return codeInLayout(wanted);
}
