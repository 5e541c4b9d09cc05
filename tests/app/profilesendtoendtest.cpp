// SPDX-License-Identifier: MIT
// The complete path of the profiles tab: the real window, the real daemon and its disk. A scripted daemon replaces the
// real one where that never fails.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "platform/filepanels.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/spinner.h"
#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"
#include "profiles/qltableview.h"
#include "tests/app/hubfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int profilesTabIndex = 1;

QVariantMap entry(int command, int param1)
{
    return {{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, 0}};
}

QVariantMap factoryProfile(const QString &name)
{
    const QString path = qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/Kestra.plist"_s;
    const QVariantMap factory = PropertyList::readPropertyListFile(path).valueOr({});
    QVariantMap profile =
        factory.value(u"Default Settings"_s).toMap().value(SettingsKeys::profiles).toList().value(0).toMap();
    profile.insert(SettingsKeys::profileName, name);
    return profile;
}

QVariantMap withKey(QVariantMap profile, const QString &key, const QVariantMap &mapping)
{
    QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
    keys.insert(key, mapping);
    profile.insert(SettingsKeys::keys, keys);
    return profile;
}

/// A record with entries that this program does not know.
QVariantMap recordOfTheFuture(const QString &name)
{
    QVariantMap profile = withKey(factoryProfile(name), u"4"_s, entry(20, 0));
    profile = withKey(profile, u"999"_s, entry(16, 4));
    profile = withKey(profile, u"-1"_s, {{u"command"_s, u"dance"_s}});
    profile = withKey(profile, u"not a key"_s, {{u"later"_s, QByteArray("\0\xff", 2)}});
    profile.insert(u"Unknown"_s, QVariantList{1, 2.5, true, QByteArray("data"), QVariantMap{{u"deep"_s, u"ü"_s}}});
    return profile;
}

QList<int> disabledTags(const QMenu *menu)
{
    QList<int> tags;
    for (const QAction *item : menu->actions())
        if (!item->isEnabled())
            tags.append(item->data().toInt());
    return tags;
}

} // namespace

class ProfilesEndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void importedRecordEqualsTheExportedOne();
    void twentiethProfileIsTheLast();
    void deletingAProfileClearsTheKeysThatSwitchedToIt();
    void unansweredDeletionLeavesTheTabBusy_data();
    void unansweredDeletionLeavesTheTabBusy();
    void fileWithoutAProfileChangesNothing_data();
    void fileWithoutAProfileChangesNothing();
    void unknownEntriesAreKept_data();
    void unknownEntriesAreKept();
    void tooLargeProfileIsRefused_data();
    void tooLargeProfileIsRefused();
    void applicationIsBoundAndRemoved();
    void outsideSwitchAfterAnAddChangesNoRecord_data();
    void outsideSwitchAfterAnAddChangesNoRecord();

private:
    void startDaemon(const QVariantList &profiles);
    void openWindow();
    void choose(int tag);
    void answerAlert(QLatin1StringView button);
    void clickRow(int row);
    void exportTo(const QString &folder);
    void import(const QString &path);
    void choosePath(const QString &path);
    [[nodiscard]] KeyboardProfilesController *tab() const { return mHub->controller->profilesController(); }
    [[nodiscard]] TableView *table() const { return tab()->profilesTableView(); }
    [[nodiscard]] QVariantMap stored() const;
    [[nodiscard]] QVariantList storedProfiles() const { return stored().value(SettingsKeys::profiles).toList(); }

    HubResources mResources;
    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<ScriptedDaemon> mScriptedDaemon;
    std::unique_ptr<Hub> mHub;
};

void ProfilesEndToEndTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mFolder = std::make_unique<QTemporaryDir>();
}

void ProfilesEndToEndTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
    mScriptedDaemon.reset();
}

void ProfilesEndToEndTest::startDaemon(const QVariantList &profiles)
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    const QVariantMap document{{SettingsKeys::profiles, profiles},
                               {SettingsKeys::macros, QVariantList()},
                               {SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 0}}}};
    QVERIFY(mDaemon->store(document));
    QVERIFY(mDaemon->start());
}

void ProfilesEndToEndTest::openWindow()
{
    mHub = std::make_unique<Hub>();
    mHub->controller->initializeDevice();
    mHub->controller->selectTabAtIndex(profilesTabIndex);
    QVERIFY(tab()->view()->isVisible());
}

void ProfilesEndToEndTest::choose(int tag)
{
    auto *button = mHub->find<PulldownButton>("mSettingsProfile");
    button->validateItems();
    QAction *item = button->itemWithTag(tag);
    QVERIFY(item && item->isEnabled());
    item->trigger();
}

void ProfilesEndToEndTest::answerAlert(QLatin1StringView button)
{
    auto *alert = mHub->find<Sheet>("alert");
    QVERIFY(alert && alert->isVisible());
    alert->findChild<QPushButton *>(button)->click();
}

void ProfilesEndToEndTest::clickRow(int row)
{
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                      table()->visualRect(table()->model()->index(row, 2)).center());
    QCOMPARE(table()->selectedRow(), row);
}

void ProfilesEndToEndTest::exportTo(const QString &folder)
{
    choose(ProfileCommands::exportProfile);
    SavePanel *panel = tab()->profileSavePanel();
    QVERIFY(panel && panel->isVisible());
    panel->setDirectory(folder);
    panel->accept();
    QVERIFY(!panel->isVisible());
}

void ProfilesEndToEndTest::choosePath(const QString &path)
{
    OpenPanel *panel = tab()->profileFileBrowserPanel();
    QVERIFY(panel && panel->isVisible());
    panel->setDirectory(QFileInfo(path).path());
    panel->selectFile(path);
    panel->accept();
    QVERIFY(!panel->isVisible());
}

void ProfilesEndToEndTest::import(const QString &path)
{
    choose(ProfileCommands::importProfile);
    choosePath(path);
}

QVariantMap ProfilesEndToEndTest::stored() const
{
    return PropertyList::readPropertyListFile(mDaemon->settingsFolder() + u"/settings.plist"_s).valueOr({});
}

void ProfilesEndToEndTest::importedRecordEqualsTheExportedOne()
{
    startDaemon({factoryProfile(u"Default Profile"_s), recordOfTheFuture(u"Raid"_s)});
    openWindow();
    clickRow(1);
    const QByteArray before = *PropertyList::writeBinary(storedProfiles().value(1).toMap());
    exportTo(mFolder->path());
    mHub->find<QPushButton>("mDeleteProfile")->click();
    answerAlert("alertDefaultButton"_L1);
    QCOMPARE(storedProfiles().size(), 1);
    QCOMPARE(table()->numberOfRows(), 1);
    QVERIFY(table()->isEnabled());

    import(mFolder->filePath(u"Raid.KestraProfile"_s));
    QCOMPARE(storedProfiles().size(), 2);
    QCOMPARE(*PropertyList::writeBinary(storedProfiles().value(1).toMap()), before);
    QCOMPARE(table()->selectedRow(), 1);
    QCOMPARE(stored().value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::activeProfile).toInt(), 1);
    // While it exists, an import of the same file gets another name.
    import(mFolder->filePath(u"Raid.KestraProfile"_s));
    QCOMPARE(storedProfiles().value(2).toMap().value(SettingsKeys::profileName), QVariant(u"Raid(2)"_s));
}

void ProfilesEndToEndTest::twentiethProfileIsTheLast()
{
    QVariantList profiles;
    for (int i = 1; i < ProfileCommands::maximumProfileCount; ++i)
        profiles.append(factoryProfile(u"P%1"_s.arg(i)));
    startDaemon(profiles);
    openWindow();
    auto *add = mHub->find<QPushButton>("mAddProfile");
    auto *gear = mHub->find<PulldownButton>("mSettingsProfile");
    const QList<int> adding{ProfileCommands::newProfile, ProfileCommands::importProfile, ProfileCommands::copy};
    // Lists the items of both menus, one after the other.
    const auto disabledInMenus = [&] {
        gear->validateItems();
        const std::unique_ptr<QMenu> menu(mHub->find<QLTableView>("mProfilesTableView")->makeContextMenu());
        QList<int> disabled = disabledTags(gear->menu()) + disabledTags(menu.get());
        disabled.removeAll(ProfileCommands::removeApplication); // no profile has an application
        return disabled;
    };
    QVERIFY(add->isEnabled());
    QCOMPARE(disabledInMenus(), QList<int>());
    add->click();
    QCOMPARE(storedProfiles().size(), 20);
    QVERIFY(!add->isEnabled());
    QCOMPARE(disabledInMenus(), adding + adding);
    // The state survives every refresh of the tab.
    table()->abortEditing();
    mHub->controller->setControlsState(false);
    mHub->controller->setControlsState(true);
    QVERIFY(!add->isEnabled());
    mHub->controller->updateUISettings();
    QVERIFY(!add->isEnabled());
    clickRow(3);
    QVERIFY(!add->isEnabled());

    mHub->find<QPushButton>("mDeleteProfile")->click();
    answerAlert("alertDefaultButton"_L1);
    QCOMPARE(storedProfiles().size(), 19);
    QVERIFY(add->isEnabled());
    QCOMPARE(disabledInMenus(), QList<int>());
}

void ProfilesEndToEndTest::deletingAProfileClearsTheKeysThatSwitchedToIt()
{
    constexpr int switchProfile = 17;
    QVariantMap first = withKey(factoryProfile(u"One"_s), u"4"_s, entry(switchProfile, 1));
    first = withKey(first, u"5"_s, entry(switchProfile, 2));
    first = withKey(first, u"6"_s, entry(switchProfile, 0));
    startDaemon({first, factoryProfile(u"Two"_s), factoryProfile(u"Three"_s)});
    openWindow();
    clickRow(1);
    mHub->find<QPushButton>("mDeleteProfile")->click();
    answerAlert("alertDefaultButton"_L1);
    const QVariantMap keys = storedProfiles().value(0).toMap().value(SettingsKeys::keys).toMap();
    QCOMPARE(keys.value(u"4"_s).toMap(), QVariantMap());
    QCOMPARE(keys.value(u"5"_s).toMap(), QVariantMap()); // nothing is renumbered, and a third profile no longer exists
    QCOMPARE(keys.value(u"6"_s).toMap(), entry(switchProfile, 0));
    QCOMPARE(storedProfiles().value(1).toMap().value(SettingsKeys::profileName), QVariant(u"Three"_s));
    QCOMPARE(table()->selectedRow(), 0);
    QVERIFY(table()->isEnabled());
    QCOMPARE(table()->editedRow(), -1);
    QVERIFY(!mHub->find<Spinner>("mBusyIndicator")->isAnimating());
}

void ProfilesEndToEndTest::unansweredDeletionLeavesTheTabBusy_data()
{
    QTest::addColumn<bool>("isReal");
    QTest::newRow("the daemon was killed") << true;
    QTest::newRow("a daemon that never answers") << false;
}

void ProfilesEndToEndTest::unansweredDeletionLeavesTheTabBusy()
{
    QFETCH(bool, isReal);
    if (isReal)
        startDaemon({factoryProfile(u"One"_s), factoryProfile(u"Two"_s)});
    else
        mScriptedDaemon = std::make_unique<ScriptedDaemon>(sampleDocument());
    openWindow();
    setReplyPollInterval(std::chrono::microseconds(100)); // from now on no reply comes
    if (isReal)
        mDaemon->kill();
    else
        mScriptedDaemon->setSilent(DaemonProtocol::Command::deleteProfile);
    mHub->find<QPushButton>("mDeleteProfile")->click();
    answerAlert("alertDefaultButton"_L1);
    QVERIFY(!table()->isEnabled());
    QVERIFY(!mHub->find<QPushButton>("mDeleteProfile")->isEnabled());
    QVERIFY(mHub->find<Spinner>("mBusyIndicator")->isAnimating());
    QCOMPARE(table()->numberOfRows(), 2);
    QCOMPARE(table()->editedRow(), -1);
    if (isReal) {
        QVERIFY(mDaemon->start());
        QCOMPARE(storedProfiles().size(), 2);
    }
}

void ProfilesEndToEndTest::fileWithoutAProfileChangesNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray whole = *PropertyList::writeBinary(factoryProfile(u"New"_s));
    QByteArray garbled = whole;
    garbled.replace(garbled.size() - 32, 32, QByteArray(32, '\xff'));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut off") << whole.left(whole.size() / 2);
    QTest::newRow("with a damaged trailer") << garbled;
    QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    QByteArray manyKeys = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Keys</key><dict>";
    for (int key = 0; key < 1'000'000; ++key)
        manyKeys += "<key>" + QByteArray::number(key) + "</key><dict/>";
    QTest::newRow("with a million keys") << manyKeys + "</dict></dict></plist>";
    QTest::newRow("a property list of another kind") << *PropertyList::writeBinary(QVariantList{u"New"_s});
}

void ProfilesEndToEndTest::fileWithoutAProfileChangesNothing()
{
    QFETCH(QByteArray, content);
    startDaemon({factoryProfile(u"One"_s), factoryProfile(u"Two"_s)});
    openWindow();
    const QVariantMap before = stored();
    const QString path = mFolder->filePath(u"New.KestraProfile"_s);
    QVERIFY(PropertyList::writeFileAtomically(path, content));
    import(path);
    QCOMPARE(stored(), before);
    QCOMPARE(table()->numberOfRows(), 2);
    QVERIFY(mDaemon->isRunning());
}

void ProfilesEndToEndTest::unknownEntriesAreKept_data()
{
    QTest::addColumn<QVariantMap>("changed");
    QTest::newRow("keys outside the layout, unknown values") << recordOfTheFuture(u"New"_s);
    QTest::newRow("a switch that is a text") << QVariantMap{{u"AutoSwitchOn"_s, u"on"_s}};
    QTest::newRow("an on-screen display that is data") << QVariantMap{{u"ProfileOSDOn"_s, QByteArray("1")}};
    QTest::newRow("a brightness that is a list") << QVariantMap{{u"BrightnessKBNormal"_s, QVariantList{4}}};
    QTest::newRow("a brightness out of range") << QVariantMap{{u"BrightnessKBNormal"_s, 1 << 30}};
    QTest::newRow("an effect that is a dictionary") << QVariantMap{{u"LEDKBEffects"_s, QVariantMap{{u"a"_s, 1}}}};
    QTest::newRow("no colours") << QVariantMap{{u"LEDKBColors"_s, QVariantList()}};
    QTest::newRow("colours that are none") << QVariantMap{{u"LEDKBColors"_s, QVariantList{1, u"red"_s, QVariantMap()}}};
    QTest::newRow("lights that are texts")
        << QVariantMap{{u"BacklightLED"_s, u"x"_s}, {u"ScrollLED"_s, u"y"_s}, {u"GameLightingOn"_s, u"z"_s}};
    QTest::newRow("an application of numbers")
        << QVariantMap{{u"AppInfo"_s, QVariantMap{{u"application"_s, 7}, {u"executable"_s, QVariantList{1}}}}};
    QTest::newRow("an assignment of texts")
        << QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, QVariantMap{{u"command"_s, u"x"_s}, {u"param1"_s, u"y"_s}}}}}};
    QTest::newRow("assignments to what there is not")
        << QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, entry(10, 999)}, {u"5"_s, entry(17, -7)}}}};
}

void ProfilesEndToEndTest::unknownEntriesAreKept()
{
    QFETCH(QVariantMap, changed);
    startDaemon({factoryProfile(u"One"_s)});
    openWindow();
    QVariantMap record = factoryProfile(u"New"_s);
    record.insert(changed);
    const QByteArray content = *PropertyList::writeBinary(record);
    const QString path = mFolder->filePath(u"In.KestraProfile"_s);
    QVERIFY(PropertyList::writeFileAtomically(path, content));
    import(path);
    QCOMPARE(*PropertyList::writeBinary(storedProfiles().value(1).toMap()), content);
    // Every tab shows the profile, and the keyboard uses it.
    auto *tabs = mHub->window->findChild<QTabWidget *>();
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        QVERIFY(!mHub->window->grab().isNull());
    }
    mHub->controller->selectTabAtIndex(profilesTabIndex);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, 4U}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7U, 4U}), QString());
    exportTo(mFolder->path());
    QFile file(mFolder->filePath(u"New.KestraProfile"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
    QVERIFY(mDaemon->isRunning());
}

void ProfilesEndToEndTest::tooLargeProfileIsRefused_data()
{
    QTest::addColumn<QVariantMap>("changed");
    QTest::addColumn<QByteArray>("reason");
    const QByteArray malformed = "malformed request";
    QTest::newRow("keys that are a list") << QVariantMap{{u"Keys"_s, QVariantList{1}}} << malformed;
    QTest::newRow("a key that is a number") << QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, 20}}}} << malformed;
    QTest::newRow("an application that is a text") << QVariantMap{{u"AppInfo"_s, u"Racer"_s}} << malformed;
    QTest::newRow("colours that are a text") << QVariantMap{{u"LEDKBColors"_s, u"red"_s}} << malformed;
    // As many as the window reads, but more than a document may have.
    QVariantMap manyKeys;
    for (int key = 0; key < 260'000; ++key)
        manyKeys.insert(QString::number(key), QVariantMap());
    QTest::newRow("more keys than fit") << QVariantMap{{u"Keys"_s, manyKeys}} << QByteArray("limit reached");
}

void ProfilesEndToEndTest::tooLargeProfileIsRefused()
{
    QFETCH(QVariantMap, changed);
    QFETCH(QByteArray, reason);
    startDaemon({factoryProfile(u"One"_s), factoryProfile(u"Two"_s)});
    openWindow();
    const QVariantMap before = stored();
    QVariantMap record = factoryProfile(u"New"_s);
    record.insert(changed);
    const QString path = mFolder->filePath(u"New.KestraProfile"_s);
    const std::optional<QByteArray> content = PropertyList::writeBinary(record);
    QVERIFY(content);
    QVERIFY(PropertyList::writeFileAtomically(path, *content));
    import(path);
    QCOMPARE(stored(), before);
    QCOMPARE(table()->numberOfRows(), 2);
    QVERIFY(table()->isEnabled());
    QCOMPARE(table()->selectedRow(), 0);
    QVERIFY(mDaemon->isRunning());
    QTRY_VERIFY2(mDaemon->log().contains(reason), mDaemon->log().constData());
    // Both continue as before.
    clickRow(1);
    QCOMPARE(stored().value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::activeProfile).toInt(), 1);
}

void ProfilesEndToEndTest::applicationIsBoundAndRemoved()
{
    startDaemon({factoryProfile(u"One"_s), factoryProfile(u"Two"_s)});
    openWindow();
    const QString path = mFolder->filePath(u"racer.desktop"_s);
    QVERIFY(PropertyList::writeFileAtomically(path, "[Desktop Entry]\nType=Application\nName=Racer\nExec=racer\n"));
    // A click into the box of another row switches to it and opens the chooser.
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                      table()->visualRect(table()->model()->index(1, 3)).center());
    QCOMPARE(stored().value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::activeProfile).toInt(), 1);
    QVERIFY(chooseOtherApplication());
    choosePath(path);
    QVariantMap profile = storedProfiles().value(1).toMap();
    QCOMPARE(profile.value(SettingsKeys::autoSwitchOn), QVariant(1));
    QCOMPARE(profile.value(SettingsKeys::appInfo).toMap().value(SettingsKeys::application), QVariant(u"Racer"_s));
    QCOMPARE(table()->model()->index(1, 2).data().toString(), u"Racer"_s);
    QCOMPARE(table()->model()->index(1, 3).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(storedProfiles().value(0).toMap(), factoryProfile(u"One"_s));

    choose(ProfileCommands::removeApplication);
    profile = storedProfiles().value(1).toMap();
    QCOMPARE(profile.value(SettingsKeys::autoSwitchOn), QVariant(false));
    QCOMPARE(profile.value(SettingsKeys::appInfo).toMap().value(SettingsKeys::application), QVariant(u""_s));
    QCOMPARE(table()->model()->index(1, 3).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
}

void ProfilesEndToEndTest::outsideSwitchAfterAnAddChangesNoRecord_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("nothing is typed") << QString();
    QTest::newRow("a name is typed") << u"Half a na"_s;
}

void ProfilesEndToEndTest::outsideSwitchAfterAnAddChangesNoRecord()
{
    QFETCH(QString, typed);
    startDaemon({withKey(factoryProfile(u"Game"_s), u"4"_s, entry(20, 0)), factoryProfile(u"Work"_s)});
    openWindow();
    mHub->controller->selectTabAtIndex(1);
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    mHub->find<QPushButton>("mAddProfile")->click();
    QTRY_COMPARE(table()->selectedRow(), 2);
    const QVariantList before = storedProfiles();
    QCOMPARE(before.size(), 3);
    auto *editor = qobject_cast<QLineEdit *>(mHub->window->focusWidget());
    QVERIFY(editor); // the name of the added profile
    QTest::keyClicks(editor, typed);
    QCOMPARE(runKestractl({u"profile"_s, u"switch"_s, u"Game"_s}).exitCode, 0);
    QTRY_COMPARE(table()->selectedRow(), 0);
    QCOMPARE(table()->editedRow(), -1);
    mHub->window->findChild<QTabWidget *>()->setCurrentIndex(0);
    QCoreApplication::processEvents();
    QVariantList after = storedProfiles();
    QCOMPARE(after.size(), 3);
    QCOMPARE(after.mid(0, 2), before.mid(0, 2));
    // The typed text may have reached the profile it was meant for, but only its name.
    QVariantMap added = after.at(2).toMap();
    added.insert(SettingsKeys::profileName, before.at(2).toMap().value(SettingsKeys::profileName));
    QCOMPARE(added, before.at(2).toMap());
}

QTEST_MAIN(ProfilesEndToEndTest)
#include "profilesendtoendtest.moc"
