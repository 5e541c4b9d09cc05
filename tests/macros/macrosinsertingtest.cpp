// SPDX-License-Identifier: MIT
// Inserting events with the sheet, which chooses the key from a list or by a press.
#include "macros/eventparser.h"
#include "macros/macroedits.h"
#include "macros/macroinsertsheet.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/radiogroup.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <algorithm>

using namespace MacrosTesting;
using Kind = MacroInsertion::Kind;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr HidUsage keyH{.page = 7, .usage = 11};
constexpr HidUsage backspace{.page = 7, .usage = 42};

QVariantList twoTaps()
{
    return MacroEdits::tap(keyA, 10, 20) + MacroEdits::tap(keyH, 30, 40);
}

} // namespace

class MacrosInsertingTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void insertsAtTheSelection_data();
    void insertsAtTheSelection();
    void insertsIntoAnEmptyMacro();
    void insertsAtTheEndWithoutASelection();
    void showsTheFieldsOfTheKind_data();
    void showsTheFieldsOfTheKind();
    void everyKeyOfTheListIsInserted();
    void keyIsChosenByPressingIt();
    void captureEndsWithTheSheet_data();
    void captureEndsWithTheSheet();
    void captureRestartsWithANewDaemon();
    void needsNumbers();
    void pointsOutAPressWithoutItsRelease();
    void reportsAFullMacro();
    void leavesRoomForTheOtherMacros();
    void refusedInsertionKeepsTheSelection();
    void sheetClosesWithItsEvents();
    void readsThePresentEventsFirst();
    void cancelChangesNothing();
    void insertsNothingDuringARecording();
    void everyControlHasAName();

private:
    /// Gives the first macro `read`, and shows it.
    void fillEvents(const QVariantList &read);
    /// Opens the sheet and chooses what to insert.
    void open(Kind kind);
    void openFor(const QList<int> &rows, Kind kind);
    void enter(const char *field, const QString &number);
    void insert() { button("mInsertOK")->click(); }
    [[nodiscard]] QPushButton *button(const char *name) const { return outlet<QPushButton>(QLatin1StringView(name)); }
    [[nodiscard]] PopUpButton *popUp(const char *name) const { return outlet<PopUpButton>(QLatin1StringView(name)); }
    [[nodiscard]] MacroInsertSheet *sheet() const { return outlet<MacroInsertSheet>(u"mInsertWindow"_s); }
    [[nodiscard]] QString outcome() const { return outlet<QLabel>(u"mInsertOutcome"_s)->text(); }
    [[nodiscard]] QVariantList stored() const { return MacroRecord::events(mDelegate->macros.first().toMap()); }
    [[nodiscard]] QStringList replacements() const { return mDelegate->calls.filter(u"replace"_s); }
};

void MacrosInsertingTest::fillEvents(const QVariantList &read)
{
    mDelegate->macros = numberedMacros({1, 2});
    mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), read);
    mDelegate->lines.clear();
    for (const QString &line : eventParser::getMessagesArray(read))
        mDelegate->lines += line;
    list()->deselectAll();
    mDelegate->refresh();
    list()->selectRow(0);
    events()->deselectAll();
    events()->setFocus();
    mDelegate->calls.clear();
}

void MacrosInsertingTest::open(Kind kind)
{
    QTest::keyClick(events(), Qt::Key_Insert);
    QVERIFY(sheet() && sheet()->isUp());
    popUp("mInsertKind")->itemAtIndex(int(kind))->trigger();
}

void MacrosInsertingTest::openFor(const QList<int> &rows, Kind kind)
{
    events()->selectRows(rows);
    open(kind);
}

void MacrosInsertingTest::enter(const char *field, const QString &number)
{
    auto *edit = outlet<NumberOnlyTextField>(QLatin1StringView(field));
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, number);
}

void MacrosInsertingTest::insertsAtTheSelection_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<bool>("isBefore");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("place");
    QTest::addColumn<QVariantList>("inserted");
    QTest::addColumn<QList<int>>("selected");
    QTest::newRow("tap after an event") << QList<int>{2} << false << int(Kind::tap) << 2
                                        << MacroEdits::tap(backspace, 50, 60) << QList<int>{3, 4, 5, 6};
    QTest::newRow("tap before an event") << QList<int>{4} << true << int(Kind::tap) << 2
                                         << MacroEdits::tap(backspace, 50, 60) << QList<int>{3, 4, 5, 6};
    QTest::newRow("press before a delay, with its event")
        << QList<int>{3} << true << int(Kind::press) << 2 << QVariantList{MacroEdits::press(backspace, 50)}
        << QList<int>{4};
    QTest::newRow("release after several") << QList<int>{0, 2, 4} << false << int(Kind::release) << 3
                                           << QVariantList{MacroEdits::release(backspace, 50)} << QList<int>{6};
    QTest::newRow("click before several")
        << QList<int>{2, 4} << true << int(Kind::click) << 1 << MacroEdits::click(3, 50, 60) << QList<int>{1, 2, 3, 4};
    QTest::newRow("after the last event") << QList<int>{6} << false << int(Kind::press) << 4
                                          << QVariantList{MacroEdits::press(backspace, 50)} << QList<int>{8};
    QTest::newRow("before the first event") << QList<int>{0} << true << int(Kind::press) << 0
                                            << QVariantList{MacroEdits::press(backspace, 50)} << QList<int>{0};
}

void MacrosInsertingTest::insertsAtTheSelection()
{
    QFETCH(QList<int>, rows);
    QFETCH(bool, isBefore);
    QFETCH(int, kind);
    QFETCH(int, place);
    QFETCH(QVariantList, inserted);
    fillEvents(twoTaps());
    openFor(rows, Kind(kind));
    const auto choices = outlet<RadioGroup>(u"mInsertPlace"_s)->findChildren<QRadioButton *>();
    choices.at(isBefore ? 0 : 1)->click();
    auto *keys = popUp("mInsertKey");
    for (int index = 0; index < keys->numberOfItems(); ++index) {
        if (keys->itemTitleAtIndex(index) == u"Delete (Backspace)"_s)
            keys->itemAtIndex(index)->trigger();
    }
    popUp("mInsertButton")->itemAtIndex(2)->trigger();
    enter("mInsertPause", u"50"_s);
    enter("mInsertHold", u"60"_s);
    insert();
    QVERIFY(!sheet()->isUp());
    QCOMPARE(stored(), twoTaps().first(place) + inserted + twoTaps().sliced(place));
    QCOMPARE(replacements().size(), 1);
    QTEST(events()->selectedRows(), "selected");
    QVERIFY(events()->hasFocus());
}

void MacrosInsertingTest::insertsIntoAnEmptyMacro()
{
    fillEvents({});
    choose("mSettingsMacroDetails", MacroCommands::insertEvents);
    QVERIFY(sheet()->isUp());
    QVERIFY(!outlet(u"mInsertPlace"_s)->isVisible());
    insert(); // the choices at the start: a tap of the first key, with the usual pauses
    QCOMPARE(stored(), MacroEdits::tap(keyA, 20, 20));
    QCOMPARE(events()->selectedRows(), (QList<int>{0, 1, 2}));
}

void MacrosInsertingTest::insertsAtTheEndWithoutASelection()
{
    fillEvents(twoTaps());
    open(Kind::pause);
    QVERIFY(!outlet(u"mInsertPlace"_s)->isVisible());
    enter("mInsertPause", u"500"_s);
    insert();
    QCOMPARE(stored(), twoTaps() + QVariantList{MacroEdits::pause(500)});
    QCOMPARE(events()->selectedRows(), QList<int>{7});
}

void MacrosInsertingTest::showsTheFieldsOfTheKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("press") << int(Kind::press) << QStringList{u"mInsertKey"_s, u"mInsertPressKey"_s, u"mInsertPause"_s};
    QTest::newRow("release") << int(Kind::release)
                             << QStringList{u"mInsertKey"_s, u"mInsertPressKey"_s, u"mInsertPause"_s};
    QTest::newRow("tap") << int(Kind::tap)
                         << QStringList{u"mInsertKey"_s, u"mInsertPressKey"_s, u"mInsertPause"_s, u"mInsertHold"_s};
    QTest::newRow("click") << int(Kind::click) << QStringList{u"mInsertButton"_s, u"mInsertPause"_s, u"mInsertHold"_s};
    QTest::newRow("pause") << int(Kind::pause) << QStringList{u"mInsertPause"_s};
}

void MacrosInsertingTest::showsTheFieldsOfTheKind()
{
    QFETCH(int, kind);
    QFETCH(QStringList, shown);
    fillEvents(twoTaps());
    openFor({2}, Kind(kind));
    for (const auto *name : {"mInsertKey", "mInsertPressKey", "mInsertButton", "mInsertPause", "mInsertHold"})
        QVERIFY2(outlet(QLatin1StringView(name))->isVisible() == shown.contains(QLatin1StringView(name)), name);
    QVERIFY(outlet(u"mInsertPlace"_s)->isVisible());
    QCOMPARE(outlet(u"mInsertPause"_s)->accessibleName(),
             Kind(kind) == Kind::pause ? u"Pause in milliseconds:"_s : u"Pause before it in milliseconds:"_s);
}

/// A macro can have every key that has a name in the event list.
void MacrosInsertingTest::everyKeyOfTheListIsInserted()
{
    fillEvents({});
    open(Kind::press);
    auto *keys = popUp("mInsertKey");
    QSet<QString> titles;
    QList<int> codes;
    for (int index = 0; index < keys->numberOfItems(); ++index) {
        titles += keys->itemTitleAtIndex(index);
        codes += keys->itemAtIndex(index)->data().toInt();
    }
    QCOMPARE(titles.size(), keys->numberOfItems()); // no two are equal
    for (int code = HidUsage::firstKey; code <= HidUsage::lastKey; ++code) {
        if (!eventParser::getStringWithHIDWithModifier(code, 0).isEmpty())
            QVERIFY2(codes.contains(code), qPrintable(QString::number(code)));
    }
    QVERIFY(titles.contains(u"Left Shift"_s));
    QVERIFY(titles.contains(u"Return (Enter)"_s));
    const auto *buttons = popUp("mInsertButton");
    QCOMPARE(buttons->numberOfItems(), 9);
    QCOMPARE(buttons->itemTitleAtIndex(0), u"Left Button"_s);
    QCOMPARE(buttons->itemTitleAtIndex(8), u"Button 9"_s);
}

void MacrosInsertingTest::keyIsChosenByPressingIt()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::press);
    QVERIFY(!mController->captureArea());
    button("mInsertPressKey")->click();
    QCOMPARE(mDelegate->calls, QStringList{u"startEditHID"_s});
    QVERIFY(mController->captureArea() == button("mInsertPressKey"));
    QVERIFY(sheet()->focusWidget() == button("mInsertPressKey"));
    QVERIFY(mController->isRecordingOrCapturing());
    const auto *hint = outlet<QLabel>(u"mInsertCaptureHint"_s);
    QVERIFY(hint->isVisible());
    mController->showCaptureSource({CaptureSource::Kind::realKeyboards, u"Desk"_s});
    QVERIFY(hint->text().contains(u"“Desk”"_s) && hint->text().contains(u"Hold Escape"_s));
    mController->singleKeyEvents({{u"singleKey"_s, 42}, {u"singleKeyModif"_s, 0}});
    QCOMPARE(mDelegate->calls, (QStringList{u"startEditHID"_s, u"stopKey"_s}));
    QVERIFY(!mController->captureArea());
    QVERIFY(!mController->isRecordingOrCapturing());
    QVERIFY(!hint->isVisible());
    QVERIFY(!button("mInsertPressKey")->isChecked());
    QCOMPARE(popUp("mInsertKey")->shownTitleOfSelectedItem(), u"Delete (Backspace)"_s);
    // A modifier alone, and a key without a name
    for (const auto &[key, modifier, code] : {std::tuple{0, 225, 225}, std::tuple{50, 0, 50}}) {
        button("mInsertPressKey")->click();
        mController->singleKeyEvents({{u"singleKey"_s, key}, {u"singleKeyModif"_s, modifier}});
        QCOMPARE(popUp("mInsertKey")->shownTitleOfSelectedItem(), code == 225 ? u"Left Shift"_s : u"0x32"_s);
    }
    insert();
    QCOMPARE(stored().at(2).toMap(), MacroEdits::press({.page = 7, .usage = 50}, 20));
    for (const QString &name : tableButtons + tables)
        QVERIFY2(outlet(name)->isEnabled(), qPrintable(name));
}

void MacrosInsertingTest::captureEndsWithTheSheet_data()
{
    QTest::addColumn<QString>("end");
    for (const char *end : {"Cancel", "Insert", "keyboard", "events", "button", "tab"})
        QTest::newRow(end) << QString::fromLatin1(end);
}

void MacrosInsertingTest::captureEndsWithTheSheet()
{
    QFETCH(QString, end);
    fillEvents(twoTaps());
    openFor({2}, Kind::press);
    button("mInsertPressKey")->click();
    mDelegate->calls.clear();
    if (end == u"Cancel"_s) {
        button("mInsertCancel")->click();
    } else if (end == u"Insert"_s) {
        insert();
    } else if (end == u"keyboard"_s) {
        mController->setControlsState(false);
    } else if (end == u"events"_s) {
        mDelegate->macros.removeFirst();
        mDelegate->refresh();
    } else if (end == u"button"_s) {
        button("mInsertPressKey")->click();
    } else {
        mController->checkMacroRecordingStatus(u"Keys"_s);
    }
    // The keyboard that is gone has ended the capture itself.
    QCOMPARE(mDelegate->calls.filter(u"stopKey"_s).size(), end == u"keyboard"_s ? 0 : 1);
    QVERIFY(!mController->captureArea());
    QVERIFY(!mController->isRecordingOrCapturing());
    QVERIFY(!button("mInsertPressKey")->isChecked());
    const bool staysUp = end == u"button"_s || end == u"tab"_s;
    QCOMPARE(sheet()->isUp(), staysUp);
    QCOMPARE(list()->isEnabled(), end != u"keyboard"_s);
    // A key that comes too late chooses nothing.
    const QString key = popUp("mInsertKey")->shownTitleOfSelectedItem();
    mController->singleKeyEvents({{u"singleKey"_s, 42}, {u"singleKeyModif"_s, 0}});
    QCOMPARE(popUp("mInsertKey")->shownTitleOfSelectedItem(), key);
}

void MacrosInsertingTest::captureRestartsWithANewDaemon()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::press);
    button("mInsertPressKey")->click();
    mController->setControlsState(true); // as at every attachment
    QVERIFY(!list()->isEnabled());
    QVERIFY(!outlet(u"mSettingsMacroDetails"_s)->isEnabled());
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList{u"startEditHID"_s});
    button("mInsertCancel")->click();
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList());
}

void MacrosInsertingTest::needsNumbers()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::tap);
    QVERIFY(button("mInsertOK")->isEnabled());
    enter("mInsertHold", {});
    QVERIFY(!button("mInsertOK")->isEnabled());
    popUp("mInsertKind")->itemAtIndex(int(Kind::press))->trigger(); // has no such field
    QVERIFY(button("mInsertOK")->isEnabled());
    enter("mInsertPause", {});
    QVERIFY(!button("mInsertOK")->isEnabled());
    enter("mInsertPause", u"0"_s);
    QVERIFY(button("mInsertOK")->isEnabled());
    popUp("mInsertKind")->itemAtIndex(int(Kind::pause))->trigger(); // one of no length would add nothing
    QVERIFY(!button("mInsertOK")->isEnabled());
    enter("mInsertPause", u"1"_s);
    QVERIFY(button("mInsertOK")->isEnabled());
}

void MacrosInsertingTest::pointsOutAPressWithoutItsRelease()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::tap);
    QCOMPARE(outcome(), QString());
    popUp("mInsertKind")->itemAtIndex(int(Kind::release))->trigger();
    QVERIFY2(outcome().contains(u"without its release"_s), qPrintable(outcome()));
    QCOMPARE(button("mInsertOK")->accessibleDescription(), outcome());
    insert(); // allowed: the press may come next
    QCOMPARE(stored().size(), 5);
    QVERIFY(!mController->tableViewRemarkForTableColumnRow(events(), {}, events()->selectedRow()).isEmpty());
}

void MacrosInsertingTest::reportsAFullMacro()
{
    fillEvents(QVariantList(MacroRecord::maximumEvents, MacroEdits::press(keyA)));
    openFor({2}, Kind::tap);
    QCOMPARE(outcome(), u"This macro has room for only 0 more events."_s);
    QVERIFY(!button("mInsertOK")->isEnabled());
    popUp("mInsertKind")->itemAtIndex(int(Kind::pause))->trigger(); // makes a delay longer
    QCOMPARE(outcome(), QString());
    QVERIFY(button("mInsertOK")->isEnabled());
}

void MacrosInsertingTest::leavesRoomForTheOtherMacros()
{
    fillEvents(twoTaps());
    const QVariantList longest(MacroRecord::maximumEvents, MacroEdits::press(keyA));
    int left = MacroRecord::maximumTotalEvents - 5; // one more than the selected macro has
    for (int number = 3; left > 0; ++number) {
        const int count = std::min(left, MacroRecord::maximumEvents);
        mDelegate->macros += MacroRecord::withEvents(numberedMacros({number}).first().toMap(), longest.first(count));
        left -= count;
    }
    mDelegate->refresh();
    openFor({2}, Kind::tap);
    QCOMPARE(outcome(), u"This macro has room for only 1 more events."_s);
    QVERIFY(!button("mInsertOK")->isEnabled());
    popUp("mInsertKind")->itemAtIndex(int(Kind::press))->trigger();
    QVERIFY(button("mInsertOK")->isEnabled());
}

void MacrosInsertingTest::refusedInsertionKeepsTheSelection()
{
    fillEvents(twoTaps());
    mDelegate->storesEvents = false;
    openFor({2, 3}, Kind::tap);
    insert();
    QCOMPARE(replacements().size(), 1);
    QCOMPARE(stored(), twoTaps());
    QCOMPARE(events()->selectedRows(), (QList<int>{2, 3}));
    QVERIFY(!sheet()->isUp());
}

void MacrosInsertingTest::sheetClosesWithItsEvents()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::tap);
    // Another client's change
    mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), twoTaps().first(2));
    mDelegate->lines = mDelegate->lines.first(3);
    mDelegate->refresh();
    QVERIFY(!sheet()->isUp());
    QCOMPARE(replacements(), QStringList());
}

void MacrosInsertingTest::readsThePresentEventsFirst()
{
    fillEvents(twoTaps());
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the lines are now newer than the records
    mDelegate->macros[0] =
        MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), MacroRecord::settingAllDelays(stored(), 0));
    mDelegate->calls.clear();
    openFor({0}, Kind::tap);
    QCOMPARE(mDelegate->calls.value(0), u"reload"_s);
    insert();
    QCOMPARE(stored().size(), 6);
}

void MacrosInsertingTest::cancelChangesNothing()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::tap);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    QVERIFY(!sheet()->isUp());
    QCOMPARE(mDelegate->calls, QStringList());
    QCOMPARE(events()->selectedRows(), QList<int>{2});
}

void MacrosInsertingTest::insertsNothingDuringARecording()
{
    fillEvents(twoTaps());
    button("mAddMacroDetails")->click();
    mDelegate->calls.clear();
    mController->editEvents(MacroCommands::insertEvents);
    QVERIFY(!sheet() || !sheet()->isUp());
    QCOMPARE(mDelegate->calls, QStringList());
}

void MacrosInsertingTest::everyControlHasAName()
{
    fillEvents(twoTaps());
    openFor({2}, Kind::tap);
    for (const char *name : {"mInsertKind", "mInsertKey", "mInsertButton", "mInsertPause", "mInsertHold"}) {
        const auto *control = outlet(QLatin1StringView(name));
        QVERIFY2(!control->accessibleName().isEmpty(), name);
        QVERIFY2(control->focusPolicy() & Qt::TabFocus, name);
    }
    QVERIFY(!outlet(u"mInsertPlace"_s)->accessibleName().isEmpty());
}

QTEST_MAIN(MacrosInsertingTest)
#include "macrosinsertingtest.moc"
