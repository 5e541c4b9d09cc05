// SPDX-License-Identifier: MIT
// Edits of all selected events at once: delete, copy, cut, paste, move, pauses. Each is one change of the macro.
#include "macros/keyboardmacroscontroller.h"

#include "macros/eventsclip.h"
#include "macros/macrodelegate.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "platform/pulldownbutton.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <memory>
#include <numeric>

namespace {

/// `count` indexes from `first` on.
QList<int> neighbours(int first, qsizetype count)
{
    QList<int> indexes(count);
    std::iota(indexes.begin(), indexes.end(), first);
    return indexes;
}

} // namespace

void KeyboardMacrosController::editEvents(MacroCommands::EventTag tag)
{
    if (!mMacroDelegate || macroRow() < 0 || !mSettingsMacroDetails->isEnabled())
        return;
    switch (tag) {
    case MacroCommands::cutEvents:
        if (copySelectedEvents())
            deleteSelectedEvents();
        break;
    case MacroCommands::copyEvents: copySelectedEvents(); break;
    case MacroCommands::pasteEvents: pasteEvents(); break;
    case MacroCommands::moveUp: moveSelectedEvents(-1); break;
    case MacroCommands::moveDown: moveSelectedEvents(1); break;
    case MacroCommands::insertEvents: openInsertSheet(); break;
    case MacroCommands::setPause: openPauseSheet(MacroPauseSheet::Change::set); break;
    case MacroCommands::scalePauses: openPauseSheet(MacroPauseSheet::Change::scale); break;
    default: break;
    }
}

std::optional<KeyboardMacrosController::SelectedEvents> KeyboardMacrosController::readSelectedEvents()
{
    if (!hasPresentRecords())
        return {};
    SelectedEvents selected{.all = MacroRecord::events(macroAt(macroRow())), .indexes = {}};
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(selected.all);
    const QList<int> rows = mMacroDetailsTableView->selectedRows();
    for (const int row : rows) {
        const int index = eventsOfRows.value(row, -1);
        // The rows of one event follow each other.
        if (index >= 0 && (selected.indexes.isEmpty() || selected.indexes.last() != index))
            selected.indexes += index;
    }
    return selected;
}

void KeyboardMacrosController::storeEvents(const QVariantList &read, const QVariantList &changed,
                                           const QList<int> &chosen)
{
    if (changed == read || mMacroDelegate->replaceEventsOfMacroAtIndex(macroRow(), read, changed))
        selectEvents(chosen);
}

/// Selects all rows of several events. Of a single one it selects the last row: the commands for one row need it alone.
void KeyboardMacrosController::selectEvents(const QList<int> &indexes)
{
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(MacroRecord::events(macroAt(macroRow())));
    QList<int> rows;
    for (int row = 0; row < eventsOfRows.size(); ++row) {
        if (std::ranges::binary_search(indexes, eventsOfRows.at(row)))
            rows += row;
    }
    if (indexes.size() == 1 && !rows.isEmpty())
        rows = {rows.last()};
    selectEventRows(rows);
}

void KeyboardMacrosController::selectEventRows(const QList<int> &rows)
{
    if (!rows.isEmpty()) {
        mMacroDetailsTableView->scrollRowToVisible(rows.last());
        mMacroDetailsTableView->scrollRowToVisible(rows.first());
    }
    mMacroDetailsTableView->selectRows(rows);
    mMacroDetailsTableView->setFocus();
}

bool KeyboardMacrosController::copySelectedEvents()
{
    const auto selected = readSelectedEvents();
    if (!selected)
        return false;
    const auto copies = MacroEdits::copied(selected->all, selected->indexes);
    if (!copies || copies->isEmpty())
        return false;
    std::unique_ptr<QMimeData> data(EventsClip::toMimeData(*copies));
    if (!EventsClip::fromMimeData(data.get())) {
        report(StatusReport::Event::eventsNotCopied, {});
        return false;
    }
    QGuiApplication::clipboard()->setMimeData(data.release());
    return true;
}

void KeyboardMacrosController::deleteSelectedEvents()
{
    if (!mMacroDelegate)
        return;
    const auto selected = readSelectedEvents();
    if (!selected || selected->indexes.isEmpty())
        return;
    const auto left = MacroEdits::removing(selected->all, selected->indexes);
    if (!left)
        return;
    const int next = std::min(selected->indexes.first(), int(left->size()) - 1);
    storeEvents(selected->all, *left, next < 0 ? QList<int>() : QList<int>{next});
}

/// Inserts the events of the clipboard before the first selected one, without a selection at the end.
void KeyboardMacrosController::pasteEvents()
{
    const auto pasted = EventsClip::fromMimeData(QGuiApplication::clipboard()->mimeData());
    if (!pasted)
        return;
    const auto selected = readSelectedEvents();
    if (!selected)
        return;
    const int place = selected->indexes.value(0, int(selected->all.size()));
    // Not MacroEdits::inserting(): the daemon refuses too many events, and the window says so.
    storeEvents(selected->all, selected->all.first(place) + *pasted + selected->all.sliced(place),
                neighbours(place, pasted->size()));
}

/// Moves the selected events by one place; events that were apart become neighbours.
void KeyboardMacrosController::moveSelectedEvents(int step)
{
    const auto selected = readSelectedEvents();
    if (!selected || selected->indexes.isEmpty())
        return;
    moveEvents(*selected, step < 0 ? std::max(0, selected->indexes.first() - 1)
                                   : std::min(int(selected->all.size()), selected->indexes.last() + 2));
}

void KeyboardMacrosController::moveEvents(const SelectedEvents &selected, int place)
{
    const auto above = std::ranges::count_if(selected.indexes, [place](int index) { return index < place; });
    if (const auto moved = MacroEdits::moving(selected.all, selected.indexes, place))
        storeEvents(selected.all, *moved, neighbours(place - int(above), selected.indexes.size()));
}

int KeyboardMacrosController::tableViewPlaceOfDrop(TableView *, int place)
{
    const bool isBehindItsDelay =
        place > 0 && place < mLines.shown().size() && mLines.isDelay(place - 1) && !mLines.isDelay(place);
    return isBehindItsDelay ? place - 1 : place;
}

void KeyboardMacrosController::tableViewMoveSelectedRows(TableView *, int place)
{
    if (!mMacroDelegate || macroRow() < 0 || !mSettingsMacroDetails->isEnabled())
        return;
    const QStringList lines = mLines.shown();
    const auto selected = readSelectedEvents();
    if (!selected || selected->indexes.isEmpty() || mLines.shown() != lines)
        return; // the place was one between other events
    moveEvents(*selected, MacroRecord::eventsOfRows(selected->all).value(place, int(selected->all.size())));
}

void KeyboardMacrosController::storeEventOutOfReach(int row,
                                                    const std::function<QVariantMap(const QVariantMap &event)> &changed)
{
    const QStringList lines = mLines.shown();
    if (!hasPresentRecords() || mLines.shown() != lines)
        return; // the row was one of other events
    const QVariantList read = MacroRecord::events(macroAt(macroRow()));
    const std::optional<int> index = MacroRecord::eventIndexOfRow(read, row);
    if (!index)
        return;
    QVariantList events = read;
    events[*index] = changed(read.at(*index).toMap());
    if (events != read)
        (void)mMacroDelegate->replaceEventsOfMacroAtIndex(macroRow(), read, events);
}

// The sheet for pauses

void KeyboardMacrosController::openPauseSheet(MacroPauseSheet::Change change)
{
    const auto selected = readSelectedEvents();
    if (!selected || selected->indexes.isEmpty())
        return;
    mEventsToPause = *selected;
    mPauseWindow->ask(mMacrosWindow, change, int(mEventsToPause.indexes.size()));
    mEventsSubject.note(mPauseWindow, eventsOfSelectedMacro());
}

void KeyboardMacrosController::changePauses(MacroPauseSheet::Change change, int number)
{
    constexpr double percent = 100;
    mEventsSubject.note(nullptr);
    const auto &[all, indexes] = mEventsToPause;
    const auto changed = change == MacroPauseSheet::Change::set
                             ? MacroEdits::settingDelays(all, indexes, number)
                             : MacroEdits::scalingDelays(all, indexes, number / percent);
    if (changed && *changed != all)
        (void)mMacroDelegate->replaceEventsOfMacroAtIndex(macroRow(), all, *changed);
    mMacroDetailsTableView->setFocus(); // the same rows are selected
}
