// The calls that the program, and every library in it, makes of the system: counted, and failed to order. The
// program is linked so that they come here first, under a sanitizer too.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

namespace carvelot::test {

// What can fail, and how: each with the error that such a call gives when it does.
enum class Call {
    Memory,   // malloc and its like, operator new, blocks of pages
    Open,     // of files and folders: too many are open
    Read,     // a device error
    Write,    // a device error
    Sync,     // a device error
    Rename,   // not allowed
    Truncate, // a device error
    Thread,   // none can be had
    Space, // making a file and writing to one: the disk is full. The first write that fails takes half of its
           // bytes
};
inline constexpr std::size_t kCalls = 9;
constexpr std::array<const char*, kCalls> kCallNames = {"memory", "open",     "read",   "write",     "sync",
                                                        "rename", "truncate", "thread", "disk space"};
using CallCounts = std::array<std::uint64_t, kCalls>;

// Which calls of one kind fail, from now on, counted from 1.
struct Schedule {
    enum class Form {
        None, // they are counted alone
        Once, // the one of that number
        Rest, // that one and all behind it
    };

    Call call = Call::Memory;
    Form form = Form::None;
    std::uint64_t number = 0;
    // A read that is to fail ends the file instead.
    bool endsFile = false;
};

// Counts from nought by this schedule. `renamed` is called, uncounted, when a file has taken another's place.
void Order(const Schedule& schedule, std::function<void()> renamed = {});
CallCounts CountedSoFar();

// Calls count, and fail, while this lives: what a scenario does for itself stands outside.
class CountedCalls {
public:
    CountedCalls();
    ~CountedCalls();
    CountedCalls(const CountedCalls&) = delete;
    CountedCalls& operator=(const CountedCalls&) = delete;
};

} // namespace carvelot::test
