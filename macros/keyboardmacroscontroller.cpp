// SPDX-License-Identifier: MIT
// The macro list and the state of the tab's controls; recording and event editing are in keyboardmacrosrecording.cpp.
#include "macros/keyboardmacroscontroller.h"

#include "app/util/daemonprotocol.h"
#include "app/util/settingskeys.h"
#include "app/util/text.h"
#include "app/util/uniquename.h"
#include "macros/macrodelegate.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/distributednotificationcenter.h"
#include "platform/pulldownbutton.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

// The name a new macro is stored under, whatever the language of the interface.
constexpr QLatin1StringView newMacroName{"Untitled Macro"};
constexpr int nameColumn = 0;

QString nameOf(const QVariantMap &macro)
{
    return macro.value(SettingsKeys::macroName).toString();
}

} // namespace

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
    if (!mView->parent())
        delete mView;
}

void KeyboardMacrosController::awakeFromNib()
{
    if (!mNotificationCenter)
        mNotificationCenter = &DistributedNotificationCenter::defaultCenter();
    mSequenceDict = {};
    mMacroDetailsArray = {};
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
    // The two menus share the numbers of their commands, not the titles.
    const int tag = item->data().toInt();
    if (item == mSettingsMacroDetails->itemWithTag(tag))
        return MacroCommands::isEnabledInEventGearMenu(tag, eventListState());
    return MacroCommands::isEnabledForList(tag, macroRow() >= 0);
}

QString KeyboardMacrosController::checkForDuplicateMacroNameUsingDefaultName(const QVariantList &macros,
                                                                             const QString &name) const
{
    QStringList names;
    for (const QVariant &macro : macros)
        names.append(nameOf(macro.toMap()));
    return uniqueName(names, name);
}

// Following the main controller

void KeyboardMacrosController::setControlsState(bool isEnabled)
{
    mHasDeviceConnected = isEnabled;
    setStateOfMacroTableWithState(isEnabled);
    setStateOfTableButtonsWithState(isEnabled);
    mRecordMacroDetails->setEnabled(isEnabled);
    if (isEnabled)
        enableDeleteEventBySelection();
}

void KeyboardMacrosController::refreshTableDisplay()
{
    mMacroTableView->reloadData();
    mMacroDetailsTableView->reloadData();
    updateEventPart();
}

void KeyboardMacrosController::updateSelectedMacroWithMacroDetails(const QVariantList &lines)
{
    mMacroDetailsArray.clear();
    for (const QVariant &line : lines)
        mMacroDetailsArray.append(line.toString());
    mMacroDetailsTableView->reloadData();
    updateEventButtons();
}

void KeyboardMacrosController::updateTableWithNewMacro()
{
    mMacroTableView->reloadData();
    // The selected macro may be the one that was recorded anew on the keyboard.
    if (!isRecordingOrCapturing())
        fetchLines();
    updateEventPart();
}

// States of groups of controls

void KeyboardMacrosController::setStateOfMacroDetailsTableWithState(bool isHidden)
{
    const QList<QWidget *> part{mMacroAssignmentLabel, mMacroDetailsScrollView, mMacroDetailsTableView,
                                mAddMacroDetails,      mDeleteMacroDetails,     mRecordMacroDetails,
                                mSettingsMacroDetails};
    for (QWidget *control : part)
        control->setVisible(!isHidden);
    mNoMacroLabel->setVisible(isHidden);
}

void KeyboardMacrosController::setStateOfTableButtonsWithState(bool isEnabled)
{
    const QList<QWidget *> buttons{mAddMacro,        mDeleteMacro,        mSettingsMacro,
                                   mAddMacroDetails, mDeleteMacroDetails, mSettingsMacroDetails};
    for (QWidget *button : buttons)
        button->setEnabled(isEnabled);
}

void KeyboardMacrosController::setStateOfMacroTableWithState(bool isEnabled)
{
    mMacroTableView->setEnabled(isEnabled);
    mMacroDetailsTableView->setEnabled(isEnabled);
}

/// Shows the event part exactly while a macro is selected.
void KeyboardMacrosController::updateEventPart()
{
    const bool isHidden = macroRow() < 0;
    if (mNoMacroLabel->isHidden() == isHidden)
        setStateOfMacroDetailsTableWithState(isHidden);
    updateEventButtons();
}

/// While a recording or a capture runs, only the record button is on; while a name is edited, none is.
void KeyboardMacrosController::updateEventButtons()
{
    const bool isRenaming = mMacroTableView->editedRow() >= 0;
    const bool isIdle = mHasDeviceConnected && !isRenaming && !isRecordingOrCapturing() && !mIsMacroEventEdit;
    mAddMacroDetails->setEnabled(isIdle);
    mSettingsMacroDetails->setEnabled(isIdle);
    mDeleteMacroDetails->setEnabled(isIdle && eventRow() >= 0);
    mRecordMacroDetails->setEnabled(mHasDeviceConnected && !isRenaming);
}

// Adding, renaming, deleting

void KeyboardMacrosController::clickAddMacro(QObject *)
{
    mMacroTableView->deselectAll();
    mIsAddMacro = true;
    const QVariantMap macro{
        {SettingsKeys::macroName, checkForDuplicateMacroNameUsingDefaultName(mMacrosSettingsArray, newMacroName)},
        {SettingsKeys::delay, MacroRecord::standardDelayMs},
        {DaemonProtocol::responsePortName, QString(DaemonProtocol::configuratorReplyPortName)},
        {SettingsKeys::sequence, QVariantMap()},
    };
    mMacrosSettingsArray.append(macro);
    updateSelectedMacroWithMacroDetails({});
    mMacroTableView->reloadData();
    const int last = int(mMacrosSettingsArray.size()) - 1;
    mMacroTableView->selectRow(last);
    mMacroTableView->editColumnRow(nameColumn, last, true);
    if (mMacroDelegate)
        mMacroDelegate->addMacroWithSettings(macro);
    mIsAddMacro = false;
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
    // With its name blanked and moved to the end, the macro's own old name is no collision.
    macro[SettingsKeys::macroName] = QString();
    mMacrosSettingsArray.removeAt(row);
    mMacrosSettingsArray.append(macro);
    const QString name = checkForDuplicateMacroNameUsingDefaultName(mMacrosSettingsArray, newName);
    macro[SettingsKeys::macroName] = name;
    // This replaces the macro that followed. Deliberate: the reload after the rename brings the daemon's list anew.
    mMacrosSettingsArray[row] = macro;
    if (mMacroDelegate)
        mMacroDelegate->renameMacroAtIndexWithNewName(macroRow(), name);
    mIsRenamingMacroName = false;
    mEditedRow = -1;
}

void KeyboardMacrosController::clickDeleteMacro(QObject *)
{
    if (macroRow() < 0)
        return;
    const AlertTexts texts{localizedFormat("lkeyDeleteMacroAlertTitle", {nameOf(macroAt(macroRow()))}),
                           localizedText("lkeyDeleteMacroAlertDesc"), localizedText("lkeyOK"),
                           localizedText("lkeyCancel")};
    showAlert(texts, mMacrosWindow, [self = QPointer(this)](int returnCode) {
        if (self)
            self->sheetDidEndReturnCodeContextInfo(returnCode, confirmDelete);
    });
}

void KeyboardMacrosController::sheetDidEndReturnCodeContextInfo(int returnCode, int context)
{
    if (context == confirmDelete && returnCode == alertFirstButtonReturn)
        deleteMacro();
}

void KeyboardMacrosController::deleteMacro()
{
    const int row = macroRow();
    if (row < 0)
        return;
    if (mMacroDelegate)
        mMacroDelegate->deleteMacroAtIndex(row);
    mMacroTableView->reloadData();
    fetchLines();
    const int count = int(mMacrosSettingsArray.size());
    if (count == 0)
        setStateOfMacroDetailsTableWithState(true);
    mMacroTableView->selectRow(row < count - 1 ? row : count - 1);
    mMacroTableView->setFocus();
}

void KeyboardMacrosController::clickMacroSettingsMenuItem(const QAction *item)
{
    switch (item->data().toInt()) {
    case MacroCommands::rename: startRenaming(); break;
    case MacroCommands::newMacro: clickAddMacro(nullptr); break;
    case MacroCommands::deleteMacro: clickDeleteMacro(nullptr); break;
    default: break;
    }
}

// The tables

int KeyboardMacrosController::numberOfRowsInTableView(TableView *tableView)
{
    return tableView == mMacroTableView ? int(mMacrosSettingsArray.size()) : int(mMacroDetailsArray.size());
}

QVariant KeyboardMacrosController::tableViewObjectValueForTableColumnRow(TableView *, const QString &column, int row)
{
    if (column == "macroName"_L1)
        return row >= 0 && row < mMacrosSettingsArray.size() ? QVariant(nameOf(macroAt(row))) : QVariant();
    return row >= 0 && row < mMacroDetailsArray.size() ? QVariant(mMacroDetailsArray.at(row).trimmed()) : QVariant();
}

void KeyboardMacrosController::tableViewSetObjectValueForTableColumnRow(TableView *tableView, const QVariant &value,
                                                                        const QString &, int row)
{
    if (tableView == mMacroTableView && !value.toString().isEmpty())
        renameMacro(row, value.toString());
}

void KeyboardMacrosController::tableViewSelectionDidChange(TableView *tableView)
{
    if (tableView == mMacroTableView && macroRow() >= 0 && !mIsAddMacro)
        fetchLines();
    updateEventPart();
}

void KeyboardMacrosController::fetchLines()
{
    if (mMacroDelegate && macroRow() >= 0)
        mMacroDelegate->getMacroDetailsForMacroAtIndex(macroRow());
}
