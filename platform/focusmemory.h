// SPDX-License-Identifier: MIT
// Gives the keyboard's focus back to what lost it by being disabled. Main thread only.
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

class FocusMemory
{
public:
    /// Runs `change`, which disables or enables widgets of `window`. When that takes the focus from the one that has
    /// it, Qt moves it to another, which can be anything; once the first is enabled again by a later change, it gets it
    /// back, unless the user has gone elsewhere meanwhile.
    void change(QWidget *window, const std::function<void()> &change);

private:
    QPointer<QWidget> mOwner;   ///< had the focus before it was disabled
    QPointer<QWidget> mStandIn; ///< has had it since
};
