#include "explore/pictures/TimeAxis.h"

#include <array>
#include <cstdio>
#include <optional>

namespace carvelot {

namespace {

constexpr std::int64_t kMillisecond = 1'000;
constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::size_t kMostMarks = 1000;

std::string DateText(const WallTime& time) {
    return std::string(time.month).append(" ").append(std::to_string(time.day));
}

} // namespace

CTimeAxis::CTimeAxis(const CClock& clock) : m_clock(clock) {}

std::int64_t CTimeAxis::StepOf(double microseconds) {
    constexpr std::array<std::int64_t, 3> round{1, 2, 5};
    constexpr std::array<std::int64_t, 17> sixties{
        kSecond, 2 * kSecond, 5 * kSecond, 10 * kSecond, 15 * kSecond, 30 * kSecond,
        kMinute, 2 * kMinute, 5 * kMinute, 10 * kMinute, 15 * kMinute, 30 * kMinute,
        kHour,   2 * kHour,   3 * kHour,   6 * kHour,    12 * kHour};
    const auto isEnough = [microseconds](std::int64_t step) {
        return static_cast<double>(step) >= microseconds;
    };
    const auto decimal = [&](std::int64_t unit, std::int64_t end) -> std::optional<std::int64_t> {
        for (; unit < end; unit *= 10) {
            for (const std::int64_t factor : round) {
                if (isEnough(factor * unit)) {
                    return factor * unit;
                }
            }
        }
        return {};
    };
    if (const auto step = decimal(1, kSecond)) {
        return *step;
    }
    for (const std::int64_t step : sixties) {
        if (isEnough(step)) {
            return step;
        }
    }
    return decimal(kDay, 1'000'000 * kDay).value_or(10'000'000 * kDay);
}

std::string CTimeAxis::TimeOfDay(const WallTime& time, std::int64_t step) const {
    const auto part = [&time](std::int64_t unit, std::int64_t most) {
        return static_cast<int>(time.microseconds / unit % most);
    };
    const auto hours = static_cast<long long>(time.microseconds / kHour);
    char text[64];
    const int length =
        std::snprintf(text, sizeof text, time.month.empty() ? "%lld:%02d:%02d.%06d" : "%02lld:%02d:%02d.%06d",
                      hours, part(kMinute, 60), part(kSecond, 60), part(1, kSecond));
    const int unsaid = step >= kMinute ? 10 : step >= kSecond ? 7 : step >= kMillisecond ? 3 : 0;
    return {text, static_cast<std::size_t>(length - (time.month.empty() && step >= kMinute ? 7 : unsaid))};
}

std::vector<TimeMark> CTimeAxis::Marks(std::int64_t from, std::int64_t to, std::int64_t step) const {
    std::vector<TimeMark> marks;
    const WallTime begin = m_clock.At(from);
    // Steps count from midnight on, those of days from the first day on.
    const std::int64_t inDays = step > kDay ? begin.daysBehind * kDay : 0;
    const std::int64_t into = (begin.microseconds + inDays) % step;
    std::int64_t clock = from + (into == 0 ? 0 : (into < 0 ? 0 : step) - into);
    const bool hasDates = !begin.month.empty();
    const bool isOfOneDay = m_clock.At(0).daysBehind == m_clock.At(m_clock.Length()).daysBehind;
    std::int64_t day = isOfOneDay ? begin.daysBehind : begin.daysBehind - 1; // the one told last
    for (; clock <= to && marks.size() < kMostMarks; clock += step) {
        const WallTime time = m_clock.At(clock);
        std::string text;
        if (hasDates && (step >= kDay || time.daysBehind != day)) {
            text = DateText(time);
            day = time.daysBehind;
        }
        if (!hasDates || step < kDay) {
            text.append(text.empty() ? "" : " ").append(TimeOfDay(time, step));
        }
        marks.push_back({clock, std::move(text)});
    }
    return marks;
}

std::string CTimeAxis::Text(std::int64_t clock) const {
    const WallTime time = m_clock.At(clock);
    const std::string text = TimeOfDay(time, 1);
    return time.month.empty() ? text : DateText(time).append(" ").append(text);
}

} // namespace carvelot
