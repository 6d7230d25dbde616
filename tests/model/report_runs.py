"""Runs of carvelot-report and what they print, compared with what a model of its rules has: what compare.py and
compare_explore.py both need."""

import concurrent.futures
import os
import random
import shutil
import subprocess
import sys
import traceback

import carvelot_model as model

MOST_DIFFERENCES = 8


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


class Program:
    """The report, started for each run."""

    def __init__(self, path):
        self.path = path
        self.environment = dict(os.environ, LC_ALL="C.UTF-8")

    def run(self, arguments):
        """(exit status, standard output, standard error)"""
        done = subprocess.run([self.path] + arguments, capture_output=True, timeout=120, env=self.environment)
        return done.returncode, done.stdout, done.stderr

    def close(self):
        pass


class Batch:
    """The program that answers one run after the other; one that ends is started anew for the next run."""

    def __init__(self, path):
        self.path = path
        self.process = None

    def run(self, arguments):
        if self.process is None:
            self.process = subprocess.Popen([self.path], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                            env=dict(os.environ, LC_ALL="C.UTF-8"))
        request = b"%d\n" % len(arguments) + b"".join(os.fsencode(argument) + b"\0" for argument in arguments)
        try:
            self.process.stdin.write(request)
            self.process.stdin.flush()
            status, out, err = (int(number) for number in self.process.stdout.readline().split())
            return status, self.process.stdout.read(out), self.process.stdout.read(err)
        except (OSError, ValueError):
            status = self.process.wait()
            self.process = None
            return status, b"", b"the program ended"

    def close(self):
        if self.process is not None:
            self.process.stdin.close()
            self.process.wait()


def scopes(session, rng):
    """Every scope of a session, and one that it has not."""
    scopes = [rng.choice(["process:31337", "thread:4120/31337", "user:nobody", "process:0", "thread:0/0", "x"])]
    if isinstance(session, str):
        return scopes
    if session.log_format == model.FORMAT_JAS:
        return scopes + ["user:" + model.plain(name) for name in session.users if passable(name)]
    for process in session.processes:
        number = rng.choice([process.id, model.signed32(process.id)])
        scopes.append("process:%d" % number)
        scopes += ["thread:%d/%d" % (number, rng.choice([t.id, model.signed32(t.id)])) for t in process.threads]
    return scopes


def seeds(text):
    """The seeds of "A-B", or of "A" alone."""
    first, _, last = text.partition("-")
    return list(range(int(first), int(last or first) + 1))


def compare_log(comparison, source, make, name, keep):
    """The differences of one log, a seed of `make` or a path. With `keep` a made log that differs is left there."""
    if isinstance(source, int):
        data = make(source)
        path = os.path.join(comparison.folder, "%s-%d.log" % (name, source))
        with open(path, "wb") as stream:
            stream.write(data)
    else:
        path = os.path.abspath(source)
        with open(path, "rb") as stream:
            data = stream.read()
    rng = random.Random("options of %s" % (source if isinstance(source, int) else os.path.basename(path)))
    try:
        found = comparison.check(data, path, rng)
    except Exception:  # of the model: it is this log's, and the others are still compared
        found = ["the model fails:"] + traceback.format_exc().split("\n")
    if found and keep and isinstance(source, int):
        os.makedirs(keep, exist_ok=True)
        shutil.copy(path, keep)
    if isinstance(source, int):
        os.remove(path)
    return found


def compare_pieces(compare_all, options, sources, different=0):
    """Compares the logs in several processes and prints what differs; returns the exit status.

    `compare_all` gets the options and some of the logs and returns the differences of each that has any, and the
    number of runs. `different` counts what differed before.
    """
    runs = 0
    pieces = [sources[at:at + 50] for at in range(0, len(sources), 50)]
    with concurrent.futures.ProcessPoolExecutor(options.jobs) as pool:
        for found, count in pool.map(compare_all, [options] * len(pieces), pieces):
            runs += count
            different += len(found)
            for source, lines in found:
                print("%s differs" % ("seed %d" % source if isinstance(source, int) else source))
                for line in lines[:3 * MOST_DIFFERENCES]:
                    print("  " + line)
                sys.stdout.flush()
    print("%d logs, %d runs, %d with differences" % (len(sources), runs, different))
    return 1 if different else 0
