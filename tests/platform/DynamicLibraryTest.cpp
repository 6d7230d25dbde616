#include "platform/DynamicLibrary.h"

#include "platform/VersionResource.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

namespace carvelot::platform {
namespace {

#ifndef _WIN32
// The path of a library that this program has loaded.
std::string LoadedLibrary(const std::string& part) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(part) != std::string::npos) {
            return line.substr(line.find('/'));
        }
    }
    return {};
}
#endif

TEST(DynamicLibrary, AMissingLibraryIsError126) {
    CDynamicLibrary library;
    std::uint32_t error = 0;
    EXPECT_FALSE(library.Load("NoSuchLibrary.DLL", error));
    EXPECT_EQ(error, 126U);
    EXPECT_FALSE(library.IsLoaded());
}

TEST(DynamicLibrary, AMissingEntryPointIsError127) {
    CDynamicLibrary library;
    std::uint32_t error = 0;
#ifdef _WIN32
    ASSERT_TRUE(library.Load("kernel32.dll", error));
#else
    // A library of the system under the name that a companion would have.
    const test::TestFolder folder;
    std::filesystem::create_symlink(LoadedLibrary("/libc.so"), test::ToPath(folder.Path("Companion.so")));
    const test::EnvironmentGuard guard("CARVELOT_LIBRARY_DIR", folder.Path().c_str());
    ASSERT_TRUE(library.Load("Companion.DLL", error));
    EXPECT_NE(library.Symbol("malloc", error), nullptr);
#endif
    EXPECT_EQ(error, 0U);
    EXPECT_EQ(library.Symbol("NoSuchEntryPoint", error), nullptr);
    EXPECT_EQ(error, 127U);
}

#ifndef _WIN32
TEST(DynamicLibrary, ALibraryThatIsMovedStaysLoadedInItsNewPlaceAlone) {
    const test::TestFolder folder;
    std::filesystem::create_symlink(LoadedLibrary("/libc.so"), test::ToPath(folder.Path("Companion.so")));
    const test::EnvironmentGuard guard("CARVELOT_LIBRARY_DIR", folder.Path().c_str());
    std::uint32_t error = 0;
    CDynamicLibrary first;
    ASSERT_TRUE(first.Load("Companion.DLL", error));
    CDynamicLibrary second(std::move(first));
    EXPECT_FALSE(first.IsLoaded());
    EXPECT_NE(second.Symbol("malloc", error), nullptr);
    CDynamicLibrary third;
    third = std::move(second);
    EXPECT_FALSE(second.IsLoaded());
    EXPECT_NE(third.Symbol("malloc", error), nullptr);
}
#endif

#ifdef _WIN32
TEST(DynamicLibrary, ALibraryInTheCurrentFolderIsNotLoaded) {
    CloseLibrarySearch();
    const test::TestFolder folder;
    const std::filesystem::path planted = test::ToPath(folder.Path("Planted.dll"));
    std::filesystem::copy_file(CARVELOT_SIMULATOR "/libraries/Skelmond.dll", planted);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(test::ToPath(folder.Path()));
    const std::string path = std::getenv("PATH");
    CDynamicLibrary library;
    std::uint32_t error = 0;
    for (const char* entries : {"", ";.", ";.\\;;\"\""}) {
        const test::EnvironmentGuard guard("PATH", (path + entries).c_str());
        EXPECT_FALSE(library.Load("Planted.dll", error)) << entries;
        EXPECT_EQ(error, 126U);
    }
    // Nor by the system, which looks for what a library needs.
    EXPECT_EQ(LoadLibraryW(L"Planted.dll"), nullptr);
    {
        const test::EnvironmentGuard guard("PATH", (path + ";\"" + folder.Path() + "\"").c_str());
        EXPECT_TRUE(library.Load("Planted.dll", error)) << "a folder of PATH is one of the places";
        library.Free();
    }
    std::filesystem::current_path(before);
}
#endif

#ifndef _WIN32
TEST(VersionResource, OffWindowsTheProgramBearsTheVersionItWasBuiltWith) {
    CFileVersion version;
    ASSERT_TRUE(ReadOwnFileVersion(version));
    EXPECT_EQ(version.m_nMost >> 16, 2U);
}
#endif

} // namespace
} // namespace carvelot::platform
