// SPDX-License-Identifier: MIT
// Pictures of windows for a person to inspect, in the folder `screenshots` beside the tests. Main thread only.
#pragma once

#include <QImage>
#include <QTest>

class QWidget;

/// Gives the program the light or the dark palette of the style Fusion.
void wearPalette(bool isDark);

/// Draws `window`, and over it `sheetOrMenu` (may be null) with its corner at `position` of the window. The picture is
/// large enough for both.
[[nodiscard]] QImage pictureOf(QWidget *window, QWidget *sheetOrMenu, const QPoint &position);

/// Saves `picture` as `prefix`, "-" and the name of the current row, or as `prefix` alone in a test without rows.
/// Returns false when the file cannot be written.
[[nodiscard]] bool savePicture(const QImage &picture, const QString &prefix);

/// The names of the visible push buttons of `window` that are too narrow for their texts. The layouts must be complete.
[[nodiscard]] QStringList cutButtons(const QWidget *window);

/// Adds a row in each palette for each element of `scenes`, which has a `name` and an enumerator `scene`. The columns
/// are "isDark" and "scene", the enumerator's value.
template <typename Scenes> void addSceneRows(const Scenes &scenes)
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<int>("scene");
    for (const bool isDark : {false, true}) {
        for (const auto &scene : scenes)
            QTest::addRow("%s-%s", scene.name, isDark ? "dark" : "light") << isDark << static_cast<int>(scene.scene);
    }
}
