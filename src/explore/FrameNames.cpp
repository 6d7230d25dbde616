#include "explore/FrameNames.h"

#include "parse/Classifier.h"
#include "text/ByteScan.h"
#include "text/TextColumns.h"

namespace carvelot {

std::string_view EventName(std::string_view displayName, std::string_view text, std::string& scratch) {
    constexpr std::string_view phrase = "Event Starts :";
    if (!displayName.empty()) {
        return displayName;
    }
    const std::size_t place = FindWord(text, phrase);
    if (place == std::string_view::npos) {
        return text;
    }
    const std::string_view ahead = TrimRight(text.substr(0, place), " ,");
    const std::string_view behind = TrimLeft(text.substr(place + phrase.size()), " ");
    if (ahead.empty() || behind.empty()) {
        return ahead.empty() ? behind : ahead;
    }
    return scratch.assign(ahead).append(1, ' ').append(behind);
}

std::string_view OperationWordOf(const CDetailList& details, RecordIndex record) {
    switch (details.Operation(record)) {
    case SQL_SELECT:
        return "SELECT";
    case SQL_UPDATE:
        return "UPDATE";
    case SQL_INSERT:
        return "INSERT";
    case SQL_DELETE:
        return "DELETE";
    case SQL_NONE:
        break;
    }
    return FindOperationWord(details.Text(record));
}

std::string_view StatementName(std::string_view operationWord, std::string_view table, std::string& scratch) {
    scratch.assign(operationWord);
    if (!table.empty()) {
        scratch.append(1, ' ').append(table);
    }
    return scratch;
}

} // namespace carvelot
