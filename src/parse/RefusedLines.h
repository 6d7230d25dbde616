// Lines that hold a word and yet became no record, by the reason.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

enum class RefusalReason : std::uint8_t {
    NoTime,   // of a debug log: the third word is no time
    NoMonth,  // of a JAS log: the second word is no month
    Filtered, // of another process than the one that is kept
};

// One of them, to look at.
struct RefusedLine {
    static constexpr std::size_t kLongestText = 200; // in characters

    RefusalReason reason;
    std::uint64_t number = 0; // as an editor counts lines, from 1 on; 0 while it is not known
    std::string text;         // UTF-8, cut to a length that a window can show
};

struct RefusedLines {
    // Of each reason the first ones are kept.
    static constexpr std::uint64_t kKept = 3;

    std::uint64_t noTime = 0;
    std::uint64_t noMonth = 0;
    std::uint64_t filtered = 0;
    std::vector<RefusedLine> first; // in the order of the log
    bool unplaced = false;          // the last of these has no number yet

    std::uint64_t Count() const { return noTime + noMonth + filtered; }
    // Lines that nothing was made of although they are of the log that was asked for.
    std::uint64_t Unread() const { return noTime + noMonth; }

    void Take(RefusalReason reason, std::string_view text) {
        std::uint64_t& count = CountOf(reason);
        if (++count <= kKept) {
            Keep(reason, text);
        }
    }
    void Place(std::uint64_t number) {
        first.back().number = number;
        unplaced = false;
    }

private:
    std::uint64_t& CountOf(RefusalReason reason) {
        return reason == RefusalReason::NoTime    ? noTime
               : reason == RefusalReason::NoMonth ? noMonth
                                                  : filtered;
    }
    void Keep(RefusalReason reason, std::string_view text);
};

} // namespace carvelot
