#include "platform/DynamicLibrary.h"

#include "platform/VersionResource.h"
#include "support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace carvelot::platform {
namespace {

#ifndef _WIN32
// The path of a library that this program has loaded.
std::string LoadedLibrary(const std::string& strPart) {
    std::ifstream maps("/proc/self/maps");
    for (std::string strLine; std::getline(maps, strLine);) {
        if (strLine.find(strPart) != std::string::npos)
            return strLine.substr(strLine.find('/'));
    }
    return {};
}
#endif

TEST(DynamicLibrary, AMissingLibraryIsError126) {
    CDynamicLibrary library;
    std::uint32_t nError = 0;
    EXPECT_FALSE(library.Load("NoSuchLibrary.DLL", nError));
    EXPECT_EQ(nError, 126U);
    EXPECT_FALSE(library.IsLoaded());
}

TEST(DynamicLibrary, AMissingEntryPointIsError127) {
    CDynamicLibrary library;
    std::uint32_t nError = 0;
#ifdef _WIN32
    ASSERT_TRUE(library.Load("kernel32.dll", nError));
#else
    // A library of the system under the name that a companion would have.
    const test::TestFolder folder;
    std::filesystem::create_symlink(LoadedLibrary("/libc.so"), test::ToPath(folder.Path("Companion.so")));
    const test::EnvironmentGuard guard("CARVELOT_LIBRARY_DIR", folder.Path().c_str());
    ASSERT_TRUE(library.Load("Companion.DLL", nError));
    EXPECT_NE(library.Symbol("malloc", nError), nullptr);
#endif
    EXPECT_EQ(nError, 0U);
    EXPECT_EQ(library.Symbol("NoSuchEntryPoint", nError), nullptr);
    EXPECT_EQ(nError, 127U);
}

#ifndef _WIN32
TEST(VersionResource, OffWindowsTheProgramBearsTheVersionItWasBuiltWith) {
    CFileVersion version;
    ASSERT_TRUE(ReadOwnFileVersion(version));
    EXPECT_EQ(version.m_nMost >> 16, 2U);
}
#endif

} // namespace
} // namespace carvelot::platform
