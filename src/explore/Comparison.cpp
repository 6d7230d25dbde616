#include "explore/Comparison.h"

#include <algorithm>
#include <map>
#include <utility>

namespace carvelot {

namespace {

// Where a side's numbers go.
struct SidePlace {
    std::int64_t ComparedNumber::*number;
    bool ComparedPresence::*presence;
};
constexpr SidePlace kBasePlace{&ComparedNumber::base, &ComparedPresence::inBase};
constexpr SidePlace kLogPlace{&ComparedNumber::log, &ComparedPresence::inLog};

using FunctionRows = std::map<std::pair<std::string_view, FrameKind>, ComparedFunction>;
using ShapeRows = std::map<std::string_view, ComparedShape>;
using FindingRows = std::map<std::pair<std::string_view, std::string_view>, ComparedFinding>; // rule's name

void AddFunctions(FunctionRows& rows, const ComparedSide& side, SidePlace place) {
    const CFrameKeys& keys = side.explored.frames.Keys();
    const auto number = place.number;
    for (const FunctionProfile& function : side.scope.profile.m_functions) {
        const FrameKind kind = keys.Kind(function.key);
        const std::string_view name = keys.Name(function.key);
        ComparedFunction& row = rows.try_emplace({name, kind}, ComparedFunction{kind, name}).first->second;
        row.in.*place.presence = true;
        row.calls.*number = function.calls;
        row.unclosed.*number = function.unclosed;
        row.failed.*number = function.failed;
        row.warned.*number = function.warned;
        row.total.*number = function.total;
        row.self.*number = function.self;
        row.shortest.*number = function.shortest;
        row.longest.*number = function.longest;
        row.p50.*number = function.p50;
        row.p95.*number = function.p95;
    }
}

void AddShapes(ShapeRows& rows, const ComparedSide& side, SidePlace place) {
    const auto number = place.number;
    for (const ShapeProfile& shape : side.scope.shapes) {
        const std::string_view text = side.explored.shapes.Text(shape.shape);
        ComparedShape& row = rows.try_emplace(text, ComparedShape{text}).first->second;
        row.in.*place.presence = true;
        row.count.*number = shape.count;
        row.total.*number = shape.total;
        row.longest.*number = shape.longest;
        row.p95.*number = shape.p95;
    }
}

void AddFindings(FindingRows& rows, const ComparedSide& side, SidePlace place) {
    const auto number = place.number;
    for (const Finding& finding : side.findings) {
        const std::string_view subject = finding.LastingSubject();
        ComparedFinding& row =
            rows.try_emplace({subject, NameOf(finding.rule)}, ComparedFinding{finding.rule, subject})
                .first->second;
        row.in.*place.presence = true;
        row.count.*number += static_cast<std::int64_t>(finding.count);
        row.cost.*number = AddTimes(row.cost.*number, finding.cost);
    }
}

// The rows of both sides, the largest differences of one of their numbers first.
template <class Rows, class Add, class Row = typename Rows::mapped_type>
std::vector<Row> Join(const ComparedSide& base, const ComparedSide& log, Add add,
                      ComparedNumber Row::*weight) {
    Rows joined;
    add(joined, base, kBasePlace);
    add(joined, log, kLogPlace);
    std::vector<Row> rows;
    rows.reserve(joined.size());
    for (const auto& [key, row] : joined) {
        rows.push_back(row);
    }
    std::stable_sort(rows.begin(), rows.end(), [weight](const Row& one, const Row& other) {
        const auto size = [weight](const Row& row) {
            const std::int64_t difference = (row.*weight).Difference();
            return difference < 0 ? -difference : difference;
        };
        return size(one) > size(other);
    });
    return rows;
}

} // namespace

std::string_view NameOf(ComparedPresence presence) {
    if (presence.inBase && presence.inLog) {
        return "both";
    }
    return presence.inBase ? "base" : "log";
}

Comparison::Comparison(const ComparedSide& base, const ComparedSide& log)
    : functions(Join<FunctionRows>(base, log, AddFunctions, &ComparedFunction::total)),
      shapes(Join<ShapeRows>(base, log, AddShapes, &ComparedShape::total)),
      findings(Join<FindingRows>(base, log, AddFindings, &ComparedFinding::cost)) {}

} // namespace carvelot
