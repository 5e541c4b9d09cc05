// SPDX-License-Identifier: MIT
// Builds the program's warning alerts. No state; main thread only.
#pragma once

#include <QString>

class QWidget;

class QLCErrorHandler
{
public:
    /// Shows a warning alert as a sheet on `window` and returns at once. An empty alternative label means one button.
    /// Dismissing the alert changes nothing.
    static void showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
        const QString &title, const QString &errorDescription, const QString &defaultButtonLabel,
        const QString &alternativeButtonLabel, QWidget *window);
};
