#include "parse/fast/FastJASLines.h"

namespace carvelot {

// Reads the stamp up to the comma; false for any other form, and for numbers that no clock shows.
bool CFastJASLines::ReadStamp(const char* line, KnownStamp& stamp) {
    const std::size_t dayDigits = IsDigit(line[1]) ? 2 : 1;
    const char* const p = line + dayDigits;
    // Of the sixteen characters from the year on all but these are digits: "2016 12:08:30,122".
    constexpr std::uint32_t digitColumns = 0xFFFF & ~((1U << 4) | (1U << 7) | (1U << 10) | (1U << 13));
    if (!IsDigit(line[0]) || (DigitsAmong16(p + 5) & digitColumns) != digitColumns || p[0] != ' ' ||
        p[4] != ' ' || p[9] != ' ' || p[12] != ':' || p[15] != ':' || p[18] != ',' ||
        !IsMonthName({p + 1, 3})) {
        return false;
    }
    const auto digit = [](char c) { return c - '0'; };
    const auto two = [&](std::size_t at) { return digit(p[at]) * 10 + digit(p[at + 1]); };
    stamp.day = dayDigits == 2 ? digit(line[0]) * 10 + digit(line[1]) : digit(line[0]);
    stamp.hour = two(10);
    stamp.minute = two(13);
    stamp.second = two(16);
    return stamp.Enter({line, dayDigits + 19}, {p + 1, 3});
}

void CFastJASLines::Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context) {
    const std::string_view whole = line.bytes;
    const std::string_view source = detail.m_strSource;
    if (m_stamp.length == 0 || !line.ascii || source.empty() || whole.size() < kLongestStamp) {
        return;
    }
    // What stands behind a number has a say: for the dialect, or for whether the log asks for it.
    const bool mayBePassedOver =
        m_parser.m_dialects.Has(Dialect::Numbered) || !m_parser.m_helpful.Has(Dialect::Numbered);
    if (mayBePassedOver && CJASLineParser::IsNumber(source)) {
        return;
    }
    // The beginning ends with the bracket behind the source.
    const std::size_t start = m_stamp.length + kFractionLength;
    const auto end = static_cast<std::size_t>(source.data() + source.size() + 1 - whole.data());
    if (end <= whole.size()) {
        m_beginnings.Learn(whole.substr(start, end - start), m_stamp.month, false, 0, context,
                           KindOfLevel(detail.m_strLevel));
    }
}

void CFastJASLines::PrepareLines(CBlockLines lines, PreparedLines& prepared) {
    if (m_way == ParseWay::Plain) {
        return;
    }
    const CLineBeginnings& beginnings = m_beginnings.Latest(prepared.generation);
    PrepareEach(lines, prepared, m_stampAhead, [&](const LogLine& line, PreparedLine& ahead) {
        UsualPlace place;
        if (!FindPlace(line, m_stampAhead, beginnings, place)) {
            return false;
        }
        const bool levelDecides = place.levelKind != LOG_NONE;
        // A statement's parameters are counted in its turn.
        const bool isStatement = !levelDecides && !FindOperationWord(place.text).empty();
        const UsualText read = isStatement
                                   ? UsualText{place.text, {}}
                                   : ReadText(line, place.text, place.levelKind, m_noPending, m_scratchAhead);
        ahead = read.PreparedIn(line.bytes);
        ahead.classified = ahead.classified && !isStatement;
        ahead.levelDecides = levelDecides;
        ahead.fraction = place.fraction;
        ahead.context = place.context;
        return true;
    });
}

} // namespace carvelot
