// SPDX-License-Identifier: MIT
#include "app/afterpainting.h"
#include "tests/support/testmain.h"

#include <QPainter>
#include <QTest>
#include <QWidget>
#include <QWindow>

using namespace std::chrono_literals;

namespace {

/// Counts how often it was painted.
class CountingWindow : public QWidget
{
public:
    int paintings = 0;

protected:
    void paintEvent(QPaintEvent *) override { ++paintings; }
};

} // namespace

class AfterPaintingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsOnceWhenTheWindowIsPainted();
    void waitsForTheNextPainting();
    void callsWithoutAPaintingAfterTheLimit();
    void doesNothingWithoutItsWindow();
};

void AfterPaintingTest::callsOnceWhenTheWindowIsPainted()
{
    CountingWindow window;
    QList<int> calls; // number of paintings at each call
    bool wasExposed = false;
    new AfterPainting(
        &window,
        [&] {
            calls += window.paintings;
            wasExposed = window.windowHandle()->isExposed();
        },
        1h);
    window.show();
    QCOMPARE(calls, QList<int>()); // the call comes from the event loop
    QTRY_COMPARE(calls.size(), 1);
    QVERIFY(calls.first() > 0);
    QVERIFY(wasExposed);
    QTRY_VERIFY(window.children().isEmpty());
    const int before = window.paintings;
    window.update();
    QTRY_VERIFY(window.paintings > before);
    QCoreApplication::processEvents();
    QCOMPARE(calls.size(), 1);
}

void AfterPaintingTest::waitsForTheNextPainting()
{
    CountingWindow window;
    window.show();
    QTRY_VERIFY(window.paintings > 0);
    const int before = window.paintings;
    int calledAfter = 0;
    new AfterPainting(
        &window, [&] { calledAfter = window.paintings; }, 1h);
    window.update();
    QTRY_VERIFY(calledAfter > before);
}

void AfterPaintingTest::callsWithoutAPaintingAfterTheLimit()
{
    CountingWindow window; // never shown and therefore never painted
    int calls = 0;
    new AfterPainting(
        &window, [&] { ++calls; }, 1ms);
    QTRY_COMPARE(calls, 1);
    QCOMPARE(window.paintings, 0);
    QTRY_VERIFY(window.children().isEmpty());
}

void AfterPaintingTest::doesNothingWithoutItsWindow()
{
    int calls = 0;
    {
        CountingWindow window;
        new AfterPainting(
            &window, [&] { ++calls; }, 0ms);
    }
    QCoreApplication::processEvents();
    QCOMPARE(calls, 0);
}

QTEST_MAIN(AfterPaintingTest)
#include "afterpaintingtest.moc"
