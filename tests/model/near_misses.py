#!/usr/bin/env python3
"""Writes one random log of near misses, the same for the same seed.

Usage: near_misses.py SEED [FILE]      (standard output without a file)

Nearly every line of a real log begins as an earlier one did, and a program may remember what such a beginning
means. So these logs have a few beginnings that come again and again, and each line is at most a small step
away from the usual form. By the remainder of the seed and five: a debug log with tabs, one with a fixed text
column, one whose " - " fixes the column on the way, a debug log with batch lines between, a JAS log.
"""

import random
import sys

MONTHS = ["Sep", "Oct", "Jan"]
ODD_MONTHS = ["anF", "Foo", "sep", "JanFeb", "S", "**"]
FUNCTIONS = ["F4211FSEditLine", "F4211EditLine", "X0010GetNextNumber", "B4200310"]
TABLES = ["F0101", "F4211", "PRODDTA.F4102"]
LABELS = ["WRK:Starting jdeCallObject", "MAIN_THREAD", "Worker", "W", "WRK:Call Object", "jdeCache", "A -"]
WORDS = ["jdeCache", "hCache:[1A]", "hCursor:[7]", "Found existing cache", "Exiting DBPerformRequest", "JDB3100001",
         "CAC0001111", "--UBE--", "Entering JDB_x"]
LEVELS = ["APP   ", "DEBUG ", "WARN  ", "SEVERE", "MANDATORY"]
USERS = ["JDE", "SCHMIDT", "", "1000183"]
SOURCES = ["JDBJ", "RUNTIME", "BASE", "JAS"]
NOT_ASCII = [b"\xc3\xa9", b"\xe9", b"\xf0\x9f\x98\x80", b"\x80"]


def replaced(line, at, length, by):
    return line[:at] + by + line[at + length:]


class Line:
    """A debug line in the pieces that a step takes away, doubles or moves."""

    def __init__(self, month, ids, middle):
        self.month = month
        self.day = "22"
        self.clock = "12:00:00.000000"
        self.marker = " - "
        self.ids = ids
        self.middle = middle  # from behind the ids up to the text
        self.text = ""

    def copy(self):
        other = Line(self.month, self.ids, self.middle)
        other.day, other.clock, other.marker, other.text = self.day, self.clock, self.marker, self.text
        return other

    def bytes(self):
        return (self.month + " " + self.day + " " + self.clock + self.marker + self.ids + self.middle
                + self.text).encode("utf-8")


class NearMissLog:
    def __init__(self, seed):
        self.rng = random.Random("near miss %d" % seed)
        self.lines = []
        self.now = 43200000000
        self.levels = {}

    def chance(self, probability):
        return self.rng.random() < probability

    # ---- the clock

    def clock(self, separator=".", digits=6):
        """Mostly within the second of the line before."""
        self.now += self.rng.choice([0, 1, 37, 900, 25000, 25000, 400000] + [2500000] * self.chance(0.1))
        seconds, fraction = divmod(self.now, 1000000)
        return "%02d:%02d:%02d%s%s" % (seconds // 3600 % 24, seconds // 60 % 60, seconds % 60, separator,
                                       ("%06d" % fraction)[:digits])

    # ---- texts

    def call(self, key):
        depth = self.levels.get(key, 0) + 1
        self.levels[key] = depth
        return "Calling Business function %s from Level 1 for JDE. (BSFNLevel = %d)" % (
            self.rng.choice(FUNCTIONS), depth)

    def returned(self, key):
        depth = self.levels.get(key, 0)
        self.levels[key] = max(0, depth - 1)
        return "Return value is %d for %s. (BSFNLevel = %d)" % (
            self.rng.choice([0, 0, 0, 1, 2, 2, 3]), self.rng.choice(FUNCTIONS), depth)

    def text(self, key):
        rng = self.rng
        pick = rng.random()
        if pick < 0.2:
            return self.call(key)
        if pick < 0.4:
            return self.returned(key)
        if pick < 0.5:
            return rng.choice([" IN->[  1] mnAddress [3220] ", "OUT->[ 10] szCostCenter [   93400] ", "IN->[ 2] x",
                               "OUT->[ 1] y "])
        if pick < 0.6:
            return rng.choice(["SELECT * FROM %s WHERE A = 1", "UPDATE %s SET B = 2 ", "INSERT INTO %s(A) VALUES (1)",
                               " DELETE FROM %s"]) % rng.choice(TABLES)
        if pick < 0.68:
            return rng.choice(["RT: >>>Beginning ER:\tPost Dialog\tForm:W4210A\t", "RT: <<<Finished  ER:\tPost Dialog\t",
                               "RT: >>>Beginning ER:\tOK\t", "RT: <<<Finished  ER:\t"])
        if pick < 0.8:
            return rng.choice(["", "", "x ", "Entering "]) + rng.choice(WORDS) + rng.choice(["", "", " x", " - failed "])
        if pick < 0.85:
            return rng.choice(["ERROR: it failed", "On x", "JDB x", "[CARVELOT MESSAGE]Note"])
        if pick < 0.92:
            return rng.choice(["note\tof two", "a\tb\tc", "x\t", "\tx\ty\tz"])
        return rng.choice(["Fetched the record", "No More Data found", "x", "trailing   ", "", "  ", " two  blanks"])

    # ---- steps from the usual form

    def step_in_pieces(self, line):
        """One step in what stands ahead of the text."""
        rng = self.rng
        pick = rng.randrange(-4, 15)
        tab = line.middle.find("\t")
        if pick == 0:  # a tab more
            at = rng.choice([0, 1, len(line.middle), max(tab, 0), rng.randint(0, len(line.middle))])
            line.middle = replaced(line.middle, at, 0, "\t")
        elif pick <= 2:  # some tabs less, or blanks for them
            line.middle = line.middle.replace("\t", rng.choice(["", " "]), rng.choice([1, 2, 2, 3]))
        elif pick == 3:  # a tab for a blank
            at = line.middle.find(" ", rng.randint(0, len(line.middle)))
            if at >= 0:
                line.middle = replaced(line.middle, at, 1, "\t")
        elif pick == 4:  # the marker moved, another one, or glued to a neighbour
            line.marker = rng.choice([" x - ", " ** ", " -- ", " * - ", "  - ", " -  ", "\t- ", " -\t", " -", "- ", " - - ",
                                      " x y ** ", " "])
        elif pick == 5:  # a digit more or less
            number = rng.choice(["ids", "day", "clock"])
            value = getattr(line, number)
            at = rng.randrange(len(value))
            setattr(line, number, rng.choice([value[:at] + rng.choice("0123456789") + value[at:],
                                              value[:at] + value[at + 1:]]))
        elif pick == 6:  # a fraction cut
            line.clock = rng.choice([line.clock[:-1], line.clock[:-3], line.clock[:8], line.clock[:9], line.clock + "0",
                                     line.clock[:-1] + " "])
        elif pick == 7:  # an empty label, or none
            line.middle = rng.choice([" \t", "\t", "  \t", " ", " \t\t", "  "]) + line.middle[tab + 1 if tab >= 0 else 99:]
        elif pick == 8:  # the label longer or shorter
            at = rng.randint(0, len(line.middle))
            line.middle = rng.choice([replaced(line.middle, at, 0, rng.choice(["x", " ", "jdeCache", "12345678"])),
                                      replaced(line.middle, at, rng.randint(1, 3), "")])
        elif pick == 9:  # the ids are of another owner, or no ids
            line.ids = rng.choice(["7/1", "7/2", "70/1", "7/", "/1", "7", "x/y", "7/1/2", "-7/1", "7 /1", "4294967303/1", "0/0"])
        elif pick == 10:
            line.month = rng.choice(ODD_MONTHS + MONTHS)
        elif pick == 11:
            line.day = rng.choice([" 1", "1", "31", "32", "00", "x", "\t1"])
        elif pick == 12:  # the label ends where the text begins
            line.middle = line.middle.rstrip(" \t") + rng.choice(["", "\t", "\t\t"])
        elif pick == 13:
            line.clock = rng.choice(["24:00:00.000000", "31:63:63.999999", "32:00:00.000000", "12:64:00.000000",
                                     "12:00:61.000001", "12:0:00.000000", "12:00:00,000000"])
        else:  # a label that the length of what is kept of it divides
            line.middle = " " + "L" * rng.choice([16, 17, 63, 64, 65, 102, 103, 104, 130]) + line.middle[tab if tab >= 0 else 99:]

    def step_in_text(self, line):
        """One step at or behind the place where the text begins."""
        rng = self.rng
        line.text = rng.choice([
            " - " + line.text, " -" + line.text, "- " + line.text, "\t" + line.text, "\t - " + line.text,
            " " * rng.choice([1, 2, 7, 14, 15, 16, 17, 31]) + line.text, " \t " + line.text, "  \t" + line.text, "",
            " " * rng.randint(1, 20), "\t", line.text + " " * rng.randint(1, 3), line.text + "\t", line.text + "\t ",
            line.text.replace(" ", "\t", 1), line.text + "\tx", line.text[1:], line.text[rng.randint(0, len(line.text)):],
            "\tRT: <<<Finished  ER:\t", line.text + " --UBE--[2]"])

    def step_in_bytes(self, raw):
        rng = self.rng
        at = rng.randint(0, len(raw))
        return rng.choice([
            b" " + raw, b"\t" + raw, raw[:at] + rng.choice(NOT_ASCII) + raw[at:], raw[:at] + b"\0" + raw[at:],
            raw[:at] + b"\t" + raw[at:], raw[:at], raw[:at] + raw[at + 1:], raw[:at] + rng.choice([b"-", b"/", b" - "]) + raw[at:],
            raw[:at] + b" " + raw[at + 1:], raw + b"\r" + raw, raw[:at] + raw[max(0, at - 1):]])

    # ---- debug logs

    def batch_line(self):
        """A batch line: bare, behind a clock, or a call, a parameter or a return that is one too."""
        rng = self.rng
        level = rng.choice("12223x")
        clock = self.clock()
        return rng.choice([
            "--UBE--[%s] Printing" % level, "--UBE--[%s]-- Processing Init Report" % level,
            "--UBE--[%s] 3 %s - 0/0 W\tstamped" % (level, clock), "--UBE--[%s] 3 %s Exiting DBPerformRequest" % (level, clock),
            "--UBE--[%s] 3 %s Exiting DBPerformRequest" % (level, clock), "--UBE--[%s] 3 %s jdeCacheInit" % (level, clock),
            "Calling %s %s --UBE--" % (level, clock), "Calling %s %s --UBE--" % (level, clock),
            "On 00000%s %s --UBE--" % (level, clock), "IN->[1] %s %s --UBE--" % (level, clock),
            "OUT->[] %s %s --UBE--" % (level, clock), "Return 0%s1234567%d %s --UBE--" % (level, rng.choice([0, 0, 1, 2]), clock),
            "Return 0%s1234567%d %s --UBE--" % (level, rng.choice([0, 0, 1, 2]), clock), "Calling 10:00:00.1 --UBE--[1]"])

    def debug_log(self, form):
        rng = self.rng
        style = form if form != "batch" else rng.choice(["tabs", "tabs", "column", "dash"])
        tabs = {"tabs": rng.choice([1, 2, 3, 3, 4, 5]), "column": 0, "dash": rng.choice([1, 1, 2, 3])}[style]
        owners = rng.sample(["7/1", "7/2", "70/1", "5500/3388", "-7/1", "7/16711680"], rng.randint(2, 3))
        if form == "batch":
            owners[0] = "0/0"

        def usual(owner):
            label = rng.choice(LABELS)
            middle = " " + label
            if style == "column":
                return Line("Sep", owner, middle.ljust(rng.choice([40, 40, 28]) - len(owner)))
            for number in range(tabs):
                middle += "\t" + (rng.choice(["", "X", "two words"]) if number + 1 < tabs else "")
            return Line("Sep", owner, middle)

        beginnings = [usual(owner) for owner in owners for _ in range(rng.randint(1, 2))]
        first = beginnings[0].copy()
        first.text = "Entering JDB_InitUser with commit mode 0."
        self.lines.append(first.bytes())
        for _ in range(rng.randint(1, 3)):  # beginnings that are a step away themselves, and come again
            line = rng.choice(beginnings).copy()
            for _ in range(rng.randint(1, 2)):
                self.step_in_pieces(line)
            line.kept_clock = line.clock if line.clock != "12:00:00.000000" else None
            beginnings.append(line)
        if self.chance(0.4):
            other = rng.choice(beginnings).copy()
            other.month = "Oct"
            beginnings.append(other)
        dash_at = rng.randint(3, 12) if style == "dash" else -1
        for number in range(rng.choice([8, 15, 30, 60, 90])):
            chosen = rng.choice(beginnings)
            line = chosen.copy()
            line.clock = getattr(chosen, "kept_clock", None) or self.clock()
            line.text = self.text(chosen.ids)
            if number == dash_at:
                line.text = " - " + line.text
            if form == "batch" and self.chance(0.35):
                self.lines.append(self.batch_line().encode("utf-8"))
                continue
            raw = None
            if self.chance(0.35):
                pick = rng.random()
                if pick < 0.45:
                    self.step_in_pieces(line)
                elif pick < 0.85:
                    self.step_in_text(line)
                else:
                    raw = self.step_in_bytes(line.bytes())
            self.lines.append(raw if raw is not None else line.bytes())
            if self.chance(0.05):
                self.lines.append(self.lines[-1])

    # ---- JAS logs

    def jas_text(self, key):
        rng = self.rng
        if self.chance(0.35):
            return rng.choice(["Object Called: F4211.F4211_CURRENCY", "P0411, Event Starts :Dialog", "P0411, Event Ends:Dialog",
                               "Fetch at ER Line 12", "Calling server component X", "Params: none", "Param1: 5_Types.CHAR",
                               "SELECT A FROM F0101 WHERE B = ?", "UPDATE F0101 SET B = '?'"])
        return self.text(key)

    def jas_parameters(self, marks):
        """Parameter lines of a statement with so many marks: mostly in order and whole."""
        rng = self.rng
        numbers = list(range(1, marks + 1))
        if self.chance(0.3):
            rng.shuffle(numbers)
        if self.chance(0.2):
            numbers = numbers[:-1] if self.chance(0.5) else numbers + [marks + 1]
        if numbers and self.chance(0.1):
            numbers[0] = rng.choice([0, -1, 9, numbers[-1]])
        return ["Param%d:%s%s_Types.%s%s" % (
            number, rng.choice([" ", " ", " ", "", "  "]), rng.choice(["52", "", "a.b", "?2", "\u00e9", "x:y", "_Types"]),
            rng.choice(["VARCHAR", "DECIMAL", "LONGVARCHAR"]), rng.choice([",", ", ,", "", " "])) for number in numbers]

    def jas_log(self):
        rng = self.rng

        def usual():
            user = rng.choice(USERS)
            return ["29 Jun 2016 ", "[%s] " % rng.choice(LEVELS[:2] + LEVELS), user + " " if user else "", "- ",
                    "[%s]" % rng.choice(SOURCES), rng.choice(["            ", " ", "   ", "\t"])]

        def stepped(pieces):
            pieces = list(pieces)
            # A line that lacks a piece already only has its blanks changed.
            pick = rng.randrange(12) if len(pieces) == 6 else 9
            if pick == 0:
                pieces[0] = rng.choice(["29  Jun 2016 ", "9 Jun 2016 ", "029 Jun 2016 ", "29 Jul 2016 ", "29 anF 2016 ",
                                        "29 Jun 216 ", "29 Jun 2016\t", " 29 Jun 2016 ", "29\tJun 2016 ", "x9 Jun 2016 ", "2x Jun 2016 "])
            elif pick == 1:
                pieces[1] = rng.choice(["[WARN] ", "[WARN ] ", "[ WARN] ", "[SEVERE ] ", "[APP]", "[APP   ]\t", "[[APP ]] ", "[] ",
                                        "[ ] ", "APP ", "[APP   ", "APP] ", "[SEVERE][1000183][RUNTIME] ", "\t[APP   ] ", "[MANDATORY ] "])
            elif pick == 2:
                pieces[2] = rng.choice(["JDE X ", "X JDE ", "JDE  ", " JDE ", "-JDE ", "JDE\t", "JDE- ", "[JDE] ", "J]E ", ""])
            elif pick == 3:
                pieces[3] = rng.choice(["-- ", "-x ", "", "-", "- - ", "-\t", "-  ", " - ", "\t- ", "- x ", "-\t "])
            elif pick == 4:
                pieces[4] = rng.choice(["[JDBJ", "JDBJ]", "JDBJ", "[]", "[JDBJ ]", "[ JDBJ]", "[[JDBJ]", "[JDBJ]]", "[JDBJ][X]", "[", "]",
                                        "[JDB\u00c9]"])
            elif pick == 5:
                pieces[5] = rng.choice(["", "\t", " " * rng.choice([15, 16, 17, 31]), "  \t ", "]", "["])
            elif pick == 6:
                del pieces[rng.randint(1, 4)]
            elif pick == 7:
                pieces.insert(rng.randint(1, 4), rng.choice(pieces[1:]))
            elif pick == 8:
                at = rng.randint(1, 3)
                pieces[at], pieces[at + 1] = pieces[at + 1], pieces[at]
            elif pick == 9:
                pieces = [piece.replace(" ", "\t") if self.chance(0.3) else piece for piece in pieces]
            elif pick == 10:
                pieces[1] = pieces[1].ljust(rng.choice([110, 120, 121, 122, 125, 130]))
            else:
                pieces[2] = rng.choice(["jdeCache ", "Event Starts : ", "\u00dc "])
            return pieces

        beginnings = [usual() for _ in range(rng.randint(2, 4))]
        for _ in range(6):
            self.lines.append(b"29 Jun 2016 12:00:00,000 [APP   ] JDE - [JDBJ]            Started")
        for _ in range(rng.randint(0, 2)):
            beginnings.append(stepped(rng.choice(beginnings)))
        if self.chance(0.4):
            beginnings.append(["29 Jul 2016 "] + beginnings[0][1:])

        def add(pieces, text):
            clock = self.clock(",", 3) + " "
            if self.chance(0.25):
                pick = rng.random()
                if pick < 0.5:
                    pieces = stepped(pieces)
                elif pick < 0.7:
                    clock = rng.choice([clock[:-2] + " ", clock[:-1] + "5 ", clock[:8] + " ", clock[:9] + " ", clock[:-1] + "\t",
                                        clock[1:], clock[:-1], "24:00:00,001 ", "31:63:63,999 ", "32:0:0,5 ", "12:00:64,123 "])
                elif pick < 0.9:
                    text = rng.choice([" " * rng.choice([1, 14, 15, 16, 17]) + text, "\t" + text, "", "  ", text + "  ", text + "\t",
                                       "]" + text, "[x] " + text, text[1:], "- [A] " + text])
                else:
                    self.lines.append(self.step_in_bytes((pieces[0] + clock + "".join(pieces[1:]) + text).encode("utf-8")))
                    return
            self.lines.append((pieces[0] + clock + "".join(pieces[1:]) + text).encode("utf-8"))

        for _ in range(rng.choice([8, 15, 30, 30, 60])):
            pieces = rng.choice(beginnings)
            if self.chance(0.15):
                marks = rng.choice([1, 2, 2, 3, 11])
                name = rng.choice(["N", "N", "N", "\u00dc"])
                add(pieces, "SELECT %s FROM %s WHERE %s" % (name, rng.choice(TABLES), " AND ".join("C = ?" for _ in range(marks))))
                for text in self.jas_parameters(marks):
                    if self.chance(0.1):
                        add(rng.choice(beginnings), self.jas_text("jas"))
                    add(pieces if self.chance(0.8) else rng.choice(beginnings), text)
            else:
                add(pieces, self.jas_text("jas"))


FORMS = ["tabs", "column", "dash", "batch", "jas"]


def make(seed):
    """The bytes of the log with this seed."""
    log = NearMissLog(seed)
    form = FORMS[seed % len(FORMS)]
    if form == "jas":
        log.jas_log()
    else:
        log.debug_log(form)
    end = log.rng.choice([b"\n", b"\n", b"\r\n"])
    return b"".join(line + end for line in log.lines)


def main():
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
