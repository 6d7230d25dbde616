#include "cachebrowser/Archive.h"

#include "platform/CodePage.h"
#include "text/Columns.h"

#include <algorithm>
#include <limits>

namespace carvelot {

namespace {

constexpr std::size_t kBufferSize = 4096;
constexpr std::uint16_t kNewClassTag = 0xFFFF;
constexpr std::uint16_t kClassTag = 0x8000;
constexpr std::uint16_t kBigObjectTag = 0x7FFF;
constexpr std::uint32_t kBigClassTag = 0x80000000;
constexpr std::size_t kMostClassName = 64;
constexpr std::uint16_t kUnicodeMark = 0xFFFE;
// Strings are read in pieces of this many bytes, so that a length that lies reserves nothing.
constexpr std::size_t kStringPiece = 4096;

std::u16string ToUnits(std::string_view strText) {
    std::u16string strUnits;
    while (!strText.empty()) {
        char32_t ch = TakeCodePoint(strText);
        if (ch > 0x10FFFF)
            ch = 0xFFFD;
        if (ch >= 0x10000) {
            strUnits.push_back(static_cast<char16_t>(0xD800 + ((ch - 0x10000) >> 10)));
            strUnits.push_back(static_cast<char16_t>(0xDC00 + ((ch - 0x10000) & 0x3FF)));
        } else {
            strUnits.push_back(static_cast<char16_t>(ch));
        }
    }
    return strUnits;
}

std::string FromUnitBytes(std::string_view strBytes) {
    const auto unit = [&](std::size_t n) {
        return static_cast<char32_t>(static_cast<unsigned char>(strBytes[n]) |
                                     static_cast<unsigned char>(strBytes[n + 1]) << 8);
    };
    std::string strText;
    for (std::size_t n = 0; n + 1 < strBytes.size(); n += 2) {
        char32_t ch = unit(n);
        if (ch >= 0xD800 && ch < 0xDC00 && n + 3 < strBytes.size() && unit(n + 2) >= 0xDC00 &&
            unit(n + 2) < 0xE000) {
            n += 2;
            ch = 0x10000 + ((ch - 0xD800) << 10) + (unit(n) - 0xDC00);
        }
        AppendCodePoint(strText, ch);
    }
    return strText;
}

} // namespace

CArchive::CArchive(IArchiveFile& file, EMode nMode) : m_file(file), m_nMode(nMode) {}

void CArchive::Fail(EArchiveError nError) {
    if (!Failed())
        m_nError = nError;
}

bool CArchive::ReadBytes(void* pBytes, std::size_t nSize) {
    auto* pTo = static_cast<char*>(pBytes);
    while (nSize != 0 && !Failed()) {
        if (m_nRead == m_buffer.size()) {
            m_buffer.resize(kBufferSize);
            m_buffer.resize(m_file.Read(m_buffer.data(), kBufferSize));
            m_nRead = 0;
            if (m_buffer.empty()) {
                Fail(EArchiveError::EndOfFile);
                break;
            }
        }
        const std::size_t nPiece = std::min(nSize, m_buffer.size() - m_nRead);
        std::copy_n(m_buffer.data() + m_nRead, nPiece, pTo);
        m_nRead += nPiece;
        pTo += nPiece;
        nSize -= nPiece;
    }
    return !Failed();
}

std::uint64_t CArchive::ReadNumber(int nBytes) {
    unsigned char bytes[8] = {};
    if (!ReadBytes(bytes, static_cast<std::size_t>(nBytes)))
        return 0;
    std::uint64_t nNumber = 0;
    for (int n = nBytes; n-- > 0;)
        nNumber = nNumber << 8 | bytes[n];
    return nNumber;
}

std::uint64_t CArchive::ReadCount() {
    const std::uint64_t nWord = ReadNumber(2);
    if (nWord != 0xFFFF)
        return nWord;
    const std::uint64_t nLong = ReadNumber(4);
    return nLong != 0xFFFFFFFF ? nLong : ReadNumber(8);
}

std::uint64_t CArchive::ReadStringLength(bool& bUnicode) {
    bUnicode = false;
    std::uint64_t nLength = ReadNumber(1);
    if (nLength != 0xFF)
        return nLength;
    nLength = ReadNumber(2);
    if (nLength == kUnicodeMark) {
        bUnicode = true;
        nLength = ReadNumber(1);
        if (nLength != 0xFF)
            return nLength;
        nLength = ReadNumber(2);
    }
    if (nLength != 0xFFFF)
        return nLength;
    nLength = ReadNumber(4);
    return nLength != 0xFFFFFFFF ? nLength : ReadNumber(8);
}

std::string CArchive::ReadString() {
    bool bUnicode = false;
    const std::uint64_t nLength = ReadStringLength(bUnicode);
    if (Failed())
        return {};
    if (nLength > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
        Fail(EArchiveError::BadFormat);
        return {};
    }
    std::uint64_t nLeft = bUnicode ? nLength * 2 : nLength;
    std::string strBytes;
    char piece[kStringPiece];
    while (nLeft != 0) {
        const auto nPiece = static_cast<std::size_t>(std::min<std::uint64_t>(nLeft, kStringPiece));
        if (!ReadBytes(piece, nPiece))
            return {};
        strBytes.append(piece, nPiece);
        nLeft -= nPiece;
    }
    if (bUnicode)
        return FromUnitBytes(strBytes);
    std::string strScratch;
    return std::string(platform::BytesToUtf8(strBytes, strScratch));
}

void CArchive::ReadObject(std::string_view strClass, std::uint16_t nSchema) {
    const std::uint16_t nTag = ReadWord();
    if (Failed())
        return;
    if (nTag == kNewClassTag) {
        const std::uint16_t nFound = ReadWord();
        const std::uint16_t nLength = ReadWord();
        char name[kMostClassName];
        if (Failed())
            return;
        if (nLength >= kMostClassName)
            return Fail(EArchiveError::BadClass);
        if (!ReadBytes(name, nLength))
            return;
        if (std::string_view(name, nLength) != strClass)
            return Fail(EArchiveError::BadClass);
        if (nFound != nSchema)
            return Fail(EArchiveError::BadSchema);
        m_listClasses.push_back(m_nNextIndex++);
    } else {
        std::uint32_t nIndex = nTag & ~std::uint32_t{kClassTag};
        bool bClass = (nTag & kClassTag) != 0;
        if (nTag == kBigObjectTag) {
            const auto nBig = static_cast<std::uint32_t>(ReadNumber(4));
            if (Failed())
                return;
            bClass = (nBig & kBigClassTag) != 0;
            nIndex = nBig & ~kBigClassTag;
        }
        // A null object, or one that stands in the file already, is no member of a list that owns its
        // members.
        if (!bClass || !std::ranges::binary_search(m_listClasses, nIndex))
            return Fail(EArchiveError::BadFormat);
    }
    ++m_nNextIndex;
}

void CArchive::WriteBytes(std::string_view strBytes) {
    if (Failed())
        return;
    m_buffer.append(strBytes);
    if (m_buffer.size() >= kBufferSize)
        Flush();
}

bool CArchive::Flush() {
    if (IsStoring() && !Failed() && !m_buffer.empty() && !m_file.Write(m_buffer))
        Fail(EArchiveError::WriteFailed);
    m_buffer.clear();
    return !Failed();
}

void CArchive::WriteNumber(std::uint64_t nNumber, int nBytes) {
    char bytes[8];
    for (int n = 0; n < nBytes; ++n)
        bytes[n] = static_cast<char>(nNumber >> 8 * n);
    WriteBytes({bytes, static_cast<std::size_t>(nBytes)});
}

void CArchive::WriteCount(std::uint64_t nCount) {
    if (nCount < 0xFFFF)
        return WriteNumber(nCount, 2);
    WriteNumber(0xFFFF, 2);
    if (nCount < 0xFFFFFFFF)
        return WriteNumber(nCount, 4);
    WriteNumber(0xFFFFFFFF, 4);
    WriteNumber(nCount, 8);
}

void CArchive::WriteStringLength(std::uint64_t nUnits) {
    WriteNumber(0xFF, 1);
    WriteNumber(kUnicodeMark, 2);
    if (nUnits < 255)
        return WriteNumber(nUnits, 1);
    WriteNumber(0xFF, 1);
    if (nUnits < 0xFFFE)
        return WriteNumber(nUnits, 2);
    WriteNumber(0xFFFF, 2);
    if (nUnits < 0xFFFFFFFF)
        return WriteNumber(nUnits, 4);
    WriteNumber(0xFFFFFFFF, 4);
    WriteNumber(nUnits, 8);
}

void CArchive::WriteString(std::string_view strText) {
    const std::u16string strUnits = ToUnits(strText);
    WriteStringLength(strUnits.size());
    for (const char16_t ch : strUnits)
        WriteNumber(ch, 2);
}

void CArchive::WriteObject(std::string_view strClass, std::uint16_t nSchema) {
    if (m_listClasses.empty()) {
        WriteWord(kNewClassTag);
        WriteWord(nSchema);
        WriteWord(static_cast<std::uint16_t>(strClass.size()));
        WriteBytes(strClass);
        m_listClasses.push_back(m_nNextIndex++);
    } else {
        WriteWord(static_cast<std::uint16_t>(kClassTag | m_listClasses.front()));
    }
    ++m_nNextIndex;
}

} // namespace carvelot
