#include "platform/Terminal.h"

#ifndef _WIN32
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace carvelot::platform {
namespace {

// Standard output goes elsewhere for as long as it lives.
class StandardOutput {
public:
    explicit StandardOutput(int file) : m_nOld(dup(STDOUT_FILENO)) { dup2(file, STDOUT_FILENO); }
    ~StandardOutput() {
        dup2(m_nOld, STDOUT_FILENO);
        close(m_nOld);
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

private:
    int m_nOld;
};

TEST(Terminal, TellsHowWideItIs) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(terminal, 0);
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    const int inside = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    ASSERT_GE(inside, 0);
    constexpr std::array<unsigned short, 2> widths{132, 0};
    for (const unsigned short columns : widths) {
        winsize size{};
        size.ws_col = columns;
        ASSERT_EQ(ioctl(inside, TIOCSWINSZ, &size), 0);
        std::optional<std::size_t> told;
        {
            const StandardOutput output(inside);
            told = TerminalColumns();
        }
        // One that does not know it says 0.
        EXPECT_EQ(told, columns == 0 ? std::nullopt : std::optional<std::size_t>(columns));
    }
    close(inside);
    close(terminal);
}

TEST(Terminal, APipeIsNoneAndTellsWhenItsReaderHasGone) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    std::optional<std::size_t> columns;
    bool before = true;
    bool behind = false;
    {
        const StandardOutput output(ends[1]);
        columns = TerminalColumns();
        before = IsReaderGone();
        close(ends[0]);
        behind = IsReaderGone();
    }
    close(ends[1]);
    EXPECT_EQ(columns, std::nullopt);
    EXPECT_FALSE(before);
    EXPECT_TRUE(behind);
}

} // namespace
} // namespace carvelot::platform
#endif
