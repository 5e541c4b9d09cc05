// SPDX-License-Identifier: MIT
#include "platform/focusmemory.h"

void FocusMemory::change(QWidget *window, const std::function<void()> &change)
{
    const QPointer<QWidget> before = window->focusWidget();
    change();
    if (!mOwner && before && !before->isEnabled()) {
        mOwner = before;
        mStandIn = window->focusWidget();
    } else if (mOwner && mOwner->isEnabled()) {
        if (window->focusWidget() == mStandIn)
            mOwner->setFocus();
        mOwner.clear();
    }
}
