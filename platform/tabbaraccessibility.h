// SPDX-License-Identifier: MIT
// What assistive tools are told of the tabs of a TabView. Used by TabView alone. Main thread only.
#pragma once

namespace TabBarAccessibility {

/// From now on the tab bars of every TabView tell which of their tabs is in front; those of Qt 6.4 tell it of none.
void install();

} // namespace TabBarAccessibility
