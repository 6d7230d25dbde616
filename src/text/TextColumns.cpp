#include "text/TextColumns.h"

namespace carvelot {

namespace {

// Bytes of the character that starts with this byte. Texts in the core are UTF-8, so nothing else is met but
// lone surrogates, which have three bytes; stray bytes count as one.
std::size_t SequenceLength(unsigned char lead) {
    return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

struct CodePoint {
    char32_t value;
    std::size_t length;
};

CodePoint Decode(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = SequenceLength(lead);
    if (length == 1 || at + length > text.size()) {
        return {0xFFFD, 1};
    }
    char32_t value = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0U) != 0x80U) {
            return {0xFFFD, 1};
        }
        value = (value << 6U) | (byte(at + i) & 0x3FU);
    }
    return {value, length};
}

constexpr char32_t HighSurrogate(char32_t c) { return 0xD800 + ((c - 0x10000) >> 10U); }

constexpr char32_t LowSurrogate(char32_t c) { return 0xDC00 + ((c - 0x10000) & 0x3FFU); }

} // namespace

void AppendCodePoint(std::string& text, char32_t c) {
    const auto put = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0U | (c >> 6U));
        put(0x80U | (c & 0x3FU));
    } else if (c < 0x10000) {
        put(0xE0U | (c >> 12U));
        put(0x80U | ((c >> 6U) & 0x3FU));
        put(0x80U | (c & 0x3FU));
    } else {
        put(0xF0U | (c >> 18U));
        put(0x80U | ((c >> 12U) & 0x3FU));
        put(0x80U | ((c >> 6U) & 0x3FU));
        put(0x80U | (c & 0x3FU));
    }
}

char32_t TakeCodePoint(std::string_view& text) {
    const CodePoint c = Decode(text, 0);
    text.remove_prefix(c.length);
    return c.value;
}

std::string_view FromColumnOfAny(std::string_view text, std::size_t column, std::string& scratch) {
    std::size_t at = 0;
    while (column > 0 && at < text.size()) {
        const std::size_t length = SequenceLength(static_cast<unsigned char>(text[at]));
        if (length == 4) {
            if (column == 1) {
                const char32_t low = LowSurrogate(Decode(text, at).value);
                const std::string_view rest = text.substr(at + 4);
                std::string cut;
                AppendCodePoint(cut, low);
                cut.append(rest);
                scratch = std::move(cut);
                return scratch;
            }
            column -= 2;
        } else {
            --column;
        }
        at += length;
    }
    return at < text.size() ? text.substr(at) : std::string_view{};
}

std::string_view WithoutLastUnit(std::string_view text, std::string& scratch) {
    if (text.empty()) {
        return text;
    }
    std::size_t at = text.size() - 1;
    while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U) {
        --at;
    }
    if (text.size() - at < 4) {
        return text.substr(0, at);
    }
    const char32_t high = HighSurrogate(Decode(text, at).value);
    std::string cut(text.substr(0, at));
    AppendCodePoint(cut, high);
    scratch = std::move(cut);
    return scratch;
}

std::size_t ColumnOf(std::string_view text, std::size_t position) {
    return UnitCount(text.substr(0, position));
}

char AsciiAtColumn(std::string_view text, std::size_t column) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto lead = static_cast<unsigned char>(text[at]);
        if (column == 0) {
            return lead < 0x80 ? text[at] : '\0';
        }
        const std::size_t length = SequenceLength(lead);
        if (length == 4 && column == 1) {
            return '\0';
        }
        column -= length == 4 ? 2 : 1;
        at += length;
    }
    return '\0';
}

std::size_t UnitCount(std::string_view text) {
    std::size_t units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        units += (byte & 0xC0U) != 0x80U ? 1 : 0;
        units += byte >= 0xF0U ? 1 : 0;
    }
    return units;
}

std::string WithReplacements(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        char32_t c = TakeCodePoint(text);
        if ((c >= 0xD800 && c < 0xE000) || c > 0x10FFFF) {
            c = 0xFFFD;
        }
        AppendCodePoint(out, c);
    }
    return out;
}

} // namespace carvelot
