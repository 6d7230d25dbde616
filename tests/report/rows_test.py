"""The tables of carvelot-report as other programs read them.

usage: rows_test.py CARVELOT_REPORT LOG...

CSV, NDJSON and the database hold the same rows, and these the numbers of --explore --json; a reader that has enough
closes the pipe; whoever kills the program leaves the old database or the new one.
"""

import csv
import io
import json
import os
import random
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

REPORT, LOGS = sys.argv[1], sys.argv[2:]
TABLES = ("records", "frames", "functions", "shapes", "findings", "gaps", "errors")
failed = []
checks = 0


def expect(what, got, wanted):
    global checks
    checks += 1
    if got != wanted:
        failed.append(f"{what}: {got!r:.300} instead of {wanted!r:.300}")


def report(*arguments):
    done = subprocess.run([REPORT, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if done.returncode != 0 or done.stderr:
        failed.append(f"{arguments}: {done.returncode} {done.stderr!r}")
    return done.stdout.decode()


def as_text(value):
    """A value as CSV has it: without a difference of nothing and an empty text."""
    return "" if value is None else repr(value) if isinstance(value, float) else str(value)


def read_tables(log, *options):
    """By table its rows as dictionaries, read from NDJSON, once they are known to be those of CSV."""
    tables = {}
    for table in TABLES:
        lines = report("--rows", table, "--format", "ndjson", *options, log).split("\n")
        expect(f"{log} {table}: the end", lines.pop(), "")
        rows = [json.loads(line) for line in lines]
        text = report("--rows", table, "--format", "csv", *options, log)
        expect(f"{log} {table}: line ends", text.endswith("\r\n"), True)
        header, *from_csv = csv.reader(io.StringIO(text, newline=""), strict=True)
        expect(f"{log} {table}: rows", len(from_csv), len(rows))
        for row, cells in zip(rows, from_csv):
            expect(f"{log} {table}: columns", list(row), header)
            texts = [str(float(cell)) if isinstance(value, float) else cell for cell, value in zip(cells, row.values())]
            if [as_text(value) for value in row.values()] != texts:
                expect(f"{log} {table}", texts, list(row.values()))
        tables[table] = rows
    return tables


def check_database(log, tables, path, *options):
    expect(f"{log}: prints nothing", report("--sqlite", path, *options, log), "")
    database = sqlite3.connect(path)
    expect(f"{log}: integrity", database.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
    expect(f"{log}: foreign keys", database.execute("PRAGMA foreign_key_check").fetchall(), [])
    for table, rows in tables.items():
        stored = database.execute(f"SELECT * FROM {table}")
        names = [column[0] for column in stored.description]
        expect(f"{log} {table}: rows of the database", sorted(map(repr, stored)),
               sorted(repr(tuple(row.values())) for row in rows))
        if rows:
            expect(f"{log} {table}: columns of the database", names, list(rows[0]))
    database.close()


def check_explored(log, tables):
    explored = json.loads(report("--explore", "--json", log))
    session = json.loads(report("--json", log))

    def numbers(rows, names):
        return [tuple(row[name] for name in names) for row in rows]

    functions = ["kind", "name", "calls", "unclosed", "failed", "warned", "total", "self", "shortest", "longest", "p50",
                 "p95"]
    expect(f"{log}: functions", numbers(tables["functions"], functions), numbers(explored["functions"], functions))
    shapes = ["shape", "operation", "count", "total", "longest", "p95"]
    expect(f"{log}: shapes", numbers(tables["shapes"], shapes), numbers(explored["shapes"], shapes))
    expect(f"{log}: shapes' records", numbers(tables["shapes"], ["first_record", "longest_record"]),
           numbers(explored["shapes"], ["firstRecord", "longestRecord"]))
    findings = ["rule", "severity", "subject", "count", "cost", "text"]
    expect(f"{log}: findings", numbers(tables["findings"], findings), numbers(explored["findings"], findings))
    expect(f"{log}: findings' records", [row["records"].split() for row in tables["findings"]],
           [[str(record) for record in finding["records"]] for finding in explored["findings"]])
    frames = ["kind", "name", "record", "stream", "parent", "self", "result"]
    expect(f"{log}: frames", numbers(tables["frames"], frames), numbers(explored["frames"], frames))
    expect(f"{log}: frames' times", numbers(tables["frames"], ["start_clock", "end_clock", "closed"]),
           numbers(explored["frames"], ["start", "end", "closed"]))
    texts = ["return_code", "process", "thread", "text"]
    expect(f"{log}: records", numbers(tables["records"], texts),
           numbers(session["records"], ["returnCode", "process", "thread", "text"]))
    expect(f"{log}: gaps", [row["record"] for row in tables["gaps"]], session["gaps"])
    errors = sorted(record for owner in session["processes"] + session["users"] for record in owner["errors"])
    expect(f"{log}: errors", [row["record"] for row in tables["errors"]], errors)


def check_early_end(log):
    """As a shell starts it, with the pipe's signal, and as a service does, without."""
    for ignored in (False, True):
        def prepare(ignored=ignored):
            signal.signal(signal.SIGPIPE, signal.SIG_IGN if ignored else signal.SIG_DFL)

        for many in (log, log, log):
            run = subprocess.Popen([REPORT, "--rows", "records", many, many, many], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, preexec_fn=prepare)
            run.stdout.readline()
            run.stdout.close()
            said = run.stderr.read()
            run.stderr.close()
            expect(f"{log}: a reader that has enough", (run.wait(), said), (1 if ignored else -signal.SIGPIPE, b""))


def answers(path):
    """What a reader finds in the database; nothing without one."""
    if not os.path.exists(path):
        return None
    database = sqlite3.connect(path)
    whole = database.execute("PRAGMA integrity_check").fetchall()
    found = database.execute("SELECT path, records, hash FROM logs ORDER BY path").fetchall()
    counts = database.execute("SELECT count(*) FROM records").fetchall()
    database.close()
    return whole, found, counts


def check_kills(folder, small, large):
    """Killed at any moment, the program leaves what was there or what shall be."""
    path = os.path.join(folder, "killed.db")
    report("--sqlite", path, small)
    old = answers(path)
    goal = os.path.join(folder, "goal.db")
    began = time.monotonic()
    report("--sqlite", goal, small)
    report("--sqlite", goal, "--append", large)
    lasts = time.monotonic() - began
    new = answers(goal)
    dice = random.Random(1)
    seen = set()
    for turn in range(40):
        run = subprocess.Popen([REPORT, "--sqlite", path, "--append", large], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
        time.sleep(lasts * (turn / 40 if turn % 2 else dice.random()))
        run.kill()
        run.wait()
        found = answers(path)
        expect(f"killed in turn {turn}", found in (old, new), True)
        seen.add(found == new)
        if found == new:
            report("--sqlite", path, small)
    expect("killed: left the old one at times", False in seen, True)
    for leftover in os.listdir(folder):
        if leftover.startswith(".carvelot-"):
            os.remove(os.path.join(folder, leftover))
    report("--sqlite", path, "--append", large)
    expect("behind the kills", answers(path), new)


def main():
    with tempfile.TemporaryDirectory() as folder:
        for log in LOGS:
            tables = read_tables(log)
            check_explored(log, tables)
            check_database(log, tables, os.path.join(folder, "plain.db"))
            options = ("--host", "jde01", "--year", "2024", "--shapes-only")
            check_database(log, read_tables(log, *options), os.path.join(folder, "strict.db"), *options)
        large = os.path.join(folder, "large.log")
        with open(LOGS[0], "rb") as file, open(large, "wb") as copy:
            copy.write(file.read() * 40)
        check_early_end(large)
        check_kills(folder, LOGS[0], large)
    for line in failed[:40]:
        print(line)
    print(f"{checks} checks, {len(failed)} failed")
    sys.exit(1 if failed else 0)


main()
