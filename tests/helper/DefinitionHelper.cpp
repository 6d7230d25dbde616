// Definition files for the comparison with the model of their format.
//
//   definition_helper read FILE    prints the members of FILE, one a line, and the message of a bad file at
//   the end definition_helper write FILE   makes FILE of such lines from standard input
//
// A line is "pointer unsigned type count size name typename", the texts as their UTF-8 in hexadecimal digits
// ("-" when empty).
#include "cachebrowser/CacheDefinition.h"

#include <iostream>
#include <sstream>

using namespace carvelot;

namespace {

std::string ToHex(const std::string& strText) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string strHex;
    for (const char ch : strText) {
        strHex.push_back(kDigits[static_cast<unsigned char>(ch) >> 4]);
        strHex.push_back(kDigits[static_cast<unsigned char>(ch) & 15]);
    }
    return strHex.empty() ? "-" : strHex;
}

std::string FromHex(const std::string& strHex) {
    std::string strText;
    for (std::size_t n = 0; strHex != "-" && n + 1 < strHex.size(); n += 2)
        strText.push_back(static_cast<char>(std::stoi(strHex.substr(n, 2), nullptr, 16)));
    return strText;
}

int Read(const std::string& strPath) {
    CCacheDS structure;
    const std::string strMessage = LoadCacheDefinition(strPath, structure);
    for (const auto& pMember : structure.m_members)
        std::cout << pMember->m_pointer << ' ' << pMember->m_unsigned << ' ' << pMember->m_type << ' '
                  << pMember->m_count << ' ' << pMember->m_size << ' ' << ToHex(pMember->m_name) << ' '
                  << ToHex(pMember->m_typeName) << '\n';
    if (!strMessage.empty())
        std::cout << "error " << strMessage << '\n';
    return 0;
}

int Write(const std::string& strPath) {
    CCacheDS structure;
    for (std::string strLine; std::getline(std::cin, strLine);) {
        std::istringstream line(strLine);
        auto pMember = std::make_shared<CMember>();
        std::string strName;
        std::string strTypeName;
        line >> pMember->m_pointer >> pMember->m_unsigned >> pMember->m_type >> pMember->m_count >>
            pMember->m_size >> strName >> strTypeName;
        if (!line) {
            std::cerr << "no member: " << strLine << '\n';
            return 1;
        }
        pMember->m_name = FromHex(strName);
        pMember->m_typeName = FromHex(strTypeName);
        structure.m_members.push_back(std::move(pMember));
    }
    const std::string strMessage = SaveCacheDefinition(strPath, structure);
    std::cerr << strMessage;
    return strMessage.empty() ? 0 : 1;
}

} // namespace

int main(int nArguments, char** pArguments) {
    if (nArguments == 3 && std::string(pArguments[1]) == "read")
        return Read(pArguments[2]);
    if (nArguments == 3 && std::string(pArguments[1]) == "write")
        return Write(pArguments[2]);
    std::cerr << "usage: definition_helper read|write FILE\n";
    return 2;
}
