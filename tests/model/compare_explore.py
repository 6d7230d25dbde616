#!/usr/bin/env python3
"""Compares what carvelot-report explores in a log with the model of it, over many random logs.

Usage: compare_explore.py REPORT_EXE [--batch EXE] [--odd] [--seeds A-B] [--jobs N] [--keep DIR] [LOG ...]

Each seed makes one log (explore_logs.py, with --odd odd_logs.py) and says how it is read. The whole log, its scopes, ranges of its clock,
the comparison with the log of another seed and all four exports must agree: exactly and in order, but for the order
of a file's entries. LOG arguments are explored instead of random logs. --batch names the program that makes many
runs of the report without a start for each. Exits with 1 when anything differs; --keep leaves each log that differed
in DIR.
"""

import argparse
import collections
import json
import os
import re
import subprocess
import sys
import tempfile

import carvelot_model as model
import explore_logs
import explore_model
import odd_logs
import report_runs

ENDINGS = [".folded", ".speedscope.json", ".trace.json", ".callgrind"]
MOST_SCOPES = 4

# Calls within calls as deep as in the generated logs make JSON of more than twice their depth.
sys.setrecursionlimit(20000)


# ---------------------------------------------------------------------------------------- what was written

class Unreadable(Exception):
    """Why a file isn't what its form says."""


def read_folded(text):
    """{path: self time}"""
    out = {}
    for line in text.split("\n")[:-1]:
        found = re.fullmatch("(.*) ([0-9]+)", line, re.DOTALL)
        if found is None:
            raise Unreadable("no path and number: %r" % line[:120])
        if found.group(1) in out:
            raise Unreadable("a path twice: %r" % found.group(1)[:120])
        out[found.group(1)] = int(found.group(2))
    if text and not text.endswith("\n"):
        raise Unreadable("the last line has no end")
    return out


def read_speedscope(text):
    """{profile: {name: [total outside of others of the name, self]}} of evented profiles."""
    file = json.loads(text)
    if file.get("$schema") != "https://www.speedscope.app/file-format-schema.json":
        raise Unreadable("its schema is %r" % file.get("$schema"))
    names = [frame["name"] for frame in file["shared"]["frames"]]
    out = {}
    for profile in file["profiles"]:
        if (profile["type"], profile["unit"]) != ("evented", "microseconds"):
            raise Unreadable("a profile of another type or unit: %r" % profile["name"])
        if profile["name"] in out:
            raise Unreadable("a profile twice: %r" % profile["name"])
        totals = collections.defaultdict(lambda: [0, 0])
        stack = []
        on_stack = collections.Counter()
        now = profile["startValue"]
        for event in profile["events"]:
            if event["at"] < now:
                raise Unreadable("an event ahead of the one before it in %r" % profile["name"])
            if stack:
                totals[names[stack[-1][0]]][1] += event["at"] - now
            now = event["at"]
            name = names[event["frame"]]
            if event["type"] == "O":
                stack.append((event["frame"], now))
                on_stack[name] += 1
                totals[name][0] += 0
                continue
            if not stack or stack[-1][0] != event["frame"]:
                raise Unreadable("a frame ends that is not on top in %r" % profile["name"])
            on_stack[name] -= 1
            start = stack.pop()[1]
            totals[name][0] += now - start if on_stack[name] == 0 else 0
        if stack or now > profile["endValue"]:
            raise Unreadable("a frame has no end, or one behind the profile's: %r" % profile["name"])
        if totals:
            out[profile["name"]] = dict(totals)
    return out


def read_trace(text):
    """[[process, thread, name, start, duration, record, line]], sorted. Each thread that has events bears a name."""
    file = json.loads(text)
    events = file["traceEvents"] if isinstance(file, dict) else file
    out = []
    named = collections.defaultdict(set)
    for event in events:
        if event["ph"] == "M":
            named[event["name"]].add((event["pid"], event["tid"]) if event["name"] == "thread_name" else event["pid"])
        elif event["ph"] == "X":
            args = event["args"]
            out.append([event["pid"], event["tid"], event["name"], event["ts"], event["dur"], args["record"], args["line"]])
        else:
            raise Unreadable("an event %r" % event["ph"])
    for process, thread, *_ in out:
        if (process, thread) not in named["thread_name"] or process not in named["process_name"]:
            raise Unreadable("process %r or its thread %r bears no name" % (process, thread))
    return sorted(out)


class CallgrindReader:
    """The self costs of functions and the inclusive costs of calls, as the profile format says them."""

    def __init__(self, text):
        self.names = {"file": {}, "function": {}}
        self.own = collections.defaultdict(int)
        self.calls = collections.defaultdict(lambda: [0, 0])
        self.events = None
        file = caller = callee_file = callee = count = None
        for line in text.split("\n"):
            key, equals, value = line.partition("=")
            if line.startswith("events:"):
                self.events = line[7:].split()
            elif equals and key == "fl":
                file = callee_file = self.name("file", value)
            elif equals and key == "fn":
                caller = file, self.name("function", value)
                self.own[caller] += 0
                callee_file = file
            elif equals and key in ("cfi", "cfl"):
                callee_file = self.name("file", value)
            elif equals and key == "cfn":
                callee = callee_file, self.name("function", value)
            elif equals and key == "calls":
                count = int(value.split()[0])
            elif re.fullmatch(r"[0-9+*-][0-9]*( [0-9]+)?", line):
                cost = int(line.split()[1]) if " " in line else 0
                if count is None:
                    self.own[caller] += cost
                else:
                    edge = self.calls[caller, callee]
                    edge[0] += count
                    edge[1] += cost
                    count = None
                    callee_file = file
        if self.events != ["us"]:
            raise Unreadable("its events are %r" % self.events)

    def name(self, kind, text):
        """A name that a number may stand for."""
        found = re.fullmatch(r"\(([0-9]+)\)(?: (.*))?", text)
        if found is None:
            return text
        if found.group(2) is not None:
            self.names[kind][found.group(1)] = found.group(2)
        if found.group(1) not in self.names[kind]:
            raise Unreadable("no name for %r" % text)
        return self.names[kind][found.group(1)]


def read_callgrind(text):
    """[[kind, name, self]] and [[caller, callee, calls, inclusive]], sorted; what cost nothing is left out."""
    file = CallgrindReader(text)
    return costs_listed(file.own, file.calls)


def costs_listed(own, calls):
    return {"self": sorted([kind, name, cost] for (kind, name), cost in own.items() if cost),
            "calls": sorted([list(caller), list(callee), *pair] for (caller, callee), pair in calls.items() if pair[1])}


READERS = dict(zip(ENDINGS, [read_folded, read_speedscope, read_trace, read_callgrind]))


def export_of(profile, ending):
    """What READERS find in an export of this profile."""
    if ending == ".folded":
        return explore_model.folded_paths(profile)
    if ending == ".speedscope.json":
        return {stream: {name: list(pair) for name, pair in totals.items()}
                for stream, totals in explore_model.stream_totals(profile).items()}
    if ending == ".trace.json":
        return sorted(list(event) for event in explore_model.trace_events(profile))
    return costs_listed(*explore_model.callgrind_costs(profile))


def without_zeros(paths):
    """A path that took no time may stand in a file or not."""
    return {path: cost for path, cost in paths.items() if cost}


# ------------------------------------------------------------------------------------------------- running

def decimal_seconds(micros):
    """In the shortest form."""
    return ("%d.%06d" % divmod(micros, 1000000)).rstrip("0").rstrip(".")


def comparable(value):
    """What the program printed, without the sentences of its findings and with its tree as a list."""
    if isinstance(value, dict) and isinstance(value.get("tree"), list):
        value["tree"] = [[depth, node] for depth, node in explore_model.flat_tree(value["tree"])]
        for finding in value["findings"]:
            if "text" in finding and isinstance(finding["text"], str) and finding["text"].strip():
                del finding["text"]
            else:
                finding["text"] = "no sentence"
    return value


class Comparison:
    def __init__(self, runner, folder, make=explore_logs.make):
        self.runner = runner
        self.folder = folder
        self.make = make
        self.runs = 0

    # ---- the model's side

    def explored(self, data, path, loading):
        """What the model finds, or the message that the user would see."""
        threshold, process, caches = loading
        session = explore_model.ExploredSession(float(threshold or "1.0"), int(process or 0), caches)
        session.path = path
        try:
            session.load_bytes(data)
        except model.LogError as error:
            return str(error)
        return explore_model.Explored(session)

    def expected(self, explored, base, run):
        """(status, message, what is printed or written)"""
        where = run.get("scope"), run.get("from"), run.get("to")
        try:
            for side in (base, explored):
                if isinstance(side, str):
                    raise model.LogError(side)
            if base is not None:
                return 0, "", explore_model.comparison_json(base, explored, *where)
            if "export" in run:
                return 0, "", export_of(explore_model.profile_of_scope(explored, *where), run["export"])
            wanted = explore_model.explore_json(explored, *where)
            wanted["tree"] = [[depth, node] for depth, node in explore_model.flat_tree(wanted["tree"])]
            return 0, "", wanted
        except model.LogError as error:
            return 1, str(error), None

    # ---- the program's side

    def arguments(self, path, loading, run):
        """How the program is asked for a run."""
        threshold, process, caches = loading
        if "export" in run:
            out = ["--export-profile", self.export_path(run)]
        else:
            out = ["--compare", run["base"]] if "base" in run else ["--explore"]
            out.append("--json")
        if "scope" in run:
            out += ["--scope", run["scope"]]
        for key in ("from", "to"):
            if key in run:
                out += ["--" + key, decimal_seconds(run[key])]
        if threshold is not None:
            out += ["--threshold", threshold]
        if process is not None:
            out += ["--process", process]
        if not caches:
            out.append("--no-cache-analysis")
        return out + [path]

    def export_path(self, run):
        return os.path.join(self.folder, "profile" + run["export"])

    def written(self, run):
        with open(self.export_path(run), "rb") as stream:
            text = stream.read().decode("utf-8").replace(os.linesep, "\n")
        return READERS[run["export"]](text)

    def run(self, path, loading, explored, base, run):
        """The differences of one run, as lines."""
        self.runs += 1
        arguments = self.arguments(path, loading, run)
        status, message, wanted = self.expected(explored, base, run)
        exports = "export" in run
        if exports and os.path.exists(self.export_path(run)):
            os.remove(self.export_path(run))
        out = []
        try:
            given, printed, said = self.runner.run(arguments)
            said = said.decode("utf-8").strip()
            if given != status:
                out.append("exit status: model %d, program %d %s" % (status, given, said[:200]))
            elif status != 0:
                if said != message:
                    out.append("message: model %r, program %r" % (message, said))
                if printed:
                    out.append("something on standard output beside a failure: %r" % printed[:80])
                if exports and os.path.exists(self.export_path(run)):
                    out.append("a file was written beside a failure")
            else:
                found = self.written(run) if exports else comparable(json.loads(printed.decode("utf-8")))
                if exports and run["export"] == ".folded":
                    wanted, found = without_zeros(wanted), without_zeros(found)
                report_runs.differences(wanted, found, "", False, out)
        except subprocess.TimeoutExpired:
            out.append("no answer within two minutes")
        except (OSError, ValueError, KeyError, TypeError, IndexError, Unreadable) as error:
            out.append("can't be read: %s: %s" % (type(error).__name__, error))
        shown = " ".join(repr(a) if not a.isascii() or " " in a else a for a in arguments)
        return ["with %s:" % shown] + ["  " + line for line in out] if out else []

    # ---- what is asked

    def range_of(self, explored, rng):
        """Ends of a range, each at or beside an edge of a frame, anywhere, or open."""
        edges = [0, explored.length, explored.length + 1]
        for _ in range(3):
            if explored.frames:
                frame = rng.choice(explored.frames)
                edges += [frame.start, frame.end, frame.start + 1, frame.end + 1]
        edges.append(rng.randint(0, explored.length))
        out = {}
        for key in rng.choice([("from",), ("to",), ("from", "to"), ("from", "to")]):
            out[key] = max(0, rng.choice(edges))
        if len(out) == 2 and out["from"] > out["to"] and rng.random() < 0.8:
            out["from"], out["to"] = out["to"], out["from"]
        return out

    def asked(self, explored, rng):
        """The runs over one log but for the comparisons."""
        if isinstance(explored, str):
            return [{}, {"export": rng.choice(ENDINGS)}]
        scopes = report_runs.scopes(explored.session, rng)
        some = [scopes[0]] + rng.sample(scopes[1:], min(MOST_SCOPES, len(scopes) - 1))
        out = [{}] + [{"scope": scope} for scope in some] + [self.range_of(explored, rng) for _ in range(3)]
        out.append(dict(self.range_of(explored, rng), scope=rng.choice(some)))
        for ending in ENDINGS:
            out.append({"export": ending})
        out.append(dict(self.range_of(explored, rng), export=rng.choice(ENDINGS), scope=rng.choice(some)))
        return out

    def check(self, data, path, rng):
        """The differences of all runs over one log, as lines."""
        made = re.fullmatch(r"made-(\d+)\.log", os.path.basename(path))
        loading = explore_logs.loading(int(made.group(1))) if made else (None, None, True)
        explored = self.explored(data, path, loading)
        found = []
        for run in self.asked(explored, rng):
            found += self.run(path, loading, explored, None, run)
        found += self.run(path, loading, explored, explored, {"base": path})
        if made:
            other = os.path.join(self.folder, "base.log")
            # Mostly one that shares scopes and names.
            base_data = self.make(int(made.group(1)) + rng.choice([1, 3, 3, 6]))
            with open(other, "wb") as stream:
                stream.write(base_data)
            base = self.explored(base_data, other, loading)
            runs = [{}]
            for side in (explored, base):
                if not isinstance(side, str):
                    runs.append(dict(self.range_of(side, rng), scope=rng.choice(report_runs.scopes(side.session, rng))))
            for run in runs:
                found += self.run(path, loading, explored, base, dict(run, base=other))
        return found

    def refused(self):
        """What the program has to refuse."""
        path = os.path.join(self.folder, "small.log")
        with open(path, "wb") as stream:
            stream.write(b"Sep 22 12:00:00 ** 1/2 \tEntering JDB_InitUser\n")
        out = []
        for name in ("x.txt", "x", "folded", "x.json", "x.folded.bak"):
            target = os.path.join(self.folder, name)
            status, printed, said = self.runner.run(["--export-profile", target, path])
            said = said.decode("utf-8", "replace")
            if status != 1 or printed or any(ending not in said for ending in ENDINGS) or len(said.splitlines()) != 1:
                out.append("export to %s: status 1 and one line that names the four endings were expected, "
                           "%d and %r given" % (name, status, said))
            if os.path.exists(target):
                out.append("export to %s: a file was written" % name)
        return out


def comparison_of(options, folder):
    runner = (report_runs.Batch if options.batch else report_runs.Program)(os.path.abspath(options.batch or options.program))
    return Comparison(runner, folder, odd_logs.make if options.odd else explore_logs.make)


def compare_all(options, sources):
    """(source, differences) of each log, and behind the last the number of runs."""
    with tempfile.TemporaryDirectory(prefix="carvelot-explore-") as folder:
        comparison = comparison_of(options, folder)
        found = [(source, report_runs.compare_log(comparison, source, comparison.make, "made", options.keep))
                 for source in sources]
        comparison.runner.close()
        return [pair for pair in found if pair[1]], comparison.runs


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program")
    parser.add_argument("logs", nargs="*")
    parser.add_argument("--batch", metavar="EXE")
    parser.add_argument("--odd", action="store_true")
    parser.add_argument("--seeds", default="1-200", metavar="A-B")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--keep", metavar="DIR")
    options = parser.parse_args()
    different = 0
    if not options.logs:
        with tempfile.TemporaryDirectory(prefix="carvelot-explore-") as folder:
            comparison = comparison_of(options, folder)
            for line in comparison.refused():
                print("usage: " + line)
                different += 1
            comparison.runner.close()
    return report_runs.compare_pieces(compare_all, options, options.logs or report_runs.seeds(options.seeds), different)


if __name__ == "__main__":
    sys.exit(main())
