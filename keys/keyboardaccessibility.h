// SPDX-License-Identifier: MIT
// Describes the keyboard picture to assistive tools: a list whose items are the keys. Main thread only.
#pragma once

class KeyButton;

namespace KeyboardAccessibility {

/// Makes every KeyboardPicture report itself as a list, and every KeyButton as an item that can be selected.
void install();

/// Reports that `key` has been selected or no longer is.
void reportSelection(KeyButton *key);

} // namespace KeyboardAccessibility
