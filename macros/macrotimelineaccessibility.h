// SPDX-License-Identifier: MIT
// Describes a timeline to assistive tools: its summary, the time scale, the lanes and the events in view. Main thread
// only.
#pragma once

class MacroTimelineView;

namespace MacroTimelineAccessibility {

/// A tool that walks the tree asks for all children. Of the events in view, no more than these are children: those
/// nearest to the selected one. The event list has all.
inline constexpr int mostEvents = 100;

/// Makes every MacroTimelineView describe itself.
void install();

/// Reports the selected event as the one that has the focus, if the view has it.
void reportSelection(MacroTimelineView *view);

/// Reports the pause that the user is changing.
void reportChange(MacroTimelineView *view);

} // namespace MacroTimelineAccessibility
