// SPDX-License-Identifier: MIT
// The request of every command, as created and as received: the keys, the values and their types.
#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "daemonlink/daemoncommands.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;
namespace C = DaemonCommands;

namespace {

const QString port = u"KeyboardConfiguratorReplyPort"_s;
constexpr int product = 271;

/// A value with its types, because 1 and true compare equal: {HasNoDelay: bool true, delay: int 5}.
QString described(const QVariant &value)
{
    QStringList parts;
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        for (auto entry = map.begin(); entry != map.end(); ++entry)
            parts.append(entry.key() + u": "_s + described(entry.value()));
        return u'{' + parts.join(u", "_s) + u'}';
    }
    case QMetaType::QVariantList:
        for (const QVariant &element : value.toList())
            parts.append(described(element));
        return u'[' + parts.join(u", "_s) + u']';
    default: return QString::fromLatin1(value.typeName()) + u' ' + value.toString();
    }
}

} // namespace

class DaemonRequestsTest : public QObject
{
    Q_OBJECT

private slots:
    void hasExactlyTheseEntries_data();
    void hasExactlyTheseEntries();
    void booleanAndNumberDifferOnTheWire();
    void numbersOfTheCommands_data();
    void numbersOfTheCommands();
};

void DaemonRequestsTest::hasExactlyTheseEntries_data()
{
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QString>("entries"); // sorted by the keys' characters
    const QString common = u"ProductID: int 271, ResponseMsgPortName: QString KeyboardConfiguratorReplyPort"_s;
    const QVariantMap nested{{u"Keys"_s, QVariantMap{{u"4"_s, QVariantMap{{u"command"_s, 20}}}}},
                             {u"ProfileName"_s, u"Raid"_s},
                             {u"on"_s, true}};
    const QString nestedText = u"{Keys: {4: {command: int 20}}, ProfileName: QString Raid, on: bool true}"_s;

    QTest::newRow("0") << C::openDevice(port, u"/usr/share/Kestra.plist"_s)
                       << u"{DefaultQlPlistPath: QString /usr/share/Kestra.plist, IsDeviceWired: int 1, "
                          "ProductID: int 271, ProductName: QString Kestra, "
                          "ResponseMsgPortName: QString KeyboardConfiguratorReplyPort}"_s;
    QTest::newRow("4") << C::readSettings(product, port) << u"{%1}"_s.arg(common);
    QTest::newRow("5") << C::addProfile(product, port, nested)
                       << u"{DeviceSettingsDictionary: %1, %2}"_s.arg(nestedText, common);
    QTest::newRow("5, not activated") << C::addInactiveProfile(product, port, nested)
                                      << u"{DeviceSettingsDictionary: %1, KeepActiveProfile: bool true, %2}"_s.arg(
                                             nestedText, common);
    QTest::newRow("6") << C::updateProfile(product, port, 3, nested)
                       << u"{DeviceSettingsDictionary: %1, ProductID: int 271, ProfileID: int 3, "
                          "ResponseMsgPortName: QString KeyboardConfiguratorReplyPort}"_s.arg(nestedText);
    QTest::newRow("6, nothing selected") << C::updateProfile(product, port, -1, {})
                                         << u"{DeviceSettingsDictionary: {}, ProductID: int 271, ProfileID: int 0, "
                                            "ResponseMsgPortName: QString KeyboardConfiguratorReplyPort}"_s;
    QTest::newRow("6, lowest") << C::updateProfile(product, port, std::numeric_limits<int>::min(), {})
                               << u"{DeviceSettingsDictionary: {}, ProductID: int 271, ProfileID: int 0, "
                                  "ResponseMsgPortName: QString KeyboardConfiguratorReplyPort}"_s;
    QTest::newRow("7") << C::replaceAllProfiles(product, port, {nested, nested})
                       << u"{AllProfiles: [%1, %1], %2}"_s.arg(nestedText, common);
    const QString withProfile =
        u"{ProductID: int 271, ProfileID: int %1, ResponseMsgPortName: QString KeyboardConfiguratorReplyPort}"_s;
    QTest::newRow("9") << C::deleteProfile(product, port, 19) << withProfile.arg(19);
    QTest::newRow("9, below the first") << C::deleteProfile(product, port, -1) << withProfile.arg(-1);
    QTest::newRow("10") << C::switchProfile(product, port, 0) << withProfile.arg(0);
    QTest::newRow("10, below the first") << C::switchProfile(product, port, -1) << withProfile.arg(-1);
    QTest::newRow("14") << C::queryFirmwareVersion(product, port) << u"{%1}"_s.arg(common);
    const QString recording = u"{%1, isAppendRecording: int %2, macroID: int %3}"_s;
    QTest::newRow("18, append") << C::startMacroRecording(product, port, 1, 2) << recording.arg(common).arg(1).arg(2);
    QTest::newRow("18, new") << C::startMacroRecording(product, port, 0, 300) << recording.arg(common).arg(0).arg(300);
    QTest::newRow("19") << C::stopMacroRecording(product, port) << u"{%1}"_s.arg(common);
    QTest::newRow("20, new") << C::saveRecordedEvents(product, port, 2, 1) << recording.arg(common).arg(1).arg(2);
    QTest::newRow("20, append") << C::saveRecordedEvents(product, port, 5, 0) << recording.arg(common).arg(0).arg(5);
    QTest::newRow("21") << C::startEditHid(product, port) << u"{%1}"_s.arg(common);
    QTest::newRow("22") << C::deleteMacro(product, port, 7) << u"{%1, macroID: int 7}"_s.arg(common);
    QTest::newRow("23") << C::removeEvent(product, port, 4, 1)
                        << u"{%1, macroEventTableIndex: int 4, macroID: int 1}"_s.arg(common);
    const QVariantMap event{{u"command"_s, 1}, {u"page"_s, 7}, {u"argument"_s, 4}, {u"delay"_s, 50}};
    const QString eventText = u"{argument: int 4, command: int 1, delay: int 50, page: int 7}"_s;
    const QString eventPlace = u"{%1, macroID: int %2, sequenceIdx: int %3}"_s;
    const QString eventUpdate = u"{%1, macroID: int %3, sequence: %2, sequenceIdx: int %4}"_s;
    QTest::newRow("24") << C::updateEvent(product, port, 1, 9, event)
                        << eventUpdate.arg(common, eventText).arg(1).arg(9);
    QTest::newRow("24, low 8 bits") << C::updateEvent(product, port, 256 + 3, 512 + 255, event)
                                    << eventUpdate.arg(common, eventText).arg(3).arg(255);
    QTest::newRow("24, nothing selected")
        << C::updateEvent(product, port, -1, -1, {}) << eventUpdate.arg(common, u"{}"_s).arg(255).arg(255);
    QTest::newRow("25") << C::renameMacro(product, port, 2, u"Größe \U0001F3B9"_s)
                        << u"{MacroContents: {MacroName: QString Größe \U0001F3B9, macroID: int 2}, %1}"_s.arg(common);
    QTest::newRow("27") << C::readMacroLines(product, port, 300)
                        << u"{IndexOfMacroSequence: int 300, %1}"_s.arg(common);
    QTest::newRow("28") << C::readEvent(product, port, 1, 9) << eventPlace.arg(common).arg(1).arg(9);
    QTest::newRow("28, low 8 bits") << C::readEvent(product, port, 256, 257) << eventPlace.arg(common).arg(0).arg(1);
    QTest::newRow("28, nothing selected")
        << C::readEvent(product, port, -1, -1) << eventPlace.arg(common).arg(255).arg(255);
    QTest::newRow("29") << C::startSingleKeyRecording(product, port) << u"{%1}"_s.arg(common);
    QTest::newRow("30") << C::stopSingleKeyRecording(product, port) << u"{%1}"_s.arg(common);
    QTest::newRow("32") << C::addMacro(product, port, nested) << u"{MacroContents: %1, %2}"_s.arg(nestedText, common);
    QTest::newRow("33") << C::removeAllEvents(product, port, 0) << u"{%1, macroID: int 0}"_s.arg(common);
    const QString allDelays =
        u"{HasNoDelay: bool %1, ProductID: int 271, ResponseMsgPortName: QString KeyboardConfiguratorReplyPort, "
        "delay: int %2, macroID: int 1}"_s;
    QTest::newRow("34, none") << C::setAllDelays(product, port, 0, 1, true) << allDelays.arg(u"true"_s).arg(0);
    QTest::newRow("34, one") << C::setAllDelays(product, port, 60000, 1, false) << allDelays.arg(u"false"_s).arg(60000);
    QTest::newRow("37") << C::setDelay(product, port, 250, 300, 2)
                        << u"{%1, delay: int 250, macroID: int 2, sequenceIdx: int 300}"_s.arg(common);
    QTest::newRow("38") << C::releaseDevice(product) << u"{ProductID: int 271}"_s;
    QTest::newRow("38, no keyboard") << C::releaseDevice(0) << u"{ProductID: int 0}"_s;
    QTest::newRow("4, no keyboard") << C::readSettings(0, port)
                                    << u"{ProductID: int 0, "
                                       "ResponseMsgPortName: QString KeyboardConfiguratorReplyPort}"_s;
    QTest::newRow("4, other port") << C::readSettings(product, u"Other"_s)
                                   << u"{ProductID: int 271, ResponseMsgPortName: QString Other}"_s;
}

void DaemonRequestsTest::hasExactlyTheseEntries()
{
    QFETCH(QVariantMap, request);
    QFETCH(QString, entries);
    QCOMPARE(described(request), entries);
    const auto data = QlCoreUtility::convertDictionaryToData(request);
    QVERIFY(data);
    QVERIFY(data->startsWith("bplist00"));
    const auto received = QlCoreUtility::convertDataToDictionary(data);
    QVERIFY(received);
    QCOMPARE(described(*received), entries);
}

void DaemonRequestsTest::booleanAndNumberDifferOnTheWire()
{
    // In the binary form a boolean is the byte 0x08 or 0x09. A one-byte integer is 0x10 and the byte.
    const auto withDelay = [](int delay, bool hasNoDelay) {
        return QlCoreUtility::convertDictionaryToData(C::setAllDelays(1, u"P"_s, delay, 1, hasNoDelay)).value();
    };
    QVERIFY(withDelay(77, true).contains('\x09'));
    QVERIFY(withDelay(77, false).contains(QByteArray("\x10\x4d")));
    QVERIFY(withDelay(77, true) != withDelay(77, false));
}

void DaemonRequestsTest::numbersOfTheCommands_data()
{
    using enum DaemonProtocol::Command;
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("number");
    QTest::newRow("openDevice") << int(openDevice) << 0;
    QTest::newRow("readSettings") << int(readSettings) << 4;
    QTest::newRow("addProfile") << int(addProfile) << 5;
    QTest::newRow("updateProfile") << int(updateProfile) << 6;
    QTest::newRow("replaceAllProfiles") << int(replaceAllProfiles) << 7;
    QTest::newRow("deleteProfile") << int(deleteProfile) << 9;
    QTest::newRow("switchProfile") << int(switchProfile) << 10;
    QTest::newRow("queryFirmwareVersion") << int(queryFirmwareVersion) << 14;
    QTest::newRow("startMacroRecording") << int(startMacroRecording) << 18;
    QTest::newRow("stopMacroRecording") << int(stopMacroRecording) << 19;
    QTest::newRow("saveRecordedEvents") << int(saveRecordedEvents) << 20;
    QTest::newRow("startEditHid") << int(startEditHid) << 21;
    QTest::newRow("deleteMacro") << int(deleteMacro) << 22;
    QTest::newRow("removeEvent") << int(removeEvent) << 23;
    QTest::newRow("updateEvent") << int(updateEvent) << 24;
    QTest::newRow("renameMacro") << int(renameMacro) << 25;
    QTest::newRow("readMacroLines") << int(readMacroLines) << 27;
    QTest::newRow("readEvent") << int(readEvent) << 28;
    QTest::newRow("startSingleKeyRecording") << int(startSingleKeyRecording) << 29;
    QTest::newRow("stopSingleKeyRecording") << int(stopSingleKeyRecording) << 30;
    QTest::newRow("addMacro") << int(addMacro) << 32;
    QTest::newRow("removeAllEvents") << int(removeAllEvents) << 33;
    QTest::newRow("setAllDelays") << int(setAllDelays) << 34;
    QTest::newRow("setDelay") << int(setDelay) << 37;
    QTest::newRow("releaseDevice") << int(releaseDevice) << 38;
}

void DaemonRequestsTest::numbersOfTheCommands()
{
    QFETCH(int, command);
    QFETCH(int, number);
    QCOMPARE(command, number);
    QVERIFY(command < DaemonProtocol::commandLimit);
}

QTEST_GUILESS_MAIN(DaemonRequestsTest)
#include "daemonrequeststest.moc"
