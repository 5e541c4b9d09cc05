// SPDX-License-Identifier: MIT
// A macro in small: a bar for each key or button, from its press to its release. Main thread only.
#pragma once

#include "macros/macrotimeline.h"

#include <QWidget>

/// The bars of one lane are in a row, those of keys that are held together below each other. The distance between
/// two events grows with the pause, within limits: short pauses stay visible, long ones do not hide the rest. Shows as
/// many events as fit, then an ellipsis.
class MacroPreview : public QWidget
{
    Q_OBJECT

public:
    static constexpr int maximumEvents = 64; ///< a wider preview would be unreadable

    explicit MacroPreview(QWidget *parent = nullptr);

    void show(const MacroTimeline &timeline);
    [[nodiscard]] const MacroTimeline &timeline() const { return mTimeline; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QList<qreal> placesOfEvents() const;

    MacroTimeline mTimeline;
};
