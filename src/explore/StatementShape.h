// What statements that differ in their values only have in common.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace carvelot {

// A statement with "?" in place of each literal and number, lists of them as "?, ...", white space as single
// blanks, and nothing ahead of its operation word.
std::string ShapeOf(std::string_view text, std::string_view operation);

// The same for many statements, whose room it keeps.
class CShapeText {
public:
    // Valid until the next call.
    std::string_view Of(std::string_view text, std::string_view operation);

private:
    std::size_t TakeValue(std::string_view text, std::size_t at, char*& out);
    char* AddMark(char* end);

    std::unique_ptr<char[]> m_shape;
    std::size_t m_nRoom = 0;
    char* m_pListEnd = nullptr; // behind the latest mark or the list that it ended
    bool m_bList = false;
};

} // namespace carvelot
