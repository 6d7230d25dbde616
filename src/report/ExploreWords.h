// What the texts of what is explored, and of what differs, have in common.
#pragma once

#include "explore/ExploredSession.h"
#include "explore/Findings.h"
#include "explore/lists/ExploreNames.h"
#include "report/ReportOptions.h"

#include <algorithm>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// Seconds with three places: "12.345 s".
std::string DurationText(std::int64_t microseconds);
// The same with a sign: "+12.345 s".
std::string DifferenceText(std::int64_t microseconds);
// Of a count: "+1,234".
std::string CountDifferenceText(std::int64_t count);
// A share of a whole as a bar and in the hundred: "####        41.2 %".
std::string ShareBar(std::int64_t share, std::int64_t whole);

// A frame's kind as a letter, and its name: "F  B4200310BeginDoc".
std::string NamedText(FrameKind kind, std::string_view name);
inline constexpr std::string_view kLetters = "  F function, E event, S statement, O object call";

// What a log is: path, records, time and lines.
void PrintLog(const ExploredSession& explored, const std::string& path, std::ostream& out);
// Which part of it is told of; nothing of the whole.
void PrintPart(const ExploreOptions& asked, std::ostream& out);

// Severity and meaning of a rule, on as many lines as the width needs.
std::string RuleLines(FindingRule rule, std::size_t width);
// A text below a table's row.
std::string NoteLine(std::string_view text, std::size_t width);

// The rows of each rule together, those of the first row's rule first: takeRule(rule), then takeRow(row) for
// each.
template <class Row, class TakeRule, class TakeRow>
void ForEachByRule(const std::vector<Row>& rows, TakeRule takeRule, TakeRow takeRow) {
    std::vector<FindingRule> rules;
    for (const Row& row : rows) {
        if (std::find(rules.begin(), rules.end(), row.rule) == rules.end()) {
            rules.push_back(row.rule);
        }
    }
    for (const FindingRule rule : rules) {
        takeRule(rule);
        for (const Row& row : rows) {
            if (row.rule == rule) {
                takeRow(row);
            }
        }
    }
}

} // namespace carvelot
