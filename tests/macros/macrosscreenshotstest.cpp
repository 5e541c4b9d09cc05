// SPDX-License-Identifier: MIT
// Draws the tab, its sheets and its menus in both palettes into the folder `screenshots` beside the tests, for a person
// to inspect. Checks that nothing is cut off.
#include "macros/eventparser.h"
#include "macros/macroedits.h"
#include "macros/macroinsertion.h"
#include "macros/macrorecord.h"
#include "macros/macrotypetext.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/fulldocument.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"

#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <array>

using namespace MacrosTesting;

namespace {

enum class Scene {
    idle,
    heldTogether,
    keysLeftDown,
    longest,
    changingAPause,
    empty,
    noMacroSelected,
    noEvents,
    recording,
    absent,
    delaySheet,
    eventSheet,
    trySheet,
    pauseSheet,
    scaleSheet,
    insertSheet,
    insertClickSheet,
    insertCaptureSheet,
    insertUnpairedSheet,
    draggedRows,
    typeTextSheet,
    untypedTextSheet,
    deletionAlert,
    importPanel,
    exportPanel,
    used,
    usedOften,
    search,
    searchWithoutResult
};

struct NamedScene
{
    const char *name;
    Scene scene;
};

constexpr std::array scenes{
    NamedScene{"idle", Scene::idle},
    NamedScene{"held-together", Scene::heldTogether},
    NamedScene{"keys-left-down", Scene::keysLeftDown},
    NamedScene{"longest", Scene::longest},
    NamedScene{"changing-a-pause", Scene::changingAPause},
    NamedScene{"empty", Scene::empty},
    NamedScene{"none-selected", Scene::noMacroSelected},
    NamedScene{"no-events", Scene::noEvents},
    NamedScene{"recording", Scene::recording},
    NamedScene{"absent", Scene::absent},
    NamedScene{"delay-sheet", Scene::delaySheet},
    NamedScene{"event-sheet", Scene::eventSheet},
    NamedScene{"try-sheet", Scene::trySheet},
    NamedScene{"pause-sheet", Scene::pauseSheet},
    NamedScene{"scale-sheet", Scene::scaleSheet},
    NamedScene{"insert-sheet", Scene::insertSheet},
    NamedScene{"insert-click-sheet", Scene::insertClickSheet},
    NamedScene{"insert-capture-sheet", Scene::insertCaptureSheet},
    NamedScene{"insert-unpaired-sheet", Scene::insertUnpairedSheet},
    NamedScene{"dragged-rows", Scene::draggedRows},
    NamedScene{"type-text-sheet", Scene::typeTextSheet},
    NamedScene{"untyped-text-sheet", Scene::untypedTextSheet},
    NamedScene{"deletion-alert", Scene::deletionAlert},
    NamedScene{"import-panel", Scene::importPanel},
    NamedScene{"export-panel", Scene::exportPanel},
    NamedScene{"used", Scene::used},
    NamedScene{"used-often", Scene::usedOften},
    NamedScene{"search", Scene::search},
    NamedScene{"search-without-result", Scene::searchWithoutResult},
};

QVariantList someLines()
{
    return {u"Key Press Left Shift"_s,   u"0.020 seconds delay\n"_s, u"Key Press H"_s,
            u"0.085 seconds delay\n"_s,  u"Key Release H"_s,         u"0.020 seconds delay\n"_s,
            u"Key Release Left Shift"_s, u"1.250 seconds delay\n"_s, u"Left Button down\n"_s,
            u"0.040 seconds delay\n"_s,  u"Left Button up\n"_s};
}

QVariantMap profilePlaying(const QString &name, const QList<int> &codes)
{
    QVariantMap keys;
    for (const int code : codes)
        keys[QString::number(code)] = QVariantMap{{u"command"_s, 10}, {u"param1"_s, 1}, {u"param2"_s, 1}};
    return {{u"ProfileName"_s, name}, {u"Keys"_s, keys}};
}

QList<TriedKey> someKeys()
{
    return {{.event = 0, .timeUs = 20'000, .page = 7, .argument = 225, .isDown = true},
            {.event = 1, .timeUs = 105'000, .page = 7, .argument = 11, .isDown = true},
            {.event = 2, .timeUs = 125'000, .page = 7, .argument = 11, .isDown = false},
            {.event = 3, .timeUs = 1'375'000, .page = 9, .argument = 1, .isDown = true}};
}

QVariantList linesHeldTogether()
{
    return {
        u"Key Press Left Shift"_s, u"0.060 seconds delay\n"_s, u"Key Press W"_s,           u"0.150 seconds delay\n"_s,
        u"Key Press Space"_s,      u"0.080 seconds delay\n"_s, u"Key Release Space"_s,     u"0.120 seconds delay\n"_s,
        u"Left Button down\n"_s,   u"0.040 seconds delay\n"_s, u"Left Button up\n"_s,      u"0.090 seconds delay\n"_s,
        u"Left Button down\n"_s,   u"0.040 seconds delay\n"_s, u"Left Button up\n"_s,      u"0.200 seconds delay\n"_s,
        u"Key Press "_s,           u"0.060 seconds delay\n"_s, u"Key Release "_s,          u"0.110 seconds delay\n"_s,
        u"Key Release W"_s,        u"0.030 seconds delay\n"_s, u"Key Release Left Shift"_s};
}

QVariantList linesOf(const QVariantList &events)
{
    QVariantList lines;
    for (const QString &line : eventParser::getMessagesArray(events))
        lines += line;
    return lines;
}

QVariantList linesOfScene(Scene scene)
{
    switch (scene) {
    case Scene::noEvents: return {};
    case Scene::heldTogether: return linesHeldTogether();
    case Scene::keysLeftDown:
        return QVariantList{u"Key Release Tab"_s, u"0.100 seconds delay\n"_s} + linesHeldTogether().mid(0, 13);
    case Scene::longest: return linesOf(MacroRecord::events(fullMacro(u"Longest"_s, 1, MacroRecord::maximumEvents)));
    default: return someLines();
    }
}

} // namespace

class MacrosScreenshotsTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void drawsTheTab_data();
    void drawsTheTab();
    void drawsTheMenus_data();
    void drawsTheMenus();
    void drawsTheContextMenus_data();
    void drawsTheContextMenus();

private:
    void show(Scene scene);
    void showInsertSheet(Scene scene);
    void save(QWidget *sheetOrMenu, const QPoint &position);
    QWidget *upSheet() const;
};

void MacrosScreenshotsTest::show(Scene scene)
{
    mWindow->resize(1100, 520);
    if (scene == Scene::empty)
        return mController->refreshTableDisplay();
    mDelegate->lines = linesOfScene(scene);
    fill({u"Opening burst"_s, u"Heal the whole raid group and then mount"_s, u"Untitled Macro"_s},
         scene == Scene::noMacroSelected ? -1 : 1);
    switch (scene) {
    case Scene::idle:
    case Scene::heldTogether: events()->selectRow(2); break;
    case Scene::keysLeftDown: events()->selectRow(5); break;
    case Scene::longest: events()->selectRow(9'000); break;
    case Scene::changingAPause: {
        events()->selectRow(5);
        QWidget *timeline = outlet(u"mMacroTimelineView"_s);
        timeline->setFocus(Qt::TabFocusReason);
        for (int step = 0; step < 7; ++step)
            QTest::keyPress(timeline, Qt::Key_Right, Qt::AltModifier);
        break;
    }
    case Scene::recording:
        outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
        mController->recordEvents({{u"messagesArray"_s, someLines().mid(0, 5)}});
        break;
    case Scene::absent: mController->setControlsState(false); break;
    case Scene::delaySheet:
        events()->selectRow(3);
        choose("mSettingsMacroDetails", MacroCommands::edit);
        QTest::keyClicks(outlet(u"mInputMacroDelay"_s), u"250"_s);
        break;
    case Scene::eventSheet:
        events()->selectRow(2);
        choose("mSettingsMacroDetails", MacroCommands::edit);
        mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
        break;
    case Scene::trySheet:
        outlet<QPushButton>(u"mTryMacro"_s)->click();
        outlet<QPushButton>(u"mTryStart"_s)->click();
        mController->showTriedKeys(someKeys());
        break;
    case Scene::deletionAlert:
        mController->setProfiles({profilePlaying(u"Game"_s, {106}), profilePlaying(u"Default Profile"_s, {62})}, 0);
        outlet<QPushButton>(u"mDeleteMacro"_s)->click();
        break;
    case Scene::used:
        mController->setProfiles({profilePlaying(u"Game"_s, {106}), profilePlaying(u"Default Profile"_s, {62})}, 0);
        mController->refreshTableDisplay();
        break;
    case Scene::usedOften:
        mController->setProfiles(
            {profilePlaying(u"Game"_s, {106, 107, 108}),
             profilePlaying(u"The long evenings with the whole raid group"_s, {62, 63, 64, 65, 229})},
            0);
        mController->refreshTableDisplay();
        break;
    case Scene::search: outlet<QLineEdit>(u"mMacroSearch"_s)->setText(u"burst"_s); break;
    case Scene::searchWithoutResult:
        list()->deselectAll();
        outlet<QLineEdit>(u"mMacroSearch"_s)->setText(u"xyz"_s);
        break;
    case Scene::pauseSheet:
    case Scene::scaleSheet:
        mDelegate->macros[1] =
            MacroRecord::withEvents(mDelegate->macros.at(1).toMap(), MacroEdits::tap({.page = 7, .usage = 11}));
        mDelegate->refresh();
        events()->selectRows({0, 1, 2});
        choose("mSettingsMacroDetails",
               scene == Scene::pauseSheet ? MacroCommands::setPause : MacroCommands::scalePauses);
        break;
    case Scene::insertSheet:
    case Scene::insertClickSheet:
    case Scene::insertCaptureSheet:
    case Scene::insertUnpairedSheet: showInsertSheet(scene); break;
    case Scene::draggedRows: {
        events()->selectRows({2, 3, 4});
        const auto drag = [this](QEvent::Type type, int row, Qt::MouseButton button) {
            const QRect cell = events()->visualRect(events()->model()->index(row, 0));
            const QPoint place(120, cell.top() + 2);
            QMouseEvent event(type, place, events()->viewport()->mapToGlobal(place), button, Qt::LeftButton, {});
            QCoreApplication::sendEvent(events()->viewport(), &event);
        };
        drag(QEvent::MouseButtonPress, 2, Qt::LeftButton);
        drag(QEvent::MouseMove, 7, Qt::NoButton);
        break;
    }
    case Scene::typeTextSheet:
    case Scene::untypedTextSheet:
        if (scene == Scene::typeTextSheet) {
            mDelegate->macros[1] = MacroRecord::withEvents(
                mDelegate->macros.at(1).toMap(), {MacroRecord::eventRecord({.command = MacroRecord::keyDown})});
            mDelegate->refresh();
            events()->selectRow(0);
        }
        choose("mSettingsMacroDetails", MacroCommands::typeText);
        outlet<MacroTypeText>(u"mTypeTextWindow"_s)->showKeymap(Keymap::fromNames("de"));
        outlet<QPlainTextEdit>(u"mTypeTextField"_s)
            ->setPlainText(scene == Scene::typeTextSheet ? u"Schöne Grüße,\nÄnne"_s : u"Привет! \u0301 20 €"_s);
        break;
    case Scene::importPanel: choose("mSettingsMacro", MacroCommands::importMacro); break;
    case Scene::exportPanel: choose("mSettingsMacro", MacroCommands::exportMacro); break;
    default: break;
    }
}

void MacrosScreenshotsTest::showInsertSheet(Scene scene)
{
    mDelegate->macros[1] =
        MacroRecord::withEvents(mDelegate->macros.at(1).toMap(), MacroEdits::tap({.page = 7, .usage = 11}));
    mDelegate->refresh();
    events()->selectRow(2);
    choose("mSettingsMacroDetails", MacroCommands::insertEvents);
    const auto kind = scene == Scene::insertClickSheet      ? MacroInsertion::Kind::click
                      : scene == Scene::insertUnpairedSheet ? MacroInsertion::Kind::press
                                                            : MacroInsertion::Kind::tap;
    outlet<PopUpButton>(u"mInsertKind"_s)->itemAtIndex(int(kind))->trigger();
    if (scene == Scene::insertCaptureSheet) {
        outlet<QPushButton>(u"mInsertPressKey"_s)->click();
        mController->showCaptureSource({CaptureSource::Kind::realKeyboards, u"Quill Kestra"_s});
    }
}

QWidget *MacrosScreenshotsTest::upSheet() const
{
    const QList<QDialog *> sheets = mWindow->findChildren<QDialog *>();
    for (QDialog *sheet : sheets) {
        if (sheet->isVisible())
            return sheet;
    }
    return nullptr;
}

void MacrosScreenshotsTest::save(QWidget *sheetOrMenu, const QPoint &position)
{
    QCoreApplication::processEvents(); // a changed palette reaches the widgets by events
    QVERIFY(savePicture(pictureOf(mWindow.get(), sheetOrMenu, position), u"macros"_s));
}

void MacrosScreenshotsTest::drawsTheTab_data()
{
    addSceneRows(scenes);
}

void MacrosScreenshotsTest::drawsTheTab()
{
    QFETCH(bool, isDark);
    QFETCH(int, scene);
    wearPalette(isDark);
    show(Scene(scene));
    QWidget *sheet = upSheet();
    if (sheet)
        QVERIFY(QTest::qWaitForWindowExposed(sheet));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(cutButtons(mWindow.get()), QStringList());
    save(sheet, sheet ? QPoint((mWindow->width() - sheet->width()) / 2, 60) : QPoint());
}

void MacrosScreenshotsTest::drawsTheMenus_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QString>("button");
    for (const bool isDark : {false, true}) {
        const char *look = isDark ? "dark" : "light";
        QTest::addRow("list-menu-%s", look) << isDark << u"mSettingsMacro"_s;
        QTest::addRow("event-menu-%s", look) << isDark << u"mSettingsMacroDetails"_s;
    }
}

void MacrosScreenshotsTest::drawsTheMenus()
{
    QFETCH(bool, isDark);
    QFETCH(QString, button);
    wearPalette(isDark);
    show(Scene::idle);
    auto *gear = outlet<PulldownButton>(button);
    gear->validateItems();
    QMenu *menu = gear->menu();
    menu->popup(gear->mapToGlobal(QPoint(0, -menu->sizeHint().height())));
    QVERIFY(QTest::qWaitForWindowExposed(menu));
    save(menu, gear->mapTo(mWindow.get(), QPoint(0, -menu->height())));
    menu->close();
}

void MacrosScreenshotsTest::drawsTheContextMenus_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<bool>("isOfEvents");
    for (const bool isDark : {false, true}) {
        const char *look = isDark ? "dark" : "light";
        QTest::addRow("list-context-menu-%s", look) << isDark << false;
        QTest::addRow("event-context-menu-%s", look) << isDark << true;
    }
}

void MacrosScreenshotsTest::drawsTheContextMenus()
{
    QFETCH(bool, isDark);
    QFETCH(bool, isOfEvents);
    wearPalette(isDark);
    show(Scene::idle);
    auto *list = outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s);
    auto *eventList = outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s);
    const std::unique_ptr<QMenu> menu(isOfEvents ? eventList->makeContextMenu() : list->makeContextMenu());
    const QWidget *table = isOfEvents ? static_cast<QWidget *>(eventList) : list;
    const QPoint position = table->mapTo(mWindow.get(), QPoint(80, 60));
    menu->popup(mWindow->mapToGlobal(position));
    QVERIFY(QTest::qWaitForWindowExposed(menu.get()));
    save(menu.get(), position);
    menu->close();
}

QTEST_MAIN(MacrosScreenshotsTest)
#include "macrosscreenshotstest.moc"
