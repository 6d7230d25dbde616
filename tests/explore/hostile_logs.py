#!/usr/bin/env python3
"""hostile_logs.py REPORT: logs of up to a million lines that nobody wrote well, explored on a small stack.

Each is told to the end with the right numbers. A walk that were quadratic would take hours here, where the smaller
logs of HostileLogsTest.cpp might still hide it.
"""

import os
import subprocess
import sys
import tempfile

MANY = 1_000_000
FEWER = 210_000
STACK = 512 * 1024


def line(text, micros=0, ids="4120/3388", month="Jan"):
    seconds = micros // 1000000
    return "%s 15 %02d:%02d:%02d.%06d - %s Worker\t%s\n" % (
        month, 10 + seconds // 3600, seconds // 60 % 60, seconds % 60, micros % 1000000, ids, text)


def call(name, level):
    return "Calling Business function %s from Level 1 (BSFNLevel = %d)" % (name, level)


def a_million_names_a_million_deep():
    for i in range(MANY):
        yield line(call("F%d" % i, i + 1), i)


def returns_of_nothing_above_open_calls():
    for i in range(FEWER):
        yield line(call("F", i + 1))
    for i in range(FEWER):
        yield line("Return value is 0 for G. (BSFNLevel = %d)" % (i + 1), 1)


def events_that_nothing_ends():
    for i in range(FEWER):
        yield line("RT: >>>Beginning ER:\tE%d\t" % (i % 7), i)


def no_stamp_but_the_last():
    for _ in range(FEWER):
        yield line(call("F", 1), month="Foo")
    yield line("Fetched the record", 1)


def a_thread_each_line():
    for i in range(FEWER):
        yield line(call("F", 1), i, "7/%d" % (i + 1))


# What the explored log's JSON holds, and how often.
CASES = [
    (a_million_names_a_million_deep, {
        b'"parent":': MANY, b'"p95":': MANY, b'"caller":': MANY, b'"children":': MANY, b'"rule":"call-without-return"': MANY,
        b'{"kind":"function","name":"F999998","calls":1,"unclosed":1,"failed":0,"warned":0,"total":1,': 1,
        b'"children":[]': 1}),
    (returns_of_nothing_above_open_calls, {
        b'"parent":': FEWER, b'"calls":210000,"unclosed":210000,"failed":0,"warned":0,"total":1,': 1,
        b'"rule":"orphan-return","severity":"note","subject":"G","count":210000,': 1}),
    (events_that_nothing_ends, {b'"parent":': FEWER, b'"unclosed":30000,': 7, b'"rule"': 0}),
    (no_stamp_but_the_last, {b'"parent":': FEWER, b'"span":{"firstRecord":210001,"length":0}': 1,
                             b'"rule":"call-without-return","severity":"warning","subject":"F","count":210000,': 1}),
    (a_thread_each_line, {b'"stream":"thread:7/': FEWER, b'"children":[]': 1,
                          b'"rule":"call-without-return","severity":"warning","subject":"F","count":210000,': 1}),
]


def on_small_stack():
    import resource  # pylint: disable=import-outside-toplevel
    resource.setrlimit(resource.RLIMIT_STACK, (STACK, STACK))


def counts(stream, patterns):
    found = dict.fromkeys(patterns, 0)
    rest = b""
    while block := stream.read(1 << 22):
        data = rest + block
        # Cut where no pattern can stand across: behind the last record, value or name.
        end = data.rfind(b"},")
        end = end + 2 if end >= 0 else 0
        for pattern in patterns:
            found[pattern] += data.count(pattern, 0, end)
        rest = data[end:]
    for pattern in patterns:
        found[pattern] += rest.count(pattern)
    return found


def main():
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "hostile.log")
        for lines, expected in CASES:
            with open(path, "w", encoding="ascii") as file:
                file.write(line("Entering JDB_OpenTable", ids="1/1", month="Foo" if "stamp" in lines.__name__ else "Jan"))
                file.writelines(lines())
            with subprocess.Popen([sys.argv[1], "--explore", "--json", path], stdout=subprocess.PIPE,
                                  preexec_fn=on_small_stack) as process:
                found = counts(process.stdout, expected)
            wrong = [f"{pattern.decode()}: {found[pattern]} and not {count}"
                     for pattern, count in expected.items() if found[pattern] != count]
            if process.returncode != 0:
                wrong.append(f"exit status {process.returncode}")
            print(lines.__name__, *(wrong or ["is told"]), sep="\n    ")
            failures += len(wrong)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
