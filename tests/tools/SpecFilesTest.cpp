#include "tools/SpecFiles.h"

#include "support/JDEInstallation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace carvelot {
namespace {

using namespace carvelot::test;

// A made-up installation, and files beside what the tool is about.
class SpecFiles : public testing::Test {
protected:
    SpecFiles() {
        for (const char* name : {"PY900/spec/glbltbl.xdb", "PY900/spec/glbltbl.ddb", "PY900/spec/dddict.xdb",
                                 "PY900/spec/ddtext.xdb", "PY900/spec/ddtext", "PY900/spec/dddictx.xdb",
                                 "PY900/spec/deeper/glbltbl.xdb", "PY900/glbltbl.xdb",
                                 "DV900/spec/GLBLTBL.XDB", "DV900/spec/rdaspec.xdb", "glbltbl.xdb",
                                 "nospec/readme.txt", "spec/other.txt", "deep/DV900/spec/glbltbl.xdb"}) {
            WriteBelow(m_folder, std::string("jde/") + name, name);
        }
    }
    std::string Root() const { return Native(m_folder.Path("jde")); }
    void Install(const std::string& keys) const { m_ini.Write("[INSTALL]\r\n" + keys); }
    // The paths below the installation, "/" between names, in the order of the rows.
    std::vector<std::string> Paths() const {
        std::vector<std::string> list;
        for (std::size_t n = 0; n < m_files.RowCount(); ++n) {
            list.push_back(Generic(m_files.Text(n, 0)));
        }
        return list;
    }
    std::size_t Row(const std::string& generic) const {
        const std::vector<std::string> paths = Paths();
        return static_cast<std::size_t>(std::ranges::find(paths, generic) - paths.begin());
    }
    std::string Generic(std::string path) const {
        EXPECT_EQ(path.substr(0, Root().size()), Root());
        path.erase(0, Root().size() + 1);
        std::ranges::replace(path, '\\', '/');
        return path;
    }
    std::vector<std::string> Sorted() const {
        std::vector<std::size_t> order(m_files.RowCount());
        std::iota(order.begin(), order.end(), std::size_t{0});
        m_files.Sort(order, 0, false);
        std::vector<std::string> list;
        for (const std::size_t n : order) {
            list.push_back(Generic(m_files.Text(n, 0)));
        }
        return list;
    }

    JDEIni m_ini;
    TestFolder m_folder;
    CSpecFiles m_files;
};

const std::set<std::string> kFound{"PY900/spec/glbltbl.xdb", "PY900/spec/glbltbl.ddb",
                                   "PY900/spec/dddict.xdb",  "PY900/spec/ddtext.xdb",
                                   "PY900/spec/ddtext",      "DV900/spec/GLBLTBL.XDB"};

TEST_F(SpecFiles, TheThreeMasksAreLookedForInTheSpecFolderOneLevelDown) {
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    const std::vector<std::string> paths = Paths();
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()), kFound);
    EXPECT_EQ(paths.size(), kFound.size());
    // Mask by mask before the sort.
    EXPECT_NE(paths[0].find("spec/"), std::string::npos);
    EXPECT_EQ(paths[3], "PY900/spec/dddict.xdb");
}

TEST_F(SpecFiles, RowsSortByPathWithoutCaseAcrossTheMasks) {
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    EXPECT_EQ(Sorted(), (std::vector<std::string>{"DV900/spec/GLBLTBL.XDB", "PY900/spec/dddict.xdb",
                                                  "PY900/spec/ddtext", "PY900/spec/ddtext.xdb",
                                                  "PY900/spec/glbltbl.ddb", "PY900/spec/glbltbl.xdb"}));
}

TEST_F(SpecFiles, TheSizeColumnShowsBytesAndDoesNotSort) {
    WriteBelow(m_folder, "jde/PY900/spec/ddtext.xdb", std::string(12345, 'x'));
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    for (std::size_t n = 0; n < m_files.RowCount(); ++n) {
        if (Generic(m_files.Text(n, 0)) == "PY900/spec/ddtext.xdb") {
            EXPECT_EQ(m_files.Text(n, 1), "12345");
        }
    }
    std::vector<std::size_t> order{3, 0, 2, 1};
    m_files.Sort(order, 1, false);
    EXPECT_EQ(order, (std::vector<std::size_t>{3, 0, 2, 1}));
    m_files.Sort(order, 1, true);
    EXPECT_EQ(order, (std::vector<std::size_t>{3, 0, 2, 1}));
}

TEST_F(SpecFiles, ALinkThatLeadsOutOfTheInstallationIsNotFollowed) {
    WriteBelow(m_folder, "elsewhere/spec/glbltbl.out", "x");
    std::error_code error;
    std::filesystem::create_directory_symlink(ToPath(m_folder.Path("elsewhere")),
                                              ToPath(m_folder.Path("jde/linked")), error);
    if (error) {
        GTEST_SKIP() << "no links here: " << error.message();
    }
    std::filesystem::create_directory_symlink(ToPath(m_folder.Path("elsewhere/spec")),
                                              ToPath(m_folder.Path("jde/nospec/spec")));
    // One that stays inside is a folder like any other, also when the installation is reached by a link
    // itself.
    std::filesystem::create_directory_symlink(ToPath(m_folder.Path("jde/DV900")),
                                              ToPath(m_folder.Path("jde/inside")));
    std::filesystem::create_directory_symlink(ToPath(m_folder.Path("jde")), ToPath(m_folder.Path("way")));
    for (const char* root : {"jde", "way"}) {
        Install("B9=" + Native(m_folder.Path(root)) + "\r\n");
        ASSERT_TRUE(m_files.Fill());
        EXPECT_EQ(m_files.RowCount(), kFound.size() + 1);
        for (std::size_t n = 0; n < m_files.RowCount(); ++n) {
            EXPECT_EQ(m_files.Text(n, 0).find("glbltbl.out"), std::string::npos);
        }
    }
}

#ifndef _WIN32
TEST_F(SpecFiles, TheSpecFolderIsFoundWhateverTheCaseOfItsName) {
    WriteBelow(m_folder, "jde/Pd900/SPEC/Ddtext.xdb", "x");
    WriteBelow(m_folder, "jde/Pd900/Spec/dddict.xdb", "x");
    Install("B9=" + Root() + "\n");
    ASSERT_TRUE(m_files.Fill());
    EXPECT_EQ(m_files.RowCount(), kFound.size() + 2);
    EXPECT_LT(Row("Pd900/SPEC/Ddtext.xdb"), m_files.RowCount());
    EXPECT_LT(Row("Pd900/Spec/dddict.xdb"), m_files.RowCount());
}

TEST_F(SpecFiles, AFileWhoseNameIsNoUtf8IsDeletedLikeAnother) {
    const std::string path = m_folder.Path("jde/DV900/spec") + "/glbltbl.\xff";
    std::ofstream(path) << "x";
    Install("B9=" + Root() + "\n");
    ASSERT_TRUE(m_files.Fill());
    const std::size_t row = Row("DV900/spec/glbltbl.\xff");
    ASSERT_LT(row, m_files.RowCount());
    m_files.Delete({row});
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SpecFiles, FilesOfAFolderThatTheUserMayNotChangeAreNotOffered) {
    const std::filesystem::path folder = ToPath(m_folder.Path("jde/PY900/spec"));
    std::filesystem::permissions(folder,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    Install("B9=" + Root() + "\n");
    constexpr uid_t kNobody = 65534; // an administrator may change every folder
    const uid_t user = ::geteuid();
    std::filesystem::permissions(folder,
                                 std::filesystem::perms::others_read | std::filesystem::perms::others_exec,
                                 std::filesystem::perm_options::add);
    ASSERT_TRUE(user != 0 || ::seteuid(kNobody) == 0);
    const bool filled = m_files.Fill();
    ASSERT_EQ(::seteuid(user), 0);
    EXPECT_TRUE(filled);
    // To nobody the other folders belong no more than this one.
    EXPECT_EQ(Paths(),
              user == 0 ? std::vector<std::string>{} : std::vector<std::string>{"DV900/spec/GLBLTBL.XDB"});
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    ASSERT_TRUE(m_files.Fill());
    EXPECT_EQ(m_files.RowCount(), kFound.size());
}

TEST_F(SpecFiles, AFileOfTwoGibibytesShowsANegativeSize) {
    std::filesystem::resize_file(ToPath(m_folder.Path("jde/DV900/spec/GLBLTBL.XDB")),
                                 std::uintmax_t{1} << 31);
    Install("B9=" + Root() + "\n");
    ASSERT_TRUE(m_files.Fill());
    for (std::size_t n = 0; n < m_files.RowCount(); ++n) {
        if (Generic(m_files.Text(n, 0)) == "DV900/spec/GLBLTBL.XDB") {
            EXPECT_EQ(m_files.Text(n, 1), "-2147483648");
        }
    }
}
#endif

TEST_F(SpecFiles, B9WinsOverB733) {
    WriteBelow(m_folder, "old/PD733/spec/glbltbl.xdb", "old");
    Install("B733=" + Native(m_folder.Path("old")) + "\r\nB9=" + Root() + "\r\n");
    EXPECT_EQ(CSpecFiles::InstallationPath(), Root());
}

TEST_F(SpecFiles, AnEmptyB9GivesWayToB733) {
    Install("B9=\r\nB733=" + Root() + "\r\n");
    EXPECT_EQ(CSpecFiles::InstallationPath(), Root());
    ASSERT_TRUE(m_files.Fill());
    EXPECT_EQ(m_files.RowCount(), kFound.size());
}

TEST_F(SpecFiles, WithoutAnInstallationPathTheListIsEmpty) {
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    m_ini.Remove();
    EXPECT_FALSE(m_files.Fill());
    EXPECT_EQ(m_files.RowCount(), 0U);
    Install("B9=\r\n");
    EXPECT_FALSE(m_files.Fill());
}

TEST_F(SpecFiles, APathOfMoreThan255CharactersIsCut) {
    Install("B9=" + std::string(300, 'p') + "\r\n");
    EXPECT_EQ(CSpecFiles::InstallationPath(), std::string(255, 'p'));
}

TEST_F(SpecFiles, AnInstallationThatIsNotThereGivesAnEmptyListAndNoComplaint) {
    Install("B9=" + Root() + "gone\r\n");
    EXPECT_TRUE(m_files.Fill());
    EXPECT_EQ(m_files.RowCount(), 0U);
}

TEST_F(SpecFiles, OnlyTheNamedFilesAreDeleted) {
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    auto expected = Tree(m_folder.Path());
    const std::string ini = m_ini.Read();
    std::vector<std::size_t> rows;
    for (const char* name : {"PY900/spec/glbltbl.xdb", "PY900/spec/ddtext"}) {
        rows.push_back(Row(name));
        expected.erase(std::string("jde/") + name);
    }
    m_files.Delete(rows);
    EXPECT_EQ(Tree(m_folder.Path()), expected);
    EXPECT_EQ(m_ini.Read(), ini);
}

TEST_F(SpecFiles, NothingSelectedDeletesNothing) {
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    const auto before = Tree(m_folder.Path());
    m_files.Delete({});
    EXPECT_EQ(Tree(m_folder.Path()), before);
    CSpecFiles none;
    none.Delete({});
    EXPECT_EQ(Tree(m_folder.Path()), before);
}

TEST_F(SpecFiles, AFolderNamedLikeAMaskIsARowWhoseDeletionFails) {
    WriteBelow(m_folder, "jde/DV900/spec/dddict.old/content.txt", "x");
    Install("B9=" + Root() + "\r\n");
    ASSERT_TRUE(m_files.Fill());
    const std::vector<std::string> paths = Paths();
    EXPECT_NE(std::ranges::find(paths, "DV900/spec/dddict.old"), paths.end());
    const auto before = Tree(m_folder.Path());
    m_files.Delete({Row("DV900/spec/dddict.old")});
    EXPECT_EQ(Tree(m_folder.Path()), before);
}

} // namespace
} // namespace carvelot
