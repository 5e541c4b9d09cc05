// SPDX-License-Identifier: MIT
// The tables of the macros tab and the state of its controls. The list's commands are in keyboardmacroslist.cpp, the
// recording in keyboardmacrosrecording.cpp, the editing of events in keyboardmacrosevents.cpp.
#include "macros/keyboardmacroscontroller.h"

#include "base/daemonprotocol.h"
#include "base/text.h"
#include "macros/macrodelegate.h"
#include "macros/macroinsertsheet.h"
#include "macros/macrorecord.h"
#include "macros/macrosearchfield.h"
#include "macros/macrotrysheet.h"
#include "macros/macrotypetext.h"
#include "macros/macrouseslinks.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/buttonarea.h"
#include "platform/distributednotificationcenter.h"
#include "platform/emptystate.h"
#include "platform/pulldownbutton.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPalette>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

KeyboardMacrosController::KeyboardMacrosController(QObject *parent) : QObject(parent)
{
    buildView();
}

KeyboardMacrosController::~KeyboardMacrosController()
{
    disconnect(mMacroTableView, nullptr, this, nullptr);
    mMacroTableView->setDataSource(nullptr);
    mMacroDetailsTableView->setDataSource(nullptr);
    delete mEditDelayWindow;
    delete mEditEventWindow;
    delete mTryWindow;
    delete mTypeTextWindow;
    delete mPauseWindow;
    delete mInsertWindow;
    if (!mView->parent())
        delete mView;
}

void KeyboardMacrosController::awakeFromNib()
{
    if (!mNotificationCenter)
        mNotificationCenter = &DistributedNotificationCenter::defaultCenter();
    mSequenceDict = {};
    mLines.clear();
    mNotificationCenter->addObserver(this, DaemonProtocol::macroSequenceNotification,
                                     [this](const DistributedNotification &n) { recordEvents(n.userInfo); });
    mNotificationCenter->addObserver(this, DaemonProtocol::editedEventKey,
                                     [this](const DistributedNotification &n) { singleKeyEvents(n.userInfo); });
    mMacroTableView->setKeyboardMacrosController(this);
    mMacroDetailsTableView->setKeyboardMacrosController(this);
    mInputMacroDelay->setKeyboardMacrosController(this);
    setStateOfMacroDetailsTableWithState(true);
    setupSettingsMenus();
    mInputMacroDelay->clear();
}

void KeyboardMacrosController::setupSettingsMenus()
{
    const auto validate = [this](const QAction *item) { return validateMenuItem(item); };
    for (PulldownButton *button : {mSettingsMacro, mSettingsMacroDetails})
        button->setImages(u"GearOn.png"_s, u"GearOff.png"_s);
    mSettingsMacro->setCommands(
        MacroCommands::ofList(), [this](const QAction *item) { clickMacroSettingsMenuItem(item); }, validate);
    mSettingsMacroDetails->setCommands(
        MacroCommands::ofEventList(), [this](const QAction *item) { clickMacroDetailsSettingsMenuItem(item); },
        validate);
}

// Queries

TableView *KeyboardMacrosController::macroTableView() const
{
    return mMacroTableView;
}

TableView *KeyboardMacrosController::macroDetailsTableView() const
{
    return mMacroDetailsTableView;
}

int KeyboardMacrosController::macroRow() const
{
    return mMacroTableView->selectedRow();
}

int KeyboardMacrosController::eventRow() const
{
    return mMacroDetailsTableView->selectedRow();
}

QVariantMap KeyboardMacrosController::macroAt(int row) const
{
    return row >= 0 && row < mMacrosSettingsArray.size() ? mMacrosSettingsArray.at(row).toMap() : QVariantMap();
}

bool KeyboardMacrosController::validateMenuItem(const QAction *item) const
{
    // The two menus share the numbers of their commands, but not the titles.
    const int tag = item->data().toInt();
    if (item == mSettingsMacroDetails->itemWithTag(tag))
        return MacroCommands::isEnabledInEventGearMenu(tag, eventListState());
    return MacroCommands::isEnabledForList(tag, macroRow() >= 0);
}

// Following the main controller

void KeyboardMacrosController::setControlsState(bool isEnabled)
{
    mHasDeviceConnected = isEnabled;
    if (!isEnabled) {
        for (SheetSubject *subject : {&mMacroSubject, &mImportSubject, &mTrySubject, &mEventsSubject})
            subject->end();
    }
    setStateOfMacroTableWithState(isEnabled);
    setStateOfTableButtonsWithState(isEnabled);
    mRecordMacroDetails->setEnabled(isEnabled);
    if (isEnabled)
        enableDeleteEventBySelection();
    // The keyboard may be announced again meanwhile. The user must not select another macro before Stop saves this one.
    if (hasRecording() || isMacroEventEdit() || isChoosingKey()) {
        setStateOfMacroTableWithState(false);
        setStateOfTableButtonsWithState(false);
    }
}

void KeyboardMacrosController::setMMacrosSettingsArray(const QVariantList &macros)
{
    mMacrosSettingsArray = macros;
    mIsListNew = true;
}

void KeyboardMacrosController::setProfiles(const QVariantList &profiles, int activeProfile)
{
    mProfiles = profiles;
    mActiveProfile = activeProfile;
}

void KeyboardMacrosController::refreshTableDisplay()
{
    showNewList();
    showUses();
    showSearchResult();
    mMacroDetailsTableView->reloadData();
    fetchChangedLines();
    endOutdatedSheets();
    updateEventPart();
}

void KeyboardMacrosController::updateSelectedMacroWithMacroDetails(const QVariantList &lines)
{
    QStringList texts;
    for (const QVariant &line : lines)
        texts.append(line.toString()); // an element that is not text keeps its row, which addresses the event
    mLines.take(texts);
    linesHaveChanged();
}

bool KeyboardMacrosController::hasPresentRecords()
{
    return !mMacroDelegate || mMacroDelegate->reloadMacros();
}

void KeyboardMacrosController::linesHaveChanged()
{
    mMacroDetailsTableView->reloadData();
    updatePlaceholders();
    updateEventButtons();
}

void KeyboardMacrosController::updateTableWithNewMacro()
{
    showNewList();
    showUses();
    showSearchResult();
    fetchChangedLines(); // the selected macro may have been recorded again on the keyboard
    endOutdatedSheets();
    updateEventPart();
}

int KeyboardMacrosController::rowOfSelectedMacro() const
{
    if (!mSelectedMacroId.isValid())
        return macroRow();
    const auto isSelected = [this](const QVariant &macro) {
        return MacroRecord::identity(macro.toMap()) == mSelectedMacroId;
    };
    if (isSelected(macroAt(macroRow())))
        return macroRow();
    const auto found = std::ranges::find_if(mMacrosSettingsArray, isSelected);
    return found == mMacrosSettingsArray.end() ? -1 : int(found - mMacrosSettingsArray.begin());
}

void KeyboardMacrosController::noteSelectedMacro()
{
    mSelectedMacroId = MacroRecord::identity(macroAt(macroRow()));
}

void KeyboardMacrosController::selectAgain(const Selection &before)
{
    mSelectedMacroId = before.macroId;
    mMacroTableView->selectRow(before.macroId.isValid() ? rowOfSelectedMacro() : before.row);
}

void KeyboardMacrosController::showNewList()
{
    const int row = rowOfSelectedMacro();
    mMacroTableView->reloadData();
    // While an add is in progress, its row is the last one and has no identifier yet.
    if (mIsAddMacro)
        return;
    if (row != macroRow()) {
        const auto following = mLines.beginFollowing();
        if (row < 0)
            mMacroTableView->deselectAll();
        else
            mMacroTableView->selectRow(row);
    }
    noteSelectedMacro();
    if (macroRow() < 0 && hasRecording())
        abandonRecording();
}

// States of groups of controls

void KeyboardMacrosController::setStateOfMacroDetailsTableWithState(bool isHidden)
{
    const QList<QWidget *> part{mMacroAssignmentLabel,
                                mMacroDetailsScrollView,
                                mMacroDetailsTableView,
                                mAddMacroDetails,
                                mDeleteMacroDetails,
                                mRecordMacroDetails,
                                mTryMacro,
                                mSettingsMacroDetails,
                                mMacroUses};
    for (QWidget *control : part)
        control->setVisible(!isHidden);
    mNoMacroState->setVisible(isHidden);
    updateTimeline();
}

void KeyboardMacrosController::setStateOfTableButtonsWithState(bool isEnabled)
{
    const QList<QWidget *> buttons{mAddMacro,        mFirstMacro,         mDeleteMacro,         mSettingsMacro,
                                   mAddMacroDetails, mDeleteMacroDetails, mSettingsMacroDetails};
    for (QWidget *button : buttons)
        button->setEnabled(isEnabled && mHasDeviceConnected);
    mTryMacro->setEnabled(isEnabled && mHasDeviceConnected && !mLines.shown().isEmpty());
    if (macroRow() < 0)
        mDeleteMacro->setEnabled(false);
}

void KeyboardMacrosController::setStateOfMacroTableWithState(bool isEnabled)
{
    for (QWidget *control : QList<QWidget *>{mMacroTableView, mMacroSearch, mMacroUses})
        control->setEnabled(isEnabled && mHasDeviceConnected);
    mMacroDetailsTableView->setEnabled(isEnabled && mHasDeviceConnected);
    updateTimeline();
}

/// Shows the event part only while a macro is selected.
void KeyboardMacrosController::updateEventPart()
{
    const bool isHidden = macroRow() < 0;
    if (mNoMacroState->isHidden() == isHidden)
        setStateOfMacroDetailsTableWithState(isHidden);
    updatePlaceholders();
    updateEventButtons();
}

/// Shows the user's next step where a list or the event part is empty.
void KeyboardMacrosController::updatePlaceholders()
{
    const bool hasMacros = !mMacrosSettingsArray.isEmpty();
    const QString nothingFound = mMacroSearch->isSearching() ? localizedText("lkeyMacroSearchNothing") : QString();
    mMacroTableView->setPlaceholderText(hasMacros ? nothingFound : localizedText("lkeyNoMacros"));
    mNoMacroLabel->setText(localizedText(hasMacros ? "lkeyNoMacroSelected" : "lkeyNoMacrosHint"));
    mFirstMacro->setVisible(!hasMacros);
    mRecordingHint->setVisible(hasRecording());
    mButtonArea->setVisible(hasRecording());
    mMacroDetailsTableView->setPlaceholderText(localizedText(hasRecording() ? "lkeyRecordingHint" : "lkeyNoEvents"));
    updateTimeline();
}

/// During a recording or a capture, only the record button is enabled. While a name is edited, no button of the event
/// list is. Buttons that delete need a selected row.
void KeyboardMacrosController::updateEventButtons()
{
    const bool isRenaming = mMacroTableView->editedRow() >= 0;
    const bool isUnused = mHasDeviceConnected && !hasRecording() && !isMacroEventEdit() && !isChoosingKey();
    const bool isIdle = isUnused && !isRenaming;
    mDeleteMacro->setEnabled(isUnused && macroRow() >= 0);
    mAddMacroDetails->setEnabled(isIdle);
    mSettingsMacroDetails->setEnabled(isIdle);
    mDeleteMacroDetails->setEnabled(isIdle && eventRow() >= 0);
    mRecordMacroDetails->setEnabled(mHasDeviceConnected && !isRenaming);
    mTryMacro->setEnabled(isIdle && !mLines.shown().isEmpty());
}

/// The event list is disabled during a recording, but that is when the user reads it.
void KeyboardMacrosController::updateLineColor()
{
    QPalette palette;
    if (hasRecording()) {
        const QColor text = mView->palette().color(QPalette::Active, QPalette::Text);
        palette.setColor(QPalette::Disabled, QPalette::Text, text);
    }
    mMacroDetailsTableView->setPalette(palette);
}

// The tables

int KeyboardMacrosController::numberOfRowsInTableView(TableView *tableView)
{
    return tableView == mMacroTableView ? int(mMacrosSettingsArray.size()) : int(mLines.shown().size());
}

QVariant KeyboardMacrosController::tableViewObjectValueForTableColumnRow(TableView *, const QString &column, int row)
{
    // Fetching a name also updates the event part for the selection.
    if (column == "macroName"_L1) {
        updateEventPart();
        return row >= 0 && row < mMacrosSettingsArray.size() ? QVariant(MacroRecord::name(macroAt(row))) : QVariant();
    }
    return row >= 0 && row < mLines.shown().size() ? QVariant(mLines.shown().at(row).trimmed()) : QVariant();
}

void KeyboardMacrosController::tableViewSetObjectValueForTableColumnRow(TableView *tableView, const QVariant &value,
                                                                        const QString &, int row)
{
    if (tableView == mMacroTableView && !value.toString().isEmpty())
        renameMacro(row, value.toString());
}

void KeyboardMacrosController::tableViewSelectionDidChange(TableView *tableView)
{
    if (tableView == mMacroTableView && !mLines.areFollowing()) {
        noteSelectedMacro();
        if (!mIsAddMacro)
            fetchLines();
    }
    if (tableView == mMacroTableView)
        showUses();
    updateEventPart();
}

QIcon KeyboardMacrosController::tableViewImageForTableColumnRow(TableView *tableView, const QString &, int row)
{
    if (tableView != mMacroDetailsTableView || row < 0 || row >= mLines.shown().size())
        return {};
    const EventLineKind kind = eventLineKind(mLines.shown().at(row));
    const bool isUnpaired = std::ranges::binary_search(mUnpairedRows, row);
    return isUnpaired ? mEventIcons.unpairedIcon(kind, tableView->palette())
                      : mEventIcons.icon(kind, tableView->palette());
}

QString KeyboardMacrosController::tableViewRemarkForTableColumnRow(TableView *tableView, const QString &, int row)
{
    if (tableView != mMacroDetailsTableView || !std::ranges::binary_search(mUnpairedRows, row))
        return {};
    const bool isRelease = eventLineKind(mLines.shown().value(row)) == EventLineKind::release;
    return localizedText(isRelease ? "lkeyUnpairedRelease" : "lkeyUnpairedPress");
}

void KeyboardMacrosController::fetchLines()
{
    if (!mMacroDelegate || macroRow() < 0)
        return;
    mLines.beginRequest(macroAt(macroRow()));
    mMacroDelegate->getMacroDetailsForMacroAtIndex(macroRow());
    if (!mLines.endRequest())
        linesHaveChanged();
}

void KeyboardMacrosController::showLinesAgain()
{
    if (mLines.showReplyFor(macroAt(macroRow())))
        linesHaveChanged();
    else
        fetchLines();
}

void KeyboardMacrosController::fetchChangedLines()
{
    if (macroRow() < 0 || mIsAddMacro || hasRecording())
        return;
    // Another client may have edited the events.
    if (mLines.areOutdatedFor(macroAt(macroRow())))
        fetchLines();
}

QVariant KeyboardMacrosController::selectedMacro() const
{
    const QVariantMap macro = macroAt(macroRow());
    return QVariantList{MacroRecord::identity(macro), MacroRecord::name(macro)};
}

QVariant KeyboardMacrosController::eventsOfSelectedMacro() const
{
    // The record's events are not used: after an edit they are older than the lines.
    const QVariantMap macro = macroAt(macroRow());
    const QVariant identity = MacroRecord::identity(macro);
    return QVariantList{identity.isValid() ? identity : MacroRecord::name(macro), mLines.shown()};
}

void KeyboardMacrosController::endOutdatedSheets()
{
    mMacroSubject.endUnless(selectedMacro());
    mTrySubject.endUnless(selectedMacro());
    mEventsSubject.endUnless(eventsOfSelectedMacro());
}
