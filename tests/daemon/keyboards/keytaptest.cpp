// SPDX-License-Identifier: MIT
#include "daemon/keyboards/keytap.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <memory>
#include <thread>

using Side = KeyTap::Side;

namespace {

HidUsage key(int usage)
{
    return {HidUsage::keyboardPage, static_cast<quint16>(usage)};
}

} // namespace

class KeyTapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNothingBeforeItsStartAndAfterItsEnd();
    void keepsTheOrderOfBothSides();
    void startDiscardsEarlierEvents();
    void fullTapCountsWhatItLoses();
    void eventsCrossThreadsInOrder();
};

void KeyTapTest::hasNothingBeforeItsStartAndAfterItsEnd()
{
    KeyTap tap;
    tap.addKey(Side::keyboard, key(4), true);
    QVERIFY(!tap.take());
    tap.start();
    tap.addKey(Side::keyboard, key(5), true);
    QVERIFY(tap.take());
    tap.stop();
    tap.addEvent(Side::computer, 1, 30, 1);
    QVERIFY(!tap.take());
    QCOMPARE(tap.takeLost(), quint64(0));
}

void KeyTapTest::keepsTheOrderOfBothSides()
{
    KeyTap tap;
    tap.start();
    tap.addKey(Side::keyboard, key(4), true);
    tap.addEvent(Side::computer, 1, 30, 1);
    tap.addKey(Side::keyboard, key(4), false);
    QVERIFY(tap.take() == (KeyTap::Event{.side = Side::keyboard, .usage = key(4), .value = 1}));
    QVERIFY(tap.take()
            == (KeyTap::Event{.side = Side::computer, .usage = {.page = 0}, .type = 1, .code = 30, .value = 1}));
    QVERIFY(tap.take() == (KeyTap::Event{.side = Side::keyboard, .usage = key(4), .value = 0}));
    QVERIFY(!tap.take());
}

void KeyTapTest::startDiscardsEarlierEvents()
{
    KeyTap tap;
    tap.start();
    tap.addKey(Side::keyboard, key(4), true);
    tap.stop();
    tap.start();
    QVERIFY(!tap.take());
}

void KeyTapTest::fullTapCountsWhatItLoses()
{
    const auto tap = std::make_unique<KeyTap>();
    tap->start();
    for (std::size_t count = 0; count < KeyTap::capacity + 3; ++count)
        tap->addEvent(Side::computer, 1, 30, static_cast<int>(count));
    QCOMPARE(tap->takeLost(), quint64(3));
    QCOMPARE(tap->takeLost(), quint64(0));
    for (std::size_t count = 0; count < KeyTap::capacity; ++count)
        QCOMPARE(tap->take().value_or(KeyTap::Event()).value, static_cast<int>(count));
    QVERIFY(!tap->take());
    tap->addEvent(Side::computer, 1, 30, 7); // there is room again
    QCOMPARE(tap->take().value_or(KeyTap::Event()).value, 7);
}

void KeyTapTest::eventsCrossThreadsInOrder()
{
    constexpr int count = 50000;
    const auto tap = std::make_unique<KeyTap>();
    tap->start();
    std::thread writer([&tap] {
        for (int number = 1; number <= count; ++number)
            tap->addEvent(Side::keyboard, 1, static_cast<quint16>(number & 0xFF), number);
    });
    int last = 0;
    int taken = 0;
    quint64 lost = 0;
    while (static_cast<quint64>(taken) + lost < count) {
        while (const auto event = tap->take()) {
            QVERIFY(event->value > last);
            QCOMPARE(event->code, static_cast<quint16>(event->value & 0xFF));
            last = event->value;
            ++taken;
        }
        lost += tap->takeLost();
        std::this_thread::yield();
    }
    writer.join();
    QCOMPARE(static_cast<quint64>(taken) + lost, quint64(count));
}

QTEST_APPLESS_MAIN(KeyTapTest)
#include "keytaptest.moc"
