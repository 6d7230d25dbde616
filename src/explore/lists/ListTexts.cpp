#include "explore/lists/ListTexts.h"

#include "explore/FrameNames.h"
#include "explore/lists/ExploreNames.h"
#include "records/NodeText.h"
#include "text/TextColumns.h"

#include <algorithm>

namespace carvelot {

std::string StampOf(const CDetailList& details, RecordIndex record) {
    return std::string(TrimRight(TimeStampText(details[record]), " "));
}

std::string OwnerOf(const CCarvelotDoc& session, RecordIndex record) {
    const CDetailList& details = session.m_listDetails;
    const RecordContext& context = details.Context(record);
    return session.m_nLogFormat == LOG_FORMAT_JAS ? std::string(details.User(record))
                                                  : ProcessThreadText(context.processID, context.threadID);
}

std::string_view OwnersTitle(LogFormat format) { return format == LOG_FORMAT_JAS ? "User" : "Proc/Thread"; }

std::string OnOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    return line;
}

std::string_view StatementText(const CDetailList& details, RecordIndex record) {
    const std::string_view text = details.Text(record);
    if (details.Kind(record) != LOG_SQL) {
        return text;
    }
    const std::string_view operation = OperationWordOf(details, record);
    const std::size_t place = operation.empty() ? 0 : text.find(operation);
    return place == std::string_view::npos ? text : text.substr(place);
}

std::string NamedKey(const CFrameKeys& keys, std::uint32_t key) {
    std::string text;
    if (key != kNoKey) {
        text.append(LetterOf(keys.Kind(key))).append("  ");
    }
    return text.append(ShownKey(keys, key));
}

} // namespace carvelot
