#!/usr/bin/env python3
"""coverage_section.py SOURCE GCOVR [--quick]: what gcovr has counted (GCOVR, its JSON) as a section on standard output.

A row a room of cmake/Layers.cmake: lines and branches, how many of them ran, and what is not covered with its reason.
The reasons stand in strength/uncovered.txt of SOURCE:

    src/platform/posix/Threads.cpp
        Start: the system refuses a thread, which strength/faults makes it do

A line without an indent is a source; one with is a function that has lines which did not run, or several with commas between
them, and the reason of all of those. A reason goes on in lines with twice the indent. A name is what stands before the
arguments, with its class (`CFoo::Read`); lambdas are of the function around them. `*` stands for all functions of a
source that no line names, and a `?` behind a name for one whose lines run on some machines, or at some times, and not on others.

Ends with 1, and names on standard error what it is, if a share is less than what has to hold, if lines of a function did
not run and no reason is told, if a reason is told of a function all of whose lines ran, or if the file can't be read.
--quick: the tests that have no window alone have run. What they leave out has other tests, so that no reason is asked for.
"""

import collections
import json
import os
import re
import sys

ROOM = re.compile(r'^ *"([^"|]+)\|[^"|]*\|[^"|]*"', re.M)
REASONS = "strength/uncovered.txt"
INDENT = "    "
# What has to hold: of lines and branches in percent.
LEAST = {
    "below ui": {"lines": 97.0, "branches": 90.0},
    "ui": {"lines": 90.0, "branches": 0.0},
}
LEAST_QUICK = {"below ui": {"lines": 96.0, "branches": 88.0}}

Reason = collections.namedtuple("Reason", "source functions maybe text line")


class Count:
    """Lines and branches, and how many of them ran."""

    def __init__(self):
        self.there = {"lines": 0, "branches": 0}
        self.ran = {"lines": 0, "branches": 0}

    def add(self, kind, count):
        self.there[kind] += 1
        self.ran[kind] += count > 0

    def join(self, other):
        for kind in self.there:
            self.there[kind] += other.there[kind]
            self.ran[kind] += other.ran[kind]

    def share(self, kind):
        return 100.0 * self.ran[kind] / self.there[kind] if self.there[kind] else 100.0

    def cells(self):
        return ["%s | %s | %s" % (grouped(self.there[kind]), grouped(self.ran[kind]), percent(self.share(kind)))
                for kind in ("lines", "branches")]


def grouped(number):
    return format(number, ",")


def percent(share):
    """Rounded down, so that no share looks like one that holds and does not."""
    return "%.2f" % (int(share * 100 + 1e-9) / 100)


def without_brackets(name, opening, closing):
    """The name without what stands in brackets, these too. The ones of operators stay."""
    kept, depth, place = [], 0, 0
    while place < len(name):
        operator = re.match(r"operator(?:<=>|<<=|>>=|<<|>>|<=|>=|->\*?|<|>|\(\))", name[place:])
        if operator and depth == 0:
            kept.append(operator[0])
            place += len(operator[0])
            continue
        letter = name[place]
        place += 1
        if letter == opening:
            depth += 1
        elif letter == closing:
            depth -= 1
        elif depth == 0:
            kept.append(letter)
    return "".join(kept)


def short_name(name):
    """`std::vector<int> (anonymous namespace)::CFoo::Read<int>(int) const::{lambda()#1}` is CFoo::Read."""
    name = name.replace("(anonymous namespace)::", "").replace("[abi:cxx11]", "")
    name = re.split(r"(?:::)?\{lambda", name)[0]
    name = without_brackets(name, "<", ">")
    # What a function has inside stands behind its arguments.
    arguments = re.search(r"(?<!operator)\((?!\)\()", name.replace("operator()", "operator\0\0"))
    if arguments:
        name = name[:arguments.start()]
    conversion = re.search(r"\S*\boperator [^(]*$", name)
    name = conversion[0] if conversion else (name.split() or [""])[-1]
    # Namespaces have small letters.
    return re.sub(r"^(?:[a-z]\w*::)+(?=[A-Z~]|operator)", "", name)


def rooms(source):
    with open(os.path.join(source, "cmake/Layers.cmake"), encoding="utf-8") as file:
        return [name.strip() for name in ROOM.findall(file.read())]


def room_of(path, names):
    """The room whose folder a source stands in: that with the longest name."""
    inside = [name for name in names if path.startswith("src/" + name + "/")]
    return max(inside, key=len) if inside else None


def read_gcovr(path):
    with open(path, encoding="utf-8") as file:
        return [entry for entry in json.load(file)["files"] if entry["file"].startswith("src/")]


def uncovered(entry):
    """{function: lines of it that did not run} of a source. A function begins at its first line and ends ahead of the next."""
    begins = sorted((function["lineno"], short_name(function["name"])) for function in entry["functions"]
                    if not re.match(r"_GLOBAL__|__static_initialization", function["name"]))
    missing = collections.Counter()
    for line in entry["lines"]:
        if line["gcovr/noncode"] or line["gcovr/excluded"] or line["count"]:
            continue
        name = ""
        for first, function in begins:
            if first > line["line_number"]:
                break
            name = function or name
        missing[name] += 1
    return dict(missing)


def read_reasons(path, complain):
    """The reasons in the order of the file. What is no reason is complained about with its line."""
    entries, source = [], None  # (source, line, what it says with the lines that go on)
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            line = line.rstrip()
            if not line or line.startswith("#"):
                continue
            if line.startswith(INDENT * 2) and entries and entries[-1][0] == source:
                entries[-1][2] += " " + line.strip()
            elif not line.startswith(" "):
                source = line
            else:
                entries.append([source, number, line])
    reasons = []
    for source, number, line in entries:
        entry = re.match(INDENT + r"(\S.*?): +(\S.*)$", line)
        if entry is None or source is None:
            complain("%s:%d: neither a source nor a function with its reason" % (REASONS, number))
            continue
        names = [name.strip() for name in entry[1].split(", ")]
        reasons.append(Reason(source, [name.rstrip("?") for name in names],
                              {name.rstrip("?") for name in names if name.endswith("?")}, entry[2], number))
    return reasons


def compare(missing, reasons, complain):
    """What is told of each reason: [(source, functions, lines, text)]. Complains where lines and reasons do not match."""
    told = {}
    for reason in reasons:
        for function in reason.functions:
            if told.setdefault((reason.source, function), reason) is not reason:
                complain("%s:%d: %s: a second reason for %s" % (REASONS, reason.line, reason.source, function))
    lines = {}
    for source, functions in sorted(missing.items()):
        for function, count in sorted(functions.items()):
            key = (source, function) if (source, function) in told else (source, "*")
            if key in told:
                lines.setdefault(key, []).append((function, count))
            else:
                complain("%s: %s of %s did not run, and %s has no reason"
                         % (source, "a line" if count == 1 else "%d lines" % count, function or "no function", REASONS))
    rows = []
    for reason in reasons:
        found = []
        for function in reason.functions:
            there = lines.get((reason.source, function), [])
            if not there and function not in reason.maybe:
                complain("%s:%d: %s: all lines of %s ran, so that it needs no reason"
                         % (REASONS, reason.line, reason.source, "all functions" if function == "*" else function))
            found += there
        if found:
            rows.append((reason.source, [name for name, _ in found], sum(count for _, count in found), reason.text))
    return sorted(rows)


def check_shares(totals, least, complain):
    for name, limits in least.items():
        for kind, limit in limits.items():
            share = totals[name].share(kind)
            if share < limit:
                complain("%s: %s %% of the %s ran, which is less than %g %%" % (name, percent(share), kind, limit))


def section(names, counts, totals, rows, quick):
    """The section's lines."""
    least = LEAST_QUICK if quick else LEAST
    yield "## What the tests run"
    yield ""
    if quick:
        yield ("Lines and branches that the quicker tests of what has no window run (`core_tests` alone; the whole run of this part "
               "counts those of the windows, of failing disks and of the programs too).")
    else:
        yield "Lines and branches that the tests run, room by room; each test compares values, none is there to run lines."
    yield ("The compiler counts them in a build without optimisation. Left out are branches by which an exception leaves a call: "
           "the compiler puts one behind nearly every call, no line of the source stands for it, and what happens when calls and "
           "allocations fail is tried one by one by `strength/faults`. What is for Windows alone (`platform/windows/`) is not compiled "
           "here: its tests run under Wine. Nor is counted what runs only in comparisons with the model, in made-up inputs and in the "
           "tests that repeat with logs of a million lines what others do with short ones.")
    titles = {"below ui": "below `ui/`", "ui": "`ui/`"}
    limits = ["%s %g %% of the lines" % (titles[name], limit["lines"]) +
              (" and %g %% of the branches" % limit["branches"] if limit["branches"] else "") for name, limit in least.items()]
    yield "Less than this fails: %s." % ", ".join(limits)
    yield ""
    yield "| Room | Lines | ran | % | Branches | ran | % |"
    yield "|---|--:|--:|--:|--:|--:|--:|"
    for name in names:
        if name in counts:
            yield "| `%s/` | %s |" % (name, " | ".join(counts[name].cells()))
    for name, title in titles.items():
        if name in totals and totals[name].there["lines"]:
            yield "| **%s** | %s |" % (title, " | ".join(totals[name].cells()))
    if quick:
        return
    yield ""
    yield "What is left, %s lines, and why:" % grouped(sum(row[2] for row in rows))
    yield ""
    yield "| Source | Function | Lines | Why no test runs them |"
    yield "|---|---|--:|---|"
    earlier = None
    for source, functions, count, text in rows:
        shown = "" if source == earlier else "`%s`" % source[len("src/"):]
        functions = ", ".join("`%s`" % (name or "-") for name in functions)
        yield "| %s | %s | %d | %s |" % (shown, functions, count, text.replace("|", "\\|"))
        earlier = source


def main(arguments):
    quick = "--quick" in arguments
    source, gcovr = [argument for argument in arguments if argument != "--quick"]
    complaints = []
    names = rooms(source)
    counts, totals, missing = {}, {"below ui": Count(), "ui": Count()}, {}
    for entry in read_gcovr(gcovr):
        room = room_of(entry["file"], names)
        if room is None:
            complaints.append("%s stands in no room of cmake/Layers.cmake" % entry["file"])
            continue
        count = Count()
        for line in entry["lines"]:
            if not line["gcovr/noncode"] and not line["gcovr/excluded"]:
                count.add("lines", line["count"])
                for branch in line["branches"]:
                    count.add("branches", branch["count"])
        counts.setdefault(room, Count()).join(count)
        totals["ui" if room.startswith("ui/") else "below ui"].join(count)
        functions = uncovered(entry)
        if functions:
            missing[entry["file"]] = functions
    for name in LEAST_QUICK if quick else LEAST:
        if not totals[name].there["lines"]:
            complaints.append("%s: nothing was counted" % name)
    check_shares(totals, LEAST_QUICK if quick else LEAST, complaints.append)

    reasons = read_reasons(os.path.join(source, REASONS), complaints.append)
    for reason in reasons:
        if not os.path.isfile(os.path.join(source, reason.source)):
            complaints.append("%s:%d: there is no %s" % (REASONS, reason.line, reason.source))
    rows = [] if quick else compare(missing, reasons, complaints.append)
    for line in section(names, counts, totals, rows, quick):
        print(line)
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
