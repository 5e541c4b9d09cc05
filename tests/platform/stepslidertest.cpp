// SPDX-License-Identifier: MIT
#include "platform/stepslider.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>

namespace {

class Slider : public StepSlider
{
public:
    void wheel(QWheelEvent *event) { wheelEvent(event); }
};

} // namespace

class StepSliderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void clickSelectsTheNearestStep_data();
    void clickSelectsTheNearestStep();
    void handleIsDragged();
    void endedDragMovesNothing();
    void otherButtonsDoNothing();
    void handleIsNotCutOff();
    void wheelNeedsTheFocus();

private:
    [[nodiscard]] QRect handleAt(int value);

    std::unique_ptr<Slider> mSlider;
};

void StepSliderTest::init()
{
    mSlider = std::make_unique<Slider>();
    mSlider->setRange(0, 4);
    mSlider->resize(300, mSlider->minimumHeight());
    mSlider->show();
    mSlider->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mSlider.get()));
}

QRect StepSliderTest::handleAt(int value)
{
    QStyleOptionSlider option;
    option.initFrom(mSlider.get());
    option.orientation = Qt::Horizontal;
    option.subControls = QStyle::SC_All;
    option.minimum = mSlider->minimum();
    option.maximum = mSlider->maximum();
    option.sliderPosition = option.sliderValue = value;
    option.tickPosition = mSlider->tickPosition();
    option.tickInterval = mSlider->tickInterval();
    return mSlider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, mSlider.get());
}

void StepSliderTest::clickSelectsTheNearestStep_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (const int from : {0, 2, 4}) {
        for (int to = 0; to <= 4; ++to)
            QTest::addRow("%d to %d", from, to) << from << to;
    }
}

void StepSliderTest::clickSelectsTheNearestStep()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const QPoint target = handleAt(to).center();
    const int nearlyHalf = (handleAt(1).center().x() - handleAt(0).center().x()) / 2 - 3;
    // The groove, a tick below it, and the furthest points on both sides that still belong to this step.
    for (const QPoint point : {target, QPoint(target.x(), mSlider->height() - 2), target + QPoint(nearlyHalf, 0),
                               target - QPoint(nearlyHalf, 0)}) {
        if (!mSlider->rect().contains(point))
            continue;
        mSlider->setValue(from);
        const QSignalSpy changes(mSlider.get(), &QSlider::valueChanged);
        QTest::mouseClick(mSlider.get(), Qt::LeftButton, {}, point);
        QCOMPARE(mSlider->value(), to);
        QCOMPARE(changes.size(), from == to ? 0 : 1);
    }
}

void StepSliderTest::handleIsDragged()
{
    QTest::mousePress(mSlider.get(), Qt::LeftButton, {}, handleAt(0).center());
    QTest::mouseMove(mSlider.get(), handleAt(3).center());
    QTest::mouseRelease(mSlider.get(), Qt::LeftButton, {}, handleAt(3).center());
    QCOMPARE(mSlider->value(), 3);
}

void StepSliderTest::endedDragMovesNothing()
{
    mSlider->endDrag(); // without a drag
    QTest::mousePress(mSlider.get(), Qt::LeftButton, {}, handleAt(0).center());
    QVERIFY(mSlider->isSliderDown());
    mSlider->endDrag();
    mSlider->setEnabled(false);
    mSlider->setEnabled(true);
    QVERIFY(!mSlider->isSliderDown());
    QTest::mouseMove(mSlider.get(), handleAt(3).center());
    QTest::mouseRelease(mSlider.get(), Qt::LeftButton, {}, handleAt(3).center());
    QCOMPARE(mSlider->value(), 0);
}

void StepSliderTest::otherButtonsDoNothing()
{
    QTest::mouseClick(mSlider.get(), Qt::RightButton, {}, handleAt(4).center());
    QCOMPARE(mSlider->value(), 0);
}

void StepSliderTest::handleIsNotCutOff()
{
    QVERIFY(mSlider->rect().contains(handleAt(0)));
    QVERIFY(mSlider->rect().contains(handleAt(4)));
}

void StepSliderTest::wheelNeedsTheFocus()
{
    const auto turnWheel = [this] {
        const QPointF middle = mSlider->rect().center();
        QWheelEvent event(middle, mSlider->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        mSlider->wheel(&event);
        return event.isAccepted();
    };
    mSlider->setValue(2);
    mSlider->clearFocus();
    QVERIFY(!turnWheel()); // the page around it gets the event
    QCOMPARE(mSlider->value(), 2);
    mSlider->setFocus();
    QTRY_VERIFY(mSlider->hasFocus());
    QVERIFY(turnWheel());
    QCOMPARE(mSlider->value(), 1);
}

QTEST_MAIN(StepSliderTest)
#include "stepslidertest.moc"
