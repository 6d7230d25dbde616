#include "cachebrowser/Archive.h"

#include "platform/CodePage.h"
#include "text/TextColumns.h"

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

std::u16string ToUnits(std::string_view text) {
    std::u16string units;
    while (!text.empty()) {
        char32_t ch = TakeCodePoint(text);
        if (ch > 0x10FFFF) {
            ch = 0xFFFD;
        }
        if (ch >= 0x10000) {
            units.push_back(static_cast<char16_t>(0xD800 + ((ch - 0x10000) >> 10)));
            units.push_back(static_cast<char16_t>(0xDC00 + ((ch - 0x10000) & 0x3FF)));
        } else {
            units.push_back(static_cast<char16_t>(ch));
        }
    }
    return units;
}

std::string FromUnitBytes(std::string_view bytes) {
    const auto unit = [&](std::size_t n) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[n]) |
                                     static_cast<unsigned char>(bytes[n + 1]) << 8);
    };
    std::string text;
    for (std::size_t n = 0; n + 1 < bytes.size(); n += 2) {
        char32_t ch = unit(n);
        if (ch >= 0xD800 && ch < 0xDC00 && n + 3 < bytes.size() && unit(n + 2) >= 0xDC00 &&
            unit(n + 2) < 0xE000) {
            n += 2;
            ch = 0x10000 + ((ch - 0xD800) << 10) + (unit(n) - 0xDC00);
        }
        AppendCodePoint(text, ch);
    }
    return text;
}

} // namespace

CArchive::CArchive(IArchiveFile& file, EMode mode) : m_file(file), m_nMode(mode) {}

void CArchive::Fail(EArchiveError error) {
    if (!Failed()) {
        m_nError = error;
    }
}

bool CArchive::ReadBytes(void* bytes, std::size_t size) {
    auto* to = static_cast<char*>(bytes);
    while (size != 0 && !Failed()) {
        if (m_nRead == m_buffer.size()) {
            m_buffer.resize(kBufferSize);
            m_buffer.resize(m_file.Read(m_buffer.data(), kBufferSize));
            m_nRead = 0;
            if (m_buffer.empty()) {
                Fail(EArchiveError::EndOfFile);
                break;
            }
        }
        const std::size_t portion = std::min(size, m_buffer.size() - m_nRead);
        std::copy_n(m_buffer.data() + m_nRead, portion, to);
        m_nRead += portion;
        to += portion;
        size -= portion;
    }
    return !Failed();
}

std::uint64_t CArchive::ReadNumber(int size) {
    unsigned char bytes[8] = {};
    if (!ReadBytes(bytes, static_cast<std::size_t>(size))) {
        return 0;
    }
    std::uint64_t number = 0;
    for (int n = size; n-- > 0;) {
        number = number << 8 | bytes[n];
    }
    return number;
}

std::uint64_t CArchive::ReadCount() {
    const std::uint64_t word = ReadNumber(2);
    if (word != 0xFFFF) {
        return word;
    }
    const std::uint64_t longCount = ReadNumber(4);
    return longCount != 0xFFFFFFFF ? longCount : ReadNumber(8);
}

std::uint64_t CArchive::ReadStringLength(bool& unicode) {
    unicode = false;
    std::uint64_t length = ReadNumber(1);
    if (length != 0xFF) {
        return length;
    }
    length = ReadNumber(2);
    if (length == kUnicodeMark) {
        unicode = true;
        length = ReadNumber(1);
        if (length != 0xFF) {
            return length;
        }
        length = ReadNumber(2);
    }
    if (length != 0xFFFF) {
        return length;
    }
    length = ReadNumber(4);
    return length != 0xFFFFFFFF ? length : ReadNumber(8);
}

std::string CArchive::ReadString() {
    bool unicode = false;
    const std::uint64_t length = ReadStringLength(unicode);
    if (Failed()) {
        return {};
    }
    if (length > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
        Fail(EArchiveError::BadFormat);
        return {};
    }
    std::uint64_t left = unicode ? length * 2 : length;
    std::string bytes;
    char piece[kStringPiece];
    while (left != 0) {
        const auto portion = static_cast<std::size_t>(std::min<std::uint64_t>(left, kStringPiece));
        if (!ReadBytes(piece, portion)) {
            return {};
        }
        bytes.append(piece, portion);
        left -= portion;
    }
    if (unicode) {
        return FromUnitBytes(bytes);
    }
    std::string scratch;
    return std::string(platform::BytesToUtf8(bytes, scratch));
}

void CArchive::ReadObject(std::string_view className, std::uint16_t schema) {
    const std::uint16_t tag = ReadWord();
    if (Failed()) {
        return;
    }
    if (tag == kNewClassTag) {
        const std::uint16_t found = ReadWord();
        const std::uint16_t length = ReadWord();
        char name[kMostClassName];
        if (Failed()) {
            return;
        }
        if (length >= kMostClassName) {
            return Fail(EArchiveError::BadClass);
        }
        if (!ReadBytes(name, length)) {
            return;
        }
        if (std::string_view(name, length) != className) {
            return Fail(EArchiveError::BadClass);
        }
        if (found != schema) {
            return Fail(EArchiveError::BadSchema);
        }
        m_listClasses.push_back(m_nNextIndex++);
    } else {
        std::uint32_t index = tag & ~std::uint32_t{kClassTag};
        bool isClass = (tag & kClassTag) != 0;
        if (tag == kBigObjectTag) {
            const auto big = static_cast<std::uint32_t>(ReadNumber(4));
            if (Failed()) {
                return;
            }
            isClass = (big & kBigClassTag) != 0;
            index = big & ~kBigClassTag;
        }
        // A null object, or one that stands in the file already, is no member of a list that owns its
        // members.
        if (!isClass || !std::ranges::binary_search(m_listClasses, index)) {
            return Fail(EArchiveError::BadFormat);
        }
    }
    ++m_nNextIndex;
}

void CArchive::WriteBytes(std::string_view bytes) {
    if (Failed()) {
        return;
    }
    m_buffer.append(bytes);
    if (m_buffer.size() >= kBufferSize) {
        Flush();
    }
}

bool CArchive::Flush() {
    if (IsStoring() && !Failed() && !m_buffer.empty() && !m_file.Write(m_buffer)) {
        Fail(EArchiveError::WriteFailed);
    }
    m_buffer.clear();
    return !Failed();
}

void CArchive::WriteNumber(std::uint64_t number, int size) {
    char bytes[8];
    for (int n = 0; n < size; ++n) {
        bytes[n] = static_cast<char>(number >> 8 * n);
    }
    WriteBytes({bytes, static_cast<std::size_t>(size)});
}

void CArchive::WriteCount(std::uint64_t count) {
    if (count < 0xFFFF) {
        return WriteNumber(count, 2);
    }
    WriteNumber(0xFFFF, 2);
    if (count < 0xFFFFFFFF) {
        return WriteNumber(count, 4);
    }
    WriteNumber(0xFFFFFFFF, 4);
    WriteNumber(count, 8);
}

void CArchive::WriteStringLength(std::uint64_t units) {
    WriteNumber(0xFF, 1);
    WriteNumber(kUnicodeMark, 2);
    if (units < 255) {
        return WriteNumber(units, 1);
    }
    WriteNumber(0xFF, 1);
    if (units < 0xFFFE) {
        return WriteNumber(units, 2);
    }
    WriteNumber(0xFFFF, 2);
    if (units < 0xFFFFFFFF) {
        return WriteNumber(units, 4);
    }
    WriteNumber(0xFFFFFFFF, 4);
    WriteNumber(units, 8);
}

void CArchive::WriteString(std::string_view text) {
    const std::u16string units = ToUnits(text);
    WriteStringLength(units.size());
    for (const char16_t ch : units) {
        WriteNumber(ch, 2);
    }
}

void CArchive::WriteObject(std::string_view className, std::uint16_t schema) {
    if (m_listClasses.empty()) {
        WriteWord(kNewClassTag);
        WriteWord(schema);
        WriteWord(static_cast<std::uint16_t>(className.size()));
        WriteBytes(className);
        m_listClasses.push_back(m_nNextIndex++);
    } else {
        WriteWord(static_cast<std::uint16_t>(kClassTag | m_listClasses.front()));
    }
    ++m_nNextIndex;
}

} // namespace carvelot
