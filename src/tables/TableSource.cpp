#include "tables/TableSource.h"

#include "explore/StrictShape.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace carvelot {

namespace {

constexpr std::int64_t kMicrosecondsOfDay = 86'400'000'000;
constexpr int kYearOfNone = 2000;
constexpr std::int64_t kHalfYear = 183;
constexpr std::int64_t kSurelySameYear = 150;

// Nothing for Feb 29 of a year that has none.
std::optional<std::int64_t> NumberOfDay(int year, StampedDay day) {
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(day.month)),
                                           std::chrono::day(static_cast<unsigned>(day.day))};
    if (!date.ok()) {
        return std::nullopt;
    }
    return std::chrono::sys_days(date).time_since_epoch().count();
}

std::chrono::year_month_day DateOf(std::int64_t dayNumber) {
    return std::chrono::sys_days(std::chrono::days(dayNumber));
}

} // namespace

std::uint64_t StableNumber(std::string_view text, std::uint64_t start) {
    // FNV-1a.
    std::uint64_t number = start;
    for (const char c : text) {
        number = (number ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    }
    return number;
}

CTableSource::CTableSource(const CCarvelotDoc& session, const AnalysisSettings& settings,
                           TableOptions options)
    : m_strLog(session.LogName()), m_options(std::move(options)),
      m_explored(session, settings, nullptr,
                 m_options.shapesOnly ? ShapeReading::Strict : ShapeReading::Plain) {
    const std::optional<RecordIndex> first = m_explored.clock.FirstRecord();
    if (first) {
        const std::optional<StampedDay> day = StampedDayOf(Records(), *first);
        m_nFirstDay =
            NumberOfDay(m_options.year.value_or(kYearOfNone), {day->month, 1}).value_or(0) + day->day - 1;
        m_nFirstTime = static_cast<std::int64_t>(Records().Time(*first));
    }
}

const ExploredScope& CTableSource::Scope() const {
    if (!m_scope) {
        m_scope.emplace(m_explored, Selection(), ClockRange());
    }
    return *m_scope;
}

const std::vector<Finding>& CTableSource::Findings() const {
    if (!m_findings) {
        m_findings = FindAll(m_explored);
    }
    return *m_findings;
}

const CLargeVector<std::int64_t>& CTableSource::SelfTimes() const {
    if (!m_selfTimes) {
        m_selfTimes = Scope().cut.SelfTimes();
    }
    return *m_selfTimes;
}

const std::vector<RecordIndex>& CTableSource::Errors() const {
    if (!m_errors) {
        m_errors.emplace();
        const auto take = [this](RecordIndex record) { m_errors->push_back(record); };
        for (const auto& process : Session().m_listProcesses) {
            std::for_each(process->m_listErrors.begin(), process->m_listErrors.end(), take);
        }
        for (const auto& user : Session().m_listUsers) {
            std::for_each(user->m_listErrors.begin(), user->m_listErrors.end(), take);
        }
        std::sort(m_errors->begin(), m_errors->end());
    }
    return *m_errors;
}

std::optional<std::uint32_t> CTableSource::Line(RecordIndex record) const {
    return Session().m_bNumberLines ? std::optional(Session().m_listLineNumbers[Number(record)])
                                    : std::nullopt;
}

std::uint32_t CTableSource::ShapeAt(RecordIndex record) const {
    if (Records().Kind(record) != LOG_SQL) {
        return kNoShape;
    }
    const std::uint32_t frame = m_explored.frames.FrameAt(record);
    return frame == kNoFrame ? kNoShape : m_explored.shapes.Of(frame);
}

std::optional<std::int64_t> CTableSource::DayNumber(RecordIndex record) const {
    const std::uint32_t month = Records().Context(record).month;
    const std::int32_t day = Records().Day(record);
    const bool isKnown =
        m_knownDay.number && month == m_knownDay.month && day == m_knownDay.day &&
        Records().Time(record) < static_cast<std::uint64_t>(kMicrosecondsOfDay) &&
        (!m_options.year || std::abs(*m_knownDay.number - DaysByClock(record)) < kSurelySameYear);
    if (!isKnown) {
        m_knownDay = {month, day, FindDayNumber(record)};
    }
    return m_knownDay.number;
}

std::int64_t CTableSource::DaysByClock(RecordIndex record) const {
    const std::int64_t passed = m_explored.clock[record] + m_nFirstTime;
    return m_nFirstDay + passed / kMicrosecondsOfDay - (passed % kMicrosecondsOfDay < 0 ? 1 : 0);
}

// The year is the one in which the day lies next to where the clock, which counts on over the turns of years,
// has come to.
std::optional<std::int64_t> CTableSource::FindDayNumber(RecordIndex record) const {
    const std::optional<StampedDay> day = StampedDayOf(Records(), record);
    if (!day) {
        return std::nullopt;
    }
    if (!m_options.year) {
        return NumberOfDay(kYearOfNone, *day);
    }
    constexpr std::int64_t mostDays = 10'000'000;
    const std::int64_t about = DaysByClock(record);
    const int year = static_cast<int>(DateOf(std::clamp(about, -mostDays, mostDays)).year());
    for (const int candidate : {year - 1, year, year + 1}) {
        const std::optional<std::int64_t> number = NumberOfDay(candidate, *day);
        if (number && std::abs(*number - about) <= kHalfYear) {
            return number;
        }
    }
    return std::nullopt;
}

std::string CTableSource::DayText(std::int64_t dayNumber) const {
    const std::chrono::year_month_day date = DateOf(dayNumber);
    char text[32];
    const auto month = static_cast<unsigned>(date.month());
    const auto day = static_cast<unsigned>(date.day());
    if (m_options.year) {
        std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()), month, day);
    } else {
        std::snprintf(text, sizeof text, "--%02u-%02u", month, day);
    }
    return text;
}

std::optional<std::int64_t> CTableSource::FirstDay() const {
    const std::optional<RecordIndex> first = m_explored.clock.FirstRecord();
    return first ? DayNumber(*first) : std::nullopt;
}

std::string_view CTableSource::ShownName(std::string_view name, std::string& scratch) const {
    return m_options.shapesOnly ? scratch = NameWithoutValues(name) : name;
}

std::optional<std::string_view> CTableSource::ShownText(RecordIndex record) const {
    if (!m_options.shapesOnly) {
        return Records().Text(record);
    }
    const std::uint32_t shape = ShapeAt(record);
    return shape == kNoShape ? std::nullopt : std::optional(m_explored.shapes.Text(shape));
}

std::string_view CTableSource::StreamName(std::uint32_t stream, std::string& scratch) const {
    return scratch = m_explored.streams.Name(stream);
}

} // namespace carvelot
