// SPDX-License-Identifier: MIT
// The part of KeyboardKeysController for several selected keys, and for copying and pasting assignments.
#include "keys/keyboardkeyscontroller.h"

#include "base/settingskeys.h"
#include "base/text.h"
#include "keys/assignmentclip.h"
#include "keys/keyboardpicture.h"
#include "keys/keylayout.h"
#include "platform/popupbutton.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

// Returns the index of the record called `name`: `index` if that record still has the name, else the first with it.
std::optional<int> indexOfRecord(const QVariantList &records, QLatin1StringView nameKey, const QString &name, int index)
{
    const auto hasName = [&](qsizetype at) { return records[at].toMap().value(nameKey).toString() == name; };
    if (index >= 0 && index < records.size() && hasName(index))
        return index;
    for (qsizetype at = 0; at < records.size(); ++at)
        if (hasName(at))
            return static_cast<int>(at);
    return std::nullopt;
}

} // namespace

QList<int> KeyboardKeysController::selectedCodes() const
{
    return mOtherSelectedKeys + QList<int>{selectedCode()};
}

void KeyboardKeysController::setOtherSelectedKeys(const QList<int> &codes)
{
    mOtherSelectedKeys = codes;
    for (const KeyRow &row : KeyLayout::selectableKeys())
        mPicture->button(row.outlet)->setAlsoSelected(codes.contains(row.code));
    showSelectedKeys();
}

void KeyboardKeysController::selectKeys(QList<int> codes)
{
    codes.removeIf([](int code) { return !KeyLayout::rowForCode(code); });
    if (codes.isEmpty())
        return;
    KeyButton *last = mPicture->button(KeyLayout::rowForCode(codes.takeLast())->outlet);
    last->click(); // selects this key alone
    setOtherSelectedKeys(codes);
}

void KeyboardKeysController::addToSelection(KeyButton *key, int code)
{
    if (!key->isEnabled() || mIsFirstLaunch || code == selectedCode())
        return;
    QList<int> others = selectedCodes();
    others.removeAll(code);
    key->click(); // selects this key alone
    setOtherSelectedKeys(others);
}

void KeyboardKeysController::toggleSelection(KeyButton *key, int code)
{
    QList<int> others = mOtherSelectedKeys;
    if (!key->isEnabled() || (code == selectedCode() && others.isEmpty()))
        return;
    if (others.removeAll(code) > 0) {
        setOtherSelectedKeys(others);
    } else if (code == selectedCode()) {
        const KeyRow *latest = KeyLayout::rowForCode(others.takeLast());
        mPicture->button(latest->outlet)->click();
        setOtherSelectedKeys(others);
    } else {
        addToSelection(key, code);
    }
}

void KeyboardKeysController::connectSelection()
{
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        KeyButton *key = mPicture->button(row.outlet);
        connect(key, &KeyButton::toggleRequested, this, [this, key, code = row.code] { toggleSelection(key, code); });
        connect(key, &KeyButton::additionRequested, this, [this, key, code = row.code] { addToSelection(key, code); });
    }
    mCopy = new QAction(localizedText("lkeyKeysCopy"), this);
    mCopy->setObjectName("mCopyAssignment"_L1);
    mPaste = new QAction(localizedText("lkeyKeysPaste"), this);
    mPaste->setObjectName("mPasteAssignment"_L1);
    mCopy->setShortcut(QKeySequence::Copy);
    mPaste->setShortcut(QKeySequence::Paste);
    for (QAction *action : {mCopy, mPaste}) {
        // Elsewhere on the tab the shortcuts belong to the text with the focus.
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        mPicture->addAction(action);
    }
    connect(mCopy, &QAction::triggered, this, &KeyboardKeysController::copyAssignment);
    connect(mPaste, &QAction::triggered, this, &KeyboardKeysController::pasteAssignment);
    connect(mAssignFunction->popUpMenu(), &QMenu::aboutToShow, this, [this] {
        mCopy->setEnabled(clipOfSelectedKey().has_value());
        mPaste->setEnabled(clipToPaste().has_value());
    });
    // A shortcut must work whatever the menu has shown last.
    connect(mAssignFunction->popUpMenu(), &QMenu::aboutToHide, this, [this] {
        mCopy->setEnabled(true);
        mPaste->setEnabled(true);
    });
}

void KeyboardKeysController::addClipboardItems()
{
    QMenu *menu = mAssignFunction->popUpMenu();
    if (!mSeparator)
        mSeparator = new QAction(this);
    mSeparator->setSeparator(true);
    for (QAction *action : {mSeparator, mMakeMacro, mCopy, mPaste}) {
        menu->removeAction(action);
        menu->addAction(action);
    }
}

std::optional<AssignmentClip> KeyboardKeysController::clipOfSelectedKey() const
{
    const KeyMappings::Entry entry = entryForKey(selectedCode());
    if (!entry.isMapped())
        return AssignmentClip{.assignment = Assignment::defaultKey, .param1 = 0, .param2 = 0, .recordName = {}};
    AssignmentClip clip{.assignment = static_cast<Assignment>(entry.command),
                        .param1 = entry.param1,
                        .param2 = entry.param2,
                        .recordName = {}};
    switch (clip.assignment) {
    case Assignment::playMacro:
    case Assignment::switchProfile: {
        const std::optional<QString> name = assignmentDetail(entry);
        if (!name || assignmentProblem(entry))
            return std::nullopt;
        clip.recordName = *name;
        break;
    }
    case Assignment::launchProgram:
        clip.param1 = entry.programPath;
        clip.param2 = QString();
        break;
    case Assignment::singleKey:
    case Assignment::disabled: break;
    default: return std::nullopt; // unknown
    }
    return clip;
}

std::optional<AssignmentClip> KeyboardKeysController::clipToPaste() const
{
    std::optional<AssignmentClip> clip = AssignmentClip::fromMimeData(QGuiApplication::clipboard()->mimeData());
    const bool isMacro = clip && clip->assignment == Assignment::playMacro;
    if (!clip || (!isMacro && clip->assignment != Assignment::switchProfile))
        return clip;
    // The lists may have changed since the assignment was copied.
    const std::optional<int> index =
        isMacro ? indexOfRecord(mAllMacrosArray, SettingsKeys::macroName, clip->recordName, clip->param1.toInt())
                : indexOfRecord(mAllProfilesArray, SettingsKeys::profileName, clip->recordName, clip->param1.toInt());
    if (!index)
        return std::nullopt;
    clip->param1 = *index;
    return clip;
}

void KeyboardKeysController::copyAssignment()
{
    const std::optional<AssignmentClip> clip = clipOfSelectedKey();
    if (clip && !mIsFirstLaunch)
        QGuiApplication::clipboard()->setMimeData(clip->toMimeData(assignmentDescription(entryForKey(selectedCode()))));
}

void KeyboardKeysController::pasteAssignment()
{
    if (!mHasDeviceConnected)
        return;
    const std::optional<AssignmentClip> clip = clipToPaste();
    if (!clip)
        return;
    const bool isDefault = clip->assignment == Assignment::defaultKey;
    writeEntry(clip->assignment,
               isDefault ? KeyMappings::entryForKey(mDefaultDict, selectedCode()).param1 : clip->param1, clip->param2);
}
