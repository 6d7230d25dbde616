#include "explore/StrictShape.h"

#include "text/Integers.h"

#include <algorithm>
#include <array>
#include <optional>

namespace carvelot {

namespace {

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}
bool IsWordChar(char c) { return IsLetter(c) || IsDigit(c) || c == '_' || c == '#' || c == '$' || c == '@'; }

std::string UpperCase(std::string_view word) {
    std::string upper(word);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return upper;
}

// Words that stand right ahead of a literal, or right behind one. Whatever else does so is part of a value.
constexpr std::array<std::string_view, 22> kAhead{
    "AND",      "OR",     "BETWEEN", "LIKE", "IN",     "NOT", "THEN", "ELSE", "WHEN", "CASE", "SELECT",
    "DISTINCT", "ESCAPE", "DATE",    "TIME", "VALUES", "N",   "X",    "TS",   "D",    "T",    "TIMESTAMP"};
constexpr std::array<std::string_view, 31> kBehind{
    "AND",   "OR",     "THEN", "ELSE", "WHEN", "END",    "FROM",  "WHERE",  "GROUP",    "ORDER", "HAVING",
    "UNION", "ESCAPE", "AS",   "ASC",  "DESC", "FOR",    "WITH",  "FETCH",  "OPTION",   "LIMIT", "BETWEEN",
    "LIKE",  "IN",     "NOT",  "IS",   "INTO", "OFFSET", "MINUS", "EXCEPT", "INTERSECT"};

template <class Words> bool IsAmong(const Words& words, std::string_view word) {
    return std::find(words.begin(), words.end(), UpperCase(word)) != words.end();
}

// Whether a literal may begin behind this.
bool MayPrecedeLiteral(std::string_view before) {
    const bool isGlued = !before.empty() && !IsSpace(before.back());
    while (!before.empty() && IsSpace(before.back())) {
        before.remove_suffix(1);
    }
    if (before.empty()) {
        return false;
    }
    if (!IsWordChar(before.back())) {
        return std::string_view("(,=<>|+-*/{!").find(before.back()) != std::string_view::npos;
    }
    std::size_t first = before.size();
    while (first != 0 && IsWordChar(before[first - 1])) {
        --first;
    }
    const std::string_view word = before.substr(first);
    return isGlued ? UpperCase(word) == "N" || UpperCase(word) == "X" : IsAmong(kAhead, word);
}

// Whether a literal may end ahead of this.
bool MayFollowLiteral(std::string_view behind) {
    std::size_t first = 0;
    while (first < behind.size() && IsSpace(behind[first])) {
        ++first;
    }
    if (first == behind.size()) {
        return true;
    }
    if (!IsWordChar(behind[first])) {
        return std::string_view("),;=<>|+-*/}!").find(behind[first]) != std::string_view::npos;
    }
    if (first == 0) {
        return false;
    }
    std::size_t end = first;
    while (end < behind.size() && IsWordChar(behind[end])) {
        ++end;
    }
    return IsAmong(kBehind, behind.substr(first, end - first));
}

// Behind the literal at a place; nothing for one without an end.
std::optional<std::size_t> EndOfQuoted(std::string_view text, std::size_t at) {
    const char quote = text[at];
    for (;;) {
        at = text.find(quote, at + 1);
        if (at == std::string_view::npos) {
            return std::nullopt;
        }
        if (at + 1 == text.size() || text[at + 1] != quote) {
            return at + 1;
        }
        ++at;
    }
}

// Appends the statement without what might be a value and is none by its form. False, with the text up to
// there, when it does not keep to the rules.
bool AppendHarmless(std::string_view text, std::string& out) {
    std::size_t at = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (c == '\'') {
            const std::optional<std::size_t> end = EndOfQuoted(text, at);
            if (!end || !MayPrecedeLiteral(text.substr(0, at)) || !MayFollowLiteral(text.substr(*end))) {
                return false;
            }
            out.append("''");
            at = *end;
        } else if (c == '"') {
            const std::optional<std::size_t> end = EndOfQuoted(text, at);
            if (!end) {
                return false;
            }
            out.append("\"?\"");
            at = *end;
        } else if (text.substr(at, 2) == "--") {
            return true;
        } else if (text.substr(at, 2) == "/*") {
            const std::size_t end = text.find("*/", at + 2);
            out.push_back(' ');
            at = end == std::string_view::npos ? text.size() : end + 2;
        } else if (IsDigit(c) || (c == '.' && at + 1 < text.size() && IsDigit(text[at + 1]))) {
            // What begins with a digit is no name, whatever it ends with.
            while (at < text.size() && (IsWordChar(text[at]) || text[at] == '.')) {
                ++at;
            }
            out.push_back('0');
        } else if (IsWordChar(c)) {
            const std::size_t first = at;
            while (at < text.size() && IsWordChar(text[at])) {
                ++at;
            }
            out.append(text.substr(first, at - first));
        } else {
            out.push_back(c);
            ++at;
        }
    }
    return true;
}

} // namespace

std::string_view CStrictShapeText::Of(std::string_view text, std::string_view operation) {
    const std::size_t place = operation.empty() ? 0 : text.find(operation);
    if (place != std::string_view::npos) {
        text.remove_prefix(place);
    }
    m_strHarmless.clear();
    if (!AppendHarmless(text, m_strHarmless)) {
        m_strHarmless.clear();
        AppendHarmless(text.substr(0, text.find_first_of("'\"")), m_strHarmless);
        m_strHarmless.append("'' ...");
    }
    return m_shape.Of(m_strHarmless, {});
}

std::string_view CPreparedStatement::TakeFor(std::string_view statement) {
    const std::string_view prepared = m_text;
    m_text = {};
    // The parts between the marks stand in the statement, the first one at its start and the last at its end.
    std::size_t at = 0;
    std::size_t part = 0;
    bool isFirst = true;
    while (part <= prepared.size()) {
        const std::size_t mark = std::min(prepared.find('?', part), prepared.size());
        const std::string_view between = prepared.substr(part, mark - part);
        if (mark == prepared.size()) {
            const bool fits =
                !isFirst && statement.size() - at >= between.size() && statement.ends_with(between);
            return fits ? prepared : statement;
        }
        const std::size_t found = statement.find(between, at);
        if (found == std::string_view::npos || (isFirst && found != 0)) {
            return statement;
        }
        at = found + between.size();
        isFirst = false;
        part = mark + 1;
        while (part < prepared.size() && IsDigit(prepared[part])) {
            ++part;
        }
    }
    return statement;
}

std::string NameWithoutValues(std::string_view name) {
    std::string out;
    std::size_t at = 0;
    while (at < name.size()) {
        const char c = name[at];
        const char closing = c == '[' ? ']' : c == '\'' || c == '"' ? c : '\0';
        if (closing != '\0') {
            const std::size_t end = name.find(closing, at + 1);
            out.push_back('?');
            at = end == std::string_view::npos ? name.size() : end + 1;
            continue;
        }
        const std::size_t first = at;
        const auto isPart = [](char sign) {
            return IsWordChar(sign) || sign == '.' || sign == '-' || sign == '/' || sign == ':';
        };
        while (at < name.size() && isPart(name[at])) {
            ++at;
        }
        if (at == first) {
            out.push_back(c);
            ++at;
            continue;
        }
        const std::string_view word = name.substr(first, at - first);
        const bool isNumber = std::any_of(word.begin(), word.end(), IsDigit) &&
                              std::none_of(word.begin(), word.end(), IsLetter);
        out.append(isNumber ? "?" : word);
    }
    return out;
}

} // namespace carvelot
