// fault_schedules [--quick] [--only NAME] [--jobs N] [--table FILE] [--self-check]
//
// Every k-th call of each kind fails in each scenario, for every k until a run passes untouched: that one
// alone, and that one with all behind it. Each run is a process of its own. Whatever failed: no crash, no
// leak, no file left open, each file as it was or whole and new, a message that is one of the scenario's, and
// the same work done untouched right behind it.
// --quick: some hundred allocations of each scenario instead of all. --self-check: scenarios that break each
// of these rules, and must be found out.
#include "faults/schedules/Scenarios.h"
#include "support/Sanitizer.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

extern "C" {
__attribute__((weak)) int __lsan_do_recoverable_leak_check();
__attribute__((weak)) void __sanitizer_set_report_fd(void* file);
__attribute__((weak)) void __sanitizer_print_stack_trace();
}

namespace carvelot::test {

namespace {

struct Options {
    bool quick = false;
    bool selfCheck = false;
    unsigned jobs = std::max(1U, std::thread::hardware_concurrency());
    unsigned seconds = 120; // that one run may take
    std::string only;
    std::string table;
};

using Files = std::map<std::string, std::string>; // their contents by name

Files FilesOf(const TestFolder& folder) {
    Files files;
    for (const std::string& name : folder.Names()) {
        files.emplace(name, ContentOf(folder, name));
    }
    return files;
}

// What one run came to.
struct Run {
    Result result;
    CallCounts counts{};
    Files before;
    Files after;
    std::map<std::string, std::set<std::string>>
        states; // of each file: before, after, and when one was replaced
};

// --- A child's answer, over a pipe

class CAnswer {
public:
    CAnswer() = default;
    explicit CAnswer(std::string bytes) : m_bytes(std::move(bytes)) {}
    const std::string& Bytes() const { return m_bytes; }

    void Put(std::uint64_t number) { m_bytes.append(reinterpret_cast<const char*>(&number), sizeof number); }
    void Put(const std::string& text) {
        Put(std::uint64_t{text.size()});
        m_bytes += text;
    }
    void Put(const Files& files) {
        Put(std::uint64_t{files.size()});
        for (const auto& [name, content] : files) {
            Put(name);
            Put(content);
        }
    }
    std::uint64_t Number() {
        std::uint64_t number = 0;
        std::memcpy(&number, m_bytes.data() + m_nRead, sizeof number);
        m_nRead += sizeof number;
        return number;
    }
    std::string Text() {
        const std::size_t size = Number();
        m_nRead += size;
        return m_bytes.substr(m_nRead - size, size);
    }
    Files AllFiles() {
        Files files;
        for (std::uint64_t left = Number(); left > 0; --left) {
            std::string name = Text();
            files.emplace(std::move(name), Text());
        }
        return files;
    }

private:
    std::string m_bytes;
    std::size_t m_nRead = 0;
};

void PutRun(CAnswer& answer, const Run& run) {
    answer.Put(std::uint64_t{run.result.done});
    answer.Put(run.result.said);
    answer.Put(run.result.shown);
    for (const std::uint64_t count : run.counts) {
        answer.Put(count);
    }
    answer.Put(run.before);
    answer.Put(run.after);
    answer.Put(std::uint64_t{run.states.size()});
    for (const auto& [name, contents] : run.states) {
        answer.Put(name);
        answer.Put(std::uint64_t{contents.size()});
        for (const std::string& content : contents) {
            answer.Put(content);
        }
    }
}

Run TakeRun(CAnswer& answer) {
    Run run;
    run.result.done = answer.Number() != 0;
    run.result.said = answer.Text();
    run.result.shown = answer.Text();
    for (std::uint64_t& count : run.counts) {
        count = answer.Number();
    }
    run.before = answer.AllFiles();
    run.after = answer.AllFiles();
    for (std::uint64_t left = answer.Number(); left > 0; --left) {
        std::set<std::string>& contents = run.states[answer.Text()];
        for (std::uint64_t more = answer.Number(); more > 0; --more) {
            contents.insert(answer.Text());
        }
    }
    return run;
}

// --- One run, in a child

struct Child {
    std::string failure; // why there is no answer: a crash, with what it wrote
    std::string wrote;   // of one that ended itself, that alone
    std::string answer;
};

// What a process writes about its own end, without what only fills the page.
std::string EndOf(int file) {
    std::string text(16384, '\0');
    const ssize_t got = ::pread(file, text.data(), text.size(), 0);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return text.substr(0, 4000);
}

// What nobody catches shows where it was thrown.
void TellWhereItEnds() {
    Order({});
    if (__sanitizer_print_stack_trace != nullptr) {
        __sanitizer_print_stack_trace();
    }
    std::abort();
}

Child InChild(const Options& options, const std::function<std::string()>& work) {
    static const int errors = ::memfd_create("errors", 0);
    int ends[2];
    if (::ftruncate(errors, 0) != 0 || ::pipe(ends) != 0) {
        std::perror("fault_schedules");
        std::exit(2);
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::alarm(options.seconds);
        ::close(ends[0]);
        ::lseek(errors, 0, SEEK_SET);
        ::dup2(errors, STDERR_FILENO);
        std::set_terminate(TellWhereItEnds);
        const std::string answer = work();
        for (std::string_view left = answer; !left.empty();) {
            const ssize_t count = ::write(ends[1], left.data(), left.size());
            left.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : left.size());
        }
        ::_exit(0);
    }
    ::close(ends[1]);
    Child result;
    std::array<char, 65536> block;
    for (ssize_t got = 1; got > 0;) {
        got = ::read(ends[0], block.data(), block.size());
        result.answer.append(block.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) {
        result.failure = "hangs";
    } else if (WIFSIGNALED(status)) {
        result.failure = std::string("crashed: ") + ::strsignal(WTERMSIG(status)) + "\n" + EndOf(errors);
    } else if (WEXITSTATUS(status) != 0) {
        result.wrote = EndOf(errors);
        result.failure = "crashed, with status " + std::to_string(WEXITSTATUS(status)) + "\n" + result.wrote;
    }
    return result;
}

void Empty(const TestFolder& folder) {
    for (const std::string& name : folder.Names()) {
        std::filesystem::remove_all(folder.Path(name));
    }
}

Run RunOnce(const Scenario& scenario, const TestFolder& folder, const Schedule& schedule) {
    Run run;
    const auto see = [&](const Files& files) {
        for (const auto& [name, content] : files) {
            run.states[name].insert(content);
        }
    };
    run.before = FilesOf(folder);
    see(run.before);
    // Only what happens untouched tells which states are whole.
    const bool looks = schedule.form == Schedule::Form::None;
    Order(schedule, looks ? [&] { see(FilesOf(folder)); } : std::function<void()>());
    run.result = scenario.run(folder);
    run.counts = CountedSoFar();
    Order({});
    run.after = FilesOf(folder);
    see(run.after);
    return run;
}

std::size_t OpenFiles() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

// --- The rules

enum class End { Untouched, Failed, InSpite, ByLibrary, Broken };

struct Verdict {
    End end = End::Broken;
    std::string problem;
};

std::string Shortened(const std::string& text) {
    return text.size() < 300 ? text : text.substr(0, 300) + " ...";
}

std::string WrongFile(const Run& run, const Run& untouched, const Run* ended) {
    for (const auto& [name, content] : run.before) {
        if (!run.after.contains(name)) {
            return name + " is gone";
        }
    }
    for (const auto& [name, content] : run.after) {
        const auto states = untouched.states.find(name);
        const bool isThere = states != untouched.states.end();
        const bool isOfEnded =
            ended != nullptr && ended->after.contains(name) && ended->after.at(name) == content;
        if (!isOfEnded && !isThere) {
            return name + " should not be there";
        }
        if (!isOfEnded && !states->second.contains(content)) {
            return name + " holds half of it:\n" + Shortened(content);
        }
    }
    return {};
}

// `ended`: what is done where the file ends instead of failing; null where that counts for nothing.
Verdict Judge(const Scenario& scenario, const Schedule& schedule, const Run& run, const Run& untouched,
              const Run* ended) {
    const bool isTouched = run.counts[static_cast<std::size_t>(schedule.call)] >= schedule.number;
    if (const std::string wrong = WrongFile(run, untouched, ended); !wrong.empty()) {
        return {End::Broken, wrong};
    }
    const bool isSame =
        run.result == untouched.result && (scenario.holdsForTheRun || run.after == untouched.after);
    if (!isTouched) {
        return isSame ? Verdict{End::Untouched, {}}
                      : Verdict{End::Broken, "a run that passed untouched differs"};
    }
    if (isSame) {
        return {End::InSpite, {}};
    }
    if (ended != nullptr && run.result == ended->result && run.after == ended->after) {
        return {End::Failed, {}};
    }
    if (run.result.done) {
        return {End::Broken, "it did other than untouched, and said: " + run.result.said + "\n" +
                                 Shortened(run.result.shown)};
    }
    for (const Message& message : scenario.messages) {
        if (message.call == schedule.call && message.text == run.result.said) {
            return {End::Failed, {}};
        }
    }
    return {End::Broken, "it said: " + run.result.said};
}

// A run by a schedule, all that is to be seen behind it, and the same once more without failing calls.
Verdict TryOnce(const Scenario& scenario, const TestFolder& folder, const Schedule& schedule,
                const Run& untouched, const Run* ended) {
    Empty(folder);
    scenario.prepare(folder);
    const std::size_t openFiles = OpenFiles();
    const Run run = RunOnce(scenario, folder, schedule);
    Verdict verdict = Judge(scenario, schedule, run, untouched, ended);
    if (verdict.end == End::Broken) {
        return verdict;
    }
    if (OpenFiles() != openFiles) {
        return {End::Broken, "it left open files behind"};
    }
    if (verdict.end != End::Untouched) {
        const Run again = RunOnce(scenario, folder, {});
        if (again.result != untouched.result ||
            (!scenario.holdsForTheRun && again.after != untouched.after)) {
            return {End::Broken,
                    "it does not work again: " + again.result.said + "\n" + Shortened(again.result.shown)};
        }
    }
    if (__lsan_do_recoverable_leak_check != nullptr && __lsan_do_recoverable_leak_check() != 0) {
        return {End::Broken, "it leaves a leak\n" + EndOf(STDERR_FILENO)};
    }
    return verdict;
}

// --- A scenario

struct Row {
    std::uint64_t calls = 0;
    std::uint64_t runs = 0;
    std::uint64_t failed = 0;
    std::uint64_t inSpite = 0;
    std::uint64_t endedByLibrary = 0;
};

struct Outcome {
    std::array<Row, kCalls> rows;
    std::vector<std::string> problems;
};

class CTrial {
public:
    CTrial(const Scenario& scenario, const Options& options) : m_scenario(scenario), m_options(options) {}

    Outcome All() {
        const std::optional<Run> untouched = InOrder({});
        if (!untouched) {
            return std::move(m_outcome);
        }
        m_untouched = *untouched;
        if (!m_untouched.result.done) {
            Tell("untouched", m_untouched.result.said);
            return std::move(m_outcome);
        }
        for (std::size_t call = 0; call < kCalls; ++call) {
            m_outcome.rows[call].calls = m_untouched.counts[call];
        }
        for (const Call call : m_scenario.reaches) {
            if (m_untouched.counts[static_cast<std::size_t>(call)] == 0) {
                Tell(NameOf({call, Schedule::Form::None}), "no call of this kind was made");
            }
        }
        for (std::size_t call = 0; call < kCalls; ++call) {
            for (const Schedule::Form form : {Schedule::Form::Once, Schedule::Form::Rest}) {
                if (m_untouched.counts[call] > 0) {
                    FailEach(static_cast<Call>(call), form);
                }
            }
        }
        return std::move(m_outcome);
    }

private:
    static std::string NameOf(const Schedule& schedule) {
        return std::string(kCallNames[static_cast<std::size_t>(schedule.call)]) + " " +
               std::to_string(schedule.number) +
               (schedule.form == Schedule::Form::Rest ? " and all behind it" : "");
    }
    void Tell(const std::string& when, const std::string& problem) {
        m_outcome.problems.push_back(std::string(m_scenario.name) + ", " + when + ": " + problem);
        std::cerr << m_outcome.problems.back() << std::endl;
    }

    std::optional<Run> InOrder(const Schedule& schedule) {
        Child child = InChild(m_options, [&] {
            Empty(m_folder);
            m_scenario.prepare(m_folder);
            CAnswer answer;
            PutRun(answer, RunOnce(m_scenario, m_folder, schedule));
            return answer.Bytes();
        });
        if (!child.failure.empty()) {
            Tell(NameOf(schedule), child.failure);
            return std::nullopt;
        }
        CAnswer answer(std::move(child.answer));
        return TakeRun(answer);
    }

    void FailEach(Call call, Schedule::Form form) {
        Row& row = m_outcome.rows[static_cast<std::size_t>(call)];
        // Early calls are alike in all scenarios: the quick way goes through the others in even steps.
        const std::uint64_t step =
            m_options.quick && call == Call::Memory ? std::max<std::uint64_t>(1, row.calls / kQuickSteps) : 1;
        std::size_t broken = 0;
        for (std::uint64_t number = 1;; number += step) {
            const Schedule schedule{call, form, number};
            const Verdict verdict = FailOne(schedule);
            ++row.runs;
            row.failed += verdict.end == End::Failed ? 1 : 0;
            row.inSpite += verdict.end == End::InSpite ? 1 : 0;
            row.endedByLibrary += verdict.end == End::ByLibrary ? 1 : 0;
            if (verdict.end == End::Broken) {
                Tell(NameOf(schedule), verdict.problem);
                if (++broken == kMostBroken) {
                    Tell(NameOf(schedule), "no more of these is tried");
                    return;
                }
            }
            if (verdict.end == End::Untouched || number > 10 * row.calls + 1000) {
                return;
            }
        }
    }

    Verdict FailOne(const Schedule& schedule) {
        std::optional<Run> ended;
        if (m_scenario.endsLog && schedule.call == Call::Read) {
            Schedule ends = schedule;
            ends.endsFile = true;
            ended = InOrder(ends);
        }
        Child child = InChild(m_options, [&] {
            const Verdict verdict =
                TryOnce(m_scenario, m_folder, schedule, m_untouched, ended ? &*ended : nullptr);
            CAnswer answer;
            answer.Put(static_cast<std::uint64_t>(verdict.end));
            answer.Put(verdict.problem);
            return answer.Bytes();
        });
        if (!child.failure.empty()) {
            const std::string& ends = m_scenario.libraryEnds;
            const bool isItsEnd =
                !ends.empty() && schedule.call == Call::Memory && child.wrote.starts_with(ends);
            return isItsEnd && FilesOf(m_folder) == m_untouched.before ? Verdict{End::ByLibrary, {}}
                                                                       : Verdict{End::Broken, child.failure};
        }
        CAnswer answer(std::move(child.answer));
        const End end = static_cast<End>(answer.Number());
        return {end, answer.Text()};
    }

    static constexpr std::uint64_t kQuickSteps = 20;
    static constexpr std::size_t kMostBroken = 5;

    const Scenario& m_scenario;
    const Options& m_options;
    const TestFolder m_folder;
    Run m_untouched;
    Outcome m_outcome;
};

// --- All of them

// Each scenario in a process of its own, a few at a time.
std::vector<Outcome> TryAll(const std::vector<Scenario>& scenarios, const Options& options) {
    const TestFolder answers;
    std::map<pid_t, std::size_t> running;
    std::vector<Outcome> outcomes(scenarios.size());
    const auto end = [&] {
        int status = 0;
        const pid_t child = ::wait(&status);
        const auto found = running.find(child);
        Outcome& outcome = outcomes[found->second];
        if (status != 0) {
            outcome.problems.push_back(std::string(scenarios[found->second].name) +
                                       ": the trial itself failed");
        } else {
            CAnswer answer(answers.Read(std::to_string(found->second)));
            for (Row& row : outcome.rows) {
                row = {answer.Number(), answer.Number(), answer.Number(), answer.Number(), answer.Number()};
            }
            for (std::uint64_t left = answer.Number(); left > 0; --left) {
                outcome.problems.push_back(answer.Text());
            }
        }
        running.erase(found);
    };
    for (std::size_t i = 0; i < scenarios.size(); ++i) {
        if (running.size() == options.jobs) {
            end();
        }
        const pid_t child = ::fork();
        if (child == 0) {
            CAnswer answer;
            {
                CTrial trial(scenarios[i], options);
                const Outcome outcome = trial.All();
                std::uint64_t runs = 0;
                for (const Row& row : outcome.rows) {
                    for (const std::uint64_t number :
                         {row.calls, row.runs, row.failed, row.inSpite, row.endedByLibrary}) {
                        answer.Put(number);
                    }
                    runs += row.runs;
                }
                answer.Put(std::uint64_t{outcome.problems.size()});
                for (const std::string& problem : outcome.problems) {
                    answer.Put(problem);
                }
                if (!options.selfCheck) {
                    std::printf("%s: %llu runs, %zu problems\n", scenarios[i].name,
                                static_cast<unsigned long long>(runs), outcome.problems.size());
                }
            }
            answers.Write(std::to_string(i), answer.Bytes());
            std::fflush(stdout);
            ::_exit(0);
        }
        running.emplace(child, i);
    }
    while (!running.empty()) {
        end();
    }
    return outcomes;
}

// 1234567 as 1,234,567.
std::string Grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3; at -= 3) {
        text.insert(at - 3, 1, ',');
    }
    return text;
}

std::string Table(const std::vector<Scenario>& scenarios, const std::vector<Outcome>& outcomes) {
    std::ostringstream out;
    Row all;
    out << "| Scenario | Kind | Calls untouched | Runs | Failed cleanly | Passed in spite of it | Ended by a "
           "library |\n"
           "|---|---|--:|--:|--:|--:|--:|\n";
    const auto put = [&](const std::string& name, const char* kind, const Row& row) {
        out << "| " << name << " | " << kind << " | " << Grouped(row.calls) << " | " << Grouped(row.runs)
            << " | " << Grouped(row.failed) << " | " << Grouped(row.inSpite) << " | "
            << Grouped(row.endedByLibrary) << " |\n";
    };
    for (std::size_t i = 0; i < scenarios.size(); ++i) {
        std::string name = scenarios[i].name;
        for (std::size_t call = 0; call < kCalls; ++call) {
            const Row& row = outcomes[i].rows[call];
            if (row.calls > 0) {
                put(std::exchange(name, ""), kCallNames[call], row);
                all = {all.calls + row.calls, all.runs + row.runs, all.failed + row.failed,
                       all.inSpite + row.inSpite, all.endedByLibrary + row.endedByLibrary};
            }
        }
    }
    put("**all**", "", all);
    return out.str();
}

int TryScenarios(const Options& options) {
    std::vector<Scenario> scenarios = Scenarios();
    if (!options.only.empty()) {
        std::erase_if(scenarios, [&](const Scenario& one) { return one.name != options.only; });
    }
    const std::vector<Outcome> outcomes = TryAll(scenarios, options);
    const std::string table = Table(scenarios, outcomes);
    std::cout << table << std::flush;
    if (!options.table.empty()) {
        std::ofstream(options.table) << table;
    }
    std::size_t problems = 0;
    for (const Outcome& outcome : outcomes) {
        problems += outcome.problems.size();
    }
    if (problems > 0 || scenarios.empty()) {
        std::cerr << problems << " problems in " << scenarios.size() << " scenarios\n";
        return 1;
    }
    return 0;
}

// Every one must be found out, and that by its own rule.
int CheckSelf(Options options) {
    options.seconds = 5;
    bool holds = true;
    for (const BrokenScenario& broken : BrokenScenarios()) {
        if (!kSanitized && std::strcmp(broken.scenario.name, "leak") == 0) {
            std::cout << broken.scenario.name << ": only a sanitizer sees it\n";
            continue;
        }
        std::ostringstream hidden;
        std::streambuf* const shown = std::cerr.rdbuf(hidden.rdbuf());
        const Outcome outcome = std::move(TryAll({broken.scenario}, options).front());
        std::cerr.rdbuf(shown);
        const bool isFound =
            std::any_of(outcome.problems.begin(), outcome.problems.end(), [&](const std::string& problem) {
                return problem.find(broken.finding) != std::string::npos;
            });
        std::cout << broken.scenario.name << (isFound ? ": found\n" : ": NOT found\n");
        holds = holds && isFound;
    }
    return holds ? 0 : 1;
}

} // namespace

} // namespace carvelot::test

int main(int argc, char** argv) {
    using namespace carvelot::test;
    // The kernel clears huge pages as a whole: too dear for logs of a few lines.
    ::prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);
    Options options;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (argument == "--quick") {
            options.quick = true;
        } else if (argument == "--self-check") {
            options.selfCheck = true;
        } else if (argument == "--only" && hasValue) {
            options.only = arguments[++i];
        } else if (argument == "--table" && hasValue) {
            options.table = arguments[++i];
        } else if (argument == "--jobs" && hasValue) {
            options.jobs = static_cast<unsigned>(std::max(1, std::atoi(arguments[++i].c_str())));
        } else {
            std::cerr << "usage: fault_schedules [--quick] [--only NAME] [--jobs N] [--table FILE] "
                         "[--self-check]\n";
            return 2;
        }
    }
    std::cout << std::unitbuf;
    if (options.selfCheck && __sanitizer_set_report_fd != nullptr) {
        // What it finds is made on purpose, and stands in no file of findings.
        __sanitizer_set_report_fd(reinterpret_cast<void*>(STDERR_FILENO));
    }
    return options.selfCheck ? CheckSelf(options) : TryScenarios(options);
}
