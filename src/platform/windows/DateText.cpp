#include "platform/DateText.h"
#include "platform/windows/WindowsText.h"

// Below windows.h, whose types it needs.
#include <oleauto.h>

namespace carvelot::platform {

namespace {

bool ToSystemTime(int year, int month, int day, SYSTEMTIME& time) {
    if (year < 0 || year > 0xFFFF || month < 0 || month > 0xFFFF || day < 0 || day > 0xFFFF) {
        return false;
    }
    time = {};
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    return true;
}

bool ToAutomationDate(int year, int month, int day, double& date) {
    SYSTEMTIME time;
    SYSTEMTIME back{};
    return ToSystemTime(year, month, day, time) && SystemTimeToVariantTime(&time, &date) &&
           VariantTimeToSystemTime(date, &back) && back.wYear == time.wYear && back.wMonth == time.wMonth &&
           back.wDay == time.wDay && back.wHour == 0 && back.wMinute == 0 && back.wSecond == 0;
}

} // namespace

std::optional<std::string> ShortDate(int year, int month, int day) {
    SYSTEMTIME time;
    wchar_t text[80];
    if (!ToSystemTime(year, month, day, time) ||
        GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, text, 80) == 0) {
        return std::nullopt;
    }
    return FromWide(text);
}

bool IsAutomationDate(int year, int month, int day) {
    double date = 0;
    return ToAutomationDate(year, month, day, date);
}

std::optional<std::string> AutomationDateText(int year, int month, int day) {
    double date = 0;
    BSTR text = nullptr;
    if (!ToAutomationDate(year, month, day, date) ||
        FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &text))) {
        return std::nullopt;
    }
    const std::string result = FromWide(std::wstring_view(text, SysStringLen(text)));
    SysFreeString(text);
    return result;
}

} // namespace carvelot::platform
