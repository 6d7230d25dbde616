#include "explore/Findings.h"

#include "explore/FindingRules.h"

#include <algorithm>
#include <array>

namespace carvelot {

namespace {

struct RuleText {
    std::string_view name;
    Severity severity;
    std::string_view meaning;
};

// In the order of the rules.
constexpr std::array<RuleText, 9> kRules = {{
    {"repeated-statement", Severity::Warning,
     "The same statement ran again and again with other values, where one statement might do."},
    {"cache-not-terminated", Severity::Warning,
     "The cache was created and never terminated: its memory stays taken until the process ends."},
    {"cursor-not-closed", Severity::Note, "The cursor was opened and never closed."},
    {"call-without-return", Severity::Warning, "The function was called and its return is not in the log."},
    {"orphan-return", Severity::Note, "The function returned and its call is not in the log."},
    {"first-cause", Severity::Error,
     "The function failed; the first record names what went wrong first in it."},
    {"silence-in-call", Severity::Note,
     "Nothing was written for longer than the threshold inside the function."},
    {"rolled-back", Severity::Error, "A transaction was rolled back, after the trouble in the first record."},
    {"unread-lines", Severity::Note,
     "Lines that hold a word became no record: whatever they say is missing from all that is shown."},
}};

const RuleText& TextOf(FindingRule rule) { return kRules[static_cast<std::size_t>(rule)]; }

bool ComesBefore(const Finding& one, const Finding& other) {
    if (SeverityOf(one.rule) != SeverityOf(other.rule)) {
        return SeverityOf(one.rule) < SeverityOf(other.rule);
    }
    if (one.cost != other.cost) {
        return one.cost > other.cost;
    }
    if (one.count != other.count) {
        return one.count > other.count;
    }
    if (one.subject != other.subject) {
        return one.subject < other.subject;
    }
    if (one.rule != other.rule) {
        return NameOf(one.rule) < NameOf(other.rule);
    }
    return one.records < other.records;
}

} // namespace

std::string_view NameOf(FindingRule rule) { return TextOf(rule).name; }

std::string_view NameOf(Severity severity) {
    constexpr std::array<std::string_view, 3> names{"error", "warning", "note"};
    return names[static_cast<std::size_t>(severity)];
}

Severity SeverityOf(FindingRule rule) { return TextOf(rule).severity; }

std::string_view MeaningOf(FindingRule rule) { return TextOf(rule).meaning; }

std::vector<Finding> FindAll(const ExploredSession& explored, CExploreProgress* progress) {
    FindingList findings;
    FindRepeatedStatements(explored, findings, progress);
    for (const auto find : {FindOpenCaches, FindCallsWithoutReturn, FindOrphanReturns, FindFirstCauses,
                            FindSilences, FindRollbacks, FindUnreadLines}) {
        CheckAt(progress, 0);
        find(explored, findings);
    }
    std::sort(findings.begin(), findings.end(), ComesBefore);
    AddPart(progress, ExploreParts::kFindings);
    return findings;
}

} // namespace carvelot
