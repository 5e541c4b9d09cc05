// SPDX-License-Identifier: MIT
// Describes the tabs of a TabView to assistive tools. Only TabView uses it. Main thread only.
#pragma once

namespace TabBarAccessibility {

/// Makes the tab bars of every TabView report which tab is in front. Those of Qt 6.4 do not report it.
void install();

} // namespace TabBarAccessibility
