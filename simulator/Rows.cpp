#include "simulator/Rows.h"

#include <algorithm>
#include <cstdlib>

namespace simulator {

namespace {

void AddNumber(CRow& row, std::uint64_t nNumber, int nBytes) {
    for (int n = 0; n < nBytes; ++n)
        row.push_back(static_cast<unsigned char>(nNumber >> 8 * n));
}

} // namespace

void AddWideText(CRow& row, const std::string& strAscii, std::size_t nUnits) {
    for (std::size_t n = 0; n < nUnits; ++n)
        AddNumber(row, n + 1 < nUnits && n < strAscii.size() ? static_cast<unsigned char>(strAscii[n]) : 0U,
                  2);
}

void AddText(CRow& row, const std::string& strAscii, std::size_t nBytes) {
    for (std::size_t n = 0; n < nBytes; ++n)
        row.push_back(n < strAscii.size() ? static_cast<unsigned char>(strAscii[n]) : 0);
}

void AddMathNumeric(CRow& row, std::int64_t nNumber, int nDecimals) {
    row.push_back(static_cast<unsigned char>(nDecimals));
    row.push_back(nNumber < 0 ? '-' : ' ');
    AddText(row, std::to_string(std::llabs(nNumber)), kMathNumericSize - 2);
}

void AddDate(CRow& row, int nYear, int nMonth, int nDay) {
    AddShort(row, static_cast<std::int16_t>(nYear));
    AddShort(row, static_cast<std::int16_t>(nMonth));
    AddShort(row, static_cast<std::int16_t>(nDay));
}

void AddInt(CRow& row, std::int32_t nNumber) { AddNumber(row, static_cast<std::uint32_t>(nNumber), 4); }

void AddShort(CRow& row, std::int16_t nNumber) { AddNumber(row, static_cast<std::uint16_t>(nNumber), 2); }

std::string MathNumericText(const unsigned char* pNumber) {
    std::string strDigits;
    for (std::size_t n = 2; n < kMathNumericSize && pNumber[n] >= '0' && pNumber[n] <= '9'; ++n)
        strDigits.push_back(static_cast<char>(pNumber[n]));
    const std::size_t nDecimals = pNumber[0];
    if (strDigits.empty() || nDecimals >= kMathNumericSize)
        return {};
    if (nDecimals > 0) {
        if (strDigits.size() <= nDecimals)
            strDigits.insert(0, nDecimals + 1 - strDigits.size(), '0');
        strDigits.insert(strDigits.size() - nDecimals, ".");
    }
    return (pNumber[1] == '-' ? "-" : "") + strDigits;
}

CRow OrderLineRow(std::int32_t nOrder, std::int32_t nLine) {
    constexpr const char* kItems[] = {"1001", "1002", "220-W", "2001", "3400-B"};
    CRow row;
    AddWideText(row, kItems[(nOrder + nLine) % 5], 11);
    AddMathNumeric(row, (nOrder * 37 + nLine * 1250) % 90000 + 99, 2);
    AddDate(row, 2025, nLine % 12 + 1, nOrder % 28 + 1);
    AddInt(row, nLine);
    AddText(row, nLine % 3 == 0 ? "520" : "540", 4);
    AddInt(row, nLine % 2);
    AddInt(row, nOrder * 100 + nLine);
    AddShort(row, static_cast<std::int16_t>(nLine % 5));
    return row;
}

CRow OrderHeaderRow(std::int32_t nOrder) {
    constexpr const char* kCustomers[] = {"Northern Cycles", "Capital Supply", "Edmunds & Co",
                                          "Harbour Traders"};
    CRow row;
    AddWideText(row, kCustomers[nOrder % 4], 21);
    AddMathNumeric(row, nOrder, 0);
    AddDate(row, 2025, nOrder % 12 + 1, nOrder % 28 + 1);
    return row;
}

} // namespace simulator
