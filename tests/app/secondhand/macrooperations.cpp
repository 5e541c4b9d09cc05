// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "macros/macrotypetext.h"
#include "platform/tableview.h"
#include "tests/app/secondhand/operation.h"

#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr char table[] = "mMacroTableView";
constexpr char events[] = "mMacroDetailsTableView";
constexpr char gear[] = "mSettingsMacro";
constexpr char eventGear[] = "mSettingsMacroDetails";
constexpr char alert[] = "alert";
constexpr char openPanel[] = "mOpenPanel";
constexpr char savePanel[] = "mSavePanel";
constexpr char delaySheet[] = "mEditDelayWindow";
constexpr char eventSheet[] = "mEditEventWindow";
constexpr char trySheet[] = "mTryWindow";
constexpr char pauseSheet[] = "mPauseWindow";
constexpr char typeTextSheet[] = "mTypeTextWindow";
constexpr char releaseButton[] = "mReleaseKeysAtEnd";
constexpr int playMacroAssignment = 10;
constexpr uint keyB = 5;
constexpr int delayRow = 1; // of the second event
constexpr int eventRow = 2; // of the second event
constexpr int newDelayMs = 77;
// The rest is typed at the end. It must not select a row by its name when the name is no longer being edited.
const QString typedName = u"Half a Mo"_s;
constexpr int restLength = 2;
const QString exportedFile = u"Exported.KestraMacro"_s;

std::function<void(Scene &)> choosing(int tag)
{
    return [tag](Scene &scene) { Person::chooseFrom(scene, gear, tag); };
}

std::function<bool(const Scene &)> isUp(const char *dialog)
{
    return [dialog](const Scene &) { return Person::dialog(dialog) != nullptr; };
}

QVariantMap macroRow(const Scene &scene)
{
    return {{DaemonProtocol::macroId, scene.ledger.macro()}};
}

// The list

Operation nameEdit(const char *name, const std::function<void(Scene &)> &open, const QList<Command> &beginCommands = {})
{
    const auto begin = [open](Scene &scene) {
        open(scene);
        Person::typeName(scene, table, typedName.chopped(restLength));
    };
    const auto finish = [](Scene &scene) {
        Person::typeName(scene, table, typedName.right(restLength));
        const bool isOpen = Person::nameEditor(scene, table) != nullptr;
        Person::pressInName(scene, table, Qt::Key_Return);
        // Return on the list opens the editor again.
        if (!isOpen && Person::nameEditor(scene, table))
            Person::pressInName(scene, table, Qt::Key_Escape);
    };
    const auto rename = [](Scene &scene) {
        scene.ledger.apply(Command::renameMacro, {{DaemonProtocol::macroContents,
                                                   QVariantMap{{SettingsKeys::macroName, typedName},
                                                               {SettingsKeys::macroId, scene.ledger.macro()}}}});
    };
    const auto leave = [](Scene &scene) {
        Person::typeName(scene, table, typedName.right(restLength));
        Person::pressInName(scene, table, Qt::Key_Tab);
    };
    const auto cancel = [](Scene &scene) { Person::pressInName(scene, table, Qt::Key_Escape); };
    return {.name = name,
            .tab = macrosTab,
            .kind = OperationKind::nameEdit,
            .subject = Subject::macro,
            .begin = begin,
            .isOpen = [](const Scene &scene) { return Person::nameEditor(scene, table) != nullptr; },
            .beginCommands = beginCommands,
            .ends = {{"finished", finish, rename, {Command::renameMacro}},
                     {"left by Tab", leave, rename, {Command::renameMacro}},
                     {"cancelled", cancel, {}, {}}}};
}

void pressF2(Scene &scene)
{
    scene.find<TableView>(table)->setFocus();
    QTest::keyClick(scene.find<TableView>(table), Qt::Key_F2);
}

void appendMacro(Scene &scene, const QVariantMap &record)
{
    if (scene.ledger.apply(Command::addMacro, {{DaemonProtocol::macroContents, record}}))
        scene.ledger.setMacro(int(scene.ledger.macros().size()) - 1);
}

void add(Scene &scene)
{
    Person::click(scene, "mAddMacro");
    appendMacro(scene, {{SettingsKeys::macroName, u"Untitled Macro"_s},
                        {SettingsKeys::delay, 20},
                        {DaemonProtocol::responsePortName, u"KeyboardConfiguratorReplyPort"_s},
                        {SettingsKeys::sequence, QVariantMap()}});
}

void deleteSubject(Scene &scene)
{
    Ledger &ledger = scene.ledger;
    const int row = ledger.macro();
    const int count = int(ledger.macros().size());
    if (!ledger.apply(Command::deleteMacro, macroRow(scene)))
        return;
    // The count still includes the deleted macro.
    ledger.dropAssignments(playMacroAssignment, row, count);
    ledger.setMacro(std::min(row, count - 2));
}

/// `ask` opens the question whether to delete the macro.
std::vector<End> deletionEnds(const std::function<void(Scene &)> &ask)
{
    const auto finish = [ask](Scene &scene) {
        ask(scene);
        Person::clickIn(alert, "alertDefaultButton");
    };
    const auto cancel = [ask](Scene &) {
        Person::closeMenus();
        Person::cancel(alert);
    };
    return {{"finished", finish, deleteSubject, {Command::deleteMacro, Command::replaceAllProfiles}},
            {"cancelled", cancel, {}, {}}};
}

Operation deletion()
{
    return {.name = "deleting",
            .tab = macrosTab,
            .kind = OperationKind::sheet,
            .subject = Subject::macro,
            .begin = [](Scene &scene) { Person::click(scene, "mDeleteMacro"); },
            .isOpen = isUp(alert),
            .beginCommands = {},
            .ends = deletionEnds([](Scene &) {})};
}

Operation listMenu(const char *name, const std::function<void(Scene &)> &open)
{
    return {.name = name,
            .tab = macrosTab,
            .kind = OperationKind::popUp,
            .subject = Subject::macro,
            .begin = open,
            .isOpen = [](const Scene &) { return Person::openMenu() != nullptr; },
            .beginCommands = {},
            .ends = deletionEnds([](Scene &) { Person::chooseItem(localizedText("lkeyDelete")); })};
}

Operation duplication()
{
    const auto copy = [](Scene &scene) {
        QVariantMap record = scene.ledger.macroRecord();
        record.remove(SettingsKeys::macroId);
        record.insert(SettingsKeys::macroName, record.value(SettingsKeys::macroName).toString() + u"(2)"_s);
        appendMacro(scene, record);
    };
    const auto finish = [](Scene &) { Person::chooseItem(localizedText("lkeyDuplicateMacro")); };
    return {.name = "duplicating",
            .tab = macrosTab,
            .kind = OperationKind::popUp,
            .subject = Subject::macro,
            .begin = [](Scene &scene) { Person::openGearMenu(scene, gear); },
            .isOpen = [](const Scene &) { return Person::openMenu() != nullptr; },
            .beginCommands = {},
            .ends = {{"finished", finish, copy, {Command::addMacro}},
                     {"cancelled", [](Scene &) { Person::closeMenus(); }, {}, {}}}};
}

// Files

Operation importPanel()
{
    const auto choose = [](Scene &scene) {
        const QString path = scene.file(u"Imported.KestraMacro"_s);
        const QByteArray content = *PropertyList::writeBinary(StartSettings::macroNamed(u"Imported"_s));
        if (!PropertyList::writeFileAtomically(path, content))
            qFatal("the test cannot write its file");
        Person::chooseFile(openPanel, path);
    };
    return {.name = "import panel",
            .tab = macrosTab,
            .kind = OperationKind::sheet,
            .subject = Subject::none,
            .begin = choosing(MacroCommands::importMacro),
            .isOpen = isUp(openPanel),
            .beginCommands = {},
            .ends = {{"finished",
                      choose,
                      [](Scene &scene) { appendMacro(scene, StartSettings::macroNamed(u"Imported"_s)); },
                      {Command::addMacro}},
                     {"cancelled", [](Scene &) { Person::cancel(openPanel); }, {}, {}}}};
}

QString exported(const Scene &scene, bool isCarriedOut)
{
    const auto record = PropertyList::readPropertyListFile(scene.file(exportedFile));
    if (!isCarriedOut)
        return QFile::exists(scene.file(exportedFile)) ? u"a file was written"_s : QString();
    QVariantMap expected = scene.ledger.macroRecord();
    expected.remove(SettingsKeys::macroId);
    return record && differences(*record, expected).isEmpty() ? QString() : u"another file was written"_s;
}

Operation exportPanel()
{
    const auto choose = [](Scene &scene) { Person::chooseFile(savePanel, scene.file(u"Exported"_s)); };
    return {.name = "export panel",
            .tab = macrosTab,
            .kind = OperationKind::sheet,
            .subject = Subject::macro,
            .begin = choosing(MacroCommands::exportMacro),
            .isOpen = isUp(savePanel),
            .beginCommands = {},
            .ends = {{"finished", choose, {}, {}}, {"cancelled", [](Scene &) { Person::cancel(savePanel); }, {}, {}}},
            .prepare = {},
            .outcome = exported};
}

// Events

void editEvent(Scene &scene, int row)
{
    scene.find<TableView>(events)->selectRow(row);
    Person::chooseFrom(scene, eventGear, MacroCommands::edit);
}

Operation delaySheetOperation()
{
    const auto begin = [](Scene &scene) {
        editEvent(scene, delayRow);
        if (Person::dialog(delaySheet))
            QTest::keyClicks(scene.find<QLineEdit>("mInputMacroDelay"), QString::number(newDelayMs));
    };
    const auto setDelay = [](Scene &scene) {
        QVariantMap request = macroRow(scene);
        request.insert(DaemonProtocol::sequenceIndex, delayRow);
        request.insert(DaemonProtocol::delay, newDelayMs);
        scene.ledger.apply(Command::setDelay, request);
    };
    return {
        .name = "delay sheet",
        .tab = macrosTab,
        .kind = OperationKind::sheet,
        .subject = Subject::events,
        .begin = begin,
        .isOpen = isUp(delaySheet),
        .beginCommands = {},
        .ends = {
            {"finished", [](Scene &) { Person::clickIn(delaySheet, "mMacroDelayOK"); }, setDelay, {Command::setDelay}},
            {"cancelled", [](Scene &) { Person::cancel(delaySheet); }, {}, {}}}};
}

// The next three replace all events at once.

Operation pauseSheetOperation()
{
    const auto begin = [](Scene &scene) {
        scene.find<TableView>(events)->selectRow(eventRow);
        Person::chooseFrom(scene, eventGear, MacroCommands::setPause);
        if (Person::dialog(pauseSheet))
            QTest::keyClicks(scene.find<QLineEdit>("mPauseField"), QString::number(newDelayMs));
    };
    const auto setDelay = [](Scene &scene) {
        const QVariantList read = MacroRecord::events(scene.ledger.macroRecord());
        scene.ledger.replaceEvents(MacroEdits::settingDelays(read, {1}, newDelayMs).value_or(QVariantList()));
    };
    return {.name = "sheet for pauses",
            .tab = macrosTab,
            .kind = OperationKind::sheet,
            .subject = Subject::events,
            .begin = begin,
            .isOpen = isUp(pauseSheet),
            .beginCommands = {},
            .ends = {{"finished", [](Scene &) { Person::clickIn(pauseSheet, "mPauseOK"); }, setDelay, {}},
                     {"cancelled", [](Scene &) { Person::cancel(pauseSheet); }, {}, {}}}};
}

/// Types "b" at the end.
Operation typeTextOperation()
{
    const auto begin = [](Scene &scene) {
        Person::chooseFrom(scene, eventGear, MacroCommands::typeText);
        if (!Person::dialog(typeTextSheet))
            return;
        scene.find<MacroTypeText>(typeTextSheet)->showKeymap(Keymap::fromNames("us"));
        QTest::keyClicks(scene.find<QPlainTextEdit>("mTypeTextField"), u"b"_s);
    };
    const auto insert = [](Scene &scene) {
        constexpr int pauseMs = 20;
        const QVariantList read = MacroRecord::events(scene.ledger.macroRecord());
        scene.ledger.replaceEvents(read + MacroEdits::tap({.page = 7, .usage = keyB}, pauseMs));
    };
    return {.name = "type text",
            .tab = macrosTab,
            .kind = OperationKind::sheet,
            .subject = Subject::events,
            .begin = begin,
            .isOpen = isUp(typeTextSheet),
            .beginCommands = {},
            .ends = {{"finished", [](Scene &) { Person::clickIn(typeTextSheet, "mTypeTextInsert"); }, insert, {}},
                     {"cancelled", [](Scene &) { Person::cancel(typeTextSheet); }, {}, {}}}};
}

/// The macro leaves F down.
Operation releaseOperation()
{
    constexpr HidUsage keyF{.page = 7, .usage = 9};
    const auto prepare = [](QVariantMap &document) {
        QVariantList macros = document.value(SettingsKeys::macros).toList();
        const QVariantMap macro = macros.at(StartSettings::macro).toMap();
        QVariantList held = MacroRecord::events(macro);
        held += MacroEdits::press(keyF, newDelayMs);
        macros[StartSettings::macro] = MacroRecord::withEvents(macro, held);
        document.insert(SettingsKeys::macros, macros);
    };
    const auto isOffered = [](const Scene &scene) {
        const auto *button = scene.find<QPushButton>(releaseButton);
        return button->isVisible() && button->isEnabled();
    };
    const auto release = [](Scene &scene) {
        QVariantList changed = MacroRecord::events(scene.ledger.macroRecord());
        changed += MacroEdits::release(keyF);
        scene.ledger.replaceEvents(changed);
    };
    return {.name = "release keys",
            .tab = macrosTab,
            .kind = OperationKind::click,
            .subject = Subject::events,
            .begin = [](Scene &) {},
            .isOpen = isOffered,
            .beginCommands = {},
            .ends = {{"finished", [](Scene &scene) { Person::click(scene, releaseButton); }, release, {}}},
            .prepare = prepare};
}

/// Lengthens the pause before the second event with the keys of the timeline.
Operation pauseInTheTimeline()
{
    constexpr int steps = 3;
    const auto timeline = [](const Scene &scene) { return scene.find<MacroTimelineView>("mMacroTimelineView"); };
    const auto begin = [timeline](Scene &scene) {
        scene.find<TableView>(events)->selectRow(eventRow);
        timeline(scene)->setFocus();
        for (int step = 0; step < steps; ++step)
            QTest::keyPress(timeline(scene), Qt::Key_Right, Qt::AltModifier);
    };
    const auto setDelay = [](Scene &scene) {
        const QVariantMap event = MacroRecord::events(scene.ledger.macroRecord()).at(delayRow).toMap();
        QVariantMap request = macroRow(scene);
        request.insert(DaemonProtocol::sequenceIndex, delayRow);
        request.insert(DaemonProtocol::delay,
                       MacroRecord::eventFields(event).delayMs + steps * MacroTimelineView::pauseStepMs);
        scene.ledger.apply(Command::setDelay, request);
    };
    return {.name = "pause in the timeline",
            .tab = macrosTab,
            .kind = OperationKind::drag,
            .subject = Subject::events,
            .begin = begin,
            .isOpen = [timeline](const Scene &scene) { return timeline(scene)->isChangingPause(); },
            .beginCommands = {},
            .ends = {
                {"finished",
                 [timeline](Scene &scene) { QTest::keyRelease(timeline(scene), Qt::Key_Alt); },
                 setDelay,
                 {Command::setDelay}},
                {"cancelled", [timeline](Scene &scene) { QTest::keyClick(timeline(scene), Qt::Key_Escape); }, {}, {}}}};
}

void captureKeyB(Scene &scene)
{
    scene.typeKey(keyB);
}

Operation eventSheetOperation()
{
    const auto begin = [](Scene &scene) {
        editEvent(scene, eventRow);
        captureKeyB(scene);
    };
    const auto updateEvent = [](Scene &scene) {
        // Without the capture there is no key to store, and without the event no record to change.
        if (scene.ledger.isObstructed(Command::startEditHid) || scene.ledger.isObstructed(Command::readEvent))
            return;
        QVariantMap event = MacroRecord::events(scene.ledger.macroRecord()).at(delayRow).toMap();
        event.insert(SettingsKeys::argument, int(keyB));
        event.insert(SettingsKeys::page, 7);
        QVariantMap request = macroRow(scene);
        request.insert(DaemonProtocol::sequenceIndex, eventRow);
        request.insert(DaemonProtocol::sequence, event);
        scene.ledger.apply(Command::updateEvent, request);
    };
    return {
        .name = "event sheet",
        .tab = macrosTab,
        .kind = OperationKind::sheet,
        .subject = Subject::events,
        .begin = begin,
        .isOpen = isUp(eventSheet),
        .beginCommands = {Command::readEvent, Command::startEditHid},
        .ends = {{"finished",
                  [](Scene &) { Person::clickIn(eventSheet, "mMacroEventEditOK"); },
                  updateEvent,
                  {Command::stopSingleKeyRecording, Command::updateEvent}},
                 {"cancelled", [](Scene &) { Person::cancel(eventSheet); }, {}, {Command::stopSingleKeyRecording}}}};
}

Operation tryOperation()
{
    const auto begin = [](Scene &scene) {
        Person::click(scene, "mTryMacro");
        if (Person::dialog(trySheet))
            Person::clickIn(trySheet, "mTryStart");
    };
    return {.name = "try sheet",
            .tab = macrosTab,
            .kind = OperationKind::sheet,
            .subject = Subject::macro,
            .begin = begin,
            .isOpen = isUp(trySheet),
            .beginCommands = {},
            .ends = {{"closed", [](Scene &) { Person::clickIn(trySheet, "mTryClose"); }, {}, {}}}};
}

Operation eventMenu(const char *name, const std::function<void(Scene &)> &open, const char *title, Command command,
                    const QVariantMap &arguments)
{
    const auto change = [command, arguments](Scene &scene) {
        QVariantMap request = macroRow(scene);
        request.insert(arguments);
        scene.ledger.apply(command, request);
    };
    return {.name = name,
            .tab = macrosTab,
            .kind = OperationKind::popUp,
            .subject = Subject::events,
            .begin = open,
            .isOpen = [](const Scene &) { return Person::openMenu() != nullptr; },
            .beginCommands = {},
            .ends = {{"finished", [title](Scene &) { Person::chooseItem(localizedText(title)); }, change, {command}},
                     {"cancelled", [](Scene &) { Person::closeMenus(); }, {}, {}}}};
}

// Recording

void endRecording(Scene &scene)
{
    if (scene.hub().controller->macrosController()->isRecordingOrCapturing())
        Person::click(scene, "mRecordMacroDetails");
}

Operation recording(const char *name, const char *button, bool isAppended)
{
    const auto begin = [button](Scene &scene) {
        Person::click(scene, button);
        captureKeyB(scene);
    };
    const auto save = [isAppended](Scene &scene) {
        // Command 19 may fail, because command 20 also ends the recording.
        if (scene.ledger.isObstructed(Command::startMacroRecording)
            || scene.ledger.isObstructed(Command::saveRecordedEvents) || scene.ledger.macro() < 0)
            return;
        using namespace MacroRecord;
        scene.ledger.recordEvents({eventRecord({.command = keyDown, .delayMs = 0, .argument = keyB}),
                                   eventRecord({.command = keyUp, .delayMs = 0, .argument = keyB})},
                                  isAppended);
    };
    const QList<Command> commands{Command::stopMacroRecording, Command::saveRecordedEvents};
    const auto leaveTab = [](Scene &scene) { scene.hub().controller->selectTabAtIndex(keysTab); };
    const auto isRecording = [](const Scene &scene) {
        return scene.hub().controller->macrosController()->isRecordingOrCapturing();
    };
    return {.name = name,
            .tab = macrosTab,
            .kind = OperationKind::recording,
            .subject = Subject::events,
            .begin = begin,
            .isOpen = isRecording,
            .beginCommands = {Command::startMacroRecording},
            .ends = {{"stopped", endRecording, save, commands}, {"tab left", leaveTab, save, commands}}};
}

} // namespace

std::vector<Operation> macroOperations()
{
    return {
        nameEdit("renaming by the menu", choosing(MacroCommands::rename)),
        nameEdit("renaming by F2", pressF2),
        nameEdit("naming an added one", add, {Command::addMacro}),
        deletion(),
        duplication(),
        importPanel(),
        exportPanel(),
        delaySheetOperation(),
        eventSheetOperation(),
        pauseSheetOperation(),
        typeTextOperation(),
        releaseOperation(),
        tryOperation(),
        pauseInTheTimeline(),
        recording("recording", "mRecordMacroDetails", false),
        recording("appended recording", "mAddMacroDetails", true),
        listMenu("gear menu of the list", [](Scene &scene) { Person::openGearMenu(scene, gear); }),
        listMenu("context menu of the list", [](Scene &scene) { Person::openContextMenu(scene, table); }),
        eventMenu("gear menu of the events", [](Scene &scene) { Person::openGearMenu(scene, eventGear); },
                  "lkeyNoDelay", Command::setAllDelays,
                  {{DaemonProtocol::delay, 0}, {DaemonProtocol::hasNoDelay, true}}),
        eventMenu("context menu of the events", [](Scene &scene) { Person::openContextMenu(scene, events); },
                  "lkeyDeleteAllEvents", Command::removeAllEvents, {}),
    };
}
