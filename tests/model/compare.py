#!/usr/bin/env python3
"""Compares carvelot-report with the reference model over many random logs, field by field.

Usage: compare.py REPORT_EXE [--batch EXE] [--near] [--seeds A-B] [--jobs N] [--keep DIR] [LOG ...]

Each seed makes one log, odd (odd_logs.py) or with --near one of near misses (near_misses.py), which is read
with two sets of options chosen by the seed, one of them mostly with a process filter. For each set exit
status, message, every field of the JSON, the trees of all scopes, a search and an export must agree: users and
functions by name, measured seconds as 32-bit floats, all the rest exactly and in order. LOG arguments are
compared instead of random logs. --batch names the program that makes many runs of the report without a start
for each. Exits with 1 when anything differs; --keep leaves each log that differed in DIR.
"""

import argparse
import json
import os
import random
import subprocess
import sys
import tempfile

import carvelot_model as model
import near_misses
import odd_logs
import report_runs

THRESHOLDS = [None, None, "1.0", "0", "0.5", "0.000001", "0.045", "2.5", "1.000001", "100", "46799"]


def by_name(items):
    return sorted(items, key=lambda item: (item.get("name", ""), json.dumps(item, sort_keys=True)))


def canonical(value):
    """One text for equal values: lists that have no order by name, seconds as 32-bit floats."""
    if isinstance(value, dict) and "records" in value:
        for record in value["records"]:
            for key in ("duration", "gap"):
                if isinstance(record.get(key), (int, float)):
                    record[key] = model.f32(record[key])
        threads = [thread for process in value["processes"] for thread in process["threads"]]
        for owner in value["processes"] + threads + value["users"]:
            owner["bsfn"]["functions"] = by_name(owner["bsfn"]["functions"])
        value["users"] = by_name(value["users"])
    return json.dumps(value, sort_keys=True)


class Comparison:
    def __init__(self, program, runner, folder):
        self.program = program  # for what a start of its own is compared by
        self.runner = runner
        self.folder = folder
        self.runs = 0

    def session(self, data, options):
        """The model's session, or the message that the user would see."""
        session = model.Session(float(options.get("threshold") or "1.0"), int(options.get("process", 0)),
                                not options.get("no_cache", False))
        session.path = options["path"]
        try:
            session.load_bytes(data)
        except model.LogError as error:
            return str(error)
        return session

    def expected(self, session, options):
        """(status, message, JSON or None, export or None) as the model has it."""
        if isinstance(session, str):
            return 1, session, None, None
        try:
            if "tree" in options:
                # Each run of the report fills one tree.
                for record in session.details:
                    record.failed_below = False
                return 0, "", model.tree_json(session, options["tree"]), None
            if "find" in options:
                return 0, "", {"hits": session.find(options["find"])}, None
            if "export" in options:
                return 0, "", None, session.export_gaps(model.extension_of(options["export"]))
            return 0, "", model.report_json(session), None
        except model.LogError as error:
            return 1, str(error), None, None

    def run(self, session, options):
        """The differences of one run, as lines."""
        self.runs += 1
        arguments = [] if "export" in options else ["--json"]
        for key, flag in (("tree", "--tree"), ("find", "--find"), ("export", "--export-gaps"),
                          ("threshold", "--threshold"), ("process", "--process")):
            if options.get(key) is not None:
                value = options[key]
                arguments += ["%s=%s" % (flag, value)] if value.startswith("-") else [flag, value]
        if options.get("no_cache"):
            arguments.append("--no-cache-analysis")
        arguments.append(options["path"])
        shown = " ".join(repr(a) if not a.isascii() or " " in a else a for a in arguments)

        status, message, wanted, export = self.expected(session, options)
        if "export" in options and os.path.exists(options["export"]):
            os.remove(options["export"])
        try:
            given, printed, said = self.runner.run(arguments)
        except subprocess.TimeoutExpired:
            return ["with %s: no answer within two minutes" % shown]
        out = []
        try:
            said = said.decode("utf-8").strip()
            printed = printed.decode("utf-8")
        except UnicodeDecodeError as error:
            return ["with %s: output is no UTF-8: %s" % (shown, error)]
        if given != status:
            out.append("exit status: model %d, program %d %s" % (status, given, said[:200]))
        elif status == 1:
            if said != message:
                out.append("message: model %r, program %r" % (message, said))
            if printed:
                out.append("something on standard output beside a failure: %r" % printed[:80])
            if "export" in options and os.path.exists(options["export"]):
                out.append("an export was written beside a failure")
        elif "export" in options:
            try:
                with open(options["export"], "rb") as stream:
                    written = stream.read().decode("utf-8").replace(os.linesep, "\n")
                if written != export:
                    theirs, ours = written.split("\n"), export.split("\n")
                    at = next((i for i, (a, b) in enumerate(zip(ours, theirs)) if a != b), min(len(ours), len(theirs)))
                    out.append("export line %d: model %r, program %r" % (
                        at + 1, ours[at:at + 1], theirs[at:at + 1]))
            except (OSError, UnicodeDecodeError) as error:
                out.append("export: %s" % error)
        else:
            try:
                printed = json.loads(printed)
                if canonical(wanted) != canonical(printed):
                    report_runs.differences(wanted, printed, "", False, out)
                    out = out or ["the JSON differs"]
            except ValueError as error:
                out.append("no JSON: %s: %r" % (error, printed[:120]))
        return ["with %s:" % shown] + ["  " + line for line in out] if out else []

    def option_sets(self, session, path, rng):
        """Two sets of options for one log, the second one's chosen by what the first one's session holds."""
        options = {"path": path, "threshold": rng.choice(THRESHOLDS)}
        filtered = dict(options)
        if rng.random() < 0.3:
            filtered["no_cache"] = True
        if rng.random() < 0.4 or "no_cache" not in filtered:
            numbers = [] if isinstance(session, str) else [p.id for p in session.processes if p.id < 1 << 31]
            filtered["process"] = str(rng.choice(numbers + numbers + [0, 4120, 31337]))
        return options, filtered

    def search(self, session, rng):
        finds = ["", "jdecache", "BSFN", "\u00c4"]
        if not isinstance(session, str):
            for _ in range(min(8, len(session.details))):
                text = model.plain(rng.choice(session.details).text)
                at = rng.randrange(len(text) + 1)
                piece = text[at:at + rng.randint(1, 12)]
                finds.append(rng.choice([piece, piece.upper(), piece.lower()]))
        # Handing a folded character over is only fair where folding back and forth is one to one.
        return rng.choice([text for text in finds
                           if report_runs.passable(text) and not any(ch in "\u0131\u0130\u017f\u212a" for ch in text)])

    def check(self, data, path, rng):
        """The differences of all runs over one log, as lines."""
        first = {"path": path, "threshold": "1.0"}
        found = []
        for options in self.option_sets(self.session(data, first), path, rng):
            session = self.session(data, options)
            runs = [{}] + [{"tree": scope} for scope in report_runs.scopes(session, rng)] + [{"find": self.search(session, rng)}]
            if rng.random() < 0.5:
                name = rng.choice(["gaps.csv", "gaps.txt", "GAPS.Csv", "a.b.TXT", "gaps.log", "gaps", "csv", "gaps.csv.bak"])
                runs.append({"export": os.path.join(self.folder, name)})
            for more in runs:
                found += self.run(session, dict(options, **more))
        return found

    def refused(self):
        """What the program has to refuse as wrong usage or an unreadable log."""
        path = os.path.join(self.folder, "small.log")
        with open(path, "wb") as stream:
            stream.write(b"Sep 22 12:00:00 ** 1/2 \tEntering JDB_InitUser\n")
        cases = [(2, ["--json"]), (2, ["--threshold", "x", path]), (2, ["--threshold=-1", path]),
                 (2, ["--json", "--find", "a", "--tree", "process:1", path]), (2, ["--nonsense", path]),
                 (2, ["--find", "a", "--export-gaps", os.path.join(self.folder, "x.csv"), path]),
                 (2, ["--process", "x", path]), (1, ["--json", os.path.join(self.folder, "not there.log")]),
                 (1, ["--json", self.folder]), (0, ["--help"]), (0, ["--version"])]
        out = []
        for status, arguments in cases:
            given, printed, said = self.program.run(arguments)
            if given != status:
                out.append("%s: exit status %d expected, %d given" % (arguments, status, given))
            elif status != 0 and (printed or not said):
                out.append("%s: a message on standard error alone was expected" % arguments)
            elif status == 1 and said.decode("utf-8", "replace").strip() != model.CANNOT_OPEN:
                out.append("%s: %r expected, %r given" % (arguments, model.CANNOT_OPEN, said))
        return out


def comparison_of(options, folder):
    program = report_runs.Program(os.path.abspath(options.program))
    runner = report_runs.Batch(os.path.abspath(options.batch)) if options.batch else program
    return Comparison(program, runner, folder)


def compare_all(options, sources):
    """(source, differences) of each log, and behind the last the number of runs."""
    with tempfile.TemporaryDirectory(prefix="carvelot-compare-") as folder:
        comparison = comparison_of(options, folder)
        make, name = (near_misses.make, "near") if options.near else (odd_logs.make, "odd")
        found = [(source, report_runs.compare_log(comparison, source, make, name, options.keep)) for source in sources]
        comparison.runner.close()
        return [pair for pair in found if pair[1]], comparison.runs


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program")
    parser.add_argument("logs", nargs="*")
    parser.add_argument("--batch", metavar="EXE")
    parser.add_argument("--near", action="store_true")
    parser.add_argument("--seeds", default="1-300", metavar="A-B")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--keep", metavar="DIR")
    options = parser.parse_args()
    sources = options.logs or report_runs.seeds(options.seeds)

    different = 0
    if not options.logs and not options.near:
        with tempfile.TemporaryDirectory(prefix="carvelot-compare-") as folder:
            for line in comparison_of(options, folder).refused():
                print("usage: " + line)
                different += 1
    return report_runs.compare_pieces(compare_all, options, sources, different)


if __name__ == "__main__":
    sys.exit(main())
