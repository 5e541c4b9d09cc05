// SPDX-License-Identifier: MIT
#include "keys/layoutlegends.h"

#include "keys/keygeometry.h"
#include "platform/keymap.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct CharacterKey
{
    QLatin1StringView outlet;
    const char *name; ///< of the place, in the XKB protocol
};

// The keys whose characters depend on the layout. Those of the keypad do not.
// clang-format off
constexpr CharacterKey characterKeys[] = {
    {"mApostrophe"_L1, "TLDE"},
    {"mOne"_L1, "AE01"},
    {"mTwo"_L1, "AE02"},
    {"mThree"_L1, "AE03"},
    {"mFour"_L1, "AE04"},
    {"mFive"_L1, "AE05"},
    {"mSix"_L1, "AE06"},
    {"mSeven"_L1, "AE07"},
    {"mEight"_L1, "AE08"},
    {"mNine"_L1, "AE09"},
    {"mZero"_L1, "AE10"},
    {"mDash"_L1, "AE11"},
    {"mEqual"_L1, "AE12"},
    {"mQ"_L1, "AD01"},
    {"mW"_L1, "AD02"},
    {"mE"_L1, "AD03"},
    {"mR"_L1, "AD04"},
    {"mT"_L1, "AD05"},
    {"mY"_L1, "AD06"},
    {"mU"_L1, "AD07"},
    {"mI"_L1, "AD08"},
    {"mO"_L1, "AD09"},
    {"mP"_L1, "AD10"},
    {"mOpenBracket"_L1, "AD11"},
    {"mCloseBracket"_L1, "AD12"},
    {"mBackslash"_L1, "BKSL"},
    {"mA"_L1, "AC01"},
    {"mS"_L1, "AC02"},
    {"mD"_L1, "AC03"},
    {"mF"_L1, "AC04"},
    {"mG"_L1, "AC05"},
    {"mH"_L1, "AC06"},
    {"mJ"_L1, "AC07"},
    {"mK"_L1, "AC08"},
    {"mL"_L1, "AC09"},
    {"mSemiColon"_L1, "AC10"},
    {"mSingleQuote"_L1, "AC11"},
    {"mZ"_L1, "AB01"},
    {"mX"_L1, "AB02"},
    {"mC"_L1, "AB03"},
    {"mV"_L1, "AB04"},
    {"mB"_L1, "AB05"},
    {"mN"_L1, "AB06"},
    {"mM"_L1, "AB07"},
    {"mComma"_L1, "AB08"},
    {"mPeriod"_L1, "AB09"},
    {"mSlash"_L1, "AB10"},
};
// clang-format on

} // namespace

LayoutLegends::Legend LayoutLegends::legendOf(const KeyShape &shape, const Keymap &keymap)
{
    const auto key = std::ranges::find(characterKeys, shape.outlet, &CharacterKey::outlet);
    const Keymap::Characters characters =
        key == std::end(characterKeys) ? Keymap::Characters() : keymap.charactersOf(key->name);
    if (characters.plain.isEmpty())
        return {shape.legend, shape.upperLegend};
    // A letter has its capital alone, as keyboards are printed.
    if (characters.plain.at(0).isLetter() && characters.plain.toUpper() == characters.shifted)
        return {characters.shifted, {}};
    return {characters.plain, characters.shifted == characters.plain ? QString() : characters.shifted};
}
