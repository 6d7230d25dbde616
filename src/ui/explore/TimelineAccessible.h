// TimelineAccessible.h - what screen readers hear of a timeline: its lanes, and the frame that is selected.
#pragma once

namespace carvelot {

class CTimelineWidget;

void InstallTimelineAccessible();
// The frame that is selected now has the focus.
void TellTimelineFocus(CTimelineWidget& timeline);

} // namespace carvelot
