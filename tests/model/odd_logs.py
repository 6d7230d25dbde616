#!/usr/bin/env python3
"""Writes one random log, the same for the same seed: well-formed, odd or hostile, debug or JAS.

Usage: odd_logs.py SEED [FILE]      (standard output without a file)

The logs are small, but between them they reach every rule of the line grammar, the classifiers and the
analyses, and the near misses beside each.
"""

import random
import sys

MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
ODD_MONTHS = ["Foo", "anF", "J", "JanFeb", "jan", "DecJan", "MONTH", "01", "-", "**", "\u00e9t\u00e9"]
FUNCTIONS = ["F4211FSBeginDoc", "F4211FSEditLine", "F4211EditLine", "F4211EndDoc", "GetItemMasterInfo",
             "FormatBranchPlant", "X0010GetNextNumber", "B4200310", "R\u00e9capitulatif"]
TABLES = ["F0101", "F4211", "F4101", "F4102", "PRODDTA.F4211", "proddta.f4211", "PRODDTA/F4105",
          "f0101", "\u00c4RTIKEL", "\u00e4rtikel", "T0", "FROMAGE"]
CODES = ["CAC0001111", "CAC0001025", "CAC0001036", "JDB3100001", "JDB3100060", "JDB3100076", "JDB3100080",
         "JDB3300020", "JDB3400009", "JDB3500011", "JDB3600011", "JDB3700001", "JDB4100005", "JDB4100006",
         "JDB9900401", "JDB9901232"]
HANDLES = ["1A", "1a", "e5762678", "0A4A14A8", "0a4a14a8", "", "\u00e9B", "\u00c9b"]
CURSORS = ["09310010", "0931001f", "0931001F", "", "7"]
CACHE_NAMES = ["75976968DataMapCDISTCache", "F4211Cache", "", "Cach\u00e9"]
LEVELS = ["APP   ", "DEBUG ", "SEVERE", "WARN  ", "MANDATORY", "INFO  ", "WARNING", "", "warn"]
USERS = ["JDE", "SCHMIDT", "M\u00dcLLER", "1000183", "", "SYSTEM", "A\U0001F600B"]
SOURCES = ["JDBJ", "RUNTIME", "BASE", "JAS", ""]
SNIPPETS = ["\u00e9", "\u20ac", "\u65e5\u672c", "\U0001F600", "\u00df", "\u0131", "\u00b5", "\u00ff", "\uFEFF",
            "e\u0301", "\U0001D54F\U0001D54F"]
RAW = [b"\xe9", b"\x80", b"\x81", b"\x8d\x8f\x90\x9d", b"\xff\xfe", b"\xc3", b"\xe2\x82", b"\xf0\x9f\x98",
       b"\xc0\xaf", b"\xed\xa0\x80", b"\xf4\x90\x80\x80", b"\x93quoted\x94", b"\x0b", b"\x0c", b"\x01", b"\x7f"]


class OddLog:
    def __init__(self, seed):
        self.rng = random.Random(seed)
        rng = self.rng
        self.lines = []
        self.owners = [(rng.choice([4120, 7, 99999, -5]), t)
                       for t in rng.sample([3388, 1, 2, -167733552, 70000, 0], rng.randint(1, 3))]
        if rng.random() < 0.6:
            other = rng.choice([5500, 18753, 0, 2147483647])
            self.owners += [(other, rng.choice([3388, 11])) for _ in range(rng.randint(1, 2))]
        start = rng.choice([33123250000, 1, 0, 86398000000, 3600000000, 46799000000])
        self.clocks = {owner: start for owner in self.owners}
        self.stacks = {owner: [] for owner in self.owners}
        self.params = 0
        # How a field is damaged now and then. Some logs are clean throughout.
        self.oddity = rng.choice([0.0, 0.02, 0.1, 0.4])
        self.non_ascii = rng.choice([0.0, 0.05, 0.3])
        self.tick = rng.choice(["fine", "fine", "mixed", "wild"])

    def odd(self, factor=1.0):
        return self.rng.random() < self.oddity * factor

    # ---- pieces

    def advance(self, owner):
        rng = self.rng
        step = rng.choice([0, 1, 137, 2000, 2000, 45000, 45000, 250000])
        if self.tick != "fine" and rng.random() < 0.15:
            step = rng.choice([999999, 1000000, 1000001, 1500000, 16777217, 33554435, 61000000])
        if self.tick == "wild" and rng.random() < 0.15:
            step = rng.choice([-1, -1000000, -3600000000, -46799999999, -46800000000, -60000000000,
                               50000000000])
        now = self.clocks[owner] + step
        if self.tick == "wild" and rng.random() < 0.03:
            now = 0
        self.clocks[owner] = now % 86400000000
        return self.clocks[owner]

    def clock_text(self, now, separator=".", digits=6):
        rng = self.rng
        seconds, fraction = divmod(now, 1000000)
        hour, minute, second = seconds // 3600, seconds // 60 % 60, seconds % 60
        text = "%02d:%02d:%02d" % (hour, minute, second)
        if digits == 6:
            text += "%s%06d" % (separator, fraction)
        elif digits == 3:
            text += "%s%03d" % (separator, fraction // 1000)
        if self.odd(0.7):
            text = rng.choice([
                "12:00:01.5", "12:00", "12:00:", "1:2:3", "-1:-2:-3.-4", "99999:0:0.0", "x12:00:00",
                "12:00:00.x", "12:00:00,250", "12:00:00.99999999999", "2147483648:2147483647:4294967296.1",
                "-2147483649:0:0.0", "+1:+2:+3.+4", "12:-:00", "12:00:00.-", "0:0:0.0", "24:00:00", "noon",
                "12:\v30:00.\f5", "13:30:00.12extra", "00000000000000000000012:0:1", "12:00:00;1",
                "999999999:999999999:999999999.999999999"])
        return text

    def number(self):
        return self.rng.choice(["-1", "2147483647", "2147483648", "4294967295", "99999999999999999999", "",
                                "x", "+7", "007", "-2147483648", "-99999999999"])

    def blanks(self):
        if self.odd():
            return self.rng.choice(["  ", "\t", " \t ", "     "])
        return " "

    def name(self, names):
        return self.rng.choice(names)

    def sql(self, marks=False):
        rng = self.rng
        table = self.name(TABLES)
        value = "?" if marks else str(rng.randint(0, 99))
        text = rng.choice([
            "SELECT * FROM %s WHERE AN8 = %s" % (table, value),
            "SELECT  DISTINCT SDKCOO, SDDCTO FROM %s  WHERE  ( SDKCOO = '00001' AND SDDCTO = %s )" % (table, value),
            "SELECT T0.AN8 FROM %s T0, F0116 T1 WHERE T0.AN8 = %s" % (table, value),
            "SELECT T0.AN8 FROM %s T0" % table,
            "SELECT COUNT(*)", "SELECT X ", "SELECT FROMDATE FROM %s WHERE A = %s" % (table, value),
            "SELECT A FROM WHERE T0", "SELECT A FROM T0WHERE", "SELECT FROM",
            "SELECT A FROM  %s\tT0 WHERE X" % table,
            "UPDATE %s SET X = %s" % (table, value), "UPDATE %s" % table, "UPDATE ",
            "INSERT INTO %s(AN8) VALUES (%s)" % (table, value), "INSERT INTO %s (AN8) VALUES (%s, %s)" % (table, value, value),
            "INSERT INTO (X)", "INSERT x", "SELECT A FROM %s(X) WHERE" % table, "UPDATE %s(X) SET" % table, "DELETE FROM %s(X)" % table,
            "DELETE FROM %s" % table, "DELETE  FROM %s WHERE A=%s" % (table, value),
            "ALTER TABLE %s" % table, "DROP TABLE %s" % table, "CREATE TABLE %s(A)" % table,
            "SELECT", "select * from F0101", "SELECTED x", "INSERT", "[JDBOLEDB] x SELECT y", "[JDBOLEDB] nothing",
            "[JDBOLEDB] ALTERED", "[JDBOLEDB]SELECT x"])
        return text

    def call(self, owner):
        rng = self.rng
        stack = self.stacks[owner]
        name = self.name(FUNCTIONS)
        if stack and rng.random() < 0.2:
            name = stack[-1][0]
        level = len(stack) + 1
        stack.append((name, level))
        text = "Calling Business function %s from %s for %s. Application Name [P4210], Version [ZJDE0001] (BSFNLevel = %d)" % (
            name, stack[-2][0] if level > 1 else "Level 1", self.name(["JDE", "X-1", "1000183"]), level)
        if self.odd(2):
            text = rng.choice([
                "Calling Business function %s" % name, "Calling Business function %s " % name,
                "Calling Business function  %s x" % name, "Calling legacy API", "Calling legacy API now",
                "Calling sqlplus.exe", "Calling sqlplus.exe now", "Calling", "Calling x",
                "Calling Business functionX %s for (BSFNLevel = 1)" % name,
                "Calling server component %s" % name,
                "Calling Business function %s from (BSFNLevel = %s)" % (name, self.number()),
                "Calling Business function %s from (BSFNLevel = \t2" % name,
                "On Business function %s" % name, "On", "On "])
        return text

    def returned(self, owner):
        rng = self.rng
        stack = self.stacks[owner]
        if stack:
            name, level = stack.pop()
        else:
            name, level = self.name(FUNCTIONS), rng.randint(0, 3)
        code = rng.choice([0, 0, 0, 0, 1, 2, 2, 3, 9])
        text = "Return value is %d for %s. (BSFNLevel = %d)" % (code, name, level)
        if self.odd(2):
            text = rng.choice([
                "Return value is %d for %s. " % (code, name), "Return value is %d for %s... (BSFNLevel = %d" % (code, name, level),
                "Return value is 12 for %s. (BSFNLevel = %d)" % (name, level + 1), "Return value is -1 for %s. " % name,
                "Return value is x for %s. (BSFNLevel = 1)" % name, "Return x", "Return", "Return value is",
                "Return value is ", "Return value is 2", "Return value is \u00e9 for %s. x" % name,
                "Return valu\U0001F600is 2 for %s. (BSFNLevel = %d)" % (name, level),
                "Return value is 1 for . (BSFNLevel = 1)", "Return before for for %s. x" % name,
                "Return value is 2 for %s.)(BSFNLevel = )" % name])
        return text

    def param(self):
        rng = self.rng
        return rng.choice([" IN->[  1] mnAddressNumber                 [3220] ", "IN->[ 10] szCostCenter [       93400] ",
                           "OUT->[ 10] szCostCenter                     [  \u00e9] ", "OUT->[  1] cErrorCode [0]",
                           "IN->[1]", "OUT->[1]", "IN->[1] x", "OUT->[1] x", "IN-> [1] x", "XOUT->[1] y"])

    def event(self):
        rng = self.rng
        name = self.name(["Post Dialog is Initialized", "OK Button", "", " ", "\u00c9v\u00e9nement"])
        form = self.name(["W4210A", "", " ", "  W42101C", "\u00c4nderung"])
        return rng.choice([
            "RT: >>>Beginning ER:\tA\tForm:\t%s\t" % form, "RT: >>>Beginning ER:\t%s\tForm:%s\t" % (name, form), "RT: >>>Beginning ER:\t%s\tForm:%s\t" % (name, form),
            "RT: <<<Finished  ER:\t%s\t" % name, "RT: <<<Finished  ER:\t",
            "RT: <<<Finished ER:\t%s\t" % name, "RT: >>>Beginning ER: %s" % name, "RT: >>>Beginning ER:\t%s" % name,
            "RT: >>>Beginning ER:\t%s\tForm:%s" % (name, form), "RT: jdeCache JDB3100001\t", "RT:\tx", "RT: ",
            "RT: >>>Beginning ER:\t", "RT: >>>Beginning ER:\tA\tForm:\tB\t", "Form: RT: >>>Beginning ER:\tA\t", "RT: >>>Beginning ER:\tForm:A\tForm:B\t"])

    def cache(self):
        rng = self.rng
        handle = self.name(HANDLES)
        cursor = self.name(CURSORS)
        confirm = "  hCache:[%s] Nm:[9%s] Recs:0 Curs:0 Hnds:1 Cchs:141 INIT" % (handle, self.name(CACHE_NAMES))
        if rng.random() < 0.4:
            return confirm
        return rng.choice([
            "Entering jdeCacheInit - Name:[%s]" % self.name(CACHE_NAMES), "  Created new cache - hCache:[%s]" % handle,
            "  Created new cache - hCache:[%s]" % handle, "Created new cache jdeCache",
            "    Found existing cache, total references:[2]", "Entering jdeCacheAdd hCache:[%s]" % handle,
            "Entering jdeCacheUpdate   hCursor:[%s]" % cursor, "Entering jdeCacheDelete hCache:[%s]" % handle,
            "Entering jdeCacheDeleteAll hCache:[%s]" % handle,
            "Entering jdeCacheFetch   hCursor:[%s] hCache:[%s]" % (cursor, handle),
            "Entering jdeCacheFetchPosition   hCursor:[%s]" % cursor,
            "    Open Cursor Success                     hCursor:[%s] hCache:[%s]" % (cursor, handle),
            "    Open Cursor Success                     hCursor:[%s] hCache:[%s]" % (cursor, handle),
            "Entering jdeCacheCloseCursor   hCursor:[%s] hCache:[%s]" % (cursor, handle),
            "Entering jdeCacheResetCursor   hCursor:[%s] hCache:[%s]" % (cursor, handle),
            "Entering jdeCacheTerminate hCache:[%s]" % handle, "Entering jdeCacheTerminateAll hCache:[%s]" % handle,
            "jdeCacheFetch and jdeCacheAdd hCursor:[%s]" % cursor, "hCache:[%s" % handle, "hCursor:",
            "Nm:[x] jdeCache", "12345678]Nm:[%s] hCache" % handle, "jdeCache Nm:[A", "hCache:[%s] Nm:[" % handle,
            "jdeCacheInit x] y", "Found existing cache Created new cache hCache:[%s] Nm:[Q]" % handle,
            "jdeCacheFetch Nm:[N] hCache:[%s] hCursor:[%s]" % (handle, cursor), "jdecache hcache", "Open Cursor Success"])

    def cache_story(self):
        """The lines of a few cache calls in their usual order, each announced and then confirmed."""
        rng = self.rng
        handle, cursor = self.name(HANDLES), self.name(CURSORS)
        confirm = "  hCache:[%s] Nm:[9%s] Recs:0 Curs:0" % (handle, self.name(CACHE_NAMES))
        lines = ["Entering jdeCacheInit - Name:[%s]" % self.name(CACHE_NAMES),
                 "  Created new cache - hCache:[%s]" % handle, confirm]
        for _ in range(rng.randint(1, 8)):
            lines.append(rng.choice([
                "Entering jdeCacheAdd", "Entering jdeCacheFetch hCursor:[%s]" % self.name(CURSORS), "Entering jdeCacheFetch hCursor:[%s]" % cursor, "Entering jdeCacheDelete",
                "Open Cursor Success   hCursor:[%s] hCache:[%s]" % (cursor, handle), "Entering jdeCacheUpdate",
                "Open Cursor Success   hCursor:[%s] hCache:[%s]" % (cursor, handle),
                "Entering jdeCacheCloseCursor   hCursor:[%s]" % cursor, "Entering jdeCacheTerminateAll",
                "Entering jdeCacheResetCursor   hCursor:[%s]" % cursor, "Entering jdeCacheTerminate",
                "    Found existing cache, total references:[2]", "Entering jdeCacheDeleteAll"]))
            if "jdeCacheFetch" in lines[-1] and rng.random() < 0.6:
                lines.append(rng.choice(["  hCache: no more records", "jdeCache says no", "hCursor:[%s]" % cursor]))
            elif rng.random() < 0.85:
                lines.append(confirm)
        return lines

    def misc(self):
        rng = self.rng
        return rng.choice([
            "Entering JDB_OpenTable(Table = F4211)", "Exiting JDB_OpenTable(Table = F4211) with Success",
            "Entering DBPerformRequest", "Exiting DBPerformRequest", "Exiting DBPerformRequest", "Fetched the record",
            "No More Data found", "ERROR: it failed", "ERRORS found", "ERROR", "ERR x", "Error x", "xERROR y",
            self.name(CODES) + " - Failed", "prefix " + self.name(CODES) + " in the middle", "JDB_anything", "JDB", "JD B",
            "JDB0000001 - other", "CAC0001112 - other", " x jdeCache JDB3100001", "[CARVELOT MESSAGE]Hello",
            "[CARVELOT]", "[CARVELOT x", "note --UBE--", "ORACLE DBFetch conn=1", "\U0001F600 face",
            "On Business function X", "On", "trailing blanks   ", "trailing tab\t", "\t\tleading", "", "   "])

    def statement(self, owner):
        rng = self.rng
        pick = rng.random()
        if pick < 0.17:
            text = self.call(owner)
        elif pick < 0.34:
            text = self.returned(owner)
        elif pick < 0.42:
            text = self.param()
        elif pick < 0.58:
            text = self.sql() if rng.random() < 0.5 else "Exiting DBPerformRequest"
        elif pick < 0.64:
            text = self.event()
        elif pick < 0.80:
            text = self.cache()
        else:
            text = self.misc()
        return self.decorate(text)

    def decorate(self, text):
        rng = self.rng
        if rng.random() < self.non_ascii:
            at = rng.choice([0, len(text), rng.randint(0, len(text)), text.find(" ") + 1])
            text = text[:at] + self.name(SNIPPETS) + text[at:]
        return text

    # ---- whole lines

    def encode(self, line):
        rng = self.rng
        if rng.random() < 0.1:
            raw = line.encode("cp1252", "replace")
        else:
            raw = line.encode("utf-8")
        if rng.random() < self.non_ascii * 0.3:
            at = rng.randint(0, len(raw))
            raw = raw[:at] + rng.choice(RAW) + raw[at:]
        if self.odd(0.3):
            at = rng.choice([0, len(raw), rng.randint(0, len(raw))])
            raw = raw[:at] + b"\0" + raw[at:]
        if self.odd(0.15):
            raw = self.stretch(raw)
        return raw

    def stretch(self, raw):
        rng = self.rng
        length = rng.choice([8190, 8191, 8192, 8193, 8194, 9000, 16383, 16384, 16385, 20000])
        filler = rng.choice(["x", "\u00e9", "\u20ac", "\U0001F600", "x ", "ab\t"]).encode("utf-8")
        while len(raw) < length:
            raw += filler
        return raw[:length] if rng.random() < 0.5 else raw

    def add(self, line):
        self.lines.append(line if isinstance(line, bytes) else self.encode(line))

    def debug_line(self, style, text, owner=None):
        rng = self.rng
        if owner is None:
            owner = rng.choice(self.owners)
        now = self.advance(owner)
        month = self.name(ODD_MONTHS) if self.odd() else "Sep"
        day = self.number() if self.odd(0.5) else rng.choice(["22", " 1", "1"])
        clock = self.clock_text(now, digits=0 if "whole" in style else 6)
        ids = "%d/%d" % owner
        if self.odd():
            ids = rng.choice(["12", "12/", "/12", "a/b", "%s/%s" % (self.number(), self.number()), "1/2/3", "1 /2", "5/x"])
        marker = "**" if "star" in style else "-"
        if self.odd(0.5):
            marker = rng.choice(["**", "-", "--", "*", "skip me -", "a b c **", ""])
        label = rng.choice(["WRK:Starting jdeCallObject", "MAIN_THREAD", "UNKNOWN", "Worker", "WRK:J\u00d6RG_0A_P4210"]
                           if self.non_ascii else ["WRK:Starting jdeCallObject", "MAIN_THREAD", "UNKNOWN", "Worker"])
        head = month + self.blanks() + day + self.blanks() + clock + self.blanks() + marker + self.blanks() + ids
        if "nolabel" in style or "star" in style:
            head += " "
        else:
            head += self.blanks() + label
        if "padded" in style:
            return head.ljust(72 if not self.odd() else rng.randint(60, 80)) + text
        tabs = 1 if "one" in style else 2 if "two" in style else 3 if "three" in style else 0
        if self.odd():
            tabs = rng.randint(0, 4)
        if tabs == 2:
            head += "\tX\t"
        else:
            head += "\t" * tabs
        if "dashed" in style:
            head += " - "
        if not tabs:
            head += " "
        return head + text

    def ube_line(self):
        rng = self.rng
        level = rng.choice(["0", "1", "2", "2", "3", "6", "9", "x", ""])
        words = rng.choice(["Started", "Started", "Processing Init Report", "Starting UBE Message Loop", "", "JDB3100001", "jdeCache"])
        line = "--UBE--[%s]%s %s" % (level, rng.choice(["", "--"]), words)
        if rng.random() < 0.4:
            line = rng.choice([
                "Sep 22 12:00:0%d.5 - 4120/3388 Worker\t%s" % (rng.randint(0, 9), line), "--UBE--", "--UBE--[", "x --UBE--[2] y z",
                "--UBE--[2] 12 10:00:0%d %s" % (rng.randint(0, 9), words), "Calling 3 10:00:00 --UBE--[2] x",
                "Return value 10:00:01 --UBE--[1]", "Return value 10:00:01 2-UBE--UBE--[2]", "IN->[1] 3 10:00:02 --UBE--[1]",
                "OUT->[1] 3 10:00:02 --UBE--[2]", "SELECT 1 10:00:03 --UBE-- FROM F0101 WHERE"])
        return line

    def ube_story(self):
        """Calls, parameters and returns that are batch lines themselves, with plain batch lines between them."""
        rng = self.rng
        return [rng.choice([
            "Calling 3 10:00:00 --UBE--[%d]" % level, "IN->[ 1] 10:00:01 --UBE--[%d]" % level,
            "OUT->[ 1] 10:00:01 --UBE--[%d]" % level, "OUT->[ 2] 10:00:01 --UBE--[%d]" % level,
            "--UBE--[%d] Started" % level, "--UBE--[%d] Started" % level, "Sep 22 10:00:01 ** 0/0 \tOUT->[ 3] x",
            "Sep 22 10:00:01 ** 0/0 \tCalling Business function B x", "Return value 10:00:01 --UBE--[%d]" % level])
            for level in (rng.randint(0, 3) for _ in range(rng.randint(3, 12)))]

    def junk(self):
        rng = self.rng
        return rng.choice([
            "", " ", "\t", "x", "two words", "a continuation of the line before", "at Foo.bar(Foo:12)", "Sep", "Sep 22",
            "Sep 22 12:00:00", "Sep 22 12:00:00.5 ", "Sep 22 12:00:00.5 -", "Sep 22 12:00:00.5 **", "Entering JDB_InitUser",
            " Entering JDB_InitUser", "Sep 22 12:00:00.5 - 1/2 Label only", "Sep 22 12:00:00.5 - 1/2", "Sep 22 12:00:00.5 - 1/2 \t",
            "Jun 3 12:00:01.5 - 1/2 x", "\tSep 22 12:00:00.5 - 1/2\tL\tSELECT * FROM F1 "])

    def debug_log(self):
        rng = self.rng
        style = rng.choice(["star one", "star one whole", "star two", "one", "one", "two", "three", "one dashed",
                            "two dashed", "padded", "padded", "star padded whole", "nolabel", "star", "one nolabel"])
        ube = rng.random() < 0.25
        detect_early = rng.random() < 0.9
        if detect_early:
            self.add(self.debug_line(style, "Entering JDB_InitUser with commit mode 0."))
        count = rng.choice([0, 3, 20, 60, 120, 250])
        for _ in range(count):
            owner = rng.choice(self.owners)
            if ube and rng.random() < 0.05:
                for line in self.ube_story():
                    self.add(line)
            elif ube and rng.random() < 0.3:
                self.add(self.ube_line())
            elif self.odd(0.7):
                self.add(self.junk())
            elif self.odd(0.2):
                self.add("Sep 22 12:00:00.000001 - %d/%d [CARVELOT MESSAGE] - \t[CARVELOT MESSAGE]Note" % owner)
            elif self.odd(0.3):
                other = rng.choice(["one", "two", "padded", "star one", "dashed one"])
                self.add(self.debug_line(other, self.statement(owner), owner))
            elif rng.random() < 0.03:
                for text in self.cache_story():
                    self.add(self.debug_line(style, text, owner))
            else:
                self.add(self.debug_line(style, self.statement(owner), owner))

    def jas_line(self, text, level=None):
        rng = self.rng
        owner = self.owners[0]
        now = self.advance(owner)
        month = self.name(ODD_MONTHS) if self.odd(0.5) else "Jun"
        clock = self.clock_text(now, ",", 3)
        if level is None:
            level = self.name(LEVELS) if rng.random() < 0.25 else "APP   "
        user = self.name(USERS)
        if self.odd():
            user = rng.choice(["two words", "[X]", "a b c", "-x", "\t"])
        dash = rng.choice(["--", "", "-x", "x-"]) if self.odd(0.5) else "-"
        source = "[%s]" % self.name(SOURCES) if not self.odd() else rng.choice(["JDBJ", "[", "]", "[JDBJ", " [JDBJ]", "[[A]]"])
        bracket = "[%s]" % level if not self.odd() else rng.choice([" [%s]", "[%s", "%s]", "[[ %s ]]", "[%s][1000183][RUNTIME]"]) % level
        head = "29" + self.blanks() + month + self.blanks() + "2016" + self.blanks() + clock + " " + bracket
        if user:
            head += " " + user
        return head + " " + dash + self.blanks() + source + rng.choice(["            ", " ", "", "\t"]) + text

    def jas_param(self, number):
        rng = self.rng
        value = rng.choice(["52", "", "a.b", "O'Neill", "\u00e9", "1000", "?1", "x_Types.y"])
        kind = rng.choice(["VARCHAR", "VARCHAR", "DECIMAL", "LONGVARCHAR", "varchar", "INTEGER"])
        text = "Param%d: %s_Types.%s%s" % (number, value, kind, rng.choice([",", ",", "", " ,", " , ,"]))
        if self.odd(2):
            text = rng.choice(["Param%d : 5_Types.CHAR" % number, "Param: 5_Types.CHAR", "Param%d 5_Types.CHAR" % number,
                               "Param%d: 5" % number, "Params: none", "x Param%d: 5_Types.VARCHAR" % number, "a:Param 5_Types.INT",
                               "Param-1: 5_Types.CHAR", "Param%d: 5_Types.VARCHAR , ," % number, "Param%d:_Types.VARCHAR" % number,
                               "Param.VARCHAR", "Param99999999999: 1_Types.X"])
        return text

    def jas_statement(self):
        rng = self.rng
        pick = rng.random()
        owner = self.owners[0]
        if pick < 0.25:
            text = rng.choice(["Object Called: F4211.F4211_CURRENCY", "Object Called: F0101", "Object Called: A.B.C",
                               "x Object Called: P4210.W4210A", "Object Called:", "object called: x", "Object Called: "])
        elif pick < 0.4:
            text = rng.choice(["P0411_W0411A, Event Starts :Dialog", "P0411_W0411A, Event Ends:Post Dialog", "Event Starts: x",
                               "Fetch at ER Line 12", "at ER line", "Event Ends :x"])
        elif pick < 0.55:
            text = self.sql()
        elif pick < 0.85:
            text = self.statement(owner)
        else:
            text = self.misc()
        return self.decorate(text)

    def prepared(self):
        rng = self.rng
        if rng.random() < 0.25:
            marks = rng.choice([10, 11, 12])
            text = "INSERT INTO F4211 (%s) VALUES (%s)" % (", ".join("C%d" % i for i in range(marks)), ", ".join("?" * marks))
        else:
            text = self.sql(marks=True)
            marks = text.count("?")
        self.add(self.jas_line(text, "APP   "))
        if rng.random() < 0.7:
            self.add(self.jas_line(rng.choice(["SQL statement parameter marker values are :", "SQL statement parameter marker values are:"])))
        given = marks if not self.odd(2) else rng.randint(0, marks + 2)
        numbers = list(range(1, given + 1))
        if self.odd():
            rng.shuffle(numbers)
        for number in numbers:
            self.add(self.jas_line(self.jas_param(number), None if self.odd() else "APP   "))
            if self.odd():
                self.add(self.jas_line(self.jas_statement()))

    def jas_log(self, least=6):
        rng = self.rng
        for _ in range(least):
            self.add("29 Jun 2016 12:08:30,122 [APP   ] JDE - [JDBJ]            Started")
        for _ in range(rng.choice([0, 5, 30, 80, 150])):
            if self.odd(0.7):
                self.add(rng.choice([self.junk(), "29", "29 Jun", "29 Jun 2016", "29 Jun 2016 12:00:00,5", "29 Jun 2016 12:00:00,5 [APP]",
                                     "29 Jun 2016 12:00:00,5 [APP] - [", "29 Jun 2016 12:00:00,5 [WARN  ] - [BASE] SELECT ? x",
                                     "29 Jun 2016 many words and no dash at all here", "\t29 Jun 2016", "29 Jun 2016 12:00:00,9999999 [X] U - [B] y",
                                     "[Line -1] [APP   ] x", "29 06 2016 12:00:00,1 [APP   ] U - [B] y"]))
            elif rng.random() < 0.2:
                self.prepared()
            else:
                self.add(self.jas_line(self.jas_statement()))

    def edge_log(self, number):
        """Files that stand on one of detection's limits, one after the other. Returns the line end, or None for any."""
        sign = b"Sep 22 12:00:00 ** 1/2 \tEntering JDB_InitUser"
        shape = b"29 Jun 2016 12:08:30,122 [APP   ] JDE - [JDBJ] x"
        ube = b"--UBE--[1] Started"
        cases = [
            ([b""] * 4999 + [sign], b"\n"), ([b""] * 5000 + [sign], b"\n"), ([b""] * 5001 + [sign], b"\n"),
            ([b"Sep 22 12:00:00"] * 2499 + [sign], b"\r\n"), ([b"Sep 22 12:00:00"] * 2500 + [sign], b"\r\n"),
            ([b"Sep 22 12:00:00"] * 2501 + [sign], b"\r\n"), ([b""] * 5000 + [ube], b"\n"), ([b""] * 5001 + [ube], b"\n"),
            ([shape] * 5, b"\n"), ([shape] * 6, b"\n"), ([shape] * 5 + [b"", shape], b"\r\n"),
            ([b"junk line"] * 4995 + [b""] * 3 + [shape] * 6, b"\n"), ([b"junk line"] * 4996 + [b""] * 3 + [shape] * 6, b"\n"),
            ([shape] * 5 + [b"junk line"] * 4995 + [shape], b"\n"), ([shape] * 5 + [b"junk line"] * 4996 + [shape], b"\n"),
            ([b"a b c d [e"] * 5 + [b"a b c d\t[e"], b"\n"), ([b"a b c d [e"] * 5 + [b"  a  b  c  d  [e"], b"\n"),
            ([b"a b c d e [f"] * 9, b"\n"), ([ube, b"Sep 22 12:00:00 - 1/2 X\tCalling x y"], b"\n"), ([sign], b"\n"),
            ([shape] * 9 + [sign, shape, sign], b"\n"), ([b"Entering JDB_InitUser"] * 3, b"\n"),
            ([b"x" * 8180 + b" Entering JDB_InitUser", b"y" * 8192, b"Sep 22 12:00:00 ** 1/2 z"], b"\n"),
            ([b"x" * 8170 + b" Entering JDB_InitUser", b"y" * 8192, b"Sep 22 12:00:00 ** 1/2 z"], b"\n"),
            ([b"x\tEntering JDB_A Entering JDB_B\tc", sign.replace(b"\t", b"\t x"), sign], b"\n"),
            ([sign, b"Sep 22 12:00:01\t** 1/2 Entering JDB_InitUser", sign], b"\n"),
            ([sign[:24] + b"\t\t" + sign[24:], sign[:24] + b"\0" + sign[24:]], b"\n"),
            ([sign.replace(b"\t", b"\xc3\xa9\xf0\x9f\x98\x80 "), sign.replace(b"\t", b"\xe9\xf0\x9f\x98\x80 ")], b"\n")]
        lines, end = cases[number % len(cases)]
        self.lines = list(lines)
        for _ in range(4):
            owner = self.rng.choice(self.owners)
            self.lines.append(self.encode(self.debug_line("star one", self.statement(owner), owner)))
        return end

    def hostile_log(self):
        rng = self.rng
        self.add(self.debug_line("one", "Entering JDB_InitUser"))
        for _ in range(rng.choice([5, 30, 80])):
            pick = rng.random()
            if pick < 0.4:
                line = bytearray(self.encode(self.debug_line(rng.choice(["one", "padded", "star two"]), self.statement(self.owners[0]))))
                for _ in range(rng.randint(1, 6)):
                    if line:
                        line[rng.randrange(len(line))] = rng.randrange(256)
                self.lines.append(bytes(line))
            elif pick < 0.7:
                self.lines.append(bytes(rng.randrange(256) for _ in range(rng.randint(0, 60))))
            elif pick < 0.8:
                self.lines.append(self.stretch(self.encode(self.debug_line("one", self.statement(self.owners[0])))))
            else:
                self.add(self.ube_line())


def boundary_log(log):
    """A character of several bytes across the end of a piece, and emoji around the columns that rules cut at."""
    rng = log.rng
    head = b"Sep 22 12:00:00.000001 - 4120/3388 Worker\t"
    log.lines.append(head + b"Entering JDB_InitUser")
    for piece in ["\u00e9", "\u20ac", "\U0001F600"]:
        raw = piece.encode("utf-8")
        for back in range(0, len(raw) + 1):
            body = head + b"SELECT * FROM F0101 WHERE X = "
            log.lines.append(body + b"x" * (8192 - len(body) - back) + raw + b" tail" * rng.randint(0, 2))
    log.lines.append(b"Sep 22 12:00:05.000001 - 4120/3388 Worker\tOn line " + b"\xf0\x9f\x98\x80" * rng.randint(0, 2))
    column = len("Sep 22 12:00:00.000001 - 4120/3388 Worker\t") + 3
    log.lines.append(head + b" - JDB fixes the column")
    for shift in range(-3, 2):
        line = "Sep 22 12:00:0%d.000001 - 4120/3388 Worker" % (shift + 4)
        log.lines.append((line.ljust(column + shift) + "\U0001F600\U0001F600JDB after a face").encode("utf-8"))
    for text in ["SELECT A FROM\U0001F600F0101 WHERE", "SELECT A FROM \U0001F600T0 A\U0001F600WHERE", "UPDATE\U0001F600X SET",
                 "UPDATE \U0001F600 SET", "Return value is \U0001F6002 for X. ", "Return value i\U0001F6002 for Y. x",
                 "Calling Business function\U0001F600Name is", "RT: >>>Beginning ER:\t\U0001F600\tForm:\U0001F600W\t",
                 "jdeCache Nm:[\U0001F600] 5\U0001F600]", "Calling Business function B x (BSFNLevel = \U0001F6003)"]:
        log.lines.append(("Sep 22 12:00:09.000001 - 4120/3388 Worker".ljust(column) + text + " ").encode("utf-8"))


def make(seed):
    """The bytes of the log with this seed."""
    log = OddLog(seed)
    rng = log.rng
    end = rng.choice([b"\n", b"\n", b"\n", b"\r\n", b"\r", None])
    if seed % 10 == 0:
        end = log.edge_log(seed // 10)
        return b"".join(line + end for line in log.lines)
    kind = rng.random()
    if kind < 0.01:
        return rng.choice([b"", b"\n", b"\0", b"\r\n\r\n", b"x", b"--UBE--[1] x"])
    if kind < 0.50:
        log.debug_log()
    elif kind < 0.80:
        log.jas_log()
    elif kind < 0.93:
        log.hostile_log()
    else:
        boundary_log(log)
    pieces = []
    for line in log.lines:
        pieces.append(line)
        pieces.append(end if end is not None else rng.choice([b"\n", b"\r\n", b"\r", b"\n\n"]))
    if pieces and rng.random() < 0.3:
        pieces.pop()
    return b"".join(pieces)


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
