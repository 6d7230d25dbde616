// The lanes of a timeline, one a stream: which of them are shown, in which order and how high.
#pragma once

#include "explore/pictures/Timeline.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace carvelot {

class CTimelineLanes {
public:
    static constexpr double kLeastRow = 6;
    static constexpr double kMostRow = 48;

    struct Lane {
        std::uint32_t stream;
        double top; // below the first lane's top
        double height;
        std::uint32_t rows;
    };
    struct Place {
        std::size_t lane;  // of those that are shown
        std::uint32_t row; // may lie below the lane's last one
    };

    // Refers to the timeline. By first record; the whole log is shown.
    explicit CTimelineLanes(const CTimeline& timeline);

    bool IsFolded(std::uint32_t stream) const { return m_isFolded[stream] != 0; }
    void Fold(std::uint32_t stream, bool folded);
    void FoldAll(bool folded);
    bool AreAllFolded() const;
    bool IsSortedByActivity() const { return m_bByActivity; }
    void SortByActivity(bool sorts);
    bool HidesIdle() const { return m_bHidesIdle; }
    void HideIdle(bool hides);
    double RowHeight() const { return m_rowHeight; }
    void SetRowHeight(double height); // taken into what is allowed
    // Only the streams of a part of the log.
    void SetScope(const Selection& scope);
    bool IsInScope(std::uint32_t stream) const { return m_isInScope[stream] != 0; }
    // Of two spans the idle ones may be others.
    void SetSpan(std::int64_t from, std::int64_t to);

    const std::vector<Lane>& Shown() const { return m_shown; } // from top to bottom
    double Height() const { return m_height; }
    std::optional<std::size_t> Find(std::uint32_t stream) const; // among those that are shown
    // The lane at a height below the first one's top.
    std::optional<Place> At(double y) const;
    std::size_t FirstBelow(double y) const; // whose end lies below it

private:
    void Arrange();
    bool IsIdle(std::uint32_t stream) const;

    const CTimeline& m_timeline;
    std::vector<std::uint32_t> m_byActivity;
    std::vector<std::uint8_t> m_isFolded; // by stream
    std::vector<std::uint8_t> m_isInScope;
    bool m_bByActivity = false;
    bool m_bHidesIdle = false;
    double m_rowHeight = 18;
    std::int64_t m_nFrom;
    std::int64_t m_nTo;
    std::vector<Lane> m_shown;
    double m_height = 0;
};

} // namespace carvelot
