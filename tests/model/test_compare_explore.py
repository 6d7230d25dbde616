#!/usr/bin/env python3
"""The comparison of what is explored: it passes a program that keeps the rules and finds what one that doesn't breaks."""

import functools
import io
import json
import os
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import carvelot_model as m  # noqa: E402
import compare_explore as c  # noqa: E402
import explore_logs  # noqa: E402
import explore_model as e  # noqa: E402
import report_runs  # noqa: E402


def speedscope_text(profile):
    frames = []
    profiles = []
    for stream in profile.streams:
        events = []
        path = []
        for frame in profile.frames_of(stream) + [None]:
            while path and (frame is None or path[-1] is not frame.parent):
                ended = path.pop()
                events.append({"type": "C", "frame": frames.index(e.shown_name(ended.name)), "at": profile.cut_end(ended)})
            if frame is not None:
                name = e.shown_name(frame.name)
                if name not in frames:
                    frames.append(name)
                events.append({"type": "O", "frame": frames.index(name), "at": profile.cut_start(frame)})
                path.append(frame)
        times = [event["at"] for event in events] or [0]
        profiles.append({"type": "evented", "name": m.plain(stream.name), "unit": "microseconds", "startValue": min(times),
                         "endValue": max(times), "events": events})
    return json.dumps({"$schema": "https://www.speedscope.app/file-format-schema.json",
                       "shared": {"frames": [{"name": name} for name in frames]}, "profiles": profiles})


def trace_text(profile):
    events = []
    for process, thread, name, start, duration, record, line in e.trace_events(profile):
        for kind in ("process_name", "thread_name"):
            events.append({"ph": "M", "name": kind, "pid": process, "tid": thread, "args": {"name": "x"}})
        events.append({"ph": "X", "pid": process, "tid": thread, "name": name, "ts": start, "dur": duration,
                       "args": {"record": record, "line": line}})
    return json.dumps({"traceEvents": events})


def callgrind_text(profile):
    """Names by number, as the format allows."""
    own, calls = e.callgrind_costs(profile)
    numbers = {}

    def short(kind, text):
        known = (kind, text) in numbers
        number = numbers.setdefault((kind, text), len(numbers) + 1)
        return "(%d)" % number if known else "(%d) %s" % (number, text)

    out = ["# callgrind format", "events: us", ""]
    for key, cost in own.items():
        out += ["fl=" + short("file", key[0]), "fn=" + short("function", key[1]), "0 %d" % cost]
        for (caller, callee), (count, inclusive) in calls.items():
            if caller == key:
                out += ["cfi=" + short("file", callee[0])] * (callee[0] != key[0])
                out += ["cfn=" + short("function", callee[1]), "calls=%d 0" % count, "* %d" % inclusive]
    return "\n".join(out) + "\n"


WRITERS = {".folded": e.folded_text, ".speedscope.json": speedscope_text, ".trace.json": trace_text, ".callgrind": callgrind_text}


make = functools.lru_cache(maxsize=None)(explore_logs.make)
folder_of_all = tempfile.TemporaryDirectory()
explored_by_content = {}


def explored(path, loading):
    """A log is explored once for all runs over it; nothing that is explored changes."""
    with open(path, "rb") as stream:
        key = stream.read(), path, loading
    if key not in explored_by_content:
        explored_by_content[key] = e.explore(path, *loading)
    return explored_by_content[key]


class StandIn:
    """Answers as the program would, out of the model; `spoil` may change what it prints or writes."""

    def __init__(self, spoil=lambda text, options: text):
        self.spoil = spoil

    def run(self, arguments):
        parser = e.argparse.ArgumentParser()
        for flag in ("--explore", "--json", "--no-cache-analysis"):
            parser.add_argument(flag, action="store_true")
        for option in ("--compare", "--export-profile", "--scope"):
            parser.add_argument(option)
        parser.add_argument("--threshold", type=float, default=1.0)
        parser.add_argument("--process", type=int, default=0)
        parser.add_argument("--from", dest="start", type=e.clock_of_seconds)
        parser.add_argument("--to", dest="end", type=e.clock_of_seconds)
        parser.add_argument("log")
        options = parser.parse_args(arguments)
        loading = options.threshold, options.process, not options.no_cache_analysis
        where = options.scope, options.start, options.end

        def side(path):
            return explored(path, loading)

        target = options.export_profile
        ending = next((ending for ending in c.ENDINGS if target is not None and target.endswith(ending)), None)
        if target is not None and ending is None:
            return 1, b"", ("Not one of " + ", ".join(c.ENDINGS) + "\n").encode()
        try:
            if options.compare is not None:
                text = e.json_text(e.comparison_json(side(options.compare), side(options.log), *where))
            elif target is not None:
                text = WRITERS[ending](e.profile_of_scope(side(options.log), *where))
            else:
                out = e.explore_json(side(options.log), *where)
                for finding in out["findings"]:
                    finding["text"] = "It means something."
                text = e.json_text(out)
        except m.LogError as error:
            return 1, b"", (str(error) + "\n").encode()
        text = self.spoil(text, options)
        if target is None:
            return 0, text.encode(), b""
        with open(target, "wb") as stream:
            stream.write(text.encode())
        return 0, b"", b""

    def close(self):
        pass


class Remembering(c.Comparison):
    """Explores the log of a seed once for all comparisons."""

    known = {}

    def explored(self, data, path, loading):
        key = data, path, loading
        if key not in self.known:
            self.known[key] = super().explored(data, path, loading)
        return self.known[key]


def compared(spoil, seeds):
    """The differences over some logs with a stand-in, as lines, and the number of runs."""
    comparison = Remembering(StandIn(spoil) if spoil else StandIn(), folder_of_all.name, make)
    out = []
    for seed in seeds:
        out += report_runs.compare_log(comparison, seed, make, "made", None)
    return out, comparison.runs


def changed(find, put, when):
    """Replaces the first hit in what is printed or written where `when` holds."""
    return lambda text, options: text.replace(find, put, 1) if when(options) else text


def explores(options):
    return options.compare is None and options.export_profile is None


def exports(ending):
    return lambda options: options.export_profile is not None and options.export_profile.endswith(ending)


class Comparing(unittest.TestCase):
    def finds(self, spoil, what):
        """That one of the first logs shows it."""
        lines = []
        for seed in range(1, 40):
            found = compared(spoil, [seed])[0]
            if any(what in line for line in found):
                return
            lines += found
        self.fail("%r is not among %r" % (what, lines[:20]))

    def test_a_program_that_keeps_the_rules_passes(self):
        lines, runs = compared(None, range(1, 13))
        self.assertEqual(lines, [])
        self.assertGreater(runs, 150)

    def test_each_part_of_what_is_explored_is_compared(self):
        for find, put, what in (('"words": ', '"words": 1', ".lines.words: model "), ('"length": ', '"length": 1', ".span.length: model "),
                                ('"closed": true', '"closed": false', ".closed: model True, program False"),
                                ('"calls": 1,', '"calls": 2,', ".calls: model 1, program 2"), ('"edges": [{', '"edges": [{"x": 1, ', "not in the model's"),
                                ('"tree": [', '"tree": [{"kind": "x", "children": []}, ', ".tree: model has "),
                                ('"topCaller": null', '"topCaller": 0', ".topCaller: model None, program 0"),
                                ('"severity": "warning"', '"severity": "note"', ".severity: model 'warning', program 'note'"),
                                ("It means something.", " ", ".text: not in the model's output"), ('"self": 0', '"self": 0.0', "model 0, program 0.0"),
                                ('"shapes": [', '"shape": [', ".shapes: missing in the program's output"), ("{", "", "can't be read: JSONDecodeError")):
            self.finds(changed(find, put, explores), what)

    def test_order_is_compared(self):
        def swapped(text, options):
            if not explores(options):
                return text
            value = json.loads(text)
            value["functions"].reverse()
            return json.dumps(value)
        self.finds(swapped, ".functions[")

    def test_comparisons_of_two_logs_are_compared(self):
        self.finds(changed('"difference": 0', '"difference": 1', lambda options: options.compare == options.log), ".difference: model 0, program 1")
        self.finds(changed('"in": "base"', '"in": "both"', lambda options: options.compare is not None), ".in: model 'base', program 'both'")

    def test_each_export_is_compared(self):
        self.finds(changed(";", ";x", exports(".folded")), "missing in the program's output")
        self.finds(changed(" ", " 1", exports(".folded")), "with --export-profile")
        self.finds(lambda text, options: text + text if exports(".folded")(options) else text, "a path twice")
        self.finds(changed("\n", "", exports(".folded")), "no end")
        self.finds(changed('"at": ', '"at": 1', exports(".speedscope.json")), "with --export-profile")
        self.finds(changed('"name": "', '"name": "x', exports(".speedscope.json")), "missing in the program's output")
        self.finds(changed('"type": "C"', '"type": "O"', exports(".speedscope.json")), "can't be read")
        self.finds(changed('"dur": ', '"dur": 1', exports(".trace.json")), "with --export-profile")
        self.finds(changed('"line": ', '"line": 1', exports(".trace.json")), "with --export-profile")
        self.finds(changed('"thread_name"', '"name"', exports(".trace.json")), "bears no name")
        self.finds(changed("events: us", "events: ns", exports(".callgrind")), "its events are")
        self.finds(changed("calls=", "calls=1", exports(".callgrind")), ".calls[")
        self.finds(changed("\n0 ", "\n0 1", exports(".callgrind")), ".self")

    def test_failures_are_compared(self):
        class Silent(StandIn):
            def run(self, arguments):
                status, out, said = super().run(arguments)
                return (status, out, b"x" if status else said)
        with tempfile.TemporaryDirectory() as folder:
            comparison = c.Comparison(Silent(), folder)
            lines = report_runs.compare_log(comparison, 1, explore_logs.make, "made", None)
            self.assertTrue(any("message: model 'No such scope: " in line for line in lines), lines)

    def test_an_export_of_another_ending_has_to_be_refused(self):
        class Willing(StandIn):
            def run(self, arguments):
                with open(arguments[1], "wb"):
                    return 0, b"", b""
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(c.Comparison(StandIn(), folder).refused(), [])
            self.assertEqual(len(c.Comparison(Willing(), folder).refused()), 10)

    def test_a_log_that_differs_is_kept(self):
        with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as kept:
            comparison = c.Comparison(StandIn(lambda text, options: ""), folder)
            report_runs.compare_log(comparison, 3, explore_logs.make, "made", kept)
            with open(os.path.join(kept, "made-3.log"), "rb") as stream:
                self.assertEqual(stream.read(), explore_logs.make(3))

    def test_seconds_are_typed_in_their_shortest_form(self):
        self.assertEqual([c.decimal_seconds(micros) for micros in (0, 1, 1500000, 2000000, 10000000)], ["0", "0.000001", "1.5", "2", "10"])

    @unittest.skipUnless(os.name == "posix", "a script is no program there")
    def test_the_tool_runs_a_program_over_seeds_and_logs(self):
        with tempfile.TemporaryDirectory() as folder:
            program = os.path.join(folder, "program")
            with open(program, "w", encoding="utf-8") as stream:
                stream.write("#!%s -B\nimport sys\nsys.path.insert(0, %r)\nimport test_compare_explore as t\n"
                             "status, out, said = t.StandIn().run(sys.argv[1:])\nsys.stdout.buffer.write(out)\n"
                             "sys.stderr.buffer.write(said)\nsys.exit(status)\n" % (sys.executable, os.path.dirname(os.path.abspath(__file__))))
            os.chmod(program, 0o755)
            log = os.path.join(folder, "a.log")
            with open(log, "wb") as stream:
                stream.write(explore_logs.make(2))
            for arguments, said in ((["--odd", "--seeds", "4"], "1 logs, "), ([log], "1 logs, ")):
                with unittest.mock.patch.object(sys, "argv", ["x", program] + arguments), \
                        unittest.mock.patch.object(sys, "stdout", io.StringIO()) as out:
                    self.assertEqual(c.main(), 0, out.getvalue())
                    self.assertIn(said, out.getvalue())
                    self.assertIn(", 0 with differences", out.getvalue())
            wrong = subprocess.run([sys.executable, "-B", c.__file__, "/bin/false", log], capture_output=True)
            self.assertEqual(wrong.returncode, 1)
            self.assertIn(b"1 logs, 1", wrong.stdout.splitlines()[-1][:9])


if __name__ == "__main__":
    unittest.main()
