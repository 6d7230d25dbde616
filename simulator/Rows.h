// Rows.h - rows of caches as a JDE program holds them: members one after the other without padding, numbers
// little-endian, a MATH_NUMERIC of 50 bytes and a JDEDATE of three 16-bit numbers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace simulator {

using CRow = std::vector<unsigned char>;

// The insides of our MATH_NUMERIC, which only the stand-in of jdekrnl reads: the number of decimals, the sign
// ('-' or a blank) and the digits with a zero behind them.
inline constexpr std::size_t kMathNumericSize = 50;

void AddWideText(CRow& row, const std::string& ascii, std::size_t units);
void AddText(CRow& row, const std::string& ascii, std::size_t bytes);
void AddMathNumeric(CRow& row, std::int64_t number, int decimals); // nNumber / 10^nDecimals
void AddDate(CRow& row, int year, int month, int day);
void AddInt(CRow& row, std::int32_t number);
void AddShort(CRow& row, std::int16_t number);

// The number's text, such as "-12.50"; empty for 50 bytes that are none.
std::string MathNumericText(const unsigned char* number);

// A line of a sales order:
//   typedef struct { JCHAR szItem[11]; MATH_NUMERIC mnPrice; JDEDATE jdRequested; int line; char cStatus[4];
//                    BOOL bTaxable; ID idLine; short nPriority; } ...
CRow OrderLineRow(std::int32_t order, std::int32_t line);
// Its head:
//   typedef struct { JCHAR szCustomer[21]; MATH_NUMERIC mnOrder; JDEDATE jdEntered; } ...
CRow OrderHeaderRow(std::int32_t order);

} // namespace simulator
