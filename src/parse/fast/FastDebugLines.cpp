#include "parse/fast/FastDebugLines.h"

namespace carvelot {

namespace {

constexpr std::int32_t Digit(char c) { return c - '0'; }

} // namespace

// Reads the stamp up to the whole second; false for any other form, and for numbers that no clock shows.
bool CFastDebugLines::ReadStamp(const char* p, KnownStamp& stamp) {
    // Of the sixteen characters from column 5 on all but these are digits: " 16:36:42.440295".
    constexpr std::uint32_t digitColumns = 0xFFFF & ~((1U << 1) | (1U << 4) | (1U << 7) | (1U << 10));
    if ((DigitsAmong16(p + 5) & digitColumns) != digitColumns || p[3] != ' ' || p[6] != ' ' || p[9] != ':' ||
        p[12] != ':' || p[15] != '.' || (p[4] != ' ' && !IsDigit(p[4])) || !IsMonthName({p, 3})) {
        return false;
    }
    const auto two = [p](std::size_t column) { return Digit(p[column]) * 10 + Digit(p[column + 1]); };
    stamp.day = (p[4] == ' ' ? 0 : Digit(p[4]) * 10) + Digit(p[5]);
    stamp.hour = two(7);
    stamp.minute = two(10);
    stamp.second = two(13);
    return stamp.Enter({p, kSecondsLength}, {p, 3});
}

std::size_t CFastDebugLines::EndOfBeginning(std::string_view line) const {
    if (m_parser.m_nTextColumn > 0) {
        return static_cast<std::size_t>(m_parser.m_nTextColumn);
    }
    std::size_t end = 0;
    for (std::int32_t tabs = m_parser.m_nTabCount; tabs > 0; --tabs) {
        const std::size_t tab = line.find('\t', end);
        if (tab == std::string_view::npos) {
            // The search started over.
            return 0;
        }
        end = tab + 1;
    }
    return end;
}

void CFastDebugLines::Learn(const LogLine& line, const CLogDetail& detail, std::uint32_t context) {
    if (m_stamp.length == 0 || !line.ascii || detail.m_bUBE || detail.m_strText.empty()) {
        return;
    }
    const std::string_view whole = line.bytes;
    const std::string_view label = detail.m_strThreadLabel.own;
    const auto column = [&](const char* at) { return static_cast<std::size_t>(at - whole.data()); };
    const std::size_t end = EndOfBeginning(whole);
    if (end <= kIDsColumn || label.empty() || column(label.data()) >= end) {
        return;
    }
    // A label that ends right where the beginning does would go on in another line.
    const std::size_t labelEnd = column(label.data() + label.size());
    const bool runsOn = labelEnd >= end;
    const std::size_t textStart = column(detail.m_strText.data());
    if (!runsOn || labelEnd > textStart) {
        m_beginnings.Learn(whole.substr(kIDsColumn, end - kIDsColumn), m_stamp.month, runsOn,
                           runsOn ? textStart - end : 0, context, LOG_NONE, m_parser.m_nTextColumn == 0);
    }
}

void CFastDebugLines::PrepareLines(CBlockLines lines, PreparedLines& prepared) {
    if (m_way == ParseWay::Plain) {
        return;
    }
    const CLineBeginnings& beginnings = m_beginnings.Latest(prepared.generation);
    PrepareEach(lines, prepared, m_stampAhead, [&](const LogLine& line, PreparedLine& ahead) {
        UsualPlace place;
        if (!FindPlace(line, m_stampAhead, beginnings, place)) {
            return false;
        }
        ahead = ReadText(place.text, place.signs, m_scratchAhead).PreparedIn(line.bytes);
        ahead.storedSize = static_cast<std::uint16_t>(place.stored.size());
        ahead.fraction = place.fraction;
        ahead.context = place.context;
        ahead.labelRunsOn = place.labelRunsOn;
        return true;
    });
}

} // namespace carvelot
