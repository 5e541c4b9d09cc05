// SPDX-License-Identifier: MIT
// What there is to be seen of the main window, as texts: of each control that has a name what it shows, and whether it
// is enabled. The test's thread.
#pragma once

#include <QMap>
#include <QStringList>

class QWidget;

/// By the name of the control.
struct WindowPicture
{
    QMap<QString, QString> contents;
    QMap<QString, bool> enabled;   ///< of those that are not hidden
    QStringList controlsThatAreOn; ///< likewise, without labels and frames
};

/// Of the tabs and the header; versions are left out, which are asked for only now and then.
[[nodiscard]] WindowPicture windowPicture(const QWidget *window);

/// What is different in `actual`, control by control; empty when nothing is.
[[nodiscard]] QStringList contentDifferences(const WindowPicture &actual, const WindowPicture &expected);
[[nodiscard]] QStringList enabledDifferences(const WindowPicture &actual, const WindowPicture &expected);
