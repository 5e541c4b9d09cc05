// SPDX-License-Identifier: MIT
// Several selected keys, and assignments on the clipboard.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "base/text.h"
#include "keys/keyboardpicture.h"
#include "platform/popupbutton.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

class KeysSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void controlClickAddsAndRemovesKeys();
    void controlClickOnTheOnlySelectedKeyKeepsIt();
    void shiftArrowsAddKeys();
    void plainClickSelectsOneKey();
    void selectedKeysAreShownAndReported();
    void allSelectedKeysGetTheAssignmentAtOnce();
    void defaultGivesEachKeyItsOwn();
    void selectionStaysAfterAChange();
    void rightClickOnASelectedKeyKeepsTheSelection();
    void fixedKeyCannotBeAdded();
    void copiedAssignmentCanBePasted_data();
    void copiedAssignmentCanBePasted();
    void defaultIsPastedAsTheKeysOwn();
    void pasteFillsAllSelectedKeys();
    void pasteFindsAMacroThatHasMoved();
    void assignmentOfAMacroThatIsGoneIsNotPasted();
    void unknownAssignmentIsNotCopied();
    void otherClipboardContentIsNotPasted();
    void menuOffersCopyAndPaste();
    void copyInTheSearchFieldCopiesItsText();
    void absentKeyboardTakesNoPaste();

private:
    QTemporaryDir mResources;
};

namespace {

void show(Tab &tab)
{
    tab.window.resize(1100, 620);
    tab.window.show();
    tab.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&tab.window));
}

void controlClick(const Tab &tab, const char *key)
{
    QTest::mouseClick(tab.key(key), Qt::LeftButton, Qt::ControlModifier);
}

QStringList shownSelected(const Tab &tab)
{
    QStringList names;
    for (const KeyButton *key : tab.controller->picture()->buttons())
        if (key->isShownSelected())
            names << key->objectName();
    return names;
}

void copyAndPaste(const Tab &tab, const char *from, const char *to)
{
    tab.key(from)->click();
    tab.key(from)->setFocus();
    QTest::keyClick(tab.key(from), Qt::Key_C, Qt::ControlModifier);
    tab.key(to)->click();
    tab.key(to)->setFocus();
    QTest::keyClick(tab.key(to), Qt::Key_V, Qt::ControlModifier);
}

QAction *pasteItem(const Tab &tab)
{
    return tab.controller->findChild<QAction *>(u"mPasteAssignment"_s);
}

} // namespace

void KeysSelectionTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
    qputenv("QUILL_KESTRA_RESOURCES", mResources.path().toLocal8Bit());
}

void KeysSelectionTest::init()
{
    QGuiApplication::clipboard()->clear();
}

void KeysSelectionTest::controlClickAddsAndRemovesKeys()
{
    const Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    controlClick(tab, "mS");
    controlClick(tab, "mD");
    QCOMPARE(tab.controller->selectedCodes(), (QList<int>{4, 22, 7}));
    QCOMPARE(tab.controller->selectedKey(), u"7"_s); // the one selected last
    controlClick(tab, "mS");
    QCOMPARE(tab.controller->selectedCodes(), (QList<int>{4, 7}));
    controlClick(tab, "mD");
    QCOMPARE(tab.controller->selectedCodes(), QList<int>{4});
    QCOMPARE(tab.controller->selectedKey(), u"4"_s);
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysSelectionTest::controlClickOnTheOnlySelectedKeyKeepsIt()
{
    const Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    controlClick(tab, "mA");
    QCOMPARE(tab.controller->selectedCodes(), QList<int>{4});
}

void KeysSelectionTest::shiftArrowsAddKeys()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    tab.key("mA")->click();
    QTest::keyClick(tab.key("mA"), Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(tab.key("mS"), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(tab.controller->selectedCodes(), (QList<int>{4, 22, 7}));
    QVERIFY(tab.key("mD")->hasFocus());
    QTest::keyClick(tab.key("mD"), Qt::Key_Right);
    QCOMPARE(tab.controller->selectedCodes(), QList<int>{9});
}

void KeysSelectionTest::plainClickSelectsOneKey()
{
    const Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    controlClick(tab, "mS");
    QTest::mouseClick(tab.key("mA"), Qt::LeftButton);
    QCOMPARE(tab.controller->selectedCodes(), QList<int>{4});
    QCOMPARE(shownSelected(tab), QStringList{u"mA"_s});
}

void KeysSelectionTest::selectedKeysAreShownAndReported()
{
    const Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    controlClick(tab, "mS");
    controlClick(tab, "mD");
    QCOMPARE(shownSelected(tab), (QStringList{u"mA"_s, u"mS"_s, u"mD"_s}));
    for (const char *key : {"mA", "mS", "mD"})
        QVERIFY(QAccessible::queryAccessibleInterface(tab.key(key))->state().selected);
    QVERIFY(QAccessible::queryAccessibleInterface(tab.controller->picture())->state().multiSelectable);
    QCOMPARE(tab.find<QLabel>("mSelectedKeyLabel")->text(), u"D and 2 more"_s);
    tab.key("mF")->click();
    QCOMPARE(tab.find<QLabel>("mSelectedKeyLabel")->text(), u"F"_s);
}

void KeysSelectionTest::allSelectedKeysGetTheAssignmentAtOnce()
{
    QVariantMap rich = entry(10, 0, 1);
    rich.insert(u"Note"_s, u"stays"_s);
    const QVariantMap keys{{u"4"_s, rich}, {u"22"_s, entry(45, 22)}, {u"9"_s, entry(17, 1)}};
    const Tab tab(profile(u"P"_s, keys), {}, {macro(u"Heal"_s), macro(u"Burst"_s)});
    tab.key("mA")->click();
    controlClick(tab, "mS");
    controlClick(tab, "mD");
    tab.find<PopUpButton>("mAssignFunction")->submenuAtIndex(2)->actions().last()->trigger(); // Burst
    QCOMPARE(tab.delegate.calls, QStringList{u"updateKeySettings"_s});
    QVariantMap changed = rich;
    changed.insert(entry(10, 1, 1));
    QCOMPARE(tab.delegate.sentEntry(u"4"_s), changed);
    QCOMPARE(tab.delegate.sentEntry(u"22"_s), entry(10, 1, 1));
    QCOMPARE(tab.delegate.sentEntry(u"7"_s), entry(10, 1, 1));
    QCOMPARE(tab.delegate.sentEntry(u"9"_s), entry(17, 1));
    QCOMPARE(tab.delegate.sent.last().value(SettingsKeys::keys).toMap().size(), 4);
}

void KeysSelectionTest::defaultGivesEachKeyItsOwn()
{
    const Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}, {u"22"_s, entry(20)}, {u"7"_s, entry(20)}}));
    tab.controller->setMDefaultDict(profile(u"Default"_s, {{u"4"_s, entry(45, 77)}, {u"22"_s, entry(45, 88)}}));
    tab.key("mA")->click();
    controlClick(tab, "mD");
    controlClick(tab, "mS");
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(0)->trigger();
    QCOMPARE(tab.delegate.calls, QStringList{u"updateKeySettings"_s});
    QCOMPARE(tab.delegate.sentEntry(u"4"_s), entry(45, 77));
    QCOMPARE(tab.delegate.sentEntry(u"22"_s), entry(45, 88));
    QCOMPARE(tab.delegate.sentEntry(u"7"_s), entry(45, 0));
}

void KeysSelectionTest::selectionStaysAfterAChange()
{
    Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    controlClick(tab, "mS");
    tab.giveBack({{u"4"_s, entry(20)}, {u"22"_s, entry(20)}});
    QCOMPARE(tab.controller->selectedCodes(), (QList<int>{4, 22}));
    QCOMPARE(shownSelected(tab), (QStringList{u"mA"_s, u"mS"_s}));
}

void KeysSelectionTest::rightClickOnASelectedKeyKeepsTheSelection()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    tab.key("mA")->click();
    controlClick(tab, "mS");
    const auto ask = [](KeyButton *key) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(), key->mapToGlobal(QPoint()));
        QApplication::sendEvent(key, &event);
    };
    ask(tab.key("mA"));
    QCOMPARE(tab.controller->selectedCodes(), (QList<int>{22, 4}));
    tab.find<PopUpButton>("mAssignFunction")->popUpMenu()->close();
    ask(tab.key("mL"));
    QCOMPARE(tab.controller->selectedCodes(), QList<int>{15});
}

void KeysSelectionTest::fixedKeyCannotBeAdded()
{
    const Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    controlClick(tab, "mMenu");
    QCOMPARE(tab.controller->selectedCodes(), QList<int>{4});
    QCOMPARE(shownSelected(tab), QStringList{u"mA"_s});
}

void KeysSelectionTest::copiedAssignmentCanBePasted_data()
{
    QTest::addColumn<QVariantMap>("copied");
    QTest::newRow("macro") << entry(10, 1, 254);
    QTest::newRow("single key") << entry(16, 6, 8);
    QTest::newRow("profile") << entry(17, 1, 0);
    QTest::newRow("disabled") << entry(20);
    QTest::newRow("program") << entry(46, u"/opt/Tool.app"_s, QString());
}

void KeysSelectionTest::copiedAssignmentCanBePasted()
{
    QFETCH(QVariantMap, copied);
    Tab tab(profile(u"P"_s, {{u"4"_s, copied}}), {profile(u"Second"_s)}, {macro(u"Heal"_s), macro(u"Burst"_s)});
    show(tab);
    copyAndPaste(tab, "mA", "mB");
    QCOMPARE(tab.delegate.calls, QStringList{u"updateKeySettings"_s});
    QCOMPARE(tab.delegate.sentEntry(u"5"_s), copied);
    QCOMPARE(tab.delegate.sentEntry(u"4"_s), copied);
    QVERIFY(!QGuiApplication::clipboard()->text().isEmpty());
}

void KeysSelectionTest::defaultIsPastedAsTheKeysOwn()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    show(tab);
    copyAndPaste(tab, "mB", "mA");
    QCOMPARE(tab.delegate.sentEntry(u"4"_s), entry(45, 77)); // as in the default profile of the tab
}

void KeysSelectionTest::pasteFillsAllSelectedKeys()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(16, 6, 8)}}));
    show(tab);
    tab.key("mA")->click();
    tab.key("mA")->setFocus();
    QTest::keyClick(tab.key("mA"), Qt::Key_C, Qt::ControlModifier);
    tab.key("mB")->click();
    controlClick(tab, "mC");
    tab.key("mC")->setFocus();
    QTest::keyClick(tab.key("mC"), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(tab.delegate.calls, QStringList{u"updateKeySettings"_s});
    QCOMPARE(tab.delegate.sentEntry(u"5"_s), entry(16, 6, 8));
    QCOMPARE(tab.delegate.sentEntry(u"6"_s), entry(16, 6, 8));
}

void KeysSelectionTest::pasteFindsAMacroThatHasMoved()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(10, 1, 2)}}), {}, {macro(u"Heal"_s), macro(u"Burst"_s)});
    show(tab);
    tab.key("mA")->click();
    tab.key("mA")->setFocus();
    QTest::keyClick(tab.key("mA"), Qt::Key_C, Qt::ControlModifier);
    tab.controller->setMAllMacrosArray({macro(u"Burst"_s)});
    tab.controller->updateUISettings();
    tab.key("mB")->click();
    tab.key("mB")->setFocus();
    QTest::keyClick(tab.key("mB"), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(tab.delegate.sentEntry(u"5"_s), entry(10, 0, 2));
}

void KeysSelectionTest::assignmentOfAMacroThatIsGoneIsNotPasted()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(10, 1, 2)}}), {}, {macro(u"Heal"_s), macro(u"Burst"_s)});
    show(tab);
    tab.key("mA")->click();
    tab.key("mA")->setFocus();
    QTest::keyClick(tab.key("mA"), Qt::Key_C, Qt::ControlModifier);
    tab.controller->setMAllMacrosArray({macro(u"Heal"_s), macro(u"Other"_s)});
    tab.controller->updateUISettings();
    QTest::keyClick(tab.key("mA"), Qt::Key_V, Qt::ControlModifier);
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysSelectionTest::unknownAssignmentIsNotCopied()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(30, 1, 2)}, {u"5"_s, entry(10, 9)}}));
    show(tab);
    QGuiApplication::clipboard()->setText(u"before"_s);
    for (const char *key : {"mA", "mB"}) {
        tab.key(key)->click();
        tab.key(key)->setFocus();
        QTest::keyClick(tab.key(key), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    }
}

void KeysSelectionTest::otherClipboardContentIsNotPasted()
{
    Tab tab(profile(u"P"_s));
    show(tab);
    QGuiApplication::clipboard()->setText(u"Disable key"_s);
    tab.key("mA")->click();
    tab.key("mA")->setFocus();
    QTest::keyClick(tab.key("mA"), Qt::Key_V, Qt::ControlModifier);
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysSelectionTest::menuOffersCopyAndPaste()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    show(tab);
    auto *popUp = tab.find<PopUpButton>("mAssignFunction");
    QMenu *menu = popUp->popUpMenu();
    QAction *copy = tab.controller->findChild<QAction *>(u"mCopyAssignment"_s);
    QVERIFY(copy && pasteItem(tab));
    QVERIFY(menu->actions().contains(copy));
    QVERIFY(menu->actions().contains(pasteItem(tab)));
    QCOMPARE(popUp->numberOfItems(), 6); // the assignments alone
    tab.key("mA")->click();
    popUp->openMenu();
    QVERIFY(copy->isEnabled());
    QVERIFY(!pasteItem(tab)->isEnabled()); // nothing was copied
    menu->close();
    copy->trigger();
    tab.key("mB")->click();
    popUp->openMenu();
    QVERIFY(pasteItem(tab)->isEnabled());
    menu->close();
    pasteItem(tab)->trigger();
    QCOMPARE(tab.delegate.sentEntry(u"5"_s), entry(20));
    QCOMPARE(popUp->indexOfSelectedItem(), 0); // until the settings come back
}

void KeysSelectionTest::copyInTheSearchFieldCopiesItsText()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    show(tab);
    auto *field = tab.find<QLineEdit>("mKeySearchField");
    field->setText(u"Heal"_s);
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"Heal"_s);
}

void KeysSelectionTest::absentKeyboardTakesNoPaste()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    show(tab);
    tab.key("mA")->click();
    tab.key("mA")->setFocus();
    QTest::keyClick(tab.key("mA"), Qt::Key_C, Qt::ControlModifier);
    tab.controller->setControlsState(false);
    pasteItem(tab)->trigger();
    QVERIFY(tab.delegate.calls.isEmpty());
}

QTEST_MAIN(KeysSelectionTest)
#include "keysselectiontest.moc"
