// SPDX-License-Identifier: MIT
// The part of KeyboardKeysController that makes the content of the card of the selected key.
#include "keys/keyboardkeyscontroller.h"

#include "base/profilerecord.h"
#include "base/text.h"
#include "base/textslocale.h"
#include "base/visibletext.h"
#include "keys/keyboardpicture.h"
#include "keys/keycard.h"
#include "keys/keylayout.h"
#include "keys/macropreview.h"
#include "keys/newmacro.h"
#include "macros/macrorecord.h"
#include "platform/applicationinformation.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

constexpr int millisecondsPerSecond = 1000;

QString macroDetail(const QVariantList &events, const MacroTimeline &timeline)
{
    if (events.isEmpty())
        return localizedText("lkeyKeysCardNoEvents");
    const double seconds = double(timeline.durationMs) / millisecondsPerSecond;
    return localizedFormat("lkeyKeysCardMacro", {QString::number(events.size()),
                                                 textsLocale().toString(seconds, 'f', seconds < 10 ? 1 : 0)});
}

QString profileDetail(const QVariantMap &profile)
{
    const QVariantMap keys = ProfileRecord::keys(profile);
    const auto assigned = std::ranges::count_if(KeyLayout::selectableKeys(), [&profile](const KeyRow &row) {
        return KeyMappings::entryForKey(profile, row.code).isMapped();
    });
    return localizedFormat("lkeyKeysCardProfile", {QString::number(assigned)});
}

/// The application's name in the user's language, or that it is gone.
QString programDetail(const QString &path)
{
    const std::optional<QVariantMap> information = ApplicationInformation::read(path);
    if (!information)
        return localizedText("lkeyKeysCardProgramGone");
    return visibleText(information->value(ApplicationInformation::nameKey).toString(), u' ');
}

} // namespace

void KeyboardKeysController::setMAllMacrosArray(const QVariantList &macros)
{
    mAllMacrosArray = macros;
    mNewMacro->setMacros(macros);
    // The events of the macro on the card may have changed.
    if (mKeyCard && entryForKey(selectedCode()).command == static_cast<int>(Assignment::playMacro))
        showSelectedKeys();
}

void KeyboardKeysController::showSelectedKeys()
{
    const KeyRow *row = KeyLayout::rowForCode(selectedCode());
    if (!row) {
        mKeyCard->show({.words = localizedText("lkeyKeysCardNone")});
        return;
    }
    const KeyButton *key = mPicture->button(row->outlet);
    KeyCardContent content{.shape = &key->shape(), .legend = key->legend(), .upperLegend = key->upperLegend()};
    content.keys = selectedCodes().size();
    content.name = shownKeyName(row->code);
    if (content.keys > 1)
        content.name =
            localizedFormat("lkeyKeysSeveralSelected", {content.name, QString::number(mOtherSelectedKeys.size())});
    const KeyMappings::Entry entry = entryForKey(row->code);
    const auto isLikeTheFirst = [&](int code) {
        return assignmentDescription(entryForKey(code)) == assignmentDescription(entry);
    };
    if (std::ranges::all_of(mOtherSelectedKeys, isLikeTheFirst))
        addAssignment(content, entry);
    else
        content.words = localizedText("lkeyKeysCardDifferent");
    if (content.keys > 1)
        content.detail = localizedFormat("lkeyKeysCardSeveral", {QString::number(content.keys)});
    mKeyCard->show(content);
}

void KeyboardKeysController::addAssignment(KeyCardContent &content, const KeyMappings::Entry &entry) const
{
    content.mark = keyMarkForCommand(entry.command);
    content.words = visibleText(assignmentDescription(entry), u' ');
    if (const char *problemKey = assignmentProblem(entry)) {
        content.problem = localizedText(problemKey);
        return;
    }
    switch (static_cast<Assignment>(entry.command)) {
    case Assignment::playMacro: {
        const QVariantList events = MacroRecord::events(mAllMacrosArray.value(entry.param1).toMap());
        content.macro = MacroTimeline::of(events, MacroPreview::maximumEvents);
        content.detail = macroDetail(events, content.macro);
        content.offersRecording = events.isEmpty();
        break;
    }
    case Assignment::switchProfile:
        content.detail = profileDetail(mAllProfilesArray.value(entry.param1).toMap());
        break;
    case Assignment::launchProgram:
        content.program = entry.programPath;
        content.detail = programDetail(entry.programPath);
        break;
    case Assignment::singleKey: content.detail = localizedText("lkeyKeysCardSingleKey"); break;
    case Assignment::disabled: content.detail = localizedText("lkeyKeysCardDisabled"); break;
    case Assignment::defaultKey:
    default:
        // The tool tip of an extra key says more.
        content.detail =
            localizedText(extraKeyInfo(selectedCode()).isEmpty() ? "lkeyKeysCardDefault" : "lkeyKeysCardExtraKey");
    }
}
