// Draws a timeline: what of it is looked at, and over that what is selected, marked or in range.
#pragma once

#include "explore/pictures/PictureColors.h"
#include "explore/pictures/TimelineView.h"

namespace carvelot {

class CTimelinePicture final : public IPicture {
public:
    // Refers to the view.
    CTimelinePicture(const CTimelineView& view, const PictureGround& ground)
        : m_view(view), m_ground(ground) {}

    PictureSize Size() const override { return {m_view.Whole().width, m_view.Whole().height}; }
    void Draw(ICanvas& canvas) const override {
        DrawStill(canvas);
        DrawMarks(canvas);
    }
    // What stays as long as the view's revision does.
    void DrawStill(ICanvas& canvas) const;
    void DrawMarks(ICanvas& canvas) const;

private:
    class CRowPainter;

    void DrawStrip(ICanvas& canvas) const;
    void DrawAxis(ICanvas& canvas) const;
    void DrawFlags(ICanvas& canvas) const;
    void DrawNames(ICanvas& canvas) const;
    void DrawLanes(ICanvas& canvas) const;
    void DrawSilences(ICanvas& canvas, const CTimelineLanes::Lane& lane) const;
    void ShadeOutside(ICanvas& canvas, const PictureRect& area, double from, double to) const;

    const CTimelineView& m_view;
    const PictureGround m_ground;
};

} // namespace carvelot
