// SPDX-License-Identifier: MIT
// A small picture of the keyboard that shows only its light, for the lighting tab. Main thread only.
#pragma once

#include "keys/picturelight.h"

#include <QWidget>

/// Keeps the ratio of the keyboard and centres it in the available space. While disabled, it shows no light.
class LightPreview : public QWidget
{
    Q_OBJECT

public:
    explicit LightPreview(QWidget *parent = nullptr);

    /// The light. The preview repaints itself when it changes.
    [[nodiscard]] PictureLight &light() { return mLight; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    PictureLight mLight;
};
