#include "parse/fast/MarkedSigns.h"
#include "parse/fast/LineScan.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace carvelot::test {

TEST(FindSigns, SeesTheSameAtTheMarksAsInTheWholeText) {
    // Each word once, and each with a letter missing, at several places of a line.
    const std::vector<std::pair<LogFormat, std::string>> words = {
        {LOG_FORMAT_DEBUG, "jdeCache"},     {LOG_FORMAT_DEBUG, "hCache:"},
        {LOG_FORMAT_DEBUG, "hCursor:"},     {LOG_FORMAT_DEBUG, "Found existing cache"},
        {LOG_FORMAT_DEBUG, "JDB3100001"},   {LOG_FORMAT_DEBUG, "JDB4100005"},
        {LOG_FORMAT_DEBUG, "JDB9901232"},   {LOG_FORMAT_DEBUG, "CAC0001025"},
        {LOG_FORMAT_DEBUG, "--UBE--"},      {LOG_FORMAT_DEBUG, "Exiting DBPerformRequest"},
        {LOG_FORMAT_JAS, "jdeCache"},       {LOG_FORMAT_JAS, "hCache:"},
        {LOG_FORMAT_JAS, "hCursor:"},       {LOG_FORMAT_JAS, "Found existing cache"},
        {LOG_FORMAT_JAS, "Event Starts :"}, {LOG_FORMAT_JAS, "Event Ends:"},
        {LOG_FORMAT_JAS, "at ER Line"},     {LOG_FORMAT_JAS, "Object Called:"}};
    for (const auto& [format, word] : words) {
        for (std::size_t cut = 0; cut <= word.size(); ++cut) {
            for (std::size_t before = 0; before < 40; before += 3) {
                std::string text = std::string(before, 'x') + word + " and more";
                if (cut < word.size()) {
                    text.erase(before + cut, 1);
                }
                std::string line = text + std::string(kScanPadding, ' ');
                LineIndex index(text.size());
                ScanByBytes(format)(line.data(), text.size(), index);
                const std::uint32_t* last = index.marks.get();
                while (*last != LineIndex::kNoMore) {
                    ++last;
                }
                const LineMarks marks(index.marks.get(), last, 0);
                const TextSigns slow = FindSigns(text);
                const LineSigns fast = FindSigns(text, text, marks);
                EXPECT_EQ(slow.found, fast.inText.found) << text;
                EXPECT_EQ(fast.ubeInLine, slow.Hold(TextSigns::SIGN_UBE)) << text;
            }
        }
    }
}

} // namespace carvelot::test
