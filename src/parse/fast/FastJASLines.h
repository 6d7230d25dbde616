// The lines of a JAS web log, fast: those that begin as earlier ones did are not taken apart.
#pragma once

#include "parse/JASLine.h"
#include "parse/fast/LineBeginnings.h"
#include "parse/fast/LineScan.h"
#include "parse/fast/MarkedSigns.h"
#include "parse/fast/ParseWay.h"
#include "parse/fast/StampBytes.h"
#include "parse/fast/UsualText.h"
#include "platform/CodePage.h"

#include <cstdint>
#include <string_view>

namespace carvelot {

// Reads a log for one list of records, whose contexts it remembers.
class CFastJASLines {
public:
    CFastJASLines(CJASLineParser& parser, ParseWay way) : m_parser(parser), m_way(way) {}

    // What the lines' reader must scan its blocks with.
    BlockScan Scan() const { return m_way == ParseWay::Fast ? FastScan(LOG_FORMAT_JAS) : FindLineEnds; }

    // Gives the record of a line, if it is one and there is no filter, to `records`: to AddUsual(const
    // UsualLine&) or to Add(const CLogDetail&, bool ascii), which tells the record's context, or kNoContext
    // for a record that no UsualLine could have brought.
    template <class Records>
    void ParseJASLine(const LogLine& line, std::uint32_t processFilter, Records&& records) {
        if (line.prepared != nullptr && line.preparedWith->generation == m_beginnings.Generation()) {
            AddPrepared(line, records);
        } else if (m_way == ParseWay::Plain || !ParseUsual(line, records)) {
            ParseAny(line, processFilter, records);
        }
    }

    // Prepares the lines of a block for ParseJASLine, on a thread of its own.
    void PrepareLines(CBlockLines lines, PreparedLines& prepared);

private:
    // The stamp of the one form that nearly every line has: "29 Jun 2016 12:08:30,122 [".
    static constexpr std::size_t kLongestStamp = 26;
    static constexpr std::size_t kFractionLength = 4; // and the blank behind it

    // What a line's beginning tells, and its text.
    struct UsualPlace {
        std::uint32_t fraction;
        std::uint32_t context;
        LogKind levelKind;
        std::string_view text;
    };
    // False for a line of any other form, or of another beginning.
    [[gnu::always_inline]] static inline bool FindPlace(const LogLine& line, KnownStamp& stamp,
                                                        const CLineBeginnings& beginnings, UsualPlace& place);
    [[gnu::always_inline]] static inline UsualText ReadText(const LogLine& line, std::string_view text,
                                                            LogKind levelKind, PendingStatement& pending,
                                                            NameScratch& scratch);
    template <class Records>
    void Add(Records& records, const LineStamp& stamp, std::uint32_t fraction, std::uint32_t context,
             const UsualText& read) {
        const bool ascii = read.result.made != Classification::Made::Text || m_parser.m_pending.ascii ||
                           platform::IsAscii(read.text);
        records.AddUsual(UsualLine{stamp, fraction, context, read.result.kind, read.result.returnCode,
                                   read.operation, ascii, false, read.text, read.text, read.name});
    }

    // Functions of their own, whose values stay in registers.
    template <class Records> [[gnu::noinline]] bool ParseUsual(const LogLine& line, Records& records);
    template <class Records> [[gnu::noinline]] void AddPrepared(const LogLine& line, Records& records);
    template <class Records>
    void ParseAny(const LogLine& line, std::uint32_t processFilter, Records& records) {
        CLogDetail detail;
        bool ascii = false;
        if (!m_parser.ParseJASLine(line, processFilter, detail, ascii)) {
            return;
        }
        const std::uint32_t context = records.Add(detail, ascii);
        if (m_way == ParseWay::Fast && context != kNoContext) {
            Learn(line, detail, context);
        }
    }
    static bool ReadStamp(const char* line, KnownStamp& stamp);
    void Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context);

    CJASLineParser& m_parser;
    ParseWay m_way;
    KnownStamp m_stamp;
    CSharedBeginnings m_beginnings;
    NameScratch m_scratch;

    // Of the thread that prepares, which has no pending statement.
    KnownStamp m_stampAhead;
    NameScratch m_scratchAhead;
    PendingStatement m_noPending;
};

bool CFastJASLines::FindPlace(const LogLine& line, KnownStamp& stamp, const CLineBeginnings& beginnings,
                              UsualPlace& place) {
    const char* const p = line.bytes.data();
    const std::size_t size = line.bytes.size();
    if (!line.ascii || size < kLongestStamp) {
        return false;
    }
    if ((!stamp.IsStartOf(p) && !ReadStamp(p, stamp)) ||
        !ThreeDigitsAndBracket(p + stamp.length, place.fraction)) {
        stamp.length = 0;
        return false;
    }
    const char* const start = p + stamp.length + kFractionLength;
    const char* const end = p + size;
    const LineBeginning* const known =
        beginnings.Find(start, static_cast<std::size_t>(end - start), stamp.month);
    if (known == nullptr) {
        return false;
    }
    const char* const first = start + known->length;
    place.context = known->contexts[0];
    place.levelKind = known->levelKind;
    place.text = TrimPaddedStatement({first, static_cast<std::size_t>(end - first)});
    return true;
}

UsualText CFastJASLines::ReadText(const LogLine& line, std::string_view text, LogKind levelKind,
                                  PendingStatement& pending, NameScratch& scratch) {
    UsualText read{text, {.kind = levelKind}};
    if (levelKind == LOG_NONE) {
        const bool asked = pending.parameters == 0 && !line.marks.Empty();
        const TextSigns signs = asked ? FindSigns(text, line.bytes, line.marks).inText : TextSigns{};
        read.result = ClassifyJASStatement(read.text, signs, pending, scratch.display);
    }
    read.ReadName(scratch);
    return read;
}

template <class Records> bool CFastJASLines::ParseUsual(const LogLine& line, Records& records) {
    UsualPlace place;
    if (!FindPlace(line, m_stamp, m_beginnings.Learnt(), place)) {
        return false;
    }
    Add(records, m_stamp, place.fraction, place.context,
        ReadText(line, place.text, place.levelKind, m_parser.m_pending, m_scratch));
    return true;
}

template <class Records> void CFastJASLines::AddPrepared(const LogLine& line, Records& records) {
    const PreparedLine& prepared = *line.prepared;
    UsualText read;
    read.TakePrepared(prepared, line.bytes);
    if (!prepared.classified || (!prepared.levelDecides && m_parser.m_pending.parameters > 0)) {
        read = ReadText(line, read.text, prepared.levelDecides ? prepared.kind : LOG_NONE, m_parser.m_pending,
                        m_scratch);
    }
    Add(records, line.preparedWith->stamps[prepared.stamp], prepared.fraction, prepared.context, read);
}

} // namespace carvelot
