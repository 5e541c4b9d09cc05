// SPDX-License-Identifier: MIT
// The effects of the keyboard's own keys: keys for the computer, profiles, programs, game mode, brightness, key
// lighting.
#include "base/document.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace DaemonTestDocuments;

class DeviceDaemonKeysTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void keysReachTheComputerByTheActiveProfile();
    void keySwitchesTheProfile();
    void heldKeyOutlivesTheProfileThatAnotherKeySwitches();
    void keyLaunchesAProgram();
    void removalReleasesKeysAndCaptures();
    void gameModeIsToggledAndStored();
    void gameModeDisablesTheCommandKeys();
    void brightnessKeysChangeTheActiveProfile();
    void brightnessThatCannotBeWrittenStays();
    void brightnessKeysAreKeysOfTheConsumerPage();
    void lightFollowsTheActiveProfile();
    void lightIsOffWithoutTheKeyboard();
    void shutDownReleasesEveryKey();
    void shutDownEndsEveryCapture();
    void heldKeyIsReleasedAfterTheClientReleasesTheDevice();
};

void DeviceDaemonKeysTest::keysReachTheComputerByTheActiveProfile()
{
    press(4);
    send(Command::switchProfile, {{u"ProfileID"_s, 1}}); // disables the key that is down
    release(4);
    press(4);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    send(Command::updateProfile,
         {{u"ProfileID"_s, 1},
          {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(16, 30)}}}}}});
    press(4);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s, u"+30"_s, u"-30"_s}));
}

void DeviceDaemonKeysTest::keySwitchesTheProfile()
{
    press(58);
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    QCOMPARE(storedDocument(), mDaemon->document());
    QCOMPARE(notification(u"Profile Updated 271"_s), (QVariantMap{{u"Source App"_s, u"QuillKestraDaemon"_s}}));
    release(58);
    QCOMPARE(mSent, QStringList());

    send(Command::switchProfile, {{u"ProfileID"_s, 0}});
    mNotifications.clear();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"the profile 9 of a key does not exist"_s));
    press(59);
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 0);
    QVERIFY(mNotifications.isEmpty());
}

void DeviceDaemonKeysTest::heldKeyOutlivesTheProfileThatAnotherKeySwitches()
{
    press(4);
    press(58); // profile B disables A
    release(4);
    press(4);
    release(4);
    release(58);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
}

void DeviceDaemonKeysTest::keyLaunchesAProgram()
{
    press(60);
    release(60);
    QCOMPARE(mLaunched, QStringList{u"prog"_s});
}

void DeviceDaemonKeysTest::removalReleasesKeysAndCaptures()
{
    press(4);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    mKeyboard->remove();
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    QCOMPARE(takeNotificationNames(), QStringList{u"Device Removed 271"_s});
    QVERIFY(mKeyboard->press(7, 4) == VirtualKeyboard::Refusal::notAttached);
    mKeyboard->remove(); // has no further effect
    mKeyboard->attach();
    mKeyboard->attach();
    QCOMPARE(notification(u"Device Attached 271"_s), (QVariantMap{{u"ProductID"_s, 271}}));
    QCOMPARE(takeNotificationNames(), QStringList{u"Device Attached 271"_s});
    press(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s, u"+4"_s}));
}

void DeviceDaemonKeysTest::gameModeIsToggledAndStored()
{
    QVERIFY(mKeyboard->pressGameMode());
    QVERIFY(Document(mDaemon->document()).deviceSettings().isGameModeOn());
    QVERIFY(Document(storedDocument()).deviceSettings().isGameModeOn());
    QVERIFY(mKeyboard->isGameModeShown());
    QCOMPARE(takeNotificationNames(), QStringList({u"Game Mode Pressed 271"_s, u"Profile Updated 271"_s}));
    QVERIFY(mKeyboard->pressGameMode());
    QVERIFY(!Document(mDaemon->document()).deviceSettings().isGameModeOn());
    mKeyboard->remove();
    QVERIFY(mKeyboard->pressGameMode() == VirtualKeyboard::Refusal::notAttached);
}

void DeviceDaemonKeysTest::gameModeDisablesTheCommandKeys()
{
    press(227);
    QVERIFY(mKeyboard->pressGameMode());
    QCOMPARE(mSent, QStringList({u"+227"_s, u"-227"_s}));
    release(227);
    press(231);
    release(231);
    QCOMPARE(mSent.size(), 2);
    start(storedDocument()); // the daemon restarts in game mode
    press(231);
    release(231);
    QCOMPARE(mSent.size(), 2);
    QVERIFY(mKeyboard->pressGameMode());
    press(231);
    QCOMPARE(mSent.takeLast(), u"+231"_s);
}

void DeviceDaemonKeysTest::brightnessKeysChangeTheActiveProfile()
{
    QCOMPARE(mKeyboard->shownBrightness(), 3);
    QVERIFY(mKeyboard->changeBrightness(1));
    QCOMPARE(mKeyboard->shownBrightness(), 4);
    QCOMPARE(Document(storedDocument()).activeProfile().value(u"BrightnessKBNormal"_s), QVariant(4));
    QCOMPARE(notification(u"Illumination Updated 271"_s), (QVariantMap{{u"BrightnessKBNormal"_s, 4}}));
    QCOMPARE(takeNotificationNames(), QStringList({u"Illumination Updated 271"_s, u"Profile Updated 271"_s}));
    QVERIFY(mKeyboard->changeBrightness(1)); // at its maximum
    QCOMPARE(takeNotificationNames(), QStringList());
    QVERIFY(mKeyboard->setBrightness(0));
    QVERIFY(mKeyboard->setBrightness(5) == VirtualKeyboard::Refusal::noSuchBrightness);
    QVERIFY(mKeyboard->setBrightness(-1) == VirtualKeyboard::Refusal::noSuchBrightness);
    QCOMPARE(mKeyboard->shownBrightness(), 0);
}

void DeviceDaemonKeysTest::brightnessThatCannotBeWrittenStays()
{
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QVERIFY(mKeyboard->setBrightness(1));
    }
    QCOMPARE(mDaemon->document(), startDocument());
    QCOMPARE(takeNotificationNames(), QStringList());
}

void DeviceDaemonKeysTest::brightnessKeysAreKeysOfTheConsumerPage()
{
    QVERIFY(mKeyboard->press(12, 0x7A));
    QCOMPARE(mKeyboard->shownBrightness(), 2);
    QCOMPARE(notification(u"Illumination Updated 271"_s), (QVariantMap{{u"BrightnessKBNormal"_s, 2}}));
    QVERIFY(mKeyboard->press(12, 0x7A)); // still down
    QCOMPARE(mKeyboard->shownBrightness(), 2);
    QVERIFY(mKeyboard->release(12, 0x7A));
    QVERIFY(mKeyboard->press(12, 0x79));
    mKeyboard->releaseAll();
    QCOMPARE(mKeyboard->shownBrightness(), 3);
    QVERIFY(mSent.isEmpty()); // handled by the keyboard itself
    QVERIFY(mKeyboard->press(12, 0x78) == VirtualKeyboard::Refusal::noSuchKey);
    QVERIFY(mKeyboard->press(12, 0x7B) == VirtualKeyboard::Refusal::noSuchKey);
    // Captured keys are keys of the keyboard page, so the brightness stays adjustable meanwhile.
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    QVERIFY(mKeyboard->press(12, 0x79));
    QCOMPARE(mKeyboard->shownBrightness(), 4);
}

void DeviceDaemonKeysTest::lightFollowsTheActiveProfile()
{
    QStringList seen;
    connect(mKeyboard.get(), &VirtualKeyboard::lightChanged, this,
            [&seen](Backlight::Color color) { seen += Backlight::colorText(color); });
    const auto update = [this](const QVariantMap &settings) {
        return statusOf(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, settings}});
    };
    QVERIFY(mKeyboard->shownLight().isOff()); // the profile leaves it off
    const QVariantMap blue{{u"Red"_s, 0.0}, {u"Green"_s, 0.0}, {u"Blue"_s, 1.0}};
    QCOMPARE(update({{u"BacklightLED"_s, 1}, {u"LEDKBColors"_s, QVariantList{blue}}}), 0);
    QVERIFY(mKeyboard->setBrightness(4));
    QVERIFY(mKeyboard->setBrightness(0));
    QVERIFY(mKeyboard->setBrightness(2));
    QCOMPARE(update({{u"BacklightLED"_s, 0}}), 0);
    QCOMPARE(update({{u"BacklightLED"_s, 1}}), 0);
    QCOMPARE(statusOf(Command::switchProfile, {{u"ProfileID"_s, 1}}), 0); // a profile without key lighting
    QCOMPARE(seen, QStringList({u"#0000bf"_s, u"#0000ff"_s, u"#000000"_s, u"#000080"_s, u"#000000"_s, u"#000080"_s,
                                u"#000000"_s}));
}

void DeviceDaemonKeysTest::lightIsOffWithoutTheKeyboard()
{
    QCOMPARE(statusOf(Command::updateProfile,
                      {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"BacklightLED"_s, 1}}}}),
             0);
    QVERIFY(!mKeyboard->shownLight().isOff());
    mKeyboard->remove();
    QVERIFY(mKeyboard->shownLight().isOff());
    mKeyboard->attach();
    QVERIFY(!mKeyboard->shownLight().isOff());
}

void DeviceDaemonKeysTest::shutDownReleasesEveryKey()
{
    press(4);
    press(225);
    mDaemon->shutDown();
    QCOMPARE(mSent, QStringList({u"+4"_s, u"+225"_s, u"-225"_s, u"-4"_s}));
}

void DeviceDaemonKeysTest::shutDownEndsEveryCapture()
{
    pressMacroKey();
    mDaemon->shutDown();
    QCOMPARE(mKeyboard->shownOnTheFly(), OnTheFlyState::off);
    start(startDocument());
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    QCOMPARE(mWatchedClient, client);
    mDaemon->shutDown();
    QVERIFY(mWatchedClient.isEmpty());
}

void DeviceDaemonKeysTest::heldKeyIsReleasedAfterTheClientReleasesTheDevice()
{
    press(4);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    press(5);
    send(Command::releaseDevice, {}, QString());
    release(5);
    release(4);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    QVERIFY(mKeyboard->sentKeys().isEmpty());
}

QTEST_GUILESS_MAIN(DeviceDaemonKeysTest)
#include "devicedaemonkeystest.moc"
