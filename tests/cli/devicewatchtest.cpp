// SPDX-License-Identifier: MIT
// "kestractl device watch". The test acts as the daemon, with a virtual keyboard, and as the desktop and its user.
#include "base/daemonprotocol.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "daemon/keyboards/keywatchadaptor.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "platform/messageport.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/notificationservice.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/types.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DeviceWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void showsBothSides();
    void keyThatSendsNothingHasNoOtherSide();
    void refusalIsReported();
    void missingDesktopIsReported();
    void secondCallerIsReported();
    void endIsReported();
    void interruptEndsTheWatch();

private:
    void start(QProcess &process)
    {
        startKestractl(process, {u"device"_s, u"watch"_s}, QProcessEnvironment::systemEnvironment());
    }
    void answer(const QString &button)
    {
        QTRY_COMPARE_WITH_TIMEOUT(mService->bubbles.size(), 1, 30000);
        mService->press(button);
    }
    /// Until the program shows the column of the computer.
    void waitForWatch(QProcess &process)
    {
        QTRY_VERIFY_WITH_TIMEOUT((mOutput += process.readAllStandardOutput()).contains("to the computer\n"), 30000);
    }
    KestractlResult finish(QProcess &process)
    {
        [&] { QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 30000); }();
        return finishedResult(process);
    }

    KeyPath::Time mNow{};
    std::optional<KeyPath::Time> mDeadline;
    QByteArray mOutput;
    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<NotificationService> mService;
    std::unique_ptr<VirtualKeyboard> mKeyboard;
    std::unique_ptr<CurrentKeyboard> mCurrent;
    std::unique_ptr<KeyWatch> mWatch;
    std::unique_ptr<KeyWatchObject> mWatchObject;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mDevicesObject;
    std::unique_ptr<LocalMessagePort> mPort;
};

void DeviceWatchTest::initTestCase()
{
    std::signal(SIGPIPE, SIG_IGN); // as the daemon
    qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources");
}

void DeviceWatchTest::init()
{
    mOutput.clear();
    mDeadline.reset();
    mFolder = std::make_unique<QTemporaryDir>();
    mService = std::make_unique<NotificationService>();
    mKeyboard = std::make_unique<VirtualKeyboard>();
    mCurrent = std::make_unique<CurrentKeyboard>();
    QVariantMap document = SettingsDocument::minimal();
    QVariantList profiles = document.value(u"Profiles"_s).toList();
    QVariantMap profile = profiles.value(0).toMap();
    const auto entry = [](int command, int usage) {
        return QVariantMap{{u"command"_s, command}, {u"param1"_s, usage}, {u"param2"_s, 0}};
    };
    profile.insert(u"Keys"_s, QVariantMap{{u"4"_s, entry(16, 6)}, {u"5"_s, entry(20, 0)}}); // A sends C, B nothing
    profiles[0] = profile;
    document.insert(u"Profiles"_s, profiles);
    mCurrent->use(*mKeyboard, document);
    mWatch = std::make_unique<KeyWatch>(
        *mCurrent, QDBusConnection::sessionBus(),
        KeyClock{.now = [this] { return mNow; },
                 .wakeAt = [this](std::optional<KeyPath::Time> deadline) { mDeadline = deadline; }});
    mWatchObject = std::make_unique<KeyWatchObject>(*mWatch);
    QVERIFY(mWatchObject->registerOn(QDBusConnection::sessionBus()));
    mDevices = std::make_unique<ScriptedDevices>();
    mChoice = std::make_unique<DeviceChoice>(mFolder->path());
    mDevicesObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
    QVERIFY(mDevicesObject->registerOn(QDBusConnection::sessionBus()));
    const auto ignore = [](qint32, const std::optional<QByteArray> &) -> std::optional<QByteArray> { return {}; };
    mPort = LocalMessagePort::create(DaemonProtocol::requestPortName, ignore, QDBusConnection::sessionBus());
    QVERIFY(mPort);
}

void DeviceWatchTest::cleanup()
{
    mPort.reset();
    mDevicesObject.reset();
    mChoice.reset();
    mDevices.reset();
    mWatchObject.reset();
    mWatch.reset();
    mCurrent.reset();
    mKeyboard.reset();
    mService.reset();
    mFolder.reset();
}

void DeviceWatchTest::showsBothSides()
{
    QProcess process;
    start(process);
    answer(u"allow"_s);
    waitForWatch(process);
    QVERIFY(mKeyboard->press(7, 4));
    QVERIFY(mKeyboard->release(7, 4));
    QTRY_VERIFY_WITH_TIMEOUT((mOutput += process.readAllStandardOutput()).contains("C up"), 30000);
    const QStringList lines = QString::fromUtf8(mOutput).split(u'\n');
    QCOMPARE(lines.value(0), u"keyboard: the virtual keyboard"_s);
    const qsizetype header = lines.indexOf(u"from the keyboard         to the computer"_s);
    QVERIFY2(header > 0, mOutput.constData());
    QCOMPARE(lines.value(header + 1), u"A down                    C down"_s);
    QCOMPARE(lines.value(header + 2), u"A up                      C up"_s);
    mService->press(u"stop"_s);
    const KestractlResult result = finish(process);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text(), u"ended: stopped\n"_s);
    QCOMPARE(result.errorText(), QString());
}

void DeviceWatchTest::keyThatSendsNothingHasNoOtherSide()
{
    QProcess process;
    start(process);
    answer(u"allow"_s);
    waitForWatch(process);
    QVERIFY(mKeyboard->press(7, 5));
    QTRY_VERIFY_WITH_TIMEOUT((mOutput += process.readAllStandardOutput()).endsWith("\nB down\n"), 30000);
    mService->dismiss();
    QCOMPARE(finish(process).exitCode, 0);
}

void DeviceWatchTest::refusalIsReported()
{
    QProcess process;
    start(process);
    answer(u"refuse"_s);
    const KestractlResult result = finish(process);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errorText().contains(u"answered with no, or dismissed"_s), result.errors.constData());
    QVERIFY(!result.text().contains(u"to the computer"_s));
}

void DeviceWatchTest::missingDesktopIsReported()
{
    mService.reset();
    QProcess process;
    start(process);
    const KestractlResult result = finish(process);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errorText().contains(u"no notification service answers"_s), result.errors.constData());
}

void DeviceWatchTest::secondCallerIsReported()
{
    QProcess process;
    start(process);
    answer(u"allow"_s);
    waitForWatch(process);
    QProcess second;
    start(second);
    const KestractlResult result = finish(second);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errorText().contains(u"Another program is watching"_s), result.errors.constData());
    QVERIFY(mKeyboard->press(7, 4)); // the first one goes on
    QTRY_VERIFY_WITH_TIMEOUT((mOutput += process.readAllStandardOutput()).contains("C down"), 30000);
    mService->press(u"stop"_s);
    QCOMPARE(finish(process).exitCode, 0);
}

void DeviceWatchTest::endIsReported()
{
    QProcess process;
    start(process);
    answer(u"allow"_s);
    waitForWatch(process);
    QVERIFY(mDeadline);
    mNow = *mDeadline;
    mWatch->wake();
    const KestractlResult result = finish(process);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text(), u"ended: time over\n"_s);
}

void DeviceWatchTest::interruptEndsTheWatch()
{
    QProcess process;
    start(process);
    answer(u"allow"_s);
    waitForWatch(process);
    QVERIFY(mDeadline);
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 30000);
    QTRY_VERIFY(!mDeadline);
    QTRY_COMPARE(mService->closed.value(mService->closed.size() - 1), mService->lastId());
    QVERIFY(mKeyboard->press(7, 4));
    QVERIFY(!mCurrent->takeTapped());
}

QTEST_GUILESS_MAIN(DeviceWatchTest)
#include "devicewatchtest.moc"
