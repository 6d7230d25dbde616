#!/usr/bin/env python3
"""check_cluster.py PROGRAMS: whether fleet/ keeps what it promises, on two ClickHouse servers of its own.

PROGRAMS is the folder of carvelot-report and carvelot-make-log. The servers listen on free ports of this machine and keep
their files in a temporary folder; both end with this program, however it ends. Logs of ten machines over two weeks are
loaded. What the queries then answer has to be what follows from `carvelot-report --explore --json` of the same logs. Loads
are repeated, broken off with SIGKILL (a server, the loader) and repeated again.
"""

import collections
import datetime
import glob
import hashlib
import json
import os
import random
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TABLES = ("records", "frames", "functions", "shapes", "findings", "gaps", "errors")
YEAR = 2025
WEEKS = (datetime.date(YEAR, 9, 3), datetime.date(YEAR, 9, 10))
CONFIG = """<?xml version="1.0"?>
<yandex>
    <logger><level>warning</level><log>{folder}/log</log><errorlog>{folder}/errors</errorlog></logger>
    <listen_host>127.0.0.1</listen_host>
    <tcp_port>{port}</tcp_port>
    <path>{folder}/data/</path>
    <tmp_path>{folder}/tmp/</tmp_path>
    <user_files_path>{folder}/files/</user_files_path>
    <format_schema_path>{folder}/schemas/</format_schema_path>
    <users_config>users.xml</users_config>
    <default_profile>default</default_profile>
    <default_database>default</default_database>
    <mark_cache_size>100000000</mark_cache_size>
    <timezone>UTC</timezone>
    <compression><case><min_part_size>0</min_part_size><min_part_size_ratio>0</min_part_size_ratio><method>zstd</method></case></compression>
    <remote_servers><carvelot>{shards}</carvelot></remote_servers>
</yandex>
"""
SHARD = "<shard><replica><host>127.0.0.1</host><port>{port}</port></replica></shard>"
USERS = """<?xml version="1.0"?>
<yandex>
    <profiles><default/></profiles>
    <users><default><password></password><networks><ip>127.0.0.1</ip></networks>
        <profile>default</profile><quota>default</quota></default></users>
    <quotas><default/></quotas>
</yandex>
"""
checks = 0
failed = []


def expect(what, got, wanted):
    global checks
    checks += 1
    if got != wanted:
        failed.append(f"{what}: {got!r:.400} instead of {wanted!r:.400}")
        print("DIFFERS:", failed[-1], flush=True)


def tell(text):
    print(f"-- {text}", flush=True)


# ----------------------------------------------------------------------------------------- the servers

class Server:
    def __init__(self, folder, port, ports):
        self.folder, self.port, self.process = folder, port, None
        for name in ("data", "tmp", "files", "schemas"):
            os.makedirs(os.path.join(folder, name))
        with open(os.path.join(folder, "config.xml"), "w", encoding="utf-8") as file:
            file.write(CONFIG.format(folder=folder, port=port, shards="".join(SHARD.format(port=one) for one in ports)))
        with open(os.path.join(folder, "users.xml"), "w", encoding="utf-8") as file:
            file.write(USERS)

    @property
    def name(self):
        return f"127.0.0.1:{self.port}"

    def start(self):
        self.process = subprocess.Popen(["clickhouse-server", "--config-file=" + os.path.join(self.folder, "config.xml")],
                                        cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        for _ in range(300):
            if self.process.poll() is not None:
                break
            if self.run("SELECT 1").returncode == 0:
                return
            time.sleep(0.1)
        with open(os.path.join(self.folder, "errors"), encoding="utf-8", errors="replace") as file:
            sys.exit("The server does not start: " + file.read()[-2000:])

    def kill(self):
        self.process.kill()
        self.process.wait()

    def run(self, query, *options):
        return subprocess.run(["clickhouse-client", "--host", "127.0.0.1", "--port", str(self.port), *options],
                              input=query, text=True, capture_output=True, check=False)

    def ask(self, query):
        """Rows of texts; none for NULL."""
        done = self.run(query, "--format", "JSONCompact")
        if done.returncode:
            raise RuntimeError(f"{query}\n{done.stderr}")
        rows = json.loads(done.stdout)["data"]
        return [tuple(None if cell is None else str(cell) for cell in row) for row in rows]


def free_ports(number):
    sockets = [socket.socket() for _ in range(number)]
    for one in sockets:
        one.bind(("127.0.0.1", 0))
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


# -------------------------------------------------------------------------------------------- the logs

def made_log(programs, kind, seed, kilobytes=400):
    """About so many kilobytes of a generated log."""
    log = subprocess.run([os.path.join(programs, "carvelot-make-log"), kind, str(kilobytes // 1000 + 1), str(seed)],
                         check=True, capture_output=True).stdout
    return log[:log.rindex(b"\n", 0, kilobytes * 1000) + 1]


def moved(log, day, hour, over_the_hour):
    """A generated log, which begins on the third of September at eight, at another time."""
    log = re.sub(rb"^Sep  3 ", b"Sep %2d " % day.day, log, flags=re.M)
    log = re.sub(rb"^3 Sep 2016 ", b"%d Sep %d " % (day.day, day.year), log, flags=re.M)

    def at(match):
        second = int(match[1])
        if over_the_hour and second < 1:
            return b" %02d:59:59" % hour
        return b" %02d:00:%02d" % (hour + over_the_hour, second - over_the_hour)

    return re.sub(rb" 08:00:(\d\d)", at, log)


class Log:
    """A log and what follows from the JSON of its report."""

    def __init__(self, programs, host, path):
        report = os.path.join(programs, "carvelot-report")

        def read(*options):
            return json.loads(subprocess.run([report, *options, path], check=True, capture_output=True).stdout)

        self.host, self.path = host, path
        explored, session = read("--explore", "--json"), read("--json")
        self.frames, self.functions = explored["frames"], explored["functions"]
        self.shapes, self.findings = explored["shapes"], explored["findings"]
        self.records = session["records"]
        self.gaps = session["gaps"]
        self.errors = [record for owner in session["processes"] + session["users"] for record in owner["errors"]]
        self.day = self.day_of(0)

    def day_of(self, record):
        stamp = self.records[record]
        return datetime.date(YEAR, ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov",
                                    "Dec"].index(stamp["month"]) + 1, stamp["day"])

    def counts(self):
        return tuple(str(len(getattr(self, table))) for table in TABLES)


class Fleet:
    """What is to be in the cluster: logs by host and path."""

    def __init__(self, programs, servers):
        self.programs, self.servers, self.logs = programs, servers, {}

    def expects(self, host, *paths):
        for path in paths:
            self.logs[host, path] = Log(self.programs, host, path)

    def load_command(self, host, paths, *options, year=YEAR):
        return [os.path.join(SOURCE, "fleet", "load"), "--host", host, *(("--year", str(year)) if year else ()), *options,
                *(server.name for server in self.servers), *paths]

    def environment(self):
        return {**os.environ, "CARVELOT_REPORT": os.path.join(self.programs, "carvelot-report")}

    def load(self, host, paths, *options, **year):
        return subprocess.run(self.load_command(host, paths, *options, **year), env=self.environment(), capture_output=True,
                              text=True, stdin=subprocess.DEVNULL, check=False)

    def loads(self, what, host, paths, *options, **year):
        done = self.load(host, paths, *options, **year)
        expect(f"{what}: status", (done.returncode, done.stderr), (0, ""))
        return done

    def home_of(self, host, path):
        """The server that fleet/load gives a new log to."""
        def weight(server):
            return int(subprocess.run(["cksum"], input=f"{host}\t{path}\t{server.name}".encode(), capture_output=True,
                                      check=True).stdout.split()[0])
        return max(self.servers, key=weight)


def visible(server):
    """By host and path the numbers of rows of all tables."""
    found = collections.defaultdict(lambda: ["0"] * len(TABLES))
    for at, table in enumerate(TABLES):
        for host, log, number in server.ask(f"SELECT host, log, count() FROM carvelot.{table} GROUP BY host, log"):
            found[host, log][at] = number
    return collections.defaultdict(lambda: ("0",) * len(TABLES), {key: tuple(numbers) for key, numbers in found.items()})


def fingerprint(server):
    """Of all that is shown, with the numbers of its loads."""
    out = {}
    for table in (*TABLES, "loads"):
        rows = server.run(f"SELECT * FROM carvelot.{table} FORMAT TabSeparated").stdout.split("\n")
        out[table] = len(rows) - 1, hashlib.sha256("\n".join(sorted(rows)).encode()).hexdigest()
    return out


def check_rows(what, fleet, server, host=None):
    """Every frame, record, function, shape and finding of all logs, or those of one host; and how many rows the others have."""
    condition = f" WHERE host = '{host}'" if host else ""

    def texts(rows):
        return sorted(tuple(None if cell is None else str(cell) for cell in row) for row in rows)

    def each(table, cells):
        return texts((log.host, log.path, *cells(row, at)) for log in fleet.logs.values() if host in (None, log.host)
                     for at, row in enumerate(getattr(log, table)))

    for table, columns, cells in (
            ("records", "record, process, thread, return_code, text",
             lambda row, at: (at, row["process"], row["thread"], row["returnCode"], row["text"])),
            ("frames", "frame, record, parent, stream, kind, name, start_clock, end_clock, total, self, closed, result",
             lambda row, at: (at, row["record"], row["parent"], row["stream"], row["kind"], row["name"], row["start"],
                              row["end"], row["end"] - row["start"], row["self"], int(row["closed"]), row["result"])),
            ("functions", "kind, name, calls, unclosed, failed, warned, total, self, shortest, longest, p50, p95",
             lambda row, at: (row["kind"], row["name"], row["calls"], row["unclosed"], row["failed"], row["warned"],
                              row["total"], row["self"], row["shortest"], row["longest"], row["p50"], row["p95"])),
            ("shapes", "shape, count, total, longest, p95, first_record, longest_record",
             lambda row, at: (row["shape"], row["count"], row["total"], row["longest"], row["p95"], row["firstRecord"],
                              row["longestRecord"])),
            ("findings", "rule, severity, subject, count, cost, text",
             lambda row, at: (row["rule"], row["severity"], row["subject"], row["count"], row["cost"], row["text"]))):
        found = texts(server.ask(f"SELECT host, log, {columns} FROM carvelot.{table}{condition}"))
        wanted = each(table, cells)
        expect(f"{what}: number of {table}", len(found), len(wanted))
        expect(f"{what}: first row of {table} that differs",
               next(((one, other) for one, other in zip(found, wanted) if one != other), None), None)
    expect(f"{what}: rows by log", dict(visible(server)), {key: log.counts() for key, log in fleet.logs.items()})


# ----------------------------------------------------------------------- the queries, by another computation

def slowest_functions_by_hour(logs, newest):
    groups = collections.defaultdict(lambda: [0, set(), 0, 0])
    for log in logs:
        for frame in log.frames:
            day = log.day_of(frame["record"])
            if frame["kind"] == "function" and day > newest - datetime.timedelta(7):
                group = groups[str(day), log.records[frame["record"]]["hour"], frame["name"]]
                group[0] += 1
                group[1].add(log.host)
                group[2] += frame["self"]
                group[3] = max(group[3], frame["end"] - frame["start"])
    rows = sorted((day, hour, -own, name, calls, len(hosts), longest)
                  for (day, hour, name), (calls, hosts, own, longest) in groups.items())
    out, taken = [], collections.Counter()
    for day, hour, own, name, calls, hosts, longest in rows:
        taken[day, hour] += 1
        if taken[day, hour] <= 10:
            out.append((day, hour, name, calls, hosts, -own, longest))
    return out


def costlier_statements(logs, newest):
    groups = collections.defaultdict(lambda: [0, 0, 0, 0])
    for log in logs:
        if log.day > newest - datetime.timedelta(14):
            now = log.day > newest - datetime.timedelta(7)
            for shape in log.shapes:
                groups[shape["shape"]][now] += shape["count"]
                groups[shape["shape"]][2 + now] += shape["total"]
    rows = [(shape, *numbers, numbers[3] - numbers[2]) for shape, numbers in groups.items() if numbers[3] > numbers[2]]
    return sorted(rows, key=lambda row: -row[-1])[:20]


def unread_lines(logs, newest):
    groups = collections.defaultdict(lambda: [0, 0])
    records = collections.Counter()
    for log in logs:
        records[log.host] += len(log.records)
        for finding in log.findings:
            if finding["rule"] == "unread-lines":
                groups[log.host, finding["subject"]][0] += 1
                groups[log.host, finding["subject"]][1] += finding["count"]
    rows = [(host, reason, number, unread, records[host], unread * 1000 // (unread + records[host]))
            for (host, reason), (number, unread) in groups.items()]
    return sorted(rows, key=lambda row: (-row[5], -row[3], row[0], row[1]))


def first_causes(logs, newest):
    groups = collections.defaultdict(list)
    for log in logs:
        for finding in log.findings:
            if finding["rule"] == "first-cause":
                groups[finding["subject"]].append((finding["cost"], finding["count"], log, finding["records"][0]))
    rows = []
    for function, cases in groups.items():
        _, _, log, record = max(cases, key=lambda case: case[0])
        rows.append((function, sum(case[1] for case in cases), len({case[2].host for case in cases}),
                     len({(case[2].host, case[2].path) for case in cases}), sum(case[0] for case in cases),
                     log.records[record]["text"]))
    return sorted(rows, key=lambda row: (-row[4], -row[1], row[0]))[:50]


def release_compared(logs, newest):
    release = newest - datetime.timedelta(newest.weekday())
    groups = collections.defaultdict(lambda: [0] * 6)
    for log in logs:
        if log.day >= release - datetime.timedelta(7):
            after = log.day >= release
            for row in log.functions:
                numbers = groups[row["kind"], row["name"]]
                numbers[after] += row["calls"]
                numbers[2 + after] += row["self"]
                numbers[4 + after] += row["failed"]
    rows = [(*key, n[0], n[1], n[2], n[3], n[2] // max(n[0], 1), n[3] // max(n[1], 1), n[4], n[5])
            for key, n in groups.items()]
    return sorted(rows, key=lambda row: (-abs(row[5] - row[4]), row[0], row[1]))[:50]


# (the function, the columns of the answer that it tells)
QUERIES = {"slowest-functions-by-hour": (slowest_functions_by_hour, range(7)),
           "costlier-statements": (costlier_statements, range(1, 7)),
           "unread-lines": (unread_lines, range(6)),
           "first-causes": (first_causes, (0, 1, 2, 3, 4, 6)),
           "release-compared": (release_compared, range(10)),
           "lost-rows": (lambda logs, newest: [], ())}


def check_queries(what, fleet):
    """Any of the servers may be asked."""
    logs = list(fleet.logs.values())
    newest = max(log.day for log in logs)
    files = {os.path.splitext(os.path.basename(path))[0]: path
             for path in glob.glob(os.path.join(SOURCE, "fleet", "queries", "*.sql"))}
    expect("the queries that are checked", sorted(files), sorted(QUERIES))
    told = []
    for name, path in sorted(files.items()):
        with open(path, encoding="utf-8") as file:
            query = file.read()
        expect(f"{name}: its first line asks", re.match(r"-- .*\?", query) is not None, True)
        function, columns = QUERIES[name]
        wanted = [tuple(str(cell) for cell in row) for row in function(logs, newest)]
        for server in fleet.servers:
            found = [tuple(row[column] for column in columns) for row in server.ask(query)]
            if name == "lost-rows" or wanted:
                expect(f"{what}: {name}", found, wanted)
            else:
                expect(f"{what}: {name} has something to tell", False, True)
        told.append(f"{name} {len(wanted)}")
    tell(f"{what}: the answers are those of the reports of {len(logs)} logs (rows: {', '.join(told)})")


# ------------------------------------------------------------------------------------------------- the run

def write(folder, host, name, log):
    path = os.path.join(folder, host, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(log)
    return path


def load_ten_machines(fleet, folder):
    began, size = time.monotonic(), 0
    paths = {}
    for number in range(1, 11):
        host = f"jde{number:02}"
        kind = "jas" if number > 7 else "debug"
        for week, day in enumerate(WEEKS):
            log = moved(made_log(fleet.programs, kind, 2 * number + week), day, 5 + number, number % 3 == 0)
            if number == 4:
                log += b"Sep 10 once upon a time there was no time\n" * 70
            size += len(log)
            # Blanks and quotes have to go through all of it.
            path = write(folder, host, f"it's {day}.log", log)
            paths.setdefault(host, []).append(path)
            fleet.expects(host, path)
        fleet.loads(host, host, paths[host])
    records = sum(len(log.records) for log in fleet.logs.values())
    tell(f"loaded {len(fleet.logs)} logs of {len(paths)} machines, {size / 1e6:.1f} MB, {records} records, "
         f"in {time.monotonic() - began:.1f} s with the making of the logs")
    for server in fleet.servers:
        own = server.ask("SELECT count() FROM carvelot.loads_shown")[0][0]
        expect(f"{server.name} has some of the logs", int(own) > 0, True)
    return paths


def check_repeat(fleet, paths):
    server = fleet.servers[0]
    before = fingerprint(server)
    began = time.monotonic()
    for host in paths:
        done = fleet.loads(f"{host} again", host, paths[host])
        expect(f"{host} again: passed over", done.stdout.count("has not changed"), len(paths[host]))
    expect("a repeated load changes nothing", fingerprint(server), before)
    # Named in another order, and from elsewhere, they are the same logs.
    fleet.servers.reverse()
    done = subprocess.run(fleet.load_command("jde01", [os.path.basename(path) for path in paths["jde01"]]),
                          cwd=os.path.dirname(paths["jde01"][0]), env=fleet.environment(), capture_output=True, text=True,
                          check=False)
    fleet.servers.reverse()
    expect("servers in another order", (done.returncode, done.stdout.count("has not changed")), (0, 2))
    expect("nor does another order of the servers", fingerprint(server), before)
    tell(f"repeated: all {len(fleet.logs)} logs passed over in {time.monotonic() - began:.1f} s, the same {before['records'][0]} "
         f"records, {before['frames'][0]} frames and {before['loads'][0]} loads, by their checksums")


def check_change(fleet, paths, folder):
    path = paths["jde02"][1]
    old = fleet.logs["jde02", path].counts()
    write(folder, "jde02", os.path.basename(path), moved(made_log(fleet.programs, "debug", 99), WEEKS[1], 9, False))
    fleet.expects("jde02", path)
    fleet.loads("a log that changed", "jde02", paths["jde02"])
    check_rows("after a log changed", fleet, fleet.servers[1], "jde02")
    tell(f"a log that changed took the earlier one's place: {old[0]} records before, "
         f"{fleet.logs['jde02', path].counts()[0]} now")
    fleet.loads("loaded again", "jde02", paths["jde02"], "--again")
    check_rows("after a load again", fleet, fleet.servers[0], "jde02")


def wait_until(what, ask, seconds=30):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if ask():
            return True
        time.sleep(0.01)
    expect(what, "not seen", "seen")
    return False


def running(group):
    """The processes of a group that have not ended."""
    out = []
    for path in glob.glob("/proc/[0-9]*/stat"):
        try:
            with open(path, encoding="utf-8", errors="replace") as file:
                state, _, its_group = file.read().rsplit(") ", 1)[1].split()[:3]
        except OSError:
            continue
        if int(its_group) == group and state != "Z":
            out.append(path)
    return out


def check_server_killed(fleet, folder):
    stays, dies = fleet.servers
    # Three logs for each, the first of them for the one that is killed.
    paths, number = {stays: [], dies: []}, 0
    while min(map(len, paths.values())) < 3:
        number += 1
        path = os.path.join(folder, "jde11", f"{number}.log")
        home = fleet.home_of("jde11", path)
        if len(paths[home]) < 3:
            write(folder, "jde11", f"{number}.log",
                  moved(made_log(fleet.programs, "debug", 200 + number, 3000 if not paths[home] else 400), WEEKS[1], 12, False))
            paths[home].append(path)
    order = [path for pair in zip(paths[dies], paths[stays]) for path in pair]
    loader = subprocess.Popen(fleet.load_command("jde11", order), env=fleet.environment(), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, stdin=subprocess.DEVNULL)

    unfinished = ("SELECT count() FROM carvelot.records_stored WHERE load IN (SELECT load FROM carvelot.loads_stored "
                  "WHERE host = 'jde11' GROUP BY load HAVING max(toInt8(state)) = 1)")
    seen = wait_until("a load to break off", lambda: int(dies.ask(unfinished)[0][0]) > 0)
    dies.kill()
    printed, said = loader.communicate()
    expect("a server killed in a load: status of the loader", loader.returncode, 1)
    expect("a server killed in a load: logs that wait", printed.count(f"waits for {dies.name}"), 2)
    fleet.expects("jde11", *paths[stays])
    again = fleet.load("jde11", order)
    expect("while it is down", (again.returncode, again.stdout.count("has not changed")), (1, 3))
    lines = [line.strip() for line in said.split("\n") if line.startswith("  fleet/load ")]
    expect("the loader tells what to repeat", len(lines), 1)
    answer = stays.run("SELECT count() FROM carvelot.records")
    expect("no query is answered by half a cluster", answer.returncode != 0, True)
    dies.start()
    half = int(dies.ask(unfinished)[0][0])
    expect("rows of the broken load are there", seen and half > 0, True)
    check_rows("after the server is back", fleet, stays, "jde11")
    repeated = subprocess.run(["bash", "-c", lines[0]], cwd=SOURCE, env=fleet.environment(), capture_output=True, text=True,
                              check=False)
    expect("what is to be repeated: status", (repeated.returncode, repeated.stderr), (0, ""))
    fleet.expects("jde11", *paths[dies])
    check_rows("after the repeated load", fleet, stays, "jde11")
    before = fingerprint(stays)
    fleet.loads("repeated once more", "jde11", order)
    expect("repeated once more: nothing changes", fingerprint(stays), before)
    tell(f"a server killed in a load: {half} records of the broken load stood there and were never shown; 3 of 6 logs were in "
         "the other server; after it was back and the load repeated, all rows are there once")


def check_loader_killed(fleet, folder, turns=5):
    server, host = fleet.servers[0], "jde12"
    paths = [write(folder, host, f"{number}.log", moved(made_log(fleet.programs, kind, 300 + number), WEEKS[1], 13, False))
             for number, kind in enumerate(("debug", "jas", "debug"))]
    began = time.monotonic()
    fleet.loads("a load to be killed", host, paths)
    lasts = time.monotonic() - began
    fleet.expects(host, *paths)
    dice = random.Random(1)
    old = {path: fleet.logs[host, path].counts() for path in paths}
    seen = collections.Counter()
    for turn in range(turns):
        # Each turn has other logs, so there is always something to load.
        for number, path in enumerate(paths):
            write(folder, host, f"{number}.log", moved(made_log(fleet.programs, "debug" if number != 1 else "jas",
                                                                400 + 3 * turn + number), WEEKS[1], 13, False))
        new = {path: Log(fleet.programs, host, path).counts() for path in paths}
        loader = subprocess.Popen(fleet.load_command(host, paths), env=fleet.environment(), stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, start_new_session=True)
        time.sleep(lasts * (turn + dice.random()) / turns)
        # With all that it started, or alone: then its clients come to their end by themselves.
        (os.killpg if turn % 2 else os.kill)(loader.pid, signal.SIGKILL)
        loader.wait()
        # A client that lives on may yet tell that the load is done, between the looks at two tables.
        shown = visible(server)
        for path in paths:
            whole = zip(shown[host, path], old[path], new[path])
            expect(f"killed in turn {turn}: tables of whole logs only", [now for now, *both in whole if now not in both], [])
        wait_until("the end of what the loader started", lambda group=loader.pid: not running(group))
        shown = visible(server)
        for path in paths:
            now = shown[host, path]
            expect(f"killed in turn {turn}: whole logs only", now in (old[path], new[path]), True)
            seen["new" if now == new[path] else "old"] += 1
            old[path] = now
    expect("loaders were killed early and late", min(seen["new"], seen["old"]) > 0, True)
    fleet.loads("after the kills", host, paths)
    fleet.expects(host, *paths)
    check_rows("after the kills", fleet, server)
    before = fingerprint(server)
    fleet.loads("after the kills, once more", host, paths)
    expect("after the kills, once more: nothing changes", fingerprint(server), before)
    tell(f"the loader killed at {turns} moments: {seen['old']} times the earlier log was shown after it and {seen['new']} times "
         "the later, whole each time; the load repeated, all rows are there once")


def check_deleted(fleet):
    """What no longer counts is deleted, when the servers get to it."""
    deleted = 0
    for server in fleet.servers:
        for table in TABLES:
            wait_until(f"{server.name} deletes from {table}", lambda: server.ask(
                f"SELECT (SELECT count() FROM carvelot.{table}_stored) = (SELECT count() FROM carvelot.{table}_shown)") == [("1",)])
        deleted += int(server.ask("SELECT uniqExact(load) FROM carvelot.loads_stored WHERE state = 'swept'")[0][0])
    tell(f"rows of {deleted} loads that broke off or were replaced are deleted from both servers")


def check_year(fleet, folder):
    """Without --year it is that of the file's last change, or the one before."""
    server, host = fleet.servers[0], "jde13"
    changes = {"same year.log": datetime.datetime(YEAR, 9, 10, 20), "next year.log": datetime.datetime(YEAR + 1, 1, 2, 3)}
    paths = []
    for at, (name, changed) in enumerate(changes.items()):
        paths.append(write(folder, host, name, moved(made_log(fleet.programs, "debug", 600 + at), WEEKS[1], 17, False)))
        os.utime(paths[-1], (changed.timestamp(), changed.timestamp()))
    fleet.loads("without a year", host, paths, year=None)
    again = fleet.loads("without a year, again", host, paths, year=None)
    expect("without a year, again: passed over", again.stdout.count("has not changed"), len(paths))
    fleet.expects(host, *paths)
    expect("the years that were found", server.ask(f"SELECT log, options, day FROM carvelot.loads WHERE host = '{host}' ORDER BY log"),
           [(path, f"year={YEAR}", str(WEEKS[1])) for path in sorted(paths)])
    check_rows("without a year", fleet, server, host)


def check_forget(fleet, paths):
    """The first week goes, the second one stays."""
    done = subprocess.run([os.path.join(SOURCE, "fleet", "forget"), "2025-09-08", *(server.name for server in fleet.servers)],
                          capture_output=True, text=True, check=False)
    expect("forget", (done.returncode, done.stderr, done.stdout.count("20250901")), (0, "", 2))
    wanted = {key: log.counts() for key, log in fleet.logs.items() if log.day == WEEKS[1]}
    for table in TABLES:
        def is_gone(table=table):
            logs = fleet.servers[0].ask(f"SELECT DISTINCT host, log FROM carvelot.{table}")
            return set(logs) <= set(wanted)

        wait_until(f"the first week of {table} goes", is_gone)
    expect("what stays", dict(visible(fleet.servers[1])), wanted)
    again = fleet.loads("after a week is forgotten", "jde01", paths["jde01"])
    expect("a forgotten log is not loaded again", again.stdout.count("has not changed"), 2)
    tell(f"a week is forgotten: {len(fleet.logs) - len(wanted)} logs are gone, {len(wanted)} are as they were")


def check_shapes_only(fleet, folder):
    """Loads with planted values in all places; then looks for these in every text of the cluster."""
    def planted(log):
        log = re.sub(rb"'[^'\n]*'", b"'LEAKliteral'", log)
        log = re.sub(rb"= \d[\d.]*", b"= 99887766", log)
        log = re.sub(rb"\[ *[\w-]+ *\]$", b"[LEAKparameter]", log, flags=re.M)
        log = re.sub(rb"(Param\d+: )[^_\n]*_", rb"\1LEAKvalue_", log)
        log = re.sub(rb"(ERROR: |JDB\d+ - |Failed )", rb"\1LEAKerror ", log)
        return re.sub(rb"(WRK:)\w+", rb"\1LEAKlabel", log)

    names = {}
    for host, options in (("open", ()), ("strict", ("--shapes-only",))):
        paths = [write(folder, host, f"{kind}.log", planted(moved(made_log(fleet.programs, kind, 500), WEEKS[1], 15, False)))
                 for kind in ("debug", "jas")]
        fleet.loads(host, host, paths, *options)
        found = collections.Counter()
        columns = 0
        for table, column in fleet.servers[0].ask("SELECT table, name FROM system.columns WHERE database = 'carvelot' "
                                                  "AND table LIKE '%\\_stored' AND type = 'String'"):
            columns += 1
            for server in fleet.servers:
                found[table] += int(server.ask(
                    f"SELECT countIf(position({column}, 'LEAK') > 0 OR position({column}, '99887766') > 0) "
                    f"FROM carvelot.{table} WHERE host = '{host}'")[0][0])
        names[host] = {table: number for table, number in found.items() if number}
    for table in ("records_stored", "errors_stored", "gaps_stored"):
        expect(f"planted values are found in {table} without --shapes-only", names["open"].get(table, 0) > 0, True)
    expect("planted values with --shapes-only", names["strict"], {})
    shown = visible(fleet.servers[0])
    expect("rows with --shapes-only", {key[1].rsplit("/", 1)[1]: counts[0] for key, counts in shown.items() if key[0] == "strict"},
           {key[1].rsplit("/", 1)[1]: counts[0] for key, counts in shown.items() if key[0] == "open"})
    tell(f"--shapes-only: {sum(names['open'].values())} texts with planted values without it, none with it, in {columns} columns "
         "of both servers")


def main():
    programs = os.path.abspath(sys.argv[1])
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: sys.exit(1))
    folder = tempfile.mkdtemp(prefix="carvelot-fleet-")
    servers = []
    began = time.monotonic()
    try:
        ports = free_ports(2)
        for port in ports:
            servers.append(Server(os.path.join(folder, f"server-{port}"), port, ports))
            servers[-1].start()
        with open(os.path.join(SOURCE, "fleet", "schema.sql"), encoding="utf-8") as file:
            schema = file.read()
        for server in servers * 2:
            done = server.run(schema, "-n")
            expect("the tables are made, and may be made again", (done.returncode, done.stderr), (0, ""))
        tell(f"two servers of version {servers[0].ask('SELECT version()')[0][0]}, {servers[0].name} and {servers[1].name}")
        fleet = Fleet(programs, servers)
        logs = os.path.join(folder, "logs")
        paths = load_ten_machines(fleet, logs)
        if failed:
            sys.exit("Nothing else is checked.")
        check_rows("after the load", fleet, servers[0])
        check_queries("after the load", fleet)
        check_repeat(fleet, paths)
        check_change(fleet, paths, logs)
        check_server_killed(fleet, logs)
        check_loader_killed(fleet, logs)
        check_year(fleet, logs)
        check_deleted(fleet)
        check_queries("after all kills", fleet)
        check_forget(fleet, paths)
        check_shapes_only(fleet, logs)
    finally:
        for server in servers:
            if server.process is not None:
                server.kill()
        shutil.rmtree(folder, ignore_errors=True)
    print(f"{time.monotonic() - began:.0f} s")
    for line in failed[:40]:
        print(line)
    print(f"{checks - len(failed)} passed, {len(failed)} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
