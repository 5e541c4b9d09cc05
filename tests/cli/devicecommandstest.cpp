// SPDX-License-Identifier: MIT
// "kestractl device", and the rows of "status" about real keyboards. The test acts as the daemon, with made-up
// keyboards.
#include "base/daemonprotocol.h"
#include "base/document.h"
#include "base/qlcoreutility.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"
#include "daemon/settings/settingsdocument.h"
#include "platform/messageport.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QVariantMap profileWithKey(QVariantMap profile, int code, int command)
{
    const QVariantMap entry{{u"command"_s, command}, {u"param1"_s, 0}, {u"param2"_s, 1}};
    profile.insert(u"Keys"_s, QVariantMap{{QString::number(code), entry}});
    return profile;
}

} // namespace

class DeviceCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listMarksTheKeyboardsInUse();
    void listShowsProblemsAndTheirRemedy();
    void listMarksPads();
    void listReportsThatThereIsNoKeyboard();
    void listAsJsonHasEverything();
    void useShowsHowToReleaseTheKeyboard();
    void usesSeveralKeyboards();
    void addsAKeyboardToThoseInUse();
    void releasesOneOfSeveral();
    void listShowsWhyAChosenKeyboardIsNotInUse();
    void refusedUseShowsTheRemedy_data();
    void refusedUseShowsTheRemedy();
    void useThatFailsLaterShowsTheRemedy();
    void useReportsThatItWaitsForKeysToComeUp();
    void releaseReturnsToTheVirtualKeyboard();
    void reportsAChoiceThatCannotBeKept();
    void namesCannotControlTheTerminal();
    void ruleAppliesToTheNamedKeyboard();
    void refusesARuleForAnUnknownKeyboard();
    void statusWithoutARealKeyboard();
    void statusShowsTheKeyboardsInUse();
    void statusOfAnAbsentKeyboard();
    void reportsADaemonWithoutTheObject();
    void unusedVirtualKeyboardShowsHowToUseIt_data();
    void unusedVirtualKeyboardShowsHowToUseIt();

private:
    /// Runs kestractl while this thread serves the bus.
    static KestractlResult run(const QStringList &arguments);

    QVariantMap mDocument; // the daemon's
    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mObject;
    std::unique_ptr<LocalMessagePort> mPort;
};

void DeviceCommandsTest::init()
{
    mDocument = SettingsDocument::minimal();
    mFolder = std::make_unique<QTemporaryDir>();
    mDevices = std::make_unique<ScriptedDevices>();
    InputDevice broken = ScriptedDevices::keyboard(0x10);
    broken.problem = u"No right to /dev/input/event16. "_s + deviceRightsRemedy(broken.id);
    mDevices->plug({ScriptedDevices::keyboard(1, u"S1"_s), ScriptedDevices::keyboard(2), broken});
    mChoice = std::make_unique<DeviceChoice>(mFolder->path());
    mObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
    QVERIFY(mObject->registerOn(QDBusConnection::sessionBus()));
    const auto answer = [this](qint32 number, const std::optional<QByteArray> &data) -> std::optional<QByteArray> {
        const QVariantMap request = QlCoreUtility::convertDataToDictionary(data).value_or(QVariantMap());
        const QVariantMap reply{{DaemonProtocol::returnStatus, 0}, {DaemonProtocol::allDevSettings, mDocument}};
        if (const auto port = RemoteMessagePort::open(request.value(DaemonProtocol::responsePortName).toString()))
            port->post(number, QlCoreUtility::convertDictionaryToData(reply).value_or(QByteArray()));
        return {};
    };
    mPort = LocalMessagePort::create(DaemonProtocol::requestPortName, answer, QDBusConnection::sessionBus());
    QVERIFY(mPort);
}

void DeviceCommandsTest::cleanup()
{
    mPort.reset();
    mObject.reset();
    mChoice.reset();
    mDevices.reset();
    mFolder.reset();
}

KestractlResult DeviceCommandsTest::run(const QStringList &arguments)
{
    QProcess process;
    startKestractl(process, arguments, QProcessEnvironment::systemEnvironment());
    [&] { QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 30000); }();
    return finishedResult(process);
}

void DeviceCommandsTest::listMarksTheKeyboardsInUse()
{
    QVERIFY(mDevices->use({u"1b2c:0002"_s}));
    const KestractlResult result = run({u"device"_s, u"list"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errorText(), QString());
    const QStringList lines = result.text().split(u'\n');
    QCOMPARE(lines.value(0), u"   1b2c:0001  Keyboard 1"_s);
    QCOMPARE(lines.value(1), u"*  1b2c:0002  Keyboard 2"_s);
}

void DeviceCommandsTest::listShowsProblemsAndTheirRemedy()
{
    const QStringList lines = run({u"device"_s, u"list"_s}).text().split(u'\n');
    QCOMPARE(lines.value(2), u"   1b2c:0010  Keyboard 16"_s);
    QCOMPARE(lines.value(3),
             u"      cannot be used: No right to /dev/input/event16. Run \"kestractl device rule 1b2c:0010\" and "
             "follow the first lines of its output."_s);
}

void DeviceCommandsTest::listMarksPads()
{
    InputDevice numberPad = ScriptedDevices::keyboard(1);
    numberPad.kind = DeviceKind::numberPad;
    InputDevice keyPad = ScriptedDevices::keyboard(2);
    keyPad.kind = DeviceKind::keyPad;
    mDevices->plug({numberPad, keyPad});
    const QStringList lines = run({u"device"_s, u"list"_s}).text().split(u'\n');
    QCOMPARE(lines.value(0), u"   1b2c:0001  Keyboard 1 (number pad)"_s);
    QCOMPARE(lines.value(1), u"   1b2c:0002  Keyboard 2 (key pad)"_s);
}

void DeviceCommandsTest::listReportsThatThereIsNoKeyboard()
{
    mDevices->plug({});
    QCOMPARE(run({u"device"_s, u"list"_s}).text(), u"no keyboard is plugged in\n"_s);
    const KestractlResult json = run({u"device"_s, u"list"_s, u"--json"_s});
    QVERIFY(json.json().isArray());
    QCOMPARE(json.json().array().size(), 0);
}

void DeviceCommandsTest::listAsJsonHasEverything()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    const QJsonArray list = run({u"device"_s, u"list"_s, u"--json"_s}).json().array();
    QCOMPARE(list.size(), 3);
    const QJsonObject expected{{u"id"_s, u"1b2c:0001"_s}, {u"name"_s, u"Keyboard 1"_s},
                               {u"vendor"_s, 0x1b2c},     {u"product"_s, 1},
                               {u"serial"_s, u"S1"_s},    {u"kind"_s, u"keyboard"_s},
                               {u"path"_s, u"port-1"_s},  {u"nodes"_s, QJsonArray{u"/dev/input/event1"_s}},
                               {u"inUse"_s, true},        {u"problem"_s, u""_s},
                               {u"state"_s, u"in use"_s}};
    QCOMPARE(list.at(0).toObject(), expected);
    QVERIFY(list.at(2).toObject().value(u"problem"_s).toString().contains(u"No right"_s));
}

void DeviceCommandsTest::useShowsHowToReleaseTheKeyboard()
{
    const KestractlResult result = run({u"device"_s, u"use"_s, u"1b2c:0001"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text().split(u'\n').value(0), u"in use: Keyboard 1"_s);
    for (const QString &word : {u"Backspace"_s, u"Escape"_s, u"Return"_s, u"kestractl device release"_s})
        QVERIFY2(result.text().contains(word), qPrintable(word));
    QVERIFY(mDevices->devices().at(0).isInUse);
}

void DeviceCommandsTest::usesSeveralKeyboards()
{
    const KestractlResult result = run({u"device"_s, u"use"_s, u"1b2c:0001"_s, u"1b2c:0002"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text().split(u'\n').value(0), u"in use: Keyboard 1, Keyboard 2"_s);
    QCOMPARE(DeviceChoice(mFolder->path()).load().size(), 2);
}

void DeviceCommandsTest::addsAKeyboardToThoseInUse()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    const KestractlResult result = run({u"device"_s, u"use"_s, u"--add"_s, u"1b2c:0002"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text().split(u'\n').value(0), u"in use: Keyboard 1, Keyboard 2"_s);
    QCOMPARE(DeviceChoice(mFolder->path()).load().size(), 2);
    QCOMPARE(run({u"device"_s, u"use"_s, u"--add"_s, u"nine"_s}).exitCode, 2);
    QCOMPARE(mDevices->choices().size(), 2);
}

void DeviceCommandsTest::releasesOneOfSeveral()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0002"_s}));
    const KestractlResult unknown = run({u"device"_s, u"release"_s, u"1b2c:0010"_s});
    QCOMPARE(unknown.exitCode, 2);
    QVERIFY2(unknown.errorText().contains(u"does not use"_s), unknown.errors.constData());
    QCOMPARE(mDevices->choices().size(), 2);
    const KestractlResult first = run({u"device"_s, u"release"_s, u"1b2c:0001"_s});
    QCOMPARE(first.exitCode, 0);
    QCOMPARE(first.text(), u"released; still in use: Keyboard 2\n"_s);
    QCOMPARE(DeviceChoice(mFolder->path()).load().size(), 1);
    const KestractlResult last = run({u"device"_s, u"release"_s, u"1b2c:0002"_s});
    QCOMPARE(last.exitCode, 0);
    QCOMPARE(last.text(), u"the virtual keyboard is in use\n"_s);
}

void DeviceCommandsTest::listShowsWhyAChosenKeyboardIsNotInUse()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0002"_s}));
    mDevices->plug({ScriptedDevices::keyboard(3), ScriptedDevices::keyboard(4)});
    mDevices->setStates({DeviceState::waiting, DeviceState::suspended});
    const QStringList lines = run({u"device"_s, u"list"_s}).text().split(u'\n');
    QCOMPARE(lines.value(1), u"      chosen: in use as soon as none of its keys is down"_s);
    QVERIFY2(lines.value(3).startsWith(u"      chosen: released by Backspace, Escape and Return"_s),
             qPrintable(lines.value(3)));
    QCOMPARE(lines.value(4), u"   1b2c:0001:S1      chosen, not plugged in"_s);
    QCOMPARE(lines.value(5), u"   1b2c:0002:port-2  chosen, not plugged in"_s);
    const QJsonArray list = run({u"device"_s, u"list"_s, u"--json"_s}).json().array();
    QCOMPARE(list.size(), 4);
    QCOMPARE(list.at(0).toObject().value(u"state"_s).toString(), u"waiting"_s);
    const QJsonObject absent{{u"id"_s, u"1b2c:0001:S1"_s}, {u"inUse"_s, false}, {u"state"_s, u"absent"_s}};
    QCOMPARE(list.at(2).toObject(), absent);
}

void DeviceCommandsTest::refusedUseShowsTheRemedy_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QStringList() << 2 << u"usage: kestractl device use ID..."_s;
    QTest::newRow("unknown") << QStringList{u"nine"_s} << 2 << u"There is no keyboard \"nine\"."_s;
    QTest::newRow("no right") << QStringList{u"1b2c:0001"_s, u"1b2c:0010"_s} << 1
                              << u"No right to /dev/input/event16. Run \"kestractl device rule 1b2c:0010\""_s;
}

void DeviceCommandsTest::refusedUseShowsTheRemedy()
{
    QFETCH(QStringList, ids);
    const KestractlResult result = run(QStringList{u"device"_s, u"use"_s} + ids);
    QTEST(result.exitCode, "exitCode");
    QFETCH(QString, text);
    QVERIFY2(result.errorText().contains(text), result.errors.constData());
    QCOMPARE(result.text(), QString());
    QVERIFY(mDevices->choices().isEmpty());
}

void DeviceCommandsTest::useThatFailsLaterShowsTheRemedy()
{
    DeviceStatus status;
    status.state = DeviceState::failed;
    status.problem = u"Another program holds /dev/input/event1. End it."_s;
    mDevices->setStatus(status);
    const KestractlResult result = run({u"device"_s, u"use"_s, u"1b2c:0001"_s});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errorText().contains(status.problem), result.errors.constData());
}

void DeviceCommandsTest::useReportsThatItWaitsForKeysToComeUp()
{
    DeviceStatus status;
    status.state = DeviceState::waiting;
    mDevices->setStatus(status);
    const KestractlResult result = run({u"device"_s, u"use"_s, u"1b2c:0001"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text().split(u'\n').value(0), u"in use as soon as no key is down"_s);
}

void DeviceCommandsTest::releaseReturnsToTheVirtualKeyboard()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    const KestractlResult result = run({u"device"_s, u"release"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text(), u"the virtual keyboard is in use\n"_s);
    QVERIFY(!mDevices->devices().at(0).isInUse);
}

void DeviceCommandsTest::reportsAChoiceThatCannotBeKept()
{
    QVERIFY(QDir().rmdir(mFolder->path()));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write .*devices.plist"_s));
    const KestractlResult result = run({u"device"_s, u"use"_s, u"1b2c:0001"_s});
    QCOMPARE(result.exitCode, 6);
    QVERIFY2(result.errorText().contains(u"cannot be stored"_s), result.errors.constData());
}

void DeviceCommandsTest::namesCannotControlTheTerminal()
{
    InputDevice device = ScriptedDevices::keyboard(1);
    device.name = u"\x1b]0;title\x07 K\u202ey \u0085 déjà 鍵"_s;
    mDevices->plug({device});
    QVERIFY(mDevices->use({device.id}));
    for (const QStringList &arguments : {QStringList{u"device"_s, u"list"_s}, QStringList{u"status"_s}}) {
        const KestractlResult result = run(arguments);
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.text().contains(u"?]0;title? K?y ? déjà 鍵"_s), result.output.constData());
    }
}

void DeviceCommandsTest::ruleAppliesToTheNamedKeyboard()
{
    const KestractlResult result = run({u"device"_s, u"rule"_s, u"1b2c:0001"_s});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.text().contains(u"ATTRS{id/vendor}==\"1b2c\", ATTRS{id/product}==\"0001\", ATTRS{uniq}==\"S1\""_s));
    QVERIFY(result.text().contains(u"chown -f %1 "_s.arg(::getuid())));
    QVERIFY(result.text().startsWith(u"# "_s));
    QVERIFY(result.text().contains(u"kestractl device rule 1b2c:0001 | sudo tee /etc/udev/rules.d/70-"_s));
}

void DeviceCommandsTest::refusesARuleForAnUnknownKeyboard()
{
    QCOMPARE(run({u"device"_s, u"rule"_s, u"nine"_s}).exitCode, 2);
    InputDevice nameless = ScriptedDevices::keyboard(0);
    nameless.vendor = 0;
    mDevices->plug({nameless});
    const KestractlResult result = run({u"device"_s, u"rule"_s, nameless.id});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.text(), QString());
}

void DeviceCommandsTest::statusWithoutARealKeyboard()
{
    const QJsonObject status = run({u"status"_s, u"--json"_s}).json().object();
    QCOMPARE(status.value(u"deviceState"_s).toString(), u"released"_s);
    QVERIFY(status.value(u"devices"_s).isArray());
    QVERIFY(status.value(u"devices"_s).toArray().isEmpty());
    QVERIFY(status.value(u"grabs"_s).toArray().isEmpty());
    QVERIFY(run({u"status"_s}).text().contains(u"latency: no keys yet\n"_s));
}

void DeviceCommandsTest::statusShowsTheKeyboardsInUse()
{
    DeviceStatus counters;
    counters.isRealTime = true;
    counters.lostEvents = 2;
    counters.latency = {.count = Q_UINT64_C(5'000'000'000), .p50Us = 41, .p99Us = 207, .maximumUs = 900};
    mDevices->setCounters(counters);
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0002"_s}));
    const QString text = run({u"status"_s}).text();
    for (const QString &line :
         {u"keyboard: attached"_s, u"deviceState: in use"_s, u"devices: Keyboard 1, Keyboard 2"_s,
          u"deviceProblem: none"_s, u"grabs: /dev/input/event1, /dev/input/event2"_s, u"realTime: on"_s,
          u"lostEvents: 2"_s, u"latency: p50 41 µs, p99 207 µs, maximum 900 µs of 5000000000 keys"_s})
        QVERIFY2(text.contains(line + u'\n'), qPrintable(line + u" is not in\n"_s + text));
    const QJsonObject status = run({u"status"_s, u"--json"_s}).json().object();
    const QJsonObject latency{
        {u"count"_s, Q_INT64_C(5'000'000'000)}, {u"p50Us"_s, 41}, {u"p99Us"_s, 207}, {u"maximumUs"_s, 900}};
    QCOMPARE(status.value(u"latency"_s).toObject(), latency);
    QCOMPARE(status.value(u"grabs"_s).toArray(), (QJsonArray{u"/dev/input/event1"_s, u"/dev/input/event2"_s}));
    QCOMPARE(status.value(u"devices"_s).toArray(), (QJsonArray{u"Keyboard 1"_s, u"Keyboard 2"_s}));
}

void DeviceCommandsTest::statusOfAnAbsentKeyboard()
{
    QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    mDevices->plug({});
    const QJsonObject status = run({u"status"_s, u"--json"_s}).json().object();
    QCOMPARE(status.value(u"keyboard"_s).toString(), u"not attached"_s);
    QCOMPARE(status.value(u"deviceState"_s).toString(), u"absent"_s);
    QVERIFY(status.value(u"firmware"_s).isNull());
}

void DeviceCommandsTest::reportsADaemonWithoutTheObject()
{
    mObject.reset(); // an older daemon
    for (const QString &command : {u"list"_s, u"release"_s}) {
        const KestractlResult result = run({u"device"_s, command});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.errorText().contains(u"the daemon has no use of real keyboards"_s), result.errors.constData());
    }
    const QJsonObject status = run({u"status"_s, u"--json"_s}).json().object();
    QVERIFY(status.value(u"deviceState"_s).isNull());
    QVERIFY(status.value(u"latency"_s).isNull());
    mPort.reset(); // no daemon
    QCOMPARE(run({u"device"_s, u"list"_s}).exitCode, 3);
}

void DeviceCommandsTest::unusedVirtualKeyboardShowsHowToUseIt_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("macro play") << QStringList{u"macro"_s, u"play"_s, u"1"_s};
    QTest::newRow("press") << QStringList{u"keyboard"_s, u"press"_s, u"A"_s};
    QTest::newRow("game mode") << QStringList{u"keyboard"_s, u"game-mode"_s};
    QTest::newRow("Macro key") << QStringList{u"keyboard"_s, u"macro-key"_s};
    QTest::newRow("brightness") << QStringList{u"keyboard"_s, u"brightness"_s, u"up"_s};
    QTest::newRow("brightness level") << QStringList{u"keyboard"_s, u"brightness"_s, u"2"_s};
}

void DeviceCommandsTest::unusedVirtualKeyboardShowsHowToUseIt()
{
    QFETCH(QStringList, arguments);
    const QVariantMap profile = Document(mDocument).activeProfile();
    mDocument = SettingsDocument::withMacros(mDocument, {QVariantMap{{u"MacroName"_s, u"Combo"_s}}});
    mDocument = SettingsDocument::withProfiles(mDocument, {profileWithKey(profile, 4, 10)});
    VirtualKeyboard keyboard; // not in use
    VirtualKeyboardObject object(keyboard);
    QVERIFY(object.registerOn(QDBusConnection::sessionBus()));
    const KestractlResult result = run(arguments);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.text(), QString());
    QVERIFY2(result.errorText().contains(u"kestractl device release"_s), result.errors.constData());
}

QTEST_GUILESS_MAIN(DeviceCommandsTest)
#include "devicecommandstest.moc"
