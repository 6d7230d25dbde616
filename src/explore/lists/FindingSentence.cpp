#include "explore/lists/FindingSentence.h"

#include "explore/lists/ExploreNames.h"
#include "text/TextColumns.h"

#include <algorithm>

namespace carvelot {

namespace {

// The text of the record that a finding begins with, behind a colon.
std::string FirstText(const ExploredSession& explored, const Finding& finding) {
    if (finding.records.empty()) {
        return {};
    }
    const CDetailList& details = explored.session.m_listDetails;
    return ": " + std::string(TrimLeft(TrimRight(details.Text(finding.records.front()), " "), " "));
}

std::string Sentence(const ExploredSession& explored, const Finding& finding) {
    const std::string subject = SubjectText(finding);
    switch (finding.rule) {
    case FindingRule::RepeatedStatement:
        return subject;
    case FindingRule::CacheNotTerminated:
        return "Cache " + subject + " was never terminated";
    case FindingRule::CursorNotClosed:
        return "Cursor " + subject + " was never closed";
    case FindingRule::CallWithoutReturn:
        return subject + " never returned";
    case FindingRule::OrphanReturn:
        return subject + " returned without a call";
    case FindingRule::FirstCause:
        return subject + " failed" + FirstText(explored, finding);
    case FindingRule::SilenceInCall:
        return "Silence in " + subject;
    case FindingRule::RolledBack:
        return (finding.subject.empty() ? "Rolled back" : "Rolled back in " + subject) +
               (finding.records.size() > 1 ? FirstText(explored, finding) : std::string());
    case FindingRule::UnreadLines:
        break;
    }
    return "Lines that were not read (" + subject + ')';
}

} // namespace

std::string FindingSentence(const ExploredSession& explored, const Finding& finding) {
    std::string sentence = Sentence(explored, finding);
    std::replace_if(
        sentence.begin(), sentence.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    return sentence;
}

std::string_view SignOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "\u25CF";
    case Severity::Warning:
        return "\u25B2";
    case Severity::Note:
        break;
    }
    return "\u25A0";
}

} // namespace carvelot
