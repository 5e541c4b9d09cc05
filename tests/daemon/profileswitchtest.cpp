// SPDX-License-Identifier: MIT
// The daemon's profile switches by the application in front, by keys and by clients: their notifications, the on-screen
// display, and the settings on the disk.
#include "base/document.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using DaemonProtocol::Command;

namespace {

QVariantMap profile(const QString &name, const QString &application, int osd = 1)
{
    return {{u"ProfileName"_s, name},
            {u"AppInfo"_s, QVariantMap{{u"identifier"_s, application}}},
            {u"AutoSwitchOn"_s, application.isEmpty() ? 0 : 1},
            {u"ProfileOSDOn"_s, osd},
            {u"Keys"_s, QVariantMap{{u"58"_s, QVariantMap{{u"command"_s, 17}, {u"param1"_s, 1}, {u"param2"_s, 0}}}}}};
}

/// "P" is active; F1 (58) switches to "Q"; "A" is bound to the application "a", "Silent" to "s".
QVariantMap startDocument()
{
    return SettingsDocument::completed(
        {{u"Profiles"_s, QVariantList{profile(u"P"_s, {}), profile(u"Q"_s, {}), profile(u"A"_s, u"a"_s),
                                      profile(u"Silent"_s, u"s"_s, 0)}},
         {u"Macros"_s, QVariantList()},
         {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

} // namespace

class ProfileSwitchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void automaticSwitchIsAnnouncedButNotWritten();
    void automaticSwitchMapsTheKeys();
    void repliesHaveTheActiveProfileAndTheDiskTheChosenOne();
    void chosenByAKeyMeanwhileIsKept();
    void chosenAgainWhileAutomaticallyActiveIsKept();
    void chosenAgainByAKeyIsKept();
    void switchThatCannotBeWrittenLeavesTheAutomaticOne();
    void returnToTheSameProfileIsNotAnnounced_data();
    void returnToTheSameProfileIsNotAnnounced();
    void automaticSwitchNeedsNoDisk();
    void everySwitchIsShownOnce_data();
    void everySwitchIsShownOnce();
    void onlySwitchesAreShown();
    void reportsTheApplicationOfTheActiveProfile();
    void reportsNoApplicationAfterAChoiceByHand_data();
    void reportsNoApplicationAfterAChoiceByHand();
    void failedChoiceLeavesTheReportedApplication();

private:
    int send(Command command, QVariantMap request = {});
    void inFront(const QString &name) { mDaemon->setFrontApplication(FrontApplication::named(name)); }
    void pressF1()
    {
        QVERIFY(mKeyboard->press(7, 58));
        QVERIFY(mKeyboard->release(7, 58));
    }
    int active() const { return Document(mDaemon->document()).activeProfileIndex(); }
    int activeOnDisk() const
    {
        const auto document = PropertyList::readPropertyListFile(mTemporary->filePath(u"settings.plist"_s));
        return document ? Document(*document).activeProfileIndex() : -1;
    }

    std::optional<QTemporaryDir> mTemporary;
    std::unique_ptr<SettingsStore> mStore;
    std::unique_ptr<VirtualKeyboard> mKeyboard;
    std::unique_ptr<DeviceDaemon> mDaemon;
    QVariantMap mReply;
    QStringList mNotifications; // "name source"
    QStringList mShown;
};

void ProfileSwitchTest::init()
{
    mTemporary.emplace();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QVERIFY(mStore->open());
    mKeyboard = std::make_unique<VirtualKeyboard>();
    mNotifications.clear();
    mShown.clear();
    mDaemon = std::make_unique<DeviceDaemon>(
        *mStore, *mKeyboard,
        DaemonServices{.sendReply = [this](const QString &, qint32, const QVariantMap &reply) { mReply = reply; },
                       .postNotification =
                           [this](const QString &name, const QVariantMap &info) {
                               mNotifications += name + u' ' + info.value(DaemonProtocol::sourceApp).toString();
                           },
                       .watchClient = [](const QString &) {},
                       .launchProgram = [](const QString &) {},
                       .now = [] { return 0ms; },
                       .showProfile = [this](const QString &name) { mShown += name; }},
        startDocument());
}

void ProfileSwitchTest::cleanup()
{
    mDaemon.reset();
    mKeyboard.reset();
    mStore.reset();
    mTemporary.reset();
}

int ProfileSwitchTest::send(Command command, QVariantMap request)
{
    request.insert(DaemonProtocol::responsePortName, u"TestPort"_s);
    mReply.clear();
    mDaemon->handleMessage(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(request));
    return mReply.value(DaemonProtocol::returnStatus, -1).toInt();
}

void ProfileSwitchTest::automaticSwitchIsAnnouncedButNotWritten()
{
    inFront(u"a"_s);
    QCOMPARE(active(), 2);
    QCOMPARE(mNotifications, QStringList{u"Profile Updated 271 QuillKestraDaemon"_s});
    QVERIFY(QDir(mTemporary->path()).entryList({u"settings.plist*"_s}).isEmpty());
    inFront(u"a"_s);
    inFront(u"other"_s);
    QCOMPARE(active(), 0);
    QCOMPARE(mNotifications.size(), 2);
    QVERIFY(QDir(mTemporary->path()).entryList({u"settings.plist*"_s}).isEmpty());
}

void ProfileSwitchTest::automaticSwitchMapsTheKeys()
{
    QCOMPARE(send(Command::updateProfile,
                  {{u"ProfileID"_s, 2}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap()}}}}),
             0);
    inFront(u"a"_s);
    pressF1();
    QCOMPARE(active(), 2); // in "A" the key does not switch
}

void ProfileSwitchTest::repliesHaveTheActiveProfileAndTheDiskTheChosenOne()
{
    inFront(u"a"_s);
    QCOMPARE(send(Command::updateProfile,
                  {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, u"N"_s}}}}),
             0);
    const QVariantMap replied = mReply.value(DaemonProtocol::returnDictionary).toMap();
    QCOMPARE(Document(replied).activeProfileIndex(), 2);
    QCOMPARE(activeOnDisk(), 0);
    QCOMPARE(Document(*mStore->load()).profiles(), Document(replied).profiles());
}

void ProfileSwitchTest::chosenByAKeyMeanwhileIsKept()
{
    inFront(u"a"_s);
    pressF1();
    QCOMPARE(active(), 1);
    QCOMPARE(activeOnDisk(), 1);
    inFront(u"other"_s);
    QCOMPARE(active(), 1);
}

void ProfileSwitchTest::chosenAgainWhileAutomaticallyActiveIsKept()
{
    inFront(u"a"_s);
    mNotifications.clear();
    QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 2}}), 0);
    QCOMPARE(activeOnDisk(), 2);
    QCOMPARE(mNotifications, QStringList()); // nothing has changed for clients
    inFront(u"other"_s);
    QCOMPARE(active(), 2);
}

void ProfileSwitchTest::chosenAgainByAKeyIsKept()
{
    const QVariantMap binding{{u"AppInfo"_s, QVariantMap{{u"identifier"_s, u"q"_s}}}, {u"AutoSwitchOn"_s, 1}};
    QCOMPARE(send(Command::updateProfile, {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, binding}}), 0);
    inFront(u"q"_s);
    QCOMPARE(active(), 1);
    QCOMPARE(activeOnDisk(), 0);
    mNotifications.clear();
    mShown.clear();
    pressF1();
    QCOMPARE(activeOnDisk(), 1);
    QCOMPARE(mNotifications, QStringList()); // nothing has changed for clients
    QCOMPARE(mShown, QStringList());
    inFront(u"other"_s);
    QCOMPARE(active(), 1);
}

void ProfileSwitchTest::switchThatCannotBeWrittenLeavesTheAutomaticOne()
{
    inFront(u"a"_s);
    {
        const FileSizeLimit full(0);
        for (const int profile : {1, 2}) {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not saved"_s));
            QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, profile}}), int(Status::notSaved));
        }
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        pressF1();
        QCOMPARE(active(), 2);
    }
    inFront(u"other"_s);
    QCOMPARE(active(), 0);
}

void ProfileSwitchTest::returnToTheSameProfileIsNotAnnounced_data()
{
    QTest::addColumn<int>("chosen");
    QTest::addColumn<QStringList>("inFrontOf");
    QTest::addColumn<int>("deleted");
    QTest::addColumn<int>("expected");
    QTest::newRow("back in the application of the chosen one") << 2 << QStringList{u"s"_s, u"a"_s} << -1 << 2;
    QTest::newRow("the chosen one is deleted, the automatic one takes its place") << 3 << QStringList{u"a"_s} << 3 << 2;
    QTest::newRow("the automatic one is deleted") << 0 << QStringList{u"a"_s} << 2 << 0;
}

void ProfileSwitchTest::returnToTheSameProfileIsNotAnnounced()
{
    QFETCH(int, chosen);
    QFETCH(QStringList, inFrontOf);
    QFETCH(int, deleted);
    QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, chosen}}), 0);
    for (const QString &name : inFrontOf)
        inFront(name);
    if (deleted >= 0)
        QCOMPARE(send(Command::deleteProfile, {{u"ProfileID"_s, deleted}}), 0);
    QTEST(active(), "expected");
    mNotifications.clear();
    inFront(u"other"_s);
    QTEST(active(), "expected");
    QCOMPARE(mNotifications, QStringList());
}

void ProfileSwitchTest::automaticSwitchNeedsNoDisk()
{
    const FileSizeLimit full(0);
    inFront(u"a"_s);
    QCOMPARE(active(), 2);
    inFront(u"other"_s);
    QCOMPARE(active(), 0);
}

void ProfileSwitchTest::everySwitchIsShownOnce_data()
{
    QTest::addColumn<QString>("act");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("key") << u"key"_s << QStringList{u"Q"_s};
    QTest::newRow("client") << u"10"_s << QStringList{u"Q"_s};
    QTest::newRow("application") << u"a"_s << QStringList{u"A"_s};
    QTest::newRow("application whose profile is not shown") << u"s"_s << QStringList{};
    QTest::newRow("new profile") << u"5"_s << QStringList{u"New"_s};
    QTest::newRow("active profile deleted") << u"9"_s << QStringList{u"Q"_s};
}

void ProfileSwitchTest::everySwitchIsShownOnce()
{
    QFETCH(QString, act);
    if (act == "key"_L1)
        pressF1();
    else if (act == "10"_L1)
        QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0);
    else if (act == "5"_L1)
        QCOMPARE(send(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(u"New"_s, {})}}), 0);
    else if (act == "9"_L1)
        QCOMPARE(send(Command::deleteProfile, {{u"ProfileID"_s, 0}}), 0);
    else
        inFront(act);
    QTEST(mShown, "shown");
}

void ProfileSwitchTest::onlySwitchesAreShown()
{
    QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0);
    mShown.clear();
    QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0); // already active
    QCOMPARE(send(Command::deleteProfile, {{u"ProfileID"_s, 0}}), 0); // the active one moves up
    QCOMPARE(active(), 0);
    QCOMPARE(send(Command::updateProfile,
                  {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"ProfileName"_s, u"N"_s}}}}),
             0);
    inFront(u"unbound"_s);
    QCOMPARE(mShown, QStringList());
}

void ProfileSwitchTest::reportsTheApplicationOfTheActiveProfile()
{
    QStringList reported;
    connect(&mDaemon->profiles(), &ProfileSwitch::applicationChanged, this, [&](const QString &application) {
        QCOMPARE(application, mDaemon->profiles().application());
        reported += application;
    });
    QCOMPARE(mDaemon->profiles().application(), QString());
    inFront(u"unbound"_s);
    QCOMPARE(reported, QStringList());
    inFront(u"a"_s);
    inFront(u"s"_s);
    inFront(u"S"_s); // another name for the same profile
    inFront(u"unbound"_s);
    QCOMPARE(reported, QStringList({u"a"_s, u"s"_s, u"S"_s, QString()}));
    // The profile that was chosen by hand needs no application, although it also has one.
    QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 2}}), 0);
    inFront(u"a"_s);
    QCOMPARE(active(), 2);
    QCOMPARE(reported.size(), 4);
}

void ProfileSwitchTest::reportsNoApplicationAfterAChoiceByHand_data()
{
    QTest::addColumn<std::function<void()>>("choose");
    const auto add = [](const char *name, std::function<void()> choose) { QTest::newRow(name) << choose; };
    add("another profile", [this] { QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0); });
    add("the active profile", [this] { QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 2}}), 0); });
    add("a key", [this] { pressF1(); });
    add("a new profile", [this] {
        QCOMPARE(send(Command::addProfile, {{u"DeviceSettingsDictionary"_s, profile(u"New"_s, {})}}), 0);
    });
    add("the profile is deleted", [this] { QCOMPARE(send(Command::deleteProfile, {{u"ProfileID"_s, 2}}), 0); });
    add("the binding is switched off", [this] {
        QCOMPARE(send(Command::updateProfile,
                      {{u"ProfileID"_s, 2}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"AutoSwitchOn"_s, 0}}}}),
                 0);
    });
}

void ProfileSwitchTest::reportsNoApplicationAfterAChoiceByHand()
{
    QFETCH(std::function<void()>, choose);
    inFront(u"a"_s);
    QCOMPARE(mDaemon->profiles().application(), u"a"_s);
    QSignalSpy changed(&mDaemon->profiles(), &ProfileSwitch::applicationChanged);
    choose();
    QCOMPARE(mDaemon->profiles().application(), QString());
    QCOMPARE(changed.size(), 1);
}

void ProfileSwitchTest::failedChoiceLeavesTheReportedApplication()
{
    inFront(u"a"_s);
    QSignalSpy changed(&mDaemon->profiles(), &ProfileSwitch::applicationChanged);
    const FileSizeLimit full(0);
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not saved"_s));
    QCOMPARE(send(Command::switchProfile, {{u"ProfileID"_s, 1}}), int(Status::notSaved));
    QCOMPARE(mDaemon->profiles().application(), u"a"_s);
    QCOMPARE(changed.size(), 0);
}

QTEST_GUILESS_MAIN(ProfileSwitchTest)
#include "profileswitchtest.moc"
