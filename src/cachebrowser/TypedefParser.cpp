#include "cachebrowser/CacheDS.h"
#include "text/Numbers.h"

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
void RemoveComments(std::string& strText) {
    std::size_t nKept = 0;
    for (std::size_t n = 0; n < strText.size();) {
        if (strText[n] == '*' && nKept != 0 && strText[nKept - 1] == '/') {
            --nKept;
            const std::size_t nEnd = strText.find("*/", n);
            if (nEnd == std::string::npos)
                break;
            n = nEnd + 2;
        } else {
            strText[nKept++] = strText[n++];
        }
    }
    strText.resize(nKept);
}

// The next token at or after nAt, empty at the end of the text. Delimiters in a row count as one.
std::string_view NextToken(std::string_view strText, char chDelimiter, std::size_t& nAt) {
    const std::size_t nStart = strText.find_first_not_of(chDelimiter, nAt);
    if (nStart == std::string_view::npos) {
        nAt = strText.size();
        return {};
    }
    nAt = std::min(strText.find(chDelimiter, nStart), strText.size());
    return strText.substr(nStart, nAt - nStart);
}

} // namespace

std::shared_ptr<CMember> CCacheDS::CreateMember(std::string strWord, std::string_view strPreviousWord) {
    const bool bPointer = std::erase(strWord, '*') != 0;
    const auto* const pType = std::ranges::find(kTypeWords, strWord, &CTypeWord::m_strWord);
    if (pType == std::end(kTypeWords))
        return nullptr;
    auto pMember = std::make_shared<CMember>(this);
    pMember->m_type = pType->m_type;
    pMember->m_size = bPointer ? kPointerSize : pType->m_size;
    pMember->m_unsigned = strPreviousWord == "unsigned" || strWord == "ID";
    pMember->m_pointer = bPointer;
    pMember->m_typeName = std::move(strWord);
    return pMember;
}

void CCacheDS::SetMemberName(CMember& member, std::string_view strWord) {
    const std::size_t nOpen = strWord.find('[');
    member.m_name = strWord.substr(0, nOpen);
    if (nOpen == std::string_view::npos)
        return;
    const std::size_t nClose = strWord.find(']', nOpen);
    if (nClose == std::string_view::npos)
        return;
    if (const std::int32_t nCount = ReadInteger(strWord.substr(nOpen + 1, nClose - nOpen - 1)); nCount != 0)
        member.m_count = nCount;
}

bool CCacheDS::ParseTypedef(std::string& strText) {
    Clear();
    RemoveComments(strText);
    std::ranges::replace_if(
        strText, [](char ch) { return ch == '\n' || ch == '\r' || ch == '\t'; }, ' ');
    std::size_t nStatement = 0;
    for (std::string_view strStatement = NextToken(strText, ';', nStatement); !strStatement.empty();
         strStatement = NextToken(strText, ';', nStatement)) {
        std::shared_ptr<CMember> pPending;
        std::string_view strPreviousWord;
        std::size_t nWord = 0;
        for (std::string_view strWord = NextToken(strStatement, ' ', nWord); !strWord.empty();
             strWord = NextToken(strStatement, ' ', nWord)) {
            if (pPending != nullptr && strWord.find('*') != std::string_view::npos) {
                // "char *p": the name that stands behind the star is lost, and the member with it.
                pPending->m_pointer = true;
                pPending->m_size = kPointerSize;
            } else if (pPending != nullptr) {
                SetMemberName(*pPending, strWord);
                m_members.push_back(std::move(pPending));
                pPending.reset();
            } else {
                pPending = CreateMember(std::string(strWord), strPreviousWord);
                strPreviousWord = strWord;
            }
        }
    }
    return false;
}

} // namespace carvelot
