// SPDX-License-Identifier: MIT
// The names in the list: adding, copying and renaming.
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/testmain.h"

#include "platform/pulldownbutton.h"
#include "tests/support/uniquenamecases.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class KeyboardProfilesNamesTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { openTab(); }
    void cleanup() { closeTab(); }

    void namesAreMadeUnique_data() { UniqueNameCases::addRows(); }
    void namesAreMadeUnique();
    void addSendsTheDefaultRecordUnderAFreeName();
    void addOpensTheNewNameForEditing();
    void addSwitchesNoProfile();
    void addDisablesTheControlsMeanwhile();
    void addOpensTheNameEvenWithoutAnAnswer();
    void addingDisablesAndEnablesTheControls_data();
    void addingDisablesAndEnablesTheControls();
    void refusedAddLeavesTheOnlyProfileUndeletable();
    void typedNameIsWrittenBeforeTheNewName_data();
    void typedNameIsWrittenBeforeTheNewName();
    void copySendsTheSelectedRecordUnderAFreeName();
    void copyKeepsTheControlsEnabled();
    void selectionSwitchesAgainAfterACopy();
    void typingANameRenames();
    void renamesByTheRule_data();
    void renamesByTheRule();
    void renameSendsTheSelectedRow();
    void renameReadsNothing();
    void renameShiftsTheLocalListWithoutAReply();
    void emptyAndOtherValuesRenameNothing_data();
    void emptyAndOtherValuesRenameNothing();
    void newNameIsOpenedOnce();
    void openedNameTakesTheFocusOnce();
    void ambiguousNameIsNotOpened();
    void otherProfileThatBecomesActiveAfterAnAddKeepsItsRecord_data();
    void otherProfileThatBecomesActiveAfterAnAddKeepsItsRecord();
};

void KeyboardProfilesNamesTest::namesAreMadeUnique()
{
    QFETCH(QVariantList, names);
    QFETCH(QString, wanted);
    const QVariantList profiles = UniqueNameCases::records(names, "ProfileName"_L1);
    QTEST(mController->checkForDuplicateNameUsingDefaultName(profiles, wanted), "result");
    QCOMPARE(mController->checkForDuplicateNameUsingDefaultName({}, wanted), wanted);
}

void KeyboardProfilesNamesTest::addSendsTheDefaultRecordUnderAFreeName()
{
    fill({u"Untitled Profile"_s, u"Untitled Profile(2)"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Untitled Profile(3)"_s));
    QCOMPARE(mController->defaultProfileDict(), profileNamed(u"Default"_s));
}

void KeyboardProfilesNamesTest::addOpensTheNewNameForEditing()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(table()->model()->rowCount(), 3);
    QCOMPARE(table()->selectedRow(), 2);
    QCOMPARE(table()->editedRow(), 2);
    QCOMPARE(editor()->selectedText(), u"Untitled Profile"_s);
    QTest::keyClicks(editor(), u"Night"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->operations(), (QStringList{u"add"_s, u"rename"_s}));
    QCOMPARE(mDelegate->calls.last().profileID, 2);
    QCOMPARE(mDelegate->calls.last().settings, profileNamed(u"Night"_s));
    // The next refresh does not open the name for editing again.
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesNamesTest::addSwitchesNoProfile()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QVERIFY(!mDelegate->operations().contains(u"switch"_s));
}

void KeyboardProfilesNamesTest::addDisablesTheControlsMeanwhile()
{
    fill({u"A"_s, u"B"_s});
    bool wereOff = false;
    mDelegate->duringAdd = [&] {
        // The add button follows the number of profiles, even meanwhile.
        wereOff = outlet<QPushButton>("mAddProfile")->isEnabled()
                  && !outlet<PulldownButton>("mSettingsProfile")->isEnabled()
                  && !outlet<QCheckBox>("mEnableOnScreenDisplay")->isEnabled();
    };
    outlet<QPushButton>("mAddProfile")->click();
    QVERIFY(wereOff);
    for (const char *name : {"mAddProfile", "mDeleteProfile", "mSettingsProfile", "mEnableOnScreenDisplay"})
        QVERIFY2(outlet<QWidget>(name)->isEnabled(), name);
}

void KeyboardProfilesNamesTest::addOpensTheNameEvenWithoutAnAnswer()
{
    fill({u"A"_s});
    mDelegate->answers = false;
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(table()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"Untitled Profile"_s);
    QCOMPARE(table()->selectedRow(), 1);
}

void KeyboardProfilesNamesTest::addingDisablesAndEnablesTheControls_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("canAdd");
    QTest::newRow("2") << 2 << true;
    QTest::newRow("19") << 19 << true;
    QTest::newRow("20") << 20 << false;
}

void KeyboardProfilesNamesTest::addingDisablesAndEnablesTheControls()
{
    QFETCH(int, count);
    fillCount(count);
    for (const bool isOn : {false, true}) {
        mController->enableControlsForAddProfiles(isOn);
        for (const char *name : {"mDeleteProfile", "mSettingsProfile", "mEnableOnScreenDisplay"})
            QVERIFY2(outlet<QWidget>(name)->isEnabled() == isOn, name);
        QTEST(outlet<QPushButton>("mAddProfile")->isEnabled(), "canAdd");
        QVERIFY(table()->isEnabled());
    }
}

void KeyboardProfilesNamesTest::refusedAddLeavesTheOnlyProfileUndeletable()
{
    fill({u"A"_s});
    mDelegate->refusesToAdd = true;
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
    QCOMPARE(table()->model()->rowCount(), 1); // a request for the table's rows would set the button
    QVERIFY(!outlet<QPushButton>("mDeleteProfile")->isEnabled());
    QVERIFY(outlet<QPushButton>("mAddProfile")->isEnabled());
}

void KeyboardProfilesNamesTest::typedNameIsWrittenBeforeTheNewName_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("added");
    QTest::newRow("add") << int(ProfileCommands::newProfile) << u"Untitled Profile(2)"_s;
    QTest::newRow("copy") << int(ProfileCommands::copy) << u"Untitled Profile(2)"_s;
}

void KeyboardProfilesNamesTest::typedNameIsWrittenBeforeTheNewName()
{
    QFETCH(int, tag);
    fill({u"A"_s, u"B"_s});
    choose(ProfileCommands::rename);
    QVERIFY(editor());
    QTest::keyClicks(editor(), u"Untitled Profile"_s);
    choose(tag);
    QCOMPARE(mDelegate->operations(), (QStringList{u"rename"_s, u"add"_s}));
    QCOMPARE(mDelegate->calls.first().profileID, 0);
    QCOMPARE(mDelegate->calls.first().settings.value(u"ProfileName"_s), QVariant(u"Untitled Profile"_s));
    QTEST(mDelegate->calls.last().settings.value(u"ProfileName"_s).toString(), "added");
    QCOMPARE(table()->numberOfRows(), 3);
    QCOMPARE(table()->selectedRow(), 2);
}

void KeyboardProfilesNamesTest::copySendsTheSelectedRecordUnderAFreeName()
{
    mDelegate->profiles = {profileNamed(u"A"_s), profileNamed(u"Work"_s, u"Editor"_s, 1)};
    mDelegate->active = 1;
    mDelegate->refresh();
    choose(ProfileCommands::copy);
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Work(2)"_s, u"Editor"_s, 1));
    QCOMPARE(table()->selectedRow(), 2);
    QCOMPARE(table()->editedRow(), 2);
    QCOMPARE(editor()->selectedText(), u"Work(2)"_s);
    // Unlike an added profile, a copy is not opened again by the next refresh.
    table()->abortEditing();
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesNamesTest::copyKeepsTheControlsEnabled()
{
    fill({u"A"_s, u"B"_s});
    bool wereOn = false;
    mDelegate->duringAdd = [&] {
        wereOn = outlet<PulldownButton>("mSettingsProfile")->isEnabled()
                 && outlet<QCheckBox>("mEnableOnScreenDisplay")->isEnabled();
    };
    choose(ProfileCommands::copy);
    QVERIFY(wereOn);
}

void KeyboardProfilesNamesTest::selectionSwitchesAgainAfterACopy()
{
    fill({u"A"_s, u"B"_s});
    choose(ProfileCommands::copy);
    table()->abortEditing();
    mDelegate->calls.clear();
    table()->selectRow(1);
    QCOMPARE(mDelegate->operations(), QStringList{u"switch"_s});
}

void KeyboardProfilesNamesTest::typingANameRenames()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 1);
    const QRect cell = table()->visualRect(table()->model()->index(1, 1));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    QVERIFY(editor());
    QTest::keyClicks(editor(), u"Night"_s);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_COMPARE(mDelegate->operations(), QStringList{u"rename"_s});
    QCOMPARE(mDelegate->calls.first().profileID, 1);
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Night"_s));
    QCOMPARE(table()->model()->index(1, 1).data().toString(), u"Night"_s);
    QCOMPARE(table()->model()->index(2, 1).data().toString(), u"C"_s);
}

void KeyboardProfilesNamesTest::renamesByTheRule_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");
    QTest::newRow("to its own name") << 0 << u"A"_s << u"A"_s;
    QTest::newRow("to another's name") << 1 << u"A"_s << u"A(2)"_s;
    QTest::newRow("to a free name") << 1 << u"X"_s << u"X"_s;
    QTest::newRow("to a very long name") << 1 << QString(100'000, u'x') << QString(100'000, u'x');
}

void KeyboardProfilesNamesTest::renamesByTheRule()
{
    QFETCH(int, row);
    QFETCH(QString, typed);
    QFETCH(QString, result);
    fill({u"A"_s, u"B"_s}, row);
    mController->tableViewSetObjectValueForTableColumnRow(table(), typed, u"name"_s, row);
    QCOMPARE(mDelegate->operations(), QStringList{u"rename"_s});
    QCOMPARE(mDelegate->calls.first().profileID, row);
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(result));
    QCOMPARE(mController->userSettingsDict(), profileNamed(result));
}

void KeyboardProfilesNamesTest::renameSendsTheSelectedRow()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 2);
    mDelegate->answers = false;
    mController->tableViewSetObjectValueForTableColumnRow(table(), u"X"_s, u"name"_s, 0);
    QCOMPARE(mDelegate->calls.value(0).profileID, 2);
    QCOMPARE(mDelegate->calls.value(0).settings, profileNamed(u"X"_s));
    QCOMPARE(table()->selectedRow(), 2);
}

void KeyboardProfilesNamesTest::renameReadsNothing()
{
    fill({u"A"_s, u"B"_s});
    mDelegate->answers = false;
    QSignalSpy fetched(table()->model(), &QAbstractItemModel::dataChanged);
    mController->tableViewSetObjectValueForTableColumnRow(table(), u"X"_s, u"name"_s, 0);
    QCOMPARE(mDelegate->operations(), QStringList{u"rename"_s});
    QCOMPARE(fetched.count(), 0);
}

void KeyboardProfilesNamesTest::renameShiftsTheLocalListWithoutAReply()
{
    fill({u"A"_s, u"B"_s, u"C"_s});
    mDelegate->answers = false;
    mController->tableViewSetObjectValueForTableColumnRow(table(), u"X"_s, u"name"_s, 0);
    QCOMPARE(mController->allProfilesArray(),
             (QVariantList{profileNamed(u"X"_s), profileNamed(u"C"_s), profileNamed(u""_s)}));
}

void KeyboardProfilesNamesTest::emptyAndOtherValuesRenameNothing_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("empty text") << QVariant(QString());
    QTest::newRow("number") << QVariant(5);
    QTest::newRow("nothing") << QVariant();
}

void KeyboardProfilesNamesTest::emptyAndOtherValuesRenameNothing()
{
    QFETCH(QVariant, value);
    fill({u"A"_s, u"B"_s});
    mController->tableViewSetObjectValueForTableColumnRow(table(), value, u"name"_s, 0);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(mController->allProfilesArray(), (QVariantList{profileNamed(u"A"_s), profileNamed(u"B"_s)}));
}

void KeyboardProfilesNamesTest::newNameIsOpenedOnce()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(table()->editedRow(), 2);
    QTest::keyClicks(editor(), u"Half a na"_s);
    // Another client adds a profile, which becomes the active one.
    mDelegate->profiles.append(profileNamed(u"Of another"_s));
    mDelegate->active = 3;
    mDelegate->calls.clear();
    mDelegate->refresh();
    QCOMPARE(table()->selectedRow(), 3);
    QCOMPARE(table()->editedRow(), -1);
    // Further typing changes nothing and reaches no other name.
    QTest::keyClicks(table(), u"Bad"_s);
    QTest::keyClick(table(), Qt::Key_Return);
    QCOMPARE(table()->selectedRow(), 3);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesNamesTest::openedNameTakesTheFocusOnce()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QTest::keyClick(editor(), Qt::Key_Escape);
    QWidget *focused = outlet<QWidget>("mEnableOnScreenDisplay");
    focused->setFocus();
    // Another client adds a profile, which becomes the active one.
    mDelegate->profiles.append(profileNamed(u"Of another"_s));
    mDelegate->active = 3;
    mDelegate->refresh();
    QCOMPARE(table()->selectedRow(), 3);
    QVERIFY(focused->hasFocus());
}

void KeyboardProfilesNamesTest::ambiguousNameIsNotOpened()
{
    fill({u"A"_s, u"B"_s});
    mDelegate->duringAdd = [this] {
        // Another client adds a profile under the same free name.
        mDelegate->profiles.append(profileNamed(mDelegate->calls.last().settings.value(u"ProfileName"_s).toString()));
    };
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(mController->allProfilesArray().size(), 4);
    QCOMPARE(table()->selectedRow(), 0); // the active profile
    QCOMPARE(table()->editedRow(), -1);
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
}

void KeyboardProfilesNamesTest::otherProfileThatBecomesActiveAfterAnAddKeepsItsRecord_data()
{
    QTest::addColumn<bool>("isRowChosen");
    QTest::newRow("a row is active") << true;
    QTest::newRow("no row is active") << false;
}

// The name that waits for editing is that of the last row. Written while another row is selected, it would overwrite
// the selected row with the whole record of the last one.
void KeyboardProfilesNamesTest::otherProfileThatBecomesActiveAfterAnAddKeepsItsRecord()
{
    QFETCH(bool, isRowChosen);
    fill({u"Game"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    mDelegate->calls.clear();
    mDelegate->active = isRowChosen ? 0 : 25;
    table()->deselectAll();
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
    QVERIFY(!editor());
    outlet<QPushButton>("mAddProfile")->setFocus();
    QVERIFY(!mDelegate->operations().contains(u"rename"_s));
    QCOMPARE(mController->allProfilesArray().first(), QVariant(profileNamed(u"Game"_s)));
}

QTEST_MAIN(KeyboardProfilesNamesTest)
#include "keyboardprofilesnamestest.moc"
