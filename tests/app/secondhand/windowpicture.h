// SPDX-License-Identifier: MIT
// The visible state of the main window as text: the content of each named control, and whether it is enabled. Used on
// the test's thread.
#pragma once

#include <QMap>
#include <QStringList>

class QWidget;

/// The keys are the names of the controls.
struct WindowPicture
{
    QMap<QString, QString> contents;
    QMap<QString, bool> enabled;   ///< without hidden controls
    QStringList controlsThatAreOn; ///< without hidden controls, labels and frames
};

/// Omits the versions, because the program requests them at times of its own.
[[nodiscard]] WindowPicture windowPicture(const QWidget *window);

/// The differences, one for each control; empty without any.
[[nodiscard]] QStringList contentDifferences(const WindowPicture &actual, const WindowPicture &expected);
[[nodiscard]] QStringList enabledDifferences(const WindowPicture &actual, const WindowPicture &expected);
