#include "cachebrowser/CacheDS.h"
#include "live/CompanionLibrary.h"
#include "platform/CodePage.h"
#include "platform/DateText.h"
#include "platform/UnicodeTest.h"

#include <algorithm>
#include <cstring>

namespace carvelot {

namespace {

constexpr std::size_t kMathNumericText = 128;

std::int32_t ReadInt32(const CRowPointer& row) {
    std::uint32_t number = 0;
    for (int n = 3; n >= 0; --n) {
        number = number << 8 | row.At(n);
    }
    return static_cast<std::int32_t>(number);
}

int ReadInt16(const CRowPointer& row, std::int64_t at) {
    return static_cast<std::int16_t>(row.At(at) | row.At(at + 1) << 8);
}

// 8-bit text up to its first zero.
std::string ByteText(std::span<const unsigned char> bytes) {
    const auto length = static_cast<std::size_t>(std::ranges::find(bytes, 0) - bytes.begin());
    std::string scratch;
    return std::string(platform::BytesToUtf8({reinterpret_cast<const char*>(bytes.data()), length}, scratch));
}

// UTF-16 text up to its first zero; half a unit at the end counts as one with a zero behind it.
std::string WideText(std::span<const unsigned char> bytes) {
    std::u16string units;
    for (std::size_t n = 0; n < bytes.size(); n += 2) {
        const auto ch = static_cast<char16_t>(bytes[n] | (n + 1 < bytes.size() ? bytes[n + 1] << 8 : 0));
        if (ch == 0) {
            break;
        }
        units.push_back(ch);
    }
    return BufferText(units.data(), units.size());
}

std::string MathNumericText(const CRowPointer& row, FFormatMathNumeric pfnFormatMathNumeric) {
    if (pfnFormatMathNumeric == nullptr) {
        return "N/A";
    }
    // The row may end within the number, which is the library's to read.
    unsigned char number[kMathNumericText] = {};
    std::ranges::copy(row.Bytes(sizeof number), number);
    alignas(char16_t) unsigned char block[kMathNumericText] = {};
    pfnFormatMathNumeric(reinterpret_cast<char16_t*>(block), number);
    // The answers are the wrong way round on purpose: what the library writes is UTF-16 behind which zeros
    // stand, and such a block is not taken for it.
    return platform::LooksLikeUnicode(block, sizeof block) ? ByteText(block) : WideText(block);
}

std::string DateText(const CRowPointer& row) {
    const int year = ReadInt16(row, 0);
    const int month = ReadInt16(row, 2);
    const int day = ReadInt16(row, 4);
    if (!platform::IsAutomationDate(year, month, day)) {
        return {};
    }
    return platform::AutomationDateText(year, month, day).value_or("Invalid DateTime");
}

} // namespace

unsigned char CRowPointer::At(std::int64_t n) const {
    const std::int64_t at = m_nOffset + n;
    return at >= 0 && at < static_cast<std::int64_t>(m_row.size()) ? m_row[static_cast<std::size_t>(at)] : 0;
}

std::span<const unsigned char> CRowPointer::Bytes(std::int64_t size) const {
    const auto row = static_cast<std::int64_t>(m_row.size());
    if (m_nOffset < 0 || m_nOffset >= row || size <= 0) {
        return {};
    }
    return m_row.subspan(static_cast<std::size_t>(m_nOffset),
                         static_cast<std::size_t>(std::min(size, row - m_nOffset)));
}

void CMember::SettleSize() {
    if (m_pointer) {
        return;
    }
    if (m_type == MEMBER_SHORT) {
        m_size = 2;
    } else if (m_type == MEMBER_BYTE) {
        m_size = 1;
    } else if (m_type == MEMBER_VOID) {
        m_size = 8;
    }
}

std::string CMember::DecodeMember(const CRowPointer& row, FFormatMathNumeric pfnFormatMathNumeric) {
    if (m_pointer) {
        return "Pointer";
    }
    SettleSize();
    switch (m_type) {
    case MEMBER_INT:
    case MEMBER_LONG:
        return std::to_string(ReadInt32(row));
    case MEMBER_CHAR:
        return ByteText(row.Bytes(std::int64_t{m_size} * m_count));
    case MEMBER_JCHAR:
        return WideText(row.Bytes(std::int64_t{m_size} * m_count));
    case MEMBER_MATH_NUMERIC:
        return MathNumericText(row, pfnFormatMathNumeric);
    case MEMBER_JDEDATE:
        return DateText(row);
    case MEMBER_BOOL:
        return row.At(0) != 0 ? "True" : "False";
    default:
        return "Not Handled";
    }
}

} // namespace carvelot
