#!/usr/bin/env python3
"""Writes one random log to be explored, the same for the same seed: a debug log or a JAS log.

Usage: explore_logs.py SEED [FILE]      (standard output without a file)
       explore_logs.py --fired A-B      (how often each rule decided something over these seeds)

Several threads or users each live through stories (nested calls, statements in loops, caches, transactions,
events) while one clock runs over midnights and year's ends, and lines are damaged, dropped and put in between.
"""

import random
import sys

MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
MONTH_DAYS = [31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31]
SECOND = 1000000
DAY = 86400 * SECOND
# U+FF21 orders behind U+1F600 by UTF-16 and ahead of it by code point.
FUNCTIONS = ["F4211FSBeginDoc", "F4211FSEditLine", "F4211EditLine", "GetItemMasterInfo", "X0010GetNextNumber",
             "R\u00e9capitulatif", "\U0001F600Total", "\uFF21Total", "Price;Advance", "(top)",
             "Dotted."]
EVENTS = ["Post Dialog is Initialized", "OK Button", " ", "Grid; Row Exited", "\u00c9v\u00e9nement", "F4211EditLine"]
TABLES = ["PRODDTA.F4211", "F0101", "PRODDTA/F4105", "JDE_CRP.CRPDTA.F4102", "\u00c4RTIKEL", "F4101"]
USERS = ["JDE", "SCHMIDT", "M\u00dcLLER", "1000183", "", "A;B", "A\U0001F600B"]
CACHES = ["75976968DataMapCDISTCache", "F4211Cache", "Cach\u00e9", ""]
STEPS = [0, 0, 1, 137, 2000, 2000, 45000, 45000, 250000]
WIDE_STEPS = [999999, 1000000, 1000001, 1500000, 1500001, 16777217, 61000000, 599999999, 600000000, 600000001]
VALUES = ["7", "42", "-3", "+8", "0.5", ".25", "1e5", "2.5E-3", "'SO'", "'O''Neill'", "'\u00e9 ;  x'", "''", "?", "X1", "T0.A#1",
          "12a", "1.5.2", "5 - 3", "a1e-5", "-.5", "BRAND -5", "(AND-5)", "CASE X THEN -1 ELSE +2 END", "\u00e91",
          "1\u00e9", "A AND -.5e1", "1.", "3_", "'a'7", "1e5x", "NULL"]

BEGIN = "Entering JDB_BeginTransaction"
ROLLBACK = "Entering JDB_RollbackUser (hUser 2BB4BE18)"
BEHIND = "\tbehind"  # without a tab behind it such a line would fix the column at which all texts begin


class ExploreLog:
    """What both formats share. An owner is a thread of a process, or a user."""

    def __init__(self, seed):
        self.rng = random.Random("explore %d" % seed)
        rng = self.rng
        self.lines = []
        self.leap = rng.random() < 0.35
        starts = [(11, 31, 23), (11, 30, 20), (1, 28, 23), (8, 22, 10), (2, 1, 0), (0, 1, 0), (5, 30, 23)]
        month, day, hour = rng.choice(starts)
        self.now = self.instant(month, day) + hour * 3600 * SECOND + rng.choice([0, 3540, 3590, 1800]) * SECOND
        self.oddity = rng.choice([0.0, 0.01, 0.05, 0.15])
        self.wide = rng.choice([0.0, 0.03, 0.15])
        self.calm = rng.random() < 0.3  # stories stay whole
        self.transactions = True
        self.tick = 1  # what a stamp of this log can tell apart
        self.offsets = []  # of the next stamps from now
        self.functions = rng.sample(FUNCTIONS, rng.randint(2, 5))
        if rng.random() < 0.2:
            self.functions = ["\uFF21Total", "\U0001F600Total"]
        self.templates = [self.template(rng.choice(TABLES)) for _ in range(rng.randint(2, 5))]
        if rng.random() < 0.15:
            self.templates = ["SELECT * FROM \U0001F600TAB WHERE X = %s", "SELECT * FROM \uFF21TAB WHERE X = %s"]

    def odd(self, factor=1.0):
        return self.rng.random() < self.oddity * factor

    # ---- the clock

    def instant(self, month, day):
        """Of a day, counted from the first of January of the year in which the log begins."""
        return (sum(MONTH_DAYS[:month]) + (1 if self.leap and month > 1 else 0) + day - 1) * DAY

    def date(self, instant):
        """(month, day) of an instant, years after each other being alike."""
        days = instant // DAY % (366 if self.leap else 365)
        for month in range(12):
            length = 29 if self.leap and month == 1 else MONTH_DAYS[month]
            if days < length:
                return MONTHS[month], days + 1
            days -= length
        raise AssertionError("a year has twelve months")

    def advance(self):
        """The instant of the next line; now and then one that is odd, or from where an odd clock goes on."""
        rng = self.rng
        self.now += rng.choice(WIDE_STEPS) if rng.random() < self.wide else rng.choice(STEPS)
        pick = rng.random()
        if pick < 0.15 * self.oddity:  # a night passes, or most of a year
            self.now += rng.choice([3600 * SECOND, 8 * 3600 * SECOND, DAY, DAY + 1, 120 * DAY, 182 * DAY, 183 * DAY])
        elif pick < 0.3 * self.oddity:  # set back
            self.now -= rng.choice([600000000, 600000001, 3600 * SECOND, DAY, 90 * DAY])
        elif pick < 0.6 * self.oddity:  # one stray stamp
            return self.now + rng.choice([-1, 1]) * rng.choice([600000000, 600000001, 3600 * SECOND, DAY, DAY + 1,
                                                               40 * DAY])
        elif pick < 1.2 * self.oddity:  # out of order
            return self.now - rng.choice([1, 500, 70000, 2000000])
        elif pick < 1.5 * self.oddity:  # away, and back after as many stamps as may make the first a stray one, or one more
            away = 600 * SECOND + self.tick
            self.offsets = [0, away] + [away + 60 * SECOND] * rng.randint(1, 3) + [0]
        return self.now

    def stamp(self):
        """(month, day, hour, minute, second, microsecond) as texts are made of."""
        rng = self.rng
        instant = self.now + self.offsets.pop(0) if self.offsets else self.advance()
        month, day = self.date(instant)
        seconds, fraction = divmod(instant % DAY, SECOND)
        hour, minute, second = seconds // 3600, seconds // 60 % 60, seconds % 60
        if self.odd(0.7):
            pick = rng.randrange(6 if self.leap else 4)
            if pick == 0:
                month = rng.choice(["Foo", "anF", "J", "JanFeb"])
            elif pick == 1:
                month, day = rng.choice([("Feb", 30), ("Apr", 31), ("Sep", 0), ("Jan", 32), ("Sep", -1)])
            elif pick == 2:
                hour, minute, second, fraction = rng.choice([(24, 0, 0, 0), (23, 59, 59, 999999), (25, 1, 1, 1), (-1, 0, 0, 0)])
            elif pick == 3:
                month, day = rng.choice([("Feb", 28), ("Mar", 1), ("Dec", 31), ("Jan", 1)])
            else:
                month, day = "Feb", 29
        return month, day, hour, minute, second, fraction

    # ---- texts

    def value(self):
        return self.rng.choice(VALUES)

    def values(self):
        count = self.rng.choice([1, 2, 3, 8])
        return self.rng.choice([",", ", ", " , "]).join(self.value() for _ in range(count))

    def template(self, table):
        """A statement with places for a value, `%s`, and for a list of them, `%v`."""
        return self.rng.choice([
            "SELECT * FROM {} WHERE AN8 = %s", "SELECT  DISTINCT SDKCOO FROM {}  WHERE  ( SDKCOO = %s AND SDDCTO = %s )",
            "SELECT T0.AN8 FROM {} T0, F0116 T1 WHERE T0.AN8 IN (%v)", "SELECT -1, %s FROM {} WHERE X BETWEEN -%s AND +%s",
            "UPDATE {} SET X = %s,Y=%s WHERE Z<%s", "INSERT INTO {} (A, B) VALUES (%v)", "INSERT INTO {}(A) VALUES(%s)",
            "DELETE FROM {} WHERE A LIKE %s OR N'%s", "DROP TABLE {}", "CREATE TABLE {} (A%s)", "SELECT COUNT(*)",
            "[JDBOLEDB] req=%s DELETE INSERT {}", "[JDBOLEDB] 12 SELECT * FROM {} WHERE A=%s"]).replace("{}", table)

    def statement(self):
        template = self.rng.choice(self.templates)
        out = []
        for piece in template.split("%"):
            if out and piece[:1] == "s":
                out.append(self.value() + piece[1:])
            elif out and piece[:1] == "v":
                out.append(self.values() + piece[1:])
            else:
                out.append(piece)
        text = "".join(out)
        if self.rng.random() < 0.1:
            text += "\t"
        if "SELECT" in text and self.rng.random() < 0.1:
            text = text.replace(" ", self.rng.choice(["  ", " \t", "\t ", " \v"]), 2)
        return text

    def simple_statement(self):
        """Of one shape whatever its value."""
        return self.rng.choice(["SELECT * FROM F4101 WHERE IMITM = %d", "SELECT * FROM F4101 WHERE IMITM = '%d'"]) % \
            self.rng.randint(0, 9999)

    def executed(self, text):
        """The lines of one execution."""
        raise NotImplementedError

    def call(self, name, level):
        suffix = " (BSFNLevel = %d)" % level if level is not None else ""
        text = "Calling Business function %s from Level 1 for JDE. Application Name [P4210]%s" % (name, suffix)
        if self.odd():
            text = self.rng.choice(["Calling Business function", "Calling Business function %s" % name, "Calling X y",
                                    "Calling Business function %s from (BSFNLevel = -2)" % name])
        return text

    def returned(self, name, level):
        rng = self.rng
        code = rng.choice([0, 0, 0, 0, 0, 1, 2, 3, 9])
        text = "Return value is %d for %s.%s" % (code, name, " (BSFNLevel = %d)" % level if level is not None else " ")
        if self.odd():
            text = rng.choice(["Return value is 2 for . (BSFNLevel = 1)", "Return value is 2", "Return value is 0 for Nobody. x",
                               "Return value is 0 for %s. (BSFNLevel = -2)" % name])
        return text

    def trouble(self):
        return self.rng.choice(["ERROR: it failed", "ERROR: it failed", "Return value is 2 for Nobody. (BSFNLevel = 7)"])

    def cache_story(self):
        rng = self.rng
        handle, cursor = rng.choice(["1A", "1a", "0A4A14A8"]), rng.choice(["09310010", "0931001F"])
        confirm = "  hCache:[%s] Nm:[9x] Recs:0 Curs:0" % handle
        lines = ["Entering jdeCacheInit - Name:[%s]" % rng.choice(CACHES), "  Created new cache - hCache:[%s]" % handle, confirm]
        if rng.random() < 0.3:
            lines += ["    Found existing cache, total references:[2]", confirm]
        if rng.random() < 0.7:
            lines += ["Open Cursor Success hCursor:[%s] hCache:[%s]" % (cursor, handle), confirm]
            if rng.random() < 0.5:
                lines += ["Entering jdeCacheCloseCursor hCursor:[%s]" % cursor, confirm]
        if rng.random() < 0.4:
            lines += [rng.choice(["Entering jdeCacheTerminate", "Entering jdeCacheTerminateAll"]), confirm]
        return lines

    def transaction(self):
        rng = self.rng
        lines = [self.trouble()] if rng.random() < 0.3 else []
        lines.append(rng.choice([BEGIN, BEGIN, "ERROR: while " + BEGIN + BEHIND]))
        lines += self.story(3) if rng.random() < 0.3 else []
        lines += [self.trouble()] if rng.random() < 0.6 else []
        lines += ["x"] * rng.randint(0, 2)
        lines.append(rng.choice([ROLLBACK, ROLLBACK, "ERROR: " + ROLLBACK + BEHIND, "Entering JDB_CommitUser"]))
        return lines + [ROLLBACK] * (rng.random() < 0.2)

    # ---- stories

    def called(self, depth, inside):
        """A call around other lines, its return there or not."""
        rng = self.rng
        name = rng.choice(self.functions)
        level = depth + 1 if self.calm or rng.random() < 0.85 else rng.choice([0, None, 1, 2, -2])
        lines = [self.call(name, level)] + inside
        pick = rng.random()
        if self.calm or pick < 0.85:
            lines.append(self.returned(name, level if rng.random() < 0.8 else None))
        elif pick < 0.9:
            lines.append(self.returned(rng.choice(self.functions), level))
        elif pick < 0.93:
            lines += [self.returned(name, level)] * 2
        return lines

    def loop(self, depth):
        """One statement again and again, straight or through calls of its own."""
        rng = self.rng
        lines = []
        direct = rng.random() < 0.5
        for _ in range(rng.choice([3, 8, 9, 10, 11, 13, 25])):
            if not direct and rng.random() < 0.8:
                inside = []
                for _ in range(rng.choice([1, 1, 1, 2, 9, 10] if rng.random() < 0.15 else [1])):
                    inside += self.executed(self.simple_statement())
                lines += self.called(depth, inside)
            else:
                lines += self.executed(self.simple_statement())
        return lines

    def event(self, depth):
        raise NotImplementedError

    def story(self, depth):
        rng = self.rng
        pick = rng.random()
        if pick < 0.35 and depth < 5:
            inside = []
            for _ in range(rng.randint(0, 3)):
                inside += self.story(depth + 1)
            return self.called(depth, inside)
        if pick < 0.5:
            return self.executed(self.statement())
        if pick < 0.6:
            return self.loop(depth)
        if pick < 0.7 and depth < 5:
            return self.event(depth)
        if pick < 0.76:
            return self.cache_story()
        if pick < 0.82 and self.transactions:
            return self.transaction()
        if pick < 0.88:
            return [self.trouble()]
        if pick < 0.9:
            return [self.returned(rng.choice(self.functions), rng.choice([None, 0, 1, 5]))]
        return [rng.choice(["Fetched the record", "No More Data found", "x", "On line 5"])]

    def life(self, stories):
        lines = []
        for _ in range(stories):
            lines += self.story(0)
        return lines

    def deep_life(self):
        """Calls within calls, deeper than other tools are told of."""
        depth = self.rng.choice([500, 501, 502, 520])
        lines = [self.call("F%d" % (level % 7), level) for level in range(1, depth + 1)]
        lines += self.executed(self.simple_statement())
        return lines + [self.returned("F%d" % (level % 7), level)
                        for level in range(depth, self.rng.choice([0, depth // 2]), -1)]

    # ---- the log

    def lives(self, owners):
        """(owner, text) of all lines, each owner's in its order."""
        rng = self.rng
        waiting = {owner: self.life(rng.choice([0, 1, 4, 8])) for owner in owners}
        if rng.random() < 0.1:
            waiting[owners[0]] += self.deep_life()
        out = []
        while waiting:
            owner = rng.choice(list(waiting))
            for _ in range(rng.choice([1, 1, 5, 20])):
                if not waiting[owner]:
                    del waiting[owner]
                    break
                out.append((owner, waiting[owner].pop(0)))
        return out

    def first_astray(self):
        """Now and then the first stamp lies about a day from two that lie about ten minutes apart."""
        rng, tick = self.rng, self.tick
        if rng.random() < 0.15:
            self.offsets = [rng.choice([-1, 1]) * rng.choice([DAY, DAY + tick, DAY + tick, 200 * DAY]), 0,
                            rng.choice([1, -1]) * rng.choice([0, 600 * SECOND, 600 * SECOND, 600 * SECOND + tick])]

    def last_astray(self):
        """Now and then the last stamp lies about a day from the one before it."""
        rng, tick = self.rng, self.tick
        if rng.random() < 0.2:
            self.offsets = [0, rng.choice([-1, 1]) * rng.choice([DAY - tick, DAY, DAY, DAY + tick, 200 * DAY])]

    def encode(self, line):
        raw = line.encode("utf-8")
        if self.odd(0.1):
            raw += b" and on" * 1300
        return raw

    def data(self):
        rng = self.rng
        end = rng.choice([b"\n", b"\n", b"\r\n", b"\r", None])
        pieces = []
        for line in self.lines:
            pieces.append(line)
            pieces.append(end if end is not None else rng.choice([b"\n", b"\r\n", b"\r", b"\n\n"]))
        if len(pieces) > 20 and rng.random() < 0.2:
            pieces.pop()
        return b"".join(pieces)


class DebugLog(ExploreLog):
    def executed(self, text):
        rng = self.rng
        lines = [text]
        if rng.random() < 0.2:
            lines.append(rng.choice(["x", "x", "x", "Return value is 0 for Nobody. x", "Return value is 0", "Calling X y",
                                     "RT: <<<Finished  ER:\tX\t", "On line 5"]))
        if rng.random() < 0.85:
            lines.append("Exiting DBPerformRequest")
        return lines

    def trouble(self):
        return self.rng.choice([super().trouble(), "JDB9900401 - Failed to execute db request", "x CAC0001111 y"])

    def event(self, depth):
        rng = self.rng
        name = rng.choice(EVENTS)
        start = rng.choice(["RT: >>>Beginning ER:\t%s\t" % name, "RT: >>>Beginning ER:\t%s\tForm:\tW4210A\t" % name,
                            "RT: >>>Beginning ER:\t%s\tForm:W4210A\t" % name, "RT: >>>Beginning ER:\t%s" % name])
        lines = [start] + self.story(depth + 1) + self.story(depth + 1)
        return lines + ["RT: <<<Finished  ER:\t%s\t" % name] * rng.choice([0, 1, 1, 1, 1, 1, 2])

    def line(self, owner, text):
        month, day, hour, minute, second, fraction = self.stamp()
        ids = "%d/%d" % owner
        if self.dashes:
            return "%s %2d %02d:%02d:%02d.%06d - %s WRK:Starting jdeCallObject\t%s" % (
                month, day, hour, minute, second, fraction, ids, text)
        return "%s %d %02d:%02d:%02d ** %s \t%s" % (month, day, hour, minute, second, ids, text)

    def write(self):
        rng = self.rng
        self.dashes = rng.random() < 0.8
        self.tick = 1 if self.dashes else SECOND
        owners = [(4120, thread) for thread in rng.sample([3388, 1, -167733552], rng.randint(1, 3))]
        if rng.random() < 0.5:
            owners += [(5500, 3388), (-5, 2)][:rng.randint(1, 2)]
        pair = rng.random() < 0.03
        if pair:
            self.offsets = [0, rng.choice([DAY + 1, 3 * DAY])]
        else:
            self.first_astray()
        self.lines.append(self.encode(self.line(owners[0], "Entering JDB_InitUser with commit mode 0.")))
        if pair:
            self.lines.append(self.encode(self.line(owners[0], self.statement())))
            return
        for owner, text in self.lives(owners):
            if self.odd():
                self.lines.append(rng.choice([b"", b"a continuation of the line before", b"--UBE--[2]-- Starting", b"x", b"  ",
                                              b"two words", b"at Foo.bar(Foo:12) x"]))
            self.lines.append(self.encode(self.line(owner, text)))
        self.last_astray()
        for _ in range(2):
            self.lines.append(self.encode(self.line(owners[0], self.statement())))


class JasLog(ExploreLog):
    def executed(self, text):
        if self.rng.random() < 0.4:
            return [text.replace("?", "1")]
        text = "SELECT * FROM F4101 WHERE IMITM = ?"
        return [text, "SQL statement parameter marker values are :", "Param1: %d_Types.DECIMAL," % self.rng.randint(0, 99)]

    def trouble(self):
        return self.rng.choice([super().trouble(), "SEVERE"])

    def event(self, depth):
        rng = self.rng
        start = rng.choice(["P42101_W42101A, Event Starts :%s" % rng.choice(EVENTS), "Event Starts :", "x , Event Starts :",
                            "P, Event Starts : , D", "RT: >>>Beginning ER:\t%s\t" % rng.choice(EVENTS)])
        lines = [start] + self.story(depth + 1)
        if rng.random() < 0.6:
            lines.append(rng.choice(["Object Called: P42101.W42101A", "Object Called: F0101", "Object Called: P42101.",
                                     "Object Called: A.B; C.D"]))
        return lines + ["P42101_W42101A, Event Ends:Dialog"] * rng.choice([0, 1, 1, 1, 1, 2])

    def line(self, owner, text):
        month, day, hour, minute, second, fraction = self.stamp()
        level = "APP   "
        if text == "SEVERE":
            level = "SEVERE"
        elif self.odd():
            level = self.rng.choice(["WARN  ", "MANDATORY", "DEBUG "])
        return "%d %s 2016 %02d:%02d:%02d,%03d [%s] %s%s- [JDBJ]            %s" % (
            day, month, hour, minute, second, fraction // 1000, level, owner, " " if owner else "", text)

    def write(self):
        rng = self.rng
        owners = rng.sample(USERS, rng.randint(1, 4))
        # Among the first lines a transaction's text would make this a debug log.
        self.transactions = rng.random() < 0.1
        self.lines += [b""] * (5001 if self.transactions else 0)
        self.tick = 1000
        self.first_astray()
        for _ in range(6):
            self.lines.append(self.encode(self.line(owners[0], "Started")))
        for owner, text in self.lives(owners):
            if self.odd():
                self.lines.append(rng.choice([b"", b"at Foo.bar(Foo:12)", b"29 06 2016 12:00:00,1 x", b"29", b"29 Jun", b" ", b"\t",
                                              b"java.lang.Exception: x y"]))
            self.lines.append(self.encode(self.line(owner, text)))
        self.last_astray()
        for _ in range(2):
            self.lines.append(self.encode(self.line(owners[0], rng.choice(["Started", "Object Called: P42101.W42101A"]))))


def make(seed):
    """The bytes of the log with this seed; every third one is a JAS log."""
    log = JasLog(seed) if seed % 3 == 0 else DebugLog(seed)
    log.write()
    return log.data()


def loading(seed):
    """(threshold as typed or None, process filter or None, whether caches are analysed) to read this log with."""
    rng = random.Random("loading %d" % seed)
    threshold = rng.choice([None, None, None, "0", "0.5", "0.000137", "2.5", "1.000001", "599.999999", "100"])
    process = rng.choice(["4120", "5500", "1"]) if rng.random() < 0.15 else None
    return threshold, process, rng.random() >= 0.05


def fired(seeds):
    """How often each rule decided something over the logs with these seeds."""
    import collections
    import explore_model
    out = collections.Counter({rule: 0 for rule in explore_model.RULES})
    for seed in seeds:
        threshold, process, caches = loading(seed)
        session = explore_model.ExploredSession(float(threshold or "1.0"), int(process or 0), caches)
        session.load_bytes(make(seed))
        explored = explore_model.Explored(session)
        out.update(explored.fired)
        out.update("finding: " + finding.rule for finding in explored.findings)
    return out


def main():
    if len(sys.argv) == 3 and sys.argv[1] == "--fired":
        first, _, last = sys.argv[2].partition("-")
        for rule, count in fired(range(int(first), int(last or first) + 1)).items():
            print("%8d  %s" % (count, rule))
        return 0
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    data = make(int(sys.argv[1]))
    if len(sys.argv) == 3:
        with open(sys.argv[2], "wb") as stream:
            stream.write(data)
    else:
        sys.stdout.buffer.write(data)
    return 0


if __name__ == "__main__":
    sys.exit(main())
