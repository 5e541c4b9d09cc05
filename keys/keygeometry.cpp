// SPDX-License-Identifier: MIT
#include "keys/keygeometry.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// A full-size ANSI keyboard. The M keys are in a column of their own. The main block starts at x = 1.35 and is 15 units
// wide, the navigation keys start at 16.6, the keypad at 19.85. The T keys are under the space bar. The fifteen keys of
// the top row are 14/15 unit wide, which leaves room for its four gaps.
// clang-format off
constexpr KeyShape shapeRows[] = {
    {"mMacro"_L1, {0, 0, 1, 1}, "macro"_L1, ""_L1, KeyLook::word},
    {"mM1"_L1, {0, 1.25, 1, 1}, "M1"_L1, ""_L1, KeyLook::extra},
    {"mM2"_L1, {0, 2.25, 1, 1}, "M2"_L1, ""_L1, KeyLook::extra},
    {"mM3"_L1, {0, 3.25, 1, 1}, "M3"_L1, ""_L1, KeyLook::extra},
    {"mM4"_L1, {0, 4.25, 1, 1}, "M4"_L1, ""_L1, KeyLook::extra},
    {"mM5"_L1, {0, 5.25, 1, 1}, "M5"_L1, ""_L1, KeyLook::extra},
    {"mESC"_L1, {1.35, 0, 0.9333, 1}, "esc"_L1, ""_L1, KeyLook::word},
    {"mF1"_L1, {2.5333, 0, 0.9333, 1}, "F1"_L1, ""_L1, KeyLook::function},
    {"mF2"_L1, {3.4667, 0, 0.9333, 1}, "F2"_L1, ""_L1, KeyLook::function},
    {"mF3"_L1, {4.4, 0, 0.9333, 1}, "F3"_L1, ""_L1, KeyLook::function},
    {"mF4"_L1, {5.3333, 0, 0.9333, 1}, "F4"_L1, ""_L1, KeyLook::function},
    {"mF5"_L1, {6.5167, 0, 0.9333, 1}, "F5"_L1, ""_L1, KeyLook::function},
    {"mF6"_L1, {7.45, 0, 0.9333, 1}, "F6"_L1, ""_L1, KeyLook::function},
    {"mF7"_L1, {8.3833, 0, 0.9333, 1}, "F7"_L1, ""_L1, KeyLook::function},
    {"mF8"_L1, {9.3167, 0, 0.9333, 1}, "F8"_L1, ""_L1, KeyLook::function},
    {"mF9"_L1, {10.5, 0, 0.9333, 1}, "F9"_L1, ""_L1, KeyLook::function},
    {"mF10"_L1, {11.4333, 0, 0.9333, 1}, "F10"_L1, ""_L1, KeyLook::function},
    {"mF11"_L1, {12.3667, 0, 0.9333, 1}, "F11"_L1, ""_L1, KeyLook::function},
    {"mF12"_L1, {13.3, 0, 0.9333, 1}, "F12"_L1, ""_L1, KeyLook::function},
    {"mF13"_L1, {14.4833, 0, 0.9333, 1}, "F13"_L1, ""_L1, KeyLook::function},
    {"mF14"_L1, {15.4167, 0, 0.9333, 1}, "F14"_L1, ""_L1, KeyLook::function},
    {"mApostrophe"_L1, {1.35, 1.25, 1, 1}, "`"_L1, "~"_L1, KeyLook::letter},
    {"mOne"_L1, {2.35, 1.25, 1, 1}, "1"_L1, "!"_L1, KeyLook::letter},
    {"mTwo"_L1, {3.35, 1.25, 1, 1}, "2"_L1, "@"_L1, KeyLook::letter},
    {"mThree"_L1, {4.35, 1.25, 1, 1}, "3"_L1, "#"_L1, KeyLook::letter},
    {"mFour"_L1, {5.35, 1.25, 1, 1}, "4"_L1, "$"_L1, KeyLook::letter},
    {"mFive"_L1, {6.35, 1.25, 1, 1}, "5"_L1, "%"_L1, KeyLook::letter},
    {"mSix"_L1, {7.35, 1.25, 1, 1}, "6"_L1, "^"_L1, KeyLook::letter},
    {"mSeven"_L1, {8.35, 1.25, 1, 1}, "7"_L1, "&"_L1, KeyLook::letter},
    {"mEight"_L1, {9.35, 1.25, 1, 1}, "8"_L1, "*"_L1, KeyLook::letter},
    {"mNine"_L1, {10.35, 1.25, 1, 1}, "9"_L1, "("_L1, KeyLook::letter},
    {"mZero"_L1, {11.35, 1.25, 1, 1}, "0"_L1, ")"_L1, KeyLook::letter},
    {"mDash"_L1, {12.35, 1.25, 1, 1}, "-"_L1, "_"_L1, KeyLook::letter},
    {"mEqual"_L1, {13.35, 1.25, 1, 1}, "="_L1, "+"_L1, KeyLook::letter},
    {"mBack"_L1, {14.35, 1.25, 2, 1}, "backspace"_L1, ""_L1, KeyLook::word},
    {"mTab"_L1, {1.35, 2.25, 1.5, 1}, "tab"_L1, ""_L1, KeyLook::word},
    {"mQ"_L1, {2.85, 2.25, 1, 1}, "Q"_L1, ""_L1, KeyLook::letter},
    {"mW"_L1, {3.85, 2.25, 1, 1}, "W"_L1, ""_L1, KeyLook::letter},
    {"mE"_L1, {4.85, 2.25, 1, 1}, "E"_L1, ""_L1, KeyLook::letter},
    {"mR"_L1, {5.85, 2.25, 1, 1}, "R"_L1, ""_L1, KeyLook::letter},
    {"mT"_L1, {6.85, 2.25, 1, 1}, "T"_L1, ""_L1, KeyLook::letter},
    {"mY"_L1, {7.85, 2.25, 1, 1}, "Y"_L1, ""_L1, KeyLook::letter},
    {"mU"_L1, {8.85, 2.25, 1, 1}, "U"_L1, ""_L1, KeyLook::letter},
    {"mI"_L1, {9.85, 2.25, 1, 1}, "I"_L1, ""_L1, KeyLook::letter},
    {"mO"_L1, {10.85, 2.25, 1, 1}, "O"_L1, ""_L1, KeyLook::letter},
    {"mP"_L1, {11.85, 2.25, 1, 1}, "P"_L1, ""_L1, KeyLook::letter},
    {"mOpenBracket"_L1, {12.85, 2.25, 1, 1}, "["_L1, "{"_L1, KeyLook::letter},
    {"mCloseBracket"_L1, {13.85, 2.25, 1, 1}, "]"_L1, "}"_L1, KeyLook::letter},
    {"mBackslash"_L1, {14.85, 2.25, 1.5, 1}, "\\"_L1, "|"_L1, KeyLook::letter},
    {"mCapsLock"_L1, {1.35, 3.25, 1.75, 1}, "caps lock"_L1, ""_L1, KeyLook::word},
    {"mA"_L1, {3.1, 3.25, 1, 1}, "A"_L1, ""_L1, KeyLook::letter},
    {"mS"_L1, {4.1, 3.25, 1, 1}, "S"_L1, ""_L1, KeyLook::letter},
    {"mD"_L1, {5.1, 3.25, 1, 1}, "D"_L1, ""_L1, KeyLook::letter},
    {"mF"_L1, {6.1, 3.25, 1, 1}, "F"_L1, ""_L1, KeyLook::letter},
    {"mG"_L1, {7.1, 3.25, 1, 1}, "G"_L1, ""_L1, KeyLook::letter},
    {"mH"_L1, {8.1, 3.25, 1, 1}, "H"_L1, ""_L1, KeyLook::letter},
    {"mJ"_L1, {9.1, 3.25, 1, 1}, "J"_L1, ""_L1, KeyLook::letter},
    {"mK"_L1, {10.1, 3.25, 1, 1}, "K"_L1, ""_L1, KeyLook::letter},
    {"mL"_L1, {11.1, 3.25, 1, 1}, "L"_L1, ""_L1, KeyLook::letter},
    {"mSemiColon"_L1, {12.1, 3.25, 1, 1}, ";"_L1, ":"_L1, KeyLook::letter},
    {"mSingleQuote"_L1, {13.1, 3.25, 1, 1}, "'"_L1, "\""_L1, KeyLook::letter},
    {"mEnter"_L1, {14.1, 3.25, 2.25, 1}, "enter"_L1, ""_L1, KeyLook::word},
    {"mLeftShift"_L1, {1.35, 4.25, 2.25, 1}, "shift"_L1, ""_L1, KeyLook::word},
    {"mZ"_L1, {3.6, 4.25, 1, 1}, "Z"_L1, ""_L1, KeyLook::letter},
    {"mX"_L1, {4.6, 4.25, 1, 1}, "X"_L1, ""_L1, KeyLook::letter},
    {"mC"_L1, {5.6, 4.25, 1, 1}, "C"_L1, ""_L1, KeyLook::letter},
    {"mV"_L1, {6.6, 4.25, 1, 1}, "V"_L1, ""_L1, KeyLook::letter},
    {"mB"_L1, {7.6, 4.25, 1, 1}, "B"_L1, ""_L1, KeyLook::letter},
    {"mN"_L1, {8.6, 4.25, 1, 1}, "N"_L1, ""_L1, KeyLook::letter},
    {"mM"_L1, {9.6, 4.25, 1, 1}, "M"_L1, ""_L1, KeyLook::letter},
    {"mComma"_L1, {10.6, 4.25, 1, 1}, ","_L1, "<"_L1, KeyLook::letter},
    {"mPeriod"_L1, {11.6, 4.25, 1, 1}, "."_L1, ">"_L1, KeyLook::letter},
    {"mSlash"_L1, {12.6, 4.25, 1, 1}, "/"_L1, "?"_L1, KeyLook::letter},
    {"mRightShift"_L1, {13.6, 4.25, 2.75, 1}, "shift"_L1, ""_L1, KeyLook::word},
    {"mLeftControl"_L1, {1.35, 5.25, 1.25, 1}, "control"_L1, ""_L1, KeyLook::word},
    {"mLeftOption"_L1, {2.6, 5.25, 1.25, 1}, "option"_L1, ""_L1, KeyLook::word},
    {"mLeftCommand"_L1, {3.85, 5.25, 1.5, 1}, "command"_L1, ""_L1, KeyLook::word},
    {"mSpace"_L1, {5.35, 5.25, 5, 1}, ""_L1, ""_L1, KeyLook::blank},
    {"mRightCommand"_L1, {10.35, 5.25, 1.5, 1}, "command"_L1, ""_L1, KeyLook::word},
    {"mRightOption"_L1, {11.85, 5.25, 1.25, 1}, "option"_L1, ""_L1, KeyLook::word},
    {"mFN"_L1, {13.1, 5.25, 1, 1}, "fn"_L1, ""_L1, KeyLook::word},
    {"mMenu"_L1, {14.1, 5.25, 1, 1}, "menu"_L1, ""_L1, KeyLook::word},
    {"mRightControl"_L1, {15.1, 5.25, 1.25, 1}, "control"_L1, ""_L1, KeyLook::word},
    {"mT1"_L1, {4.35, 6.45, 1, 1}, "T1"_L1, ""_L1, KeyLook::extra},
    {"mT2"_L1, {5.35, 6.45, 1, 1}, "T2"_L1, ""_L1, KeyLook::extra},
    {"mT3"_L1, {6.35, 6.45, 1, 1}, "T3"_L1, ""_L1, KeyLook::extra},
    {"mT4"_L1, {7.35, 6.45, 1, 1}, "T4"_L1, ""_L1, KeyLook::extra},
    {"mT5"_L1, {8.35, 6.45, 1, 1}, "T5"_L1, ""_L1, KeyLook::extra},
    {"mT6"_L1, {9.35, 6.45, 1, 1}, "T6"_L1, ""_L1, KeyLook::extra},
    {"mT7"_L1, {10.35, 6.45, 1, 1}, "T7"_L1, ""_L1, KeyLook::extra},
    {"mPrint"_L1, {16.6, 0, 1, 1}, "print"_L1, ""_L1, KeyLook::word},
    {"mScrollLock"_L1, {17.6, 0, 1, 1}, "scroll"_L1, ""_L1, KeyLook::word},
    {"mPause"_L1, {18.6, 0, 1, 1}, "pause"_L1, ""_L1, KeyLook::word},
    {"mInsert"_L1, {16.6, 1.25, 1, 1}, "insert"_L1, ""_L1, KeyLook::word},
    {"mHome"_L1, {17.6, 1.25, 1, 1}, "home"_L1, ""_L1, KeyLook::word},
    {"mPageUp"_L1, {18.6, 1.25, 1, 1}, "pg up"_L1, ""_L1, KeyLook::word},
    {"mDelete"_L1, {16.6, 2.25, 1, 1}, "delete"_L1, ""_L1, KeyLook::word},
    {"mEnd"_L1, {17.6, 2.25, 1, 1}, "end"_L1, ""_L1, KeyLook::word},
    {"mPageDown"_L1, {18.6, 2.25, 1, 1}, "pg dn"_L1, ""_L1, KeyLook::word},
    {"mArrowUp"_L1, {17.6, 4.25, 1, 1}, ""_L1, ""_L1, KeyLook::arrowUp},
    {"mArrowLeft"_L1, {16.6, 5.25, 1, 1}, ""_L1, ""_L1, KeyLook::arrowLeft},
    {"mArrowDown"_L1, {17.6, 5.25, 1, 1}, ""_L1, ""_L1, KeyLook::arrowDown},
    {"mArrowRight"_L1, {18.6, 5.25, 1, 1}, ""_L1, ""_L1, KeyLook::arrowRight},
    {"mNumlock"_L1, {19.85, 0, 1, 1}, "num lk"_L1, ""_L1, KeyLook::word},
    {"mNumPadBlank"_L1, {20.85, 0, 2, 1}, ""_L1, ""_L1, KeyLook::blank},
    {"mEject"_L1, {22.85, 0, 1, 1}, ""_L1, ""_L1, KeyLook::eject},
    {"mClear"_L1, {19.85, 1.25, 1, 1}, "clear"_L1, ""_L1, KeyLook::word},
    {"mNumPadEqual"_L1, {20.85, 1.25, 1, 1}, "="_L1, ""_L1, KeyLook::letter},
    {"mDivide"_L1, {21.85, 1.25, 1, 1}, "/"_L1, ""_L1, KeyLook::letter},
    {"mMultiply"_L1, {22.85, 1.25, 1, 1}, "*"_L1, ""_L1, KeyLook::letter},
    {"mNumPadSeven"_L1, {19.85, 2.25, 1, 1}, "7"_L1, ""_L1, KeyLook::letter},
    {"mNumPadEight"_L1, {20.85, 2.25, 1, 1}, "8"_L1, ""_L1, KeyLook::letter},
    {"mNumPadNine"_L1, {21.85, 2.25, 1, 1}, "9"_L1, ""_L1, KeyLook::letter},
    {"mSubtract"_L1, {22.85, 2.25, 1, 1}, "-"_L1, ""_L1, KeyLook::letter},
    {"mNumPadFour"_L1, {19.85, 3.25, 1, 1}, "4"_L1, ""_L1, KeyLook::letter},
    {"mNumPadFive"_L1, {20.85, 3.25, 1, 1}, "5"_L1, ""_L1, KeyLook::letter},
    {"mNumPadSix"_L1, {21.85, 3.25, 1, 1}, "6"_L1, ""_L1, KeyLook::letter},
    {"mPlus"_L1, {22.85, 3.25, 1, 1}, "+"_L1, ""_L1, KeyLook::letter},
    {"mNumPadOne"_L1, {19.85, 4.25, 1, 1}, "1"_L1, ""_L1, KeyLook::letter},
    {"mNumPadTwo"_L1, {20.85, 4.25, 1, 1}, "2"_L1, ""_L1, KeyLook::letter},
    {"mNumPadThree"_L1, {21.85, 4.25, 1, 1}, "3"_L1, ""_L1, KeyLook::letter},
    {"mNumPadEnter"_L1, {22.85, 4.25, 1, 2}, "enter"_L1, ""_L1, KeyLook::word},
    {"mNumPadZero"_L1, {19.85, 5.25, 2, 1}, "0"_L1, ""_L1, KeyLook::letter},
    {"mNumPadDot"_L1, {21.85, 5.25, 1, 1}, "."_L1, ""_L1, KeyLook::letter},
};
// clang-format on

} // namespace

std::span<const KeyShape> KeyGeometry::shapes()
{
    return shapeRows;
}

const KeyShape *KeyGeometry::shapeForOutlet(QLatin1StringView outlet)
{
    const auto shape = std::ranges::find(shapeRows, outlet, &KeyShape::outlet);
    return shape == std::end(shapeRows) ? nullptr : shape;
}
