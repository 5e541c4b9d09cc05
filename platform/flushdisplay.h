// SPDX-License-Identifier: MIT
// For functions that block the main thread. Main thread only.
#pragma once

/// Sends the drawn picture to the display, as the event loop does before it blocks. Processes no event.
void flushDisplay();
