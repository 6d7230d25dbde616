// What part of a timeline is looked at and what in it is marked: where things lie, and what the hand does
// with them. Lengths are the picture's pixels.
#pragma once

#include "explore/pictures/Canvas.h"
#include "explore/pictures/TimelineLanes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace carvelot {

class CTimelineView {
public:
    static constexpr double kZoomStep = 1.25;   // a notch
    static constexpr double kLeastPerPixel = 1; // microseconds

    enum class Part {
        Nothing,
        Strip,
        StripFrame, // what of the strip is shown below
        StripFrom,  // its edges
        StripTo,
        Axis,
        Flags,
        Name,
        Lane,
    };
    struct Hit {
        Part part = Part::Nothing;
        std::uint32_t stream = 0; // of a name and a lane
        std::optional<TimelineBar> bar;
        const TimelineFlag* flag = nullptr;
    };
    enum class Step { Earlier, Later, Parent, Child, Next, Previous };

    // Refers to the timeline. The whole log is shown.
    explicit CTimelineView(const CTimeline& timeline);

    const CTimeline& Timeline() const { return m_timeline; }
    const CTimelineLanes& Lanes() const { return m_lanes; }

    // Where things lie.
    void SetSize(double width, double height, double lineHeight);
    PictureRect Whole() const { return {0, 0, m_width, m_height}; }
    PictureRect Strip() const;
    PictureRect Axis() const;
    PictureRect Flags() const;
    PictureRect Names() const;
    PictureRect Plot() const; // of the lanes
    double LineHeight() const { return m_lineHeight; }

    // Time, from left to right.
    double PerPixel() const { return m_perPixel; } // microseconds
    std::int64_t From() const { return TimeAt(Plot().x); }
    std::int64_t To() const { return TimeAt(Plot().Right()); }
    std::int64_t TimeAt(double x) const;
    double XOf(std::int64_t time) const;
    double StripX(std::int64_t time) const;
    std::int64_t StripTime(double x) const;
    // The level of detail whose steps are at most a pixel.
    unsigned Level() const;
    bool ShowsAll() const { return m_bAll; }
    void ShowAll();
    void ShowEnd();
    void ShowSpan(std::int64_t from, std::int64_t to);
    // The time at a place stays there. Above 0: into it.
    void Zoom(double notches, double x);
    void Pan(double pixels); // above 0: to later times

    // Lanes, from top to bottom.
    double ScrollTop() const { return m_scroll; }
    double MostScroll() const;
    void ScrollTo(double top);
    void ZoomLanes(double notches, double y);
    void SetRowHeight(double height);
    double TopOf(const CTimelineLanes::Lane& lane) const { return Plot().y + lane.top - m_scroll; }
    void Fold(std::uint32_t stream, bool folded);
    void FoldAll(bool folded);
    void SortByActivity(bool sorts);
    void HideIdle(bool hides);
    void SetScope(const Selection& scope);

    // What lies at a point. What is narrower than a pixel takes one.
    Hit At(PicturePoint point) const;
    // Whole pixels that a bar takes between left and right; at least one, which may lie outside of the plot.
    struct Columns {
        double left;
        double right;
    };
    Columns ColumnsOf(std::int64_t start, std::int64_t end) const;
    // Of a frame, whether its row shows or not; none where its lane is not shown or is folded above it.
    std::optional<PictureRect> RectOf(std::uint32_t frame) const;

    std::uint32_t Selected() const { return m_selected; } // a frame, or kNoFrame
    void Select(std::uint32_t frame);
    // Brings a frame into view, and no more of the rest out of it than that needs.
    void Reveal(std::uint32_t frame);
    // The frame beside the selected one, kNoFrame without one. From none it goes to the first one in view.
    std::uint32_t Beside(Step step) const;
    // The record that is marked, whose clock is shown in its lane.
    std::optional<RecordIndex> Marked() const { return m_marked; }
    void Mark(std::optional<RecordIndex> record) { m_marked = record; }

    const ClockRange& Range() const { return m_range; }
    void SetRange(const ClockRange& range) { m_range = range; }

    // Frames whose names hold a text, without regard to case; the empty text ends the search.
    void Search(std::string_view text);
    const std::string& Sought() const { return m_strSought; }
    bool IsMatch(std::uint32_t key) const { return m_matches[key] != 0; }
    // Levels of the matches alone; null without a search.
    const CTimelineLevels* Matches() const { return m_pMatches.get(); }
    std::size_t MatchCount() const { return m_nMatches; }
    // The next match by record from the selected frame on, around the end; kNoFrame without one.
    std::uint32_t NextMatch(bool forward) const;

    // Grows with each change of what is drawn but for what is selected, marked or in range.
    std::uint64_t Revision() const { return m_nRevision; }

private:
    double Length() const { return static_cast<double>(m_timeline.To() - m_timeline.From()); }
    void Settle();
    std::uint32_t ShownRows(std::uint32_t stream) const;
    std::uint32_t FirstInView() const;
    std::uint32_t InStream(std::uint32_t frame, bool next) const;
    std::uint32_t BesideInLanes(std::uint32_t frame, bool next) const;
    std::optional<TimelineBar> BarAt(std::uint32_t row, double x) const;
    const TimelineFlag* FlagAt(double x) const;

    const CTimeline& m_timeline;
    CTimelineLanes m_lanes;
    double m_width = 0;
    double m_height = 0;
    double m_lineHeight = 14;
    bool m_bAll = true;
    double m_from = 0; // microseconds behind the log's first time
    double m_perPixel = 1;
    double m_scroll = 0;
    std::uint32_t m_selected = kNoFrame;
    std::optional<RecordIndex> m_marked;
    ClockRange m_range;
    std::string m_strSought;
    std::vector<std::uint8_t> m_matches; // by key
    std::unique_ptr<CTimelineLevels> m_pMatches;
    std::size_t m_nMatches = 0;
    std::uint64_t m_nRevision = 0;
};

} // namespace carvelot
