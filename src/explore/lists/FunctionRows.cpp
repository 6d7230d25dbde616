#include "explore/lists/FunctionRows.h"

#include "explore/lists/ExploreNames.h"

#include <algorithm>

namespace carvelot {

namespace {

template <auto kNumber> std::string CountText(const FunctionRow& row) {
    return std::to_string(row.counts.*kNumber);
}
template <auto kNumber> std::string TimeText(const FunctionRow& row) {
    return SecondsWithPlaces(row.counts.*kNumber);
}
template <auto kNumber> SortKey NumberKey(const FunctionRow& row) {
    return SortKey(static_cast<std::int64_t>(row.counts.*kNumber));
}

} // namespace

std::string LetterAndName(const CFrameKeys& keys, std::uint32_t key) {
    const std::string name(ShownKey(keys, key));
    return key == kNoKey ? name : std::string(LetterOf(keys.Kind(key))).append("  ").append(name);
}

double ShareOf(std::int64_t time, std::int64_t whole) {
    return whole > 0 ? static_cast<double>(time) / static_cast<double>(whole) : 0;
}

CColumnTable<FunctionRow> FunctionRow::Columns() {
    using Row = FunctionRow;
    using Counts = FunctionProfile;
    static constexpr CListColumn<Row> columns[] = {
        {"Function", 280, EAlign::Left, &TextOf<&Row::name>, &KeyOf<&Row::name>},
        {"Self (s)", 120, EAlign::Right, &TimeText<&Counts::self>, &NumberKey<&Counts::self>,
         [](const Row& row) { return row.selfShare; }},
        {"Total (s)", 120, EAlign::Right, &TimeText<&Counts::total>, &NumberKey<&Counts::total>,
         [](const Row& row) { return row.totalShare; }},
        {"Calls", 70, EAlign::Right, &CountText<&Counts::calls>, &NumberKey<&Counts::calls>},
        {"Failed", 60, EAlign::Right, &CountText<&Counts::failed>, &NumberKey<&Counts::failed>},
        {"Warned", 60, EAlign::Right, &CountText<&Counts::warned>, &NumberKey<&Counts::warned>},
        {"Unclosed", 70, EAlign::Right, &CountText<&Counts::unclosed>, &NumberKey<&Counts::unclosed>},
        {"Shortest (s)", 95, EAlign::Right, &TimeText<&Counts::shortest>, &NumberKey<&Counts::shortest>},
        {"Longest (s)", 95, EAlign::Right, &TimeText<&Counts::longest>, &NumberKey<&Counts::longest>},
        {"p50 (s)", 95, EAlign::Right, &TimeText<&Counts::p50>, &NumberKey<&Counts::p50>},
        {"p95 (s)", 95, EAlign::Right, &TimeText<&Counts::p95>, &NumberKey<&Counts::p95>},
    };
    return columns;
}

std::vector<FunctionRow> MakeFunctionRows(const CFrameKeys& keys, const CProfile& profile) {
    std::int64_t mostSelf = 0;
    std::int64_t mostTotal = 0;
    for (const FunctionProfile& counts : profile.m_functions) {
        mostSelf = std::max(mostSelf, counts.self);
        mostTotal = std::max(mostTotal, counts.total);
    }
    std::vector<FunctionRow> rows;
    rows.reserve(profile.m_functions.size());
    for (const FunctionProfile& counts : profile.m_functions) {
        rows.push_back({counts, LetterAndName(keys, counts.key), ShareOf(counts.self, mostSelf),
                        ShareOf(counts.total, mostTotal)});
    }
    // They come by total, then kind and name.
    std::stable_sort(rows.begin(), rows.end(), [](const FunctionRow& one, const FunctionRow& other) {
        return one.counts.self > other.counts.self;
    });
    return rows;
}

RecordIndex LongestRecord(const CCut& cut, std::uint32_t key) {
    const CFrames& frames = cut.Frames();
    RecordIndex record = kNoRecord;
    std::int64_t longest = -1;
    for (std::uint32_t i = 0; i < frames.Count(); ++i) {
        if (frames[i].key == key && cut.Holds(i) && cut.Total(i) > longest) {
            longest = cut.Total(i);
            record = frames[i].record;
        }
    }
    return record;
}

} // namespace carvelot
