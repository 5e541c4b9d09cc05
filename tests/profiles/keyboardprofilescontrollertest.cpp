// SPDX-License-Identifier: MIT
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/testmain.h"

#include "platform/pulldownbutton.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

class KeyboardProfilesControllerTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { openTab(); }
    void cleanup() { closeTab(); }

    void columnsShowTheRecord();
    void onlyTheNameCanBeEdited();
    void hasTheGivenInitialState();
    void refreshWaitsForACurrentProfile();
    void refreshSelectsTheActiveProfileAndShowsTheBox();
    void firstSelectionSwitchesNoProfile();
    void firstSelectionReturnsToTheActiveProfile();
    void selectingAnotherRowSwitches();
    void selectingTheActiveRowSendsNothing();
    void everySelectionChangeSetsTheAddButton_data();
    void everySelectionChangeSetsTheAddButton();
    void addButtonFollowsTheNumberOfProfiles_data();
    void addButtonFollowsTheNumberOfProfiles();
    void deleteNeedsAConfirmation();
    void cancelledDeleteChangesNothing();
    void confirmedDeleteSendsTheSelectedRow_data();
    void confirmedDeleteSendsTheSelectedRow();
    void deleteSendsOnlyTheDelete();
    void deleteForgetsTheNameToEdit();
    void deleteRefusesTheLastProfile();
    void numbersOfOtherTypesAreRead_data();
    void numbersOfOtherTypesAreRead();
    void deleteWithoutASelectionDoesNothing();
    void deleteButtonNeedsADeviceAndAnotherProfile();
    void onScreenDisplayBoxSendsANumber();
    void onScreenDisplayBoxWithoutAnActiveProfileSendsNothing();
    void controlsFollowTheirState();
    void clicksCannotRemoveTheSelection();
    void otherSheetEndsDoNothing_data();
    void otherSheetEndsDoNothing();
};

void KeyboardProfilesControllerTest::columnsShowTheRecord()
{
    mDelegate->profiles = {profileNamed(u"Work"_s), profileNamed(u"Play"_s, u"Racer"_s, 1)};
    mDelegate->refresh();
    const auto value = [this](const char *column, int row) {
        return mController->tableViewObjectValueForTableColumnRow(table(), QLatin1StringView(column), row);
    };
    QCOMPARE(value("id", 0), QVariant(1));
    QCOMPARE(value("id", 1), QVariant(2));
    QCOMPARE(value("name", 1), QVariant(u"Play"_s));
    QCOMPARE(value("application", 0), QVariant(QString()));
    QCOMPARE(value("application", 1), QVariant(u"Racer"_s));
    QCOMPARE(value("auto switch", 0).toInt(), 0);
    QCOMPARE(value("auto switch", 1).toInt(), 1);
    QVERIFY(!value("name", 2).isValid());
    QCOMPARE(table()->model()->rowCount(), 2);
    QCOMPARE(table()->model()->columnCount(), 4);
    QCOMPARE(table()->model()->index(1, 1).data().toString(), u"Play"_s); // the names are in the second column
}

void KeyboardProfilesControllerTest::onlyTheNameCanBeEdited()
{
    fill({u"Work"_s});
    const QAbstractItemModel *model = table()->model();
    for (int column = 0; column < model->columnCount(); ++column)
        QCOMPARE(model->index(0, column).flags().testFlag(Qt::ItemIsEditable), column == 1);
    QVERIFY(mController->tableViewDataCellForTableColumnRow(table(), u"auto switch"_s, 0) == TableCell::checkBox);
    QVERIFY(!mController->tableViewDataCellForTableColumnRow(table(), u"name"_s, 0));
}

void KeyboardProfilesControllerTest::hasTheGivenInitialState()
{
    QVERIFY(mController->currentProfileDict().isEmpty());
    QVERIFY(mController->deviceSettingsDict().isEmpty());
    QVERIFY(mController->userSettingsDict().isEmpty());
    QCOMPARE(mController->profilesWindow(), mWindow.get());
    QCOMPARE(mController->profileDelegate(), mDelegate.get());
    QCOMPARE(table()->objectName(), u"mProfilesTableView"_s);
    QCOMPARE(table()->selectedRow(), -1);
    for (const char *name : {"mAddProfile", "mDeleteProfile", "mSettingsProfile", "mEnableOnScreenDisplay"})
        QVERIFY2(outlet<QWidget>(name), name);
}

void KeyboardProfilesControllerTest::refreshWaitsForACurrentProfile()
{
    mController->setMAllProfilesArray({profileNamed(u"A"_s), profileNamed(u"B"_s)});
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 1}, {u"ProfileOSDOn"_s, 1}});
    mController->setMCurrentProfileDict(std::nullopt);
    mController->updateUISettings();
    QCOMPARE(table()->selectedRow(), -1);
    QVERIFY(!outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked());
    mController->setMCurrentProfileDict(profileNamed(u"B"_s));
    mController->updateUISettings();
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked());
}

void KeyboardProfilesControllerTest::refreshSelectsTheActiveProfileAndShowsTheBox()
{
    mDelegate->onScreenDisplay = 1;
    fill({u"A"_s, u"B"_s, u"C"_s}, 2);
    QCOMPARE(table()->selectedRow(), 2);
    QVERIFY(outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked());
    mDelegate->active = 0;
    mDelegate->onScreenDisplay = 0;
    mDelegate->refresh();
    QCOMPARE(table()->selectedRow(), 0);
    QVERIFY(!outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked());
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesControllerTest::firstSelectionSwitchesNoProfile()
{
    fill({u"A"_s, u"B"_s}, 1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesControllerTest::firstSelectionReturnsToTheActiveProfile()
{
    mController->setMAllProfilesArray({profileNamed(u"A"_s), profileNamed(u"B"_s), profileNamed(u"C"_s)});
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 1}});
    mController->refreshTableDisplay();
    table()->selectRow(2);
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(mDelegate->calls.isEmpty());
    table()->selectRow(2);
    QCOMPARE(mDelegate->operations(), QStringList{u"switch"_s});
}

void KeyboardProfilesControllerTest::selectingAnotherRowSwitches()
{
    fill({u"A"_s, u"B"_s, u"C"_s});
    const QRect cell = table()->visualRect(table()->model()->index(2, 2));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(mDelegate->operations(), QStringList{u"switch"_s});
    QCOMPARE(mDelegate->calls.first().profileID, 2);
    QCOMPARE(table()->selectedRow(), 2);
}

void KeyboardProfilesControllerTest::selectingTheActiveRowSendsNothing()
{
    fill({u"A"_s, u"B"_s}, 1);
    const QRect cell = table()->visualRect(table()->model()->index(1, 2));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    table()->deselectAll();
    table()->selectRow(1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesControllerTest::everySelectionChangeSetsTheAddButton_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("19") << 19 << true;
    QTest::newRow("20") << 20 << false;
}

void KeyboardProfilesControllerTest::everySelectionChangeSetsTheAddButton()
{
    QFETCH(int, count);
    QFETCH(bool, isEnabled);
    fillCount(count);
    auto *add = outlet<QPushButton>("mAddProfile");
    add->setEnabled(!isEnabled);
    table()->deselectAll();
    QCOMPARE(add->isEnabled(), isEnabled);
    add->setEnabled(!isEnabled);
    table()->selectRow(0);
    QCOMPARE(add->isEnabled(), isEnabled);
}

void KeyboardProfilesControllerTest::addButtonFollowsTheNumberOfProfiles_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("19") << 19 << true;
    QTest::newRow("20") << 20 << false;
    QTest::newRow("21") << 21 << false;
}

void KeyboardProfilesControllerTest::addButtonFollowsTheNumberOfProfiles()
{
    QFETCH(int, count);
    QFETCH(bool, isEnabled);
    fillCount(count);
    auto *add = outlet<QPushButton>("mAddProfile");
    QCOMPARE(add->isEnabled(), isEnabled);
    mController->setControlsState(false);
    QVERIFY(!add->isEnabled());
    mController->setControlsState(true);
    QCOMPARE(add->isEnabled(), isEnabled);
    mController->updateUISettings();
    QCOMPARE(add->isEnabled(), isEnabled);
    mController->enableControlsForAddProfiles(true);
    QCOMPARE(add->isEnabled(), isEnabled);
    mController->deleteProfile();
    QCOMPARE(add->isEnabled(), count - 1 < 20);
}

void KeyboardProfilesControllerTest::deleteNeedsAConfirmation()
{
    fill({u"A"_s, u"B"_s}, 1);
    outlet<QPushButton>("mDeleteProfile")->click();
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(alert());
    QCOMPARE(alert()->findChild<QLabel *>(u"alertTitle"_s)->text(), u"Delete the profile “B”?"_s);
    QVERIFY(!alert()->findChild<QLabel *>(u"alertDescription"_s)->text().isEmpty());
    QCOMPARE(alert()->findChild<QPushButton *>(u"alertDefaultButton"_s)->text().remove(u'&'), u"OK"_s);
    QCOMPARE(alert()->findChild<QPushButton *>(u"alertAlternativeButton"_s)->text().remove(u'&'), u"Cancel"_s);
    QCOMPARE(alert()->parentWidget(), mWindow.get());
}

void KeyboardProfilesControllerTest::cancelledDeleteChangesNothing()
{
    fill({u"A"_s, u"B"_s}, 1);
    outlet<QPushButton>("mDeleteProfile")->click();
    press("alertAlternativeButton"_L1);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(table()->model()->rowCount(), 2);
}

void KeyboardProfilesControllerTest::confirmedDeleteSendsTheSelectedRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selectedAfterwards");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("middle") << 1 << 0;
    QTest::newRow("last") << 2 << 1;
}

void KeyboardProfilesControllerTest::confirmedDeleteSendsTheSelectedRow()
{
    QFETCH(int, row);
    QFETCH(int, selectedAfterwards);
    fill({u"A"_s, u"B"_s, u"C"_s}, row);
    outlet<QPushButton>("mDeleteProfile")->click();
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
    QCOMPARE(mDelegate->calls.first().profileID, row);
    QCOMPARE(table()->model()->rowCount(), 2);
    QCOMPARE(table()->selectedRow(), selectedAfterwards);
    QCOMPARE(table()->editedRow(), -1);
    QTRY_VERIFY(table()->hasFocus());
}

void KeyboardProfilesControllerTest::deleteSendsOnlyTheDelete()
{
    fill({u"A"_s, u"B"_s}, 1);
    mDelegate->answers = false;
    mController->deleteProfile();
    QCoreApplication::processEvents();
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesControllerTest::deleteForgetsTheNameToEdit()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    table()->abortEditing();
    mController->deleteProfile();
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesControllerTest::numbersOfOtherTypesAreRead_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("shown");
    QTest::newRow("a boolean") << QVariant(true) << 1;
    QTest::newRow("a wide integer") << QVariant(qlonglong(1)) << 1;
    QTest::newRow("a real") << QVariant(0.7) << 0; // cut, not rounded
    QTest::newRow("a text") << QVariant(u"on"_s) << 0;
    QTest::newRow("a list") << QVariant(QVariantList{1}) << 0;
    QTest::newRow("nothing") << QVariant() << 0;
}

void KeyboardProfilesControllerTest::numbersOfOtherTypesAreRead()
{
    QFETCH(QVariant, value);
    QFETCH(int, shown);
    QVariantMap profile = profileNamed(u"B"_s);
    profile.insert(u"AutoSwitchOn"_s, value);
    fillWith({profileNamed(u"A"_s), profile});
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, value}, {u"ProfileOSDOn"_s, value}});
    mController->updateUISettings();
    QCOMPARE(table()->selectedRow(), shown);
    QCOMPARE(outlet<QCheckBox>("mEnableOnScreenDisplay")->isChecked(), shown == 1);
    QCOMPARE(table()->model()->index(1, 3).data(Qt::CheckStateRole).toInt(),
             int(shown == 1 ? Qt::Checked : Qt::Unchecked));
}

void KeyboardProfilesControllerTest::deleteRefusesTheLastProfile()
{
    fill({u"A"_s});
    QVERIFY(!outlet<QPushButton>("mDeleteProfile")->isEnabled());
    mController->deleteProfile();
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesControllerTest::deleteWithoutASelectionDoesNothing()
{
    fill({u"A"_s, u"B"_s});
    table()->deselectAll();
    auto *add = outlet<QPushButton>("mAddProfile");
    add->setEnabled(false);
    mController->deleteProfile();
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(add->isEnabled());
}

void KeyboardProfilesControllerTest::deleteButtonNeedsADeviceAndAnotherProfile()
{
    auto *button = outlet<QPushButton>("mDeleteProfile");
    fill({u"A"_s, u"B"_s});
    QVERIFY(button->isEnabled());
    mController->setControlsState(false);
    QVERIFY(!button->isEnabled());
    mController->refreshTableDisplay();
    QVERIFY(!button->isEnabled());
    mController->setControlsState(true);
    QVERIFY(button->isEnabled());
    mController->setMAllProfilesArray({profileNamed(u"A"_s)});
    mController->refreshTableDisplay();
    QVERIFY(!button->isEnabled());
    mController->setControlsState(true);
    QVERIFY(!button->isEnabled());
    mController->setMAllProfilesArray({});
    mController->refreshTableDisplay();
    QVERIFY(button->isEnabled());
}

void KeyboardProfilesControllerTest::onScreenDisplayBoxSendsANumber()
{
    fill({u"A"_s});
    auto *box = outlet<QCheckBox>("mEnableOnScreenDisplay");
    box->click();
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"ProfileOSDOn"_s, 1}}));
    QCOMPARE(mDelegate->calls.first().settings.value(u"ProfileOSDOn"_s).userType(), int(QMetaType::Int));
    box->setChecked(true);
    box->click();
    QCOMPARE(mDelegate->calls.last().settings, (QVariantMap{{u"ProfileOSDOn"_s, 0}}));
}

void KeyboardProfilesControllerTest::onScreenDisplayBoxWithoutAnActiveProfileSendsNothing()
{
    fill({u"A"_s, u"B"_s}, 9);
    QCOMPARE(table()->selectedRow(), -1);
    auto *box = outlet<QCheckBox>("mEnableOnScreenDisplay");
    box->click();
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(!box->isChecked()); // as in the settings
}

void KeyboardProfilesControllerTest::controlsFollowTheirState()
{
    fill({u"A"_s, u"B"_s});
    for (const bool isEnabled : {false, true}) {
        mController->setControlsState(isEnabled);
        for (const char *name :
             {"mProfilesTableView", "mAddProfile", "mDeleteProfile", "mSettingsProfile", "mEnableOnScreenDisplay"})
            QVERIFY2(outlet<QWidget>(name)->isEnabled() == isEnabled, name);
    }
}

void KeyboardProfilesControllerTest::clicksCannotRemoveTheSelection()
{
    fill({u"A"_s, u"B"_s}, 1);
    const QRect cell = table()->visualRect(table()->model()->index(1, 2));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::ControlModifier, cell.center());
    QCOMPARE(table()->selectedRow(), 1);
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center() + QPoint(0, 5 * cell.height()));
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesControllerTest::otherSheetEndsDoNothing_data()
{
    QTest::addColumn<int>("returnCode");
    QTest::addColumn<int>("context");
    for (const int context : {5, 9}) {
        for (const int returnCode : {-1, 0, 1, 1001})
            QTest::addRow("%d of %d", returnCode, context) << returnCode << context;
    }
    for (const int context : {0, 1, 2, 10})
        QTest::addRow("1000 of %d", context) << 1000 << context;
}

void KeyboardProfilesControllerTest::otherSheetEndsDoNothing()
{
    QFETCH(int, returnCode);
    QFETCH(int, context);
    fill({u"A"_s, u"B"_s}, 1);
    mController->sheetDidEndReturnCodeContextInfo(returnCode, context);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(table()->numberOfRows(), 2);
}

QTEST_MAIN(KeyboardProfilesControllerTest)
#include "keyboardprofilescontrollertest.moc"
