#include "parse/LineNumbering.h"

#include "sources/MemorySource.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

namespace carvelot::test {

namespace {

using LineNumbers = std::vector<std::uint64_t>;

// As one that unpacks.
class CSlowSource final : public ILogSource {
public:
    explicit CSlowSource(std::string_view bytes) : m_source(bytes) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        // Not at each: on a busy machine the processor may come back only after the others had their turns.
        if (m_nReads++ % 16 == 0) {
            std::this_thread::yield();
        }
        return m_source.Read(buffer, size);
    }
    void Rewind() override { m_source.Rewind(); }
    std::uint64_t Size() const override { return 0; }
    SourceProgress Progress() const override { return m_source.Progress(); }

private:
    CMemorySource m_source;
    std::size_t m_nReads = 0;
};

// The number of each line that the reader gives, and behind them how many have ended.
template <class Source = CMemorySource>
LineNumbers NumbersIn(std::string_view content,
                      const BlockReading& reading = {.way = BlockReading::Way::Here}) {
    Source source(content);
    CLogReader reader(source, FindLineEnds, reading);
    CLineNumbering numbering;
    LineNumbers numbers;
    LogLine line;
    while (reader.ReadLogLine(line)) {
        numbers.push_back(numbering.Take(reader));
        EXPECT_EQ(reader.LineNumber(), numbers.back());
    }
    numbers.push_back(reader.LinesEnded());
    EXPECT_EQ(reader.BytesRead(), content.size());
    return numbers;
}

// The same as an editor has it, which looks at nothing but the ends of lines.
LineNumbers EditorNumbersIn(std::string_view content) {
    LineNumbers lineAt; // of each byte
    std::uint64_t ended = 0;
    for (std::size_t i = 0; i < content.size(); ++i) {
        lineAt.push_back(ended + 1);
        const bool isFirstOfTwo = content[i] == '\r' && i + 1 < content.size() && content[i + 1] == '\n';
        ended += (content[i] == '\r' && !isFirstOfTwo) || content[i] == '\n' ? 1 : 0;
    }
    CMemorySource source(content);
    CLogReader reader(source);
    LineNumbers numbers;
    LogLine line;
    for (std::uint64_t begin = 0; reader.ReadLogLine(line); begin = reader.Position()) {
        numbers.push_back(lineAt[begin]);
    }
    numbers.push_back(ended);
    return numbers;
}

std::string Of(std::size_t size, char c = 'x') { return std::string(size, c); }

// Lines of 100 bytes up to a size.
std::string Filled(std::size_t size) {
    std::string content;
    while (content.size() + 100 <= size) {
        content.append(Of(99)).push_back('\n');
    }
    return content.append(size - content.size(), 'y');
}

constexpr std::size_t kReadersBlock = 128 * 1024;

} // namespace

TEST(LineNumbering, EndsALineAtCRLFAtCRAndAtLF) {
    // The reader gives an empty line between CR and LF, which is of the line that they end.
    EXPECT_EQ(NumbersIn("a\r\nb\r\n"), (LineNumbers{1, 1, 2, 2, 2}));
    EXPECT_EQ(NumbersIn("a\rb\r"), (LineNumbers{1, 2, 2}));
    EXPECT_EQ(NumbersIn("a\nb\n"), (LineNumbers{1, 2, 2}));
    EXPECT_EQ(NumbersIn("a\r\nb\nc\rd\n"), (LineNumbers{1, 1, 2, 3, 4, 4}));
}

TEST(LineNumbering, CountsEmptyLines) {
    EXPECT_EQ(NumbersIn("\n\n\n"), (LineNumbers{1, 2, 3, 3}));
    EXPECT_EQ(NumbersIn("\r\r\r"), (LineNumbers{1, 2, 3, 3}));
    EXPECT_EQ(NumbersIn("\r\n\r\n"), (LineNumbers{1, 1, 2, 2, 2}));
    EXPECT_EQ(NumbersIn("\n\r"), (LineNumbers{1, 2, 2}));
    EXPECT_EQ(NumbersIn("\r\r\n\n"), (LineNumbers{1, 2, 2, 3, 3}));
}

TEST(LineNumbering, CountsNoLineBehindTheLastEnd) {
    EXPECT_EQ(NumbersIn(""), LineNumbers{0});
    EXPECT_EQ(NumbersIn("a"), LineNumbers{0});
    EXPECT_EQ(NumbersIn("a\nb"), (LineNumbers{1, 1}));
    EXPECT_EQ(NumbersIn("a\r"), (LineNumbers{1, 1}));
}

TEST(LineNumbering, GivesAllPiecesOfALineItsNumber) {
    EXPECT_EQ(NumbersIn(Of(8192) + "\nb\n"), (LineNumbers{1, 1, 2, 2}));
    EXPECT_EQ(NumbersIn(Of(8192) + "\r\nb\n"), (LineNumbers{1, 1, 1, 2, 2}));
    EXPECT_EQ(NumbersIn(Of(3 * 8192) + "y\nb\n"), (LineNumbers{1, 1, 1, 1, 2, 2}));
    EXPECT_EQ(NumbersIn("a\r" + Of(8192) + "\nb\n"), (LineNumbers{1, 2, 2, 3, 3}));
    // A line of one byte behind a carriage return isn't the second half of an end.
    EXPECT_EQ(NumbersIn("a\rb\n"), (LineNumbers{1, 2, 2}));
    // A piece at the end of the log has a number, but its line hasn't ended.
    EXPECT_EQ(NumbersIn("a\n" + Of(8192)), (LineNumbers{1, 2, 1}));
}

TEST(LineNumbering, PassesOverNuls) {
    EXPECT_EQ(NumbersIn(std::string_view("a\0b\r\0\n\0\nc\n", 10)), (LineNumbers{1, 2, 3, 4, 4}));
    EXPECT_EQ(NumbersIn(Of(8192, '\0') + "\r\nb\n"), (LineNumbers{1, 1, 1, 2, 2}));
}

TEST(LineNumbering, NumbersOnOverTheEdgesOfTheReadersBlocks) {
    for (const std::string end : {"\r\n", "\r", "\n", "\n\r"}) {
        for (std::size_t ahead = 0; ahead <= 3; ++ahead) {
            std::string content = Filled(kReadersBlock - ahead) + end + "b" + end;
            content += Filled(2 * kReadersBlock - content.size() - ahead) + end + "c" + end;
            const LineNumbers numbers = NumbersIn(content);
            EXPECT_EQ(numbers, EditorNumbersIn(content)) << ahead;
            EXPECT_GT(numbers.back(), 2U * 1300);
        }
    }
    // A piece ends where the block does.
    const std::string pieces = Of(16 * 8192) + "\r\n" + Of(16 * 8192 - 2) + "\r\nb\n";
    EXPECT_EQ(NumbersIn(pieces), EditorNumbersIn(pieces));
    EXPECT_EQ(NumbersIn(pieces).back(), 3U);
}

TEST(LineNumbering, NumbersAsAnEditorDoesWhateverEndsStandTogether) {
    std::mt19937 random{7};
    for (int round = 0; round < 300; ++round) {
        std::string content;
        for (int i = 0; i < 60; ++i) {
            switch (random() % 8) {
            case 0:
            case 1:
                content.push_back('\n');
                break;
            case 2:
            case 3:
                content.push_back('\r');
                break;
            case 4:
                content.append(8190 + random() % 5, 'x');
                break;
            case 5:
                content.push_back('\0');
                break;
            default:
                content.append(random() % 4, 'y');
                break;
            }
        }
        const LineNumbers expected = EditorNumbersIn(content);
        ASSERT_EQ(NumbersIn(content), expected) << "round " << round;
        // However the bytes come.
        const BlockReading small{BlockReading::Way::Here, 1 + random() % 200, 2};
        ASSERT_EQ(NumbersIn(content, small), expected) << "round " << round;
        ASSERT_EQ(NumbersIn(content, {BlockReading::Way::Ahead, 4096, 3}), expected) << "round " << round;
        ASSERT_EQ(NumbersIn<CSlowSource>(content, {BlockReading::Way::Ahead, small.bytes, 3}), expected)
            << "round " << round;
    }
}

TEST(LineNumbering, TellsTheLineOfEachRecordWhenASessionIsAskedTo) {
    const std::string first = DebugLine("08:00:00.000001", "Entering JDB_OpenTable", "1/1");
    const std::string line = DebugLine("10:00:00.000001", "x y");
    const std::string content = first + "\r\n\r\nnot a record\r\n" + line + "\r\n" + line + "\r" + line +
                                "\n" + line + Of(9000) + "\n" + line + "\n" + line;
    for (const bool numbered : {true, false}) {
        for (const bool plain : {true, false}) {
            TestSession session(std::vector<std::string>{first});
            session.m_doc.m_bNumberLines = numbered;
            session.m_doc.m_bPlainParse = plain;
            CMemorySource source(content);
            ASSERT_TRUE(session.m_doc.LoadFrom(source));
            ASSERT_EQ(session.Count(), 7U); // two of the line that is cut
            std::vector<std::uint32_t> numbers;
            for (std::uint32_t i = 0; i < session.m_doc.m_listLineNumbers.Size(); ++i) {
                numbers.push_back(session.m_doc.m_listLineNumbers[i]);
            }
            // The last line has no end.
            EXPECT_EQ(numbers, numbered ? (std::vector<std::uint32_t>{1, 4, 5, 6, 7, 7, 8})
                                        : std::vector<std::uint32_t>{});
            EXPECT_EQ(session.m_doc.m_nLines, 8U);
            EXPECT_EQ(session.m_doc.m_nBytes, content.size());
        }
    }
}

} // namespace carvelot::test
