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

std::string ToHex(const std::string& text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char ch : text) {
        hex.push_back(kDigits[static_cast<unsigned char>(ch) >> 4]);
        hex.push_back(kDigits[static_cast<unsigned char>(ch) & 15]);
    }
    return hex.empty() ? "-" : hex;
}

std::string FromHex(const std::string& hex) {
    std::string text;
    for (std::size_t n = 0; hex != "-" && n + 1 < hex.size(); n += 2) {
        text.push_back(static_cast<char>(std::stoi(hex.substr(n, 2), nullptr, 16)));
    }
    return text;
}

int Read(const std::string& path) {
    CCacheDS structure;
    const std::string message = LoadCacheDefinition(path, structure);
    for (const auto& member : structure.m_members) {
        std::cout << member->m_pointer << ' ' << member->m_unsigned << ' ' << member->m_type << ' '
                  << member->m_count << ' ' << member->m_size << ' ' << ToHex(member->m_name) << ' '
                  << ToHex(member->m_typeName) << '\n';
    }
    if (!message.empty()) {
        std::cout << "error " << message << '\n';
    }
    return 0;
}

int Write(const std::string& path) {
    CCacheDS structure;
    for (std::string input; std::getline(std::cin, input);) {
        std::istringstream line(input);
        auto member = std::make_shared<CMember>();
        std::string name;
        std::string typeName;
        line >> member->m_pointer >> member->m_unsigned >> member->m_type >> member->m_count >>
            member->m_size >> name >> typeName;
        if (!line) {
            std::cerr << "no member: " << input << '\n';
            return 1;
        }
        member->m_name = FromHex(name);
        member->m_typeName = FromHex(typeName);
        structure.m_members.push_back(std::move(member));
    }
    const std::string message = SaveCacheDefinition(path, structure);
    std::cerr << message;
    return message.empty() ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count == 3 && std::string(arguments[1]) == "read") {
        return Read(arguments[2]);
    }
    if (count == 3 && std::string(arguments[1]) == "write") {
        return Write(arguments[2]);
    }
    std::cerr << "usage: definition_helper read|write FILE\n";
    return 2;
}
