// The names of frames that no analysis tells.
#pragma once

#include <string>
#include <string_view>

namespace carvelot {

// Of an event: the display name of its start or, where that is empty, the text without its first "Event
// Starts :". In the arguments or in the scratch string.
std::string_view EventName(std::string_view displayName, std::string_view text, std::string& scratch);

// Of a statement: what it does and, where it is known, to which table. In the scratch string.
std::string_view StatementName(std::string_view operationWord, std::string_view table, std::string& scratch);

} // namespace carvelot
