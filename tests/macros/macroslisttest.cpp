// SPDX-License-Identifier: MIT
// The list of macros: adding, renaming and deleting, and its menus.
#include "base/text.h"
#include "macros/nstableviewmacrosubclass.h"
#include "platform/pulldownbutton.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"
#include "tests/support/uniquenamecases.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

using namespace MacrosTesting;

class MacrosListTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreMadeUnique_data() { UniqueNameCases::addRows(); }
    void namesAreMadeUnique();
    void addSendsANewRecord();
    void addingAgainNumbersTheName();
    void addOpensTheNameAndRequestsNoLines();
    void typingANameRenames();
    void renamesByTheRule_data();
    void renamesByTheRule();
    void renamesTheSelectedMacro();
    void emptyNameIsIgnored();
    void renamingFromTheMenuDisablesTheEventButtons();
    void deleteNeedsAConfirmation();
    void deleteIsOffWithoutASelectedMacro();
    void alertClosesWithItsMacro_data();
    void alertClosesWithItsMacro();
    void selectionFollowsTheMacro_data();
    void selectionFollowsTheMacro();
    void alertDeletesItsMacroInAnyRow();
    void typedNameReachesNoOtherMacro();
    void addedMacroIsNamedInAnyRow();
    void ambiguousAddedNameIsNotOpened();
    void everyDialogEndsWithoutAKeyboard_data();
    void everyDialogEndsWithoutAKeyboard();
    void alertStaysWhileItsMacroExists();
    void deletingSelectsTheNextRow_data();
    void deletingSelectsTheNextRow();
    void deletingSelectsTheNextMacroFound_data();
    void deletingSelectsTheNextMacroFound();
    void deletingTheOnlyMacroHidesTheEventPart();
    void listMenusEnableCommands();
    void addedMacroIsSelectedAndEditedBeforeItIsSent();
    void refusedMacroIsNotListed_data();
    void refusedMacroIsNotListed();
    void renameLeavesTheMacroTwiceUntilTheReload_data();
    void renameLeavesTheMacroTwiceUntilTheReload();
    void clickingAnotherRowEndsTheRename();
    void onlyTheMacroListHasNames();
    void cancellingTheDeletionKeepsTheMacro();
    void deleteKeyAsksToDelete();
    void keysRenameTheSelectedMacro_data();
    void keysRenameTheSelectedMacro();
    void gearMenuAddsAndDeletes();
    void refusedDeletionKeepsListAndSelection();
    void renamingNeedsASelectedMacro();
    void addingEndsARename();
    void duplicateSendsACopyOfTheWholeMacro();
    void duplicateHasTheLatestEvents();
    void refusedDuplicateKeepsTheSelection();
    void searchNarrowsTheList_data();
    void searchNarrowsTheList();
    void commandsOfANarrowedListNameTheSelectedMacro();
    void addedMacroIsShownDuringASearch();
    void returnStepsThroughTheMacrosFound();
    void searchFieldIsReachedByKeys();
    void usesOfTheSelectedMacroAreLinks();
    void furtherUsesAreInAMenu();
    void usesFollowTheProfiles();
    void alertSaysWhereTheMacroIsUsed();

private:
    /// Hands over profiles whose keys play the macro at `macroRow`; the second profile is active.
    void useMacro(int macroRow);
    [[nodiscard]] QStringList shownMacros() const;
    [[nodiscard]] QList<QToolButton *> links() const;
    [[nodiscard]] QStringList linkNames() const;
};

void MacrosListTest::namesAreMadeUnique()
{
    QFETCH(QVariantList, names);
    QFETCH(QString, wanted);
    const QVariantList macros = UniqueNameCases::records(names, "MacroName"_L1);
    QTEST(mController->checkForDuplicateMacroNameUsingDefaultName(macros, wanted), "result");
    QCOMPARE(mController->checkForDuplicateMacroNameUsingDefaultName({}, wanted), wanted);
}

void MacrosListTest::addSendsANewRecord()
{
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"add"_s});
    QCOMPARE(mDelegate->record, (QVariantMap{{u"MacroName"_s, u"Untitled Macro"_s},
                                             {u"delay"_s, 20},
                                             {u"ResponseMsgPortName"_s, u"KeyboardConfiguratorReplyPort"_s},
                                             {u"sequence"_s, QVariantMap()}}));
}

void MacrosListTest::addingAgainNumbersTheName()
{
    fill({u"Untitled Macro"_s});
    mController->clickAddMacro(nullptr);
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"Untitled Macro(2)"_s));
}

void MacrosListTest::addOpensTheNameAndRequestsNoLines()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"add"_s});
    QCOMPARE(list()->selectedRow(), 1);
    QCOMPARE(list()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"Untitled Macro"_s);
    QVERIFY(mController->macroDetailsArray().isEmpty());
    QTest::keyClicks(editor(), u"Heal"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->calls, (QStringList{u"add"_s, u"rename 1 Heal"_s}));
    QTRY_COMPARE(list()->editedRow(), -1);
    QVERIFY(outlet(u"mRecordMacroDetails"_s)->isEnabled());
}

void MacrosListTest::typingANameRenames()
{
    fill({u"A"_s, u"B"_s}, 1);
    list()->editColumnRow(0, 1, true);
    QTest::keyClicks(editor(), u"Heal"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->calls, QStringList{u"rename 1 Heal"_s});
    QCOMPARE(list()->model()->index(1, 0).data().toString(), u"Heal"_s);
}

void MacrosListTest::renamesByTheRule_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("call");
    QTest::newRow("to its own name") << 0 << u"A"_s << u"rename 0 A"_s;
    QTest::newRow("to another's name") << 1 << u"A"_s << u"rename 1 A(2)"_s;
    QTest::newRow("to a free name") << 1 << u"X"_s << u"rename 1 X"_s;
}

void MacrosListTest::renamesByTheRule()
{
    QFETCH(int, row);
    QFETCH(QString, typed);
    QFETCH(QString, call);
    fill({u"A"_s, u"B"_s}, row);
    mController->tableViewSetObjectValueForTableColumnRow(list(), typed, u"macroName"_s, row);
    QCOMPARE(mDelegate->calls, QStringList{call});
}

void MacrosListTest::renamesTheSelectedMacro()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 2);
    // The request goes to the selected row, regardless of the edited one. Deliberate.
    mController->tableViewSetObjectValueForTableColumnRow(list(), u"X"_s, u"macroName"_s, 0);
    QCOMPARE(mDelegate->calls.first(), u"rename 2 X"_s);
}

void MacrosListTest::emptyNameIsIgnored()
{
    fill({u"A"_s, u"B"_s}, 0);
    mController->tableViewSetObjectValueForTableColumnRow(list(), QString(), u"macroName"_s, 0);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(mController->macrosSettingsArray(), (QVariantList{macroNamed(u"A"_s), macroNamed(u"B"_s)}));
}

void MacrosListTest::renamingFromTheMenuDisablesTheEventButtons()
{
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(0);
    choose("mSettingsMacro", MacroCommands::rename);
    QCOMPARE(list()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"B"_s);
    const auto buttons = {"mAddMacroDetails", "mDeleteMacroDetails", "mRecordMacroDetails", "mSettingsMacroDetails"};
    for (const char *name : buttons)
        QVERIFY2(!outlet(QLatin1StringView(name))->isEnabled(), name);
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_COMPARE(list()->editedRow(), -1);
    for (const char *name : buttons)
        QVERIFY2(outlet(QLatin1StringView(name))->isEnabled(), name);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosListTest::deleteIsOffWithoutASelectedMacro()
{
    auto *button = outlet<QPushButton>(u"mDeleteMacro"_s);
    fill({}, -1);
    mController->setControlsState(true);
    QVERIFY(!button->isEnabled());
    QVERIFY(outlet(u"mAddMacro"_s)->isEnabled());
    fill({u"A"_s, u"B"_s}, -1);
    mController->setControlsState(true);
    QVERIFY(!button->isEnabled());
    mController->checkMacroRecordingStatus(u"Macros"_s); // the user has opened the tab
    QVERIFY(!button->isEnabled());
    list()->selectRow(1);
    QVERIFY(button->isEnabled());
    list()->deselectAll();
    QVERIFY(!button->isEnabled());
    list()->selectRow(0);
    mController->setControlsState(false);
    QVERIFY(!button->isEnabled());
    mController->setControlsState(true);
    QVERIFY(button->isEnabled());
}

void MacrosListTest::deleteNeedsAConfirmation()
{
    fill({u"A"_s, u"B"_s}, 1);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    auto *alert = outlet<Sheet>(u"alert"_s);
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->findChild<QLabel *>(u"alertTitle"_s)->text(), u"Delete the macro “B”?"_s);
    QVERIFY(alert->findChild<QLabel *>(u"alertDescription"_s)->text().startsWith(u"Keys that play this macro"_s));
    QCOMPARE(alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->text().remove(u'&'), u"OK"_s);
    QCOMPARE(alert->findChild<QPushButton *>(u"alertAlternativeButton"_s)->text().remove(u'&'), u"Cancel"_s);
    QCOMPARE(alert->parentWidget(), mWindow.get());
    alert->findChild<QPushButton *>(u"alertAlternativeButton"_s)->click();
    QVERIFY(mDelegate->calls.isEmpty());
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    const QList<Sheet *> alerts = mWindow->findChildren<Sheet *>(u"alert"_s);
    alerts.last()->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QCOMPARE(mDelegate->calls.first(), u"delete 1"_s);
    QTRY_VERIFY(list()->hasFocus());
}

void MacrosListTest::alertClosesWithItsMacro_data()
{
    QTest::addColumn<bool>("haveIdentity");
    QTest::addColumn<QStringList>("namesAfter");
    QTest::newRow("it is deleted") << true << QStringList{u"A"_s, u"C"_s};
    QTest::newRow("all deleted") << true << QStringList{};
    QTest::newRow("replaced by another of the name") << true << QStringList{u"A"_s, u"new"_s, u"C"_s};
    QTest::newRow("renamed") << false << QStringList{u"A"_s, u"X"_s, u"C"_s};
    QTest::newRow("without identities, the one above deleted") << false << QStringList{u"B"_s, u"C"_s};
}

void MacrosListTest::alertClosesWithItsMacro()
{
    QFETCH(bool, haveIdentity);
    QFETCH(QStringList, namesAfter);
    const auto macros = [haveIdentity](const QStringList &names) {
        QVariantList result;
        for (const QString &name : names) {
            QVariantMap macro = macroNamed(name == "new"_L1 ? u"B"_s : name);
            if (haveIdentity)
                macro[u"macroID"_s] = int(name.front().unicode());
            result.append(macro);
        }
        return result;
    };
    mDelegate->macros = macros({u"A"_s, u"B"_s, u"C"_s});
    mDelegate->refresh();
    list()->selectRow(1);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    const QPointer<Sheet> alert = outlet<Sheet>(u"alert"_s);
    QVERIFY(alert && alert->isUp());
    // Simulates another client's change.
    mDelegate->macros = macros(namesAfter);
    mDelegate->refresh();
    QTRY_VERIFY(!alert);
    QCOMPARE(mDelegate->macros, macros(namesAfter));
}

void MacrosListTest::selectionFollowsTheMacro_data()
{
    QTest::addColumn<QList<int>>("after");
    QTest::addColumn<int>("row");
    QTest::newRow("one above deleted") << QList<int>{2, 3} << 0;
    QTest::newRow("one above added") << QList<int>{4, 1, 2, 3} << 2;
    QTest::newRow("one below deleted") << QList<int>{1, 2} << 1;
    QTest::newRow("turned round") << QList<int>{3, 2, 1} << 1;
    QTest::newRow("deleted") << QList<int>{1, 3} << -1;
    QTest::newRow("deleted, being the last") << QList<int>{1} << -1;
    QTest::newRow("all deleted") << QList<int>{} << -1;
}

void MacrosListTest::selectionFollowsTheMacro()
{
    QFETCH(QList<int>, after);
    QFETCH(int, row);
    mDelegate->macros = numberedMacros({1, 2, 3});
    mDelegate->refresh();
    list()->selectRow(1);
    mDelegate->calls.clear();
    mDelegate->macros = numberedMacros(after);
    mDelegate->refresh();
    QCOMPARE(list()->selectedRow(), row);
    QCOMPARE(outlet(u"mRecordMacroDetails"_s)->isVisible(), row >= 0);
    QCOMPARE(mDelegate->calls, QStringList()); // its lines are unchanged
}

void MacrosListTest::alertDeletesItsMacroInAnyRow()
{
    mDelegate->macros = numberedMacros({1, 2, 3});
    mDelegate->refresh();
    list()->selectRow(1);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    mDelegate->macros = numberedMacros({2, 3});
    mDelegate->refresh();
    auto *alert = outlet<Sheet>(u"alert"_s);
    QVERIFY(alert && alert->isUp());
    mDelegate->calls.clear();
    alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QCOMPARE(mDelegate->calls.first(), u"delete 0"_s);
}

void MacrosListTest::typedNameReachesNoOtherMacro()
{
    mDelegate->macros = numberedMacros({1, 2, 3});
    mDelegate->refresh();
    list()->selectRow(1);
    choose("mSettingsMacro", MacroCommands::rename);
    QTest::keyClicks(editor(), u"Half a na"_s);
    mDelegate->calls.clear();
    mDelegate->macros = numberedMacros({2, 3});
    mDelegate->refresh();
    QCOMPARE(list()->editedRow(), -1);
    QCOMPARE(mDelegate->calls, QStringList());
    QCOMPARE(list()->model()->index(0, 0).data().toString(), u"Macro 2"_s);
}

void MacrosListTest::addedMacroIsNamedInAnyRow()
{
    mDelegate->macros = numberedMacros({1});
    mDelegate->refresh();
    // Another client adds a macro before the list is read.
    mDelegate->addedByOthers = numberedMacros({7}).first().toMap();
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->macros.size(), 3);
    QCOMPARE(list()->selectedRow(), 1);
    QCOMPARE(list()->editedRow(), 1);
}

void MacrosListTest::ambiguousAddedNameIsNotOpened()
{
    mDelegate->macros = numberedMacros({1, 2});
    mDelegate->refresh();
    list()->selectRow(1);
    // Another client adds a macro under the same free name.
    mDelegate->addedByOthers = macroNamed(u"Untitled Macro"_s);
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"Untitled Macro"_s));
    QCOMPARE(list()->numberOfRows(), 4);
    QCOMPARE(list()->selectedRow(), 1); // as before
    QCOMPARE(list()->editedRow(), -1);
}

void MacrosListTest::everyDialogEndsWithoutAKeyboard_data()
{
    QTest::addColumn<int>("command");
    QTest::newRow("deleting") << int(MacroCommands::deleteMacro);
    QTest::newRow("importing") << int(MacroCommands::importMacro);
    QTest::newRow("exporting") << int(MacroCommands::exportMacro);
}

void MacrosListTest::everyDialogEndsWithoutAKeyboard()
{
    QFETCH(int, command);
    fill({u"A"_s}, 0);
    choose("mSettingsMacro", command);
    const auto areUp = [this] {
        return std::ranges::any_of(mWindow->findChildren<QDialog *>(), [](QDialog *each) { return each->isVisible(); });
    };
    QVERIFY(areUp());
    mDelegate->calls.clear();
    mController->setControlsState(false);
    QVERIFY(!areUp());
    QCOMPARE(mDelegate->calls, QStringList());
    for (const auto &name :
         QStringList{u"mAddMacro"_s, u"mDeleteMacro"_s, u"mSettingsMacro"_s, u"mRecordMacroDetails"_s})
        QVERIFY(!outlet(name)->isEnabled());
    // The following calls do not enable them.
    mController->setStateOfTableButtonsWithState(true);
    mController->setStateOfMacroTableWithState(true);
    mDelegate->refresh();
    QVERIFY(!outlet(u"mAddMacro"_s)->isEnabled());
    QVERIFY(!list()->isEnabled());
    QVERIFY(!events()->isEnabled());
}

void MacrosListTest::alertStaysWhileItsMacroExists()
{
    fill({u"A"_s, u"B"_s}, 1);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    QVariantMap edited = macroNamed(u"B"_s);
    edited[u"delay"_s] = 30;
    mDelegate->macros = {macroNamed(u"X"_s), edited, macroNamed(u"Y"_s)};
    mDelegate->refresh();
    auto *alert = outlet<Sheet>(u"alert"_s);
    QVERIFY(alert && alert->isUp());
    alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QCOMPARE(mDelegate->calls.first(), u"delete 1"_s);
}

void MacrosListTest::deletingSelectsTheNextRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selected");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("middle") << 1 << 1;
    QTest::newRow("last") << 2 << 1;
}

void MacrosListTest::deletingSelectsTheNextRow()
{
    QFETCH(int, row);
    QFETCH(int, selected);
    fill({u"A"_s, u"B"_s, u"C"_s}, row);
    events()->setFocus();
    mController->deleteMacro();
    QCOMPARE(list()->selectedRow(), selected);
    QVERIFY(list()->hasFocus());
    QCOMPARE(mDelegate->calls, (QStringList{u"delete %1"_s.arg(row), u"details %1"_s.arg(selected)}));
}

void MacrosListTest::deletingSelectsTheNextMacroFound_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("next one further down")
        << QStringList{u"xa"_s, u"B"_s, u"C"_s, u"xd"_s} << 0 << 2 << QStringList{u"xd"_s};
    QTest::newRow("next one follows") << QStringList{u"xa"_s, u"xb"_s, u"C"_s} << 0 << 0 << QStringList{u"xb"_s};
    QTest::newRow("only one above") << QStringList{u"xa"_s, u"B"_s, u"xc"_s, u"D"_s} << 2 << 0 << QStringList{u"xa"_s};
    QTest::newRow("nearest of several above")
        << QStringList{u"xa"_s, u"xb"_s, u"C"_s, u"xd"_s} << 3 << 1 << QStringList{u"xa"_s, u"xb"_s};
    QTest::newRow("below before above") << QStringList{u"xa"_s, u"xb"_s, u"C"_s, u"D"_s, u"xe"_s} << 1 << 3
                                        << QStringList{u"xa"_s, u"xe"_s};
    QTest::newRow("none left") << QStringList{u"A"_s, u"xb"_s, u"C"_s} << 1 << -1 << QStringList();
}

void MacrosListTest::deletingSelectsTheNextMacroFound()
{
    QFETCH(QStringList, names);
    QFETCH(int, row);
    QFETCH(int, selected);
    fill(names, row);
    outlet<QLineEdit>(u"mMacroSearch"_s)->setText(u"x"_s);
    mController->deleteMacro();
    QCOMPARE(list()->selectedRow(), selected);
    QTEST(shownMacros(), "shown");
    QCOMPARE(outlet(u"mRecordMacroDetails"_s)->isVisible(), selected >= 0);
    QVERIFY(list()->hasFocus());
}

void MacrosListTest::deletingTheOnlyMacroHidesTheEventPart()
{
    fill({u"A"_s}, 0);
    mController->deleteMacro();
    QCOMPARE(list()->selectedRow(), -1);
    for (const QString &name : eventPart)
        QVERIFY2(outlet(name)->isHidden(), qPrintable(name));
}

void MacrosListTest::listMenusEnableCommands()
{
    fill({u"A"_s});
    auto *button = outlet<PulldownButton>(u"mSettingsMacro"_s);
    auto *table = outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s);
    for (const int row : {-1, 0}) {
        list()->selectRow(row);
        const QList<int> expected = row < 0 ? QList<int>{2, 3} : QList<int>{1, 2, 3, 4, 5, 6};
        button->validateItems();
        QCOMPARE(enabledTags(button->menu()->actions()), expected);
        const std::unique_ptr<QMenu> menu(table->makeContextMenu());
        QCOMPARE(menu->actions().size(), 6);
        QCOMPARE(enabledTags(menu->actions()), expected);
    }
}

void MacrosListTest::addedMacroIsSelectedAndEditedBeforeItIsSent()
{
    fill({u"A"_s}, 0);
    QList<int> state;
    mDelegate->duringAdd = [&] {
        state = {int(mController->macrosSettingsArray().size()), list()->model()->rowCount(), list()->selectedRow(),
                 list()->editedRow()};
    };
    mController->clickAddMacro(nullptr);
    QCOMPARE(state, (QList<int>{2, 2, 1, 1}));
}

void MacrosListTest::refusedMacroIsNotListed_data()
{
    QTest::addColumn<bool>("answers");
    QTest::addColumn<int>("selected");
    QTest::newRow("refused, one selected") << true << 0;
    QTest::newRow("refused, none selected") << true << -1;
    QTest::newRow("not answered for, one selected") << false << 0;
    QTest::newRow("not answered for, none selected") << false << -1;
}

void MacrosListTest::refusedMacroIsNotListed()
{
    QFETCH(bool, answers);
    QFETCH(int, selected);
    fill({u"A"_s, u"B"_s}, selected);
    mDelegate->refusesToAdd = true;
    mDelegate->answers = answers;
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->calls.first(), u"add"_s);
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
    QCOMPARE(list()->numberOfRows(), 2);
    QCOMPARE(list()->selectedRow(), selected);
    QCOMPARE(list()->editedRow(), -1);
    QCOMPARE(mController->macroDetailsArray().size(),
             selected == 0 ? 5 : 0); // those that arrived last, because none arrive now
    QCOMPARE(outlet(u"mRecordMacroDetails"_s)->isHidden(), selected < 0);
    QVERIFY(outlet(u"mRecordMacroDetails"_s)->isEnabled());
    mDelegate->refusesToAdd = false;
    mDelegate->answers = true;
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
    QCOMPARE(list()->editedRow(), 2);
}

void MacrosListTest::renameLeavesTheMacroTwiceUntilTheReload_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("first") << 0 << QStringList{u"X"_s, u"C"_s, u"X"_s};
    QTest::newRow("middle") << 1 << QStringList{u"A"_s, u"X"_s, u"X"_s};
    QTest::newRow("last") << 2 << QStringList{u"A"_s, u"B"_s, u"X"_s};
}

void MacrosListTest::renameLeavesTheMacroTwiceUntilTheReload()
{
    QFETCH(int, row);
    fill({u"A"_s, u"B"_s, u"C"_s}, row);
    mDelegate->answers = false;
    mController->tableViewSetObjectValueForTableColumnRow(list(), u"X"_s, u"macroName"_s, row);
    QStringList names;
    for (const QVariant &macro : mController->macrosSettingsArray())
        names.append(macro.toMap().value(u"MacroName"_s).toString());
    QTEST(names, "names");
    mDelegate->answers = true;
    mDelegate->refresh();
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
}

void MacrosListTest::clickingAnotherRowEndsTheRename()
{
    fill({u"A"_s, u"B"_s}, 0);
    choose("mSettingsMacro", MacroCommands::rename);
    QTest::keyClicks(editor(), u"Heal"_s);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualRect(list()->model()->index(1, 0)).center());
    QTRY_COMPARE(mDelegate->calls.first(), u"rename 0 Heal"_s);
    QCOMPARE(list()->editedRow(), -1);
}

void MacrosListTest::onlyTheMacroListHasNames()
{
    fill({u"A"_s}, 0);
    mController->tableViewSetObjectValueForTableColumnRow(events(), u"X"_s, u"command"_s, 0);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosListTest::cancellingTheDeletionKeepsTheMacro()
{
    fill({u"A"_s}, 0);
    mController->sheetDidEndReturnCodeContextInfo(1001, KeyboardMacrosController::confirmDelete);
    QVERIFY(mDelegate->calls.isEmpty());
    mController->sheetDidEndReturnCodeContextInfo(1000, KeyboardMacrosController::confirmDelete);
    QCOMPARE(mDelegate->calls.first(), u"delete 0"_s);
}

void MacrosListTest::deleteKeyAsksToDelete()
{
    fill({u"A"_s}, 0);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Delete);
    QVERIFY(outlet<Sheet>(u"alert"_s));
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosListTest::keysRenameTheSelectedMacro_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("F2") << int(Qt::Key_F2);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter on the pad") << int(Qt::Key_Enter);
}

void MacrosListTest::keysRenameTheSelectedMacro()
{
    QFETCH(int, key);
    fill({u"A"_s, u"B"_s}, 1);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key(key));
    QCOMPARE(list()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"B"_s);
    QTest::keyClick(editor(), Qt::Key_Delete); // empties the name, and must not ask to delete the macro
    QVERIFY(!outlet<Sheet>(u"alert"_s));
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(list()->editedRow(), -1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosListTest::gearMenuAddsAndDeletes()
{
    fill({u"A"_s}, 0);
    choose("mSettingsMacro", MacroCommands::newMacro);
    QCOMPARE(mDelegate->calls, QStringList{u"add"_s});
    QCOMPARE(list()->selectedRow(), 1);
    choose("mSettingsMacro", MacroCommands::deleteMacro);
    auto *alert = outlet<Sheet>(u"alert"_s);
    QVERIFY(alert && alert->isVisible());
    alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QVERIFY(mDelegate->calls.contains(u"delete 1"_s));
    QCOMPARE(mDelegate->macros, QVariantList{macroNamed(u"A"_s)});
}

void MacrosListTest::refusedDeletionKeepsListAndSelection()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 1);
    mDelegate->answers = false;
    mController->deleteMacro();
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
    QCOMPARE(list()->numberOfRows(), 3);
    QCOMPARE(list()->selectedRow(), 1);
}

void MacrosListTest::renamingNeedsASelectedMacro()
{
    fill({u"A"_s});
    choose("mSettingsMacro", MacroCommands::rename);
    choose("mSettingsMacro", MacroCommands::deleteMacro);
    QCOMPARE(list()->editedRow(), -1);
    QVERIFY(!outlet<Sheet>(u"alert"_s));
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosListTest::addingEndsARename()
{
    fill({u"A"_s, u"B"_s}, 0);
    choose("mSettingsMacro", MacroCommands::rename);
    QTest::keyClicks(editor(), u"Heal"_s);
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"rename 0 Heal"_s, u"add"_s}));
    QCOMPARE(mController->macrosSettingsArray().size(), 3);
    QCOMPARE(list()->selectedRow(), 2);
    QCOMPARE(list()->editedRow(), 2);
}

void MacrosListTest::duplicateSendsACopyOfTheWholeMacro()
{
    QVariantMap macro = macroNamed(u"Heal"_s);
    macro[u"macroID"_s] = 7;
    macro[u"delay"_s] = 33;
    macro[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{QVariantMap{{u"command"_s, 1}}}}};
    macro[u"Other"_s] = u"kept"_s;
    mDelegate->macros = {macro, macroNamed(u"Heal(2)"_s)};
    mDelegate->refresh();
    list()->selectRow(0);
    mDelegate->calls.clear();
    choose("mSettingsMacro", MacroCommands::duplicateMacro);
    QVariantMap expected = macro;
    expected.remove(u"macroID"_s);
    expected[u"MacroName"_s] = u"Heal(3)"_s;
    QCOMPARE(mDelegate->record, expected);
    QCOMPARE(mDelegate->calls, (QStringList{u"add"_s, u"details 2"_s}));
    QCOMPARE(list()->selectedRow(), 2);
}

void MacrosListTest::duplicateHasTheLatestEvents()
{
    fill({u"Heal"_s}, 0);
    choose("mSettingsMacroDetails", MacroCommands::noDelay);
    // After an edit, the records are those of before it until they are read again.
    QVariantMap edited = mDelegate->macros.first().toMap();
    edited[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{QVariantMap{{u"delay"_s, 0}}}}};
    mDelegate->macros = {edited};
    choose("mSettingsMacro", MacroCommands::duplicateMacro);
    QCOMPARE(mDelegate->record.value(u"sequence"_s), edited.value(u"sequence"_s));
}

void MacrosListTest::refusedDuplicateKeepsTheSelection()
{
    fill({u"A"_s, u"B"_s}, 0);
    mDelegate->refusesToAdd = true;
    choose("mSettingsMacro", MacroCommands::duplicateMacro);
    QCOMPARE(mController->macrosSettingsArray().size(), 2);
    QCOMPARE(list()->selectedRow(), 0);
}

QStringList MacrosListTest::shownMacros() const
{
    QStringList names;
    for (int row = 0; row < list()->model()->rowCount(); ++row) {
        if (!list()->isRowHidden(row))
            names += list()->model()->index(row, 0).data().toString();
    }
    return names;
}

void MacrosListTest::searchNarrowsTheList_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("result");
    const QStringList all{u"Heal group"_s, u"Burst"_s, u"Group burst"_s};
    QTest::newRow("nothing") << u""_s << all << u""_s;
    QTest::newRow("spaces") << u"  "_s << all << u""_s;
    QTest::newRow("any letter case") << u"GROUP"_s << QStringList{all[0], all[2]} << u"Macros found: 2"_s;
    QTest::newRow("words in any order") << u"burst gr"_s << QStringList{all[2]} << u"Macros found: 1"_s;
    QTest::newRow("no macro") << u"x"_s << QStringList() << u"No macro found"_s;
}

void MacrosListTest::searchNarrowsTheList()
{
    QFETCH(QString, query);
    fill({u"Heal group"_s, u"Burst"_s, u"Group burst"_s});
    auto *field = outlet<QLineEdit>(u"mMacroSearch"_s);
    QTest::keyClicks(field, query);
    QTEST(shownMacros(), "expected");
    QTEST(field->accessibleDescription(), "result");
    QCOMPARE(mDelegate->calls, QStringList());
    QTest::keyClick(field, Qt::Key_Escape);
    QCOMPARE(shownMacros().size(), 3);
    QCOMPARE(field->text(), QString());
}

void MacrosListTest::commandsOfANarrowedListNameTheSelectedMacro()
{
    fill({u"A"_s, u"B"_s, u"Bx"_s, u"C"_s, u"Cx"_s});
    outlet<QLineEdit>(u"mMacroSearch"_s)->setText(u"x"_s);
    QCOMPARE(shownMacros(), (QStringList{u"Bx"_s, u"Cx"_s}));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualRect(list()->model()->index(4, 0)).center());
    QCOMPARE(mDelegate->calls, QStringList{u"details 4"_s});
    list()->editColumnRow(0, 4, true);
    QTest::keyClicks(editor(), u"D"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->calls.last(), u"rename 4 D"_s);
    // The renamed macro no longer fits. It stays in sight, because it is still the one that commands are for.
    QCOMPARE(shownMacros(), (QStringList{u"Bx"_s, u"D"_s}));
    mController->deleteMacro();
    QVERIFY(mDelegate->calls.contains(u"delete 4"_s));
    QCOMPARE(mDelegate->macros.size(), 4);
    QCOMPARE(mDelegate->macros.last().toMap().value(u"MacroName"_s), QVariant(u"C"_s));
    QCOMPARE(shownMacros().contains(list()->model()->index(list()->selectedRow(), 0).data().toString()), true);
}

void MacrosListTest::addedMacroIsShownDuringASearch()
{
    fill({u"A"_s, u"Bx"_s}, 1);
    outlet<QLineEdit>(u"mMacroSearch"_s)->setText(u"x"_s);
    outlet<QPushButton>(u"mAddMacro"_s)->click();
    QCOMPARE(shownMacros(), (QStringList{u"Bx"_s, u"Untitled Macro"_s}));
    QCOMPARE(list()->editedRow(), 2);
}

void MacrosListTest::returnStepsThroughTheMacrosFound()
{
    fill({u"A"_s, u"Bx"_s, u"C"_s, u"Dx"_s});
    auto *field = outlet<QLineEdit>(u"mMacroSearch"_s);
    field->setText(u"x"_s);
    for (const int row : {1, 3, 1}) {
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(list()->selectedRow(), row);
    }
    QTest::keyClick(field, Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(list()->selectedRow(), 3);
    list()->deselectAll();
    QTest::keyClick(field, Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(list()->selectedRow(), 3);
    field->setText(u"nothing like this"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(list()->selectedRow(), 3);
}

void MacrosListTest::searchFieldIsReachedByKeys()
{
    fill({u"A"_s}, 0);
    list()->setFocus();
    auto *field = outlet<QLineEdit>(u"mMacroSearch"_s);
    QTest::keyClick(list(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(field->hasFocus());
    QTest::keyClick(field, Qt::Key_Down);
    QVERIFY(list()->hasFocus());
    mController->setControlsState(false);
    QVERIFY(!field->isEnabled());
}

void MacrosListTest::useMacro(int macroRow)
{
    const auto playing = [macroRow](const QString &name, const QList<int> &codes) {
        QVariantMap keys;
        for (const int code : codes)
            keys[QString::number(code)] = QVariantMap{{u"command"_s, 10}, {u"param1"_s, macroRow}, {u"param2"_s, 1}};
        return QVariantMap{{u"ProfileName"_s, name}, {u"Keys"_s, keys}};
    };
    mController->setProfiles({playing(u"Game & Co"_s, {106}), playing(u"Default Profile"_s, {62})}, 1);
    mController->refreshTableDisplay();
}

QList<QToolButton *> MacrosListTest::links() const
{
    QList<QToolButton *> shown = outlet(u"mMacroUses"_s)->findChildren<QToolButton *>();
    shown.removeIf([](const QToolButton *link) { return !link->isVisible(); });
    return shown;
}

QStringList MacrosListTest::linkNames() const
{
    QStringList names;
    const QList<QToolButton *> shown = links();
    for (const QToolButton *link : shown)
        names += link->accessibleName();
    return names;
}

void MacrosListTest::usesOfTheSelectedMacroAreLinks()
{
    fill({u"A"_s, u"B"_s}, 0);
    useMacro(1);
    QCOMPARE(linkNames(), QStringList());
    QCOMPARE(outlet<QLabel>(u"mMacroUsesLabel"_s)->text(), u"No key plays this macro."_s);
    list()->selectRow(1);
    QCOMPARE(linkNames(), (QStringList{u"M1 in Game & Co"_s, u"F5 in Default Profile"_s}));
    QCOMPARE(links().first()->text(), u"M1 in Game && Co"_s);
    QCOMPARE(outlet<QLabel>(u"mMacroUsesLabel"_s)->text(), u"Played by:"_s);
    // The keys tab shows the active profile alone; the link says so before it changes it.
    QCOMPARE(links().first()->accessibleDescription(),
             u"Make the profile “Game & Co” active and show this key on the Keys tab"_s);
    QCOMPARE(links().last()->accessibleDescription(), u"Show this key on the Keys tab"_s);
    QVERIFY(outlet(u"mMacroUsesNote"_s)->isVisible());
    mDelegate->calls.clear();
    links().last()->click();
    links().first()->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"show 62 1"_s, u"show 106 0"_s}));
    list()->deselectAll();
    QVERIFY(!outlet(u"mMacroUses"_s)->isVisible());
}

void MacrosListTest::furtherUsesAreInAMenu()
{
    fill({u"A"_s}, 0);
    QVariantMap keys;
    for (const int code : {4, 5, 6, 7, 8, 9})
        keys[QString::number(code)] = QVariantMap{{u"command"_s, 10}, {u"param1"_s, 0}};
    mController->setProfiles({QVariantMap{{u"ProfileName"_s, u"P"_s}, {u"Keys"_s, keys}}}, 0);
    mController->refreshTableDisplay();
    QCOMPARE(linkNames().size(), 5);
    QCOMPARE(linkNames().last(), u"2 more…"_s);
    QVERIFY(!outlet(u"mMacroUsesNote"_s)->isVisible());
    const QList<QAction *> items = links().last()->menu()->actions();
    QStringList titles = linkNames().first(4);
    for (const QAction *item : items)
        titles += item->text();
    titles.sort();
    QCOMPARE(titles, (QStringList{u"A in P"_s, u"B in P"_s, u"C in P"_s, u"D in P"_s, u"E in P"_s, u"F in P"_s}));
    mDelegate->calls.clear();
    items.first()->trigger();
    QCOMPARE(mDelegate->calls.size(), 1);
    QVERIFY(mDelegate->calls.first().startsWith(u"show "_s));
}

void MacrosListTest::usesFollowTheProfiles()
{
    fill({u"A"_s}, 0);
    useMacro(0);
    QCOMPARE(linkNames().size(), 2);
    mController->setProfiles({}, 0);
    mController->refreshTableDisplay();
    QCOMPARE(linkNames(), QStringList());
    QVERIFY(!outlet(u"mMacroUsesNote"_s)->isVisible());
}

void MacrosListTest::alertSaysWhereTheMacroIsUsed()
{
    fill({u"A"_s, u"B"_s}, 1);
    useMacro(1);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    QCOMPARE(outlet<QLabel>(u"alertDetail"_s)->text(), u"Played by: M1 in Game & Co, F5 in Default Profile"_s);
    QCOMPARE(outlet<QLabel>(u"alertDescription"_s)->text(), localizedText("lkeyDeleteMacroAlertDesc"));
    QVERIFY(outlet(u"alert"_s)->accessibleDescription().endsWith(u"F5 in Default Profile"_s));
    outlet<QPushButton>(u"alertAlternativeButton"_s)->click();
    QTRY_VERIFY(!outlet(u"alert"_s));
    list()->selectRow(0);
    outlet<QPushButton>(u"mDeleteMacro"_s)->click();
    QVERIFY(!outlet(u"alertDetail"_s));
}

QTEST_MAIN(MacrosListTest)
#include "macroslisttest.moc"
