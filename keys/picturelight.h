// SPDX-License-Identifier: MIT
// The key lighting in a picture of the keyboard: a glow between the keys. The picture owns it. Main thread only.
#pragma once

#include "lighting/backlight.h"

#include <QBasicTimer>
#include <QList>
#include <QObject>

class MotionPreference;
class QPainter;
class QRect;
class QWidget;

/// A light that cycles moves calmly, and only while the user can see it. If the desktop asks for no motion, the light
/// stays still and shows all its colours side by side.
class PictureLight : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] const Backlight::Settings &settings() const { return mSettings; }
    [[nodiscard]] bool isMoving() const { return mTimer.isActive(); }

    /// Repaints `picture`, which owns the light, at each change. Moves only while it is shown, and as the desktop and
    /// its style allow.
    void follow(QWidget *picture);
    void show(const Backlight::Settings &settings);
    void setSeen(bool isSeen);
    void setMotionAllowed(bool isAllowed);

    /// Paints the glow around `keys`, the places of the keycaps. `unit` is the length of one key unit. Paints nothing
    /// for a light that is off.
    void paint(QPainter &painter, const QList<QRect> &keys, qreal unit) const;

Q_SIGNALS:
    void changed(); ///< the look has changed

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void startOrStop();
    void askForMotion();

    QWidget *mPicture = nullptr;
    MotionPreference *mMotion = nullptr; ///< created when the picture is first shown
    Backlight::Settings mSettings;
    QBasicTimer mTimer;
    bool mIsSeen = false;
    bool mIsMotionAllowed = true;
};
