// SPDX-License-Identifier: MIT
// The timeline above the event list: both show the same lines and select the same row.
#include "macros/keyboardmacroscontroller.h"

#include "base/settingskeys.h"
#include "macros/macrodelegate.h"
#include "macros/macropairs.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelinepart.h"
#include "macros/macrotimelineview.h"
#include "macros/nstableviewmacrodetailssubclass.h"

MacroTimelinePart *KeyboardMacrosController::buildTimeline()
{
    mTimeline = new MacroTimelinePart;
    connect(mTimeline->view(), &MacroTimelineView::rowChosen, this, &KeyboardMacrosController::selectEvent);
    connect(mTimeline->view(), &MacroTimelineView::pauseChosen, this, &KeyboardMacrosController::setDelayOfRow);
    connect(mTimeline, &MacroTimelinePart::releasesWanted, this, &KeyboardMacrosController::releaseKeysAtEnd);
    return mTimeline;
}

void KeyboardMacrosController::updateTimeline()
{
    // The lines of a macro that is gone stay.
    const QStringList lines = macroRow() < 0 ? QStringList() : mLines.shown();
    const QVariantMap macro = macroAt(macroRow());
    const QVariant identity = MacroRecord::identity(macro);
    const QVariant subject = identity.isValid() ? identity : MacroRecord::name(macro);
    if (!mTimeline->shows(subject, lines, macro))
        mTimeline->showEvents(subject, lines, macro);
    mTimeline->setRecording(hasRecording());
    markUnpairedEvents();
    // A view that is disabled loses the focus first. The change of a pause must have ended before.
    mTimeline->view()->setEditable(mMacroDetailsTableView->isEnabled());
    mTimeline->setEnabled(mMacroDetailsTableView->isEnabled());
    mTimeline->setVisible(!lines.isEmpty() && !mMacroDetailsTableView->isHidden());
    mTimeline->view()->selectRow(eventRow());
}

/// Marks in the list what the timeline shows as unpaired. During a recording, pressed keys are still to be released.
void KeyboardMacrosController::markUnpairedEvents()
{
    const QList<int> rows = hasRecording() ? QList<int>() : mTimeline->view()->timeline().unpairedRows();
    if (rows == mUnpairedRows)
        return;
    mUnpairedRows = rows;
    mMacroDetailsTableView->viewport()->update();
}

void KeyboardMacrosController::setDelayOfRow(int row, int delayMs)
{
    if (mMacroDelegate && !MacroCommands::isEventInReach(macroRow(), row))
        return storeEventOutOfReach(row, [delayMs](QVariantMap event) {
            event.insert(SettingsKeys::delay, delayMs);
            return event;
        });
    if (mMacroDelegate)
        mMacroDelegate->setNewDelayAtMacroEventIndexForMacroAtIndex(delayMs, row, macroRow());
    eventsWereEdited();
}

/// Appends the releases of the keys that the selected macro leaves down.
void KeyboardMacrosController::releaseKeysAtEnd()
{
    if (!mMacroDelegate || !hasPresentRecords())
        return;
    const QVariantList events = MacroRecord::events(macroAt(macroRow()));
    const QVariantList releases = MacroPairs::of(events).missingReleases;
    if (!releases.isEmpty())
        (void)mMacroDelegate->replaceEventsOfMacroAtIndex(macroRow(), events, events + releases);
}
