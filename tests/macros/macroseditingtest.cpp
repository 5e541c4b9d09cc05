// SPDX-License-Identifier: MIT
// Editing several events of the selected macro at once, each time as one change.
#include "macros/eventline.h"
#include "macros/eventparser.h"
#include "macros/eventsclip.h"
#include "macros/macroedits.h"
#include "macros/macroinsertsheet.h"
#include "macros/macropairs.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/radiogroup.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTest>

#include <numeric>
#include <tuple>

using namespace MacrosTesting;

namespace {

constexpr quint16 keyA = 4;

/// Taps of A, B and so on; the pause before the event at index i is (i + 1) * 10 ms.
QVariantList taps(int count)
{
    QVariantList events;
    for (int tap = 0; tap < count; ++tap)
        events += MacroEdits::tap({.page = MacroRecord::keyboardPage, .usage = quint16(keyA + tap % 26)}, 20 * tap + 10,
                                  20 * tap + 20);
    return events;
}

QVariantList chosen(const QVariantList &events, const QList<int> &indexes)
{
    QVariantList result;
    for (const int index : indexes)
        result += events.at(index);
    return result;
}

QList<int> delays(const QVariantList &events)
{
    QList<int> result;
    for (const QVariant &event : events)
        result += MacroRecord::eventFields(event.toMap()).delayMs;
    return result;
}

} // namespace

class MacrosEditingTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void deletesAsOneChange_data();
    void deletesAsOneChange();
    void deletesAllEvents();
    void refusedChangeKeepsTheSelection();
    void commandsForOneRowAreOffForSeveral();
    void copiesIntoAnotherMacro();
    void pastesAtTheEndWithoutASelection();
    void cutEventsCanBePastedBack();
    void eventsThatCannotBePastedStay_data();
    void eventsThatCannotBePastedStay();
    void pastesOnlyEvents_data();
    void pastesOnlyEvents();
    void moves_data();
    void moves();
    void setsPauses();
    void scalesPauses();
    void pausesNeedANumber();
    void cancelledPausesStay();
    void sheetForPausesClosesWithItsEvents();
    void editsRowsAbove255();
    void editsOneRowAbove255_data();
    void editsOneRowAbove255();
    void refusedEditAbove255ChangesNothing();
    void editAbove255ReadsThePresentEventsFirst();
    void dragMovesRows_data();
    void dragMovesRows();
    void noPlaceIsBetweenADelayAndItsEvent();
    void dropOfRefusedMoveKeepsTheRows();
    void dropReadsThePresentEventsFirst();
    void dragEndsWithItsEvents_data();
    void dragEndsWithItsEvents();
    void anyEditsKeepPairsAndViews();
    void readsThePresentEventsFirst();
    void usesNoOldEvents();
    void editsNothingDuringARecording();

private:
    /// Gives the first macro `events`, and shows it.
    void fillEvents(const QVariantList &events);
    void selectMacro(int row);
    [[nodiscard]] QVariantList stored(int row = 0) const
    {
        return MacroRecord::events(mDelegate->macros.at(row).toMap());
    }
    [[nodiscard]] QStringList replacements() const { return mDelegate->calls.filter(u"replace"_s); }
    void press(int key, Qt::KeyboardModifiers modifiers = {});
    /// Chooses the command and confirms its sheet with `number`.
    void changePauses(int tag, const QString &number);
    /// Presses the mouse on a row, and drags it to the upper or lower part of another one.
    void drag(int row, int targetRow, bool isLowerPart);
    void drop();
    /// One edit, chosen at random. Returns the indexes of the events that it was about: whole pairs.
    QList<int> editAtRandom(QRandomGenerator &random);
    void compareViews() const;
    [[nodiscard]] MacroTimelineView *timeline() const { return outlet<MacroTimelineView>(u"mMacroTimelineView"_s); }

    QPoint mDragged; ///< the place of the mouse
};

void MacrosEditingTest::selectMacro(int row)
{
    mDelegate->lines.clear();
    for (const QString &line : eventParser::getMessagesArray(stored(row)))
        mDelegate->lines += line;
    list()->selectRow(row);
    events()->deselectAll();
    events()->setFocus();
    mDelegate->calls.clear();
}

void MacrosEditingTest::fillEvents(const QVariantList &read)
{
    QGuiApplication::clipboard()->clear();
    mDelegate->macros = numberedMacros({1, 2});
    mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), read);
    mDelegate->refresh();
    selectMacro(0);
}

void MacrosEditingTest::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(events(), Qt::Key(key), modifiers);
}

void MacrosEditingTest::changePauses(int tag, const QString &number)
{
    choose("mSettingsMacroDetails", tag);
    QVERIFY(outlet<Sheet>(u"mPauseWindow"_s)->isUp());
    QTest::keyClicks(outlet(u"mPauseField"_s), number);
    outlet<QPushButton>(u"mPauseOK"_s)->click();
}

void MacrosEditingTest::deletesAsOneChange_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<QList<int>>("left");
    QTest::addColumn<int>("selected");
    QTest::newRow("press and release") << QList<int>{0, 1, 2} << QList<int>{2, 3, 4, 5} << 0;
    QTest::newRow("a pause stands for its event") << QList<int>{1, 4} << QList<int>{0, 3, 4, 5} << 2;
    QTest::newRow("both rows of an event") << QList<int>{3, 4} << QList<int>{0, 1, 3, 4, 5} << 4;
    QTest::newRow("the last ones") << QList<int>{8, 10} << QList<int>{0, 1, 2, 3} << 6;
}

void MacrosEditingTest::deletesAsOneChange()
{
    QFETCH(QList<int>, rows);
    QFETCH(QList<int>, left);
    QFETCH(int, selected);
    const QVariantList before = taps(3);
    for (const bool isKey : {true, false}) {
        fillEvents(before);
        events()->selectRows(rows);
        if (isKey)
            press(Qt::Key_Delete);
        else
            choose("mSettingsMacroDetails", MacroCommands::deleteEvent);
        QCOMPARE(stored(), chosen(before, left));
        QCOMPARE(replacements().size(), 1);
        QVERIFY(mDelegate->calls.filter(u"removeEvent"_s).isEmpty());
        QCOMPARE(events()->selectedRows(), QList<int>{selected});
        QVERIFY(events()->hasFocus());
        list()->deselectAll();
    }
}

void MacrosEditingTest::deletesAllEvents()
{
    fillEvents(taps(2));
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(events()->selectedRows().size(), 7);
    press(Qt::Key_Delete);
    QCOMPARE(stored(), QVariantList());
    QCOMPARE(events()->selectedRows(), QList<int>());
    QCOMPARE(events()->model()->rowCount(), 0);
}

void MacrosEditingTest::refusedChangeKeepsTheSelection()
{
    const QVariantList before = taps(2);
    fillEvents(before);
    mDelegate->storesEvents = false;
    events()->selectRows({2, 3, 4});
    press(Qt::Key_Delete);
    QCOMPARE(replacements().size(), 1);
    QCOMPARE(stored(), before);
    QCOMPARE(events()->selectedRows(), (QList<int>{2, 3, 4}));
}

void MacrosEditingTest::commandsForOneRowAreOffForSeveral()
{
    fillEvents(taps(2));
    events()->selectRows({1, 3}); // delays, both of which one alone could edit and copy
    auto *gear = outlet<PulldownButton>(u"mSettingsMacroDetails"_s);
    gear->validateItems();
    const std::unique_ptr<QMenu> menu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    const QList<int> enabled{1, 3, 4, 6, 28, 20, 21, 22, 24, 25, 26, 27};
    QCOMPARE(enabledTags(gear->menu()->actions()), enabled);
    QCOMPARE(enabledTags(menu->actions()), enabled);
    press(Qt::Key_Return);
    press(Qt::Key_F2);
    QAction copyDelay;
    copyDelay.setData(MacroCommands::copyDelay);
    mController->clickMacroDetailsSettingsMenuItem(&copyDelay);
    QCOMPARE(mDelegate->calls, QStringList());
    const auto *sheet = outlet<Sheet>(u"mEditDelayWindow"_s);
    QVERIFY(!sheet || !sheet->isUp());
}

void MacrosEditingTest::copiesIntoAnotherMacro()
{
    const QVariantList before = taps(3);
    fillEvents(before);
    events()->selectRows({2, 4});
    press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(mDelegate->calls, QStringList());
    mDelegate->macros[1] = MacroRecord::withEvents(mDelegate->macros.at(1).toMap(), taps(1));
    mDelegate->refresh();
    selectMacro(1);
    events()->selectRow(2); // the release
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(stored(0), before);
    QCOMPARE(stored(1), QVariantList({taps(1).at(0), before.at(1), before.at(2), taps(1).at(1)}));
    QCOMPARE(replacements().size(), 1);
    QCOMPARE(events()->selectedRows(), (QList<int>{1, 2, 3, 4}));
}

void MacrosEditingTest::pastesAtTheEndWithoutASelection()
{
    const QVariantList before = taps(2);
    fillEvents(before);
    events()->selectRow(2);
    choose("mSettingsMacroDetails", MacroCommands::copyEvents);
    events()->deselectAll();
    choose("mSettingsMacroDetails", MacroCommands::pasteEvents);
    QCOMPARE(stored(), before + QVariantList{before.at(1)});
    QCOMPARE(events()->selectedRows(), QList<int>{8}); // the event alone, for the commands for one row
}

void MacrosEditingTest::cutEventsCanBePastedBack()
{
    const QVariantList before = taps(3);
    fillEvents(before);
    events()->selectRows({4, 6});
    press(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(stored(), chosen(before, {0, 1, 4, 5}));
    QCOMPARE(events()->selectedRows(), QList<int>{4});
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(stored(), before);
    QCOMPARE(replacements().size(), 2);
}

void MacrosEditingTest::eventsThatCannotBePastedStay_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("delayMs");
    QTest::addColumn<int>("argument");
    const auto add = [](const char *name, int delayMs, int argument) {
        QTest::addRow("cut, %s", name) << MacroCommands::cutEvents + 0 << delayMs << argument;
        QTest::addRow("copy, %s", name) << MacroCommands::copyEvents + 0 << delayMs << argument;
    };
    add("negative pause", -5, 4);
    add("unknown key", 0, 300);
}

void MacrosEditingTest::eventsThatCannotBePastedStay()
{
    QFETCH(int, command);
    QFETCH(int, delayMs);
    QFETCH(int, argument);
    QVariantList before = taps(2);
    before[2] = QVariantMap{{u"command"_s, 1}, {u"delay"_s, delayMs}, {u"page"_s, 7}, {u"argument"_s, argument}};
    fillEvents(before);
    QGuiApplication::clipboard()->setText(u"earlier"_s);
    mDelegate->reports.clear();
    events()->selectAll();
    choose("mSettingsMacroDetails", command);
    QCOMPARE(stored(), before);
    QCOMPARE(replacements(), QStringList());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"earlier"_s);
    QCOMPARE(mDelegate->reports, QList{StatusReport::Event::eventsNotCopied});
}

void MacrosEditingTest::pastesOnlyEvents_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("isOffered");
    QTest::newRow("text") << u"text/plain"_s << false;
    QTest::newRow("damaged events") << u"application/x-quill-kestra-macro-events"_s << true;
}

void MacrosEditingTest::pastesOnlyEvents()
{
    QFETCH(QString, format);
    QFETCH(bool, isOffered);
    fillEvents(taps(1));
    auto *content = new QMimeData;
    content->setData(format, "Key Press A");
    QGuiApplication::clipboard()->setMimeData(content);
    auto *gear = outlet<PulldownButton>(u"mSettingsMacroDetails"_s);
    gear->validateItems();
    QCOMPARE(gear->itemWithTag(MacroCommands::pasteEvents)->isEnabled(), isOffered);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(replacements(), QStringList());
}

void MacrosEditingTest::moves_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<int>("key");
    QTest::addColumn<QList<int>>("order");
    QTest::addColumn<QList<int>>("selected");
    QTest::newRow("one down") << QList<int>{2} << int(Qt::Key_Down) << QList<int>{0, 2, 1, 3, 4, 5} << QList<int>{4};
    QTest::newRow("one up") << QList<int>{2} << int(Qt::Key_Up) << QList<int>{1, 0, 2, 3, 4, 5} << QList<int>{0};
    QTest::newRow("two down") << QList<int>{2, 3, 4} << int(Qt::Key_Down) << QList<int>{0, 3, 1, 2, 4, 5}
                              << QList<int>{3, 4, 5, 6};
    QTest::newRow("two up") << QList<int>{4, 6} << int(Qt::Key_Up) << QList<int>{0, 2, 3, 1, 4, 5}
                            << QList<int>{1, 2, 3, 4};
    QTest::newRow("those apart become neighbours")
        << QList<int>{2, 8} << int(Qt::Key_Up) << QList<int>{1, 4, 0, 2, 3, 5} << QList<int>{0, 1, 2};
    QTest::newRow("first up") << QList<int>{0} << int(Qt::Key_Up) << QList<int>{} << QList<int>{0};
    QTest::newRow("last down") << QList<int>{9, 10} << int(Qt::Key_Down) << QList<int>{} << QList<int>{10};
}

void MacrosEditingTest::moves()
{
    QFETCH(QList<int>, rows);
    QFETCH(int, key);
    QFETCH(QList<int>, order);
    QFETCH(QList<int>, selected);
    const QVariantList before = taps(3);
    fillEvents(before);
    events()->selectRows(rows);
    press(key, Qt::AltModifier);
    QCOMPARE(replacements().size(), order.isEmpty() ? 0 : 1);
    QCOMPARE(stored(), order.isEmpty() ? before : chosen(before, order));
    QCOMPARE(events()->selectedRows(), selected);
}

void MacrosEditingTest::setsPauses()
{
    fillEvents(taps(2));
    events()->selectRows({1, 4});
    changePauses(MacroCommands::setPause, u"75"_s);
    QCOMPARE(delays(stored()), (QList<int>{10, 75, 75, 40}));
    QCOMPARE(replacements().size(), 1);
    QCOMPARE(events()->selectedRows(), (QList<int>{1, 4}));
    QVERIFY(!outlet<Sheet>(u"mPauseWindow"_s)->isUp());
}

void MacrosEditingTest::scalesPauses()
{
    fillEvents(taps(2));
    press(Qt::Key_A, Qt::ControlModifier);
    changePauses(MacroCommands::scalePauses, u"150"_s);
    QCOMPARE(delays(stored()), (QList<int>{15, 30, 45, 60}));
    QCOMPARE(replacements().size(), 1);
    changePauses(MacroCommands::scalePauses, u"0"_s);
    QCOMPARE(delays(stored()), (QList<int>{0, 0, 0, 0}));
}

void MacrosEditingTest::pausesNeedANumber()
{
    fillEvents(taps(2));
    events()->selectRows({2, 4});
    choose("mSettingsMacroDetails", MacroCommands::setPause);
    auto *field = outlet<NumberOnlyTextField>(u"mPauseField"_s);
    const auto *ok = outlet<QPushButton>(u"mPauseOK"_s);
    QVERIFY(!ok->isEnabled());
    QTest::keyClicks(field, u"5"_s);
    QVERIFY(ok->isEnabled());
    outlet<QPushButton>(u"mPauseCancel"_s)->click();
    choose("mSettingsMacroDetails", MacroCommands::scalePauses); // begins with an empty field
    QCOMPARE(field->text(), QString());
    QVERIFY(!ok->isEnabled());
    QVERIFY(field->accessibleDescription().contains(u"(2)"));
}

void MacrosEditingTest::cancelledPausesStay()
{
    fillEvents(taps(2));
    events()->selectRows({2, 4});
    choose("mSettingsMacroDetails", MacroCommands::setPause);
    QTest::keyClicks(outlet(u"mPauseField"_s), u"5"_s);
    outlet<QPushButton>(u"mPauseCancel"_s)->click();
    QVERIFY(!outlet<Sheet>(u"mPauseWindow"_s)->isUp());
    QCOMPARE(replacements(), QStringList());
}

void MacrosEditingTest::sheetForPausesClosesWithItsEvents()
{
    fillEvents(taps(2));
    events()->selectRows({2, 4});
    choose("mSettingsMacroDetails", MacroCommands::setPause);
    QVERIFY(outlet<Sheet>(u"mPauseWindow"_s)->isUp());
    // Another client's change
    const QVariantList others = taps(1);
    mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), others);
    mDelegate->lines = mDelegate->lines.first(3);
    mDelegate->refresh();
    QVERIFY(!outlet<Sheet>(u"mPauseWindow"_s)->isUp());
    QCOMPARE(replacements(), QStringList());
}

void MacrosEditingTest::editsRowsAbove255()
{
    const QVariantList before = taps(200);
    fillEvents(before);
    events()->selectRows({600, 602});
    changePauses(MacroCommands::setPause, u"7"_s);
    QVariantList changed = before;
    for (const int index : {300, 301})
        changed = MacroEdits::settingDelays(changed, {index}, 7).value();
    QCOMPARE(stored(), changed);
    press(Qt::Key_Delete);
    QCOMPARE(stored(), before.first(300) + before.sliced(302));
    QCOMPARE(events()->selectedRows(), QList<int>{600});
}

void MacrosEditingTest::editsOneRowAbove255_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("edit");
    QTest::addColumn<bool>("isNumbered");
    for (const char *edit : {"delay", "timeline"}) {
        QTest::addRow("%s of row 255", edit) << 255 << QString::fromLatin1(edit) << true;
        QTest::addRow("%s of row 257", edit) << 257 << QString::fromLatin1(edit) << false;
    }
    for (const char *edit : {"key", "deletion"}) {
        QTest::addRow("%s of row 254", edit) << 254 << QString::fromLatin1(edit) << true;
        QTest::addRow("%s of row 256", edit) << 256 << QString::fromLatin1(edit) << false;
        QTest::addRow("%s of row 700", edit) << 700 << QString::fromLatin1(edit) << false;
    }
}

void MacrosEditingTest::editsOneRowAbove255()
{
    QFETCH(int, row);
    QFETCH(QString, edit);
    QFETCH(bool, isNumbered);
    const QVariantList before = taps(200);
    fillEvents(before);
    events()->selectRow(row);
    const int index = (row + 1) / 2;
    QVariantMap event = before.at(index).toMap();
    QVariantList expected = before;
    if (edit == u"key"_s) {
        choose("mSettingsMacroDetails", MacroCommands::edit);
        QVERIFY(outlet<Sheet>(u"mEditEventWindow"_s)->isUp());
        mController->singleKeyEvents({{u"singleKey"_s, 44}, {u"singleKeyModif"_s, 0}});
        outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
        QVERIFY(!outlet<Sheet>(u"mEditEventWindow"_s)->isUp());
        QCOMPARE(mDelegate->calls.filter(u"stopKey"_s).size(), 1); // the new events must not also cancel the sheet
        event[u"argument"_s] = 44;
    } else if (edit == u"delay"_s) {
        choose("mSettingsMacroDetails", MacroCommands::edit);
        QTest::keyClicks(outlet(u"mInputMacroDelay"_s), u"77"_s);
        outlet<QPushButton>(u"mMacroDelayOK"_s)->click();
        event[u"delay"_s] = 77;
    } else if (edit == u"timeline"_s) {
        timeline()->setFocus();
        QTest::keyPress(timeline(), Qt::Key_Right, Qt::AltModifier);
        QTest::keyRelease(timeline(), Qt::Key_Alt);
        event[u"delay"_s] = event.value(u"delay"_s).toInt() + 10;
    } else {
        press(Qt::Key_Delete);
    }
    if (edit == u"deletion"_s)
        expected.removeAt(index);
    else
        expected[index] = event;
    QCOMPARE(replacements().size(), isNumbered ? 0 : 1);
    const QStringList numbered = mDelegate->calls.filter(u"update "_s) + mDelegate->calls.filter(u"delay "_s)
                                 + mDelegate->calls.filter(u"removeEvent "_s);
    QCOMPARE(numbered.size(), isNumbered ? 1 : 0);
    if (!isNumbered)
        QCOMPARE(stored(), expected);
    if (!isNumbered)
        QCOMPARE(events()->selectedRow(), row);
    QVERIFY(list()->isEnabled() && events()->isEnabled());
}

void MacrosEditingTest::refusedEditAbove255ChangesNothing()
{
    const QVariantList before = taps(200);
    fillEvents(before);
    mDelegate->storesEvents = false;
    events()->selectRow(600);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click(); // without a key
    QCOMPARE(replacements(), QStringList());
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mController->singleKeyEvents({{u"singleKey"_s, 44}, {u"singleKeyModif"_s, 0}});
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(replacements().size(), 1);
    QCOMPARE(stored(), before);
    QCOMPARE(events()->selectedRow(), 600);
    QVERIFY(!mController->isRecordingOrCapturing());
}

void MacrosEditingTest::editAbove255ReadsThePresentEventsFirst()
{
    for (const bool areOthers : {false, true}) {
        fillEvents(taps(200));
        choose("mSettingsMacroDetails", MacroCommands::noDelay); // the lines are now newer than the records
        const QVariantList present = MacroRecord::settingAllDelays(taps(200), 0);
        mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), present);
        if (areOthers)
            mDelegate->lines = mDelegate->lines.first(701);
        events()->selectRow(601);
        choose("mSettingsMacroDetails", MacroCommands::edit);
        QTest::keyClicks(outlet(u"mInputMacroDelay"_s), u"77"_s);
        outlet<QPushButton>(u"mMacroDelayOK"_s)->click();
        QVERIFY(mDelegate->calls.contains(u"reload"_s));
        // The row was one of other events.
        QCOMPARE(stored(), areOthers ? present : MacroEdits::settingDelays(present, {301}, 77).value());
        list()->deselectAll();
    }
}

void MacrosEditingTest::drag(int row, int targetRow, bool isLowerPart)
{
    const auto rect = [this](int each) { return events()->visualRect(events()->model()->index(each, 0)); };
    QTRY_VERIFY(events()->viewport()->rect().contains(rect(events()->model()->rowCount() - 1)));
    const QPoint start = rect(row).center();
    QTest::mousePress(events()->viewport(), Qt::LeftButton, {}, start);
    const QRect target = rect(targetRow);
    mDragged = QPoint(start.x() + 30, isLowerPart ? target.bottom() - 1 : target.top() + 1);
    QMouseEvent move(QEvent::MouseMove, mDragged, events()->viewport()->mapToGlobal(mDragged), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(events()->viewport(), &move);
}

void MacrosEditingTest::drop()
{
    QTest::mouseRelease(events()->viewport(), Qt::LeftButton, {}, mDragged);
}

void MacrosEditingTest::dragMovesRows_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("isLower");
    QTest::addColumn<QList<int>>("order");
    QTest::addColumn<QList<int>>("selected");
    using Rows = QList<int>;
    QTest::newRow("down") << Rows{} << 2 << 6 << true << Rows{0, 2, 3, 1, 4, 5} << Rows{6};
    QTest::newRow("up") << Rows{} << 8 << 2 << true << Rows{0, 1, 4, 2, 3, 5} << Rows{4};
    QTest::newRow("between a delay and its event") << Rows{} << 8 << 2 << false << Rows{0, 4, 1, 2, 3, 5} << Rows{2};
    QTest::newRow("to the lower part of a delay") << Rows{} << 8 << 1 << true << Rows{0, 4, 1, 2, 3, 5} << Rows{2};
    QTest::newRow("to the start") << Rows{} << 4 << 0 << false << Rows{2, 0, 1, 3, 4, 5} << Rows{0};
    QTest::newRow("to the end") << Rows{} << 0 << 10 << true << Rows{1, 2, 3, 4, 5, 0} << Rows{10};
    QTest::newRow("several") << Rows{2, 8} << 8 << 0 << false << Rows{1, 4, 0, 2, 3, 5} << Rows{0, 1, 2};
    QTest::newRow("several, around the place")
        << Rows{2, 8} << 2 << 6 << true << Rows{0, 2, 3, 1, 4, 5} << Rows{5, 6, 7, 8};
    QTest::newRow("row that is not one of several")
        << Rows{0, 2} << 8 << 4 << true << Rows{0, 1, 2, 4, 3, 5} << Rows{6};
    QTest::newRow("to its own place") << Rows{} << 4 << 3 << false << Rows{} << Rows{4};
}

void MacrosEditingTest::dragMovesRows()
{
    QFETCH(QList<int>, rows);
    QFETCH(int, row);
    QFETCH(int, target);
    QFETCH(bool, isLower);
    QFETCH(QList<int>, order);
    const QVariantList before = taps(3);
    mWindow->resize(800, 800); // shows all rows
    fillEvents(before);
    if (!rows.isEmpty())
        events()->selectRows(rows);
    drag(row, target, isLower);
    QCOMPARE(mDelegate->calls, QStringList());
    drop();
    QCOMPARE(stored(), order.isEmpty() ? before : chosen(before, order));
    QCOMPARE(replacements().size(), order.isEmpty() ? 0 : 1);
    QTEST(events()->selectedRows(), "selected");
}

void MacrosEditingTest::noPlaceIsBetweenADelayAndItsEvent()
{
    fillEvents(taps(1) + QVariantList{MacroEdits::pause(50)} + taps(1));
    // Press, delay, release, the pause alone, delay, press, delay, release
    QList<int> places;
    for (int place = 0; place <= 8; ++place)
        places += mController->tableViewPlaceOfDrop(events(), place);
    QCOMPARE(places, (QList<int>{0, 1, 1, 3, 4, 4, 6, 6, 8}));
}

void MacrosEditingTest::dropOfRefusedMoveKeepsTheRows()
{
    const QVariantList before = taps(3);
    mWindow->resize(800, 800);
    fillEvents(before);
    mDelegate->storesEvents = false;
    drag(2, 6, true);
    drop();
    QCOMPARE(replacements().size(), 1);
    QCOMPARE(stored(), before);
    QCOMPARE(events()->selectedRows(), QList<int>{2});
}

void MacrosEditingTest::dropReadsThePresentEventsFirst()
{
    mWindow->resize(800, 800);
    fillEvents(taps(3));
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the lines are now newer than the records
    // The daemon answers with other events: the place of the drop was one between the former ones.
    mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), taps(2));
    mDelegate->lines = mDelegate->lines.first(7);
    drag(2, 6, true);
    drop();
    QVERIFY(mDelegate->calls.contains(u"reload"_s));
    QCOMPARE(replacements(), QStringList());
}

void MacrosEditingTest::dragEndsWithItsEvents_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change :
         {"events", "another macro", "no macro", "keyboard", "recording", "Escape", "drop outside"})
        QTest::newRow(change) << QString::fromLatin1(change);
}

void MacrosEditingTest::dragEndsWithItsEvents()
{
    QFETCH(QString, change);
    mWindow->resize(800, 800);
    fillEvents(taps(3));
    drag(2, 6, true);
    if (change == u"events"_s) {
        mDelegate->macros[0] = MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), taps(2));
        mDelegate->lines = mDelegate->lines.first(7);
        mDelegate->refresh();
    } else if (change == u"another macro"_s) {
        list()->selectRow(1);
    } else if (change == u"no macro"_s) {
        mDelegate->macros.removeFirst();
        mDelegate->refresh();
    } else if (change == u"keyboard"_s) {
        mController->setControlsState(false);
        mController->setControlsState(true);
    } else if (change == u"recording"_s) {
        outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
        outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    } else if (change == u"Escape"_s) {
        QTest::keyClick(events(), Qt::Key_Escape);
    } else {
        mDragged = QPoint(20, -20);
    }
    drop();
    QCOMPARE(replacements(), QStringList());
    if (change == u"Escape"_s || change == u"drop outside"_s)
        QCOMPARE(events()->selectedRows(), QList<int>{2});
}

// Random edits

namespace {

/// Identifies an event of a key or button while each key is pressed and released only once.
using Identity = std::tuple<int, uint, int>; // page, argument, command

QList<Identity> identities(const QVariantList &events)
{
    QList<Identity> result;
    for (const QVariant &event : events) {
        const MacroRecord::Event fields = MacroRecord::eventFields(event.toMap());
        if (fields.page != 0)
            result += Identity(fields.page, fields.argument, fields.command);
    }
    return result;
}

HidUsage freeKey(QRandomGenerator &random, const QVariantList &events)
{
    const QList<Identity> present = identities(events);
    const auto isTaken = [&present](int code) {
        // Without a name of its own, the timeline can take a key for another one.
        const QString name = eventParser::getStringWithHIDWithModifier(code, 0);
        if (name.isEmpty() || name == u"Delete"_s)
            return true;
        return std::ranges::any_of(present, [code](const Identity &each) { return std::get<1>(each) == uint(code); });
    };
    int code = random.bounded(4, 232);
    while (isTaken(code))
        code = code == 231 ? 4 : code + 1;
    return {.page = MacroRecord::keyboardPage, .usage = quint16(code)};
}

qint64 total(const QVariantList &events)
{
    const QList<int> all = delays(events);
    return std::accumulate(all.begin(), all.end(), qint64(0));
}

} // namespace

/// The list and the timeline show the stored events, with the same times and marks.
void MacrosEditingTest::compareViews() const
{
    const QVariantList kept = stored();
    const QStringList lines = eventParser::getMessagesArray(kept);
    QCOMPARE(mController->macroDetailsArray(), lines);
    QCOMPARE(events()->model()->rowCount(), lines.size());
    const MacroTimeline &shown = timeline()->timeline();
    if (lines.isEmpty())
        return; // the timeline is hidden
    QVERIFY(shown.eventCount() <= kept.size());
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(kept);
    const MacroPairs pairs = MacroPairs::of(kept);
    const qint64 unseen = MacroRecord::eventFields(kept.first().toMap()).delayMs; // it has no row
    for (int row = 0; row < lines.size(); ++row) {
        const int index = eventsOfRows.at(row);
        const int event = shown.eventOfRow(row);
        QCOMPARE(shown.timesMs.at(event), total(kept.first(index + 1)) - unseen);
        const bool isUnpaired = pairs.unpaired.contains(index) && !delayMsOfLine(lines.at(row));
        QCOMPARE(shown.unpairedRows().contains(row), isUnpaired);
        QCOMPARE(!mController->tableViewRemarkForTableColumnRow(events(), {}, row).isEmpty(), isUnpaired);
    }
    QCOMPARE(timeline()->selectedRow(), events()->selectedRow());
}

QList<int> MacrosEditingTest::editAtRandom(QRandomGenerator &random)
{
    const QVariantList before = stored();
    const MacroPairs pairs = MacroPairs::of(before);
    QList<int> indexes;
    for (int index = 0; index < before.size(); ++index) {
        if (random.bounded(6) == 0)
            indexes += index;
    }
    indexes = pairs.withPartners(indexes);
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(before);
    QList<int> rows;
    for (int row = 0; row < eventsOfRows.size(); ++row) {
        if (indexes.contains(eventsOfRows.at(row)))
            rows += row;
    }
    events()->selectRows(rows);
    const int number = random.bounded(200);
    const auto command = [this](int tag) { choose("mSettingsMacroDetails", tag); };
    switch (random.bounded(9)) {
    case 0: command(MacroCommands::deleteEvent); break;
    case 1: // within the macro, to another place
        if (rows.isEmpty())
            break;
        command(MacroCommands::cutEvents);
        events()->selectRow(random.bounded(int(mController->macroDetailsArray().size()) + 1));
        command(MacroCommands::pasteEvents);
        break;
    case 2: // from another macro
        QGuiApplication::clipboard()->setMimeData(
            EventsClip::toMimeData(MacroEdits::tap(freeKey(random, before), number, 5)));
        command(MacroCommands::pasteEvents);
        break;
    case 3: command(random.bounded(2) == 0 ? MacroCommands::moveUp : MacroCommands::moveDown); break;
    case 4: { // the place of the mouse, as the table reports it
        const int place = random.bounded(int(eventsOfRows.size()) + 1);
        mController->tableViewMoveSelectedRows(events(), mController->tableViewPlaceOfDrop(events(), place));
        break;
    }
    case 5:
        if (!rows.isEmpty())
            changePauses(random.bounded(2) == 0 ? MacroCommands::setPause : MacroCommands::scalePauses,
                         QString::number(number));
        break;
    case 6: { // the edge of a bar
        if (eventsOfRows.isEmpty())
            break;
        events()->selectRow(random.bounded(int(eventsOfRows.size())));
        const int row =
            timeline()->timeline().rows.at(timeline()->timeline().eventOfRow(events()->selectedRow())).delay;
        if (row >= 0)
            Q_EMIT timeline()->pauseChosen(row, number);
        break;
    }
    default: {
        command(MacroCommands::insertEvents);
        auto *sheet = outlet<MacroInsertSheet>(u"mInsertWindow"_s);
        const int kind = random.bounded(5);
        outlet<PopUpButton>(u"mInsertKind"_s)->itemAtIndex(kind)->trigger();
        if (kind == int(MacroInsertion::Kind::click))
            outlet<PopUpButton>(u"mInsertKind"_s)->itemAtIndex(int(MacroInsertion::Kind::tap))->trigger();
        sheet->chooseKey(freeKey(random, before).usage);
        outlet<RadioGroup>(u"mInsertPlace"_s)->selectRow(random.bounded(2));
        outlet<QPushButton>(u"mInsertOK"_s)->click();
        break;
    }
    }
    return indexes;
}

/// Edits of whole pairs, insertions of new keys and changes of pauses. Each press keeps its release, and no event that
/// the edit is not about gets another place among the others.
void MacrosEditingTest::anyEditsKeepPairsAndViews()
{
    QRandomGenerator random(20'261'122);
    mDelegate->storesRequests = true;
    for (int round = 0; round < 6; ++round) {
        fillEvents(taps(random.bounded(8)));
        for (int step = 0; step < 40; ++step) {
            const QVariantList beforeAll = stored();
            const QList<Identity> before = identities(beforeAll);
            const QList<int> indexes = editAtRandom(random);
            const QByteArray place = QByteArray::number(round) + ", " + QByteArray::number(step);
            QVERIFY2(!QTest::currentTestFailed(), place.constData());
            const QVariantList events = stored();
            const QList<Identity> after = identities(events);
            const QList<Identity> others = identities(MacroEdits::removing(beforeAll, indexes).value());
            QList<Identity> othersAfter = after;
            othersAfter.removeIf([&others](const Identity &each) { return !others.contains(each); });
            QVERIFY2(othersAfter == others, place.constData());
            const MacroPairs pairs = MacroPairs::of(events);
            for (int index = 0; index < events.size(); ++index) {
                const MacroRecord::Event event = MacroRecord::eventFields(events.at(index).toMap());
                if (event.page == 0)
                    continue;
                const bool hasBoth = after.contains(Identity(event.page, event.argument, 1 - event.command));
                const int partner = pairs.partners.at(index);
                QVERIFY2((partner != MacroPairs::none) == hasBoth, place.constData());
                QVERIFY2(!hasBoth || MacroRecord::eventFields(events.at(partner).toMap()).argument == event.argument,
                         place.constData());
                // A press or release alone was so before, or is new.
                const Identity identity(event.page, event.argument, event.command);
                const Identity counterpart(event.page, event.argument, 1 - event.command);
                QVERIFY2(hasBoth || !before.contains(identity) || !before.contains(counterpart), place.constData());
            }
            compareViews();
            QVERIFY2(!QTest::currentTestFailed(), place.constData());
        }
        list()->deselectAll();
    }
}

void MacrosEditingTest::readsThePresentEventsFirst()
{
    fillEvents(taps(2));
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the lines are now newer than the records
    mDelegate->macros[0] =
        MacroRecord::withEvents(mDelegate->macros.at(0).toMap(), MacroRecord::settingAllDelays(stored(), 0));
    events()->selectRows({0, 2});
    mDelegate->calls.clear();
    press(Qt::Key_Delete);
    QCOMPARE(mDelegate->calls.value(0), u"reload"_s);
    QCOMPARE(delays(stored()), (QList<int>{0, 0}));
}

void MacrosEditingTest::usesNoOldEvents()
{
    fillEvents(taps(2));
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the lines are now newer than the records
    events()->selectRows({0, 2});
    QGuiApplication::clipboard()->setText(u"before"_s);
    mDelegate->answers = false;
    press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    press(Qt::Key_Delete);
    QCOMPARE(mDelegate->calls.count(u"reload"_s), 2);
    QCOMPARE(replacements(), QStringList());
}

void MacrosEditingTest::editsNothingDuringARecording()
{
    fillEvents(taps(2));
    events()->selectRows({0, 2});
    press(Qt::Key_C, Qt::ControlModifier);
    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    mDelegate->calls.clear();
    for (const auto tag :
         {MacroCommands::cutEvents, MacroCommands::pasteEvents, MacroCommands::moveDown, MacroCommands::setPause})
        mController->editEvents(tag);
    QCOMPARE(mDelegate->calls, QStringList());
    QVERIFY(!outlet<Sheet>(u"mPauseWindow"_s) || !outlet<Sheet>(u"mPauseWindow"_s)->isUp());
}

QTEST_MAIN(MacrosEditingTest)
#include "macroseditingtest.moc"
