// SPDX-License-Identifier: MIT
#include "app/historycontroller.h"

#include "app/historysheet.h"
#include "app/keyboardmaincontroller.h"
#include "app/statuswords.h"
#include "base/devicesettings.h"
#include "base/historykeys.h"
#include "base/profilerecord.h"
#include "base/text.h"
#include "keys/historywords.h"
#include "keys/keyboardkeyscontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrorecord.h"
#include "platform/mnemonics.h"
#include "platform/tableview.h"

#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;
using HistoryKeys::Key;

namespace {

constexpr int keysTab = 0, profilesTab = 1, macrosTab = 2, lightingTab = 3, noTab = -1;
constexpr int widestButtonText = 190;

/// The tab that shows a change of this kind; noTab if none or several do.
int tabOf(const QString &kind)
{
    using namespace HistoryKeys;
    constexpr std::array keys{kindKey, kindKeys};
    constexpr std::array profiles{kindProfileAdded,   kindProfileDeleted, kindProfileRenamed,
                                  kindProfileChosen,  kindProfileBound,   kindProfileUnbound,
                                  kindProfileDisplay, kindProfileChanged, kindProfilesMoved};
    constexpr std::array macros{kindMacroAdded,    kindMacroDeleted,  kindMacroRenamed,
                                kindMacroRecorded, kindMacroChanged,  kindEventsAdded,
                                kindEventsRemoved, kindEventsChanged, kindDelaysSet};
    constexpr std::array lighting{kindLight, kindBrightness, kindColor, kindEffect};
    const auto isIn = [&kind](const auto &kinds) { return std::ranges::find(kinds, kind) != kinds.end(); };
    if (isIn(keys))
        return keysTab;
    if (isIn(profiles))
        return profilesTab;
    if (isIn(macros))
        return macrosTab;
    return isIn(lighting) ? lightingTab : noTab;
}

QList<int> keysThatDiffer(const QVariantMap &before, const QVariantMap &after)
{
    QMap<QString, QVariant> all = before;
    all.insert(after);
    QList<int> codes;
    for (auto entry = all.cbegin(); entry != all.cend(); ++entry) {
        if (before.value(entry.key()) != after.value(entry.key()))
            codes += entry.key().toInt();
    }
    return codes;
}

/// Whether the user cannot take back a change of this kind by doing the opposite.
bool loses(const QString &kind)
{
    using namespace HistoryKeys;
    constexpr std::array kinds{kindEventsRemoved, kindEventsChanged,  kindMacroRecorded,  kindMacroDeleted,
                               kindDelaysSet,     kindProfileChanged, kindProfileDeleted, kindKeys};
    return std::ranges::find(kinds, kind) != kinds.end();
}

uint idOf(const QVariantMap &entry)
{
    return entry.value(HistoryKeys::id).toUInt();
}

} // namespace

HistoryController::HistoryController(KeyboardMainController &hub, const ServiceStatus &service)
    : mHub(hub), mHistory(service)
{
    connect(&mHistory, &HistoryStatus::changed, this, [this] {
        showState();
        offerUndo();
    });
}

void HistoryController::setOutlets(QWidget *window, QToolButton *undoButton, QToolButton *historyButton)
{
    mWindow = window;
    connect(historyButton, &QToolButton::clicked, this, &HistoryController::openSheet);
    mUndoButton = undoButton;
    mUndoShortcut = new QShortcut(Qt::CTRL | Qt::Key_Z, window);
    mRedoShortcut = new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_Z, window);
    connect(mUndoShortcut, &QShortcut::activated, this, [this] { undo(mHistory.nextUndo()); });
    connect(mRedoShortcut, &QShortcut::activated, this, &HistoryController::redo);
    // A press ends an open edit, which is a change of its own. The user means the change that he has seen.
    connect(mUndoButton, &QToolButton::pressed, this, [this] { mPressedEntry = mHistory.nextUndo(); });
    connect(mUndoButton, &QToolButton::clicked, this, [this] { undo(std::exchange(mPressedEntry, std::nullopt)); });
    showState();
}

void HistoryController::openSheet()
{
    if (!mSheet) {
        mSheet = new HistorySheet(mHistory, mWindow);
        connect(mSheet, &HistorySheet::restoreRequested, this, &HistoryController::restore);
        connect(mSheet, &HistorySheet::clearRequested, this, &HistoryController::clear);
    }
    showState();
    mSheet->show(mWindow);
}

void HistoryController::start()
{
    mHistory.start();
}

void HistoryController::setControlsState(bool isEnabled)
{
    mAreControlsOn = isEnabled;
    showState();
}

void HistoryController::offerUndo()
{
    if (!mHistory.isKnown())
        return mLatestId.reset();
    const std::optional<QVariantMap> &next = mHistory.nextUndo();
    const uint id = next ? idOf(*next) : 0;
    const bool isNew = mLatestId && id > *mLatestId;
    passOver(id);
    if (isNew && loses(next->value(HistoryKeys::kind).toString())
        && next->value(HistoryKeys::author).toString() == HistoryKeys::authorConfigurator)
        mHub.report({.event = StatusReport::Event::canBeUndone, .subject = historyWords(*next)});
}

bool HistoryController::canAct() const
{
    return mAreControlsOn && !mHub.keysController()->captureArea() && !mHub.macrosController()->captureArea();
}

void HistoryController::showState()
{
    if (!mUndoButton)
        return;
    if (mSheet)
        mSheet->setCanRestore(canAct() && !mHistory.isBusy());
    mUndoShortcut->setEnabled(canAct());
    mRedoShortcut->setEnabled(canAct());
    const std::optional<QVariantMap> &next = mHistory.nextUndo();
    mUndoButton->setEnabled(canAct() && next);
    const QString text =
        next ? localizedFormat("lkeyHistoryUndoEntry", {historyWords(*next)}) : localizedText("lkeyHistoryUndo");
    const QString shown = mUndoButton->fontMetrics().elidedText(text, Qt::ElideRight, widestButtonText);
    mUndoButton->setText(Mnemonics::escaped(shown));
    mUndoButton->setAccessibleName(text);
    // Markup, so a long text has several lines. Names must not become markup.
    mUndoButton->setToolTip(u"<p>"_s + text.toHtmlEscaped() + u" ("_s
                            + mUndoShortcut->key().toString(QKeySequence::NativeText).toHtmlEscaped() + u")</p>"_s);
}

void HistoryController::undo(const std::optional<QVariantMap> &entry)
{
    if (!entry || !canAct() || mHistory.isBusy())
        return;
    begin(*entry);
    mHistory.undo(idOf(*entry), [this](const HistoryStatus::Outcome &outcome) { ended(outcome, Way::undo); });
}

void HistoryController::redo()
{
    const std::optional<QVariantMap> entry = mHistory.nextRedo();
    if (!entry || !canAct() || mHistory.isBusy())
        return;
    begin(*entry);
    mHistory.redo(idOf(*entry), [this](const HistoryStatus::Outcome &outcome) { ended(outcome, Way::redo); });
}

void HistoryController::restore(const QVariantMap &entry, uint newest)
{
    if (!canAct() || mHistory.isBusy())
        return;
    begin(entry);
    mHistory.restore(idOf(entry), newest,
                     [this](const HistoryStatus::Outcome &outcome) { ended(outcome, Way::restore); });
}

void HistoryController::clear()
{
    mHistory.clear([this](const HistoryStatus::Outcome &outcome) {
        const bool isCleared = outcome.error.isEmpty();
        report({.event = isCleared ? StatusReport::Event::historyCleared : StatusReport::Event::historyNotCleared,
                .reason = outcome.error});
    });
}

void HistoryController::report(const StatusReport &report)
{
    mHub.report(report);
    if (mSheet && mSheet->isUp())
        mSheet->say(StatusWords::ofReport(report));
}

void HistoryController::begin(const QVariantMap &entry)
{
    mStep = Step{.entry = entry,
                 .activeProfile = DeviceSettings(mHub.deviceSettingsDict()).activeProfileIndex(),
                 .profile = mHub.currentProfileDict(),
                 .macros = mHub.macrosArray()};
}

void HistoryController::ended(const HistoryStatus::Outcome &outcome, Way way)
{
    if (!mStep)
        return;
    using Event = StatusReport::Event;
    struct Events
    {
        Event success, failure;
    };
    constexpr std::array events{Events{Event::undone, Event::notUndone}, Events{Event::redone, Event::notRedone},
                                Events{Event::restored, Event::notRestored}};
    const Events &event = events.at(size_t(way));
    const QString words = historyWords(mStep->entry);
    if (!outcome.error.isEmpty()) {
        mStep.reset();
        return report({.event = event.failure, .subject = words, .reason = outcome.error});
    }
    report({.event = event.success, .subject = words});
    mStep->isDone = true;
    revealIfComplete();
}

/// The reply and the notification come in either order.
void HistoryController::documentFollowed()
{
    if (!mStep)
        return;
    mStep->isFollowed = true;
    revealIfComplete();
}

void HistoryController::revealIfComplete()
{
    if (mStep->isDone && mStep->isFollowed)
        reveal(*std::exchange(mStep, std::nullopt));
}

void HistoryController::reveal(const Step &step)
{
    const QVariantMap change =
        step.entry.contains(HistoryKeys::change) ? step.entry.value(HistoryKeys::change).toMap() : step.entry;
    int tab = tabOf(change.value(HistoryKeys::kind).toString());
    const bool isSameProfile = DeviceSettings(mHub.deviceSettingsDict()).activeProfileIndex() == step.activeProfile;
    const QList<int> keys = isSameProfile ? keysThatDiffer(ProfileRecord::keys(step.profile),
                                                           ProfileRecord::keys(mHub.currentProfileDict()))
                                          : QList<int>();
    // The keys tab shows the active profile alone, and the selection in the profiles tab would activate another one.
    const QString profile = change.value(HistoryKeys::profile).toString(); // may be cut off
    const bool isOfActiveProfile = ProfileRecord::name(mHub.currentProfileDict()).startsWith(profile);
    if ((tab == keysTab && keys.isEmpty()) || (tab == lightingTab && !isOfActiveProfile))
        tab = profilesTab;
    if (tab == noTab)
        return;
    mHub.selectTabAtIndex(tab);
    if (tab == keysTab)
        mHub.keysController()->selectKeys(keys);
    if (tab == macrosTab)
        mHub.macrosController()->macroTableView()->selectRow(rowOfMacro(step, change));
}

/// The macro that has changed. If the window already had this state, the one with the name.
int HistoryController::rowOfMacro(const Step &step, const QVariantMap &change) const
{
    const QVariantList macros = mHub.macrosArray();
    const auto row = [&macros](const auto &condition) {
        const auto found = std::ranges::find_if(macros, condition);
        return found == macros.end() ? -1 : int(found - macros.begin());
    };
    const int changed = row([&step](const QVariant &macro) { return !step.macros.contains(macro); });
    if (changed >= 0)
        return changed;
    const QString name = change.value(HistoryKeys::macro).toString(); // may be cut off
    return row([&name](const QVariant &macro) {
        return !name.isEmpty() && MacroRecord::name(macro.toMap()).startsWith(name);
    });
}
