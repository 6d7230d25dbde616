#include "explore/lists/FindingRows.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/FindingSentence.h"
#include "explore/lists/ListTexts.h"

#include <algorithm>

namespace carvelot {

namespace {

Severity SeverityOfRow(const FindingRow& row) { return SeverityOf(row.m_pFinding->rule); }

std::string SeverityText(const FindingRow& row, const ExploredSession&) {
    const Severity severity = SeverityOfRow(row);
    return std::string(SignOf(severity)).append(" ").append(NameOf(severity));
}
SortKey SeverityKey(const FindingRow& row, const ExploredSession&) {
    return SortKey(static_cast<std::int32_t>(SeverityOfRow(row)));
}
std::string SentenceText(const FindingRow& row, const ExploredSession& explored) {
    return FindingSentence(explored, *row.m_pFinding);
}
SortKey SentenceKey(const FindingRow& row, const ExploredSession& explored) {
    return SortKey(SentenceText(row, explored));
}
std::string CountText(const FindingRow& row, const ExploredSession&) {
    return std::to_string(row.m_pFinding->count);
}
SortKey CountKey(const FindingRow& row, const ExploredSession&) { return SortKey(row.m_pFinding->count); }
std::string CostText(const FindingRow& row, const ExploredSession&) {
    return row.m_pFinding->cost != 0 ? SecondsWithPlaces(row.m_pFinding->cost) : std::string();
}
SortKey CostKey(const FindingRow& row, const ExploredSession&) { return SortKey(row.m_pFinding->cost); }
double ShareOf(const FindingRow& row, const ExploredSession&) { return row.m_fShare; }
std::string MeaningText(const FindingRow& row, const ExploredSession&) {
    return std::string(MeaningOf(row.m_pFinding->rule));
}
SortKey MeaningKey(const FindingRow& row, const ExploredSession&) {
    return SortKey(MeaningOf(row.m_pFinding->rule));
}

std::string StampText(const FindingRecordRow& row, const ExploredSession& explored) {
    return StampOf(explored.session.m_listDetails, row.m_pRecord);
}
SortKey StampKey(const FindingRecordRow& row, const ExploredSession& explored) {
    return SortKey(explored.clock[row.m_pRecord]);
}
std::string OwnerText(const FindingRecordRow& row, const ExploredSession& explored) {
    return OwnerOf(explored.session, row.m_pRecord);
}
SortKey OwnerKey(const FindingRecordRow& row, const ExploredSession& explored) {
    return SortKey(OwnerText(row, explored));
}
std::string MessageText(const FindingRecordRow& row, const ExploredSession& explored) {
    return OnOneLine(explored.session.m_listDetails.Text(row.m_pRecord));
}
SortKey MessageKey(const FindingRecordRow& row, const ExploredSession& explored) {
    const CDetailList& details = explored.session.m_listDetails;
    return SortKey(details.Text(row.m_pRecord), details.TextIsAscii(row.m_pRecord));
}

} // namespace

std::string SeverityCounts(const std::vector<Finding>& findings) {
    std::string text;
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        const auto count =
            std::count_if(findings.begin(), findings.end(), [severity](const Finding& finding) {
                return SeverityOf(finding.rule) == severity;
            });
        if (count > 0) {
            text.append(text.empty() ? "" : "   ").append(SignOf(severity)).append(" ");
            text.append(Counted(static_cast<std::uint64_t>(count), NameOf(severity)));
        }
    }
    return text;
}

CColumnTable<FindingRow, ExploredSession> FindingRow::Columns() {
    using enum EAlign;
    // clang-format off
    static constexpr CListColumn<FindingRow, ExploredSession> columns[] = {
        {"Severity",  90, Left,  SeverityText, SeverityKey},
        {"Finding",  520, Left,  SentenceText, SentenceKey},
        {"Count",     70, Right, CountText,    CountKey},
        {"Cost (s)", 110, Right, CostText,     CostKey, ShareOf},
        {"Meaning",  560, Left,  MeaningText,  MeaningKey},
    };
    // clang-format on
    return columns;
}

std::vector<FindingRow> MakeFindingRows(const std::vector<Finding>& findings) {
    std::int64_t largest = 0;
    for (const Finding& finding : findings) {
        largest = std::max(largest, finding.cost);
    }
    std::vector<FindingRow> rows;
    rows.reserve(findings.size());
    for (const Finding& finding : findings) {
        rows.push_back({&finding, rows.size(), PartOf(finding.cost, largest)});
    }
    return rows;
}

void CFindingSource::Sort(std::vector<std::size_t>& order, int column, bool descending) const {
    CExploredSource::Sort(order, column, descending);
    if (column != FindingRow::SEVERITY) {
        CExploredSource::Sort(order, FindingRow::SEVERITY, false);
    }
}

CColumnTable<FindingRecordRow, ExploredSession> FindingRecordRow::Columns() {
    using enum EAlign;
    // clang-format off
    static constexpr CListColumn<FindingRecordRow, ExploredSession> columns[] = {
        {"Timestamp",   130, Left, StampText,   StampKey},
        {"Proc/Thread", 100, Left, OwnerText,   OwnerKey},
        {"Message",     800, Left, MessageText, MessageKey},
    };
    // clang-format on
    return columns;
}

std::vector<FindingRecordRow> MakeFindingRecordRows(const Finding& finding) {
    std::vector<FindingRecordRow> rows;
    rows.reserve(finding.records.size());
    for (const RecordIndex record : finding.records) {
        rows.push_back({record});
    }
    return rows;
}

} // namespace carvelot
