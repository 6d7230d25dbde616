#include "platform/Directory.h"
#include "support/TestFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace carvelot::platform;
using namespace carvelot::test;

namespace {

using Names = std::vector<std::string>;

// Sorted, because a folder's own order is nobody's promise.
Names Find(const TestFolder& folder, std::string_view mask) {
    Names names;
    for (const DirectoryEntry& entry : EnumerateDirectory(folder.Path(), mask)) {
        names.push_back(entry.m_strName);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

TEST(Directory, AMaskMatchesWithoutCaseAndAnyExtensionIsAlsoNone) {
    const TestFolder folder;
    for (const char* name :
         {"glbltbl.xdb", "GLBLTBL.ddb", "glbltbl", "glbltbl2.xdb", "dddict.xdb", "xglbltbl.xdb"}) {
        folder.Write(name, "");
    }
    EXPECT_EQ(Find(folder, "glbltbl.*"), (Names{"GLBLTBL.ddb", "glbltbl", "glbltbl.xdb"}));
    EXPECT_EQ(Find(folder, "DDDICT.*"), Names{"dddict.xdb"});
    EXPECT_EQ(Find(folder, "ddtext.*"), Names{});
    EXPECT_EQ(Find(folder, "*").size(), 6u);
    EXPECT_EQ(Find(folder, "dddict.xdb"), Names{"dddict.xdb"});
    EXPECT_EQ(Find(folder, "glbltb?.xdb"), Names{"glbltbl.xdb"});
#ifndef _WIN32
    // Windows says so too; Wine wants the character.
    EXPECT_EQ(Find(folder, "glbltbl?.xdb"), (Names{"glbltbl.xdb", "glbltbl2.xdb"}));
#endif
    EXPECT_EQ(Find(folder, "*.xdb").size(), 4u);
}

TEST(Directory, AnEntryTellsWhetherItIsAFolderAndItsSize) {
    const TestFolder folder;
    folder.Write("file", std::string(12'345, 'x'));
    std::filesystem::create_directory(ToPath(folder.Path("folder")));
    std::vector<DirectoryEntry> entries = EnumerateDirectory(folder.Path(), "*");
    ASSERT_EQ(entries.size(), 2u) << "the folder itself and the one above are not among them";
    if (entries[0].m_bDirectory) {
        std::swap(entries[0], entries[1]);
    }
    EXPECT_EQ(entries[0].m_strName, "file");
    EXPECT_FALSE(entries[0].m_bDirectory);
    EXPECT_EQ(entries[0].m_nSize, 12'345u);
    EXPECT_EQ(entries[1].m_strName, "folder");
    EXPECT_TRUE(entries[1].m_bDirectory);
    EXPECT_EQ(entries[1].m_nSize, 0u);
}

TEST(Directory, AFileOf2GiBAndMoreHasItsWholeSize) {
    const TestFolder folder;
    const std::string path = folder.Write("file", "");
    std::error_code error;
    std::filesystem::resize_file(ToPath(path), std::uintmax_t{0x180000000}, error);
    if (error) {
        GTEST_SKIP() << "no room for a sparse file of 6 GiB: " << error.message();
    }
    ASSERT_EQ(EnumerateDirectory(folder.Path(), "file").size(), 1u);
    EXPECT_EQ(EnumerateDirectory(folder.Path(), "file")[0].m_nSize, std::uint64_t{0x180000000});
}

TEST(Directory, WhatIsNoFolderHasNoEntries) {
    const TestFolder folder;
    EXPECT_TRUE(EnumerateDirectory(folder.Path("missing"), "*").empty());
    EXPECT_TRUE(EnumerateDirectory(folder.Write("file", ""), "*").empty());
    EXPECT_TRUE(EnumerateDirectory(folder.Path() + std::string("\0x", 2), "*").empty());
}

TEST(Directory, NamesBeyondAsciiAreUtf8) {
    const TestFolder folder;
    folder.Write("\xC3\xBC"
                 "ber.xdb",
                 "");
    EXPECT_EQ(Find(folder, "\xC3\x9C"
                           "BER.*"),
              Names{"\xC3\xBC"
                    "ber.xdb"});
}

TEST(Directory, PathsJoinWithOneSeparator) {
#ifdef _WIN32
    EXPECT_EQ(JoinPath("C:\\E900", "DV900"), "C:\\E900\\DV900");
    EXPECT_EQ(JoinPath("C:\\", "E900"), "C:\\E900");
#else
    EXPECT_EQ(JoinPath("/e900", "DV900"), "/e900/DV900");
    EXPECT_EQ(JoinPath("/", "e900"), "/e900");
    EXPECT_EQ(JoinPath("", "e900"), "e900");
#endif
}

TEST(Directory, AFileLiesWithinTheFoldersAboveItAndInNoOther) {
    const TestFolder folder;
    std::filesystem::create_directories(ToPath(folder.Path("a/b")));
    std::filesystem::create_directory(ToPath(folder.Path("a2")));
    const std::string file = folder.Write("a/b/file", "");
    EXPECT_TRUE(LiesWithin(file, folder.Path("a")));
    EXPECT_TRUE(LiesWithin(file, folder.Path("a/b")));
    EXPECT_FALSE(LiesWithin(folder.Write("a2/file", ""), folder.Path("a")));
    EXPECT_FALSE(LiesWithin(file, folder.Path("missing")));
}
