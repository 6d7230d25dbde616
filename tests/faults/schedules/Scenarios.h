// What is tried with failing calls: a line each in the table of Scenarios.cpp. A new one needs nothing else.
#pragma once

#include "faults/schedules/Calls.h"
#include "support/TestFolder.h"

#include <functional>
#include <string>
#include <vector>

namespace carvelot::test {

// How a run of a scenario ended. The folder's path stands as DIR in the texts.
struct Result {
    bool done = false; // as it says itself
    std::string said;  // its messages
    std::string shown; // what it is for: a report, the records, the values; empty unless it is done

    friend bool operator==(const Result&, const Result&) = default;
};

// What may be said, or be thrown, where calls of a kind fail.
struct Message {
    Call call;
    std::string text;
};
// As a scenario's message: std::bad_alloc, which whoever called turns into a message of his own.
inline constexpr const char* kThrown = "[no memory]";

struct Scenario {
    const char* name;
    // Fills an empty folder.
    std::function<void(const TestFolder& folder)> prepare;
    // Does it, in CountedCalls. Once more in the same folder it gives the same.
    std::function<Result(const TestFolder& folder)> run;
    // Kinds of calls that it makes: one without any is no test.
    std::vector<Call> reaches;
    // With which it may fail. It then leaves each file as it was, or whole and new.
    std::vector<Message> messages;
    // A log ends where reading it fails: then it must do what it does with a log that ends there.
    bool endsLog = false;
    // What can't be stored holds for the run: then it is done, and the files stand as they were.
    bool holdsForTheRun = false;
    // With what a library ends the program itself, and no message of ours, when it has no memory; none does
    // if empty.
    std::string libraryEnds = {};
};

std::vector<Scenario> Scenarios();
// Each of which breaks a rule, by name, and what must be found.
struct BrokenScenario {
    Scenario scenario;
    const char* finding;
};
std::vector<BrokenScenario> BrokenScenarios();

// What a file holds, to be compared: its bytes; of a database all rows.
std::string ContentOf(const TestFolder& folder, const std::string& name);

} // namespace carvelot::test
