#include "parse/LogFormat.h"

#include "parse/Classifier.h"
#include "platform/CodePage.h"
#include "text/LineTokens.h"
#include "text/TextColumns.h"

namespace carvelot {

namespace {

constexpr std::string_view kDebugSign = "Entering JDB";
constexpr int kMostLines = 5001;
constexpr int kJASLinesNeeded = 6;
constexpr int kJASLevelToken = 5;

// `sawEnd` is set where the lines end ahead of the last one to be looked at.
bool IsJASLog(CLogReader& reader, bool& sawEnd) {
    int lines = 0;
    int score = 0;
    LogLine line;
    while (lines < kMostLines) {
        if (!reader.ReadLogLine(line)) {
            sawEnd = true;
            break;
        }
        if (line.bytes.empty()) {
            continue;
        }
        ++lines;
        // Blanks and brackets are ASCII in every code page, so the bytes serve as they are.
        CLineTokens tokens(line.bytes);
        std::string_view token;
        int count = 0;
        while (count < kJASLevelToken && tokens.Next(kBlank, token)) {
            ++count;
        }
        score += count == kJASLevelToken && token.starts_with('[') ? 1 : 0;
    }
    return score >= kJASLinesNeeded;
}

bool Detect(CLogReader& reader, LogFormat& format, CDebugLineParser& parser, bool& sawEnd) {
    int hits = 0;
    int tabs = 0;
    std::string converted;
    LogLine line;
    for (int lines = 0; lines < kMostLines; ++lines) {
        if (!reader.ReadLogLine(line)) {
            sawEnd = true;
            break;
        }
        const std::string_view text = platform::BytesToUtf8(line.bytes, converted);
        const std::size_t sign = text.find(kDebugSign);
        if (sign != std::string_view::npos && sign > 0) {
            ++hits;
            tabs = 0;
            std::size_t search = 0;
            do {
                const std::size_t tab = text.find('\t', search);
                if (tab == std::string_view::npos) {
                    parser.m_nTextColumn = static_cast<std::int32_t>(ColumnOf(text, sign));
                    break;
                }
                tabs += tab <= sign ? 1 : 0;
                search = tab + 1;
            } while (search < sign);
        }
        if (text.find(kUBESign) != std::string_view::npos) {
            ++hits;
        }
    }
    if (tabs >= 1) {
        parser.m_nTabCount = tabs;
        return true;
    }
    if (parser.m_nTextColumn > 0 || hits > 0) {
        return true;
    }
    reader.Rewind();
    if (!IsJASLog(reader, sawEnd)) {
        return false;
    }
    format = LOG_FORMAT_JAS;
    return true;
}

} // namespace

bool DetectLogFormat(CLogReader& reader, LogFormat& format, CDebugLineParser& parser) {
    bool sawEnd = false;
    return Detect(reader, format, parser, sawEnd);
}

FormatLook LookAtFormat(CLogReader& reader) {
    CDebugLineParser parser;
    FormatLook look;
    look.told = Detect(reader, look.format, parser, look.sawEnd);
    look.textColumn = parser.m_nTextColumn;
    look.tabCount = parser.m_nTabCount;
    return look;
}

} // namespace carvelot
