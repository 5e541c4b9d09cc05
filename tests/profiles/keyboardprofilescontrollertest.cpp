// SPDX-License-Identifier: MIT
#include "tests/profiles/profiletester.h"

#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "profiles/qltableview.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class KeyboardProfilesControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(installEnglishTexts()); }
    void init();
    void cleanup();

    void columnsShowTheRecord();
    void onlyTheNameCanBeEdited();
    void hasTheGivenInitialState();
    void refreshWaitsForACurrentProfile();
    void refreshSelectsTheActiveProfileAndShowsTheBox();
    void firstSelectionSwitchesNoProfile();
    void firstSelectionGoesBackToTheActiveProfile();
    void selectingAnotherRowSwitches();
    void selectingTheActiveRowSendsNothing();
    void everySelectionChangeSetsTheAddButton_data();
    void everySelectionChangeSetsTheAddButton();
    void namesAreMadeUnique_data();
    void namesAreMadeUnique();
    void addSendsTheDefaultRecordUnderAFreeName();
    void addOpensTheNewNameForEditing();
    void addSwitchesNoProfile();
    void addDisablesTheControlsMeanwhile();
    void addOpensTheNameEvenWithoutAnAnswer();
    void addButtonFollowsTheNumberOfProfiles_data();
    void addButtonFollowsTheNumberOfProfiles();
    void copySendsTheSelectedRecordUnderAFreeName();
    void typingANameRenames();
    void renamesAsTheRuleSays_data();
    void renamesAsTheRuleSays();
    void renameKeepsTheLocalListAsItFalls();
    void emptyAndOtherValuesRenameNothing_data();
    void emptyAndOtherValuesRenameNothing();
    void switchingForgetsTheNameToEdit();
    void deleteAsksFirst();
    void cancelledDeleteChangesNothing();
    void confirmedDeleteSendsTheSelectedRow_data();
    void confirmedDeleteSendsTheSelectedRow();
    void deleteSendsNothingButTheDelete();
    void deleteRefusesTheLastProfile();
    void deleteWithoutASelectionDoesNothing();
    void deleteButtonNeedsADeviceAndAnotherProfile();
    void restoreKeepsTheName();
    void cancelledRestoreChangesNothing();
    void onScreenDisplayBoxSendsANumber();
    void controlsFollowTheirState();
    void removeApplicationClearsTheFourKeysAndTheSwitch();
    void autoSwitchOfAnotherRowSwitchesFirst();
    void autoSwitchStaysOffWithoutAnApplication();
    void gearMenuRenamesTheSelectedRow();
    void gearDeleteEndsAPendingRename();
    void gearMenuEnablesCommands_data();
    void gearMenuEnablesCommands();
    void contextMenuEnablesCommands_data();
    void contextMenuEnablesCommands();
    void contextMenuOfADisabledTableIsAllOff();
    void unknownTagsDoNothing();
    void keyEquivalentsReachOnlyTheNameEditor();

private:
    void fill(const QStringList &names, int active = 0);
    void fillCount(int count);
    QLineEdit *editor() const;
    Sheet *alert() const;
    void press(QLatin1StringView alertButton);
    void choose(int tag);
    template <typename T> T *outlet(const char *name) const { return mWindow->findChild<T *>(QLatin1StringView(name)); }
    [[nodiscard]] TableView *table() const { return mController->profilesTableView(); }

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<KeyboardProfilesController> mController;
    std::unique_ptr<RecordingProfileDelegate> mDelegate;
};

void KeyboardProfilesControllerTest::init()
{
    mWindow = std::make_unique<QWidget>();
    mController = std::make_unique<KeyboardProfilesController>();
    mDelegate = std::make_unique<RecordingProfileDelegate>(mController.get());
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mController->view());
    mController->awakeFromNib();
    mController->setMProfileDelegate(mDelegate.get());
    mController->setMProfilesWindow(mWindow.get());
    mController->setMDefaultProfileDict(profileNamed(u"Default"_s));
    mWindow->resize(700, 450);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

void KeyboardProfilesControllerTest::cleanup()
{
    mController.reset();
    mWindow.reset();
    mDelegate.reset();
}

void KeyboardProfilesControllerTest::fill(const QStringList &names, int active)
{
    mDelegate->profiles.clear();
    for (const QString &name : names)
        mDelegate->profiles.append(profileNamed(name));
    mDelegate->active = active;
    mDelegate->refresh();
    mController->setControlsState(true);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesControllerTest::fillCount(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(u"P%1"_s.arg(i));
    fill(names);
}

QLineEdit *KeyboardProfilesControllerTest::editor() const
{
    const QList<QLineEdit *> editors = table()->findChildren<QLineEdit *>(u"cellEditor"_s);
    for (QLineEdit *candidate : editors) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

Sheet *KeyboardProfilesControllerTest::alert() const
{
    const QList<Sheet *> alerts = mWindow->findChildren<Sheet *>(u"alert"_s);
    for (Sheet *candidate : alerts) {
        if (candidate->isVisible())
            return candidate;
    }
    return nullptr;
}

void KeyboardProfilesControllerTest::press(QLatin1StringView alertButton)
{
    QVERIFY(alert());
    auto *button = alert()->findChild<QPushButton *>(alertButton);
    QVERIFY(button);
    button->click();
}

void KeyboardProfilesControllerTest::choose(int tag)
{
    QAction *item = outlet<PulldownButton>("mSettingsProfile")->itemWithTag(tag);
    QVERIFY(item);
    item->trigger();
}

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
    QCOMPARE(table()->columnWithIdentifier(u"name"_s), 1);
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

void KeyboardProfilesControllerTest::firstSelectionGoesBackToTheActiveProfile()
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

void KeyboardProfilesControllerTest::namesAreMadeUnique_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("result");
    QTest::newRow("empty list") << QStringList{} << u"A"_s << u"A"_s;
    QTest::newRow("free") << QStringList{u"B"_s} << u"A"_s << u"A"_s;
    QTest::newRow("taken") << QStringList{u"A"_s} << u"A"_s << u"A(2)"_s;
    QTest::newRow("taken up to 2") << QStringList{u"A"_s, u"A(2)"_s} << u"A"_s << u"A(3)"_s;
    QTest::newRow("only the second") << QStringList{u"A(2)"_s} << u"A"_s << u"A"_s;
    QTest::newRow("taken twice") << QStringList{u"A"_s, u"A"_s} << u"A"_s << u"A(3)"_s;
    QTest::newRow("case matters") << QStringList{u"a"_s} << u"A"_s << u"A"_s;
}

void KeyboardProfilesControllerTest::namesAreMadeUnique()
{
    QFETCH(QStringList, names);
    QFETCH(QString, wanted);
    QFETCH(QString, result);
    QVariantList profiles;
    for (const QString &name : names)
        profiles.append(profileNamed(name));
    QCOMPARE(mController->checkForDuplicateNameUsingDefaultName(profiles, wanted), result);
}

void KeyboardProfilesControllerTest::addSendsTheDefaultRecordUnderAFreeName()
{
    fill({u"Untitled Profile"_s, u"Untitled Profile(2)"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Untitled Profile(3)"_s));
    QCOMPARE(mController->defaultProfileDict(), profileNamed(u"Default"_s));
}

void KeyboardProfilesControllerTest::addOpensTheNewNameForEditing()
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
    // The name is edited once, not again at the next refresh.
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesControllerTest::addSwitchesNoProfile()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    QVERIFY(!mDelegate->operations().contains(u"switch"_s));
}

void KeyboardProfilesControllerTest::addDisablesTheControlsMeanwhile()
{
    fill({u"A"_s, u"B"_s});
    bool wereOff = false;
    mDelegate->duringAdd = [&] {
        wereOff = !outlet<PulldownButton>("mSettingsProfile")->isEnabled()
                  && !outlet<QCheckBox>("mEnableOnScreenDisplay")->isEnabled();
    };
    outlet<QPushButton>("mAddProfile")->click();
    QVERIFY(wereOff);
    for (const char *name : {"mAddProfile", "mDeleteProfile", "mSettingsProfile", "mEnableOnScreenDisplay"})
        QVERIFY2(outlet<QWidget>(name)->isEnabled(), name);
}

void KeyboardProfilesControllerTest::addOpensTheNameEvenWithoutAnAnswer()
{
    fill({u"A"_s});
    mDelegate->answers = false;
    outlet<QPushButton>("mAddProfile")->click();
    QCOMPARE(table()->editedRow(), 1);
    QCOMPARE(table()->selectedRow(), 1);
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

void KeyboardProfilesControllerTest::copySendsTheSelectedRecordUnderAFreeName()
{
    mDelegate->profiles = {profileNamed(u"A"_s), profileNamed(u"Work"_s, u"Editor"_s, 1)};
    mDelegate->active = 1;
    mDelegate->refresh();
    choose(ProfileCommands::copy);
    QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Work(2)"_s, u"Editor"_s, 1));
    QCOMPARE(table()->selectedRow(), 2);
    // Unlike an added profile, a copy is not opened again by the next refresh.
    table()->abortEditing();
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesControllerTest::typingANameRenames()
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

void KeyboardProfilesControllerTest::renamesAsTheRuleSays_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");
    QTest::newRow("to its own name") << 0 << u"A"_s << u"A"_s;
    QTest::newRow("to another's name") << 1 << u"A"_s << u"A(2)"_s;
    QTest::newRow("to a free name") << 1 << u"X"_s << u"X"_s;
}

void KeyboardProfilesControllerTest::renamesAsTheRuleSays()
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

void KeyboardProfilesControllerTest::renameKeepsTheLocalListAsItFalls()
{
    fill({u"A"_s, u"B"_s, u"C"_s});
    mDelegate->answers = false;
    mController->tableViewSetObjectValueForTableColumnRow(table(), u"X"_s, u"name"_s, 0);
    QCOMPARE(mController->allProfilesArray(),
             (QVariantList{profileNamed(u"X"_s), profileNamed(u"C"_s), profileNamed(u""_s)}));
}

void KeyboardProfilesControllerTest::emptyAndOtherValuesRenameNothing_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("empty text") << QVariant(QString());
    QTest::newRow("number") << QVariant(5);
    QTest::newRow("nothing") << QVariant();
}

void KeyboardProfilesControllerTest::emptyAndOtherValuesRenameNothing()
{
    QFETCH(QVariant, value);
    fill({u"A"_s, u"B"_s});
    mController->tableViewSetObjectValueForTableColumnRow(table(), value, u"name"_s, 0);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(mController->allProfilesArray(), (QVariantList{profileNamed(u"A"_s), profileNamed(u"B"_s)}));
}

void KeyboardProfilesControllerTest::switchingForgetsTheNameToEdit()
{
    fill({u"A"_s, u"B"_s});
    outlet<QPushButton>("mAddProfile")->click();
    table()->abortEditing();
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), 2);
    table()->abortEditing();
    table()->selectRow(1);
    mDelegate->refresh();
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesControllerTest::deleteAsksFirst()
{
    fill({u"A"_s, u"B"_s}, 1);
    outlet<QPushButton>("mDeleteProfile")->click();
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(alert());
    QCOMPARE(alert()->findChild<QLabel *>(u"alertTitle"_s)->text(), u"Delete the profile “B”?"_s);
    QVERIFY(!alert()->findChild<QLabel *>(u"alertDescription"_s)->text().isEmpty());
    QCOMPARE(alert()->findChild<QPushButton *>(u"alertDefaultButton"_s)->text(), u"OK"_s);
    QCOMPARE(alert()->findChild<QPushButton *>(u"alertAlternativeButton"_s)->text(), u"Cancel"_s);
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

void KeyboardProfilesControllerTest::deleteSendsNothingButTheDelete()
{
    fill({u"A"_s, u"B"_s}, 1);
    mDelegate->answers = false;
    mController->deleteProfile();
    QCoreApplication::processEvents();
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
    QCOMPARE(table()->editedRow(), -1);
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
}

void KeyboardProfilesControllerTest::restoreKeepsTheName()
{
    fill({u"A"_s, u"Work"_s}, 1);
    choose(ProfileCommands::restoreDefault);
    QVERIFY(alert());
    QCOMPARE(alert()->findChild<QLabel *>(u"alertTitle"_s)->text(),
             u"Restore the profile “Work” to its default settings?"_s);
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Work"_s));
}

void KeyboardProfilesControllerTest::cancelledRestoreChangesNothing()
{
    fill({u"A"_s, u"Work"_s}, 1);
    choose(ProfileCommands::restoreDefault);
    press("alertAlternativeButton"_L1);
    QVERIFY(mDelegate->calls.isEmpty());
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

void KeyboardProfilesControllerTest::removeApplicationClearsTheFourKeysAndTheSwitch()
{
    mDelegate->profiles = {profileNamed(u"A"_s, u"Racer"_s, 1)};
    mDelegate->refresh();
    choose(ProfileCommands::removeApplication);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    const QVariantMap settings = mDelegate->calls.first().settings;
    QCOMPARE(settings.size(), 2);
    QCOMPARE(settings.value(u"AutoSwitchOn"_s), QVariant(false));
    QCOMPARE(settings.value(u"AppInfo"_s).toMap(), profileNamed(u"A"_s).value(u"AppInfo"_s).toMap());
    QCOMPARE(table()->model()->index(0, 2).data().toString(), QString());
}

void KeyboardProfilesControllerTest::autoSwitchOfAnotherRowSwitchesFirst()
{
    mDelegate->profiles = {profileNamed(u"A"_s, u"Editor"_s, 1), profileNamed(u"B"_s, u"Racer"_s, 0)};
    mDelegate->refresh();
    mController->tableViewSetObjectValueForTableColumnRow(table(), 1, u"auto switch"_s, 1);
    QCOMPARE(mDelegate->operations(), (QStringList{u"switch"_s, u"update"_s}));
    QCOMPARE(mDelegate->calls.at(0).profileID, 1);
    QCOMPARE(mDelegate->calls.at(1).settings, (QVariantMap{{u"AutoSwitchOn"_s, 1}}));
    mDelegate->calls.clear();
    mController->tableViewSetObjectValueForTableColumnRow(table(), 0, u"auto switch"_s, 1);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"AutoSwitchOn"_s, 0}}));
}

void KeyboardProfilesControllerTest::autoSwitchStaysOffWithoutAnApplication()
{
    fill({u"A"_s});
    mController->tableViewSetObjectValueForTableColumnRow(table(), 1, u"auto switch"_s, 0);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(table()->model()->index(0, 3).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
}

void KeyboardProfilesControllerTest::gearMenuRenamesTheSelectedRow()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    QCOMPARE(table()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"B"_s);
}

void KeyboardProfilesControllerTest::gearDeleteEndsAPendingRename()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    choose(ProfileCommands::deleteProfile);
    QCOMPARE(table()->editedRow(), -1);
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(alert());
    QVERIFY(mDelegate->calls.isEmpty());
}

namespace {

void addMenuRows(bool isGearMenu)
{
    using namespace ProfileCommands;
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("application");
    QTest::addColumn<QList<int>>("disabled");
    QTest::newRow("one profile") << 1 << 0 << QString() << QList<int>{deleteProfile, removeApplication};
    QTest::newRow("one profile, none selected")
        << 1 << -1 << QString()
        << (isGearMenu ? QList<int>{removeApplication} : QList<int>{deleteProfile, removeApplication});
    QTest::newRow("two profiles") << 2 << 0 << QString() << QList<int>{removeApplication};
    QTest::newRow("with an application") << 2 << 0 << u"Racer"_s << QList<int>{};
    QTest::newRow("19 profiles") << 19 << 3 << u"Racer"_s << QList<int>{};
    QTest::newRow("20 profiles") << 20 << 3 << u"Racer"_s << QList<int>{newProfile, importProfile, copy};
    QTest::newRow("20 profiles, no application")
        << 20 << 3 << QString() << QList<int>{newProfile, importProfile, copy, removeApplication};
}

QList<int> disabledTags(const QList<QAction *> &items)
{
    QList<int> result;
    for (const QAction *item : items) {
        if (!item->isEnabled())
            result.append(item->data().toInt());
    }
    return result;
}

} // namespace

void KeyboardProfilesControllerTest::gearMenuEnablesCommands_data()
{
    addMenuRows(true);
}

void KeyboardProfilesControllerTest::gearMenuEnablesCommands()
{
    QFETCH(int, count);
    QFETCH(int, row);
    QFETCH(QString, application);
    QFETCH(QList<int>, disabled);
    for (int i = 0; i < count; ++i)
        mDelegate->profiles.append(profileNamed(u"P%1"_s.arg(i), i == row ? application : QString()));
    mDelegate->active = qMax(0, row);
    mDelegate->refresh();
    if (row < 0)
        table()->deselectAll();
    auto *button = outlet<PulldownButton>("mSettingsProfile");
    button->validateItems();
    const QList<QAction *> items = button->menu()->actions();
    QCOMPARE(items.size(), 9);
    for (int i = 0; i < items.size(); ++i)
        QCOMPARE(items.at(i)->data().toInt(), i + 1);
    QCOMPARE(disabledTags(items), disabled);
}

void KeyboardProfilesControllerTest::contextMenuEnablesCommands_data()
{
    addMenuRows(false);
}

void KeyboardProfilesControllerTest::contextMenuEnablesCommands()
{
    QFETCH(int, count);
    QFETCH(int, row);
    QFETCH(QString, application);
    QFETCH(QList<int>, disabled);
    for (int i = 0; i < count; ++i)
        mDelegate->profiles.append(profileNamed(u"P%1"_s.arg(i), i == row ? application : QString()));
    mDelegate->active = qMax(0, row);
    mDelegate->refresh();
    if (row < 0)
        table()->deselectAll();
    const std::unique_ptr<QMenu> menu(outlet<QLTableView>("mProfilesTableView")->makeContextMenu());
    QCOMPARE(menu->actions().size(), 9);
    QCOMPARE(menu->actions().first()->text(), u"Rename"_s);
    QCOMPARE(disabledTags(menu->actions()), disabled);
}

void KeyboardProfilesControllerTest::contextMenuOfADisabledTableIsAllOff()
{
    fill({u"A"_s, u"B"_s});
    mController->setControlsState(false);
    const std::unique_ptr<QMenu> menu(outlet<QLTableView>("mProfilesTableView")->makeContextMenu());
    QCOMPARE(disabledTags(menu->actions()).size(), 9);
}

void KeyboardProfilesControllerTest::unknownTagsDoNothing()
{
    fill({u"A"_s, u"B"_s});
    QAction item;
    for (const int tag : {0, 10, -1}) {
        item.setData(tag);
        mController->selectMenuItem(&item);
    }
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(!alert());
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesControllerTest::keyEquivalentsReachOnlyTheNameEditor()
{
    fill({u"A"_s, u"B"_s});
    QAction shortcut;
    shortcut.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_K));
    int triggered = 0;
    connect(&shortcut, &QAction::triggered, this, [&] { ++triggered; });
    mWindow->addAction(&shortcut);
    outlet<QPushButton>("mAddProfile")->setFocus();
    QTest::keyClick(outlet<QPushButton>("mAddProfile"), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(triggered, 1);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(triggered, 1);
    table()->editColumnRow(1, 0, false);
    QTest::keyClicks(editor(), u"xy"_s);
    QTest::keyClick(editor(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(editor()->selectedText(), editor()->text());
}

QTEST_MAIN(KeyboardProfilesControllerTest)
#include "keyboardprofilescontrollertest.moc"
