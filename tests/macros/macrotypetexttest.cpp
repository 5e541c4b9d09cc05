// SPDX-License-Identifier: MIT
// "Type Text…": the sheet, and the events that it adds to the selected macro.
#include "macros/macrotypetext.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace MacrosTesting;

namespace {

/// A tap of H: two events, so rows 0 and 2 are events and row 1 is a delay.
QVariantList tapOfH()
{
    return {MacroRecord::eventRecord({.command = MacroRecord::keyDown, .delayMs = 0, .argument = 11}),
            MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = 80, .argument = 11})};
}

/// "+4" is a press, "-4" a release, with the pause before it in brackets unless it is 0.
QString written(const QVariantList &events)
{
    QStringList words;
    for (const QVariant &each : events) {
        const MacroRecord::Event event = MacroRecord::eventFields(each.toMap());
        const QString pause = event.delayMs == 0 ? QString() : u"(%1)"_s.arg(event.delayMs);
        words += pause + (event.command == MacroRecord::keyDown ? u'+' : u'-') + QString::number(event.argument);
    }
    return words.join(u' ');
}

} // namespace

class MacroTypeTextTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void textBecomesEventsAtTheEnd();
    void textGoesBeforeTheSelectedEvent_data();
    void textGoesBeforeTheSelectedEvent();
    void choosesTheEndDespiteASelection();
    void emptyMacroGetsItsFirstEvents();
    void pauseSeparatesTheKeys();
    void insertsOnlyWithAPause();
    void namesWhatTheLayoutCannotType();
    void countsTheCharactersThatItDoesNotName();
    void readsTheCharactersAsWritten();
    void saysWhichModifiersAreHeldAtThePlace();
    void staysAwayIfTheMacroIsGone();
    void followsTheLayout();
    void refusesMoreEventsThanAMacroCanHave();
    void refusesMoreEventsThanAllMacrosCanHave();
    void cancelChangesNothing();
    void keepsTheTextThatWasNotStored();
    void readsTheEventsBeforeItAddsToThem();
    void closesWhenTheEventsChange();
    void keyboardReachesEveryControl();

private:
    /// Hands over one macro with `macroEvents`, selects it and a row of its events.
    void show(const QVariantList &macroEvents, int row = -1);
    /// Opens the sheet from the gear menu and writes `text`, in the American layout.
    void write(const QString &text);
    [[nodiscard]] MacroTypeText *sheet() const { return outlet<MacroTypeText>(u"mTypeTextWindow"_s); }
    [[nodiscard]] QString outcome() const { return outlet<QLabel>(u"mTypeTextOutcome"_s)->text(); }
    [[nodiscard]] QPushButton *insert() const { return outlet<QPushButton>(u"mTypeTextInsert"_s); }
    [[nodiscard]] QPlainTextEdit *field() const { return outlet<QPlainTextEdit>(u"mTypeTextField"_s); }
    [[nodiscard]] QString stored() const { return written(MacroRecord::events(mDelegate->macros.first().toMap())); }
};

void MacroTypeTextTest::show(const QVariantList &macroEvents, int row)
{
    QVariantMap macro = numberedMacros({7}).first().toMap();
    mDelegate->macros = {MacroRecord::withEvents(macro, macroEvents)};
    mDelegate->lines.clear();
    for (const QString &line : eventParser::getMessagesArray(macroEvents))
        mDelegate->lines += line;
    mDelegate->refresh();
    list()->selectRow(0);
    events()->selectRow(row);
    mDelegate->calls.clear();
}

void MacroTypeTextTest::write(const QString &text)
{
    choose("mSettingsMacroDetails", MacroCommands::typeText);
    QVERIFY(sheet() && sheet()->isVisible());
    sheet()->showKeymap(Keymap::fromNames("us"));
    field()->setPlainText(text);
}

void MacroTypeTextTest::textBecomesEventsAtTheEnd()
{
    show(tapOfH());
    write(u"ab"_s);
    QCOMPARE(outcome(), u"4 events"_s);
    QVERIFY(!outlet(u"mTypeTextPlace"_s)->isVisible());
    insert()->click();
    QCOMPARE(mDelegate->calls.first(), u"replace 0: 2 by 6"_s);
    QCOMPARE(stored(), u"+11 (80)-11 (20)+4 -4 (20)+5 -5"_s);
    QVERIFY(!sheet()->isVisible());
    QCOMPARE(events()->selectedRow(), 4);
    QVERIFY(events()->hasFocus());
    choose("mSettingsMacroDetails", MacroCommands::typeText);
    QCOMPARE(field()->toPlainText(), QString());
    QVERIFY(!insert()->isEnabled());
}

void MacroTypeTextTest::textGoesBeforeTheSelectedEvent_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("events");
    QTest::addColumn<int>("selected");
    QTest::newRow("first event") << 0 << u"+4 -4 (20)+11 (80)-11"_s << 0;
    QTest::newRow("second event") << 2 << u"+11 (20)+4 -4 (80)-11"_s << 2;
    QTest::newRow("delay of the second event") << 1 << u"+11 (20)+4 -4 (80)-11"_s << 2;
}

void MacroTypeTextTest::textGoesBeforeTheSelectedEvent()
{
    QFETCH(int, row);
    show(tapOfH(), row);
    write(u"a"_s);
    QVERIFY(outlet(u"mTypeTextPlace"_s)->isVisible());
    insert()->click();
    QTEST(stored(), "events");
    QTEST(events()->selectedRow(), "selected");
}

void MacroTypeTextTest::choosesTheEndDespiteASelection()
{
    show(tapOfH(), 0);
    write(u"a"_s);
    outlet(u"mTypeTextPlace"_s)->findChildren<QRadioButton *>().at(1)->click();
    insert()->click();
    QCOMPARE(stored(), u"+11 (80)-11 (20)+4 -4"_s);
}

void MacroTypeTextTest::emptyMacroGetsItsFirstEvents()
{
    show({});
    write(u"A\na"_s);
    insert()->click();
    QCOMPARE(stored(), u"+225 +4 -4 -225 (20)+40 -40 (20)+4 -4"_s);
    QCOMPARE(events()->selectedRow(), 0);
}

void MacroTypeTextTest::pauseSeparatesTheKeys()
{
    show(tapOfH());
    write(u"ab"_s);
    auto *pause = outlet<QLineEdit>(u"mTypeTextPause"_s);
    QCOMPARE(pause->text(), u"20"_s);
    pause->selectAll();
    QTest::keyClicks(pause, u"135"_s);
    insert()->click();
    QCOMPARE(stored(), u"+11 (80)-11 (135)+4 -4 (135)+5 -5"_s);
}

void MacroTypeTextTest::insertsOnlyWithAPause()
{
    show(tapOfH());
    write(u"ab"_s);
    auto *pause = outlet<QLineEdit>(u"mTypeTextPause"_s);
    pause->setFocus();
    pause->selectAll();
    QTest::keyClick(pause, Qt::Key_Delete);
    QCOMPARE(pause->text(), QString());
    QVERIFY(!insert()->isEnabled());
    field()->setPlainText(u"abc"_s);
    QVERIFY(!insert()->isEnabled());
    QTest::keyClicks(pause, u"0"_s);
    QVERIFY(insert()->isEnabled());
    insert()->click();
    QCOMPARE(stored(), u"+11 (80)-11 +4 -4 +5 -5 +6 -6"_s);
}

void MacroTypeTextTest::namesWhatTheLayoutCannotType()
{
    show(tapOfH());
    write(u"a€b\x1bé"_s);
    QCOMPARE(outcome(),
             u"This layout cannot type € (U+20AC) at position 2, U+001B at position 4, é (U+00E9) at position 5."_s);
    QCOMPARE(field()->accessibleDescription(), outcome());
    QVERIFY(!insert()->isEnabled());
    field()->setPlainText(u"a"_s);
    QVERIFY(insert()->isEnabled());
    QCOMPARE(mDelegate->calls, QStringList());
}

void MacroTypeTextTest::countsTheCharactersThatItDoesNotName()
{
    show(tapOfH());
    write(QString(9, u'é'));
    QVERIFY2(outcome().contains(u"position 6"_s) && !outcome().contains(u"position 7"_s), qPrintable(outcome()));
    QVERIFY2(outcome().contains(u"3 more"_s), qPrintable(outcome()));
}

void MacroTypeTextTest::readsTheCharactersAsWritten()
{
    show({});
    write(u"a\u00a0b"_s);
    QCOMPARE(outcome(), u"This layout cannot type U+00A0 at position 2."_s);
    field()->setPlainText(u"a\u2028b\nc"_s);
    insert()->click();
    QCOMPARE(stored(), u"+4 -4 (20)+40 -40 (20)+5 -5 (20)+40 -40 (20)+6 -6"_s);
}

void MacroTypeTextTest::saysWhichModifiersAreHeldAtThePlace()
{
    const QVariantList control{MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 224}),
                               MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 11}),
                               MacroRecord::eventRecord({.command = MacroRecord::keyUp, .argument = 11}),
                               MacroRecord::eventRecord({.command = MacroRecord::keyUp, .argument = 224})};
    const QString name = eventParser::nameOfKeyOrButton(control.first().toMap());
    QVERIFY(!name.isEmpty());
    show(control, 4);
    write(u"a"_s);
    QCOMPARE(outcome(), u"2 events\nHeld at this place: %1. Other characters may arrive."_s.arg(name));
    QCOMPARE(field()->accessibleDescription(), outcome());
    outlet(u"mTypeTextPlace"_s)->findChildren<QRadioButton *>().at(1)->click();
    QCOMPARE(outcome(), u"2 events"_s);
    outlet(u"mTypeTextPlace"_s)->findChildren<QRadioButton *>().at(0)->click();
    insert()->click();
    QCOMPARE(stored(), u"+224 +11 (20)+4 -4 -11 -224"_s);
    show(control, 0);
    write(u"a"_s);
    QCOMPARE(outcome(), u"2 events"_s);
}

void MacroTypeTextTest::staysAwayIfTheMacroIsGone()
{
    show(tapOfH());
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the tab reads the records again
    mDelegate->macros.clear();
    choose("mSettingsMacroDetails", MacroCommands::typeText);
    QVERIFY(!sheet() || !sheet()->isVisible());
}

void MacroTypeTextTest::followsTheLayout()
{
    show(tapOfH());
    write(u"ä"_s);
    auto *layout = outlet<QLabel>(u"mTypeTextLayout"_s);
    QVERIFY2(layout->text().contains(u"English (US)"_s), qPrintable(layout->text()));
    QVERIFY(!insert()->isEnabled());
    sheet()->showKeymap(Keymap::fromNames("de"));
    QVERIFY2(layout->text().contains(u"German"_s), qPrintable(layout->text()));
    QCOMPARE(outcome(), u"2 events"_s);
    QVERIFY(insert()->isEnabled());
}

void MacroTypeTextTest::refusesMoreEventsThanAMacroCanHave()
{
    show(tapOfH());
    write(QString(MacroRecord::maximumEvents / 2 - 1, u'a'));
    QCOMPARE(outcome(), u"%1 events"_s.arg(MacroRecord::maximumEvents - 2));
    QVERIFY(insert()->isEnabled());
    field()->setPlainText(QString(MacroRecord::maximumEvents / 2, u'a'));
    QCOMPARE(outcome(), u"%1 events, but this macro has room for only %2."_s.arg(MacroRecord::maximumEvents)
                            .arg(MacroRecord::maximumEvents - 2));
    QVERIFY(!insert()->isEnabled());
}

void MacroTypeTextTest::refusesMoreEventsThanAllMacrosCanHave()
{
    show(tapOfH());
    const QVariantList full(MacroRecord::maximumEvents, tapOfH().first());
    for (int other = 0; other < 4; ++other)
        mDelegate->macros += MacroRecord::withEvents(numberedMacros({20 + other}).first().toMap(), full);
    mDelegate->macros +=
        MacroRecord::withEvents(numberedMacros({30}).first().toMap(), full.first(MacroRecord::maximumEvents - 6));
    mDelegate->refresh();
    list()->selectRow(0);
    write(u"ab"_s);
    QVERIFY(insert()->isEnabled());
    field()->setPlainText(u"abc"_s);
    QCOMPARE(outcome(), u"6 events, but this macro has room for only 4."_s);
    QVERIFY(!insert()->isEnabled());
}

void MacroTypeTextTest::cancelChangesNothing()
{
    show(tapOfH());
    write(u"a"_s);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    QVERIFY(!sheet()->isVisible());
    QCOMPARE(mDelegate->calls, QStringList());
}

void MacroTypeTextTest::keepsTheTextThatWasNotStored()
{
    show(tapOfH());
    mDelegate->storesEvents = false;
    write(u"a long text"_s);
    insert()->click();
    QVERIFY(!sheet()->isVisible());
    QCOMPARE(stored(), u"+11 (80)-11"_s);
    choose("mSettingsMacroDetails", MacroCommands::typeText);
    QCOMPARE(field()->toPlainText(), u"a long text"_s);
}

void MacroTypeTextTest::readsTheEventsBeforeItAddsToThem()
{
    show(tapOfH());
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the record of the tab is now older than the lines
    QVariantList changed = tapOfH();
    changed[1] = MacroRecord::eventRecord({.command = MacroRecord::keyUp, .argument = 11});
    mDelegate->macros = {MacroRecord::withEvents(mDelegate->macros.first().toMap(), changed)};
    write(u"a"_s);
    insert()->click();
    QCOMPARE(stored(), u"+11 -11 (20)+4 -4"_s);
}

void MacroTypeTextTest::closesWhenTheEventsChange()
{
    show(tapOfH());
    write(u"a"_s);
    mDelegate->macros = {MacroRecord::withEvents(mDelegate->macros.first().toMap(), {})};
    mDelegate->lines.clear();
    mDelegate->refresh();
    QVERIFY(!sheet()->isVisible());
}

void MacroTypeTextTest::keyboardReachesEveryControl()
{
    show(tapOfH(), 0);
    write(u"a"_s);
    QVERIFY(QTest::qWaitForWindowActive(sheet()));
    QTRY_VERIFY(field()->hasFocus());
    QStringList visited;
    for (int count = 0; count < 5; ++count) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited += QApplication::focusWidget()->objectName();
    }
    for (const QString &name : {u"mTypeTextPause"_s, u"mTypeTextCancel"_s, u"mTypeTextInsert"_s})
        QVERIFY2(visited.contains(name), qPrintable(visited.join(u' ')));
    QCOMPARE(field()->toPlainText(), u"a"_s); // Tab was not written
    insert()->setFocus();
    QTest::keyClick(insert(), Qt::Key_Space);
    QCOMPARE(mDelegate->calls.first(), u"replace 0: 2 by 4"_s);
}

QTEST_MAIN(MacroTypeTextTest)
#include "macrotypetexttest.moc"
