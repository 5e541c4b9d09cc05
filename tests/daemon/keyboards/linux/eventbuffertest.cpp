// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventbuffer.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <utility>
#include <vector>

using Result = EventBuffer::Result;

class EventBufferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QCOMPARE(::pipe2(mPipe, O_NONBLOCK | O_CLOEXEC), 0);
        mWritten = 0;
        mRead = 0;
    }
    void cleanup()
    {
        ::close(mPipe[0]);
        if (mPipe[1] >= 0)
            ::close(mPipe[1]);
    }

    void isEmptyAtFirst();
    void returnsAllSimultaneousEvents_data();
    void returnsAllSimultaneousEvents();
    void leavesNoInvisibleEvent_data();
    void leavesNoInvisibleEvent();
    void readsTheFileOncePerReport();
    void clearedForgetsTheRest();
    void reportsTheEndOfTheFile();

private:
    void write(int count)
    {
        std::vector<input_event> events(static_cast<std::size_t>(count));
        for (input_event &event : events)
            event.value = mWritten++;
        const std::size_t size = events.size() * sizeof(input_event);
        QCOMPARE(::write(mPipe[1], events.data(), size), static_cast<ssize_t>(size));
    }

    /// Like the key thread when the file is readable: reads until nothing is left.
    void readUntilNothing(EventBuffer &buffer)
    {
        input_event event;
        while (buffer.next(event) == Result::event)
            QCOMPARE(event.value, mRead++);
    }

    [[nodiscard]] bool isReadable() const
    {
        pollfd poll{.fd = mPipe[0], .events = POLLIN, .revents = 0};
        return ::poll(&poll, 1, 0) == 1;
    }

    int mPipe[2] = {-1, -1};
    int mWritten = 0;
    int mRead = 0;
};

void EventBufferTest::isEmptyAtFirst()
{
    EventBuffer buffer(mPipe[0]);
    input_event event;
    QVERIFY(buffer.next(event) == Result::nothing);
}

void EventBufferTest::returnsAllSimultaneousEvents_data()
{
    constexpr int capacity = EventBuffer::capacity;
    QTest::addColumn<int>("count");
    for (const int count : {1, 3, capacity - 1, capacity, capacity + 1, 2 * capacity, 2 * capacity + 1})
        QTest::addRow("%d", count) << count;
}

void EventBufferTest::returnsAllSimultaneousEvents()
{
    QFETCH(int, count);
    EventBuffer buffer(mPipe[0]);
    write(count);
    readUntilNothing(buffer);
    QCOMPARE(mRead, count);
    QVERIFY(!isReadable());
}

void EventBufferTest::leavesNoInvisibleEvent_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("later");
    constexpr int capacity = EventBuffer::capacity;
    for (const int first : {1, 3, capacity - 1, capacity, capacity + 1}) {
        for (const int later : {1, 3, capacity, capacity + 1})
            QTest::addRow("%d, then %d", first, later) << first << later;
    }
}

/// Events that arrive between the read and its last event are also returned, as long as the caller reads whenever the
/// file is readable.
void EventBufferTest::leavesNoInvisibleEvent()
{
    QFETCH(int, first);
    QFETCH(int, later);
    EventBuffer buffer(mPipe[0]);
    write(first);
    input_event event;
    QVERIFY(buffer.next(event) == Result::event);
    QCOMPARE(event.value, mRead++);
    write(later);
    readUntilNothing(buffer);
    while (isReadable())
        readUntilNothing(buffer);
    QCOMPARE(mRead, first + later);
}

void EventBufferTest::readsTheFileOncePerReport()
{
    EventBuffer buffer(mPipe[0]);
    write(3);
    input_event event;
    for (int count = 0; count < 3; ++count)
        QVERIFY(buffer.next(event) == Result::event);
    write(1); // one more read would find it
    QVERIFY(buffer.next(event) == Result::nothing);
    QVERIFY(isReadable());
    QVERIFY(buffer.next(event) == Result::event);
}

void EventBufferTest::clearedForgetsTheRest()
{
    EventBuffer buffer(mPipe[0]);
    write(3);
    input_event event;
    QVERIFY(buffer.next(event) == Result::event);
    buffer.clear();
    QVERIFY(buffer.next(event) == Result::nothing);
    write(1);
    QVERIFY(buffer.next(event) == Result::event);
    QCOMPARE(event.value, 3);
}

void EventBufferTest::reportsTheEndOfTheFile()
{
    EventBuffer buffer(mPipe[0]);
    write(1);
    ::close(std::exchange(mPipe[1], -1));
    input_event event;
    QVERIFY(buffer.next(event) == Result::event);
    QVERIFY(buffer.next(event) == Result::nothing);
    QVERIFY(buffer.next(event) == Result::gone);
    QVERIFY(buffer.next(event) == Result::gone);
}

QTEST_GUILESS_MAIN(EventBufferTest)
#include "eventbuffertest.moc"
