// Dates as the user's settings write them, and the dates that automation knows.
#pragma once

#include <optional>
#include <string>

namespace carvelot::platform {

/// A date in the user's short form; off Windows that is 2025-01-31. Nothing when there is no such date.
std::optional<std::string> ShortDate(int year, int month, int day);

/// Whether the three numbers are an automation date: one that converts to a day count and back to the same
/// numbers. Such dates have years from 100 to 9999.
bool IsAutomationDate(int year, int month, int day);

/// An automation date as text, in the user's default locale; off Windows 2025-01-31. Nothing when the
/// conversion fails.
std::optional<std::string> AutomationDateText(int year, int month, int day);

} // namespace carvelot::platform
