// SPDX-License-Identifier: MIT
// Describes pop-up buttons to assistive tools: combo boxes whose value is the title of the selected item. Only
// PopUpButton uses it. Main thread only.
#pragma once

class PopUpButton;

namespace PopUpAccessibility {

/// Makes every PopUpButton report itself as a combo box.
void install();

/// Reports that the title of the selected item has changed.
void reportValue(PopUpButton *button);

} // namespace PopUpAccessibility
