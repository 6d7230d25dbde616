#include "platform/FileState.h"

#include "platform/SharedFile.h"
#include "support/TestFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace carvelot::platform;
using namespace carvelot::test;
using Presence = FileState::Presence;

TEST(LookAtFile, TellsTheSizeAndTheIdentityOfAFile) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "12345");
    const std::string other = folder.Write("other", "12345");
    const FileState state = LookAtFile(path);
    EXPECT_EQ(state.presence, Presence::There);
    EXPECT_EQ(state.size, 5U);
    EXPECT_FALSE(state.identity == LookAtFile(other).identity);
    const SharedFile file = SharedFile::OpenForReading(path);
    EXPECT_EQ(file.State().identity, state.identity);
    EXPECT_EQ(file.State().size, 5U);
    std::filesystem::rename(ToPath(path), ToPath(folder.Path("renamed")));
    EXPECT_EQ(LookAtFile(folder.Path("renamed")).identity, state.identity);
}

TEST(LookAtFile, TellsWhatIsMissingFromWhatIsNoFile) {
    const TestFolder folder;
    const std::string path = folder.Write("log", "");
    EXPECT_EQ(LookAtFile(path).presence, Presence::There);
    EXPECT_EQ(LookAtFile(folder.Path("none")).presence, Presence::Missing);
    EXPECT_EQ(LookAtFile(folder.Path("none/none")).presence, Presence::Missing);
    EXPECT_EQ(LookAtFile(path + std::string(1, '\0')).presence, Presence::Missing);
    EXPECT_EQ(LookAtFile(folder.Path()).presence, Presence::NotToBeHad);
}
