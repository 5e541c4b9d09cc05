// SPDX-License-Identifier: MIT
#include "tests/macros/macrostesting.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "platform/pulldownbutton.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

namespace MacrosTesting {

const QStringList eventPart{u"mMacroAssignmentLabel"_s, u"mMacroDetailsScrollView"_s, u"mMacroDetailsTableView"_s,
                            u"mAddMacroDetails"_s,      u"mDeleteMacroDetails"_s,     u"mRecordMacroDetails"_s,
                            u"mSettingsMacroDetails"_s};
const QStringList tableButtons{u"mAddMacro"_s,        u"mDeleteMacro"_s,        u"mSettingsMacro"_s,
                               u"mAddMacroDetails"_s, u"mDeleteMacroDetails"_s, u"mSettingsMacroDetails"_s};
const QStringList tables{u"mMacroTableView"_s, u"mMacroDetailsTableView"_s};

QVariantMap macroNamed(const QString &name)
{
    return {{u"MacroName"_s, name}, {u"delay"_s, 20}, {u"sequence"_s, QVariantMap()}};
}

QVariantList numberedMacros(const QList<int> &numbers)
{
    QVariantList macros;
    for (const int number : numbers) {
        QVariantMap macro = macroNamed(u"Macro %1"_s.arg(number));
        macro[u"macroID"_s] = number;
        macros.append(macro);
    }
    return macros;
}

QVariantList threeEvents()
{
    return {u"Key Press H"_s, u"0.020 seconds delay\n"_s, u"Key Release H"_s, u"0.120 seconds delay\n"_s,
            u"Left Button down\n"_s};
}

QList<int> enabledTags(const QList<QAction *> &items)
{
    QList<int> result;
    for (const QAction *item : items) {
        if (item->isEnabled())
            result.append(item->data().toInt());
    }
    return result;
}

// The delegate

void RecordingDelegate::addMacroWithSettings(const QVariantMap &macro)
{
    note(u"add"_s);
    record = macro;
    if (duringAdd)
        duringAdd();
    if (refusesToAdd)
        return;
    if (answers)
        macros.append(macro);
    if (!addedByOthers.isEmpty())
        macros.append(std::exchange(addedByOthers, {}));
    refresh();
}

void RecordingDelegate::startMacroRecordingMacroIndex(int appendFlag, int macroIndex)
{
    note(u"start %1 %2"_s.arg(appendFlag).arg(macroIndex));
}

void RecordingDelegate::stopMacroRecording()
{
    note(u"stop"_s);
}

void RecordingDelegate::saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording)
{
    note(u"save %1 %2"_s.arg(macroIndex).arg(isNewRecording));
    refresh();
}

void RecordingDelegate::getMacroDetailsForMacroAtIndex(int macroIndex)
{
    note(u"details %1"_s.arg(macroIndex));
    if (answers)
        controller->updateSelectedMacroWithMacroDetails(lines);
}

void RecordingDelegate::deleteMacroAtIndex(int macroIndex)
{
    note(u"delete %1"_s.arg(macroIndex));
    if (answers)
        macros.removeAt(macroIndex);
    refresh();
}

void RecordingDelegate::renameMacroAtIndexWithNewName(int macroIndex, const QString &newName)
{
    note(u"rename %1 %2"_s.arg(macroIndex).arg(newName));
    if (answers) {
        QVariantMap macro = macros.at(macroIndex).toMap();
        macro[u"MacroName"_s] = newName;
        macros[macroIndex] = macro;
    }
    refresh();
}

void RecordingDelegate::removeEventAtIndexForMacroAtIndex(int eventIndex, int macroIndex)
{
    note(u"removeEvent %1 %2"_s.arg(eventIndex).arg(macroIndex));
    areEventsOld = true;
    if (storesRequests)
        store(macroIndex, MacroRecord::removingEventOfRow(eventsOf(macroIndex), eventIndex));
    else
        lines = linesAfterRemoval;
}

void RecordingDelegate::removeAllEventsForMacroAtIndex(int macroIndex)
{
    note(u"removeAll %1"_s.arg(macroIndex));
    areEventsOld = true;
    lines.clear();
}

void RecordingDelegate::setAllEventsDelayForMacroAtIndexHasNoDelay(int delay, int macroIndex, bool hasNoDelay)
{
    note(u"allDelays %1 %2 %3"_s.arg(delay).arg(macroIndex).arg(int(hasNoDelay)));
    areEventsOld = true;
}

void RecordingDelegate::setNewDelayAtMacroEventIndexForMacroAtIndex(int delay, int eventIndex, int macroIndex)
{
    note(u"delay %1 %2 %3"_s.arg(delay).arg(eventIndex).arg(macroIndex));
    areEventsOld = true;
    if (storesRequests)
        store(macroIndex, MacroRecord::settingDelayOfRow(eventsOf(macroIndex), eventIndex, delay));
}

void RecordingDelegate::updateSequenceInfoEventIndexNewDict(int macroIndex, int eventIndex, const QVariantMap &changed)
{
    note(u"update %1 %2"_s.arg(macroIndex).arg(eventIndex));
    areEventsOld = true;
    record = changed;
}

QVariantMap RecordingDelegate::getSequenceDetailsEventIndex(int macroIndex, int eventIndex)
{
    note(u"event %1 %2"_s.arg(macroIndex).arg(eventIndex));
    return event;
}

bool RecordingDelegate::replaceEventsOfMacroAtIndex(int macroIndex, const QVariantList &readEvents,
                                                    const QVariantList &changed)
{
    note(u"replace %1: %2 by %3"_s.arg(macroIndex).arg(readEvents.size()).arg(changed.size()));
    const bool isStored = storesEvents && macroIndex >= 0 && macroIndex < macros.size()
                          && MacroRecord::events(macros.at(macroIndex).toMap()) == readEvents;
    if (isStored)
        store(macroIndex, changed);
    refresh();
    return isStored;
}

bool RecordingDelegate::reloadMacros()
{
    if (areEventsOld) {
        note(u"reload"_s);
        refresh();
    }
    return !areEventsOld;
}

void RecordingDelegate::recordButton(int button, bool isDown)
{
    note(u"button %1 %2"_s.arg(button).arg(int(isDown)));
}

void RecordingDelegate::startTryMacroIndex(int repeat, int macroIndex)
{
    note(u"try %1 %2"_s.arg(repeat).arg(macroIndex));
}

void RecordingDelegate::stopTry()
{
    note(u"stopTry"_s);
}

void RecordingDelegate::startEditHID()
{
    note(u"startEditHID"_s);
}

void RecordingDelegate::showKeyOfProfile(int keyCode, int profileIndex)
{
    note(u"show %1 %2"_s.arg(keyCode).arg(profileIndex));
}

void RecordingDelegate::stopSingleKeyRecording()
{
    note(u"stopKey"_s);
}

QVariantList RecordingDelegate::eventsOf(int macroIndex) const
{
    return MacroRecord::events(macros.value(macroIndex).toMap());
}

void RecordingDelegate::store(int macroIndex, const std::optional<QVariantList> &events)
{
    if (!events)
        return;
    macros[macroIndex] = MacroRecord::withEvents(macros.at(macroIndex).toMap(), *events);
    lines.clear();
    for (const QString &line : eventParser::getMessagesArray(*events))
        lines += line;
}

void RecordingDelegate::note(const QString &call)
{
    calls.append(call);
    if (duringCall)
        duringCall(call);
}

void RecordingDelegate::refresh()
{
    if (!answers)
        return;
    areEventsOld = false;
    controller->setMMacrosSettingsArray(macros);
    controller->refreshTableDisplay();
}

// The tab

void MacrosTest::initTestCase()
{
    qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources");
    QVERIFY(installEnglishTexts());
}

void MacrosTest::init()
{
    mWindow = std::make_unique<QWidget>();
    mCenter = std::make_unique<DistributedNotificationCenter>(QDBusConnection::sessionBus());
    mController = std::make_unique<KeyboardMacrosController>();
    mDelegate = std::make_unique<RecordingDelegate>();
    mDelegate->controller = mController.get();
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mController->view());
    mController->setNotificationCenter(mCenter.get());
    mController->awakeFromNib();
    mController->setMMacroDelegate(mDelegate.get());
    mController->setMMacrosWindow(mWindow.get());
    mWindow->resize(800, 450);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

void MacrosTest::cleanup()
{
    mController.reset();
    mCenter.reset();
    mWindow.reset();
    mDelegate.reset();
}

void MacrosTest::fill(const QStringList &names, int selected)
{
    for (const QString &name : names)
        mDelegate->macros.append(macroNamed(name));
    mDelegate->refresh();
    list()->selectRow(selected);
    mDelegate->calls.clear();
}

QLineEdit *MacrosTest::editor() const
{
    const QList<QLineEdit *> editors = list()->findChildren<QLineEdit *>(u"cellEditor"_s);
    for (QLineEdit *candidate : editors) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

void MacrosTest::choose(const char *button, int tag)
{
    QAction *item = outlet<PulldownButton>(QLatin1StringView(button))->itemWithTag(tag);
    QVERIFY(item);
    item->trigger();
}

} // namespace MacrosTesting
