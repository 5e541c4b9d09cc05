// SPDX-License-Identifier: MIT
// Restores the keyboard focus to a widget that lost it by being disabled. Main thread only.
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

class FocusMemory
{
public:
    /// Runs `change`, which disables or enables widgets of `window`. When it disables the widget with the focus, Qt
    /// moves the focus to an arbitrary other widget. Once a later change enables the first widget again, it regains the
    /// focus, unless the user has moved it in the meantime.
    void change(QWidget *window, const std::function<void()> &change);

private:
    QPointer<QWidget> mOwner;   ///< had the focus before it was disabled
    QPointer<QWidget> mStandIn; ///< has had the focus since
};
