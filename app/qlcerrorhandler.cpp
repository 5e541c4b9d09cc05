// SPDX-License-Identifier: MIT
#include "app/qlcerrorhandler.h"

#include "platform/sheet.h"

void QLCErrorHandler::showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
    const QString &title, const QString &errorDescription, const QString &defaultButtonLabel,
    const QString &alternativeButtonLabel, QWidget *window)
{
    showAlert({title, errorDescription, defaultButtonLabel, alternativeButtonLabel}, window);
}
