// SPDX-License-Identifier: MIT
#include "macros/macrolines.h"

#include "macros/eventline.h"
#include "macros/macrorecord.h"

namespace {

bool haveSameEvents(const QVariantMap &macro, const QVariantMap &other)
{
    return MacroRecord::identity(macro) == MacroRecord::identity(other)
           && MacroRecord::sequence(macro) == MacroRecord::sequence(other);
}

bool areOneMacro(const QVariantMap &macro, const QVariantMap &other)
{
    return macro == other || (MacroRecord::identity(macro).isValid() && haveSameEvents(macro, other));
}

} // namespace

bool MacroLines::areOutdatedFor(const QVariantMap &macro) const
{
    return !mIsReplacing && !haveSameEvents(macro, mRequestedMacro);
}

bool MacroLines::isDelay(int row) const
{
    const QString line = mShown.value(row);
    if (eventLineKind(line) == EventLineKind::delay)
        return true;
    return row >= 0 && row < mShown.size() && row % 2 == 1 && nameInEventLine(line).isNull();
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
        mRepliedMacro = mRequestedMacro;
        mReply = mShown;
        return true;
    }
    // Shows no lines rather than those of another macro: the commands for a line go to the selected macro. The same
    // applies to the lines of a recording that may not have been stored.
    if (!showReplyFor(mRequestedMacro))
        clear();
    mRequestedMacro = {};
    return false;
}

bool MacroLines::showReplyFor(const QVariantMap &macro)
{
    if (!areOneMacro(macro, mRepliedMacro))
        return false;
    mShown = mReply;
    return true;
}

void MacroLines::forgetReply()
{
    mRepliedMacro = {};
}
