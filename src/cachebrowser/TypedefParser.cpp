#include "cachebrowser/CacheDS.h"
#include "text/Integers.h"

#include <algorithm>

namespace carvelot {

namespace {

constexpr std::int32_t kPointerSize = 4; // in 64-bit programs too: it decides where later members start

struct CTypeWord {
    std::string_view m_strWord;
    EMemberType m_type;
    std::int32_t m_size;
};

constexpr CTypeWord kTypeWords[] = {
    {"int", MEMBER_INT, 4},         {"long", MEMBER_LONG, 4},
    {"ID", MEMBER_LONG, 4},         {"short", MEMBER_SHORT, 2},
    {"VOID", MEMBER_VOID, 8},       {"char", MEMBER_CHAR, 1},
    {"JCHAR", MEMBER_JCHAR, 2},     {"MATH_NUMERIC", MEMBER_MATH_NUMERIC, 50},
    {"JDEDATE", MEMBER_JDEDATE, 6}, {"bool", MEMBER_BOOL, 4},
    {"BOOL", MEMBER_BOOL, 4},
};

// Cuts each comment out and looks again from the start of the text, so what a cut joins can be a comment too.
// The end of "/*" may be the start of "*/". One that never ends goes to the end of the text.
void RemoveComments(std::string& text) {
    std::size_t kept = 0;
    for (std::size_t n = 0; n < text.size();) {
        if (text[n] == '*' && kept != 0 && text[kept - 1] == '/') {
            --kept;
            const std::size_t end = text.find("*/", n);
            if (end == std::string::npos) {
                break;
            }
            n = end + 2;
        } else {
            text[kept++] = text[n++];
        }
    }
    text.resize(kept);
}

// The next token at or after at, empty at the end of the text. Delimiters in a row count as one.
std::string_view NextToken(std::string_view text, char delimiter, std::size_t& at) {
    const std::size_t start = text.find_first_not_of(delimiter, at);
    if (start == std::string_view::npos) {
        at = text.size();
        return {};
    }
    at = std::min(text.find(delimiter, start), text.size());
    return text.substr(start, at - start);
}

} // namespace

std::shared_ptr<CMember> CCacheDS::CreateMember(std::string word, std::string_view previousWord) {
    const bool pointer = std::erase(word, '*') != 0;
    const auto* const type = std::ranges::find(kTypeWords, word, &CTypeWord::m_strWord);
    if (type == std::end(kTypeWords)) {
        return nullptr;
    }
    auto member = std::make_shared<CMember>(this);
    member->m_type = type->m_type;
    member->m_size = pointer ? kPointerSize : type->m_size;
    member->m_unsigned = previousWord == "unsigned" || word == "ID";
    member->m_pointer = pointer;
    member->m_typeName = std::move(word);
    return member;
}

void CCacheDS::SetMemberName(CMember& member, std::string_view word) {
    const std::size_t open = word.find('[');
    member.m_name = word.substr(0, open);
    if (open == std::string_view::npos) {
        return;
    }
    const std::size_t close = word.find(']', open);
    if (close == std::string_view::npos) {
        return;
    }
    if (const std::int32_t count = ReadInteger(word.substr(open + 1, close - open - 1)); count != 0) {
        member.m_count = count;
    }
}

bool CCacheDS::ParseTypedef(std::string& text) {
    Clear();
    RemoveComments(text);
    std::ranges::replace_if(
        text, [](char ch) { return ch == '\n' || ch == '\r' || ch == '\t'; }, ' ');
    std::size_t statementStart = 0;
    for (std::string_view statement = NextToken(text, ';', statementStart); !statement.empty();
         statement = NextToken(text, ';', statementStart)) {
        std::shared_ptr<CMember> pending;
        std::string_view previousWord;
        std::size_t wordStart = 0;
        for (std::string_view word = NextToken(statement, ' ', wordStart); !word.empty();
             word = NextToken(statement, ' ', wordStart)) {
            if (pending != nullptr && word.find('*') != std::string_view::npos) {
                // "char *p": the name that stands behind the star is lost, and the member with it.
                pending->m_pointer = true;
                pending->m_size = kPointerSize;
            } else if (pending != nullptr) {
                SetMemberName(*pending, word);
                m_members.push_back(std::move(pending));
                pending.reset();
            } else {
                pending = CreateMember(std::string(word), previousWord);
                previousWord = word;
            }
        }
    }
    return false;
}

} // namespace carvelot
