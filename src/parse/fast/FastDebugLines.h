// The lines of a debug log, fast: those that begin as earlier ones did are not taken apart.
#pragma once

#include "parse/DebugLine.h"
#include "parse/fast/LineBeginnings.h"
#include "parse/fast/LineScan.h"
#include "parse/fast/MarkedSigns.h"
#include "parse/fast/ParseWay.h"
#include "parse/fast/StampBytes.h"
#include "parse/fast/UsualText.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace carvelot {

// Reads a log for one list of records, whose contexts it remembers.
class CFastDebugLines {
public:
    CFastDebugLines(CDebugLineParser& parser, ParseWay way) : m_parser(parser), m_way(way) {}

    // What the lines' reader must scan its blocks with.
    BlockScan Scan() const { return m_way == ParseWay::Fast ? FastScan(LOG_FORMAT_DEBUG) : FindLineEnds; }

    // Gives the record of a line, if it is one that the filter lets pass, to `records`: to AddUsual(const
    // UsualLine&) or to Add(const CLogDetail&, bool ascii), which tells the record's context, or kNoContext
    // for a record that no UsualLine could have brought.
    template <class Records>
    void ParseDebugLine(const LogLine& line, std::uint32_t processFilter, Records&& records) {
        if (line.prepared != nullptr && line.preparedWith->generation == m_beginnings.Generation()) {
            AddPrepared(line, records);
        } else if (m_way == ParseWay::Plain || !ParseUsual(line, records)) {
            ParseAny(line, processFilter, records);
        }
    }

    // Prepares the lines of a block for ParseDebugLine, on a thread of its own.
    void PrepareLines(CBlockLines lines, PreparedLines& prepared);

private:
    // Date and time of the one form that nearly every line has: "Sep 22 16:36:42.440295 - 4576/3268 label".
    static constexpr std::size_t kIDsColumn = 25;
    static constexpr std::size_t kSecondsLength = 16; // up to the point

    // What a line's beginning tells, and where its text stands.
    struct UsualPlace {
        std::uint32_t fraction;
        std::uint32_t context;
        bool labelRunsOn;
        std::string_view text;
        std::string_view stored;
        TextSigns signs;
    };
    // False for a line of any other form, of another beginning, or of a batch job.
    [[gnu::always_inline]] static inline bool FindPlace(const LogLine& line, KnownStamp& stamp,
                                                        const CLineBeginnings& beginnings, UsualPlace& place);
    [[gnu::always_inline]] static inline UsualText ReadText(std::string_view text, TextSigns signs,
                                                            NameScratch& scratch);

    // Functions of their own, whose values stay in registers.
    template <class Records> [[gnu::noinline]] bool ParseUsual(const LogLine& line, Records& records);
    template <class Records> [[gnu::noinline]] void AddPrepared(const LogLine& line, Records& records);
    template <class Records>
    void ParseAny(const LogLine& line, std::uint32_t processFilter, Records& records) {
        CLogDetail detail;
        const std::int32_t column = m_parser.m_nTextColumn;
        const bool isRecord = m_parser.ParseDebugLine(line, processFilter, detail);
        if (m_parser.m_nTextColumn != column) {
            // What was known was known by tabs.
            m_beginnings.Clear();
        }
        if (!isRecord) {
            return;
        }
        const std::uint32_t context = records.Add(detail, line.ascii);
        if (m_way == ParseWay::Fast && context != kNoContext) {
            Learn(line, detail, context);
        }
    }
    static bool ReadStamp(const char* line, KnownStamp& stamp);
    // Where the beginning of a line ends that the parser has just read: how many of its bytes put its text
    // where it is, whatever stands behind them. 0 when what does has a say.
    std::size_t EndOfBeginning(std::string_view line) const;
    void Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context);

    CDebugLineParser& m_parser;
    ParseWay m_way;
    KnownStamp m_stamp;
    CSharedBeginnings m_beginnings;
    NameScratch m_scratch;

    // Of the thread that prepares.
    KnownStamp m_stampAhead;
    NameScratch m_scratchAhead;
};

bool CFastDebugLines::FindPlace(const LogLine& line, KnownStamp& stamp, const CLineBeginnings& beginnings,
                                UsualPlace& place) {
    const char* const p = line.bytes.data();
    const std::size_t size = line.bytes.size();
    if (!line.ascii || size <= kIDsColumn) {
        return false;
    }
    if ((!stamp.IsStartOf(p) && !ReadStamp(p, stamp)) ||
        !SixDigitsAndDash(p + kSecondsLength, place.fraction) || p[kIDsColumn - 1] != ' ') {
        stamp.length = 0;
        return false;
    }
    const LineBeginning* const known = beginnings.Find(p + kIDsColumn, size - kIDsColumn, stamp.month);
    if (known == nullptr) {
        return false;
    }
    const LineBeginning& beginning = *known;
    const char* const first = p + kIDsColumn + beginning.length;
    const char* const end = p + size;
    const std::string_view text = TrimPaddedStatement({first, static_cast<std::size_t>(end - first)});
    if (text.empty()) {
        return false;
    }
    std::size_t blanks = 0;
    place.stored = text;
    if (beginning.labelRunsOn) {
        blanks = static_cast<std::size_t>(text.data() - first);
        // A tab ahead of the text would end the label.
        if (blanks > LineBeginning::kMostBlanks || LeadingBlanksAmong16(first).holdTab) {
            return false;
        }
        if (end[-1] == ' ' && std::memchr(text.data(), '\t', text.size()) == nullptr) {
            place.stored = {text.data(), static_cast<std::size_t>(end - text.data())};
        }
    }
    place.context = beginning.contexts[blanks];
    if (place.context == kNoContext ||
        (beginning.dashFixesColumn && Starts({first, static_cast<std::size_t>(end - first)}, " - "))) {
        return false;
    }
    place.signs = {};
    if (!line.marks.Empty()) {
        const LineSigns found = FindSigns(text, line.bytes, line.marks);
        if (found.ubeInLine) {
            return false;
        }
        place.signs = found.inText;
    }
    place.labelRunsOn = beginning.labelRunsOn;
    place.text = text;
    return true;
}

UsualText CFastDebugLines::ReadText(std::string_view text, TextSigns signs, NameScratch& scratch) {
    UsualText read{text, ClassifyDebugStatement(text, signs, scratch.display)};
    read.ReadName(scratch);
    return read;
}

template <class Records> bool CFastDebugLines::ParseUsual(const LogLine& line, Records& records) {
    UsualPlace place;
    if (!FindPlace(line, m_stamp, m_beginnings.Learnt(), place)) {
        return false;
    }
    m_parser.m_bDashForm = true;
    const UsualText read = ReadText(place.text, place.signs, m_scratch);
    records.AddUsual(UsualLine{m_stamp, place.fraction, place.context, read.result.kind,
                               read.result.returnCode, read.operation, true, place.labelRunsOn, place.text,
                               place.stored, read.name});
    return true;
}

template <class Records> void CFastDebugLines::AddPrepared(const LogLine& line, Records& records) {
    const PreparedLine& prepared = *line.prepared;
    m_parser.m_bDashForm = true;
    UsualText read;
    read.TakePrepared(prepared, line.bytes);
    if (!prepared.classified) {
        // Only the name is missing.
        read = ReadText(read.text, FindSigns(read.text, line.bytes, line.marks).inText, m_scratch);
    }
    records.AddUsual(UsualLine{line.preparedWith->stamps[prepared.stamp], prepared.fraction, prepared.context,
                               read.result.kind, read.result.returnCode, read.operation, true,
                               prepared.labelRunsOn, read.text, prepared.Stored(line.bytes), read.name});
}

} // namespace carvelot
