#include "platform/DateText.h"

#include <chrono>
#include <cstdio>

namespace carvelot::platform {

namespace {

bool IsDate(int year, int month, int day) {
    if (year < 0 || year > 30827 || month < 1 || month > 12 || day < 1 || day > 31) {
        return false;
    }
    return std::chrono::year_month_day(std::chrono::year(year),
                                       std::chrono::month(static_cast<unsigned>(month)),
                                       std::chrono::day(static_cast<unsigned>(day)))
        .ok();
}

std::string IsoDate(int year, int month, int day) {
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
    return text;
}

} // namespace

std::optional<std::string> ShortDate(int year, int month, int day) {
    if (!IsDate(year, month, day)) {
        return std::nullopt;
    }
    return IsoDate(year, month, day);
}

bool IsAutomationDate(int year, int month, int day) {
    // Years below 100 are taken for short forms of others and come back changed.
    return year >= 100 && year <= 9999 && IsDate(year, month, day);
}

std::optional<std::string> AutomationDateText(int year, int month, int day) {
    if (!IsAutomationDate(year, month, day)) {
        return std::nullopt;
    }
    return IsoDate(year, month, day);
}

} // namespace carvelot::platform
