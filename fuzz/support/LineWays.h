// The lines of a log read without a session: as a session reads them, with and without lines that are
// prepared ahead, and plainly.
#pragma once

#include "parse/LogReader.h"
#include "records/DetailList.h"
#include "sources/MemorySource.h"
#include "support/FuzzFile.h"
#include "support/SameRecords.h"

#include <string>
#include <string_view>

namespace carvelot::fuzz {

// `Way` has a record list m_details, the lines' reader m_lines, and the operation Read(line).
template <class Way> void ReadLines(std::string_view lines, Way& way, const BlockReading& blocks = {}) {
    std::string log(lines);
    log.push_back('\n');
    way.m_details.Clear();
    CMemorySource source(log);
    ReadingBesides besides;
    besides.prepare = [&way](CBlockLines block, PreparedLines& prepared) {
        way.m_lines->PrepareLines(block, prepared);
    };
    CLogReader reader(source, way.m_lines->Scan(), blocks, {}, besides);
    LogLine line;
    while (reader.ReadLogLine(line)) {
        way.Read(line);
    }
}

// Each way is just started.
template <class Way> void RequireSameRecords(std::string_view lines, Way& fast, Way& ahead, Way& plain) {
    ReadLines(lines, fast);
    ReadLines(lines, ahead,
              {.way = BlockReading::Way::Here, .bytes = lines.size() / 4 + 1, .prepareAlways = true});
    ReadLines(lines, plain);
    for (const Way* const way : {&fast, &ahead}) {
        const std::string difference = test::DifferenceOf(way->m_details, plain.m_details);
        Require(difference.empty(), "read plainly, another outcome: " + difference);
    }
}

// Where the lines of a way go.
struct Records {
    CDetailList& m_details;

    void AddUsual(const UsualLine& line) { m_details.AppendUsual(line); }
    std::uint32_t Add(const CLogDetail& detail, bool ascii) {
        const RecordIndex record = m_details.Append(detail, ascii);
        return m_details.IsUsual(record) ? m_details.ContextNumber(record) : kNoContext;
    }
};

} // namespace carvelot::fuzz
