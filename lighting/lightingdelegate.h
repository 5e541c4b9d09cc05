// SPDX-License-Identifier: MIT
// Requests of the lighting tab to the main controller. Main thread; the operation waits for the daemon and blocks.
#pragma once

#include <QVariantMap>

class LightingDelegate
{
public:
    virtual ~LightingDelegate() = default;

    /// `settings` has only the keys to change, or a whole record; it goes to the selected profile.
    virtual void updateValueForSetting(const QVariantMap &settings) = 0;
};
