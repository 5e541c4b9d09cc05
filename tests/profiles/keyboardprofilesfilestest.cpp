// SPDX-License-Identifier: MIT
// The profiles tab's panels: export, import, the application of a profile.
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "platform/applicationinformation.h"
#include "platform/filepanels.h"
#include "platform/sheet.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyboardProfilesFilesTest : public ProfilesTabFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(mFolder->path()));
        qunsetenv("XDG_CONFIG_HOME");
        QVERIFY(QDir(mFolder->path()).mkpath(u"Documents"_s));
        openTab();
        fillWith({profileNamed(u"Work"_s), profileNamed(u"Play"_s, u"Racer"_s, 1)});
    }

    void cleanup() { closeTab(); }

    void theMenuOpensThePanels_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<bool>("isForApplications");
        QTest::newRow("import") << int(ProfileCommands::importProfile) << u"Profiles (*.KestraProfile)"_s << false;
        QTest::newRow("assign application")
            << int(ProfileCommands::assignApplication) << u"Applications (*.app *.desktop)"_s << true;
    }

    void theMenuOpensThePanels()
    {
        QFETCH(int, tag);
        QFETCH(bool, isForApplications);
        choose(tag);
        QCOMPARE(openApplicationChooser() != nullptr, isForApplications);
        if (isForApplications)
            QVERIFY(chooseOtherApplication());
        const QPointer<OpenPanel> panel = mController->profileFileBrowserPanel();
        QVERIFY(panel);
        QVERIFY(panel->isVisible());
        QCOMPARE(panel->parentWidget(), mWindow.get());
        QCOMPARE(panel->windowModality(), Qt::WindowModal);
        QTEST(panel->nameFilters().join(u'|'), "filter");
        const QString folder = isForApplications ? ApplicationInformation::startFolder() : documentsFolder();
        QCOMPARE(panel->directory(), QDir(folder));
        QCOMPARE(panel->fileMode(), QFileDialog::ExistingFile);
        QVERIFY(mDelegate->calls.isEmpty());
        // The earlier panel is destroyed before a new one is created.
        choose(tag);
        QVERIFY(!panel);
        if (isForApplications)
            QVERIFY(chooseOtherApplication());
        QVERIFY(mController->profileFileBrowserPanel());
    }

    void anotherNumberOpensAPanelForEveryFile()
    {
        mController->loadPanelForIdentifier(3);
        QVERIFY(mController->profileFileBrowserPanel()->isVisible());
        QVERIFY(!mController->profileFileBrowserPanel()->nameFilters().join(u'|').contains(u"*."_s));
        mController->profileFileBrowserPanel()->QDialog::done(panelOK);
        QVERIFY(mDelegate->calls.isEmpty());
    }

    void exportWritesTheSelectedRecordUnderItsName()
    {
        choose(ProfileCommands::exportProfile);
        SavePanel *panel = mController->profileSavePanel();
        QVERIFY(panel->isVisible());
        QCOMPARE(panel->directory().absolutePath(), documentsFolder());
        panel->setDirectory(mFolder->path());
        acceptPanel(panel);
        QFile file(mFolder->filePath(u"Work.KestraProfile"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), *PropertyList::writeBinary(profileNamed(u"Work"_s)));
        QVERIFY(mDelegate->calls.isEmpty());
    }

    void cancelledExportWritesNothing()
    {
        choose(ProfileCommands::exportProfile);
        const QPointer<SavePanel> earlier = mController->profileSavePanel();
        choose(ProfileCommands::exportProfile);
        QVERIFY(!earlier);
        mController->profileSavePanel()->setDirectory(mFolder->path());
        mController->profileSavePanel()->reject();
        QVERIFY(QDir(mFolder->path()).entryList({u"*.KestraProfile"_s}).isEmpty());
    }

    void exportWithoutASelectionDoesNothing()
    {
        mController->profilesTableView()->deselectAll();
        choose(ProfileCommands::exportProfile);
        QVERIFY(!mController->profileSavePanel());
    }

    void exportWithoutAPanelDoesNothing()
    {
        mController->sheetDidEndReturnCodeContextInfo(panelOK, KeyboardProfilesController::exportProfile);
        QVERIFY(mDelegate->calls.isEmpty());
    }

    void aPanelGoesWithTheProfileThatItIsFor_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<bool>("isOther");
        QTest::newRow("export") << int(ProfileCommands::exportProfile) << false;
        QTest::newRow("assign application") << int(ProfileCommands::assignApplication) << false;
        QTest::newRow("assign application, file panel") << int(ProfileCommands::assignApplication) << true;
    }

    void aPanelGoesWithTheProfileThatItIsFor()
    {
        QFETCH(int, tag);
        QFETCH(bool, isOther);
        choose(tag);
        if (isOther)
            QVERIFY(chooseOtherApplication());
        QPointer<QDialog> panel;
        for (auto *dialog : mWindow->findChildren<QDialog *>(Qt::FindDirectChildrenOnly)) {
            if (dialog->isVisible())
                panel = dialog;
        }
        QVERIFY(panel);
        mDelegate->refresh();
        QVERIFY(panel->isVisible());
        // Simulates a profile switch by the application in front.
        mDelegate->active = 1;
        mDelegate->refresh();
        QVERIFY(!panel->isVisible());
        // The profile keeps its binding.
        QVERIFY(mDelegate->calls.isEmpty());
        QCOMPARE(cell(u"auto switch"_s), QVariant(1));
    }

    void theImportPanelStaysWhenProfilesAreSwitched()
    {
        choose(ProfileCommands::importProfile);
        mDelegate->active = 1;
        mDelegate->refresh();
        QVERIFY(mController->profileFileBrowserPanel()->isVisible());
    }

    void exportThatCannotBeWrittenIsSilent()
    {
        choose(ProfileCommands::exportProfile);
        mController->profileSavePanel()->setDirectory(mFolder->path());
        QVERIFY(QDir(mFolder->path()).mkpath(u"Work.KestraProfile/in the way"_s));
        mController->profileSavePanel()->QDialog::accept();
        QVERIFY(mDelegate->calls.isEmpty());
        QVERIFY(!mWindow->findChild<Sheet *>(u"alert"_s));
    }

    void importAddsTheRecordUnderAFreeName()
    {
        QVariantMap record = profileNamed(u"Work"_s, u"Editor"_s, 1);
        record.insert(u"Unknown"_s, QVariantList{1, 2.5, true});
        importFile(u"Work.KestraProfile"_s, *PropertyList::writeBinary(record));
        // The new row is selected, which switches to it.
        QCOMPARE(mDelegate->operations(), (QStringList{u"add"_s, u"switch"_s}));
        record.insert(u"ProfileName"_s, u"Work(2)"_s);
        QCOMPARE(mDelegate->calls.at(0).settings, record);
        QCOMPARE(mDelegate->calls.at(1).profileID, 2);
        QCOMPARE(mController->profilesTableView()->selectedRow(), 2);
        QCOMPARE(mController->allProfilesArray().size(), 3);
    }

    void theRecordIsThereBeforeItIsSentAndNothingIsSelected()
    {
        int rows = 0;
        int selected = 7;
        mDelegate->duringAdd = [&] {
            rows = int(mController->allProfilesArray().size());
            selected = mController->profilesTableView()->selectedRow();
        };
        importFile(u"a.KestraProfile"_s, *PropertyList::writeBinary(profileNamed(u"New"_s)));
        QCOMPARE(rows, 3);
        QCOMPARE(selected, -1);
    }

    void aRefusedImportSwitchesNoProfile()
    {
        mDelegate->refusesToAdd = true;
        importFile(u"a.KestraProfile"_s, *PropertyList::writeBinary(profileNamed(u"New"_s)));
        QCOMPARE(mDelegate->operations(), QStringList{u"add"_s});
        QCOMPARE(mController->allProfilesArray().size(), 2);
        QCOMPARE(mController->profilesTableView()->selectedRow(), 0);
    }

    void anUnansweredImportShowsTheRecord()
    {
        mDelegate->answers = false;
        QSignalSpy fetched(mController->profilesTableView()->model(), &QAbstractItemModel::dataChanged);
        importFile(u"a.KestraProfile"_s, *PropertyList::writeBinary(profileNamed(u"New"_s)));
        QCOMPARE(fetched.count(), 1);
        QCOMPARE(mController->profilesTableView()->numberOfRows(), 3);
        QCOMPARE(mController->profilesTableView()->selectedRow(), 2);
    }

    void aFileThatIsNoProfileIsIgnored_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("damaged") << PropertyList::writeBinary(profileNamed(u"A"_s))->chopped(9);
        QTest::newRow("an array") << *PropertyList::writeBinary(QVariantList{1});
        QTest::newRow("text") << QByteArray("hello");
    }

    void aFileThatIsNoProfileIsIgnored()
    {
        QFETCH(QByteArray, content);
        importFile(u"a.KestraProfile"_s, content);
        QVERIFY(mDelegate->calls.isEmpty());
        QCOMPARE(mController->allProfilesArray().size(), 2);
        QCOMPARE(mController->profilesTableView()->selectedRow(), 0);
    }

    void oddRecordsAreAddedAsTheyStand_data()
    {
        QTest::addColumn<QVariantMap>("record");
        QTest::newRow("nothing in it") << QVariantMap();
        QTest::newRow("wrong types") << QVariantMap{{u"ProfileName"_s, QVariantMap()},
                                                    {u"AppInfo"_s, 7},
                                                    {u"AutoSwitchOn"_s, u"on"_s},
                                                    {u"Keys"_s, QVariantList{1}},
                                                    {u"LEDKBColors"_s, u"red"_s}};
    }

    void oddRecordsAreAddedAsTheyStand()
    {
        QFETCH(QVariantMap, record);
        importFile(u"a.KestraProfile"_s, *PropertyList::writeBinary(record));
        QCOMPARE(mDelegate->operations().value(0), u"add"_s);
        QCOMPARE(mDelegate->calls.at(0).settings.value(u"ProfileName"_s), QVariant(u"Untitled Profile"_s));
        record.remove(u"ProfileName"_s);
        QVariantMap sent = mDelegate->calls.at(0).settings;
        sent.remove(u"ProfileName"_s);
        QCOMPARE(sent, record);
    }

    void cancelledImportChangesNothing()
    {
        writeFile(mFolder->filePath(u"a.KestraProfile"_s), *PropertyList::writeBinary(profileNamed(u"New"_s)));
        choose(ProfileCommands::importProfile);
        OpenPanel *panel = mController->profileFileBrowserPanel();
        panel->setDirectory(mFolder->path());
        panel->selectFile(mFolder->filePath(u"a.KestraProfile"_s));
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"a.KestraProfile"_s));
        panel->reject();
        QVERIFY(mDelegate->calls.isEmpty());
        QCOMPARE(mController->profilesTableView()->selectedRow(), 0);
    }

    void exportedAndImportedIsTheSameRecord()
    {
        choose(ProfileCommands::exportProfile);
        mController->profileSavePanel()->setDirectory(mFolder->path());
        acceptPanel(mController->profileSavePanel());
        mDelegate->profiles.removeFirst();
        mDelegate->refresh();
        mDelegate->calls.clear();
        choose(ProfileCommands::importProfile);
        choosePath(u"Work.KestraProfile"_s);
        QCOMPARE(PropertyList::writeBinary(mDelegate->calls.value(0).settings),
                 PropertyList::writeBinary(profileNamed(u"Work"_s)));
    }

    void anApplicationIsBoundAndSwitchedToInOneRequest()
    {
        writeRacer();
        choose(ProfileCommands::assignApplication);
        QVERIFY(chooseOtherApplication());
        choosePath(u"racer.desktop"_s);
        QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
        const QVariantMap appInfo{{u"application"_s, u"Racer"_s},
                                  {u"executable"_s, u"racer-bin"_s},
                                  {u"identifier"_s, u"racer.desktop"_s},
                                  {u"signature"_s, u"RacerClass"_s},
                                  {u"version"_s, 7}};
        const QVariantMap sent = mDelegate->calls.first().settings;
        QCOMPARE(sent, (QVariantMap{{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, appInfo}}));
        QCOMPARE(sent.value(u"AutoSwitchOn"_s).typeId(), int(QMetaType::Int));
        QCOMPARE(cell(u"application"_s), QVariant(u"Racer"_s));
        QCOMPARE(cell(u"auto switch"_s), QVariant(1));
    }

    void aBundleWithoutANameIsShownByItsExecutable()
    {
        const QByteArray information = *PropertyList::writeBinary(QVariantMap{{u"CFBundleExecutable"_s, u"racer"_s}});
        QVERIFY(QDir(mFolder->path()).mkpath(u"Racer.app/Contents"_s));
        writeFile(mFolder->filePath(u"Racer.app/Contents/Info.plist"_s), information);
        choose(ProfileCommands::assignApplication);
        QVERIFY(chooseOtherApplication());
        choosePath(u"Racer.app"_s);
        QCOMPARE(cell(u"application"_s), QVariant(u"racer"_s));
    }

    void aBundleWithoutAnyInformationBindsNothing()
    {
        QVERIFY(QDir(mFolder->path()).mkpath(u"Racer.app/Contents"_s));
        writeFile(mFolder->filePath(u"Racer.app/Contents/Info.plist"_s),
                  *PropertyList::writeBinary(QVariantMap{{u"CFBundleSignature"_s, u"????"_s}}));
        choose(ProfileCommands::assignApplication);
        QVERIFY(chooseOtherApplication());
        choosePath(u"Racer.app"_s);
        QVERIFY(mDelegate->calls.isEmpty());
    }

    void whatIsNoApplicationBindsNothing()
    {
        writeFile(mFolder->filePath(u"a.desktop"_s), "not an entry");
        choose(ProfileCommands::assignApplication);
        QVERIFY(chooseOtherApplication());
        choosePath(u"a.desktop"_s);
        QVERIFY(mDelegate->calls.isEmpty());
    }

    void anApplicationOfTheListIsBound()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(mFolder->filePath(u"share"_s)));
        writeDesktopEntry(mFolder->filePath(u"share/applications/games/racer.desktop"_s),
                          "Name=Kestra Racer\nExec=/opt/racer-bin\nStartupWMClass=RacerClass\n");
        choose(ProfileCommands::assignApplication);
        QVERIFY(chooseApplicationByName(u"kestra racer"_s));
        const QVariantMap appInfo{{u"application"_s, u"Kestra Racer"_s},
                                  {u"executable"_s, u"racer-bin"_s},
                                  {u"identifier"_s, u"games-racer.desktop"_s},
                                  {u"signature"_s, u"RacerClass"_s},
                                  {u"version"_s, 7}};
        QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
        QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, appInfo}}));
        QVERIFY(!alert());
    }

    void aWindowWithoutAnEntryIsBoundByItsClass()
    {
        choose(ProfileCommands::assignApplication);
        QVERIFY(openApplicationChooser());
        openApplicationChooser()->setApplications({}, {{.windowClass = u"Game.exe"_s}});
        QVERIFY(chooseApplicationByName(u"game"_s));
        const QVariantMap appInfo{{u"application"_s, u"Game.exe"_s},
                                  {u"executable"_s, u""_s},
                                  {u"identifier"_s, u""_s},
                                  {u"signature"_s, u"Game.exe"_s},
                                  {u"version"_s, 7}};
        QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
        QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"AutoSwitchOn"_s, 1}, {u"AppInfo"_s, appInfo}}));
    }

    void theOtherProfileThatFollowsTheApplicationIsReported_data()
    {
        QTest::addColumn<int>("otherAutoSwitch");
        QTest::addColumn<bool>("isRefused");
        QTest::addColumn<bool>("isReported");
        QTest::newRow("it follows the application") << 1 << false << true;
        QTest::newRow("its automatic switching is off") << 0 << false << false;
        QTest::newRow("the daemon refused the binding") << 1 << true << false;
    }

    void theOtherProfileThatFollowsTheApplicationIsReported()
    {
        QFETCH(int, otherAutoSwitch);
        QFETCH(bool, isRefused);
        QFETCH(bool, isReported);
        fillWith({profileNamed(u"Work"_s), profileNamed(u"Play"_s, u"Game.exe"_s, otherAutoSwitch)});
        mDelegate->answers = !isRefused;
        choose(ProfileCommands::assignApplication);
        QVERIFY(openApplicationChooser());
        openApplicationChooser()->setApplications({}, {{.windowClass = u"game.exe"_s}});
        QVERIFY(chooseApplicationByName(u"game"_s));
        QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
        QCOMPARE(alert() != nullptr, isReported);
        if (!isReported)
            return;
        QCOMPARE(alert()->windowTitle(), u"“Play” also follows game.exe"_s);
        // The rule by which the daemon chooses between them.
        const QString description = alert()->accessibleDescription();
        QVERIFY2(description.contains("active then stays active"_L1), qPrintable(description));
        QVERIFY2(description.contains("the first one in the list"_L1), qPrintable(description));
        press("alertDefaultButton"_L1);
        QVERIFY(!alert());
        QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    }

    void anyReturnCodeOfTheChooserReloadsTheTable()
    {
        mDelegate->answers = false;
        mController->setMAllProfilesArray({profileNamed(u"Alone"_s)});
        QCOMPARE(mController->profilesTableView()->model()->rowCount(), 2);
        OpenPanel panel({}, mWindow.get());
        mController->openPanelDidEndReturnCodeContextInfo(&panel, 7, KeyboardProfilesController::chooseApplication);
        QVERIFY(mDelegate->calls.isEmpty());
        QCOMPARE(mController->profilesTableView()->model()->rowCount(), 1);
    }

    void aClosedWindowTakesItsPanelAlong()
    {
        choose(ProfileCommands::importProfile);
        const QPointer<OpenPanel> panel = mController->profileFileBrowserPanel();
        mController.reset();
        mWindow.reset();
        QVERIFY(!panel);
    }

private:
    static void acceptPanel(QFileDialog *panel) { QMetaObject::invokeMethod(panel, "accept"); }

    void choosePath(const QString &name)
    {
        OpenPanel *panel = mController->profileFileBrowserPanel();
        QVERIFY(panel && panel->isVisible());
        panel->setDirectory(mFolder->path());
        panel->selectFile(mFolder->filePath(name));
        acceptPanel(panel);
        QVERIFY(!panel->isVisible());
    }

    void importFile(const QString &name, const QByteArray &content)
    {
        writeFile(mFolder->filePath(name), content);
        choose(ProfileCommands::importProfile);
        QCOMPARE(mController->profileFileBrowserPanel()->directory().absolutePath(), documentsFolder());
        choosePath(name);
    }

    void writeRacer()
    {
        writeDesktopEntry(mFolder->filePath(u"racer.desktop"_s),
                          "Name=Racer\nExec=/opt/racer-bin %f\nStartupWMClass=RacerClass\n");
    }

    [[nodiscard]] QVariant cell(const QString &column) const
    {
        return mController->tableViewObjectValueForTableColumnRow(mController->profilesTableView(), column,
                                                                  mController->profilesTableView()->selectedRow());
    }

    std::unique_ptr<QTemporaryDir> mFolder;
};

QTEST_MAIN(KeyboardProfilesFilesTest)
#include "keyboardprofilesfilestest.moc"
