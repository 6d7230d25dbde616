#!/usr/bin/env python3
"""coverage_test.py SCRIPT: strength/coverage_section.py adds up what gcovr counts, asks for a reason of every line that did
not run, and for the end of a reason that no line has any more."""

import contextlib
import importlib.util
import io
import json
import os
import sys
import tempfile

ROOMS = """set(CARVELOT_ROOMS
    "low             |            |"
    "low/fast        | low        |"
    "ui/kit          | low        | Qt6::Widgets")
"""
NAMES = [
    ("CFoo::Read(std::vector<int, std::allocator<int> > const&) const", "CFoo::Read"),
    ("std::optional<std::pair<int, A> > (anonymous namespace)::Find<int>(int)", "Find"),
    ("CFoo::Read[abi:cxx11](int)::{lambda(int (*)(int))#1}::operator()(int (*)(int)) const", "CFoo::Read"),
    ("(anonymous namespace)::CFoo::operator()(int) const", "CFoo::operator()"),
    ("CFoo::operator bool() const", "CFoo::operator bool"),
    ("bool operator< <int>(A<int> const&, A<int> const&)", "operator<"),
    ("Read(int)::CLocal::Next(int)", "Read"),
    ("carvelot::CFoo<(Kind)2>::~CFoo()", "CFoo::~CFoo"),
    ("main", "main"),
]


def line(number, count, *branches):
    return {"line_number": number, "count": count, "gcovr/noncode": False, "gcovr/excluded": False,
            "branches": [{"count": branch, "throw": False, "fallthrough": False} for branch in branches]}


def function(name, number):
    return {"name": name, "lineno": number, "execution_count": 1}


def counted():
    """2000 lines below ui of which two did not run, and 10 of ui, of which one did not."""
    low = [line(1, 1, 1, 0), line(2, 0), line(5, 1), line(6, 1, *[1] * 20)] + [line(number, 1) for number in range(10, 1005)]
    fast = [line(number, 3) for number in range(1, 1000)] + [line(1000, 1), line(1001, 0)]
    return [{"file": "src/low/A.cpp", "lines": low, "functions": [
                function("(anonymous namespace)::First(int)::{lambda()#1}::operator()() const", 2), function("First(int)", 1),
                function("CFoo::Second()", 5)]},
            {"file": "src/low/fast/B.cpp", "lines": fast, "functions": [function("Third()", 1000)]},
            {"file": "src/ui/kit/C.cpp", "lines": [line(number, number > 1) for number in range(1, 11)],
             "functions": [function("CView::Draw()", 1)]},
            {"file": "tests/low/ATest.cpp", "lines": [line(1, 0)], "functions": [function("Test()", 1)]}]


REASONS = """# What this is.
src/low/A.cpp
    First: nobody asks,
        at least not today
src/low/fast/B.cpp
    Third,
        CFast::Gone?: nobody | asks
src/ui/kit/C.cpp
    *: a machine without a screen
"""
ROWS = [
    "| `low/` | 999 | 998 | 99.89 | 22 | 21 | 95.45 |",
    "| `low/fast/` | 1,001 | 1,000 | 99.90 | 0 | 0 | 100.00 |",
    "| `ui/kit/` | 10 | 9 | 90.00 | 0 | 0 | 100.00 |",
    "| **below `ui/`** | 2,000 | 1,998 | 99.90 | 22 | 21 | 95.45 |",
    "| **`ui/`** | 10 | 9 | 90.00 | 0 | 0 | 100.00 |",
    "What is left, 3 lines, and why:",
    "| `low/A.cpp` | `First` | 1 | nobody asks, at least not today |",
    "| `low/fast/B.cpp` | `Third` | 1 | nobody \\| asks |",
    "| `ui/kit/C.cpp` | `CView::Draw` | 1 | a machine without a screen |",
]


def load(script):
    spec = importlib.util.spec_from_file_location("coverage_section", script)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def run(module, files, reasons, *options):
    """(status, lines of the section, complaints)"""
    with tempfile.TemporaryDirectory() as source:
        texts = {"cmake/Layers.cmake": ROOMS, "strength/uncovered.txt": reasons, "gcovr.json": json.dumps({"files": files})}
        for name in ("src/low/A.cpp", "src/low/fast/B.cpp", "src/ui/kit/C.cpp"):
            texts[name] = ""
        for name, text in texts.items():
            os.makedirs(os.path.dirname(os.path.join(source, name)), exist_ok=True)
            with open(os.path.join(source, name), "w", encoding="utf-8") as file:
                file.write(text)
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = module.main([source, os.path.join(source, "gcovr.json"), *options])
    return status, out.getvalue().splitlines(), err.getvalue().splitlines()


def main():
    module = load(sys.argv[1])
    failures = []

    def expect(what, found, wanted):
        if found != wanted:
            failures.append("%s: %r is not %r" % (what, found, wanted))

    for name, short in NAMES:
        expect("the short name of " + name, module.short_name(name), short)

    status, lines, complaints = run(module, counted(), REASONS)
    expect("what holds ends with", status, 0)
    expect("what holds is complained about", complaints, [])
    for row in ROWS:
        expect("a line " + row, lines.count(row), 1)

    def breaks(what, files, reasons, complaint, *options):
        status, _, complaints = run(module, files, reasons, *options)
        expect(what + " ends with", status, 1)
        expect(what, complaints, [complaint])

    breaks("a line without a reason", counted(), REASONS.replace("    Third,\n        CFast::Gone?: nobody | asks\n", ""),
           "src/low/fast/B.cpp: a line of Third did not run, and strength/uncovered.txt has no reason")
    breaks("a reason of a function that ran", counted(), REASONS.replace("    Third", "    CFoo::Fourth: -\n    Third"),
           "strength/uncovered.txt:6: src/low/fast/B.cpp: all lines of CFoo::Fourth ran, so that it needs no reason")
    ran = counted()
    ran[2]["lines"][0]["count"] = 1
    breaks("a reason of a source that ran", ran, REASONS,
           "strength/uncovered.txt:9: src/ui/kit/C.cpp: all lines of all functions ran, so that it needs no reason")
    status, lines, complaints = run(module, ran, REASONS.replace("*:", "*?:"))
    expect("a reason for some machines ends with", (status, complaints), (0, []))
    expect("a reason for some machines shows where its lines ran", [line for line in lines if "screen" in line], [])
    breaks("two reasons", counted(), REASONS + "    *: once more\n",
           "strength/uncovered.txt:10: src/ui/kit/C.cpp: a second reason for *")
    breaks("no reason at all", counted(), REASONS + "    what is this\n",
           "strength/uncovered.txt:10: neither a source nor a function with its reason")
    breaks("a reason of no source", counted(), REASONS + "src/low/Gone.cpp\n    A?: gone\n",
           "strength/uncovered.txt:11: there is no src/low/Gone.cpp")

    few = counted()
    for place in range(60):
        few[1]["lines"][place]["count"] = 0
    few[1]["functions"] = [function("Third()", 1)]
    breaks("too few lines", few, REASONS, "below ui: 96.90 % of the lines ran, which is less than 97 %")
    few = counted()
    few[0]["lines"][3] = line(6, 1, *[1] * 18, 0, 0)
    breaks("too few branches", few, REASONS, "below ui: 86.36 % of the branches ran, which is less than 90 %")
    few = counted()
    few[2]["lines"][1]["count"] = 0
    breaks("too few lines of ui", few, REASONS, "ui: 80.00 % of the lines ran, which is less than 90 %")
    breaks("a source in no room", counted() + [{"file": "src/high/D.cpp", "lines": [], "functions": []}], REASONS,
           "src/high/D.cpp stands in no room of cmake/Layers.cmake")
    breaks("nothing of ui", counted()[:2], REASONS.split("src/ui")[0], "ui: nothing was counted")

    status, lines, complaints = run(module, counted()[:2], "", "--quick")
    expect("a quick run asks for no reason", (status, complaints), (0, []))
    expect("a quick run shows none", [line for line in lines if "What is left" in line], [])
    expect("a quick run counts", lines.count(ROWS[3]), 1)
    few = counted()[:2]
    for place in range(200):
        few[1]["lines"][place]["count"] = 0
    breaks("too few lines of a quick run", few, "", "below ui: 89.90 % of the lines ran, which is less than 96 %", "--quick")

    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
