// SPDX-License-Identifier: MIT
// The tab's memory between two operations: the first selection, a continuing deletion or binding, a name to edit, a
// rename from the menu.
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/testmain.h"

#include "platform/filepanels.h"
#include "tests/support/writtenfile.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class KeyboardProfilesFlagsTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { closeTab(); }

    void firstSelectionStaysAfterABind();
    void firstSelectionReturnsDuringABind();
    void invalidApplicationKeepsTheFirstSelection();
    void firstSelectionStaysDuringADelete();
    void firstSelectionReturnsAfterADelete();
    void awakeningClearsTheGivenRecords();
    void awakeningForgetsABind();
    void awakeningForgetsTheNameToEdit();
    void awakeningForgetsARenameFromTheMenu();
    void awakeningExpectsADevice();
    void deleteFromTheMenuReselectsOnceAfterARename();
    void refreshesDuringAnAddSelectNothingElse();
    void deleteWritesAnotherNameThatIsBeingEdited();
    void deleteOpensTheLastNameMeanwhileAndReadsTheTable_data();
    void deleteOpensTheLastNameMeanwhileAndReadsTheTable();
    void refreshSelectsAgainAndEndsAnEdit();
    void refreshSetsTheAddButtonEvenWithoutASelection();
    void missingRowSwitchesNothing();

private:
    /// Three profiles, of which the second is active. They are shown but not yet selected, and no command is answered.
    void showUnselected();
    /// Chooses the application for the selected profile, like the menu.
    void bindApplication(const QString &file = u"racer.desktop"_s);

    QTemporaryDir mFolder;
};

void KeyboardProfilesFlagsTest::init()
{
    QVERIFY(mFolder.isValid());
    writeDesktopEntry(mFolder.filePath(u"racer.desktop"_s), "Name=Racer\nExec=racer\n");
    writeFile(mFolder.filePath(u"none.desktop"_s), "not an entry");
    openTab();
}

void KeyboardProfilesFlagsTest::showUnselected()
{
    mDelegate->answers = false;
    mController->setMAllProfilesArray({profileNamed(u"A"_s), profileNamed(u"B"_s), profileNamed(u"C"_s)});
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 1}});
    mController->refreshTableDisplay();
    QCOMPARE(table()->selectedRow(), -1);
}

void KeyboardProfilesFlagsTest::bindApplication(const QString &file)
{
    choose(ProfileCommands::assignApplication);
    QVERIFY(chooseOtherApplication());
    OpenPanel *panel = mController->profileFileBrowserPanel();
    QVERIFY(panel);
    panel->setDirectory(mFolder.path());
    panel->selectFile(mFolder.filePath(file));
    panel->accept();
    QVERIFY(!panel->isVisible());
}

void KeyboardProfilesFlagsTest::firstSelectionStaysAfterABind()
{
    showUnselected();
    bindApplication();
    table()->selectRow(2);
    QCOMPARE(table()->selectedRow(), 2);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    // Only the first selection switches nothing.
    table()->selectRow(0);
    QCOMPARE(mDelegate->operations(), (QStringList{u"update"_s, u"switch"_s}));
}

void KeyboardProfilesFlagsTest::firstSelectionReturnsDuringABind()
{
    showUnselected();
    bindApplication();
    mDelegate->duringUpdate = [this] { table()->selectRow(2); };
    bindApplication();
    QCOMPARE(table()->selectedRow(), 1);
    QCOMPARE(mDelegate->operations(), (QStringList{u"update"_s, u"update"_s}));
}

void KeyboardProfilesFlagsTest::invalidApplicationKeepsTheFirstSelection()
{
    showUnselected();
    bindApplication(u"none.desktop"_s);
    table()->selectRow(2);
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesFlagsTest::firstSelectionStaysDuringADelete()
{
    showUnselected();
    table()->selectRow(1);
    mController->awakeFromNib();
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 1}});
    mDelegate->duringDelete = [this] { table()->selectRow(2); };
    mController->deleteProfile();
    QCOMPARE(table()->selectedRow(), 2);
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
}

void KeyboardProfilesFlagsTest::firstSelectionReturnsAfterADelete()
{
    showUnselected();
    table()->selectRow(1);
    mController->awakeFromNib();
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 1}});
    mController->deleteProfile();
    table()->selectRow(2);
    QCOMPARE(table()->selectedRow(), 1);
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
}

void KeyboardProfilesFlagsTest::awakeningClearsTheGivenRecords()
{
    fill({u"A"_s, u"B"_s}, 1);
    mController->tableViewSetObjectValueForTableColumnRow(table(), u"X"_s, u"name"_s, 1);
    QVERIFY(!mController->userSettingsDict().isEmpty());
    mController->setMCurrentProfileDict(std::nullopt);
    mController->awakeFromNib();
    QCOMPARE(mController->defaultProfileDict(), QVariantMap());
    QCOMPARE(mController->userSettingsDict(), QVariantMap());
    QCOMPARE(mController->deviceSettingsDict(), QVariantMap());
    // An empty record still exists; a refresh shows the other values.
    mController->updateUISettings();
    QCOMPARE(table()->selectedRow(), 0);
}

void KeyboardProfilesFlagsTest::awakeningForgetsABind()
{
    showUnselected();
    bindApplication();
    mController->awakeFromNib();
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 1}});
    table()->selectRow(2);
    QCOMPARE(table()->selectedRow(), 1);
}

void KeyboardProfilesFlagsTest::awakeningForgetsTheNameToEdit()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    table()->abortEditing();
    mController->awakeFromNib();
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesFlagsTest::awakeningForgetsARenameFromTheMenu()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    table()->abortEditing();
    mController->awakeFromNib();
    mDelegate->refresh();
    QSignalSpy selections(table()->selectionModel(), &QItemSelectionModel::selectionChanged);
    choose(ProfileCommands::deleteProfile);
    QVERIFY(alert());
    QCOMPARE(selections.count(), 0);
}

void KeyboardProfilesFlagsTest::awakeningExpectsADevice()
{
    fill({u"A"_s, u"B"_s});
    mController->setControlsState(false);
    QVERIFY(!outlet<QPushButton>("mDeleteProfile")->isEnabled());
    mController->awakeFromNib();
    mController->refreshTableDisplay();
    QVERIFY(outlet<QPushButton>("mDeleteProfile")->isEnabled());
}

void KeyboardProfilesFlagsTest::deleteFromTheMenuReselectsOnceAfterARename()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    table()->abortEditing();
    QSignalSpy selections(table()->selectionModel(), &QItemSelectionModel::selectionChanged);
    choose(ProfileCommands::deleteProfile);
    QCOMPARE(selections.count(), 2); // deselected and selected again, which would end the edit
    QCOMPARE(table()->selectedRow(), 1);
    press("alertAlternativeButton"_L1);
    choose(ProfileCommands::deleteProfile);
    QCOMPARE(selections.count(), 2);
    QVERIFY(alert());
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesFlagsTest::refreshesDuringAnAddSelectNothingElse()
{
    fill({u"A"_s, u"B"_s}, 1);
    mDelegate->onScreenDisplay = 1;
    mDelegate->duringAdd = [this] { mDelegate->refresh(); };
    choose(ProfileCommands::newProfile);
    QCOMPARE(table()->selectedRow(), 2);                               // although the second is still the active one
    QVERIFY(outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked()); // at the end of the addition
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
    table()->abortEditing();
    mDelegate->refresh();
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked());
}

void KeyboardProfilesFlagsTest::deleteWritesAnotherNameThatIsBeingEdited()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 1);
    choose(ProfileCommands::rename);
    QVERIFY(editor());
    QTest::keyClicks(editor(), u"Night"_s);
    mController->deleteProfile();
    QCOMPARE(mDelegate->operations(), (QStringList{u"rename"_s, u"delete"_s}));
    QCOMPARE(mDelegate->calls.first().settings.value(u"ProfileName"_s), QVariant(u"Night"_s));
    QCOMPARE(mDelegate->calls.last().profileID, 1);
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesFlagsTest::deleteOpensTheLastNameMeanwhileAndReadsTheTable_data()
{
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("opened");
    QTest::newRow("the last one is deleted") << 2 << 2;
    QTest::newRow("another one is deleted") << 1 << -1; // only the name of the selected row is opened
}

void KeyboardProfilesFlagsTest::deleteOpensTheLastNameMeanwhileAndReadsTheTable()
{
    QFETCH(int, active);
    QFETCH(int, opened);
    fill({u"A"_s, u"B"_s, u"C"_s}, active);
    mDelegate->answers = false;
    int edited = -2;
    QString selectedText = u"none"_s;
    mDelegate->duringDelete = [&] {
        edited = table()->editedRow();
        selectedText = editor() ? editor()->selectedText() : QString();
    };
    QSignalSpy fetched(table()->model(), &QAbstractItemModel::dataChanged);
    mController->deleteProfile();
    QCOMPARE(edited, opened);
    QCOMPARE(selectedText, QString());
    QCOMPARE(fetched.count(), 1);
}

void KeyboardProfilesFlagsTest::refreshSelectsAgainAndEndsAnEdit()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    QCOMPARE(table()->editedRow(), 1);
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesFlagsTest::refreshSetsTheAddButtonEvenWithoutASelection()
{
    fillCount(20);
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 25}}); // no row can be selected
    mController->updateUISettings();
    QCOMPARE(table()->selectedRow(), -1);
    outlet<QPushButton>("mAddProfile")->setEnabled(true);
    mController->updateUISettings();
    QVERIFY(!outlet<QPushButton>("mAddProfile")->isEnabled());
}

void KeyboardProfilesFlagsTest::missingRowSwitchesNothing()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 2);
    mController->setMAllProfilesArray({profileNamed(u"A"_s)});
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 0}});
    mController->tableViewSelectionDidChange(table());
    QVERIFY(mDelegate->calls.isEmpty());
}

QTEST_MAIN(KeyboardProfilesFlagsTest)
#include "keyboardprofilesflagstest.moc"
