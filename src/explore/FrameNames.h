// The names of frames that no analysis tells.
#pragma once

#include "records/DetailList.h"

#include <string>
#include <string_view>

namespace carvelot {

// Of an event: the display name of its start or, where that is empty, the text without its first "Event
// Starts :". In the arguments or in the scratch string.
std::string_view EventName(std::string_view displayName, std::string_view text, std::string& scratch);

// The word that makes a record's text a SQL statement; the text is looked at only where the record does not
// tell.
std::string_view OperationWordOf(const CDetailList& details, RecordIndex record);

// Of a statement: what it does and, where it is known, to which table. In the scratch string.
std::string_view StatementName(std::string_view operationWord, std::string_view table, std::string& scratch);

} // namespace carvelot
