// SPDX-License-Identifier: MIT
// The part of KeyboardKeysController that shows and changes the selected key's assignment: pop-ups, sub-menus, open
// panel.
#include "keys/keyboardkeyscontroller.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "base/visibletext.h"
#include "keys/keyboardpicture.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "platform/applicationchooser.h"
#include "platform/applicationinformation.h"
#include "platform/filepanels.h"
#include "platform/popupbutton.h"
#include "platform/scrollingmenu.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

constexpr int manageTag = 0; // the first item of a sub-menu; the records follow with tags from 1
constexpr int profilesTabIndex = 1;
constexpr int macrosTabIndex = 2;

// The labels of the assignment pop-up's items, in the order of AssignmentPosition.
constexpr const char *assignmentLabelKeys[] = {
    "lkeyDefaultKey", "lkeySingleKey", "lkeyMacro", "lkeyProfile", "lkeyLaunchProgram", "lkeyDisable",
};

QString titleWithDetail(const char *labelKey, const QString &detail)
{
    return formatted(u"%@: %@"_s, {localizedText(labelKey), detail});
}

// Returns "Text Editor" for "/Applications/Text Editor.app/".
QString applicationTitle(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    const QFileInfo info(path);
    const QString title = info.completeBaseName();
    return title.isEmpty() ? info.fileName() : title;
}

// The name of the record, or its number and that it does not exist.
QString recordWords(const QVariantList &records, qint32 index, QLatin1StringView nameKey)
{
    const std::optional<QString> name = KeyMappings::recordName(records, index, nameKey);
    return name ? *name : localizedFormat("lkeyKeysLostRecord", {QString::number(qint64{index} + 1)});
}

using NameReader = QString (*)(const QVariantMap &record);

// Returns the title at each tag: first the item that leads to the records' own tab, then the records.
QStringList submenuTitles(const char *manageTextKey, const QVariantList &records, NameReader nameOf)
{
    QStringList titles{localizedText(manageTextKey)};
    titles.reserve(records.size() + 1);
    for (const QVariant &record : records)
        titles << nameOf(record.toMap());
    return titles;
}

QStringList itemTitles(const QMenu *menu)
{
    QStringList titles;
    for (const QAction *item : menu->actions())
        if (!item->isSeparator())
            titles << menuItemTitle(item);
    return titles;
}

} // namespace

void KeyboardKeysController::populateUIControls()
{
    mAssignFunction->removeAllItems();
    for (const char *labelKey : assignmentLabelKeys)
        mAssignFunction->addItemWithTitle(localizedText(labelKey));
    mMacroPlaybackPopUp->removeAllItems();
    for (const KeyMappings::RepeatMode &mode : KeyMappings::repeatModes())
        mMacroPlaybackPopUp->addItemWithTitle(localizedText(mode.labelKey));
    addClipboardItems();
}

int KeyboardKeysController::checkPopUpAssignmentIndexForValue(int command) const
{
    return KeyMappings::checkPopUpAssignmentIndexForValue(command);
}

int KeyboardKeysController::macroRepeat(int value) const
{
    return KeyMappings::macroRepeat(value);
}

void KeyboardKeysController::updatePopUpSelection()
{
    const KeyMappings::Entry entry = entryForKey(selectedCode());
    const int position = checkPopUpAssignmentIndexForValue(entry.command);
    resetAssignmentTitles();
    if (position != KeyMappings::macroPosition)
        setPlaybackVisible(false);
    checkForSelectedFunctionKey();
    functionKeysInfoDisplay(position);
    showEntry(entry, position);
    mAssignFunction->selectItemAtIndex(position);
    // The items have no title for it, and the first one must still offer the default key.
    if (entry.isUnknown())
        mAssignFunction->setShownTitle(localizedText("lkeyKeysUnknownAssignment"));
    showSelectedKeys();
}

void KeyboardKeysController::resetAssignmentTitles()
{
    for (int position = KeyMappings::singleKeyPosition; position <= KeyMappings::launchProgramPosition; ++position)
        mAssignFunction->setItemTitleAtIndex(position, localizedText(assignmentLabelKeys[position]));
}

void KeyboardKeysController::showEntry(const KeyMappings::Entry &entry, int position)
{
    if (position == KeyMappings::macroPosition) {
        mMacroPlaybackPopUp->selectItemAtIndex(macroRepeat(entry.param2));
        setPlaybackVisible(true);
    }
    const char *problemKey = assignmentProblem(entry);
    if (const std::optional<QString> detail = assignmentDetail(entry))
        mAssignFunction->setItemTitleAtIndex(position, titleWithDetail(assignmentLabelKeys[position], *detail));
    mAssignFunction->setAccessibleDescription(problemKey ? localizedText(problemKey) : QString());
}

const char *KeyboardKeysController::assignmentProblem(const KeyMappings::Entry &entry) const
{
    const auto exists = [&entry](const QVariantList &records, QLatin1StringView nameKey) {
        return KeyMappings::recordName(records, entry.param1, nameKey).has_value();
    };
    if (entry.is(Assignment::playMacro))
        return exists(mAllMacrosArray, SettingsKeys::macroName) ? nullptr : "lkeyKeysMacroGone";
    if (entry.is(Assignment::switchProfile))
        return exists(mAllProfilesArray, SettingsKeys::profileName) ? nullptr : "lkeyKeysProfileGone";
    return entry.isUnknown() ? "lkeyKeysKindUnknown" : nullptr;
}

std::optional<QString> KeyboardKeysController::assignmentDetail(const KeyMappings::Entry &entry) const
{
    switch (static_cast<Assignment>(entry.command)) {
    case Assignment::playMacro: return recordWords(mAllMacrosArray, entry.param1, SettingsKeys::macroName);
    case Assignment::switchProfile: return recordWords(mAllProfilesArray, entry.param1, SettingsKeys::profileName);
    case Assignment::singleKey: return eventParser::getStringWithHIDWithModifier(entry.param1, entry.param2);
    case Assignment::launchProgram:
        return entry.programPath.isEmpty() ? std::nullopt : std::optional(applicationTitle(entry.programPath));
    case Assignment::disabled:
    case Assignment::defaultKey: break;
    }
    return std::nullopt;
}

QString KeyboardKeysController::assignmentDescription(const KeyMappings::Entry &entry) const
{
    if (entry.isUnknown())
        return localizedText("lkeyKeysUnknownAssignment");
    const char *labelKey = assignmentLabelKeys[checkPopUpAssignmentIndexForValue(entry.command)];
    const std::optional<QString> detail = assignmentDetail(entry);
    const QString text = detail ? titleWithDetail(labelKey, *detail) : localizedText(labelKey);
    if (!entry.is(Assignment::playMacro) || assignmentProblem(entry))
        return text;
    const char *repeatKey = KeyMappings::repeatModes()[static_cast<std::size_t>(macroRepeat(entry.param2))].labelKey;
    return localizedFormat("lkeyKeysMacroWithRepeat", {text, localizedText(repeatKey)});
}

void KeyboardKeysController::updateDescriptions()
{
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        KeyButton *button = mPicture->button(row.outlet);
        const KeyMappings::Entry entry = entryForKey(row.code);
        const QString description = visibleText(assignmentDescription(entry), u' ');
        button->setMark(keyMarkForCommand(entry.command));
        QString toolTip =
            localizedFormat("lkeyKeysToolTip", {shownKeyName(row.code).toHtmlEscaped(), description.toHtmlEscaped()});
        const QString info = extraKeyInfo(row.code);
        if (!info.isEmpty())
            toolTip += u"<br>"_s + info.toHtmlEscaped();
        if (toolTip == button->toolTip())
            continue;
        button->setAccessibleDescription(description);
        button->setToolTip(toolTip);
        button->setWhatsThis(info); // assistive tools read it as the help
    }
    showSearchResult();
}

void KeyboardKeysController::setPlaybackVisible(bool isVisible)
{
    mMacroPlaybackPopUp->setVisible(isVisible);
    mPlaybackOptionLabel->setVisible(isVisible);
}

void KeyboardKeysController::clickAssignFunction(QObject *)
{
    const int position = mAssignFunction->indexOfSelectedItem();
    if (position != KeyMappings::macroPosition)
        setPlaybackVisible(false);
    switch (position) {
    case KeyMappings::defaultKeyPosition:
        updateSelectedKeyCommandValueParamOneAndParamTwo(
            static_cast<int>(Assignment::defaultKey), KeyMappings::entryForKey(mDefaultDict, selectedCode()).param1, 0);
        break;
    case KeyMappings::singleKeyPosition: openSingleKeySheet(); break;
    case KeyMappings::launchProgramPosition: openApplicationChooser(); break;
    case KeyMappings::disablePosition:
        updateSelectedKeyCommandValueParamOneAndParamTwo(static_cast<int>(Assignment::disabled), 0, 0);
        break;
    default: // macro and profile: the choice comes from the item's sub-menu
        break;
    }
}

void KeyboardKeysController::clickMacroPlayback(QObject *)
{
    updateSelectedKeyCommandValueParamOneAndParamTwo(
        static_cast<int>(Assignment::playMacro), entryForKey(selectedCode()).param1,
        KeyMappings::macroRepeatValue(mMacroPlaybackPopUp->indexOfSelectedItem()));
}

void KeyboardKeysController::updateSelectedKeyCommandValueParamOneAndParamTwo(int command, int paramOne, int paramTwo)
{
    writeEntry(static_cast<Assignment>(command), paramOne, paramTwo);
}

void KeyboardKeysController::writeEntry(Assignment assignment, const QVariant &param1, const QVariant &param2)
{
    // Without a profile, the "Keys" sent here would be this single entry and would replace everything that the daemon
    // has. The file of the last selected key may also name anything.
    if (!mKeysDelegate || mKeysCurrentProfileDict.isEmpty() || !KeyLayout::rowForCode(selectedCode())) {
        updatePopUpSelection();
        return;
    }
    QVariantMap keys = ProfileRecord::keys(mKeysCurrentProfileDict);
    for (const int code : selectedCodes()) {
        const bool hasOwn = assignment == Assignment::defaultKey && code != selectedCode();
        const QVariant ownParam1 = hasOwn ? KeyMappings::entryForKey(mDefaultDict, code).param1 : param1;
        keys = KeyMappings::withEntry(keys, KeyLayout::codeText(code), assignment, ownParam1, param2);
    }
    mKeysDelegate->updateKeySettings({{SettingsKeys::keys, keys}});
}

void KeyboardKeysController::setupSubMenu(int position, const QStringList &titles,
                                          void (KeyboardKeysController::*selector)(QAction *))
{
    if (!mAssignFunction->itemAtIndex(position))
        return; // the list of assignments is still empty
    // The menu is made again only for other titles: this runs at every change of the settings, however small.
    if (const QMenu *earlier = mAssignFunction->submenuAtIndex(position); earlier && itemTitles(earlier) == titles) {
        validateItems(earlier);
        return;
    }
    auto *menu = new ScrollingMenu;
    for (int tag = manageTag; tag < static_cast<int>(titles.size()); ++tag) {
        QAction *item = addMenuItem(menu, titles[tag], tag);
        connect(item, &QAction::triggered, this, [this, item, selector] { (this->*selector)(item); });
        if (tag == manageTag)
            menu->addSeparator();
        else
            menu->addChoice(item);
    }
    connect(menu, &QMenu::aboutToShow, this, [this, menu, position] {
        validateItems(menu);
        menu->markItem(itemOfSelectedKey(menu, position));
    });
    validateItems(menu);
    mAssignFunction->setSubmenuAtIndex(position, menu);
}

QAction *KeyboardKeysController::itemOfSelectedKey(const QMenu *menu, int position) const
{
    const KeyMappings::Entry entry = entryForKey(selectedCode());
    if (entry.isUnknown() || checkPopUpAssignmentIndexForValue(entry.command) != position)
        return nullptr;
    const QList<QAction *> items = menu->actions();
    const auto isOfEntry = [&entry](const QAction *item) {
        return item->isCheckable() && menuItemTag(item) == qint64{entry.param1} + 1;
    };
    const auto found = std::ranges::find_if(items, isOfEntry);
    return found == items.end() ? nullptr : *found;
}

void KeyboardKeysController::setupProfileSubMenu()
{
    setupSubMenu(KeyMappings::profilePosition,
                 submenuTitles("lkeyManageProfile", mAllProfilesArray, ProfileRecord::name),
                 &KeyboardKeysController::profileSubMenuSelector);
}

void KeyboardKeysController::setupMacroSubMenu()
{
    setupSubMenu(KeyMappings::macroPosition, submenuTitles("lkeyManageMacro", mAllMacrosArray, MacroRecord::name),
                 &KeyboardKeysController::macroSubMenuSelector);
}

void KeyboardKeysController::profileSubMenuSelector(QAction *sender)
{
    const int tag = menuItemTag(sender);
    if (tag == manageTag) {
        if (mKeysDelegate)
            mKeysDelegate->selectTabAtIndex(profilesTabIndex);
        return;
    }
    updateSelectedKeyCommandValueParamOneAndParamTwo(static_cast<int>(Assignment::switchProfile), tag - 1, 0);
}

void KeyboardKeysController::macroSubMenuSelector(QAction *sender)
{
    const int tag = menuItemTag(sender);
    mSelectedIndexOfMacroSubMenu = tag - 1;
    if (tag == manageTag) {
        if (mKeysDelegate)
            mKeysDelegate->selectTabAtIndex(macrosTabIndex);
        return;
    }
    setPlaybackVisible(true);
    updateSelectedKeyCommandValueParamOneAndParamTwo(static_cast<int>(Assignment::playMacro), tag - 1,
                                                     KeyMappings::playOnceValue);
}

bool KeyboardKeysController::validateMenuItem(QAction *item)
{
    // Deliberate: only titles are compared, so a macro named like the active profile is also hidden.
    const bool isActiveProfile = menuItemTitle(item) == activeProfileName();
    item->setVisible(!isActiveProfile);
    item->setEnabled(!isActiveProfile);
    return !isActiveProfile;
}

void KeyboardKeysController::validateItems(const QMenu *menu)
{
    for (QAction *item : menu->actions())
        if (!item->isSeparator())
            validateMenuItem(item);
}

ApplicationChooser *KeyboardKeysController::applicationChooser() const
{
    return mApplicationChooser;
}

OpenPanel *KeyboardKeysController::openPanel() const
{
    return mOpenPanel;
}

void KeyboardKeysController::openApplicationChooser()
{
    delete mOpenPanel.data();
    delete mApplicationChooser.data();
    mApplicationChooser = new ApplicationChooser(ApplicationList::Windows::ofEntries, mKeysWindow);
    mApplicationChooser->setObjectName("mApplicationChooser"_L1);
    connect(mApplicationChooser, &QDialog::finished, this, [this](int result) {
        if (result == ApplicationChooser::otherReturn)
            openApplicationPanel();
        else
            applicationChoiceDidEnd(result, mApplicationChooser->chosenInformation(),
                                    mApplicationChooser->chosenTitle());
    });
    mApplicationChooser->open();
    mSheetSubject.note(mApplicationChooser, profile());
}

void KeyboardKeysController::openApplicationPanel()
{
    mOpenPanel = new OpenPanel({localizedText("lkeyChooseApplication"), localizedText("lkeyApplicationFiles"),
                                ApplicationInformation::fileTypes(), ApplicationInformation::startFolder()},
                               mKeysWindow);
    mOpenPanel->setObjectName("mOpenPanel"_L1);
    connect(mOpenPanel, &QDialog::finished, this,
            [this](int result) { openPanelDidEndReturnCodeContextInfo(mOpenPanel, result, nullptr); });
    mOpenPanel->open();
    mSheetSubject.note(mOpenPanel, profile());
}

void KeyboardKeysController::openPanelDidEndReturnCodeContextInfo(OpenPanel *panel, int returnCode, void *)
{
    applicationChoiceDidEnd(returnCode, ApplicationInformation::read(panel->chosenPath()),
                            QFileInfo(panel->chosenPath()).fileName());
}

void KeyboardKeysController::applicationChoiceDidEnd(int returnCode, const std::optional<QVariantMap> &information,
                                                     const QString &name)
{
    if (returnCode == panelOK) {
        const QString path =
            information.value_or(QVariantMap()).value(ApplicationInformation::resolvedPathKey).toString();
        if (!path.isEmpty())
            return writeEntry(Assignment::launchProgram, path, QString());
        updatePopUpSelection(); // nothing there can be launched
        if (mKeysDelegate)
            mKeysDelegate->report({.event = StatusReport::Event::notAnApplication, .subject = name});
    } else if (returnCode == panelCancel) {
        updatePopUpSelection();
    }
}
