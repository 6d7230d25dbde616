#include "explore/lists/StatementRows.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/ListTexts.h"
#include "text/NumberText.h"

#include <algorithm>
#include <string>

namespace carvelot {

namespace {

std::string TextOfKey(std::uint32_t key, const ExploredSession& explored) {
    return NamedKey(explored.frames.Keys(), key);
}
SortKey SortOfKey(std::uint32_t key, const ExploredSession& explored) {
    return SortKey(ShownKey(explored.frames.Keys(), key));
}

// --- Shapes

template <auto kMember> std::string TimeText(const ShapeRow& row, const ExploredSession&) {
    return SecondsWithPlaces(row.m_profile.*kMember);
}
template <auto kMember> SortKey NumberKey(const ShapeRow& row, const ExploredSession&) {
    return SortKey(static_cast<std::int64_t>(row.m_profile.*kMember));
}
std::string CountText(const ShapeRow& row, const ExploredSession&) {
    return std::to_string(row.m_profile.count);
}
double BarOf(const ShapeRow& row, const ExploredSession&) { return row.m_fShare; }
std::string CallerText(const ShapeRow& row, const ExploredSession& explored) {
    return TextOfKey(row.m_profile.topCaller, explored);
}
SortKey CallerKey(const ShapeRow& row, const ExploredSession& explored) {
    return SortOfKey(row.m_profile.topCaller, explored);
}
std::string ShapeText(const ShapeRow& row, const ExploredSession& explored) {
    return std::string(explored.shapes.Text(row.m_profile.shape));
}
SortKey ShapeKey(const ShapeRow& row, const ExploredSession& explored) {
    return SortKey(explored.shapes.Text(row.m_profile.shape));
}

// --- Callers

std::string TimeText(const ShapeCallerRow& row, const ExploredSession&) {
    return SecondsWithPlaces(row.m_nTotal);
}
SortKey TimeKey(const ShapeCallerRow& row, const ExploredSession&) { return SortKey(row.m_nTotal); }
double BarOf(const ShapeCallerRow& row, const ExploredSession&) { return row.m_fShare; }
std::string CountText(const ShapeCallerRow& row, const ExploredSession&) {
    return std::to_string(row.m_nCount);
}
SortKey CountKey(const ShapeCallerRow& row, const ExploredSession&) {
    return SortKey(std::uint64_t{row.m_nCount});
}
std::string CallerText(const ShapeCallerRow& row, const ExploredSession& explored) {
    return TextOfKey(row.m_nKey, explored);
}
SortKey CallerKey(const ShapeCallerRow& row, const ExploredSession& explored) {
    return SortOfKey(row.m_nKey, explored);
}

// --- Executions

RecordIndex RecordOf(const ExecutionRow& row, const ExploredSession& explored) {
    return explored.frames[row.m_nFrame].record;
}
std::uint32_t CallerOf(const CFrames& frames, std::uint32_t frame) {
    const std::uint32_t parent = frames[frame].parent;
    return parent == kNoFrame ? kNoKey : frames[parent].key;
}

std::string StampText(const ExecutionRow& row, const ExploredSession& explored) {
    return StampOf(explored.session.m_listDetails, RecordOf(row, explored));
}
// Over midnight the clock tells more than the time of day.
SortKey StampKey(const ExecutionRow& row, const ExploredSession& explored) {
    return SortKey(explored.frames[row.m_nFrame].start);
}
std::string OwnerText(const ExecutionRow& row, const ExploredSession& explored) {
    return OwnerOf(explored.session, RecordOf(row, explored));
}
SortKey OwnerKey(const ExecutionRow& row, const ExploredSession& explored) {
    return SortKey(OwnerText(row, explored));
}
std::string TimeText(const ExecutionRow& row, const ExploredSession&) {
    return SecondsWithPlaces(row.m_nTotal);
}
SortKey TimeKey(const ExecutionRow& row, const ExploredSession&) { return SortKey(row.m_nTotal); }
double BarOf(const ExecutionRow& row, const ExploredSession&) { return row.m_fShare; }
std::string CallerText(const ExecutionRow& row, const ExploredSession& explored) {
    return TextOfKey(CallerOf(explored.frames, row.m_nFrame), explored);
}
SortKey CallerKey(const ExecutionRow& row, const ExploredSession& explored) {
    return SortOfKey(CallerOf(explored.frames, row.m_nFrame), explored);
}
std::string TextOfStatement(const ExecutionRow& row, const ExploredSession& explored) {
    return OnOneLine(StatementText(explored.session.m_listDetails, RecordOf(row, explored)));
}
SortKey KeyOfStatement(const ExecutionRow& row, const ExploredSession& explored) {
    const CDetailList& details = explored.session.m_listDetails;
    const RecordIndex record = RecordOf(row, explored);
    return SortKey(StatementText(details, record), details.TextIsAscii(record));
}

} // namespace

CColumnTable<ShapeRow, ExploredSession> ShapeRow::Columns() {
    using enum EAlign;
    using P = ShapeProfile;
    // clang-format off
    static constexpr CListColumn<ShapeRow, ExploredSession> columns[] = {
        {"Total (s)",   110, Right, TimeText<&P::total>,   NumberKey<&P::total>, BarOf},
        {"Count",        70, Right, CountText,             NumberKey<&P::count>},
        {"Longest (s)",  90, Right, TimeText<&P::longest>, NumberKey<&P::longest>},
        {"p95 (s)",      90, Right, TimeText<&P::p95>,     NumberKey<&P::p95>},
        {"Most Run By", 200, Left,  CallerText,            CallerKey},
        {"Statement",   700, Left,  ShapeText,             ShapeKey},
    };
    // clang-format on
    return columns;
}

std::vector<ShapeRow> MakeShapeRows(const ExploredScope& scope) {
    std::vector<ShapeRow> rows;
    rows.reserve(scope.shapes.size());
    for (const ShapeProfile& profile : scope.shapes) {
        rows.push_back({profile, PartOf(profile.total, scope.shapes.front().total)});
    }
    return rows;
}

CColumnTable<ShapeCallerRow, ExploredSession> ShapeCallerRow::Columns() {
    using enum EAlign;
    // clang-format off
    static constexpr CListColumn<ShapeCallerRow, ExploredSession> columns[] = {
        {"Total (s)",  100, Right, TimeText,   TimeKey, BarOf},
        {"Count",       60, Right, CountText,  CountKey},
        {"Run By",     200, Left,  CallerText, CallerKey},
    };
    // clang-format on
    return columns;
}

CColumnTable<ExecutionRow, ExploredSession> ExecutionRow::Columns() {
    using enum EAlign;
    // clang-format off
    static constexpr CListColumn<ExecutionRow, ExploredSession> columns[] = {
        {"Timestamp",   130, Left,  StampText,       StampKey},
        {"Proc/Thread", 100, Left,  OwnerText,       OwnerKey},
        {"Duration (s)", 90, Right, TimeText,        TimeKey, BarOf},
        {"Run By",      200, Left,  CallerText,      CallerKey},
        {"Statement",   700, Left,  TextOfStatement, KeyOfStatement},
    };
    // clang-format on
    return columns;
}

ShapeRuns::ShapeRuns(const ExploredSession& explored, const ExploredScope& scope, std::uint32_t shape) {
    const CFrames& frames = explored.frames;
    CNumberMap places; // by caller
    std::int64_t longest = 0;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (explored.shapes.Of(i) != shape || !scope.cut.Holds(i)) {
            continue;
        }
        const std::int64_t total = scope.cut.Total(i);
        longest = std::max(longest, total);
        m_listExecutions.push_back({i, 0, total});
        const std::uint32_t caller = CallerOf(frames, i);
        const auto [place, isNew] =
            places.FindOrAdd(caller, static_cast<std::uint32_t>(m_listCallers.size()));
        if (isNew) {
            m_listCallers.push_back({caller});
        }
        ++m_listCallers[place].m_nCount;
        m_listCallers[place].m_nTotal = AddTimes(m_listCallers[place].m_nTotal, total);
    }
    // Streams are written side by side, and where one waited its time runs ahead of its lines.
    std::stable_sort(m_listExecutions.begin(), m_listExecutions.end(),
                     [&frames](const ExecutionRow& one, const ExecutionRow& other) {
                         return frames[one.m_nFrame].start < frames[other.m_nFrame].start;
                     });
    for (ExecutionRow& row : m_listExecutions) {
        row.m_fShare = static_cast<float>(PartOf(row.m_nTotal, longest));
    }
    std::stable_sort(m_listCallers.begin(), m_listCallers.end(),
                     [](const ShapeCallerRow& one, const ShapeCallerRow& other) {
                         return one.m_nTotal != other.m_nTotal ? one.m_nTotal > other.m_nTotal
                                                               : one.m_nCount > other.m_nCount;
                     });
    for (ShapeCallerRow& row : m_listCallers) {
        row.m_fShare = PartOf(row.m_nTotal, m_listCallers.front().m_nTotal);
    }
}

std::uint32_t ShapeOfRecord(const ExploredSession& explored, RecordIndex record) {
    // Frames stand by record.
    const CFrames& frames = explored.frames;
    std::uint32_t first = 0;
    std::uint32_t end = frames.Count();
    while (first < end) {
        const std::uint32_t middle = first + (end - first) / 2;
        if (frames[middle].record < record) {
            first = middle + 1;
        } else {
            end = middle;
        }
    }
    const bool isFrame = first < frames.Count() && frames[first].record == record;
    return isFrame ? explored.shapes.Of(first) : kNoShape;
}

} // namespace carvelot
