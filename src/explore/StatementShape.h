// What statements that differ in their values only have in common.
#pragma once

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
    void ReplaceLiterals(std::string_view text);
    void ReplaceNumbers();
    void AddMark();

    std::string m_strBare;      // without literals and runs of white space
    std::string m_strShape;     // of it what has been looked at
    std::size_t m_nListEnd = 0; // in the shape, behind the latest mark or the list that it ended
    bool m_bList = false;
};

} // namespace carvelot
