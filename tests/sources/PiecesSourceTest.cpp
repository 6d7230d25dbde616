#include "sources/PiecesSource.h"

#include "sources/MemorySource.h"

#include <gtest/gtest.h>

#include <string>

namespace carvelot::test {

namespace {

struct Piece {
    std::string_view bytes;
    bool beginsLine = false;
};

CPiecesSource SourceOf(const std::vector<Piece>& pieces) {
    std::vector<SourcePiece> sources;
    for (const Piece& piece : pieces) {
        sources.push_back({std::make_unique<CMemorySource>(piece.bytes), piece.beginsLine});
    }
    return CPiecesSource(std::move(sources));
}

std::string All(CPiecesSource& source, std::size_t size = 100) {
    std::string all;
    std::string part(size, '\0');
    while (const std::size_t got = source.Read(part.data(), size)) {
        all.append(part, 0, got);
    }
    EXPECT_EQ(source.Read(part.data(), size), 0U) << "it stays at its end";
    return all;
}

std::string All(const std::vector<Piece>& pieces, std::size_t size = 100) {
    CPiecesSource source = SourceOf(pieces);
    return All(source, size);
}

} // namespace

TEST(PiecesSource, GivesTheBytesOfOnePieceBehindThoseOfTheOther) {
    for (const std::size_t size : {1U, 2U, 3U, 100U}) {
        EXPECT_EQ(All({{"ab\nc"}, {""}, {"d"}, {"e\n"}}, size), "ab\ncde\n");
        EXPECT_EQ(All({}, size), "");
        EXPECT_EQ(All({{""}, {""}}, size), "");
    }
}

TEST(PiecesSource, EndsALineWhoseEndIsMissingAheadOfAPieceThatBeginsOne) {
    for (const std::size_t size : {1U, 2U, 100U}) {
        EXPECT_EQ(All({{"ab", true}, {"c\n", true}, {"d\r", true}, {"e", true}}, size), "ab\nc\nd\re");
        EXPECT_EQ(All({{"ab"}, {"", false}, {"c", true}}, size), "ab\nc");
        EXPECT_EQ(All({{""}, {"c", true}}, size), "c") << "nothing is ahead of it";
    }
}

TEST(PiecesSource, NeverReadsOfTwoPiecesAtOnceAndTellsWhereEachBegins) {
    CPiecesSource source = SourceOf({{"ab"}, {""}, {"cd", true}, {"e"}});
    char buffer[100];
    const auto read = [&] {
        const std::size_t got = source.Read(buffer, sizeof buffer);
        return std::string(buffer, got);
    };
    EXPECT_EQ(read(), "ab");
    EXPECT_EQ(source.Progress().piece, 0U);
    EXPECT_EQ(source.Progress().pieceBegin, 0U);
    EXPECT_EQ(read(), "\n");
    EXPECT_EQ(source.Progress().pieceBegin, 3U) << "the end that was put between belongs to the one before";
    EXPECT_EQ(read(), "cd");
    EXPECT_EQ(source.Progress().piece, 2U);
    EXPECT_EQ(source.Progress().pieceBegin, 3U);
    EXPECT_EQ(read(), "e");
    EXPECT_EQ(source.Progress().piece, 3U);
    EXPECT_EQ(source.Progress().pieceBegin, 5U);
    EXPECT_EQ(source.Progress().done, 5U);
    EXPECT_EQ(source.Progress().all, 5U);
    EXPECT_EQ(read(), "");
}

TEST(PiecesSource, StartsOverWithTheFirstPiece) {
    CPiecesSource source = SourceOf({{"ab"}, {"cd"}});
    EXPECT_EQ(All(source), "abcd");
    source.Rewind();
    EXPECT_EQ(source.Progress().piece, 0U);
    EXPECT_EQ(All(source, 3), "abcd");
}

TEST(PiecesSource, KnowsItsSizeWhereAllPiecesKnowTheirs) {
    EXPECT_EQ(SourceOf({{"ab"}, {"c"}}).Size(), 3U);
    EXPECT_EQ(SourceOf({{"ab"}, {""}}).Size(), 0U);
}

} // namespace carvelot::test
