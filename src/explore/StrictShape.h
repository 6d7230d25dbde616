// The shape of a statement for readers who must see no value of it. A shape shows whatever is no literal by
// the rules of SQL; a log's statements do not always keep to them: a value with a quote in it, or one that
// was filled in without quotes.
#pragma once

#include "explore/StatementShape.h"

#include <string>
#include <string_view>

namespace carvelot {

// The shape of a statement that keeps to the rules is the plain one. Of any other it is that of what stands
// ahead of the first quote, and "...". Comments and what stands in double quotes are left out.
class CStrictShapeText {
public:
    // Valid until the next call.
    std::string_view Of(std::string_view text, std::string_view operation);

private:
    CShapeText m_shape;
    std::string m_strHarmless;
};

// A statement of the web tier as it was prepared: its values are marks.
class CPreparedStatement {
public:
    // `text` must live as long as it is compared with.
    void Prepare(std::string_view text) { m_text = text; }
    // The prepared text of a statement that was made from it by filling in values, once; else the statement.
    std::string_view TakeFor(std::string_view statement);

private:
    std::string_view m_text;
};

// A name (of a function, an event, a cache, a user) with "?" for each number and for whatever stands in
// quotes or brackets.
std::string NameWithoutValues(std::string_view name);

} // namespace carvelot
