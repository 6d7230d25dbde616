#include "session/LogFacts.h"

#include "platform/CodePage.h"
#include "records/NodeText.h"
#include "session/CarvelotDoc.h"
#include "text/NumberText.h"
#include "text/TextColumns.h"

#include <algorithm>

namespace carvelot {

namespace {

std::vector<RefusedFor> Refusals(const RefusedLines& refused) {
    std::vector<RefusedFor> refusals;
    const auto add = [&](RefusalReason reason, std::string_view text, std::uint64_t count) {
        if (count == 0) {
            return;
        }
        RefusedFor& entry = refusals.emplace_back(RefusedFor{text, count, {}});
        for (const RefusedLine& line : refused.first) {
            if (line.reason == reason) {
                entry.first.push_back(line);
            }
        }
    };
    add(RefusalReason::NoTime, "the third word is no time", refused.noTime);
    add(RefusalReason::NoMonth, "the second word is no month", refused.noMonth);
    add(RefusalReason::Filtered, "of another process", refused.filtered);
    return refusals;
}

std::string Columns(const CCarvelotDoc& session) {
    if (session.m_nLogFormat == LOG_FORMAT_JAS) {
        return "text behind the source";
    }
    if (session.m_nTextColumn > 0) {
        return "text from column " + Grouped(static_cast<std::uint64_t>(session.m_nTextColumn));
    }
    if (session.m_nTabCount > 0) {
        return "text behind " + Grouped(static_cast<std::uint64_t>(session.m_nTabCount)) +
               (session.m_nTabCount == 1 ? " tab" : " tabs");
    }
    return "no text column";
}

std::string CodePage(const LineBytes& bytes) {
    const std::string own = platform::CodePageName();
    if (bytes.utf8 && bytes.codePage) {
        return "UTF-8 and " + own + ", line by line";
    }
    return bytes.utf8 ? "UTF-8" : bytes.codePage ? own : "ASCII";
}

std::string StampText(const CLogDetail& detail) {
    return std::string(detail.m_strMonth) + ' ' + std::to_string(detail.m_nDay) + ' ' +
           std::string(TrimRight(TimeStampText(detail), " "));
}

} // namespace

LogFacts FactsOf(const CCarvelotDoc& session) {
    const CLineReading& notes = session.Notes();
    LogFacts facts;
    facts.bytes = session.m_nBytes;
    facts.lines = session.m_nLines;
    facts.records = session.m_listDetails.Size();
    facts.refused = Refusals(notes.m_refused);
    facts.format = session.m_nLogFormat == LOG_FORMAT_JAS ? "JAS log" : "debug log";
    facts.columns = Columns(session);
    facts.codePage = CodePage(notes.m_bytes);
    facts.pieces = std::max<std::size_t>(1, session.m_listPieces.size());
    facts.dialects = notes.m_dialects;
    facts.offered = notes.m_helpful;
    // A time of 0 is an unknown one.
    const CDetailList& records = session.m_listDetails;
    std::uint32_t first = 0;
    auto last = static_cast<std::uint32_t>(records.Size());
    while (first < last && records.Time(RecordIndex{first}) == 0) {
        ++first;
    }
    while (last > first && records.Time(RecordIndex{last - 1}) == 0) {
        --last;
    }
    if (first < last) {
        facts.from = StampText(records[RecordIndex{first}]);
        facts.to = StampText(records[RecordIndex{last - 1}]);
    }
    return facts;
}

bool ManyLinesAreUnread(const CCarvelotDoc& session) {
    const RefusedLines& refused = session.Refused();
    return refused.Unread() * 10 > session.m_listDetails.Size() + refused.Count();
}

} // namespace carvelot
