#include "simulator/Rows.h"

#include <algorithm>
#include <cstdlib>

namespace simulator {

namespace {

void AddNumber(CRow& row, std::uint64_t number, int bytes) {
    for (int n = 0; n < bytes; ++n) {
        row.push_back(static_cast<unsigned char>(number >> 8 * n));
    }
}

} // namespace

void AddWideText(CRow& row, const std::string& ascii, std::size_t units) {
    for (std::size_t n = 0; n < units; ++n) {
        AddNumber(row, n + 1 < units && n < ascii.size() ? static_cast<unsigned char>(ascii[n]) : 0U, 2);
    }
}

void AddText(CRow& row, const std::string& ascii, std::size_t bytes) {
    for (std::size_t n = 0; n < bytes; ++n) {
        row.push_back(n < ascii.size() ? static_cast<unsigned char>(ascii[n]) : 0);
    }
}

void AddMathNumeric(CRow& row, std::int64_t number, int decimals) {
    row.push_back(static_cast<unsigned char>(decimals));
    row.push_back(number < 0 ? '-' : ' ');
    AddText(row, std::to_string(std::llabs(number)), kMathNumericSize - 2);
}

void AddDate(CRow& row, int year, int month, int day) {
    AddShort(row, static_cast<std::int16_t>(year));
    AddShort(row, static_cast<std::int16_t>(month));
    AddShort(row, static_cast<std::int16_t>(day));
}

void AddInt(CRow& row, std::int32_t number) { AddNumber(row, static_cast<std::uint32_t>(number), 4); }

void AddShort(CRow& row, std::int16_t number) { AddNumber(row, static_cast<std::uint16_t>(number), 2); }

std::string MathNumericText(const unsigned char* number) {
    std::string digits;
    for (std::size_t n = 2; n < kMathNumericSize && number[n] >= '0' && number[n] <= '9'; ++n) {
        digits.push_back(static_cast<char>(number[n]));
    }
    const std::size_t decimals = number[0];
    if (digits.empty() || decimals >= kMathNumericSize) {
        return {};
    }
    if (decimals > 0) {
        if (digits.size() <= decimals) {
            digits.insert(0, decimals + 1 - digits.size(), '0');
        }
        digits.insert(digits.size() - decimals, ".");
    }
    return (number[1] == '-' ? "-" : "") + digits;
}

CRow OrderLineRow(std::int32_t order, std::int32_t line) {
    constexpr const char* kItems[] = {"1001", "1002", "220-W", "2001", "3400-B"};
    CRow row;
    AddWideText(row, kItems[(order + line) % 5], 11);
    AddMathNumeric(row, (order * 37 + line * 1250) % 90000 + 99, 2);
    AddDate(row, 2025, line % 12 + 1, order % 28 + 1);
    AddInt(row, line);
    AddText(row, line % 3 == 0 ? "520" : "540", 4);
    AddInt(row, line % 2);
    AddInt(row, order * 100 + line);
    AddShort(row, static_cast<std::int16_t>(line % 5));
    return row;
}

CRow OrderHeaderRow(std::int32_t order) {
    constexpr const char* kCustomers[] = {"Northern Cycles", "Capital Supply", "Edmunds & Co",
                                          "Harbour Traders"};
    CRow row;
    AddWideText(row, kCustomers[order % 4], 21);
    AddMathNumeric(row, order, 0);
    AddDate(row, 2025, order % 12 + 1, order % 28 + 1);
    return row;
}

} // namespace simulator
