// SPDX-License-Identifier: MIT
// The left half of the macros tab: adding, renaming and deleting macros, and the commands of their menus.
#include "macros/keyboardmacroscontroller.h"

#include "base/settingskeys.h"
#include "base/text.h"
#include "base/uniquename.h"
#include "macros/macrodelegate.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"
#include "macros/macrosearchfield.h"
#include "macros/macrouseslinks.h"
#include "macros/nstableviewmacrosubclass.h"
#include "platform/filepanels.h"

#include <QAction>

namespace {

constexpr int nameColumn = 0;

} // namespace

QString KeyboardMacrosController::checkForDuplicateMacroNameUsingDefaultName(const QVariantList &macros,
                                                                             const QString &name) const
{
    return uniqueName(macros, SettingsKeys::macroName, name);
}

void KeyboardMacrosController::clickAddMacro(QObject *)
{
    const Selection before{macroRow(), mSelectedMacroId};
    mMacroTableView->deselectAll();
    mIsAddMacro = true;
    mMacrosSettingsArray.append(MacroFile::newRecord(mMacrosSettingsArray));
    mLines.clear();
    linesHaveChanged();
    mMacroTableView->reloadData();
    const int last = int(mMacrosSettingsArray.size()) - 1;
    mMacroTableView->selectRow(last);
    mMacroTableView->editColumnRow(nameColumn, last, true);
    const int added = sendAppendedMacro();
    mMacroTableView->reloadData();
    if (added >= 0)
        mMacroTableView->selectRow(added);
    else
        selectAgain(before);
    noteSelectedMacro();
    mIsAddMacro = false;
    if (added >= 0)
        mMacroTableView->editColumnRow(nameColumn, added, true); // the new list has ended the edit
    else if (macroRow() >= 0)
        showLinesAgain();
    updateEventPart();
}

int KeyboardMacrosController::sendAppendedMacro()
{
    const QString name = MacroRecord::name(mMacrosSettingsArray.last().toMap());
    mIsListNew = false;
    if (mMacroDelegate)
        mMacroDelegate->addMacroWithSettings(mMacrosSettingsArray.last().toMap());
    // The daemon returns an added macro in a new list. A macro that was refused or not answered does not come back. It
    // must not stay in the list as a row that the daemon does not have, because all commands of the tab name rows.
    if (!mIsListNew) {
        mMacrosSettingsArray.removeLast();
        return -1;
    }
    // The name was free, but another client may also have added a macro of this name before the list came.
    int row = -1;
    for (int each = 0; each < mMacrosSettingsArray.size(); ++each) {
        if (MacroRecord::name(macroAt(each)) != name)
            continue;
        if (row >= 0)
            return -1; // also of this name: the row of the new one is unknown
        row = each;
    }
    return row;
}

void KeyboardMacrosController::startRenaming()
{
    mEditedRow = macroRow();
    mIsRenamingMacroName = true;
    mMacroTableView->editColumnRow(nameColumn, mEditedRow, true);
    updateEventButtons();
}

void KeyboardMacrosController::renameMacro(int row, const QString &newName)
{
    QVariantMap macro = macroAt(row);
    if (macro.isEmpty())
        return;
    // The macro moves to the end without its name: its own old name is then not a collision.
    macro[SettingsKeys::macroName] = QString();
    mMacrosSettingsArray.removeAt(row);
    mMacrosSettingsArray.append(macro);
    const QString name = checkForDuplicateMacroNameUsingDefaultName(mMacrosSettingsArray, newName);
    macro[SettingsKeys::macroName] = name;
    // The macro is now in the list twice, and the one after it is gone. Deliberate: the reload after the rename brings
    // the daemon's list.
    mMacrosSettingsArray.last() = macro;
    mMacrosSettingsArray[row] = macro;
    if (mMacroDelegate)
        mMacroDelegate->renameMacroAtIndexWithNewName(macroRow(), name);
    mIsRenamingMacroName = false;
    mEditedRow = -1;
}

// Where a macro is used

QList<KeyMappings::MacroUse> KeyboardMacrosController::usesOfSelectedMacro() const
{
    return macroRow() < 0 ? QList<KeyMappings::MacroUse>() : KeyMappings::macroUses(mProfiles, macroRow());
}

void KeyboardMacrosController::showUses()
{
    mMacroUses->show(usesOfSelectedMacro(), mActiveProfile);
}

// The search

void KeyboardMacrosController::showSearchResult()
{
    const auto fits = [this](int row) { return mMacroSearch->fits(MacroRecord::name(macroAt(row))); };
    int count = 0;
    for (int row = 0; row < mMacrosSettingsArray.size(); ++row)
        count += fits(row) ? 1 : 0;
    mMacroTableView->showOnly(mMacroSearch->isSearching() ? fits : std::function<bool(int)>());
    mMacroSearch->setResult(count);
}

void KeyboardMacrosController::stepThroughSearch(int step)
{
    const int count = int(mMacrosSettingsArray.size());
    int row = macroRow() < 0 && step < 0 ? 0 : macroRow();
    for (int tried = 0; tried < count; ++tried) {
        row = (row + step + count) % count;
        if (mMacroSearch->fits(MacroRecord::name(macroAt(row)))) {
            mMacroTableView->scrollRowToVisible(row);
            return mMacroTableView->selectRow(row);
        }
    }
}

void KeyboardMacrosController::duplicateMacro()
{
    if (!hasPresentRecords())
        return;
    const QVariantMap record = macroAt(macroRow());
    if (!record.isEmpty())
        addFinishedMacro(MacroFile::importedRecord(MacroFile::exportedRecord(record), mMacrosSettingsArray));
}

void KeyboardMacrosController::addFinishedMacro(const QVariantMap &macro)
{
    const Selection before{macroRow(), mSelectedMacroId};
    mMacroTableView->deselectAll();
    mMacrosSettingsArray.append(macro);
    const int added = sendAppendedMacro();
    mMacroTableView->reloadData();
    if (added >= 0)
        mMacroTableView->selectRow(added);
    else
        selectAgain(before);
}

void KeyboardMacrosController::clickDeleteMacro(QObject *)
{
    if (macroRow() < 0)
        return;
    const QString name = nameInAlert(MacroRecord::name(macroAt(macroRow())));
    const AlertTexts texts{localizedFormat("lkeyDeleteMacroAlertTitle", {name}),
                           localizedText("lkeyDeleteMacroAlertDesc"), localizedText("lkeyOK"),
                           localizedText("lkeyCancel"), macroUsesWords(usesOfSelectedMacro())};
    Sheet *alert = showAlert(texts, mMacrosWindow, [self = QPointer(this)](int returnCode) {
        if (self)
            self->sheetDidEndReturnCodeContextInfo(returnCode, confirmDelete);
    });
    mMacroSubject.note(alert, selectedMacro());
}

void KeyboardMacrosController::sheetDidEndReturnCodeContextInfo(int returnCode, int context)
{
    if (context == confirmDelete && returnCode == alertFirstButtonReturn)
        deleteMacro();
    else if (context == exportMacro && returnCode == panelOK && mSavePanel)
        exportMacroToFile(mSavePanel->chosenPath());
}

void KeyboardMacrosController::deleteMacro()
{
    const int row = macroRow();
    if (row < 0)
        return;
    {
        const auto replacing = mLines.beginReplacement();
        if (mMacroDelegate)
            mMacroDelegate->deleteMacroAtIndex(row);
        mMacroTableView->reloadData();
    }
    fetchLines();
    const int count = int(mMacrosSettingsArray.size());
    if (count == 0)
        setStateOfMacroDetailsTableWithState(true);
    const int next = rowInSearch(row);
    if (next >= 0)
        mMacroTableView->selectRow(next);
    else
        mMacroTableView->deselectAll();
    showSearchResult(); // the row of the deleted macro was shown without a match: it was the selected one
    mMacroTableView->setFocus();
}

int KeyboardMacrosController::rowInSearch(int row) const
{
    const auto fits = [this](int each) { return mMacroSearch->fits(MacroRecord::name(macroAt(each))); };
    const int count = int(mMacrosSettingsArray.size());
    for (int each = row; each < count; ++each) {
        if (fits(each))
            return each;
    }
    for (int each = qMin(row, count) - 1; each >= 0; --each) {
        if (fits(each))
            return each;
    }
    return -1;
}

void KeyboardMacrosController::clickMacroSettingsMenuItem(const QAction *item)
{
    mMacroTableView->endEditing(); // first writes a name that is being typed
    switch (item->data().toInt()) {
    case MacroCommands::rename: startRenaming(); break;
    case MacroCommands::newMacro: clickAddMacro(nullptr); break;
    case MacroCommands::importMacro: loadPanel(); break;
    case MacroCommands::exportMacro: loadSaveAsPanel(); break;
    case MacroCommands::deleteMacro: clickDeleteMacro(nullptr); break;
    case MacroCommands::duplicateMacro: duplicateMacro(); break;
    default: break;
    }
}
