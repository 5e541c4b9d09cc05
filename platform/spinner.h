// SPDX-License-Identifier: MIT
// A spinning progress indicator, visible only while it spins. Main thread only.
#pragma once

#include <QBasicTimer>
#include <QWidget>

class Spinner : public QWidget
{
    Q_OBJECT

public:
    explicit Spinner(QWidget *parent = nullptr);

    [[nodiscard]] bool isAnimating() const { return mTimer.isActive(); }
    void startAnimation();
    void stopAnimation();

    QSize sizeHint() const override { return {20, 20}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    QBasicTimer mTimer;
    int mStep = 0;
};
