#include "explore/lists/ComparedRows.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/FindingSentence.h"
#include "explore/lists/ListTexts.h"

#include <algorithm>
#include <string>

namespace carvelot {

namespace {

// Of a difference that there is, its sign too.
std::string SignedSeconds(std::int64_t microseconds) {
    return std::string(microseconds > 0 ? "+" : "").append(SecondsWithPlaces(microseconds));
}
std::string SignedCount(std::int64_t count) {
    return std::string(count > 0 ? "+" : "").append(std::to_string(count));
}

// A number of what a row compares: kNumber is a member of it.
template <auto kNumber, class Row> const ComparedNumber& NumberOf(const Row& row) {
    return row.m_compared.*kNumber;
}
template <auto kNumber, class Row> std::string BaseSeconds(const Row& row) {
    return SecondsWithPlaces(NumberOf<kNumber>(row).base);
}
template <auto kNumber, class Row> std::string LogSeconds(const Row& row) {
    return SecondsWithPlaces(NumberOf<kNumber>(row).log);
}
template <auto kNumber, class Row> std::string MoreSeconds(const Row& row) {
    return SignedSeconds(NumberOf<kNumber>(row).Difference());
}
template <auto kNumber, class Row> std::string BaseCount(const Row& row) {
    return std::to_string(NumberOf<kNumber>(row).base);
}
template <auto kNumber, class Row> std::string LogCount(const Row& row) {
    return std::to_string(NumberOf<kNumber>(row).log);
}
template <auto kNumber, class Row> std::string MoreCount(const Row& row) {
    return SignedCount(NumberOf<kNumber>(row).Difference());
}
template <auto kNumber, class Row> SortKey BaseKey(const Row& row) {
    return SortKey(NumberOf<kNumber>(row).base);
}
template <auto kNumber, class Row> SortKey LogKey(const Row& row) {
    return SortKey(NumberOf<kNumber>(row).log);
}
template <auto kNumber, class Row> SortKey MoreKey(const Row& row) {
    return SortKey(NumberOf<kNumber>(row).Difference());
}

template <class Row> double MoreBar(const Row& row) { return row.m_fShare; }
template <class Row> std::string InText(const Row& row) {
    return std::string(PresenceText(row.m_compared.in));
}
template <class Row> SortKey InKey(const Row& row) { return SortKey(PresenceText(row.m_compared.in)); }

std::string KindText(const ComparedFunctionRow& row) { return std::string(NameOf(row.m_compared.kind)); }
SortKey KindKey(const ComparedFunctionRow& row) { return SortKey(NameOf(row.m_compared.kind)); }
std::string NameText(const ComparedFunctionRow& row) { return std::string(ShownName(row.m_compared.name)); }
SortKey NameKey(const ComparedFunctionRow& row) { return SortKey(ShownName(row.m_compared.name)); }

std::string ShapeText(const ComparedShapeRow& row) { return std::string(row.m_compared.text); }
SortKey ShapeKey(const ComparedShapeRow& row) { return SortKey(row.m_compared.text); }

std::string SeverityText(const ComparedFindingRow& row) {
    const Severity severity = SeverityOf(row.m_compared.rule);
    return std::string(SignOf(severity)).append(" ").append(NameOf(severity));
}
SortKey SeverityKey(const ComparedFindingRow& row) {
    return SortKey(static_cast<std::int32_t>(SeverityOf(row.m_compared.rule)));
}
std::string TextOfSubject(const ComparedFindingRow& row) {
    return OnOneLine(ShownSubject(row.m_compared.rule, row.m_compared.subject));
}
SortKey SubjectKey(const ComparedFindingRow& row) {
    return SortKey(ShownSubject(row.m_compared.rule, row.m_compared.subject));
}
std::string MeaningText(const ComparedFindingRow& row) { return std::string(MeaningOf(row.m_compared.rule)); }
SortKey MeaningKey(const ComparedFindingRow& row) { return SortKey(MeaningOf(row.m_compared.rule)); }

// Rows with bars by one of their differences.
template <class Row, auto kNumber, class Compared> std::vector<Row> RowsOf(const std::vector<Compared>& all) {
    std::int64_t largest = 0;
    for (const Compared& compared : all) {
        const std::int64_t difference = (compared.*kNumber).Difference();
        largest = std::max(largest, difference < 0 ? -difference : difference);
    }
    std::vector<Row> rows;
    rows.reserve(all.size());
    for (const Compared& compared : all) {
        rows.push_back({compared, PartOf((compared.*kNumber).Difference(), largest)});
    }
    return rows;
}

} // namespace

std::string_view PresenceText(ComparedPresence in) {
    if (in.inBase && in.inLog) {
        return "both";
    }
    return in.inBase ? "base alone" : "log alone";
}

CColumnTable<ComparedFunctionRow> ComparedFunctionRow::Columns() {
    using enum EAlign;
    using C = ComparedFunction;
    using R = ComparedFunctionRow;
    // clang-format off
    static constexpr CListColumn<R> columns[] = {
        {"Difference (s)",   120, Right, MoreSeconds<&C::total, R>, MoreKey<&C::total, R>, MoreBar<R>, true},
        {"Base Total (s)",   100, Right, BaseSeconds<&C::total, R>, BaseKey<&C::total, R>},
        {"Log Total (s)",    100, Right, LogSeconds<&C::total, R>,  LogKey<&C::total, R>},
        {"In",                80, Left,  InText<R>,                 InKey<R>},
        {"Kind",              80, Left,  KindText,                  KindKey},
        {"Name",             260, Left,  NameText,                  NameKey},
        {"Calls Diff.",      110, Right, MoreCount<&C::calls, R>,   MoreKey<&C::calls, R>},
        {"Base Calls",        80, Right, BaseCount<&C::calls, R>,   BaseKey<&C::calls, R>},
        {"Log Calls",         80, Right, LogCount<&C::calls, R>,    LogKey<&C::calls, R>},
        {"Self Diff. (s)",   110, Right, MoreSeconds<&C::self, R>,  MoreKey<&C::self, R>},
        {"Base Self (s)",    100, Right, BaseSeconds<&C::self, R>,  BaseKey<&C::self, R>},
        {"Log Self (s)",     100, Right, LogSeconds<&C::self, R>,   LogKey<&C::self, R>},
    };
    // clang-format on
    return columns;
}

CColumnTable<ComparedShapeRow> ComparedShapeRow::Columns() {
    using enum EAlign;
    using C = ComparedShape;
    using R = ComparedShapeRow;
    // clang-format off
    static constexpr CListColumn<R> columns[] = {
        {"Difference (s)",     120, Right, MoreSeconds<&C::total, R>,   MoreKey<&C::total, R>, MoreBar<R>, true},
        {"Base Total (s)",     100, Right, BaseSeconds<&C::total, R>,   BaseKey<&C::total, R>},
        {"Log Total (s)",      100, Right, LogSeconds<&C::total, R>,    LogKey<&C::total, R>},
        {"In",                  80, Left,  InText<R>,                   InKey<R>},
        {"Count Diff.",        110, Right, MoreCount<&C::count, R>,     MoreKey<&C::count, R>},
        {"Base Count",          80, Right, BaseCount<&C::count, R>,     BaseKey<&C::count, R>},
        {"Log Count",           80, Right, LogCount<&C::count, R>,      LogKey<&C::count, R>},
        {"Longest Diff. (s)",  120, Right, MoreSeconds<&C::longest, R>, MoreKey<&C::longest, R>},
        {"Statement",          700, Left,  ShapeText,                   ShapeKey},
    };
    // clang-format on
    return columns;
}

CColumnTable<ComparedFindingRow> ComparedFindingRow::Columns() {
    using enum EAlign;
    using C = ComparedFinding;
    using R = ComparedFindingRow;
    // clang-format off
    static constexpr CListColumn<R> columns[] = {
        {"Difference (s)",   120, Right, MoreSeconds<&C::cost, R>, MoreKey<&C::cost, R>, MoreBar<R>, true},
        {"Base Cost (s)",    100, Right, BaseSeconds<&C::cost, R>, BaseKey<&C::cost, R>},
        {"Log Cost (s)",     100, Right, LogSeconds<&C::cost, R>,  LogKey<&C::cost, R>},
        {"In",                80, Left,  InText<R>,                InKey<R>},
        {"Count Diff.",      110, Right, MoreCount<&C::count, R>,  MoreKey<&C::count, R>},
        {"Base Count",        80, Right, BaseCount<&C::count, R>,  BaseKey<&C::count, R>},
        {"Log Count",         80, Right, LogCount<&C::count, R>,   LogKey<&C::count, R>},
        {"Severity",          90, Left,  SeverityText,             SeverityKey},
        {"Finding",          480, Left,  TextOfSubject,            SubjectKey},
        {"Meaning",          560, Left,  MeaningText,              MeaningKey},
    };
    // clang-format on
    return columns;
}

std::vector<ComparedFunctionRow> MakeComparedFunctionRows(const Comparison& comparison) {
    return RowsOf<ComparedFunctionRow, &ComparedFunction::total>(comparison.functions);
}

std::vector<ComparedShapeRow> MakeComparedShapeRows(const Comparison& comparison) {
    return RowsOf<ComparedShapeRow, &ComparedShape::total>(comparison.shapes);
}

std::vector<ComparedFindingRow> MakeComparedFindingRows(const Comparison& comparison) {
    return RowsOf<ComparedFindingRow, &ComparedFinding::cost>(comparison.findings);
}

std::optional<RecordIndex> RecordOn(const ComparedSide& side, const ComparedFunction& function) {
    const CFrames& frames = side.explored.frames;
    const CFrameKeys& keys = frames.Keys();
    std::uint32_t key = 0;
    while (key < keys.Count() && (keys.Kind(key) != function.kind || keys.Name(key) != function.name)) {
        ++key;
    }
    for (std::uint32_t i = 0; key < keys.Count() && i < frames.Count(); ++i) {
        if (frames[i].key == key && side.scope.cut.Holds(i)) {
            return frames[i].record;
        }
    }
    return std::nullopt;
}

std::optional<RecordIndex> RecordOn(const ComparedSide& side, const ComparedShape& shape) {
    for (const ShapeProfile& profile : side.scope.shapes) {
        if (side.explored.shapes.Text(profile.shape) == shape.text) {
            return profile.firstRecord;
        }
    }
    return std::nullopt;
}

std::optional<RecordIndex> RecordOn(const ComparedSide& side, const ComparedFinding& compared) {
    for (const Finding& finding : side.findings) {
        if (finding.rule == compared.rule && finding.LastingSubject() == compared.subject &&
            !finding.records.empty()) {
            return finding.records.front();
        }
    }
    return std::nullopt;
}

} // namespace carvelot
