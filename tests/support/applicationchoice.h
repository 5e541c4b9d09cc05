// SPDX-License-Identifier: MIT
// Actions of the user in the sheet in which an application is chosen. Main thread only.
#pragma once

#include "platform/applicationchooser.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

/// The sheet that is up; null if there is none.
[[nodiscard]] inline ApplicationChooser *openApplicationChooser()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *chooser = qobject_cast<ApplicationChooser *>(widget); chooser && chooser->isVisible())
            return chooser;
    }
    return nullptr;
}

/// Presses "Other…". Returns false if no sheet is up.
[[nodiscard]] inline bool chooseOtherApplication()
{
    ApplicationChooser *chooser = openApplicationChooser();
    if (chooser)
        chooser->findChild<QPushButton *>(QStringLiteral("mOtherApplication"))->click();
    return chooser != nullptr;
}

/// Searches for `name` and presses Return. Returns false if no sheet is up, or if it stays because nothing was found.
[[nodiscard]] inline bool chooseApplicationByName(const QString &name)
{
    ApplicationChooser *chooser = openApplicationChooser();
    if (!chooser)
        return false;
    auto *field = chooser->findChild<QLineEdit *>(QStringLiteral("mApplicationSearchField"));
    field->clear();
    QTest::keyClicks(field, name);
    QTest::keyClick(field, Qt::Key_Return);
    return !chooser->isVisible();
}
