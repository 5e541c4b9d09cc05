// SPDX-License-Identifier: MIT
// Showing and changing the action of the selected key: assignment and playback pop-up, sub-menus, open panel.
#include "tests/keys/keystesting.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/testmain.h"

#include "base/text.h"
#include "platform/applicationinformation.h"
#include "platform/filepanels.h"
#include "platform/popupbutton.h"
#include "tests/support/writtenfile.h"

#include <QAccessible>
#include <QAction>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

namespace {

// Four profiles, the first of them active; the key A has the entry `keyA`.
std::unique_ptr<Tab> tabWithA(const QVariantMap &keyA,
                              const QVariantList &macros = {macro(u"Heal"_s), macro(u"Burst"_s)})
{
    auto tab = std::make_unique<Tab>(profile(u"Raid"_s, {{u"4"_s, keyA}}),
                                     QVariantList{profile(u"Desktop"_s), profile(u"Browser"_s)}, macros);
    tab->key("mA")->click();
    return tab;
}

QList<QAction *> records(const QMenu *menu)
{
    return menu->actions().sliced(2); // behind the manage item and the separator
}

} // namespace

class KeysAssignmentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void fillsThePopUpsInOrder();
    void populatingTwiceFillsOnce();
    void showsTheEntryOfTheSelectedKey_data();
    void showsTheEntryOfTheSelectedKey();
    void showsAnUnknownAssignment();
    void titlesBecomePlainOnAnotherKey_data();
    void titlesBecomePlainOnAnotherKey();
    void showsTheStoredRepeatMode_data();
    void showsTheStoredRepeatMode();
    void oddEntriesShowWithoutCrash_data();
    void oddEntriesShowWithoutCrash();

    void defaultKeyTakesParamOneOfTheDefaultEntry();
    void defaultKeyWithoutDefaultEntryWritesZero();
    void disableWritesZeroes();
    void writingKeepsFurtherKeysAndOtherEntries();
    void changesReturnOnlyThroughTheController();
    void macroItemItselfSendsNothing_data();
    void macroItemItselfSendsNothing();
    void assigningHidesPlayback_data();
    void assigningHidesPlayback();
    void macroItemItselfKeepsPlayback();

    void profileSubMenuListsAllProfiles();
    void macroSubMenuListsAllMacros();
    void manageItemsSwitchTabsAndSendNothing();
    void subMenuMarksTheRecordOfTheSelectedKey_data();
    void subMenuMarksTheRecordOfTheSelectedKey();
    void longSubMenusHaveOneColumn();
    void profileFromSubMenuIsWritten();
    void macroFromSubMenuResetsRepeatToOnce();
    void macroFromSubMenuShowsPlayback();
    void subMenusFollowTheSettings();
    void playbackKeepsTheMacro_data();
    void playbackKeepsTheMacro();
    void activeProfileIsNeverOffered();
    void macroNamedLikeTheActiveProfileIsHidden();
    void itemsAreValidatedWhenTheirMenuOpens();
    void manageItemsTitledLikeTheActiveProfileAreHidden();
    void noActiveProfileHidesNoUnnamedItem();
    void validationShowsAnItemAgain();
    void oddActiveProfileHidesNothing();

    void launchOpensAPanelOnTheWindow();
    void chosenApplicationIsWritten();
    void applicationWithoutInformationRestoresThePopUp();
    void cancelledPanelRestoresThePopUp();
    void launchProgramOpensTheListOfApplications();
    void applicationOfTheListIsWritten();
    void applicationOfTheListThatIsGoneRestoresThePopUp();
    void cancelledListRestoresThePopUp();
    void listEndsWithItsProfile();
    void otherReturnCodesDoNothing();

private:
    std::unique_ptr<QTemporaryDir> mResources;
};

void KeysAssignmentTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
}

void KeysAssignmentTest::init()
{
    mResources = std::make_unique<QTemporaryDir>();
    qputenv("QUILL_KESTRA_RESOURCES", mResources->path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", mResources->path().toLocal8Bit());
}

void KeysAssignmentTest::fillsThePopUpsInOrder()
{
    const auto tab = tabWithA(entry(45));
    const auto titles = [&](const char *name) {
        const PopUpButton *popUp = tab->find<PopUpButton>(name);
        QStringList list;
        for (int index = 0; index < popUp->numberOfItems(); ++index)
            list << popUp->itemTitleAtIndex(index);
        return list;
    };
    QStringList assignments, repeats;
    for (const char *key :
         {"lkeyDefaultKey", "lkeySingleKey", "lkeyMacro", "lkeyProfile", "lkeyLaunchProgram", "lkeyDisable"})
        assignments << localizedText(key);
    for (const char *key :
         {"lkeyPlayMacroOnce", "lkeyRepeatUntilReleased", "lkeyRepeatUntilPressedAgain", "lkeyRepeat2Times",
          "lkeyRepeat3Times", "lkeyRepeat4Times", "lkeyRepeat5Times", "lkeyRepeat6Times", "lkeyRepeat7Times",
          "lkeyRepeat8Times", "lkeyRepeat9Times", "lkeyRepeat10Times"})
        repeats << localizedText(key);
    QCOMPARE(titles("mAssignFunction"), assignments);
    QCOMPARE(titles("mMacroPlaybackPopUp"), repeats);
    QVERIFY(!(assignments + repeats).contains(u"No Translation"_s));
}

void KeysAssignmentTest::populatingTwiceFillsOnce()
{
    const auto tab = tabWithA(entry(45));
    tab->controller->populateUIControls();
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->numberOfItems(), 6);
    QCOMPARE(tab->find<PopUpButton>("mMacroPlaybackPopUp")->numberOfItems(), 12);
}

void KeysAssignmentTest::showsTheEntryOfTheSelectedKey_data()
{
    QTest::addColumn<QVariantMap>("keyA");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("showsPlayback");
    const QString none;
    QTest::newRow("absent") << QVariantMap() << 0 << localizedText("lkeyDefaultKey") << false;
    QTest::newRow("default") << entry(45) << 0 << localizedText("lkeyDefaultKey") << false;
    QTest::newRow("single key") << entry(16, 6, 1) << 1 << localizedText("lkeySingleKey") + u": Left Control + C"_s
                                << false;
    QTest::newRow("macro") << entry(10, 1, 1) << 2 << localizedText("lkeyMacro") + u": Burst"_s << true;
    QTest::newRow("profile") << entry(17, 2) << 3 << localizedText("lkeyProfile") + u": Browser"_s << false;
    QTest::newRow("program") << entry(46, u"/Applications/Text Editor.app"_s, u""_s) << 4
                             << localizedText("lkeyLaunchProgram") + u": Text Editor"_s << false;
    QTest::newRow("program, version in its name") << entry(46, u"/opt/Tool 2.1.app"_s, u""_s) << 4
                                                  << localizedText("lkeyLaunchProgram") + u": Tool 2.1"_s << false;
    QTest::newRow("program, slash at the end")
        << entry(46, u"/opt/Tool.app/"_s, u""_s) << 4 << localizedText("lkeyLaunchProgram") + u": Tool"_s << false;
    QTest::newRow("single key without a name")
        << entry(16, 0, 0) << 1 << localizedText("lkeySingleKey") + u": "_s << false;
    QTest::newRow("disabled") << entry(20) << 5 << localizedText("lkeyDisable") << false;
    QTest::newRow("unknown") << entry(30) << 0 << localizedText("lkeyDefaultKey") << false;
    QTest::newRow("macro past the end") << entry(10, 2, 1) << 2 << u"Macro: no. 3 (does not exist)"_s << true;
    QTest::newRow("negative macro") << entry(10, -1, 1) << 2 << u"Macro: no. 0 (does not exist)"_s << true;
    QTest::newRow("profile past the end")
        << entry(17, 99) << 3 << u"Switch profile: no. 100 (does not exist)"_s << false;
}

void KeysAssignmentTest::showsTheEntryOfTheSelectedKey()
{
    QFETCH(QVariantMap, keyA);
    QFETCH(int, position);
    QFETCH(QString, title);
    QFETCH(bool, showsPlayback);
    const auto tab = tabWithA(keyA);
    const PopUpButton *popUp = tab->find<PopUpButton>("mAssignFunction");
    QCOMPARE(popUp->indexOfSelectedItem(), position);
    QCOMPARE(popUp->titleOfSelectedItem(), title);
    QCOMPARE(!tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden(), showsPlayback);
    QCOMPARE(!tab->find<QLabel>("mPlaybackOptionLabel")->isHidden(), showsPlayback);
    QVERIFY(tab->delegate.calls.isEmpty());
}

void KeysAssignmentTest::showsAnUnknownAssignment()
{
    const auto tab = tabWithA(entry(30));
    auto *popUp = tab->find<PopUpButton>("mAssignFunction");
    QCOMPARE(popUp->text(), u"Unknown assignment"_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(popUp)->text(QAccessible::Value), u"Unknown assignment"_s);
    tab->key("mB")->click();
    QCOMPARE(popUp->text(), u"Default key"_s);
    tab->key("mA")->click();
    QCOMPARE(popUp->text(), u"Unknown assignment"_s);
    // The first item still gives the key its default.
    QCOMPARE(popUp->itemAtIndex(0)->text(), u"Default key"_s);
    QVERIFY(!popUp->itemAtIndex(0)->isChecked());
    popUp->itemAtIndex(0)->trigger();
    QCOMPARE(tab->delegate.sentEntry(u"4"_s).value(SettingsKeys::command), QVariant(45));
}

void KeysAssignmentTest::titlesBecomePlainOnAnotherKey_data()
{
    QTest::addColumn<QVariantMap>("keyA");
    QTest::addColumn<int>("position");
    QTest::newRow("single key") << entry(16, 6, 1) << 1;
    QTest::newRow("macro") << entry(10, 0, 1) << 2;
    QTest::newRow("profile") << entry(17, 1) << 3;
    QTest::newRow("program") << entry(46, u"/opt/Tool.app"_s, u""_s) << 4;
}

void KeysAssignmentTest::titlesBecomePlainOnAnotherKey()
{
    QFETCH(QVariantMap, keyA);
    QFETCH(int, position);
    const auto tab = tabWithA(keyA);
    const PopUpButton *popUp = tab->find<PopUpButton>("mAssignFunction");
    const QStringList plain{localizedText("lkeyDefaultKey"),    localizedText("lkeySingleKey"),
                            localizedText("lkeyMacro"),         localizedText("lkeyProfile"),
                            localizedText("lkeyLaunchProgram"), localizedText("lkeyDisable")};
    for (int index = 0; index < plain.size(); ++index)
        QCOMPARE(popUp->itemTitleAtIndex(index) == plain[index], index != position);
    tab->key("mB")->click();
    for (int index = 0; index < plain.size(); ++index)
        QCOMPARE(popUp->itemTitleAtIndex(index), plain[index]);
    QCOMPARE(popUp->indexOfSelectedItem(), 0);
    QVERIFY(tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
}

void KeysAssignmentTest::showsTheStoredRepeatMode_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("position");
    QTest::newRow("0 is once") << 0 << 0;
    QTest::newRow("1 is once") << 1 << 0;
    QTest::newRow("2") << 2 << 3;
    QTest::newRow("10") << 10 << 11;
    QTest::newRow("11 is once") << 11 << 0;
    QTest::newRow("until pressed again") << 254 << 2;
    QTest::newRow("until released") << 255 << 1;
}

void KeysAssignmentTest::showsTheStoredRepeatMode()
{
    QFETCH(int, value);
    QFETCH(int, position);
    const auto tab = tabWithA(entry(10, 0, value));
    QCOMPARE(tab->find<PopUpButton>("mMacroPlaybackPopUp")->indexOfSelectedItem(), position);
    QCOMPARE(tab->controller->macroRepeat(value), position);
}

void KeysAssignmentTest::oddEntriesShowWithoutCrash_data()
{
    QTest::addColumn<QVariant>("keys");
    QTest::addColumn<int>("position");
    const auto keyA = [](const QVariant &value) { return QVariant(QVariantMap{{u"4"_s, value}}); };
    QTest::newRow("keys are text") << QVariant(u"Keys"_s) << 0;
    QTest::newRow("entry is an array") << keyA(QVariantList{10, 0, 1}) << 0;
    QTest::newRow("command is data") << keyA(entry(QByteArray("10"))) << 0;
    QTest::newRow("macro index is a dictionary") << keyA(entry(10, QVariantMap(), QVariantList())) << 2;
    QTest::newRow("macro index is huge") << keyA(entry(10, qlonglong(1) << 50, 1e300)) << 2;
    QTest::newRow("program path is a number") << keyA(entry(46, 12, 0)) << 4;
    QTest::newRow("single key is negative") << keyA(entry(16, -5, -1)) << 1;
}

void KeysAssignmentTest::oddEntriesShowWithoutCrash()
{
    QFETCH(QVariant, keys);
    QFETCH(int, position);
    QVariantMap odd = profile(u"P"_s);
    odd.insert(SettingsKeys::keys, keys);
    Tab tab(odd, {u"no profile"_s, QVariantList()}, {5, QVariantMap{{SettingsKeys::macroName, 7}}});
    tab.key("mA")->click();
    QCOMPARE(tab.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), position);
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    QCOMPARE(tab.delegate.sentEntry(u"4"_s).value(SettingsKeys::command), QVariant(20));
}

void KeysAssignmentTest::defaultKeyTakesParamOneOfTheDefaultEntry()
{
    const auto tab = tabWithA(entry(20));
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(0)->trigger();
    QCOMPARE(tab->delegate.calls, QStringList{u"updateKeySettings"_s});
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(45, 77, 0));
}

void KeysAssignmentTest::defaultKeyWithoutDefaultEntryWritesZero()
{
    const auto tab = tabWithA(entry(20));
    tab->key("mB")->click();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(0)->trigger();
    QCOMPARE(tab->delegate.sentEntry(u"5"_s), entry(45, 0, 0));
}

void KeysAssignmentTest::disableWritesZeroes()
{
    const auto tab = tabWithA(entry(10, 1, 255));
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    QCOMPARE(tab->delegate.sent.size(), 1);
    QCOMPARE(tab->delegate.sent.first().keys(), QStringList{u"Keys"_s});
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(20, 0, 0));
}

void KeysAssignmentTest::writingKeepsFurtherKeysAndOtherEntries()
{
    QVariantMap keyA = entry(45);
    keyA.insert(u"note"_s, u"mine"_s);
    Tab tab(profile(u"P"_s, {{u"4"_s, keyA}, {u"5"_s, entry(16, 9, 0)}}));
    tab.key("mA")->click();
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    QVariantMap expected = entry(20, 0, 0);
    expected.insert(u"note"_s, u"mine"_s);
    QCOMPARE(tab.delegate.sent.first(),
             (QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, expected}, {u"5"_s, entry(16, 9, 0)}}}}));
}

void KeysAssignmentTest::changesReturnOnlyThroughTheController()
{
    const auto tab = tabWithA(entry(45));
    const QVariantMap before = tab->controller->keysCurrentProfileDict();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    QCOMPARE(tab->controller->keysCurrentProfileDict(), before);
    QCOMPARE(tab->key("mA")->mark(), KeyMark::none);
    tab->giveBack(tab->delegate.sent.first().value(u"Keys"_s).toMap());
    QCOMPARE(tab->key("mA")->mark(), KeyMark::disabled);
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void KeysAssignmentTest::macroItemItselfSendsNothing_data()
{
    QTest::addColumn<int>("position");
    QTest::newRow("macro") << 2;
    QTest::newRow("profile") << 3;
}

void KeysAssignmentTest::macroItemItselfSendsNothing()
{
    QFETCH(int, position);
    const auto tab = tabWithA(entry(45));
    tab->find<PopUpButton>("mAssignFunction")->selectItemAtIndex(position);
    tab->controller->clickAssignFunction(nullptr);
    QVERIFY(tab->delegate.calls.isEmpty());
}

void KeysAssignmentTest::assigningHidesPlayback_data()
{
    QTest::addColumn<int>("position");
    for (const int position : {0, 1, 3, 4, 5})
        QTest::addRow("position %d", position) << position;
}

void KeysAssignmentTest::assigningHidesPlayback()
{
    QFETCH(int, position);
    const auto tab = tabWithA(entry(10, 0, 1));
    QVERIFY(!tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
    tab->find<PopUpButton>("mAssignFunction")->selectItemAtIndex(position);
    tab->controller->clickAssignFunction(nullptr);
    QVERIFY(tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
    QVERIFY(tab->find<QLabel>("mPlaybackOptionLabel")->isHidden());
}

void KeysAssignmentTest::macroItemItselfKeepsPlayback()
{
    const auto tab = tabWithA(entry(10, 0, 1));
    tab->controller->clickAssignFunction(nullptr); // position 2 is already selected
    QVERIFY(!tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
    QVERIFY(!tab->find<QLabel>("mPlaybackOptionLabel")->isHidden());
}

void KeysAssignmentTest::profileSubMenuListsAllProfiles()
{
    const auto tab = tabWithA(entry(45));
    const QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(3);
    QCOMPARE(menuItemTitle(menu->actions().value(0)), localizedText("lkeyManageProfile"));
    QCOMPARE(menuItemTag(menu->actions().value(0)), 0);
    QVERIFY(menu->actions().value(1)->isSeparator());
    QStringList titles;
    QList<int> tags;
    for (const QAction *item : records(menu)) {
        titles << menuItemTitle(item);
        tags << menuItemTag(item);
    }
    QCOMPARE(titles, (QStringList{u"Raid"_s, u"Desktop"_s, u"Browser"_s}));
    QCOMPARE(tags, (QList<int>{1, 2, 3}));
}

void KeysAssignmentTest::macroSubMenuListsAllMacros()
{
    const auto tab = tabWithA(entry(45));
    const QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2);
    QCOMPARE(menuItemTitle(menu->actions().value(0)), localizedText("lkeyManageMacro"));
    QCOMPARE(menuItemTag(menu->actions().value(0)), 0);
    QVERIFY(menu->actions().value(1)->isSeparator());
    QCOMPARE(records(menu).size(), 2);
    QCOMPARE(menuItemTitle(records(menu).value(0)), u"Heal"_s);
    QCOMPARE(menuItemTag(records(menu).value(0)), 1);
    QCOMPARE(menuItemTitle(records(menu).value(1)), u"Burst"_s);
    QCOMPARE(menuItemTag(records(menu).value(1)), 2);
}

void KeysAssignmentTest::manageItemsSwitchTabsAndSendNothing()
{
    const auto tab = tabWithA(entry(45));
    PopUpButton *popUp = tab->find<PopUpButton>("mAssignFunction");
    popUp->submenuAtIndex(3)->actions().first()->trigger();
    popUp->submenuAtIndex(2)->actions().first()->trigger();
    QCOMPARE(tab->delegate.calls, (QStringList{u"selectTabAtIndex 1"_s, u"selectTabAtIndex 2"_s}));
    QCOMPARE(tab->controller->selectedIndexOfMacroSubMenu(), -1);
    QCOMPARE(popUp->indexOfSelectedItem(), 0);
}

void KeysAssignmentTest::subMenuMarksTheRecordOfTheSelectedKey_data()
{
    QTest::addColumn<QVariantMap>("entry");
    QTest::addColumn<QString>("macro");
    QTest::addColumn<QString>("profile");
    QTest::newRow("macro") << entry(10, 1, 1) << u"Burst"_s << QString();
    QTest::newRow("macro that is gone") << entry(10, 2, 1) << QString() << QString();
    QTest::newRow("profile") << entry(17, 1, 0) << QString() << u"Desktop"_s;
    QTest::newRow("default key") << entry(45) << QString() << QString();
    QTest::newRow("unknown assignment") << entry(99, 1, 0) << QString() << QString();
}

void KeysAssignmentTest::subMenuMarksTheRecordOfTheSelectedKey()
{
    QFETCH(QVariantMap, entry);
    const auto tab = tabWithA(entry);
    const auto marked = [&tab](int position) {
        QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(position);
        menu->popup(QPoint(0, 0));
        QStringList titles;
        for (const QAction *item : menu->actions()) {
            if (item->isChecked())
                titles << menuItemTitle(item);
        }
        menu->close();
        return titles.join(u", "_s);
    };
    QTEST(marked(2), "macro");
    QTEST(marked(3), "profile");
    tab->key("mB")->click(); // has no entry
    QCOMPARE(marked(2) + marked(3), QString());
}

void KeysAssignmentTest::longSubMenusHaveOneColumn()
{
    const auto tab = tabWithA(entry(45));
    QVariantList macros;
    for (int number = 0; number < 256; ++number)
        macros << macro(u"Macro %1"_s.arg(number));
    tab->controller->setMAllMacrosArray(macros);
    tab->controller->updateUISettings();
    QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2);
    menu->popup(QPoint(0, 0));
    for (QAction *item : menu->actions())
        QCOMPARE(menu->actionGeometry(item).left(), menu->actionGeometry(menu->actions().first()).left());
    menu->close();
}

void KeysAssignmentTest::profileFromSubMenuIsWritten()
{
    const auto tab = tabWithA(entry(45));
    records(tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(3)).value(2)->trigger();
    QCOMPARE(tab->delegate.calls, QStringList{u"updateKeySettings"_s});
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(17, 2, 0));
}

void KeysAssignmentTest::macroFromSubMenuResetsRepeatToOnce()
{
    const auto tab = tabWithA(entry(10, 1, 255));
    tab->find<PopUpButton>("mAssignFunction")->selectItemAtIndex(5);
    records(tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2)).value(1)->trigger();
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(10, 1, 1));
    QCOMPARE(tab->controller->selectedIndexOfMacroSubMenu(), 1);
    QVERIFY(!tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
    QVERIFY(!tab->find<QLabel>("mPlaybackOptionLabel")->isHidden());
}

void KeysAssignmentTest::macroFromSubMenuShowsPlayback()
{
    const auto tab = tabWithA(entry(20));
    QVERIFY(tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
    records(tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2)).value(0)->trigger();
    QCOMPARE(tab->delegate.calls, QStringList{u"updateKeySettings"_s});
    QVERIFY(!tab->find<PopUpButton>("mMacroPlaybackPopUp")->isHidden());
    QVERIFY(!tab->find<QLabel>("mPlaybackOptionLabel")->isHidden());
}

void KeysAssignmentTest::subMenusFollowTheSettings()
{
    const auto tab = tabWithA(entry(45));
    tab->controller->setMAllMacrosArray({macro(u"New"_s)});
    tab->controller->updateUISettings();
    const QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2);
    QCOMPARE(records(menu).size(), 1);
    QCOMPARE(menuItemTitle(records(menu).first()), u"New"_s);
}

void KeysAssignmentTest::playbackKeepsTheMacro_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("value");
    QTest::newRow("once") << 0 << 1;
    QTest::newRow("until released") << 1 << 255;
    QTest::newRow("until pressed again") << 2 << 254;
    QTest::newRow("twice") << 3 << 2;
    QTest::newRow("ten times") << 11 << 10;
}

void KeysAssignmentTest::playbackKeepsTheMacro()
{
    QFETCH(int, position);
    QFETCH(int, value);
    const auto tab = tabWithA(entry(10, 1, 1));
    tab->find<PopUpButton>("mMacroPlaybackPopUp")->itemAtIndex(position)->trigger();
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(10, 1, value));
}

void KeysAssignmentTest::activeProfileIsNeverOffered()
{
    const auto tab = tabWithA(entry(45));
    tab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 1}});
    tab->controller->updateUISettings();
    QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(3);
    Q_EMIT menu->aboutToShow();
    QList<bool> shown;
    for (const QAction *item : records(menu)) {
        shown << item->isVisible();
        QCOMPARE(item->isEnabled(), item->isVisible());
    }
    QCOMPARE(shown, (QList<bool>{true, false, true}));
}

void KeysAssignmentTest::macroNamedLikeTheActiveProfileIsHidden()
{
    const auto tab = tabWithA(entry(45), {macro(u"Raid"_s), macro(u"Heal"_s)});
    const QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(2);
    QVERIFY(!records(menu).value(0)->isVisible());
    QVERIFY(!records(menu).value(0)->isEnabled());
    QVERIFY(records(menu).value(1)->isVisible());
}

void KeysAssignmentTest::itemsAreValidatedWhenTheirMenuOpens()
{
    const auto tab = tabWithA(entry(45), {macro(u"Browser"_s)});
    tab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 2}}); // without a redraw
    for (const int position : {2, 3}) {
        QMenu *menu = tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(position);
        QVERIFY(records(menu).last()->isVisible());
        menu->popup(QPoint(0, 0));
        QVERIFY(!records(menu).last()->isVisible());
        menu->close();
    }
}

void KeysAssignmentTest::manageItemsTitledLikeTheActiveProfileAreHidden()
{
    Tab tab(profile(localizedText("lkeyManageMacro")), {profile(u"Raid"_s)}, {macro(u"Heal"_s)});
    const PopUpButton *popUp = tab.find<PopUpButton>("mAssignFunction");
    QVERIFY(!popUp->submenuAtIndex(2)->actions().first()->isVisible());
    QVERIFY(records(popUp->submenuAtIndex(2)).first()->isVisible());
    QVERIFY(popUp->submenuAtIndex(3)->actions().first()->isVisible());
    QVERIFY(!records(popUp->submenuAtIndex(3)).first()->isVisible());
}

void KeysAssignmentTest::noActiveProfileHidesNoUnnamedItem()
{
    Tab tab(profile(u"P"_s), {profile(QString())}, {macro(u""_s), QVariantMap()}, {{SettingsKeys::activeProfile, 7}});
    const PopUpButton *popUp = tab.find<PopUpButton>("mAssignFunction");
    for (const int position : {2, 3})
        for (const QAction *item : records(popUp->submenuAtIndex(position)))
            QVERIFY(item->isVisible() && item->isEnabled());
    // An active profile without a name is still never offered.
    tab.controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 1}});
    tab.controller->updateUISettings();
    QVERIFY(!records(popUp->submenuAtIndex(3)).value(1)->isVisible());
}

void KeysAssignmentTest::validationShowsAnItemAgain()
{
    const auto tab = tabWithA(entry(45));
    QMenu menu;
    QAction *item = addMenuItem(&menu, u"Raid"_s, 1);
    QVERIFY(!tab->controller->validateMenuItem(item));
    QVERIFY(!item->isVisible());
    tab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 2}});
    QVERIFY(tab->controller->validateMenuItem(item));
    QVERIFY(item->isVisible());
    QVERIFY(item->isEnabled());
}

void KeysAssignmentTest::oddActiveProfileHidesNothing()
{
    const auto tab = tabWithA(entry(45));
    for (const QVariant &active : {QVariant(-1), QVariant(99), QVariant(QVariantMap{{u"x"_s, 1}})}) {
        tab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, active}});
        tab->controller->updateUISettings();
        // A dictionary reads as 0, the first profile.
        const bool firstIsActive = active.typeId() == QMetaType::QVariantMap;
        QCOMPARE(records(tab->find<PopUpButton>("mAssignFunction")->submenuAtIndex(3)).first()->isVisible(),
                 !firstIsActive);
    }
}

void KeysAssignmentTest::launchOpensAPanelOnTheWindow()
{
    const auto tab = tabWithA(entry(45));
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    QVERIFY(!tab->controller->openPanel());
    QVERIFY(chooseOtherApplication());
    QVERIFY(!tab->controller->applicationChooser()->isVisible());
    const QPointer<OpenPanel> first = tab->controller->openPanel();
    QVERIFY(first);
    QVERIFY(first->isVisible());
    QCOMPARE(first->windowModality(), Qt::WindowModal);
    QCOMPARE(first->parentWidget(), &tab->window);
    QCOMPARE(first->fileMode(), QFileDialog::ExistingFile);
    QVERIFY(first->nameFilters().first().contains(u"*.app *.desktop"_s));
    QCOMPARE(first->directory().absolutePath(), QDir(ApplicationInformation::startFolder()).absolutePath());
    QVERIFY(tab->delegate.calls.isEmpty());
    tab->controller->clickAssignFunction(nullptr);
    QVERIFY(!first);
    QVERIFY(chooseOtherApplication());
    QVERIFY(tab->controller->openPanel());
}

void KeysAssignmentTest::chosenApplicationIsWritten()
{
    const auto tab = tabWithA(entry(45));
    const QString file = writeDesktopEntry(mResources->filePath(u"chosen.desktop"_s), "Exec=chosen\n");
    const QString link = mResources->filePath(u"link.desktop"_s);
    QVERIFY(QFile::link(file, link));
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    QVERIFY(chooseOtherApplication());
    OpenPanel *panel = tab->controller->openPanel();
    panel->setDirectory(mResources->path());
    panel->selectFile(link);
    QMetaObject::invokeMethod(panel, "accept");
    QCOMPARE(tab->delegate.calls, QStringList{u"updateKeySettings"_s});
    const QVariantMap sent = tab->delegate.sentEntry(u"4"_s);
    QCOMPARE(sent, entry(46, QFileInfo(file).canonicalFilePath(), u""_s));
    QCOMPARE(sent.value(SettingsKeys::param2).typeId(), int(QMetaType::QString));
}

void KeysAssignmentTest::applicationWithoutInformationRestoresThePopUp()
{
    const auto tab = tabWithA(entry(20));
    OpenPanel panel({}, &tab->window);
    tab->find<PopUpButton>("mAssignFunction")->selectItemAtIndex(4);
    tab->controller->openPanelDidEndReturnCodeContextInfo(&panel, 1, nullptr);
    QVERIFY(tab->delegate.calls.isEmpty());
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void KeysAssignmentTest::cancelledPanelRestoresThePopUp()
{
    const auto tab = tabWithA(entry(20));
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    QVERIFY(chooseOtherApplication());
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 4);
    tab->controller->openPanel()->reject();
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
    QVERIFY(tab->delegate.calls.isEmpty());
}

void KeysAssignmentTest::launchProgramOpensTheListOfApplications()
{
    const auto tab = tabWithA(entry(45));
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    const QPointer<ApplicationChooser> first = tab->controller->applicationChooser();
    QVERIFY(first && first->isVisible());
    QCOMPARE(first->windowModality(), Qt::WindowModal);
    QCOMPARE(first->parentWidget(), &tab->window);
    // A key launches an entry: a window without one is of no use.
    first->setApplications({}, {{.windowClass = u"Game.exe"_s}});
    QCOMPARE(first->findChild<QListView *>()->model()->rowCount(), 0);
    tab->controller->clickAssignFunction(nullptr);
    QVERIFY(!first);
    QVERIFY(tab->controller->applicationChooser()->isVisible());
    QVERIFY(tab->delegate.calls.isEmpty());
}

void KeysAssignmentTest::applicationOfTheListIsWritten()
{
    const auto tab = tabWithA(entry(45));
    const QString file =
        writeDesktopEntry(mResources->filePath(u"applications/notes.desktop"_s), "Name=Kestra Notes\nExec=notes\n");
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    QVERIFY(chooseApplicationByName(u"kestra not"_s));
    QCOMPARE(tab->delegate.calls, QStringList{u"updateKeySettings"_s});
    const QVariantMap sent = tab->delegate.sentEntry(u"4"_s);
    QCOMPARE(sent, entry(46, QFileInfo(file).canonicalFilePath(), u""_s));
    QCOMPARE(sent.value(SettingsKeys::param2).typeId(), int(QMetaType::QString));
    QVERIFY(!tab->controller->openPanel());
}

void KeysAssignmentTest::applicationOfTheListThatIsGoneRestoresThePopUp()
{
    const auto tab = tabWithA(entry(20));
    const QString file =
        writeDesktopEntry(mResources->filePath(u"applications/gone.desktop"_s), "Name=Kestra Gone\nExec=gone\n");
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    QVERIFY(QFile::remove(file));
    QVERIFY(chooseApplicationByName(u"kestra gone"_s));
    QVERIFY(tab->delegate.calls.isEmpty());
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void KeysAssignmentTest::cancelledListRestoresThePopUp()
{
    const auto tab = tabWithA(entry(20));
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 4);
    tab->controller->applicationChooser()->reject();
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
    QVERIFY(tab->delegate.calls.isEmpty());
}

void KeysAssignmentTest::listEndsWithItsProfile()
{
    const auto tab = tabWithA(entry(20));
    tab->window.show();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger();
    tab->controller->updateUISettings();
    QVERIFY(tab->controller->applicationChooser()->isVisible());
    // Simulates a profile switch by the application in front.
    tab->controller->setMKeysCurrentProfileDict(tab->controller->allProfilesArray().at(1).toMap());
    tab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 1}});
    tab->controller->updateUISettings();
    QVERIFY(!tab->controller->applicationChooser()->isVisible());
    QVERIFY(!tab->controller->openPanel());
    QVERIFY(tab->delegate.calls.isEmpty());
}

void KeysAssignmentTest::otherReturnCodesDoNothing()
{
    const auto tab = tabWithA(entry(20));
    OpenPanel panel({}, &tab->window);
    tab->find<PopUpButton>("mAssignFunction")->selectItemAtIndex(4);
    tab->controller->openPanelDidEndReturnCodeContextInfo(&panel, 7, nullptr);
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 4);
    QVERIFY(tab->delegate.calls.isEmpty());
}

QTEST_MAIN(KeysAssignmentTest)
#include "keysassignmenttest.moc"
