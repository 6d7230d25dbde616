#!/usr/bin/env python3
"""Compares carvelot-report with the reference model over many random logs, field by field.

Usage: compare.py REPORT_EXE [--seeds A-B] [--keep DIR] [LOG ...]

Each seed makes one log (odd_logs.py) and a few runs with options chosen by the seed. Exit status, message
and every field of the JSON must agree: users and functions by name, measured seconds as 32-bit floats, all
the rest exactly and in order. LOG arguments are compared instead of random logs. Exits with 1 when
anything differs; --keep leaves each log that differed in DIR.
"""

import argparse
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

import carvelot_model as model
import odd_logs

MOST_DIFFERENCES = 8
THRESHOLDS = [None, None, "1.0", "0", "0.5", "0.000001", "0.045", "2.5", "1.000001", "100", "46799"]


def by_name(items):
    return sorted(items, key=lambda item: (item.get("name", ""), json.dumps(item, sort_keys=True)))


def differences(ours, theirs, path, floats, out):
    """Appends readable differences between the model's value and the program's."""
    if len(out) >= MOST_DIFFERENCES:
        return
    if floats:
        if not isinstance(theirs, (int, float)) or isinstance(theirs, bool) or model.f32(theirs) != ours:
            out.append("%s: model %r, program %r" % (path, ours, theirs))
        return
    if type(ours) is not type(theirs):
        out.append("%s: model %r, program %r" % (path, ours, theirs))
    elif isinstance(ours, dict):
        for key in ours:
            if key not in theirs:
                out.append("%s.%s: missing in the program's output" % (path, key))
        for key in theirs:
            if key not in ours:
                out.append("%s.%s: not in the model's output" % (path, key))
        for key in ours:
            if key in theirs:
                is_record = "returnCode" in ours
                differences(ours[key], theirs[key], path + "." + key,
                            is_record and key in ("duration", "gap"), out)
    elif isinstance(ours, list):
        if path.endswith((".users", ".functions")):
            ours, theirs = by_name(ours), by_name(theirs)
        if len(ours) != len(theirs):
            out.append("%s: model has %d entries, program %d" % (path, len(ours), len(theirs)))
        for i, (a, b) in enumerate(zip(ours, theirs)):
            name = a.get("name") if isinstance(a, dict) and path.endswith((".users", ".functions")) else i
            differences(a, b, "%s[%s]" % (path, name), False, out)
    elif ours != theirs:
        if isinstance(ours, str) and len(ours) > 300:
            at = next((i for i, (a, b) in enumerate(zip(ours, theirs)) if a != b), min(len(ours), len(theirs)))
            out.append("%s: from character %d (of %d, %d): model %r, program %r" % (
                path, at, len(ours), len(theirs), ours[at:at + 60], theirs[at:at + 60]))
        else:
            out.append("%s: model %r, program %r" % (path, ours, theirs))


def passable(text):
    """Whether a text can be handed over on a command line and means the same there."""
    return "\0" not in text and "\uFFFD" not in text and len(text) < 2000


class Comparison:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.runs = 0
        self.environment = dict(os.environ, LC_ALL="C.UTF-8")

    def session(self, data, options):
        session = model.Session(float(options.get("threshold") or "1.0"), int(options.get("process", 0)),
                                not options.get("no_cache", False))
        session.path = options["path"]
        session.load_bytes(data)
        return session

    def expected(self, data, options):
        """(status, message, JSON or None, export or None) as the model has it."""
        try:
            session = self.session(data, options)
            if "tree" in options:
                return 0, "", model.tree_json(session, options["tree"]), None
            if "find" in options:
                return 0, "", {"hits": session.find(options["find"])}, None
            if "export" in options:
                return 0, "", None, session.export_gaps(model.extension_of(options["export"]))
            return 0, "", model.report_json(session), None
        except model.LogError as error:
            return 1, str(error), None, None

    def run(self, data, options):
        """The differences of one run, as lines."""
        self.runs += 1
        arguments = [self.program]
        if "export" not in options:
            arguments.append("--json")
        for key, flag in (("tree", "--tree"), ("find", "--find"), ("export", "--export-gaps"),
                          ("threshold", "--threshold"), ("process", "--process")):
            if options.get(key) is not None:
                value = options[key]
                arguments += ["%s=%s" % (flag, value)] if value.startswith("-") else [flag, value]
        if options.get("no_cache"):
            arguments.append("--no-cache-analysis")
        arguments.append(options["path"])
        shown = " ".join(repr(a) if not a.isascii() or " " in a else a for a in arguments[1:])

        status, message, wanted, export = self.expected(data, options)
        if "export" in options and os.path.exists(options["export"]):
            os.remove(options["export"])
        try:
            done = subprocess.run(arguments, capture_output=True, timeout=120, env=self.environment)
        except subprocess.TimeoutExpired:
            return ["with %s: no answer within two minutes" % shown]
        out = []
        try:
            said = done.stderr.decode("utf-8").strip()
            printed = done.stdout.decode("utf-8")
        except UnicodeDecodeError as error:
            return ["with %s: output is no UTF-8: %s" % (shown, error)]
        if done.returncode != status:
            out.append("exit status: model %d, program %d %s" % (status, done.returncode, said[:200]))
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
                # Through text and back, so that both sides hold what JSON can hold.
                differences(json.loads(json.dumps(wanted)), json.loads(printed), "", False, out)
            except ValueError as error:
                out.append("no JSON: %s: %r" % (error, printed[:120]))
        return ["with %s:" % shown] + ["  " + line for line in out] if out else []

    def choices(self, data, path, rng):
        """A few sets of options for one log, chosen by its seed."""
        options = {"path": path, "threshold": rng.choice(THRESHOLDS)}
        sets = [dict(options)]
        try:
            session = self.session(data, options)
        except model.LogError:
            session = None
        filtered = dict(options)
        if rng.random() < 0.3:
            filtered["no_cache"] = True
        if rng.random() < 0.4 or "no_cache" not in filtered:
            numbers = [p.id for p in session.processes if p.id < 1 << 31] if session else []
            filtered["process"] = str(rng.choice(numbers + [0, 4120, 31337]))
        sets.append(filtered)

        trees = ["process:31337", "thread:4120/31337", "user:nobody"]
        finds = ["", "jdecache", "BSFN", "\u00c4"]
        if session:
            for process in session.processes:
                number = model.signed32(process.id)
                if session.log_format == model.FORMAT_DEBUG:
                    trees += 3 * ["process:%d" % rng.choice([process.id, number])]
                    trees += ["thread:%d/%d" % (process.id, t.id) for t in process.threads]
                    trees += ["thread:%d/%d" % (number, model.signed32(t.id)) for t in process.threads]
                else:
                    trees += ["process:0", "thread:0/0"]
            trees += 2 * ["user:" + model.plain(name) for name in session.users]
            for _ in range(min(8, len(session.details))):
                text = model.plain(rng.choice(session.details).text)
                at = rng.randrange(len(text) + 1)
                piece = text[at:at + rng.randint(1, 12)]
                finds.append(rng.choice([piece, piece.upper(), piece.lower()]))
        trees = [text for text in trees if passable(text)]
        # Handing a folded character over is only fair where folding back and forth is one to one.
        finds = [text for text in finds if passable(text) and not any(ch in "\u0131\u0130\u017f\u212a" for ch in text)]
        sets.append(dict(options, tree=rng.choice(trees)))
        if rng.random() < 0.4:
            sets.append(dict(options, tree=rng.choice(trees)))
        sets.append(dict(options, find=rng.choice(finds)))
        if rng.random() < 0.5:
            name = rng.choice(["gaps.csv", "gaps.txt", "GAPS.Csv", "a.b.TXT", "gaps.log", "gaps", "csv", "gaps.csv.bak"])
            sets.append(dict(options, export=os.path.join(self.folder, name)))
        return sets

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
            done = subprocess.run([self.program] + arguments, capture_output=True, timeout=60, env=self.environment)
            if done.returncode != status:
                out.append("%s: exit status %d expected, %d given" % (arguments, status, done.returncode))
            elif status != 0 and (done.stdout or not done.stderr):
                out.append("%s: a message on standard error alone was expected" % arguments)
            elif status == 1 and done.stderr.decode("utf-8", "replace").strip() != model.CANNOT_OPEN:
                out.append("%s: %r expected, %r given" % (arguments, model.CANNOT_OPEN, done.stderr))
        return out


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("program")
    parser.add_argument("logs", nargs="*")
    parser.add_argument("--seeds", default="1-300", metavar="A-B")
    parser.add_argument("--keep", metavar="DIR")
    options = parser.parse_args()
    first, _, last = options.seeds.partition("-")
    seeds = range(int(first), int(last or first) + 1)

    different = 0
    with tempfile.TemporaryDirectory(prefix="carvelot-compare-") as folder:
        comparison = Comparison(os.path.abspath(options.program), folder)
        if options.logs:
            work = [(path, os.path.abspath(path)) for path in options.logs]
        else:
            work = [("seed %d" % seed, seed) for seed in seeds]
            for line in comparison.refused():
                print("usage: " + line)
                different += 1
        for title, source in work:
            if isinstance(source, int):
                data = odd_logs.make(source)
                path = os.path.join(folder, "odd-%d.log" % source)
                with open(path, "wb") as stream:
                    stream.write(data)
            else:
                path = source
                with open(path, "rb") as stream:
                    data = stream.read()
            rng = random.Random("options of %s" % (source if isinstance(source, int) else os.path.basename(path)))
            found = []
            for chosen in comparison.choices(data, path, rng):
                found += comparison.run(data, chosen)
            if found:
                different += 1
                print("%s differs" % title)
                for line in found[:3 * MOST_DIFFERENCES]:
                    print("  " + line)
                sys.stdout.flush()
                if options.keep and isinstance(source, int):
                    os.makedirs(options.keep, exist_ok=True)
                    shutil.copy(path, options.keep)
            if isinstance(source, int):
                os.remove(path)
    print("%d logs, %d runs, %d with differences" % (len(work), comparison.runs, different))
    return 1 if different else 0


if __name__ == "__main__":
    sys.exit(main())
