// SPDX-License-Identifier: MIT
#include "tests/daemon/keyboards/linux/outputpipe.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class OutputDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasEveryKeyButThoseOfJoysticksAndTablets();
    void sendsWithTheReport();
    void codeOfSeveralKeysIsReleasedWithTheLast();
    void pressAndReleaseAreTwoReports();
    void valuesOfOneControlAreSeveralReports();
    void hasNoSwitchOfALaptopOrTablet();
    void longReportIsSentInParts();
    void releasesEverything();
    void ignoresUnknownCodes();
    void reportsWhyItCannotBeCreated();
};

void OutputDeviceTest::hasEveryKeyButThoseOfJoysticksAndTablets()
{
    for (const int code :
         {KEY_ESC, KEY_A, KEY_F24, KEY_PLAYPAUSE, KEY_MICMUTE, BTN_LEFT, BTN_TASK, KEY_OK, KEY_MACRO1, KEY_MAX - 1})
        QVERIFY2(OutputDevice::hasKey(static_cast<quint16>(code)), qPrintable(QString::number(code)));
    for (const int code : {KEY_RESERVED, BTN_JOYSTICK, BTN_GAMEPAD, BTN_TOOL_PEN, BTN_TOUCH, BTN_STYLUS, BTN_GEAR_UP,
                           BTN_DPAD_UP, BTN_TRIGGER_HAPPY1, BTN_TRIGGER_HAPPY40, KEY_MAX, KEY_CNT, 0xFFFF})
        QVERIFY2(!OutputDevice::hasKey(static_cast<quint16>(code)), qPrintable(QString::number(code)));
}

void OutputDeviceTest::sendsWithTheReport()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    device->press(KEY_LEFTSHIFT);
    device->press(KEY_A);
    device->moveWheel(REL_DIAL, -1);
    QCOMPARE(pipe.read(), QStringList());
    QVERIFY(device->flush());
    QVERIFY(device->flush()); // nothing is left for a second report
    QCOMPARE(pipe.read(), (QStringList{u"42 down"_s, u"30 down"_s, u"turn 7 -1"_s, u"report"_s}));
}

void OutputDeviceTest::codeOfSeveralKeysIsReleasedWithTheLast()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    device->press(KEY_MUTE);
    device->press(KEY_MUTE);
    device->release(KEY_MUTE);
    device->flush();
    QCOMPARE(pipe.keys(), QStringList{u"113 down"_s});
    device->release(KEY_MUTE);
    device->release(KEY_MUTE); // no key holds it
    device->flush();
    QCOMPARE(pipe.keys(), (QStringList{u"113 down"_s, u"113 up"_s}));
}

void OutputDeviceTest::pressAndReleaseAreTwoReports()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    device->press(KEY_A);
    device->release(KEY_A);
    device->flush();
    QCOMPARE(pipe.read(), (QStringList{u"30 down"_s, u"report"_s, u"30 up"_s, u"report"_s}));
}

void OutputDeviceTest::valuesOfOneControlAreSeveralReports()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    device->setVolume(7);
    device->setSwitch(SW_MUTE_DEVICE, true);
    device->setVolume(8);
    device->setSwitch(SW_MUTE_DEVICE, true);
    device->setSwitch(SW_MUTE_DEVICE, false);
    device->flush();
    QCOMPARE(pipe.read(), (QStringList{u"volume 7"_s, u"switch 14 on"_s, u"report"_s, u"volume 8"_s, u"switch 14 on"_s,
                                       u"report"_s, u"switch 14 off"_s, u"report"_s}));
}

void OutputDeviceTest::hasNoSwitchOfALaptopOrTablet()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    for (const int code : {SW_LID, SW_TABLET_MODE, SW_CNT, 0xFFFF}) {
        QVERIFY(!OutputDevice::hasSwitch(static_cast<quint16>(code)));
        device->setSwitch(static_cast<quint16>(code), true);
    }
    device->flush();
    QCOMPARE(pipe.read(), QStringList());
    for (int code = SW_HEADPHONE_INSERT; code <= SW_MAX; ++code)
        QVERIFY(OutputDevice::hasSwitch(static_cast<quint16>(code)));
}

void OutputDeviceTest::longReportIsSentInParts()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    for (quint16 code = KEY_ESC; code <= KEY_MICMUTE; ++code)
        device->press(code);
    device->flush();
    QCOMPARE(pipe.keys().size(), KEY_MICMUTE);
    QCOMPARE(pipe.read().last(), u"report"_s);
}

void OutputDeviceTest::releasesEverything()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    device->press(KEY_A);
    device->press(KEY_A);
    device->press(BTN_LEFT);
    device->flush();
    device->releaseAll();
    device->flush();
    QCOMPARE(pipe.keys().mid(2), (QStringList{u"30 up"_s, u"272 up"_s}));
    device->release(KEY_A);
    device->flush();
    QCOMPARE(pipe.keys().size(), 4);
}

void OutputDeviceTest::ignoresUnknownCodes()
{
    OutputPipe pipe;
    const auto device = pipe.device();
    for (const int code : {0, BTN_TOUCH, KEY_CNT, 0xFFFF}) {
        device->press(static_cast<quint16>(code));
        device->release(static_cast<quint16>(code));
    }
    device->flush();
    QCOMPARE(pipe.read(), QStringList());
}

void OutputDeviceTest::reportsWhyItCannotBeCreated()
{
    if (QFile::exists(u"/dev/uinput"_s))
        QSKIP("this machine may be able to");
    const auto output = OutputDevice::create();
    QVERIFY(!output);
    const QString problem = output.error().message;
    QVERIFY2(problem.contains("modprobe uinput"_L1), qPrintable(problem));
}

QTEST_APPLESS_MAIN(OutputDeviceTest)
#include "outputdevicetest.moc"
