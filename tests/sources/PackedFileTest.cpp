#include "sources/PackedFile.h"

#include "platform/ProcessMemory.h"
#include "platform/SharedFile.h"
#include "sources/FileSource.h"
#include "sources/MemorySource.h"
#include "support/Archives.h"
#include "support/Sanitizer.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace carvelot::test {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

// What comes out of an archive, read in pieces of one size.
struct Unpacked {
    explicit Unpacked(std::string_view archive, std::vector<std::string> members = {},
                      std::size_t piece = 10'000)
        : Unpacked(std::make_unique<CMemorySource>(archive), std::move(members), piece) {}
    Unpacked(std::unique_ptr<ILogSource> packed, std::vector<std::string> members, std::size_t piece) {
        CPackedSource source(*packed, PackedKindOf(*packed), std::move(members));
        m_problem = source.Open();
        if (!m_problem.empty()) {
            return;
        }
        m_bytes = ReadAll(source, piece);
        m_failure = source.Failure();
        source.Rewind();
        EXPECT_EQ(source.Failure(), "");
        EXPECT_TRUE(ReadAll(source, 777) == m_bytes) << "it gives the same once more";
        EXPECT_EQ(source.Failure(), m_failure);
    }
    static std::string ReadAll(ILogSource& source, std::size_t piece) {
        std::string all;
        std::string buffer(piece, '\0');
        std::size_t got;
        do {
            got = source.Read(buffer.data(), piece);
            all.append(buffer, 0, got);
        } while (got == piece);
        EXPECT_EQ(source.Read(buffer.data(), piece), 0U) << "it stays at its end";
        return all;
    }

    std::string m_problem;
    std::string m_bytes;
    std::string m_failure;
};

// A source that only goes forward, as a pipe does, and starts over from what is kept.
class ForwardSource final : public ILogSource {
public:
    explicit ForwardSource(std::string_view bytes) : m_bytes(bytes) {}
    std::size_t Read(void* buffer, std::size_t size) override { return m_bytes.Read(buffer, size); }
    void Rewind() override { m_bytes.Rewind(); }
    std::uint64_t Size() const override { return 0; }
    SourceProgress Progress() const override { return m_bytes.Progress(); }

private:
    CMemorySource m_bytes;
};

std::string Damaged(std::size_t bytes) {
    return "The archive is damaged: " + std::to_string(bytes) + " bytes were read.";
}

struct PackedBy {
    const char* name;
    std::function<std::string(const std::string&)> pack;
};
const std::vector<PackedBy> kKinds = {
    {"gzip", [](const std::string& log) { return Gzip(log); }},
    {"zstd", [](const std::string& log) { return Zstd(log); }},
    {"zip",
     [](const std::string& log) {
         return Zip({{"a.log", log}});
     }},
    {"stored zip",
     [](const std::string& log) {
         return Zip({{"a.log", log}}, "zip:compression=store");
     }},
};

std::string Repeated(const std::string& bytes, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) {
        all += bytes;
    }
    return all;
}

std::vector<std::string> NamesIn(const std::string& archive) {
    CMemorySource packed(archive);
    const PackedMembers list = ListMembers(packed);
    EXPECT_EQ(list.problem, "");
    std::vector<std::string> names;
    for (const PackedMember& member : list.members) {
        names.push_back(member.name);
    }
    return names;
}

} // namespace

TEST(PackedFile, IsKnownByItsFirstBytesAlone) {
    EXPECT_EQ(PackedKindOf(Gzip("x")), PackedKind::Gzip);
    EXPECT_EQ(PackedKindOf(Zstd("x")), PackedKind::Zstd);
    EXPECT_EQ(PackedKindOf("\x5F\x2A\x4D\x18"sv), PackedKind::Zstd) << "a frame to be skipped comes first";
    EXPECT_EQ(PackedKindOf(Zip({{"a", "x"}})), PackedKind::Zip);
    EXPECT_EQ(PackedKindOf(Zip({})), PackedKind::Zip);
    for (const std::string_view none : {""sv, "\x1F"sv, "\x1F\x8B"sv, "PK"sv, "PK\x03"sv, "\x28\xB5\x2F"sv,
                                        "\x5F\x2A\x4D"sv, "Jan 15"sv, "15 Jan 2024"sv}) {
        EXPECT_EQ(PackedKindOf(none), PackedKind::None);
    }
}

TEST(PackedFile, GivesTheBytesThatWerePackedInPiecesOfAnySize) {
    const std::string log = LogOfLines(4000);
    for (const PackedBy& kind : kKinds) {
        const std::string archive = kind.pack(log);
        for (const std::size_t piece :
             {std::size_t{1}, std::size_t{4096}, std::size_t{128 * 1024}, 2 * log.size()}) {
            const Unpacked unpacked(archive, {}, piece);
            EXPECT_EQ(unpacked.m_problem, "") << kind.name;
            EXPECT_TRUE(unpacked.m_bytes == log) << kind.name << ' ' << piece;
            EXPECT_EQ(unpacked.m_failure, "") << kind.name;
        }
        EXPECT_TRUE(Unpacked(std::make_unique<ForwardSource>(archive), {}, 1000).m_bytes == log) << kind.name;
        EXPECT_EQ(Unpacked(kind.pack("")).m_bytes, "") << kind.name;
        EXPECT_EQ(Unpacked(kind.pack("")).m_failure, "") << kind.name;
    }
}

TEST(PackedFile, ReadsAFileOfAnyNameAndTellsItsProgressInPackedBytes) {
    const std::string log = LogOfLines(4000);
    const TestFolder folder;
    for (const PackedBy& kind : kKinds) {
        const std::string archive = kind.pack(log);
        platform::SharedFile file =
            platform::SharedFile::OpenForReading(folder.Write("l\xC3\xB6g \xE2\x82\xAC.txt", archive));
        ASSERT_TRUE(file);
        CFileSource packed(file);
        CPackedSource source(packed, PackedKindOf(packed));
        ASSERT_EQ(source.Open(), "");
        std::uint64_t before = 0;
        std::string all;
        std::string piece(10'000, '\0');
        while (const std::size_t got = source.Read(piece.data(), piece.size())) {
            all.append(piece, 0, got);
            EXPECT_GE(source.Progress().done, before);
            before = source.Progress().done;
            EXPECT_EQ(source.Progress().all, archive.size());
        }
        EXPECT_GT(before, archive.size() / 2);
        EXPECT_LE(before, archive.size());
        EXPECT_TRUE(all == log) << kind.name;
        EXPECT_EQ(source.Size(), 0U) << "what an archive claims is not believed";
    }
}

TEST(PackedFile, GoesOnBehindTheEndOfAPackedStreamAsItsOwnProgramsDo) {
    EXPECT_EQ(Unpacked(Gzip("one ") + Gzip("two ") + Gzip("") + Gzip("three")).m_bytes, "one two three");
    EXPECT_EQ(Unpacked(Zstd("one ") + Zstd("two ") + Zstd("") + Zstd("three")).m_bytes, "one two three");
    const Unpacked filled(Gzip("one") + std::string(100'000, '\0'));
    EXPECT_EQ(filled.m_bytes, "one");
    EXPECT_EQ(filled.m_failure, "") << "zeros fill a block up";
    const Unpacked skipped("\x50\x2A\x4D\x18\x03\0\0\0abc"s + Zstd("one"));
    EXPECT_EQ(skipped.m_bytes, "one");
    for (const std::string& archive : {Gzip("one"), Zstd("one")}) {
        const Unpacked more(archive + "what is this");
        EXPECT_EQ(more.m_bytes, "one");
        EXPECT_EQ(more.m_failure, Damaged(3));
    }
}

TEST(PackedFile, ThatIsCutGivesWhatStandsAheadOfTheCut) {
    const std::string log = LogOfLines(4000);
    for (const PackedBy& kind : kKinds) {
        const std::string archive = kind.pack(log);
        std::size_t before = 0;
        for (int part = 1; part < 20; ++part) {
            const Unpacked cut(archive.substr(0, archive.size() * static_cast<std::size_t>(part) / 20));
            EXPECT_EQ(cut.m_problem, "") << kind.name;
            EXPECT_EQ(cut.m_failure, Damaged(cut.m_bytes.size())) << kind.name << ' ' << part;
            EXPECT_TRUE(log.starts_with(cut.m_bytes)) << kind.name << ' ' << part;
            EXPECT_GE(cut.m_bytes.size(), before);
            before = cut.m_bytes.size();
            // What the last tenth of the packed bytes leaves out, and for zstd a block.
            EXPECT_GE(cut.m_bytes.size() + 140'000, log.size() * static_cast<std::size_t>(part) / 20)
                << kind.name << ' ' << part;
        }
        const Unpacked lacksOne(archive.substr(0, archive.size() - 1));
        EXPECT_TRUE(lacksOne.m_bytes == log) << kind.name << ": all is there but its end";
        EXPECT_EQ(Unpacked(archive.substr(0, kPackedMark)).m_failure, Damaged(0)) << kind.name;
    }
}

TEST(PackedFile, ThatIsCutAnywhereGivesTheSameInPiecesOfAnySize) {
    const std::string log = LogOfLines(20);
    for (const PackedBy& kind : kKinds) {
        const std::string archive = kind.pack(log);
        for (std::size_t size = kPackedMark; size < archive.size(); ++size) {
            const std::string_view cut = std::string_view(archive).substr(0, size);
            const std::string bytes = Unpacked(cut).m_bytes;
            for (const std::size_t piece : {1U, 100U}) {
                ASSERT_EQ(Unpacked(cut, {}, piece).m_bytes, bytes) << kind.name << ' ' << size;
            }
        }
    }
}

TEST(PackedFile, ThatIsDamagedAnywhereSaysSo) {
    const std::string log = LogOfLines(4000);
    for (const PackedBy& kind : kKinds) {
        const std::string archive = kind.pack(log);
        for (std::size_t part = 1; part < 20; ++part) {
            std::string damaged = archive;
            for (std::size_t i = 0; i < 8; ++i) {
                damaged[damaged.size() * part / 20 + i] ^= 0x55;
            }
            const Unpacked unpacked(damaged);
            EXPECT_EQ(unpacked.m_problem, "") << kind.name;
            EXPECT_EQ(unpacked.m_failure, Damaged(unpacked.m_bytes.size())) << kind.name << ' ' << part;
            // Ahead of the damage all is as it was; a block of zstd comes as a whole or not at all.
            const auto sound = static_cast<std::size_t>(
                std::mismatch(log.begin(), log.end(), unpacked.m_bytes.begin(), unpacked.m_bytes.end())
                    .first -
                log.begin());
            EXPECT_GE(sound + 140'000, log.size() * part / 20) << kind.name << ' ' << part;
        }
    }
}

TEST(PackedFile, OfZipGivesTheLastByteAheadOfADamage) {
    const std::string log = LogOfLines(4000);
    std::string archive = Zip({{"a.log", log}});
    std::fill_n(archive.begin() + static_cast<std::ptrdiff_t>(archive.size() / 2), 64, '\xFF');
    const Unpacked unpacked(archive);
    EXPECT_EQ(unpacked.m_failure, Damaged(unpacked.m_bytes.size()));
    const Unpacked cut(archive.substr(0, archive.size() / 2));
    EXPECT_GE(unpacked.m_bytes.size(), cut.m_bytes.size());
    EXPECT_TRUE(unpacked.m_bytes.starts_with(cut.m_bytes));
}

TEST(PackedFile, OfZstdGivesTheWholeBlocksAheadOfADamage) {
    // A frame of 40 bytes whose blocks are stored: one of 30, and the head of one of no kind that there is.
    const std::string head = "\x28\xB5\x2F\xFD\x20\x28"s + "\xF0\0\0"s;
    const std::string block(30, 'x');
    for (const std::size_t piece : {1U, 30U, 31U, 40U, 100'000U}) {
        const Unpacked damaged(head + block + "\x57\0\0"s, {}, piece);
        EXPECT_EQ(damaged.m_bytes, block) << piece;
        EXPECT_EQ(damaged.m_failure, Damaged(30)) << piece;
    }
    EXPECT_EQ(Unpacked(head + block + "\x51\0\0"s + std::string(10, 'y')).m_bytes,
              block + std::string(10, 'y'));
}

TEST(PackedFile, ListsTheFilesOfAZipArchiveAsItNamesThem) {
    CMemorySource packed("");
    const std::string archive =
        Zip({{"logs/", ""}, {"logs/a.log", "one", 1700000000}, {"b.log", "three", 86400 * 20000}});
    CMemorySource source(archive);
    const PackedMembers list = ListMembers(source);
    ASSERT_EQ(list.members.size(), 2U);
    EXPECT_EQ(list.members[0].name, "logs/a.log");
    EXPECT_EQ(list.members[0].size, 3U);
    EXPECT_EQ(list.members[0].date, 1700000000);
    EXPECT_EQ(list.members[1].name, "b.log");
    EXPECT_EQ(list.members[1].size, 5U);
    EXPECT_EQ(Unpacked(archive, {"b.log"}).m_bytes, "three");
    EXPECT_EQ(Unpacked(archive, {"b.log", "logs/a.log", "b.log"}).m_bytes, "threeonethree");
    EXPECT_EQ(Unpacked(std::make_unique<ForwardSource>(archive), {"logs/a.log", "b.log"}, 2).m_bytes,
              "onethree");
    EXPECT_EQ(Unpacked(archive, {"c.log"}).m_problem, "The archive has no member c.log.");
    EXPECT_EQ(Unpacked(archive, {"b.log", "c.log"}).m_problem, "The archive has no member c.log.");
}

TEST(PackedFile, NamesOfMembersAreTextsThatLeadNowhere) {
    const TestFolder folder;
    std::vector<std::string> names = {"../../up.log", "/etc/passwd", "a\nb\x1B[2J.log", "C:/x.log",
                                      std::string(300, 'x')};
#ifndef _WIN32 // where what makes the archive takes names in a code page
    names.emplace_back("l\xC3\xB6g.log");
#endif
    std::vector<ArchiveMember> members;
    for (const std::string& name : names) {
        members.push_back({name, "content of " + name});
    }
    const std::string archive = Zip(members);
    EXPECT_EQ(NamesIn(archive), names);
    for (const std::string& name : names) {
        EXPECT_EQ(Unpacked(archive, {name}).m_bytes, "content of " + name);
    }
#ifndef _WIN32
    std::string codePage = Zip({{"lXg.log", "x"}});
    std::replace(codePage.begin(), codePage.end(), 'X', '\xF6');
    EXPECT_EQ(NamesIn(codePage), std::vector<std::string>{"l\xC3\xB6g.log"}) << "where it isn't UTF-8";
#endif
}

TEST(PackedFile, WithoutItsDirectoryShowsWhatStandsAheadOfTheCut) {
    const std::string log = LogOfLines(100);
    const std::string archive = Zip({{"a.log", log}, {"b.log", log}, {"c.log", log}});
    const std::string cut = archive.substr(0, archive.size() * 5 / 6);
    CMemorySource packed(cut);
    const PackedMembers list = ListMembers(packed);
    EXPECT_EQ(list.problem, "");
    ASSERT_GE(list.members.size(), 1U);
    EXPECT_EQ(list.members[0].name, "a.log");
    const Unpacked whole(cut, {"a.log"});
    EXPECT_TRUE(whole.m_bytes == log);
    EXPECT_EQ(whole.m_failure, "");
    const Unpacked last(cut, {"c.log"});
    EXPECT_TRUE(log.starts_with(last.m_bytes));
    EXPECT_EQ(last.m_failure, Damaged(last.m_bytes.size()));
}

TEST(PackedFile, ThatIsNotReadHasOneMessage) {
    const std::string log = LogOfLines(10);
    const std::string nested = "An archive in an archive can't be read.";
    const std::string tar = Tar({{"a.log", log}});
    for (const std::string& inner : {Gzip(log), Zstd(log), Zip({{"a.log", log}}), tar}) {
        for (const PackedBy& kind : kKinds) {
            EXPECT_EQ(Unpacked(kind.pack(inner)).m_problem, nested) << kind.name;
        }
    }
    EXPECT_EQ(Unpacked(Zip({{"a.log", log}, {"b.gz", Gzip(log)}}), {"a.log", "b.gz"}).m_problem, nested);
    EXPECT_EQ(Unpacked(Zip({{"a.log", log}}, "zip:encryption=zipcrypt")).m_problem,
              "An encrypted archive can't be read.");
    EXPECT_EQ(Unpacked(Zip({})).m_problem, "The archive holds no log.");
    EXPECT_EQ(Unpacked(Zip({{"logs/", ""}})).m_problem, "The archive holds no log.");

    // The method stands in both heads of the member, whose signatures are 30 and 46 bytes ahead of its name.
    std::string method = Zip({{"a.log", log}}, "zip:compression=store");
    for (std::size_t name = method.find("a.log"); name != std::string::npos;
         name = method.find("a.log", name + 1)) {
        method[method.compare(name - 30, 2, "PK") == 0 ? name - 22 : name - 36] = 14;
    }
    EXPECT_EQ(Unpacked(method).m_problem, "The archive is packed by a method that is not known.");
    // A head of zstd that asks for a window of 16 MiB, and a block.
    const std::string window = "\x28\xB5\x2F\xFD\0\x70"s + "\x09\0\0x"s;
    EXPECT_EQ(Unpacked(window).m_problem, "The archive asks for more memory to be unpacked than it gets.");
    EXPECT_EQ(Unpacked("\x28\xB5\x2F\xFD\0\x68"s + "\x09\0\0x"s).m_bytes, "x") << "8 MiB are not too many";
}

TEST(PackedFile, OfSeveralMembersIsNoLogUnlessTheyAreNamed) {
    const std::string several = "The archive holds several members.";
    for (const int lines : {1, 1000}) {
        const std::string log = LogOfLines(lines);
        const std::string archive = Zip({{"a.log", log}, {"b.log", "two"}});
        const Unpacked unpacked(std::make_unique<ForwardSource>(archive), {}, 100);
        // Of a short one this is seen before anything is read.
        EXPECT_EQ(unpacked.m_problem, lines == 1 ? several : "");
        EXPECT_TRUE(unpacked.m_bytes == (lines == 1 ? "" : log));
        EXPECT_EQ(unpacked.m_failure, lines == 1 ? "" : several);
    }
}

TEST(PackedFile, OfMoreMembersThanItsDirectoryMayHaveIsNotRead) {
    std::vector<ArchiveMember> members;
    for (int i = 0; i < 12'000; ++i) {
        members.push_back({"member of a long name, " + std::to_string(i), ""});
    }
    const std::string archive = Zip(members);
    CMemorySource packed(archive);
    const PackedMembers list = ListMembers(packed);
    EXPECT_EQ(list.members.size(), 0U);
    EXPECT_EQ(list.problem, "The archive holds too many members.");
    EXPECT_EQ(Unpacked(archive, {members[0].name}).m_problem, "The archive holds too many members.");
    members.resize(5'000);
    EXPECT_EQ(NamesIn(Zip(members)).size(), 5'000U);
}

TEST(PackedFile, ThatLiesAboutItsSizeIsReadToItsEnd) {
    const std::string log = LogOfLines(200);
    for (const char* options : {"", "zip:compression=store"}) {
        const std::string archive = Zip({{"a.log", log}}, options);
        // The sizes, packed and unpacked, stand 24 and 28 bytes behind the signature of the directory.
        const std::size_t entry = archive.rfind("PK\x01\x02");
        ASSERT_NE(entry, std::string::npos);
        for (const std::size_t size : {entry + 20, entry + 24}) {
            for (const std::string_view lie : {"\0\0\0\0"sv, "\x07\0\0\0"sv, "\xFE\xFF\xFF\xFF"sv}) {
                std::string lying = archive;
                lying.replace(size, 4, lie);
                const Unpacked unpacked(lying);
                EXPECT_TRUE(log.starts_with(unpacked.m_bytes)) << options;
                EXPECT_TRUE(unpacked.m_bytes == log || unpacked.m_failure == Damaged(unpacked.m_bytes.size()))
                    << options << ' ' << unpacked.m_failure;
            }
        }
    }
}

TEST(PackedFile, MemoryStaysFlatWhateverComesOut) {
    const std::string million(16 << 20, 'x');
    const std::vector<std::string> bombs = {Repeated(Gzip(million), 20), Repeated(Zstd(million), 20),
                                            Zip({{"a.log", Repeated(million, 8)}})};
    std::string piece(1 << 20, '\0');
    for (const std::string& bomb : bombs) {
        CMemorySource packed(bomb);
        CPackedSource source(packed, PackedKindOf(packed));
        const std::uint64_t before = platform::PeakResidentBytes();
        ASSERT_EQ(source.Open(), "");
        std::uint64_t all = 0;
        while (const std::size_t got = source.Read(piece.data(), piece.size())) {
            all += got;
        }
        EXPECT_GE(all, 8U * million.size());
        if (!kSanitized) {
            EXPECT_LE(platform::PeakResidentBytes() - before, 9U << 20U);
        }
    }
}

} // namespace carvelot::test
