// SPDX-License-Identifier: MIT
#include "daemon/keyboards/devices.h"
#include "tests/support/testmain.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class DevicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choiceIdentifiesTheRightKeyboards_data();
    void choiceIdentifiesTheRightKeyboards();
    void everyKeyboardIsFoundByItsOwnChoice();
    void choiceFollowsTheOnlyKeyboardOfItsMake_data();
    void choiceFollowsTheOnlyKeyboardOfItsMake();
    void keyboardsBesideTheChosenOneAreOthers();
    void statesHaveDifferentNames();
};

namespace {

InputDevice device(const QString &serial, const QString &path, quint16 product = 2)
{
    InputDevice result;
    result.vendor = 1;
    result.product = product;
    result.serial = serial;
    result.path = path;
    return result;
}

ChosenDevice choice(const QString &serial, const QString &path, quint16 product = 2)
{
    return choiceOf(device(serial, path, product));
}

} // namespace

void DevicesTest::choiceIdentifiesTheRightKeyboards_data()
{
    QTest::addColumn<QList<InputDevice>>("devices");
    QTest::addColumn<QList<ChosenDevice>>("choices");
    QTest::addColumn<QList<qsizetype>>("chosen");
    using Devices = QList<InputDevice>;
    using Choices = QList<ChosenDevice>;
    using Chosen = QList<qsizetype>;
    const QString none;
    QTest::newRow("no choice") << Devices{device(none, u"p"_s)} << Choices{} << Chosen{};
    QTest::newRow("not plugged in") << Devices{} << Choices{choice(u"S"_s, u"p"_s)} << Chosen{};
    QTest::newRow("same port") << Devices{device(none, u"q"_s), device(none, u"p"_s)} << Choices{choice(none, u"p"_s)}
                               << Chosen{1};
    QTest::newRow("without a number, at another port")
        << Devices{device(none, u"q"_s)} << Choices{choice(none, u"p"_s)} << Chosen{};
    QTest::newRow("by its number, at another port")
        << Devices{device(u"R"_s, u"p"_s), device(u"S"_s, u"q"_s)} << Choices{choice(u"S"_s, u"p"_s)} << Chosen{1};
    QTest::newRow("another number at its port")
        << Devices{device(u"R"_s, u"p"_s)} << Choices{choice(u"S"_s, u"p"_s)} << Chosen{};
    QTest::newRow("a number where there was none")
        << Devices{device(u"R"_s, u"p"_s)} << Choices{choice(none, u"p"_s)} << Chosen{};
    QTest::newRow("another product at its port")
        << Devices{device(none, u"p"_s, 3)} << Choices{choice(none, u"p"_s)} << Chosen{};
    QTest::newRow("one number twice, at its port")
        << Devices{device(u"S"_s, u"p"_s), device(u"S"_s, u"q"_s)} << Choices{choice(u"S"_s, u"q"_s)} << Chosen{1};
    QTest::newRow("one number twice, at neither")
        << Devices{device(u"S"_s, u"p"_s), device(u"S"_s, u"q"_s)} << Choices{choice(u"S"_s, u"r"_s)} << Chosen{0};
    QTest::newRow("one number twice, both chosen, one moved")
        << Devices{device(u"S"_s, u"q"_s), device(u"S"_s, u"p"_s)}
        << Choices{choice(u"S"_s, u"r"_s), choice(u"S"_s, u"q"_s)} << Chosen{0, 1};
    QTest::newRow("the same choice twice")
        << Devices{device(none, u"p"_s)} << Choices{choice(none, u"p"_s), choice(none, u"p"_s)} << Chosen{0};
    QTest::newRow("several") << Devices{device(none, u"p"_s), device(none, u"q"_s), device(none, u"r"_s)}
                             << Choices{choice(none, u"r"_s), choice(none, u"p"_s)} << Chosen{0, 2};
}

void DevicesTest::choiceIdentifiesTheRightKeyboards()
{
    QFETCH(QList<InputDevice>, devices);
    QFETCH(QList<ChosenDevice>, choices);
    QFETCH(QList<qsizetype>, chosen);
    QCOMPARE(chosenAmong(devices, choices), chosen);
}

void DevicesTest::everyKeyboardIsFoundByItsOwnChoice()
{
    QList<InputDevice> devices;
    for (const QString &serial : {u""_s, u"S"_s, u"T"_s}) {
        for (const QString &path : {u"p"_s, u"q"_s}) {
            devices += device(serial, path, 2);
            devices += device(serial, path, 3);
        }
    }
    for (qsizetype index = 0; index < devices.size(); ++index)
        QCOMPARE(chosenAmong(devices, {choiceOf(devices.at(index))}), QList<qsizetype>{index});
}

void DevicesTest::choiceFollowsTheOnlyKeyboardOfItsMake_data()
{
    QTest::addColumn<QList<InputDevice>>("devices");
    QTest::addColumn<QList<ChosenDevice>>("choices");
    QTest::addColumn<QList<ChosenDevice>>("others");
    QTest::addColumn<QList<ChosenDevice>>("moved");
    using Devices = QList<InputDevice>;
    using Choices = QList<ChosenDevice>;
    using Others = QList<ChosenDevice>;
    const QString none;
    QTest::newRow("not plugged in") << Devices{} << Choices{choice(none, u"p"_s)} << Others{}
                                    << Choices{choice(none, u"p"_s)};
    QTest::newRow("at another port") << Devices{device(none, u"q"_s)} << Choices{choice(none, u"p"_s)} << Others{}
                                     << Choices{choice(none, u"q"_s)};
    QTest::newRow("another keyboard at another port") << Devices{device(none, u"q"_s)} << Choices{choice(none, u"p"_s)}
                                                      << Others{choice(none, u"q"_s)} << Choices{choice(none, u"p"_s)};
    QTest::newRow("two at other ports") << Devices{device(none, u"q"_s), device(none, u"r"_s)}
                                        << Choices{choice(none, u"p"_s)} << Others{} << Choices{choice(none, u"p"_s)};
    QTest::newRow("a second one beside it")
        << Devices{device(none, u"p"_s), device(none, u"q"_s)} << Choices{choice(none, u"p"_s)} << Others{}
        << Choices{choice(none, u"p"_s)};
    QTest::newRow("another product") << Devices{device(none, u"q"_s, 3)} << Choices{choice(none, u"p"_s)} << Others{}
                                     << Choices{choice(none, u"p"_s)};
    QTest::newRow("a number where there was none") << Devices{device(u"S"_s, u"q"_s)} << Choices{choice(none, u"p"_s)}
                                                   << Others{} << Choices{choice(none, u"p"_s)};
    QTest::newRow("with a number") << Devices{device(u"S"_s, u"q"_s)} << Choices{choice(u"S"_s, u"p"_s)} << Others{}
                                   << Choices{choice(u"S"_s, u"p"_s)};
    QTest::newRow("two chosen, one left at its port")
        << Devices{device(none, u"q"_s)} << Choices{choice(none, u"p"_s), choice(none, u"q"_s)} << Others{}
        << Choices{choice(none, u"p"_s), choice(none, u"q"_s)};
    QTest::newRow("two chosen, one at a third port")
        << Devices{device(none, u"r"_s)} << Choices{choice(none, u"p"_s), choice(none, u"q"_s)} << Others{}
        << Choices{choice(none, u"r"_s), choice(none, u"q"_s)};
}

void DevicesTest::choiceFollowsTheOnlyKeyboardOfItsMake()
{
    QFETCH(QList<InputDevice>, devices);
    QFETCH(QList<ChosenDevice>, choices);
    QFETCH(QList<ChosenDevice>, others);
    QFETCH(QList<ChosenDevice>, moved);
    QCOMPARE(movedChoices(devices, choices, others), moved);
}

void DevicesTest::keyboardsBesideTheChosenOneAreOthers()
{
    const QString none;
    const QList<InputDevice> devices{device(none, u"p"_s), device(none, u"q"_s), device(none, u"r"_s, 3),
                                     device(u"S"_s, u"s"_s)};
    QCOMPARE(othersBesideChosen(devices, {choice(none, u"p"_s)}), (QList<ChosenDevice>{choice(none, u"q"_s)}));
    QCOMPARE(othersBesideChosen(devices, {choice(none, u"p"_s), choice(none, u"q"_s)}), QList<ChosenDevice>());
    QCOMPARE(othersBesideChosen(devices, {choice(none, u"t"_s)}), QList<ChosenDevice>());
    QCOMPARE(othersBesideChosen(devices, {choice(u"S"_s, u"s"_s)}), QList<ChosenDevice>());
}

void DevicesTest::statesHaveDifferentNames()
{
    QSet<QLatin1StringView> names;
    for (int value = 0; value <= int(DeviceState::failed); ++value)
        names += deviceStateName(DeviceState(value));
    QCOMPARE(names.size(), int(DeviceState::failed) + 1);
    QVERIFY(!names.contains("?"_L1));
}

QTEST_GUILESS_MAIN(DevicesTest)
#include "devicestest.moc"
