// SPDX-License-Identifier: MIT
// The keys tab as a user works with its picture: the menu of a key, typing, the search, and what assistive tools read.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "base/text.h"
#include "keys/keyboardpicture.h"
#include "platform/keymap.h"
#include "platform/popupbutton.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace KeysTesting;

class KeysPictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rightClickSelectsTheKeyAndOpensItsAssignments();
    void menuKeyOpensTheMenuAtTheKey();
    void choiceInTheMenuOfAKeyAssignsIt();
    void keyWithoutAssignmentHasNoMenu();
    void absentKeyboardHasNoMenu();
    void typedCharacterSelectsItsKey();
    void homeAndEndSelectTheFirstAndTheLastKey();
    void searchLightsTheKeysThatFit_data();
    void searchLightsTheKeysThatFit();
    void returnStepsThroughTheKeysFound();
    void buttonsStepThroughTheKeysFound();
    void searchWithoutAMatchSaysSo();
    void escapeClearsTheSearch();
    void searchFollowsChangedAssignments();
    void findShortcutMovesToTheField();
    void absentKeyboardCannotBeSearched();
    void legendsFollowTheLayout();
    void toolTipsExplainTheExtraKeys_data();
    void toolTipsExplainTheExtraKeys();
    void assignmentThatDoesNothingSaysSo_data();
    void assignmentThatDoesNothingSaysSo();
    void keysAreItemsOfAList();
    void popUpsAreComboBoxesWithTheirValue();

private:
    QTemporaryDir mResources;
};

namespace {

QStringList foundKeys(const Tab &tab)
{
    QStringList names;
    for (const KeyButton *key : tab.controller->picture()->buttons())
        if (key->isFound())
            names << key->objectName();
    return names;
}

QLineEdit *searchField(const Tab &tab)
{
    return tab.find<QLineEdit>("mKeySearchField");
}

QString searchResult(const Tab &tab)
{
    return tab.find<QLabel>("mKeySearchResult")->text();
}

void show(Tab &tab)
{
    tab.window.resize(1100, 620);
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
}

void askForMenu(KeyButton *key, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
{
    const QPoint place = key->rect().center();
    QContextMenuEvent event(reason, place, key->mapToGlobal(place));
    QApplication::sendEvent(key, &event);
}

QVariantMap mixedKeys()
{
    return {{u"4"_s, entry(10, 0, 1)}, {u"7"_s, entry(20)}, {u"15"_s, entry(10, 0, 2)}, {u"58"_s, entry(20)}};
}

QAccessibleInterface *accessible(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

} // namespace

void KeysPictureTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
    qputenv("QUILL_KESTRA_RESOURCES", mResources.path().toLocal8Bit());
}

void KeysPictureTest::rightClickSelectsTheKeyAndOpensItsAssignments()
{
    Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    show(tab);
    QMenu *menu = tab.find<PopUpButton>("mAssignFunction")->popUpMenu();
    KeyButton *key = tab.key("mA");
    askForMenu(key);
    QCOMPARE(tab.controller->selectedKey(), u"4"_s);
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), key->mapToGlobal(key->rect().center()));
    QCOMPARE(tab.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 2); // shows the macro of A
    menu->close();
    // The selected key also has the menu, and stays selected.
    askForMenu(key);
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(tab.controller->currentButton(), key);
    QCOMPARE(key->state(), 1);
    menu->close();
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysPictureTest::menuKeyOpensTheMenuAtTheKey()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    const QMenu *menu = tab.find<PopUpButton>("mAssignFunction")->popUpMenu();
    KeyButton *key = tab.key("mA");
    askForMenu(key, QContextMenuEvent::Keyboard);
    QTRY_VERIFY(menu->isVisible());
    QCOMPARE(menu->pos(), key->mapToGlobal(key->rect().bottomLeft()));
}

void KeysPictureTest::choiceInTheMenuOfAKeyAssignsIt()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    askForMenu(tab.key("mB"));
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    QCOMPARE(tab.delegate.calls, QStringList{u"updateKeySettings"_s});
    QCOMPARE(tab.delegate.sentEntry(u"5"_s), entry(20));
}

void KeysPictureTest::keyWithoutAssignmentHasNoMenu()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    const QString before = tab.controller->selectedKey();
    for (const char *fixed : {"mEject", "mMenu", "mNumPadBlank"}) {
        askForMenu(tab.key(fixed));
        QVERIFY(!tab.find<PopUpButton>("mAssignFunction")->popUpMenu()->isVisible());
    }
    QCOMPARE(tab.controller->selectedKey(), before);
}

void KeysPictureTest::absentKeyboardHasNoMenu()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    tab.controller->setControlsState(false);
    const QString before = tab.controller->selectedKey();
    Q_EMIT tab.key("mA")->menuRequested(QPoint());
    QVERIFY(!tab.find<PopUpButton>("mAssignFunction")->popUpMenu()->isVisible());
    QCOMPARE(tab.controller->selectedKey(), before);
}

void KeysPictureTest::typedCharacterSelectsItsKey()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    QTest::keyClicks(tab.key("mA"), u"q"_s);
    QCOMPARE(tab.controller->selectedKey(), u"20"_s);
    QVERIFY(tab.key("mQ")->focusPolicy() & Qt::TabFocus);
    QTest::keyClicks(tab.key("mQ"), u"!"_s);
    QCOMPARE(tab.controller->selectedKey(), u"30"_s);
    // The digit is on two keys.
    QTest::keyClicks(tab.key("mOne"), u"7"_s);
    QCOMPARE(tab.controller->selectedKey(), u"36"_s);
    QTest::keyClicks(tab.key("mSeven"), u"7"_s);
    QCOMPARE(tab.controller->selectedKey(), u"95"_s);
    // A character that no key shows changes nothing, and neither does a command.
    QTest::keyClicks(tab.key("mNumPadSeven"), u"§"_s);
    QTest::keyClick(tab.key("mNumPadSeven"), Qt::Key_Q, Qt::AltModifier);
    QCOMPARE(tab.controller->selectedKey(), u"95"_s);
}

void KeysPictureTest::homeAndEndSelectTheFirstAndTheLastKey()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    QTest::keyClick(tab.key("mA"), Qt::Key_End);
    QCOMPARE(tab.controller->selectedKey(), u"99"_s); // Numpad Dot
    QTest::keyClick(tab.key("mNumPadDot"), Qt::Key_Home);
    QCOMPARE(tab.controller->selectedKey(), u"106"_s); // M1
}

void KeysPictureTest::searchLightsTheKeysThatFit_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("macro") << u"Heal"_s << QStringList{u"mA"_s, u"mL"_s};
    QTest::newRow("disabled") << u"disabled"_s << QStringList{u"mF1"_s, u"mD"_s};
    QTest::newRow("name") << u"left shift"_s << QStringList{u"mLeftShift"_s};
    QTest::newRow("other name") << u"Return"_s << QStringList{u"mEnter"_s};
    QTest::newRow("character") << u"`"_s << QStringList{u"mApostrophe"_s};
    QTest::newRow("empty") << u""_s << QStringList{};
}

void KeysPictureTest::searchLightsTheKeysThatFit()
{
    QFETCH(QString, query);
    QFETCH(QStringList, keys);
    const Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    const QString before = tab.controller->selectedKey();
    searchField(tab)->setText(query);
    QCOMPARE(foundKeys(tab), keys);
    QCOMPARE(tab.controller->selectedKey(), before);
    QCOMPARE(searchResult(tab).isEmpty(), query.isEmpty());
    QVERIFY(query.isEmpty() || searchResult(tab).contains(QString::number(keys.size())));
}

void KeysPictureTest::returnStepsThroughTheKeysFound()
{
    Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    show(tab);
    QLineEdit *field = searchField(tab);
    field->setFocus();
    QTest::keyClicks(field, u"heal"_s);
    const auto selectedAfter = [&](Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(field, Qt::Key_Return, modifiers);
        return tab.controller->selectedKey();
    };
    QCOMPARE(selectedAfter(Qt::NoModifier), u"4"_s);
    QCOMPARE(selectedAfter(Qt::NoModifier), u"15"_s);
    QCOMPARE(selectedAfter(Qt::NoModifier), u"4"_s);
    QCOMPARE(selectedAfter(Qt::ShiftModifier), u"15"_s);
    QCOMPARE(selectedAfter(Qt::ShiftModifier), u"4"_s);
    QCOMPARE(foundKeys(tab), (QStringList{u"mA"_s, u"mL"_s}));
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysPictureTest::buttonsStepThroughTheKeysFound()
{
    const Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    auto *next = tab.find<QToolButton>("mKeySearchNext");
    auto *previous = tab.find<QToolButton>("mKeySearchPrevious");
    QVERIFY(!next->isEnabled());
    QVERIFY(!previous->isEnabled());
    searchField(tab)->setText(u"heal"_s);
    previous->click();
    QCOMPARE(tab.controller->selectedKey(), u"15"_s);
    next->click();
    QCOMPARE(tab.controller->selectedKey(), u"4"_s);
}

void KeysPictureTest::searchWithoutAMatchSaysSo()
{
    const Tab tab(profile(u"P"_s));
    const QString before = tab.controller->selectedKey();
    searchField(tab)->setText(u"xyzzy"_s);
    QCOMPARE(searchResult(tab), localizedText("lkeyKeysSearchNothing"));
    QCOMPARE(accessible(searchField(tab))->text(QAccessible::Description), localizedText("lkeyKeysSearchNothing"));
    QTest::keyClick(searchField(tab), Qt::Key_Return);
    QCOMPARE(tab.controller->selectedKey(), before);
    QVERIFY(!tab.find<QToolButton>("mKeySearchNext")->isEnabled());
}

void KeysPictureTest::escapeClearsTheSearch()
{
    const Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    searchField(tab)->setText(u"heal"_s);
    QTest::keyClick(searchField(tab), Qt::Key_Escape);
    QCOMPARE(searchField(tab)->text(), QString());
    QCOMPARE(foundKeys(tab), QStringList());
    QCOMPARE(searchResult(tab), QString());
}

void KeysPictureTest::searchFollowsChangedAssignments()
{
    Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    searchField(tab)->setText(u"heal"_s);
    tab.giveBack({{u"4"_s, entry(20)}, {u"5"_s, entry(10, 0, 1)}});
    QCOMPARE(foundKeys(tab), QStringList{u"mB"_s});
}

void KeysPictureTest::findShortcutMovesToTheField()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    tab.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&tab.window));
    tab.key("mESC")->setFocus();
    QTest::keyClick(tab.key("mESC"), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(searchField(tab)->hasFocus());
    QCOMPARE(tab.controller->selectedKey(), u"41"_s);
}

void KeysPictureTest::absentKeyboardCannotBeSearched()
{
    const Tab tab(profile(u"P"_s));
    searchField(tab)->setText(u"a"_s);
    tab.controller->setControlsState(false);
    QVERIFY(!searchField(tab)->isEnabled());
    QVERIFY(!tab.find<QToolButton>("mKeySearchNext")->isEnabled());
    tab.controller->setControlsState(true);
    QVERIFY(searchField(tab)->isEnabled());
    QVERIFY(tab.find<QToolButton>("mKeySearchNext")->isEnabled());
}

void KeysPictureTest::legendsFollowTheLayout()
{
    Tab tab(profile(u"P"_s, {{u"28"_s, entry(20)}}));
    show(tab);
    KeyboardPicture *picture = tab.controller->picture();
    tab.key("mY")->click();
    const auto *label = tab.find<QLabel>("mSelectedKeyLabel");
    QCOMPARE(label->text(), u"Y"_s);
    picture->showKeymap(Keymap::fromNames("de"));
    // The cap shows the layout; texts also have the fixed name.
    QCOMPARE(tab.key("mY")->legend(), u"Z"_s);
    QCOMPARE(label->text(), u"Z (key Y)"_s);
    QCOMPARE(tab.key("mY")->accessibleName(), u"Z (key Y)"_s);
    QVERIFY(tab.key("mY")->toolTip().contains(u"Z (key Y)"_s));
    QVERIFY(tab.key("mY")->toolTip().contains(localizedText("lkeyDisable")));
    QCOMPARE(tab.key("mA")->accessibleName(), u"A"_s);
    QCOMPARE(tab.key("mLeftShift")->accessibleName(), u"Left Shift"_s);
    // Typing follows the caps; the search knows both.
    QTest::keyClicks(tab.key("mA"), u"y"_s);
    QCOMPARE(tab.controller->selectedKey(), u"29"_s);
    searchField(tab)->setText(u"z"_s);
    QCOMPARE(foundKeys(tab), (QStringList{u"mY"_s, u"mZ"_s}));
    picture->showKeymap(Keymap::fromNames("us"));
    QCOMPARE(tab.key("mY")->legend(), u"Y"_s);
    QCOMPARE(tab.key("mY")->accessibleName(), u"Y"_s);
    QVERIFY(!tab.key("mY")->toolTip().contains(u"Z"_s));
    picture->showKeymap(Keymap());
    QCOMPARE(tab.key("mY")->legend(), u"Y"_s);
}

void KeysPictureTest::toolTipsExplainTheExtraKeys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("code");
    const QStringList mCodes{u"F15"_s, u"F16"_s, u"F17"_s, u"F18"_s, u"F19"_s};
    const QStringList tCodes{u"F20"_s, u"F21"_s, u"F22"_s, u"F23"_s, u"LANG3"_s, u"LANG4"_s, u"International6"_s};
    for (qsizetype index = 0; index < mCodes.size(); ++index)
        QTest::addRow("M%d", int(index + 1)) << u"mM%1"_s.arg(index + 1) << u"left"_s << mCodes[index];
    for (qsizetype index = 0; index < tCodes.size(); ++index)
        QTest::addRow("T%d", int(index + 1)) << u"mT%1"_s.arg(index + 1) << u"space bar"_s << tCodes[index];
    QTest::newRow("M") << u"mM"_s << QString() << QString();
    QTest::newRow("F14") << u"mF14"_s << QString() << QString();
}

void KeysPictureTest::toolTipsExplainTheExtraKeys()
{
    QFETCH(QString, key);
    QFETCH(QString, place);
    QFETCH(QString, code);
    const Tab tab(profile(u"P"_s, {{u"106"_s, entry(20)}}));
    KeyButton *button = tab.key(qPrintable(key));
    const QString toolTip = button->toolTip();
    if (code.isEmpty()) {
        QVERIFY(!toolTip.contains(u"extra key"_s));
        return;
    }
    QVERIFY2(toolTip.contains(u"extra key"_s), qPrintable(toolTip));
    QVERIFY2(toolTip.contains(place), qPrintable(toolTip));
    QVERIFY2(toolTip.contains(code + u'.'), qPrintable(toolTip));
    QVERIFY(toolTip.contains(localizedText(key == u"mM1"_s ? "lkeyDisable" : "lkeyDefaultKey")));
    QVERIFY(accessible(button)->text(QAccessible::Help).contains(code));
}

void KeysPictureTest::assignmentThatDoesNothingSaysSo_data()
{
    QTest::addColumn<QVariantMap>("assigned");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("problem");
    QTest::newRow("macro that is gone") << entry(10, 3, 2) << u"Macro: no. 4 (does not exist)"_s
                                        << u"a macro that no longer"_s;
    QTest::newRow("profile that is gone")
        << entry(17, 9) << u"Switch profile: no. 10 (does not exist)"_s << u"a profile that no longer"_s;
    QTest::newRow("unknown kind") << entry(30) << u"Unknown assignment"_s << u"does not know the kind"_s;
    QTest::newRow("macro") << entry(10, 0, 1) << u"Macro: Heal (Play once)"_s << QString();
    QTest::newRow("profile") << entry(17, 0) << u"Switch profile: P"_s << QString();
    QTest::newRow("disabled") << entry(20) << u"Disable key"_s << QString();
    QTest::newRow("default") << entry(45) << u"Default key"_s << QString();
}

void KeysPictureTest::assignmentThatDoesNothingSaysSo()
{
    QFETCH(QVariantMap, assigned);
    QFETCH(QString, description);
    QFETCH(QString, problem);
    Tab tab(profile(u"P"_s, {{u"4"_s, assigned}}), {}, {macro(u"Heal"_s)});
    QVERIFY2(tab.key("mA")->toolTip().contains(description), qPrintable(tab.key("mA")->toolTip()));
    QCOMPARE(accessible(tab.key("mA"))->text(QAccessible::Description), description);
    // The rows under the picture describe the selected key alone.
    const auto *label = tab.find<QLabel>("mAssignmentProblemLabel");
    QAccessibleInterface *popUp = accessible(tab.find<PopUpButton>("mAssignFunction"));
    tab.key("mB")->click();
    QVERIFY(label->isHidden());
    tab.key("mA")->click();
    QCOMPARE(label->isHidden(), problem.isEmpty());
    QVERIFY2(label->text().contains(problem), qPrintable(label->text()));
    QCOMPARE(popUp->text(QAccessible::Description), label->text());
    tab.giveBack({{u"4"_s, entry(20)}});
    QVERIFY(label->isHidden());
    QCOMPARE(popUp->text(QAccessible::Description), QString());
}

void KeysPictureTest::keysAreItemsOfAList()
{
    Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    show(tab);
    tab.key("mA")->click();
    QAccessibleInterface *list = accessible(tab.controller->picture());
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 124);
    QStringList selected;
    for (int index = 0; index < list->childCount(); ++index) {
        QAccessibleInterface *item = list->child(index);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QVERIFY(!item->text(QAccessible::Name).isEmpty());
        QVERIFY(!item->state().checkable);
        if (item->state().selected)
            selected << item->text(QAccessible::Name);
    }
    QCOMPARE(selected, QStringList{u"A"_s});
    QVERIFY(accessible(tab.key("mA"))->text(QAccessible::Description).contains(u"Heal"_s));
    QVERIFY(accessible(tab.key("mB"))->state().selectable);
    QVERIFY(!accessible(tab.key("mEject"))->state().selectable);
    QVERIFY(accessible(tab.key("mMenu"))->state().disabled);
    accessible(tab.key("mB"))->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(tab.controller->selectedKey(), u"5"_s);
    QVERIFY(accessible(tab.key("mB"))->state().selected);
    QVERIFY(!accessible(tab.key("mA"))->state().selected);
}

void KeysPictureTest::popUpsAreComboBoxesWithTheirValue()
{
    Tab tab(profile(u"P"_s, mixedKeys()), {}, {macro(u"Heal"_s)});
    tab.key("mA")->click();
    QAccessibleInterface *popUp = accessible(tab.find<PopUpButton>("mAssignFunction"));
    QCOMPARE(popUp->role(), QAccessible::ComboBox);
    QCOMPARE(popUp->text(QAccessible::Name), localizedText("lkeyAssignFunction"));
    QCOMPARE(popUp->text(QAccessible::Value), u"Macro: Heal"_s);
    tab.key("mD")->click();
    QCOMPARE(popUp->text(QAccessible::Value), localizedText("lkeyDisable"));
}

QTEST_MAIN(KeysPictureTest)
#include "keyspicturetest.moc"
