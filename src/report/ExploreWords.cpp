#include "report/ExploreWords.h"

#include "records/NodeText.h"
#include "report/TextTable.h"
#include "text/NumberText.h"
#include "text/TextColumns.h"

#include <algorithm>
#include <ostream>

namespace carvelot {

namespace {

std::uint64_t MillisecondsOf(std::uint64_t microseconds) {
    return microseconds / 1000 + (microseconds % 1000 >= 500 ? 1 : 0);
}

// Without a sign.
std::string SecondsOf(std::uint64_t microseconds) {
    const std::uint64_t milliseconds = MillisecondsOf(microseconds);
    if (milliseconds == 0 && microseconds != 0) {
        return "<0.001 s";
    }
    const std::string places = std::to_string(1000 + milliseconds % 1000);
    return Grouped(milliseconds / 1000).append(".").append(places, 1).append(" s");
}

std::uint64_t SizeOf(std::int64_t number) {
    return number < 0 ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
}

std::string_view SignOf(std::int64_t number) { return number < 0 ? "-" : number > 0 ? "+" : ""; }

// "1:02:03" behind the seconds of what takes a minute or more.
std::string LengthText(std::int64_t microseconds) {
    std::string text = DurationText(microseconds);
    const std::int64_t seconds = static_cast<std::int64_t>(MillisecondsOf(SizeOf(microseconds)) / 1000);
    if (seconds >= 60) {
        const auto two = [](std::int64_t number) { return std::to_string(100 + number).substr(1); };
        text.append(" (").append(Grouped(SizeOf(seconds / 3600))).append(":");
        text.append(two(seconds / 60 % 60)).append(":").append(two(seconds % 60)).append(")");
    }
    return text;
}

void PrintRecords(const ExploredSession& explored, std::ostream& out) {
    const CCarvelotDoc& session = explored.session;
    const bool isJAS = session.m_nLogFormat == LOG_FORMAT_JAS;
    out << "  " << (isJAS ? "JAS log, " : "debug log, ") << Counted(session.m_listDetails.Size(), "record")
        << " of " << Counted(explored.streams.Count(), isJAS ? "user" : "thread");
    if (const std::optional<RecordIndex> first = explored.clock.FirstRecord()) {
        const CLogDetail detail = session.m_listDetails[*first];
        out << " over " << LengthText(explored.clock.Length()) << "\n  from " << detail.m_strMonth << ' '
            << detail.m_nDay << ' ' << TrimRight(TimeStampText(detail), " ") << '\n';
    } else {
        out << "\n  no record bears a time\n";
    }
}

void PrintLines(const CCarvelotDoc& session, std::ostream& out) {
    const RefusedLines& refused = session.Refused();
    out << "  " << Counted(session.m_nLines, "line");
    std::string_view between = ", unread: ";
    const auto print = [&](std::uint64_t count, std::string_view reason) {
        if (count > 0) {
            out << between << Grouped(count) << ' ' << reason;
            between = ", ";
        }
    };
    print(refused.noTime, "without a time");
    print(refused.noMonth, "without a month");
    print(refused.filtered, "of another process");
    out << '\n';
}

} // namespace

std::string DurationText(std::int64_t microseconds) {
    return std::string(microseconds < 0 ? "-" : "").append(SecondsOf(SizeOf(microseconds)));
}

std::string DifferenceText(std::int64_t microseconds) {
    return std::string(SignOf(microseconds)).append(SecondsOf(SizeOf(microseconds)));
}

std::string CountDifferenceText(std::int64_t count) {
    return std::string(SignOf(count)).append(Grouped(SizeOf(count)));
}

std::string ShareBar(std::int64_t share, std::int64_t whole) {
    constexpr std::uint64_t signs = 10;
    const double part = whole > 0 ? static_cast<double>(share) / static_cast<double>(whole) : 0;
    const auto filled = std::min(signs, static_cast<std::uint64_t>(part * signs + 0.5));
    const auto thousandths = std::min(std::uint64_t{1000}, static_cast<std::uint64_t>(part * 1000 + 0.5));
    const std::string percent =
        std::to_string(thousandths / 10).append(".").append(std::to_string(thousandths % 10)).append(" %");
    return std::string(filled, '#').append(signs - filled + 8 - percent.size(), ' ').append(percent);
}

std::string NamedText(FrameKind kind, std::string_view name) {
    return std::string(LetterOf(kind)).append("  ").append(ShownName(name));
}

void PrintLog(const ExploredSession& explored, const std::string& path, std::ostream& out) {
    out << OneLine(path, 1000) << '\n';
    PrintRecords(explored, out);
    PrintLines(explored.session, out);
}

void PrintPart(const ExploreOptions& asked, std::ostream& out) {
    if (!asked.scope && asked.range.IsWhole()) {
        return;
    }
    out << "  Only";
    if (asked.scope) {
        out << ' ' << OneLine(*asked.scope);
    }
    if (asked.range.from != ClockRange::kOpenFrom) {
        out << " from " << DurationText(asked.range.from);
    }
    if (asked.range.to != ClockRange::kOpenTo) {
        out << " up to " << DurationText(asked.range.to);
    }
    out << "; what asks for a look is of the whole log\n";
}

std::string RuleLines(FindingRule rule, std::size_t width) {
    const std::string severity = std::string(NameOf(SeverityOf(rule))).append(": ");
    std::string_view rest = MeaningOf(rule);
    std::string text = "  " + severity;
    std::size_t column = text.size();
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
        if (column + word.size() > width) {
            text.back() = '\n';
            column = severity.size() + 2;
            text.append(column, ' ');
        }
        text.append(word).append(" ");
        column += word.size() + 1;
    }
    text.pop_back();
    return text;
}

std::string NoteLine(std::string_view text, std::size_t width) {
    constexpr std::size_t indent = 6;
    return std::string(indent, ' ').append(OneLineWithin(text, width - std::min(width, indent)));
}

} // namespace carvelot
