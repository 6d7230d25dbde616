#include "explore/PieceOrder.h"

#include "support/TestFolder.h"
#include "support/TestLog.h"

#include <gtest/gtest.h>

namespace carvelot::test {

namespace {

class PieceFolder {
public:
    void Add(const std::string& name, const std::string& content) {
        m_folder.Write(name, content);
        m_paths.push_back(m_folder.Path(name));
    }
    // The names in their order; a bar ahead of one that begins a line.
    std::string Ordered(CDialects dialects = {}) const {
        std::string names;
        for (const LogPiece& piece : PiecesByTime(m_paths, dialects)) {
            names += names.empty() ? "" : " ";
            names += piece.beginsLine ? "|" : "";
            names += piece.path.substr(piece.path.find_last_of("/\\") + 1);
        }
        return names;
    }

private:
    TestFolder m_folder;
    std::vector<std::string> m_paths;
};

std::string Line(std::string_view day, std::string_view time) {
    return std::string(day).append(" ").append(time).append(".000000 - 1/1 Worker\tEntering JDB_InitEnv\n");
}

} // namespace

TEST(PiecesByTime, OrdersByTheFirstStampOfEach) {
    PieceFolder folder;
    folder.Add("jde.log", Line("Jan 15", "12:00:00"));
    folder.Add("jde.log.1", Line("Jan 15", "11:00:00") + Line("Jan 15", "13:00:00"));
    folder.Add("jde.log.2", Line("Jan 15", "09:00:00"));
    EXPECT_EQ(folder.Ordered(), "|jde.log.2 |jde.log.1 |jde.log");
}

TEST(PiecesByTime, OrdersOverTheTurnOfTheYear) {
    PieceFolder folder;
    folder.Add("a", Line("Jan  1", "00:10:00"));
    folder.Add("b", Line("Dec 31", "23:50:00"));
    EXPECT_EQ(folder.Ordered(), "|b |a");
}

TEST(PiecesByTime, ReadsTheStampsWithTheDialects) {
    PieceFolder folder;
    folder.Add("a", Line("f\xC3\xA9vr. 15", "09:00:00"));
    folder.Add("b", Line("janv. 15", "11:00:00"));
    EXPECT_EQ(folder.Ordered({Dialect::Months}), "|b |a");
}

TEST(PiecesByTime, LooksBehindTheFirstLineForAStamp) {
    PieceFolder folder;
    folder.Add("later", "the rest of a line\nmore\n" + Line("Jan 15", "12:00:00"));
    folder.Add("earlier", "a rest\n" + Line("Jan 15", "11:00:00"));
    EXPECT_EQ(folder.Ordered(), "earlier later");
}

TEST(PiecesByTime, OrdersPiecesOfOneTimeAndThoseWithoutAnyByNameWithNumbersAsNumbers) {
    PieceFolder folder;
    folder.Add("jde10.log", Line("Jan 15", "12:00:00"));
    folder.Add("jde9.log", Line("Jan 15", "12:00:00"));
    folder.Add("none12", "nothing\n");
    folder.Add("none2", "");
    EXPECT_EQ(folder.Ordered(), "|jde9.log |jde10.log none2 none12");
}

TEST(PiecesByTime, KeepsWhatCannotBeRead) {
    EXPECT_EQ(PiecesByTime({"/no/such/b", "/no/such/a"}).size(), 2U);
    EXPECT_TRUE(PiecesByTime({}).empty());
}

TEST(NameComesBefore, ComparesNumbersAsNumbers) {
    const std::vector<std::string> names{"",
                                         "a",
                                         "a1",
                                         "a2",
                                         "a10",
                                         "a10.1",
                                         "a10.02",
                                         "ab",
                                         "b99999999999999999999",
                                         "b100000000000000000000"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = 0; j < names.size(); ++j) {
            EXPECT_EQ(NameComesBefore(names[i], names[j]), i < j) << names[i] << " and " << names[j];
        }
    }
    EXPECT_FALSE(NameComesBefore("a1", "a01"));
    EXPECT_FALSE(NameComesBefore("a01", "a1")) << "the same, then";
}

} // namespace carvelot::test
