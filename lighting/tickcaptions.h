// SPDX-License-Identifier: MIT
// Captions under a horizontal slider, each centred below its value. Owned by the lighting tab. Main thread only.
#pragma once

#include <QList>
#include <QWidget>

class QLabel;
class QSlider;

class TickCaptions : public QWidget
{
    Q_OBJECT

public:
    explicit TickCaptions(QSlider *slider, QWidget *parent = nullptr);

    /// Takes ownership of `caption`.
    void addCaption(QLabel *caption, int sliderValue);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Caption
    {
        QLabel *label;
        int sliderValue;
    };

    QSlider *mSlider;
    QList<Caption> mCaptions;
};
