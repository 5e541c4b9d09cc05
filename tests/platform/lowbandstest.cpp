// SPDX-License-Identifier: MIT
#include "platform/lowbands.h"
#include "tests/support/testmain.h"

#include <QPainter>
#include <QTest>

class LowBandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coverTheAreaOnceWithFewSpans_data();
    void coverTheAreaOnceWithFewSpans();
    void emptyAreaHasNoBands();
    void joinWithoutASeam_data();
    void joinWithoutASeam();
};

void LowBandsTest::coverTheAreaOnceWithFewSpans_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<qreal>("spansPerLine");
    QTest::newRow("low") << QRect(3, 4, 10, 20) << 1.0;
    QTest::newRow("high") << QRect(-5, -7, 10, 1000) << 2.0;
    QTest::newRow("whole bands") << QRect(0, 0, 10, 160) << 1.0;
    QTest::newRow("a line more than whole bands") << QRect(0, 0, 10, 161) << 1.0;
    QTest::newRow("scaled") << QRect(0, 0, 10, 333) << 2 * 1.25;
    QTest::newRow("one line at a time") << QRect(0, 0, 10, 7) << 1000.0;
}

void LowBandsTest::coverTheAreaOnceWithFewSpans()
{
    QFETCH(QRect, area);
    QFETCH(qreal, spansPerLine);
    int nextTop = area.top();
    for (const QRect &band : lowBands(area, spansPerLine)) {
        QCOMPARE(band.top(), nextTop);
        QCOMPARE(band.left(), area.left());
        QCOMPARE(band.width(), area.width());
        QVERIFY(band.height() >= 1);
        QVERIFY(band.height() == 1 || band.height() * spansPerLine < 96);
        nextTop = band.bottom() + 1;
    }
    QCOMPARE(nextTop, area.bottom() + 1);
}

void LowBandsTest::emptyAreaHasNoBands()
{
    QVERIFY(lowBands({}, 1).isEmpty());
}

void LowBandsTest::joinWithoutASeam_data()
{
    QTest::addColumn<qreal>("ratio");
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0})
        QTest::addRow("%g", ratio) << ratio;
}

void LowBandsTest::joinWithoutASeam()
{
    QFETCH(qreal, ratio);
    const QRect area(0, 0, 60, 500);
    const auto picture = [ratio](const std::function<void(QPainter &, const std::function<void()> &)> &paintWhole) {
        QImage image((QSizeF(60, 500) * ratio).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QColor(0, 0, 0, 45));
        paintWhole(painter, [&painter] { painter.drawRoundedRect(QRectF(0.5, 0.5, 59, 499), 3, 3); });
        return image;
    };
    int bands = 0;
    const QImage inBands = picture([&](QPainter &painter, const std::function<void()> &paint) {
        paintInLowBands(painter, area, 2, [&] {
            paint();
            ++bands;
        });
        QVERIFY(!painter.hasClipping());
    });
    QCOMPARE(inBands, picture([](QPainter &, const std::function<void()> &paint) { paint(); }));
    QCOMPARE(bands, lowBands(area, 2 * ratio).size());
}

QTEST_MAIN(LowBandsTest)
#include "lowbandstest.moc"
