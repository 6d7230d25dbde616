#include "platform/ProfileFile.h"
#include "platform/AtomicFile.h"
#include "platform/CodePage.h"
#include "platform/SharedFile.h"
#include "platform/posix/ConfigFolder.h"
#include "platform/posix/FoldedText.h"
#include "platform/posix/FolderLock.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <optional>

namespace carvelot::platform {

namespace {

enum class Encoding { Bytes, Utf8Mark, Utf16Little, Utf16Big };

constexpr char kEndMark = 0x1A; // the end-of-file mark of DOS

// What the profile calls take for blank: the end-of-file mark too.
bool IsBlank(char character) {
    return (character >= 0x09 && character <= 0x0D) || character == kEndMark || character == ' ';
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

char LowerAscii(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// Names of sections and keys fold no letters but those of ASCII, as under Wine, whose calls ours answer like.
bool SameName(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return LowerAscii(left) == LowerAscii(right); });
}

void AppendCharacter(std::string& text, char32_t character) {
    if (character < 0x80) {
        text.push_back(static_cast<char>(character));
        return;
    }
    if (character < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (character >> 6)));
    } else {
        if (character < 0x10000) {
            text.push_back(static_cast<char>(0xE0 | (character >> 12)));
        } else {
            text.push_back(static_cast<char>(0xF0 | (character >> 18)));
            text.push_back(static_cast<char>(0x80 | ((character >> 12) & 0x3F)));
        }
        text.push_back(static_cast<char>(0x80 | ((character >> 6) & 0x3F)));
    }
    text.push_back(static_cast<char>(0x80 | (character & 0x3F)));
}

char16_t Unit(std::string_view bytes, std::size_t at, bool big) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char16_t>(big ? (first << 8) | second : (second << 8) | first);
}

std::string DecodeUtf16(std::string_view bytes, bool big) {
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t character = Unit(bytes, at, big);
        if (character >= 0xD800 && character <= 0xDFFF) {
            const char32_t low = at + 3 < bytes.size() ? Unit(bytes, at + 2, big) : 0u;
            if (character < 0xDC00 && low >= 0xDC00 && low <= 0xDFFF) {
                character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            } else {
                character = 0xFFFD;
            }
        }
        AppendCharacter(text, character);
    }
    return text;
}

std::string EncodeUtf16(std::string_view text, bool big) {
    std::string bytes;
    const auto append = [&](char32_t unit) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes.push_back(big ? high : low);
        bytes.push_back(big ? low : high);
    };
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (character < 0x10000) {
            append(character);
        } else {
            append(0xD800 + ((character - 0x10000) >> 10));
            append(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    return bytes;
}

// At most `units` UTF-16 units of a text, and no half of a character.
std::string_view CutToUnits(std::string_view text, std::size_t units) {
    std::string_view rest = text;
    while (!rest.empty()) {
        std::string_view next = rest;
        const std::size_t width = TakeCharacter(next) < 0x10000 ? 1u : 2u;
        if (width > units) {
            break;
        }
        units -= width;
        rest = next;
    }
    return text.substr(0, text.size() - rest.size());
}

std::size_t CountUnits(std::string_view text) {
    std::size_t units = 0;
    while (!text.empty()) {
        units += TakeCharacter(text) < 0x10000 ? 1u : 2u;
    }
    return units;
}

// One line of a file, with the places of its parts in the file's bytes.
struct Line {
    enum class Kind { Blank, Section, Key };

    Kind m_kind = Kind::Blank;
    std::string m_strName;  // of the section or the key
    std::string m_strValue; // of a key
    bool m_bHasValue = false;
    bool m_bEndMark = false; // begins with the end-of-file mark of DOS
    std::size_t m_nBegin = 0;
    std::size_t m_nEnd = 0;  // behind the text, before the line's end
    std::size_t m_nNext = 0; // behind the line's end
};

class ProfileText {
public:
    explicit ProfileText(std::string bytes) : m_strBytes(std::move(bytes)) {
        std::size_t at = 0;
        if (m_strBytes.starts_with("\xFF\xFE")) {
            m_encoding = Encoding::Utf16Little;
            at = 2;
        } else if (m_strBytes.starts_with("\xFE\xFF")) {
            m_encoding = Encoding::Utf16Big;
            at = 2;
        } else if (m_strBytes.starts_with("\xEF\xBB\xBF")) {
            m_encoding = Encoding::Utf8Mark;
            at = 3;
        }
        // Half a unit at the end is no text: it stays at the end, whatever is written.
        if (Width() == 2 && m_strBytes.size() % 2 != 0) {
            m_strHalfUnit = m_strBytes.back();
            m_strBytes.pop_back();
        }
        while (at < m_strBytes.size()) {
            at = AddLine(at);
        }
    }

    const std::vector<Line>& Lines() const { return m_listLines; }
    std::string Bytes() const { return m_strBytes + m_strHalfUnit; }

    // The line of a section's header: the first of that name.
    std::optional<std::size_t> FindSection(std::string_view name) const {
        for (std::size_t index = 0; index < m_listLines.size(); ++index) {
            if (m_listLines[index].m_kind == Line::Kind::Section &&
                SameName(m_listLines[index].m_strName, name)) {
                return index;
            }
        }
        return std::nullopt;
    }

    // The line of the first key of that name below a section's header.
    std::optional<std::size_t> FindKey(std::size_t section, std::string_view name) const {
        for (std::size_t index = section + 1; index < SectionEnd(section); ++index) {
            if (m_listLines[index].m_kind == Line::Kind::Key &&
                SameName(m_listLines[index].m_strName, name)) {
                return index;
            }
        }
        return std::nullopt;
    }

    std::string With(std::string_view section, std::string_view key, std::string_view value) const {
        return Changed(section, key, value) + m_strHalfUnit;
    }

private:
    std::string Changed(std::string_view section, std::string_view key, std::string_view value) const {
        const auto header = FindSection(section);
        std::string added;
        if (!header) {
            const std::size_t end = EndMark();
            if (end == m_listLines.size() && !m_listLines.empty() && HasNoEnd(m_listLines.back())) {
                added += LineEnd();
            }
            added.append("[").append(section).append("]").append(LineEnd());
            added.append(key).append("=").append(value).append(LineEnd());
            return Inserted(end < m_listLines.size() ? m_listLines[end].m_nBegin : m_strBytes.size(), added);
        }
        if (const auto found = FindKey(*header, key)) {
            return WithValue(m_listLines[*found], value);
        }
        // Behind the section's last line that holds anything, but ahead of an end-of-file mark.
        std::size_t last = SectionEnd(*header) - 1;
        if (const std::size_t end = EndMark(); *header < end && end <= last) {
            last = end - 1;
        }
        while (m_listLines[last].m_kind == Line::Kind::Blank) {
            --last;
        }
        const Line& line = m_listLines[last];
        if (HasNoEnd(line)) {
            added += LineEnd();
        }
        added.append(key).append("=").append(value);
        if (!HasNoEnd(line)) {
            added += LineEnd();
        }
        return Inserted(line.m_nNext, added);
    }

    std::string Inserted(std::size_t at, std::string_view text) const {
        return std::string(m_strBytes).insert(at, Encode(text));
    }

    static bool HasNoEnd(const Line& line) { return line.m_nEnd == line.m_nNext; }

    // The first line that begins with an end-of-file mark: what stands from there on is not for readers that
    // know the mark, and stays where it is.
    std::size_t EndMark() const {
        const auto found = std::ranges::find_if(m_listLines, &Line::m_bEndMark);
        return static_cast<std::size_t>(found - m_listLines.begin());
    }

    std::size_t Width() const {
        return m_encoding == Encoding::Utf16Little || m_encoding == Encoding::Utf16Big ? 2 : 1;
    }

    bool IsCharacter(std::size_t at, char character) const {
        if (Width() == 1) {
            return m_strBytes[at] == character;
        }
        return at + 1 < m_strBytes.size() &&
               Unit(m_strBytes, at, m_encoding == Encoding::Utf16Big) == static_cast<char16_t>(character);
    }

    std::string Decode(std::size_t begin, std::size_t end) const {
        const std::string_view bytes = std::string_view(m_strBytes).substr(begin, end - begin);
        if (Width() == 2) {
            return DecodeUtf16(bytes, m_encoding == Encoding::Utf16Big);
        }
        std::string scratch;
        return std::string(BytesToUtf8(bytes, scratch));
    }

    std::string Encode(std::string_view text) const {
        return Width() == 2 ? EncodeUtf16(text, m_encoding == Encoding::Utf16Big) : Utf8ToBytes(text);
    }

    std::size_t AddLine(std::size_t begin) {
        const std::size_t width = Width();
        Line line;
        line.m_nBegin = begin;
        line.m_nEnd = begin;
        // A carriage return alone ends a line too.
        while (line.m_nEnd < m_strBytes.size() && !IsCharacter(line.m_nEnd, '\n') &&
               !IsCharacter(line.m_nEnd, '\r')) {
            line.m_nEnd += width;
        }
        line.m_nEnd = std::min(line.m_nEnd, m_strBytes.size());
        line.m_nNext = std::min(line.m_nEnd + width, m_strBytes.size());
        if (line.m_nNext < m_strBytes.size() && IsCharacter(line.m_nEnd, '\r') &&
            IsCharacter(line.m_nNext, '\n')) {
            line.m_nNext = std::min(line.m_nNext + width, m_strBytes.size());
        }
        const std::string decoded = Decode(begin, line.m_nEnd);
        line.m_bEndMark = decoded.starts_with(kEndMark);
        Parse(line, Trim(decoded));
        m_listLines.push_back(std::move(line));
        return m_listLines.back().m_nNext;
    }

    // The calls hold names and values as texts that end at a NUL.
    static std::string Part(std::string_view text) { return std::string(text.substr(0, text.find('\0'))); }

    static void Parse(Line& line, std::string_view text) {
        if (text.empty()) {
            return;
        }
        const std::size_t bracket = text.rfind(']');
        if (text.front() == '[' && bracket != std::string_view::npos) {
            line.m_kind = Line::Kind::Section;
            line.m_strName = Part(Trim(text.substr(1, bracket - 1)));
            return;
        }
        line.m_kind = Line::Kind::Key;
        const std::size_t equals = text.find('=');
        line.m_strName = Part(Trim(text.substr(0, equals)));
        line.m_bHasValue = equals != std::string_view::npos;
        if (line.m_bHasValue) {
            line.m_strValue = Part(Trim(text.substr(equals + 1)));
        }
    }

    std::size_t SectionEnd(std::size_t section) const {
        std::size_t end = section + 1;
        while (end < m_listLines.size() && m_listLines[end].m_kind != Line::Kind::Section) {
            ++end;
        }
        return end;
    }

    // The end that most of the file's lines have; of several the one that comes first.
    std::string LineEnd() const {
        std::vector<std::pair<std::string, std::size_t>> counts;
        for (const Line& line : m_listLines) {
            if (HasNoEnd(line)) {
                continue;
            }
            const std::string end = Decode(line.m_nEnd, line.m_nNext);
            const auto found = std::ranges::find(counts, end, &std::pair<std::string, std::size_t>::first);
            if (found == counts.end()) {
                counts.emplace_back(end, 1);
            } else {
                ++found->second;
            }
        }
        const auto most = std::ranges::max_element(counts, {}, &std::pair<std::string, std::size_t>::second);
        return most == counts.end() ? "\n" : most->first;
    }

    std::string WithValue(const Line& line, std::string_view value) const {
        std::string before = Decode(line.m_nBegin, line.m_nEnd);
        std::string kept;
        const std::size_t equals = before.find('=');
        if (equals == std::string::npos) {
            before.append("=");
        } else {
            std::size_t from = equals + 1;
            while (from < before.size() && (before[from] == ' ' || before[from] == '\t')) {
                ++from;
            }
            // Blanks behind the value go with it; what an end-of-file mark among them begins does not.
            const std::size_t blanks =
                static_cast<std::size_t>(Trim(before).data() - before.data()) + Trim(before).size();
            kept = before.substr(std::min(before.find(kEndMark, std::max(from, blanks)), before.size()));
            before.resize(from);
        }
        return m_strBytes.substr(0, line.m_nBegin) + Encode(before.append(value).append(kept)) +
               m_strBytes.substr(line.m_nEnd);
    }

    std::string m_strBytes;
    std::string m_strHalfUnit; // the odd last byte of a UTF-16 file
    Encoding m_encoding = Encoding::Bytes;
    std::vector<Line> m_listLines;
};

// Where a file lies. A bare name is looked for whatever its case; nothing where it can't be looked for.
std::optional<std::string> ProfilePath(const std::string& file) {
    if (file.find('/') != std::string::npos) {
        return file;
    }
    const char* const set = std::getenv("CARVELOT_PROFILE_DIR");
    const std::string folder = set != nullptr && *set != '\0' ? set : ConfigFolder();
    std::string exact = folder + "/" + file;
    if (SharedFile::OpenForReading(exact)) {
        return exact;
    }
    std::vector<std::string> found;
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
    if (open == nullptr) {
        return errno == ENOENT || errno == ENOTDIR ? std::optional(exact) : std::nullopt;
    }
    for (;;) {
        errno = 0; // which alone tells a list's end from one that breaks off
        const dirent* const entry = ::readdir(open.get());
        if (entry == nullptr) {
            break;
        }
        const std::string_view name = entry->d_name;
        if (FoldedText(name) == FoldedText(file)) {
            found.emplace_back(name);
        }
    }
    if (errno != 0) {
        return std::nullopt;
    }
    return found.empty() ? exact : folder + "/" + *std::min_element(found.begin(), found.end());
}

// No settings file comes near this size; one that says so is no settings file, or has a hole in it.
constexpr std::uint64_t kMostBytes = std::uint64_t{16} << 20;

// The bytes of a file; false if it is there but can't be read, or not all of it.
bool ReadBytes(const std::string& path, std::string& bytes) {
    int error = 0;
    SharedFile file = SharedFile::OpenForReading(path, &error);
    if (!file) {
        return error == ENOENT;
    }
    if (file.Size() > kMostBytes) {
        return false;
    }
    constexpr std::size_t kBlock = std::size_t{1} << 16;
    for (std::size_t count = kBlock; count == kBlock;) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kBlock);
        count = file.Read(bytes.data() + size, kBlock, &error);
        bytes.resize(size + count);
    }
    return error == 0;
}

ProfileText Load(const std::string& file) {
    std::string bytes;
    if (const std::optional<std::string> path = ProfilePath(file); !path || !ReadBytes(*path, bytes)) {
        bytes.clear();
    }
    return ProfileText(std::move(bytes));
}

// What fits into a buffer, without the pair of quotes around it. The call takes the first quote off, cuts,
// and then takes off the last character if it believes that to be the other quote: a text within quotes that
// just fills the buffer loses its last character.
std::string_view CutToBuffer(std::string_view value, std::size_t bufferUnits) {
    const std::size_t most = bufferUnits == 0 ? 0 : bufferUnits - 1;
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
    if (!quoted) {
        return CutToUnits(value, most);
    }
    value.remove_prefix(1);
    const bool fits = CountUnits(value) <= bufferUnits;
    value = CutToUnits(value, most);
    return fits && !value.empty() ? CutToUnits(value, CountUnits(value) - 1) : value;
}

} // namespace

std::string ReadProfileText(std::string_view section, std::string_view key, std::string_view defaultValue,
                            std::size_t bufferUnits, const std::string& file) {
    while (!defaultValue.empty() && defaultValue.back() == ' ') {
        defaultValue.remove_suffix(1);
    }
    std::string_view value = defaultValue;
    const ProfileText text = Load(file);
    const std::string_view name = Trim(section);
    if (const auto header = name.empty() ? std::nullopt : text.FindSection(name)) {
        const auto found = text.FindKey(*header, Trim(key));
        if (found && text.Lines()[*found].m_bHasValue) {
            value = text.Lines()[*found].m_strValue;
        }
    }
    return std::string(CutToBuffer(value, bufferUnits));
}

std::int32_t ReadProfileInt(std::string_view section, std::string_view key, std::int32_t defaultValue,
                            const std::string& file) {
    // The call's own buffer holds 30 units.
    const std::string text = ReadProfileText(section, key, "", 30, file);
    if (text.empty()) {
        return defaultValue;
    }
    std::string_view rest = text;
    while (!rest.empty() && static_cast<unsigned char>(rest.front()) <= ' ') {
        rest.remove_prefix(1);
    }
    const bool negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) {
        rest.remove_prefix(1);
    }
    std::uint32_t base = 10;
    for (const auto& [prefix, prefixBase] :
         {std::pair{"0x", 16u}, std::pair{"0o", 8u}, std::pair{"0b", 2u}}) {
        if (rest.starts_with(prefix)) {
            base = prefixBase;
            rest.remove_prefix(2);
            break;
        }
    }
    std::uint32_t number = 0;
    for (const char character : rest) {
        std::uint32_t digit = 36;
        if (character >= '0' && character <= '9') {
            digit = static_cast<std::uint32_t>(character - '0');
        } else if (character >= 'A' && character <= 'Z') {
            digit = static_cast<std::uint32_t>(character - 'A') + 10;
        } else if (character >= 'a' && character <= 'z') {
            digit = static_cast<std::uint32_t>(character - 'a') + 10;
        }
        if (digit >= base) {
            break;
        }
        // What overflows wraps, as the call lets it.
        number = number * base + digit;
    }
    return static_cast<std::int32_t>(negative ? 0 - number : number);
}

std::vector<std::string> ReadProfileSections(std::size_t bufferUnits, const std::string& file) {
    std::vector<std::string> names;
    std::size_t left = bufferUnits == 0 ? 0 : bufferUnits - 1;
    const ProfileText text = Load(file);
    for (const Line& line : text.Lines()) {
        if (line.m_kind != Line::Kind::Section || line.m_strName.empty()) {
            continue;
        }
        const std::size_t needed = CountUnits(line.m_strName) + 1;
        if (needed > left) {
            // The name is cut, and the row ends with it.
            if (left > 1) {
                names.emplace_back(CutToUnits(line.m_strName, left - 1));
            }
            break;
        }
        names.push_back(line.m_strName);
        left -= needed;
    }
    if (names.empty()) {
        names.emplace_back();
    }
    return names;
}

bool WriteProfileText(std::string_view section, std::string_view key, std::string_view value,
                      const std::string& file) {
    const std::optional<std::string> found = ProfilePath(file);
    if (!found) {
        return false;
    }
    const std::string& path = *found;
    const FolderLock lock(path.substr(0, path.rfind('/')));
    std::string bytes;
    if (!ReadBytes(path, bytes)) {
        return false;
    }
    const ProfileText text(std::move(bytes));
    const std::string changed = text.With(Trim(section), Trim(key), value);
    if (changed == text.Bytes()) {
        return true;
    }
    if (file.find('/') == std::string::npos && !MakeFolders(path.substr(0, path.rfind('/')))) {
        return false;
    }
    AtomicFile out = AtomicFile::Create(path);
    out.Write(changed);
    return out.Commit();
}

} // namespace carvelot::platform
