// Definition files, byte for byte.
#include "cachebrowser/CacheDefinition.h"

#include "support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

namespace carvelot {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// "01 00 | 61" with any separators.
std::string Bytes(std::string_view hex) {
    std::string bytes;
    std::string digits;
    for (const char ch : hex) {
        if (std::isxdigit(static_cast<unsigned char>(ch)) == 0) {
            continue;
        }
        digits.push_back(ch);
        if (digits.size() == 2) {
            bytes.push_back(static_cast<char>(std::stoi(digits, nullptr, 16)));
            digits.clear();
        }
    }
    return bytes;
}

constexpr char kClass[] = "FF FF 01 00 07 00 43 4D 65 6D 62 65 72 ";
constexpr char kLongA[] = "00 00 02 00 00 00 01 00 00 00 04 00 00 00 FF FE FF 01 61 00 "
                          "FF FE FF 04 6C 00 6F 00 6E 00 67 00 ";
const std::string kExample = std::string("01 00 ") + kClass + kLongA;

std::shared_ptr<CMember> Member(std::int32_t type, std::int32_t size, std::int32_t count, std::string name,
                                std::string typeName, bool isUnsigned = false, bool pointer = false) {
    auto member = std::make_shared<CMember>();
    member->m_type = type;
    member->m_size = size;
    member->m_count = count;
    member->m_name = std::move(name);
    member->m_typeName = std::move(typeName);
    member->m_unsigned = isUnsigned;
    member->m_pointer = pointer;
    return member;
}

void ExpectEqual(const CCacheDS& a, const CCacheDS& b) {
    ASSERT_EQ(a.m_members.size(), b.m_members.size());
    for (std::size_t n = 0; n < a.m_members.size(); ++n) {
        EXPECT_EQ(a.m_members[n]->m_type, b.m_members[n]->m_type);
        EXPECT_EQ(a.m_members[n]->m_size, b.m_members[n]->m_size);
        EXPECT_EQ(a.m_members[n]->m_count, b.m_members[n]->m_count);
        EXPECT_EQ(a.m_members[n]->m_name, b.m_members[n]->m_name);
        EXPECT_EQ(a.m_members[n]->m_typeName, b.m_members[n]->m_typeName);
        EXPECT_EQ(a.m_members[n]->m_unsigned, b.m_members[n]->m_unsigned);
        EXPECT_EQ(a.m_members[n]->m_pointer, b.m_members[n]->m_pointer);
    }
}

TEST(CacheDefinitionTest, ALongNamedAIsThese47Bytes) {
    CCacheDS structure;
    std::string source = "long a;";
    structure.ParseTypedef(source);
    const std::string bytes = WriteCacheDefinition(structure);
    EXPECT_EQ(bytes.size(), 47U);
    EXPECT_EQ(bytes, Bytes(kExample));
    CCacheDS read;
    EXPECT_EQ(ReadCacheDefinition(bytes, read), EArchiveError::None);
    ExpectEqual(read, structure);
}

TEST(CacheDefinitionTest, NoMembersAreTwoZeroBytes) {
    CCacheDS structure;
    EXPECT_EQ(WriteCacheDefinition(structure), Bytes("00 00"));
    structure.m_members.push_back(Member(1, 4, 1, "a", "int"));
    EXPECT_EQ(ReadCacheDefinition(Bytes("00 00"), structure), EArchiveError::None);
    EXPECT_TRUE(structure.m_members.empty());
}

TEST(CacheDefinitionTest, TheClassIsRecordedOnceAndReferredToAfterwards) {
    CCacheDS structure;
    std::string source = "long a; long a; long a;";
    structure.ParseTypedef(source);
    EXPECT_EQ(WriteCacheDefinition(structure),
              Bytes(std::string("03 00 ") + kClass + kLongA + "01 80 " + kLongA + "01 80 " + kLongA));
}

TEST(CacheDefinitionTest, AllFieldsComeBackAsTheyWere) {
    CCacheDS structure;
    structure.m_members = {Member(5, 4, 1, "p", "VOID", false, true), Member(4, 1, 7, "byte", ""),
                           Member(2, 4, 1, "id", "ID", true),
                           Member(-77, -1, std::numeric_limits<std::int32_t>::min(), "", "unheard of"),
                           Member(7, 2, 31,
                                  "Gr\xC3\xB6\xC3\x9F"
                                  "e \xE2\x82\xAC \xF0\x9F\x9A\xB2",
                                  "JCHAR")};
    CCacheDS read;
    EXPECT_EQ(ReadCacheDefinition(WriteCacheDefinition(structure), read), EArchiveError::None);
    ExpectEqual(read, structure);
}

TEST(CacheDefinitionTest, LengthsCountUtf16UnitsAndHaveThreeForms) {
    const auto header = [](std::size_t length) {
        CCacheDS structure;
        structure.m_members = {Member(1, 4, 1, std::string(length, 'x'), "")};
        const std::string bytes = WriteCacheDefinition(structure);
        CCacheDS read;
        EXPECT_EQ(ReadCacheDefinition(bytes, read), EArchiveError::None);
        ExpectEqual(read, structure);
        const std::size_t at = Bytes(std::string("01 00") + kClass).size() + 14;
        return bytes.substr(at, bytes.find('x', at) - at);
    };
    EXPECT_EQ(header(1), Bytes("FF FE FF 01"));
    EXPECT_EQ(header(254), Bytes("FF FE FF FE"));
    EXPECT_EQ(header(255), Bytes("FF FE FF FF FF 00"));
    EXPECT_EQ(header(0xFFFD), Bytes("FF FE FF FF FD FF"));
    EXPECT_EQ(header(0xFFFE), Bytes("FF FE FF FF FF FF FE FF 00 00"));
    EXPECT_EQ(header(70000), Bytes("FF FE FF FF FF FF 70 11 01 00"));
    CCacheDS structure;
    structure.m_members = {Member(1, 4, 1, "\xF0\x9F\x9A\xB2", "")};
    EXPECT_THAT(WriteCacheDefinition(structure), HasSubstr(Bytes("FF FE FF 02 3D D8 B2 DE")));
}

TEST(CacheDefinitionTest, ALoneSurrogateIsWrittenBackAsItWas) {
    const std::string bytes = Bytes(std::string("01 00 ") + kClass +
                                    "00 00 02 00 00 00 01 00 00 00 04 00 00 00 "
                                    "FF FE FF 03 3D D8 61 00 B2 DE FF FE FF 01 00 D8");
    CCacheDS structure;
    ASSERT_EQ(ReadCacheDefinition(bytes, structure), EArchiveError::None);
    EXPECT_EQ(WriteCacheDefinition(structure), bytes);
}

TEST(CacheDefinitionTest, CountsFrom65535OnHaveFourMoreBytes) {
    CCacheDS structure;
    for (int n = 0; n < 65534; ++n) {
        structure.m_members.push_back(Member(6, 1, 1, "", ""));
    }
    EXPECT_EQ(WriteCacheDefinition(structure).substr(0, 4), Bytes("FE FF FF FF"));
    structure.m_members.push_back(Member(6, 1, 1, "", ""));
    const std::string bytes = WriteCacheDefinition(structure);
    EXPECT_EQ(bytes.substr(0, 8), Bytes("FF FF FF FF 00 00 FF FF"));
    CCacheDS read;
    EXPECT_EQ(ReadCacheDefinition(bytes, read), EArchiveError::None);
    EXPECT_EQ(read.m_members.size(), 65535U);
}

TEST(CacheDefinitionTest, StringsOf8BitCharactersAreReadAndWrittenBackWide) {
    const std::string head = std::string("01 00 ") + kClass + "00 00 02 00 00 00 01 00 00 00 04 00 00 00 ";
    CCacheDS structure;
    ASSERT_EQ(ReadCacheDefinition(Bytes(head + "01 61 04 6C 6F 6E 67"), structure), EArchiveError::None);
    EXPECT_EQ(WriteCacheDefinition(structure), Bytes(kExample));
    // In the code page, here that of Western Europe.
    ASSERT_EQ(ReadCacheDefinition(Bytes(head + "02 80 E4 00"), structure), EArchiveError::None);
    EXPECT_EQ(structure.m_members[0]->m_name, "\xE2\x82\xAC\xC3\xA4");
    EXPECT_EQ(structure.m_members[0]->m_typeName, "");
    // Longer forms.
    std::string bytes =
        Bytes(head + "FF 2C 01") + std::string(300, 'n') + Bytes("FF FF FF 03 00 00 00 69 6E 74");
    ASSERT_EQ(ReadCacheDefinition(bytes, structure), EArchiveError::None);
    EXPECT_EQ(structure.m_members[0]->m_name, std::string(300, 'n'));
    EXPECT_EQ(structure.m_members[0]->m_typeName, "int");
}

TEST(CacheDefinitionTest, AnotherSchemaAndAnotherClassAreRefused) {
    CCacheDS structure;
    EXPECT_EQ(ReadCacheDefinition(Bytes("01 00 FF FF 02 00 07 00 43 4D 65 6D 62 65 72"), structure),
              EArchiveError::BadSchema);
    EXPECT_EQ(ReadCacheDefinition(Bytes("01 00 FF FF 01 00 07 00 43 4D 65 6D 62 65 73"), structure),
              EArchiveError::BadClass);
    EXPECT_EQ(ReadCacheDefinition(Bytes("01 00 FF FF 01 00 06 00 43 4D 65 6D 62 65"), structure),
              EArchiveError::BadClass);
    EXPECT_EQ(ReadCacheDefinition(Bytes("01 00 FF FF 01 00 FF FF 43 4D 65 6D 62 65 72"), structure),
              EArchiveError::BadClass)
        << "no class has so long a name";
    EXPECT_EQ(ReadCacheDefinition(Bytes("01 00 01 80"), structure), EArchiveError::BadFormat)
        << "no class stands before it";
    EXPECT_EQ(ReadCacheDefinition(Bytes("01 00 00 00"), structure), EArchiveError::BadFormat) << "no object";
    EXPECT_TRUE(structure.m_members.empty());
}

TEST(CacheDefinitionTest, AReferenceThatIsNoClassIsRefusedAndWhatCameBeforeRemains) {
    CCacheDS structure;
    for (const char* tag : {"02 80", "03 80", "02 00", "00 00", "FF 7F 02 00 00 80", "FF 7F 01 00 00 00"}) {
        EXPECT_EQ(
            ReadCacheDefinition(Bytes(std::string("02 00") + kClass + kLongA + tag + kLongA), structure),
            EArchiveError::BadFormat)
            << tag;
        EXPECT_EQ(structure.m_members.size(), 1U);
    }
    // The long form of the reference, and a class that is recorded once more, mean the same class.
    EXPECT_EQ(ReadCacheDefinition(Bytes(std::string("04 00") + kClass + kLongA + "FF 7F 01 00 00 80" +
                                        kLongA + kClass + kLongA + "04 80" + kLongA),
                                  structure),
              EArchiveError::None);
    EXPECT_EQ(structure.m_members.size(), 4U);
}

TEST(CacheDefinitionTest, AShortFileKeepsTheMembersThatWereWhole) {
    const std::string whole = Bytes(std::string("02 00") + kClass + kLongA + "01 80 " + kLongA);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CCacheDS structure;
        EXPECT_EQ(ReadCacheDefinition(whole.substr(0, length), structure), EArchiveError::EndOfFile)
            << length;
        EXPECT_EQ(structure.m_members.size(), length < 47 ? 0U : 1U) << length;
    }
    CCacheDS structure;
    EXPECT_EQ(ReadCacheDefinition(whole + "what stands behind does not matter", structure),
              EArchiveError::None);
    EXPECT_EQ(structure.m_members.size(), 2U);
}

TEST(CacheDefinitionTest, NumbersThatLieEndAtTheFilesEndAndReserveNothing) {
    CCacheDS structure;
    const std::string member = std::string(kClass) + kLongA;
    for (const char* count :
         {"FE FF", "FF FF 00 28 6B EE", "FF FF FE FF FF FF", "FF FF FF FF FF FF FF FF FF FF FF FF FF FF"}) {
        EXPECT_EQ(ReadCacheDefinition(Bytes(count + member), structure), EArchiveError::EndOfFile) << count;
        EXPECT_EQ(structure.m_members.size(), 1U);
    }
    const std::string head = std::string("01 00 ") + kClass + "00 00 02 00 00 00 01 00 00 00 04 00 00 00 ";
    for (const char* length :
         {"FF FE FF FF FF FF FF FF FF 7F", "FF FF FF FF FF FF 7F", "FF FE FF FE", "FE"}) {
        EXPECT_EQ(ReadCacheDefinition(Bytes(head + length + "61 00"), structure), EArchiveError::EndOfFile)
            << length;
    }
    // 4 GB and more is no length of a string.
    for (const char* length : {"FF FE FF FF FF FF FE FF FF FF", "FF FF FF FE FF FF FF",
                               "FF FE FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF"}) {
        EXPECT_EQ(ReadCacheDefinition(Bytes(head + length + "61 00"), structure), EArchiveError::BadFormat)
            << length;
    }
}

TEST(CacheDefinitionTest, RandomStructuresComeBackAsTheyWere) {
    std::mt19937 random(1999);
    const auto number = [&] {
        return static_cast<std::int32_t>(random() % 2 != 0 ? random() : random() % 100);
    };
    const auto text = [&] {
        constexpr const char* kPieces[] = {"a", "szName", " ", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x9A\xB2",
                                           "["};
        std::string source;
        for (auto n = random() % (random() % 20 == 0 ? 700 : 12); n > 0; --n) {
            source += kPieces[random() % std::size(kPieces)];
        }
        return source;
    };
    for (int attempt = 0; attempt < 500; ++attempt) {
        CCacheDS structure;
        for (auto n = random() % 12; n > 0; --n) {
            structure.m_members.push_back(
                Member(number(), number(), number(), text(), text(), random() % 2 != 0, random() % 2 != 0));
        }
        const std::string bytes = WriteCacheDefinition(structure);
        CCacheDS read;
        ASSERT_EQ(ReadCacheDefinition(bytes, read), EArchiveError::None);
        ExpectEqual(read, structure);
        EXPECT_EQ(WriteCacheDefinition(read), bytes);
    }
}

TEST(CacheDefinitionTest, AFileIsSavedAndLoaded) {
    test::TestFolder folder;
    CCacheDS structure;
    std::string source = "JCHAR szName[11]; VOID* p; ID id;";
    structure.ParseTypedef(source);
    const std::string path = folder.Path("Gr\xC3\xB6\xC3\x9F"
                                         "e.cds");
    EXPECT_EQ(SaveCacheDefinition(path, structure), "");
    CCacheDS read;
    EXPECT_EQ(LoadCacheDefinition(path, read), "");
    ExpectEqual(read, structure);
    EXPECT_EQ(folder.Names().size(), 1U) << "the chosen file only";
    // A second one replaces it.
    source = "long a;";
    structure.ParseTypedef(source);
    EXPECT_EQ(SaveCacheDefinition(path, structure), "");
    EXPECT_EQ(folder.Read("Gr\xC3\xB6\xC3\x9F"
                          "e.cds"),
              Bytes(kExample));
    EXPECT_EQ(folder.Names().size(), 1U);
}

TEST(CacheDefinitionTest, ABadFileIsNamedInTheMessage) {
    test::TestFolder folder;
    CCacheDS structure;
    structure.m_members.push_back(Member(1, 4, 1, "a", "int"));
    std::string path = folder.Path("missing.cds");
    EXPECT_EQ(LoadCacheDefinition(path, structure), path + " was not found.");
    EXPECT_TRUE(structure.m_members.empty()) << "it is cleared first";
    path = folder.Write("short.cds", Bytes(kExample).substr(0, 30));
    EXPECT_EQ(LoadCacheDefinition(path, structure),
              "An attempt was made to access " + path + " past its end.");
    path = folder.Write("schema.cds", Bytes("01 00 FF FF 02 00 07 00 43 4D 65 6D 62 65 72"));
    EXPECT_EQ(LoadCacheDefinition(path, structure), path + " contains an incorrect schema.");
    path = folder.Write("class.cds", Bytes("01 00 FF FF 01 00 07 00 43 4D 65 6D 62 65 52"));
    EXPECT_EQ(LoadCacheDefinition(path, structure), path + " contained an unexpected object.");
    path = folder.Write("reference.cds", Bytes("01 00 07 80"));
    EXPECT_EQ(LoadCacheDefinition(path, structure), path + " has a bad format.");
    EXPECT_NE(LoadCacheDefinition(folder.Path(), structure), "") << "a directory";
}

TEST(CacheDefinitionTest, AFailedSaveLeavesTheFileAsItWas) {
    test::TestFolder folder;
    CCacheDS structure;
    structure.m_members.push_back(Member(1, 4, 1, std::string(100000, 'x'), "int"));
    EXPECT_THAT(SaveCacheDefinition(folder.Path("no/such/folder.cds"), structure), HasSubstr("folder.cds"));
    EXPECT_THAT(SaveCacheDefinition(folder.Path(), structure), HasSubstr(folder.Path()));
    EXPECT_THAT(folder.Names(), IsEmpty());
    folder.Write("old.cds", "old");
    if (!folder.Protect("old.cds")) {
        GTEST_SKIP() << "this user may write anything";
    }
    EXPECT_EQ(SaveCacheDefinition(folder.Path("old.cds"), structure),
              "Access to " + folder.Path("old.cds") + " was denied.");
    EXPECT_EQ(folder.Read("old.cds"), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("old.cds"));
}

#ifndef _WIN32
TEST(CacheDefinitionTest, ASaveThatFailsHalfWayLeavesTheFileAsItWas) {
    test::TestFolder folder;
    folder.Write("old.cds", "old");
    CCacheDS structure;
    structure.m_members.push_back(Member(1, 4, 1, std::string(100000, 'x'), "int"));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    auto* const pfnBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{8192, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string message = SaveCacheDefinition(folder.Path("old.cds"), structure);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, pfnBefore);
    EXPECT_THAT(message, HasSubstr(folder.Path("old.cds")));
    EXPECT_EQ(folder.Read("old.cds"), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("old.cds"));
}

TEST(CacheDefinitionTest, AFullDiskIsReported) {
    CCacheDS structure;
    structure.m_members.push_back(Member(1, 4, 1, std::string(100000, 'x'), "int"));
    EXPECT_EQ(SaveCacheDefinition("/dev/full", structure), "Disk full while accessing /dev/full.");
}
#endif

} // namespace
} // namespace carvelot
