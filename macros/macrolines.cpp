// SPDX-License-Identifier: MIT
#include "macros/macrolines.h"

#include "base/settingskeys.h"

namespace {

bool haveSameEvents(const QVariantMap &macro, const QVariantMap &other)
{
    return macro.value(SettingsKeys::macroId) == other.value(SettingsKeys::macroId)
           && macro.value(SettingsKeys::sequence) == other.value(SettingsKeys::sequence);
}

bool areOneMacro(const QVariantMap &macro, const QVariantMap &other)
{
    return macro == other || (macro.contains(SettingsKeys::macroId) && haveSameEvents(macro, other));
}

} // namespace

bool MacroLines::areOutdatedFor(const QVariantMap &macro) const
{
    return !haveSameEvents(macro, mRequestedMacro);
}

void MacroLines::beginRequest(const QVariantMap &macro)
{
    mRequestedMacro = macro;
    mHaveLinesCome = false;
}

void MacroLines::take(const QStringList &lines)
{
    mHaveLinesCome = true;
    mShown = lines;
}

bool MacroLines::endRequest()
{
    if (mHaveLinesCome) {
        mAnsweredMacro = mRequestedMacro;
        mAnswer = mShown;
        return true;
    }
    // Shows no lines rather than those of another macro: the commands for a line go to the selected macro. The same
    // applies to the lines of a recording that may not have been stored.
    if (!showAnswerFor(mRequestedMacro))
        clear();
    mRequestedMacro = {};
    return false;
}

bool MacroLines::showAnswerFor(const QVariantMap &macro)
{
    if (!areOneMacro(macro, mAnsweredMacro))
        return false;
    mShown = mAnswer;
    return true;
}

void MacroLines::forgetAnswer()
{
    mAnsweredMacro = {};
}
