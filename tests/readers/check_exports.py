#!/usr/bin/env python3
"""check_exports.py PROGRAMS PACKAGES LOG...: whether programs that read profiles show the numbers of the report.

PROGRAMS is the folder of carvelot-report and carvelot-make-log, PACKAGES one with the npm packages of package.json.
Each log, two generated ones of a megabyte and some small ones with odd names are exported in every format. What
callgrind_annotate, speedscope, two readers of the Trace Event format, a schema of it and a walk over collapsed stacks
find in the files has to be what `--explore --json` prints. Then each file is spoiled, and each of them has to see it.
"""

import collections
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

import jsonschema

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(os.path.dirname(HERE), "model"))
import explore_logs  # noqa: E402

ENDINGS = [".folded", ".speedscope.json", ".trace.json", ".callgrind"]
ODD_SEEDS = range(1, 9)
FOLDED_DEPTH = 500
MOST_SHOWN = 5

# Calls within calls as deep as in the generated logs make JSON of more than twice their depth.
sys.setrecursionlimit(20000)


# ------------------------------------------------------------------------------- what the report says

def shown_name(name):
    return name if name.strip(" ") else "(no name)"


class Frame:
    def __init__(self, row, frames):
        self.row = row
        self.parent = None if row["parent"] is None else frames[row["parent"]]
        self.name = shown_name(row["name"])
        self.key = row["kind"], self.name
        self.total = row["end"] - row["start"]


class Explored:
    """What `--explore --json` prints, grouped as the readers show it."""

    def __init__(self, text):
        value = json.loads(text)
        self.lines = value["lines"]["total"]
        self.frames = []
        for row in value["frames"]:
            self.frames.append(Frame(row, self.frames))
        self.streams = collections.defaultdict(list)
        for frame in self.frames:
            self.streams[frame.row["stream"]].append(frame)
        self.own = collections.Counter()
        self.total = {}
        for row in value["functions"]:
            key = row["kind"], shown_name(row["name"])
            self.own[key] += row["self"]
            self.total[key] = self.total.get(key, 0) + row["total"]
        self.recursive = set()
        for stream in self.streams.values():
            self.recursive |= {frame.key for frame in stream} - set(self.outermost(stream, "key")[1])

    @staticmethod
    def outermost(frames, what):
        """({key: [total outside of others of the key, self]}, the keys of which none stands in another)."""
        totals = collections.defaultdict(lambda: [0, 0])
        path = []
        on_path = collections.Counter()
        recursive = set()
        for frame in frames:
            while path and path[-1] is not frame.parent:
                on_path[getattr(path.pop(), what)] -= 1
            key = getattr(frame, what)
            if on_path[key]:
                recursive.add(key)
            totals[key][0] += 0 if on_path[key] else frame.total
            totals[key][1] += frame.row["self"]
            path.append(frame)
            on_path[key] += 1
        return totals, set(totals) - recursive

    def by_stream(self):
        """{(stream, kind, name): [total, self]}"""
        return {(stream, *key): pair for stream, frames in self.streams.items()
                for key, pair in self.outermost(frames, "key")[0].items()}

    def by_name(self):
        """{name: [total, self]}, with the streams as frames of their own."""
        out = collections.defaultdict(lambda: [0, 0])
        for stream, frames in self.streams.items():
            out[stream.replace(";", ":")][0] += sum(frame.total for frame in frames if frame.parent is None)
            for name, pair in self.outermost(frames, "name")[0].items():
                for at in (0, 1):
                    out[name.replace(";", ":")][at] += pair[at]
        return out

    def paths(self):
        out = collections.Counter()
        path_of = {}
        for frame in self.frames:
            above = path_of[frame.parent] if frame.parent else (frame.row["stream"].replace(";", ":"),)
            path_of[frame] = above + (frame.name.replace(";", ":"),) if len(above) <= FOLDED_DEPTH else above
            out[path_of[frame]] += frame.row["self"]
        return out

    def calls_in_circles(self):
        callers = collections.defaultdict(set)
        for frame in self.frames:
            callers[frame.key].add(frame.parent.key if frame.parent else None)
        done = {None}
        while callers:
            free = [key for key, its in callers.items() if its <= done]
            if not free:
                return True
            done |= set(free)
            for key in free:
                del callers[key]
        return False

    def is_deep(self):
        return max((len(path) for path in self.paths()), default=0) > FOLDED_DEPTH


def differences(wanted, found):
    """What differs between two tables, as lines."""
    out = []
    for key in sorted(set(wanted) | set(found), key=repr):
        if wanted.get(key) != found.get(key):
            out.append("%r: report %r, reader %r" % (key, wanted.get(key), found.get(key)))
    return out


# ------------------------------------------------------------------------------------- the readers

def annotated(path, inclusive):
    """({(kind, name): cost}, the total) as callgrind_annotate prints them."""
    printed = subprocess.run(["callgrind_annotate", "--threshold=100", "--show-percs=no",
                              "--inclusive=" + ("yes" if inclusive else "no"), path],
                             check=True, capture_output=True).stdout.decode("utf-8")
    out = collections.Counter()
    total = None
    in_functions = False
    for line in printed.split("\n"):
        found = re.fullmatch(r" *([0-9,]+|\.) (.*)", line, re.DOTALL)
        if line.endswith(" file:function"):
            in_functions = True
        elif found and found.group(2).startswith(" PROGRAM TOTALS") and not in_functions:
            total = int(found.group(1).replace(",", ""))
        elif found and in_functions and found.group(2).startswith(" "):
            kind, name = found.group(2)[1:].split(":", 1)
            out[kind, name] += int(found.group(1).replace(",", "").replace(".", "0"))
    return out, total


def annotate_shows_own_costs(explored, folder, shown):
    own, total = annotated(os.path.join(folder, "profile.callgrind"), False)
    own.pop(("(top)", "(top)"), None)
    return differences(explored.own, own) + differences({"total": sum(explored.own.values())}, {"total": total})


def annotate_shows_inclusive_costs(explored, folder, shown):
    costs = annotated(os.path.join(folder, "profile.callgrind"), True)[0]
    return differences({key: total for key, total in explored.total.items() if key not in explored.recursive},
                       {key: cost for key, cost in costs.items()
                        if key not in explored.recursive and key != ("(top)", "(top)")})


def speedscope_reads_callgrind(explored, folder, shown):
    """It makes stacks of the calls by spreading what a function costs over its callers, for which these must not call
    each other in a circle, and leaves out what is a ten thousandth of the whole."""
    if explored.calls_in_circles():
        return None
    wanted = {key: own for key, own in explored.own.items() if own}
    least = sum(wanted.values()) / 1000
    out = []
    for _, frames in shown["speedscope .callgrind"]:
        found = {(kind, name): own for kind, name, _, own in frames}
        for key in wanted:
            if wanted[key] > least and abs(wanted[key] - found.get(key, 0)) > least:
                out.append("%r: report %r, reader %r" % (key, wanted.get(key), found.get(key)))
    return out


def speedscope_reads_its_own(explored, folder, shown):
    found = {(stream, kind, name): [total, own] for stream, frames in shown["speedscope .speedscope.json"]
             for kind, name, total, own in frames}
    return differences(explored.by_stream(), found)


def speedscope_reads_folded(explored, folder, shown):
    if explored.is_deep():
        return None
    found = {name: [total, own] for _, frames in shown["speedscope .folded"] for _, name, total, own in frames}
    return differences({name: pair for name, pair in explored.by_name().items() if pair[0]}, found)


def speedscope_reads_trace(explored, folder, shown):
    """A frame bears its arguments in its name there. What takes no time is not shown to it."""
    found = {}
    for _, frames in shown["speedscope .trace.json"]:
        for _, name, total, own in frames:
            name, _, record = re.fullmatch(r'(.*) (\{"record":([0-9]+),"line":[0-9]+\})', name, re.DOTALL).groups()
            found[int(record)] = [name, total, own]
    return differences({frame.row["record"]: [frame.name, frame.total, frame.row["self"]] for frame in explored.frames
                        if frame.total}, found)


def process_of(stream):
    return "process:" + stream[len("thread:"):].split("/")[0] if stream.startswith("thread:") else "web tier"


def tracelib_reads_trace(explored, folder, shown):
    found = {record: [process, stream, name, kind, start, total]
             for process, stream, name, kind, start, total, record, line in shown["tracelib .trace.json"]}
    out = differences({frame.row["record"]: [process_of(frame.row["stream"]), frame.row["stream"], frame.name, frame.key[0],
                                             frame.row["start"], frame.total] for frame in explored.frames}, found)
    lines = [line for *_, line in sorted(shown["tracelib .trace.json"], key=lambda event: event[6])]
    if any(line > explored.lines for line in lines) or any(b <= a for a, b in zip(lines, lines[1:])):
        out.append("the lines do not rise with the records, or behind the log's last one: %r" % lines[:20])
    return out


def trace_model_reads_trace(explored, folder, shown):
    """A moment may stand in another one."""
    found = {record: [process, stream, name, kind, start, total, parent if total else None]
             for process, stream, name, kind, start, total, record, parent in shown["trace-model .trace.json"]}
    return differences({frame.row["record"]: [process_of(frame.row["stream"]), frame.row["stream"], frame.name, frame.key[0],
                                              frame.row["start"], frame.total,
                                              frame.parent.row["record"] if frame.parent and frame.total else None]
                        for frame in explored.frames}, found)


def problems_by_schema(schema, path):
    with open(schema, encoding="utf-8") as file:
        validator = jsonschema.Draft7Validator(json.load(file))
    validator.check_schema(validator.schema)
    with open(path, encoding="utf-8") as file:
        return ["%s: %s" % ("/".join(map(str, error.path)), error.message) for error in validator.iter_errors(json.load(file))]


def trace_schema_holds(explored, folder, shown):
    return problems_by_schema(os.path.join(HERE, "trace-event.schema.json"), os.path.join(folder, "profile.trace.json"))


def speedscope_schema_holds(explored, folder, shown):
    return problems_by_schema(shown["speedscope schema"], os.path.join(folder, "profile.speedscope.json"))


def stacks_are_the_paths(explored, folder, shown):
    found = collections.Counter()
    with open(os.path.join(folder, "profile.folded"), encoding="utf-8", newline="\n") as file:
        for line in file:
            path, cost = line[:-1].rsplit(" ", 1)
            found[tuple(path.split(";"))] += int(cost)
    return differences(explored.paths(), found)


# (reader, ending of what it reads, the check, what spoils the file for it)
CHECKS = [
    ("callgrind_annotate, own costs", ".callgrind", annotate_shows_own_costs, (r"\nfn=\([0-9]+\)\n0 ", r"\g<0>7")),
    ("callgrind_annotate, inclusive costs", ".callgrind", annotate_shows_inclusive_costs, (r"calls=[0-9]+ 0\n0 ", r"\g<0>7")),
    ("speedscope, .callgrind", ".callgrind", speedscope_reads_callgrind, (r"\nfn=\([0-9]+\)\n0 ", r"\g<0>7")),
    ("speedscope, .speedscope.json", ".speedscope.json", speedscope_reads_its_own, (r'\{"type":"C","frame":[0-9]+,"at":', r"\g<0>7")),
    ("speedscope, .folded", ".folded", speedscope_reads_folded, (r" (?=[0-9]+\n)", " 7")),
    ("speedscope, .trace.json", ".trace.json", speedscope_reads_trace, (r'"dur":', r"\g<0>7")),
    ("tracelib, .trace.json", ".trace.json", tracelib_reads_trace, (r'"ts":(?=[1-9])', r"\g<0>7")),
    ("trace-model, .trace.json", ".trace.json", trace_model_reads_trace, (r'"dur":', r"\g<0>7")),
    ("schema, .trace.json", ".trace.json", trace_schema_holds, (r'"line":', r'"lines":')),
    ("speedscope's schema, .speedscope.json", ".speedscope.json", speedscope_schema_holds, (r'"type":"O"', '"type":"o"')),
    ("stacks, .folded", ".folded", stacks_are_the_paths, (r";", r";x")),
]


def check(reader, explored, folder, shown):
    """What a reader shows differently, as lines; None where it isn't asked about such a log."""
    for name, seen in shown.items():
        if isinstance(seen, dict) and name == "%s %s" % tuple(reader[0].split(", ")):
            return ["refused: " + seen["refused"]]
    try:
        return reader[2](explored, folder, shown)
    except (ValueError, KeyError, TypeError, AttributeError, subprocess.CalledProcessError) as error:
        return ["%s: %s" % (type(error).__name__, error)]


# ------------------------------------------------------------------------------------------ the run

class Run:
    def __init__(self, programs, packages, folder):
        self.make_log = os.path.join(programs, "carvelot-make-log")
        self.packages = packages
        self.folder = folder
        # A log of another tongue has no frame to compare without its dialect.
        self.report = [os.path.join(programs, "carvelot-report"), "--dialect", "auto"]
        self.passed = self.failed = self.skipped = 0

    def made_logs(self):
        """The generated logs: large ones, and small ones of what is rare."""
        out = []
        for kind in ("debug", "jas"):
            out.append(os.path.join(self.folder, "generated-%s.log" % kind))
            with open(out[-1], "wb") as file:
                subprocess.run([self.make_log, kind, "1"], check=True, stdout=file)
        for seed in ODD_SEEDS:
            out.append(os.path.join(self.folder, "odd-%d.log" % seed))
            with open(out[-1], "wb") as file:
                file.write(explore_logs.make(seed))
        return out

    def export(self, log):
        """(what the report prints, a folder with the log's profiles)"""
        folder = tempfile.mkdtemp(dir=self.folder)
        for ending in ENDINGS:
            subprocess.run(self.report + ["--export-profile", os.path.join(folder, "profile" + ending), log], check=True)
        printed = subprocess.run(self.report + ["--explore", "--json", log], check=True, stdout=subprocess.PIPE).stdout
        return Explored(printed), folder

    def shown(self, folders):
        """What the npm packages show of each folder."""
        printed = subprocess.run(["node", "--max-old-space-size=2000", os.path.join(HERE, "read.mjs"), self.packages] + folders,
                                 check=True, stdout=subprocess.PIPE).stdout
        return [json.loads(line) for line in printed.splitlines()]

    def result(self, what, problems):
        if problems is None:
            self.skipped += 1
        elif problems:
            self.failed += 1
            print("%s:" % what)
            for line in problems[:MOST_SHOWN]:
                print("  " + line[:300])
        else:
            self.passed += 1

    def check_logs(self, logs):
        exported = [self.export(log) for log in logs]
        for log, (explored, folder), shown in zip(logs, exported, self.shown([folder for _, folder in exported])):
            for reader in CHECKS:
                self.result("%s, %s" % (os.path.basename(log), reader[0]), check(reader, explored, folder, shown))
        frames = sum(len(explored.frames) for explored, _ in exported)
        print("%d logs with %d frames and %d recursive functions in 4 formats" %
              (len(logs), frames, sum(len(explored.recursive) for explored, _ in exported)))
        return exported

    def check_spoiled(self, explored, folder):
        """A reader that sees nothing in a spoiled file checks nothing."""
        spoiled = []
        for _, ending, _, (pattern, put) in CHECKS:
            spoiled.append(shutil.copytree(folder, tempfile.mkdtemp(dir=self.folder), dirs_exist_ok=True))
            path = os.path.join(spoiled[-1], "profile" + ending)
            with open(path, encoding="utf-8", newline="\n") as file:
                text, count = re.subn(pattern, put, file.read(), count=1)
            assert count == 1, (ending, pattern)
            with open(path, "w", encoding="utf-8", newline="\n") as file:
                file.write(text)
        for reader, where, shown in zip(CHECKS, spoiled, self.shown(spoiled)):
            found = check(reader, explored, where, shown)
            self.result("spoiled for %s" % reader[0], [] if found else ["nothing was seen"])
            if found:
                print("spoiled for %s: seen, %s" % (reader[0], found[0][:120]))


def main(programs, packages, *logs):
    with tempfile.TemporaryDirectory(prefix="carvelot-readers-") as folder:
        run = Run(programs, packages, folder)
        exported = run.check_logs(list(logs) + run.made_logs())
        run.check_spoiled(*exported[0])
    print("%d passed, %d failed, %d skipped" % (run.passed, run.failed, run.skipped))
    return 1 if run.failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
