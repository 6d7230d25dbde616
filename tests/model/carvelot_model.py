#!/usr/bin/env python3
"""A second, independent reading of the log rules, in the plainest form.

It reads one debug or JAS log and prints what `carvelot-report --json` prints, so that the two can be
compared field by field (see compare.py). Nothing here is fast or clever on purpose: every rule stands by
itself, every walk is linear, and no code is shared with the product.

A text is a `str` that holds one UTF-16 code unit per element: a character outside the basic plane is two
elements. Columns therefore count as they do in the system.
"""

import argparse
import json
import os
import re
import struct
import sys

SQL, CALL, ON, RETURN, PARM_IN, PARM_OUT = 1, 2, 3, 4, 5, 6
NONE, EVENT_START, EVENT_END, ERROR, CACHE = 0, 7, 8, 10, 11
MANDATORY, WARN, SEVERE, ER_LINE = 12, 13, 14, 15
SQL_DONE, OBJECT_CALL, UBE, JDB_ERROR, GAP, MESSAGE = 17, 18, 19, 20, 21, 22

FORMAT_DEBUG, FORMAT_JAS = 0, 1
MONTHS = "JanFebMarAprMayJunJulAugSepOctNovDec"
LINE_BYTES = 8192
U64 = 1 << 64
U32 = 1 << 32

JDB_CODES = ["CAC0001111", "CAC0001025", "CAC0001036", "JDB3100001", "JDB3100060", "JDB3100076",
             "JDB3100080", "JDB3300020", "JDB3400009", "JDB3500011", "JDB3600011", "JDB3700001",
             "JDB4100005", "JDB4100006", "JDB9900401", "JDB9901232"]
SQL_WORDS = ["SELECT", "UPDATE", "DELETE", "ALTER", "DROP", "CREATE", "INSERT"]
CACHE_WORDS = ["jdeCache", "hCache:", "hCursor:", "Found existing cache"]

CANNOT_OPEN = "Failed to open file."
NO_FORMAT = "Error: Cannot determine tracing log format"
BAD_EXTENSION = "Invalid file type"


class LogError(Exception):
    """The message that the user would see."""


# ---------------------------------------------------------------------------------------------- texts

def units(text):
    """The text with every character outside the basic plane split into its two surrogates."""
    if text.isascii():
        return text
    out = []
    for ch in text:
        code = ord(ch)
        if code >= 0x10000:
            code -= 0x10000
            out.append(chr(0xD800 + (code >> 10)))
            out.append(chr(0xDC00 + (code & 0x3FF)))
        else:
            out.append(ch)
    return "".join(out)


def plain(text):
    """Back to ordinary characters. A surrogate without its partner becomes U+FFFD."""
    if text.isascii():
        return text
    out = []
    i = 0
    while i < len(text):
        code = ord(text[i])
        if 0xD800 <= code <= 0xDBFF and i + 1 < len(text) and 0xDC00 <= ord(text[i + 1]) <= 0xDFFF:
            out.append(chr(0x10000 + ((code - 0xD800) << 10) + (ord(text[i + 1]) - 0xDC00)))
            i += 2
        elif 0xD800 <= code <= 0xDFFF:
            out.append("\uFFFD")
            i += 1
        else:
            out.append(text[i])
            i += 1
    return "".join(out)


WINDOWS_1252 = [chr(byte) if byte in (0x81, 0x8D, 0x8F, 0x90, 0x9D) else bytes([byte]).decode("cp1252")
                for byte in range(256)]


def windows_1252(raw):
    return "".join(WINDOWS_1252[byte] for byte in raw)


def wide(raw):
    """A line's bytes as text: a NUL ends it; strict UTF-8, else Windows-1252."""
    nul = raw.find(b"\0")
    if nul >= 0:
        raw = raw[:nul]
    try:
        return units(raw.decode("utf-8", "strict"))
    except UnicodeDecodeError:
        return windows_1252(raw)


def upper_char(ch):
    up = ch.upper()
    if len(up) == 1:
        return up
    # A few Greek letters have a simple mapping that differs from their full one; it is the title form.
    up = ch.title()
    return up if len(up) == 1 else ch


def upper(text):
    if text.isascii():
        return text.upper()
    return "".join(upper_char(ch) for ch in text)


def trim_statement(text):
    return text.lstrip(" \t").rstrip(" ")


def first_word(text):
    blank = text.find(" ")
    return text[:blank] if blank >= 0 else ""


class Tokens:
    """The C library's strtok over one line."""

    def __init__(self, line):
        self.line = line
        self.at = 0

    def next(self, delimiters):
        while self.at < len(self.line) and self.line[self.at] in delimiters:
            self.at += 1
        if self.at >= len(self.line):
            return None
        start = self.at
        while self.at < len(self.line) and self.line[self.at] not in delimiters:
            self.at += 1
        token = self.line[start:self.at]
        if self.at < len(self.line):
            self.at += 1
        return token

    def rest(self):
        return self.line[self.at:]


# -------------------------------------------------------------------------------------------- numbers

def read_int(text, at=0):
    """(value, end) of a decimal number as %d reads it, or None. The value saturates to 32 bits."""
    while at < len(text) and text[at] in " \t\n\v\f\r":
        at += 1
    negative = False
    if at < len(text) and text[at] in "+-":
        negative = text[at] == "-"
        at += 1
    start = at
    while at < len(text) and text[at] in "0123456789":
        at += 1
    if at == start:
        return None
    # Saturates anyway: keep absurdly long numbers away from int()'s own limit.
    digits = text[start:at].lstrip("0")
    value = int(digits) if 0 < len(digits) < 20 else (0 if not digits else 10 ** 20)
    if negative:
        value = -value
    return saturate32(value), at


def saturate32(value):
    return max(-(1 << 31), min((1 << 31) - 1, value))


def wtoi(text):
    found = read_int(text)
    return found[0] if found else 0


def scan(text, separators):
    """The numbers that sscanf fills for "%d" joined by the given single characters."""
    values = []
    at = 0
    for i in range(len(separators) + 1):
        if i > 0:
            if at >= len(text) or text[at] != separators[i - 1]:
                return values
            at += 1
        found = read_int(text, at)
        if found is None:
            return values
        value, at = found
        values.append(value)
    return values


def digit_at(text, column):
    if column < len(text) and text[column] in "0123456789":
        return int(text[column])
    return 0


def f32(value):
    """A double rounded to a 32-bit float."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def f32_from_int(value):
    """An integer rounded to a 32-bit float in one step (to nearest, ties to even)."""
    sign = -1 if value < 0 else 1
    value = abs(value)
    shift = max(0, value.bit_length() - 24)
    if shift:
        low = value & ((1 << shift) - 1)
        half = 1 << (shift - 1)
        value >>= shift
        if low > half or (low == half and value & 1):
            value += 1
        value <<= shift
    return float(sign * value)


def signed64(value):
    return value - U64 if value >= 1 << 63 else value


def signed32(value):
    return value - U32 if value >= 1 << 31 else value


def micros_to_seconds(micros):
    """An unsigned count of microseconds read as signed, made a float, repaired and divided."""
    value = signed64(micros)
    result = f32_from_int(value)
    if value < 0:
        result = f32(result + float(U64))
    return f32(result / 1000000.0)


def elapsed_seconds(later, earlier):
    if earlier == 0:
        return 0.0
    diff = (later - earlier) % U64
    if later < earlier:
        diff = (diff + 46799999999) % U64
    return micros_to_seconds(diff)


def log_time(hour, minute, second, fraction):
    return (((hour * 60 + minute) * 60 + second) * 1000000 + fraction) % U64


# --------------------------------------------------------------------------------------------- records

class Detail:
    def __init__(self):
        self.index = -1
        self.kind = NONE
        self.return_code = 0
        self.month = ""
        self.day = self.hour = self.minute = self.second = self.microsecond = 0
        self.time = 0
        self.process = self.thread = 0
        self.label = self.text = self.name = ""
        self.table = ""
        self.sql_operation = 0
        self.level = self.user = self.source = ""
        self.duration = 0.0
        self.gap = 0.0
        self.ube = False
        self.ube_level = 0
        self.failed_below = False
        self.display = ""

    def clock(self):
        return "%02d:%02d:%02d.%06d    " % (self.hour, self.minute, self.second, self.microsecond)


class SqlTable:
    def __init__(self, name):
        self.name = name
        self.selects = self.inserts = self.updates = self.deletes = 0


class SqlAnalysis:
    def __init__(self):
        self.tables = []
        self.long_tasks = []

    def add_statement(self, record):
        if record.kind != SQL:
            return
        table = None
        for known in self.tables:
            if upper(known.name) == upper(record.table):
                table = known
                break
        if table is None:
            table = SqlTable(record.table)
            self.tables.append(table)
        if record.sql_operation == 1:
            table.selects += 1
        elif record.sql_operation == 2:
            table.updates += 1
        elif record.sql_operation == 3:
            table.inserts += 1
        elif record.sql_operation == 4:
            table.deletes += 1


def extract_table(record, keyword):
    text = record.text
    start = text.find(keyword) + len(keyword) + 1
    rest = text[start:].strip(" ")
    blank = rest.find(" ")
    table = rest[:blank] if blank >= 0 else rest
    if record.sql_operation == 1 and "T0" in rest and "WHERE" in rest:
        table = rest[:max(0, rest.find("WHERE") - 1)]
    if record.sql_operation == 3 and "(" in table:
        table = table[:table.find("(")]
    record.table = table


def split_sql(record):
    if record.kind != SQL:
        return
    blank = record.text.find(" ")
    word = record.text[:blank] if blank >= 0 else record.text
    if word == "SELECT":
        record.sql_operation = 1
        extract_table(record, "FROM")
    elif word == "UPDATE":
        record.sql_operation = 2
        extract_table(record, "UPDATE")
    elif word == "DELETE":
        record.sql_operation = 4
        extract_table(record, "FROM")
    elif word == "INSERT":
        record.sql_operation = 3
        extract_table(record, "INTO")


class Instance:
    def __init__(self, start, level):
        self.start = start
        self.start_time = start.time
        self.end_time = 0
        self.level = level
        self.result = 0
        self.duration = 0


class Function:
    def __init__(self, name, location):
        self.name = name
        self.location = location
        self.instances = []
        self.longest = self.shortest = self.total = 0


class BsfnAnalysis:
    def __init__(self, threshold):
        self.threshold = threshold
        self.functions = {}
        self.long_tasks = []

    def find_or_create(self, name, location):
        if name not in self.functions:
            self.functions[name] = Function(name, location)
        return self.functions[name]

    def close_instances(self, function, end, level):
        for instance in reversed(function.instances):
            if instance.level != level or instance.end_time != 0:
                continue
            instance.result = end.return_code
            instance.end_time = end.time
            if instance.start_time == 0:
                instance.duration = U64 - 1
                continue
            duration = (end.time - instance.start_time) % U64
            if end.time < instance.start_time:
                duration = (duration + 0xE57F53FF) % U64
            instance.duration = duration
            instance.start.duration = micros_to_seconds(duration)
            if instance.start.duration > self.threshold:
                self.long_tasks.insert(0, instance.start)
            function.total = (function.total + duration) % U64
            function.longest = duration if function.longest == 0 else max(function.longest, duration)
            function.shortest = duration if function.shortest == 0 else min(function.shortest, duration)

    def add_call(self, record):
        text = record.text
        name = ""
        location = ""
        if record.kind == CALL:
            location = "Local"
            at = text.find("Calling Business function")
            if at >= 0:
                end = text.find(" ", at + 26)
                if end >= 0:
                    name = text[at + 26:end]
        else:
            at = text.find("for ")
            if at >= 0:
                end = text.find(" ", at + 4)
                if end >= 0:
                    name = text[at + 4:end]
            name = name.rstrip(".")
        level = 0
        at = text.find("BSFNLevel = ")
        if at >= 0:
            end = text.find(")", at + 12)
            level = wtoi(text[at + 12:end] if end >= 0 else text[at + 12:])
        function = self.find_or_create(name, location)
        if record.kind == CALL:
            function.instances.append(Instance(record, level))
        else:
            self.close_instances(function, record, level)

    def object_name(self, record):
        name = ""
        if "Object Called:" in record.text:
            name = record.text[15:]
            dot = name.find(".")
            if dot >= 0:
                name = name[dot + 1:]
        return name

    def add_object_call(self, record):
        function = self.find_or_create(self.object_name(record), "")
        function.instances.append(Instance(record, 1))

    def end_object_call(self, record, started):
        function = self.find_or_create(self.object_name(started), "")
        self.close_instances(function, record, 1)


class CacheOperation:
    def __init__(self, record, op, text, image):
        self.record = record
        self.op = op
        self.text = text
        self.image = image


class CacheCursor:
    def __init__(self, handle, opened):
        self.handle = handle
        self.open = opened
        self.close = None


CACHE_IMAGES = {1: 4, 2: 4, 3: 1, 5: 2, 6: 5, 7: 9, 8: 8, 9: 10, 10: 10, 11: 8, 12: 2}
CACHE_TEXTS = {1: "Cache Init (New)", 2: "Cache Init (Existing)", 3: "Cache Add", 5: "Cache Delete",
               9: "Cache Terminate", 10: "Cache Terminate All", 12: "Cache Delete All"}


class Cache:
    def __init__(self, name, handle, instance, process):
        self.name = name
        self.handle = handle
        self.instance = instance
        self.process = process
        self.instance_count = 1
        self.operations = []
        self.cursors = []

    def add_operation(self, record, op, text, cursor=""):
        operation = CacheOperation(record, op, record.clock() + text, CACHE_IMAGES[op])
        if op == 7:
            self.cursors.append(CacheCursor(cursor, record))
        if op in (8, 11):
            for known in self.cursors:
                if known.handle == cursor:
                    known.close = record
                    break
        self.operations.append(operation)


def between(text, marker):
    """What stands between the marker and the next "]"; a missing marker counts as found at -1."""
    start = text.find(marker) + len(marker)
    end = text.find("]", start)
    return text[start:end] if end >= 0 else ""


class CacheAnalysis:
    def __init__(self):
        self.caches = []
        self.pending_name = ""
        self.pending_cursor = ""
        self.pending_op = 0
        self.pending_record = None

    def add_line(self, record):
        if record.kind != CACHE:
            return
        if self.pending_op != 0:
            self.confirm(record)
            self.pending_op = 0
        self.announce(record)

    def confirm(self, record):
        text = record.text
        if "Nm:[" not in text:
            if self.pending_op == 6:
                self.failed_fetch()
            return
        handle = between(text, "hCache:[")
        instance = between(text, "Nm:[")
        cache = None
        for known in reversed(self.caches):
            if upper(known.handle) == upper(handle):
                cache = known
                break
        if cache is None:
            cache = Cache(handle, handle, instance, record.process)
            self.caches.append(cache)
        if cache.instance == "":
            cache.instance = instance
        op = self.pending_op
        pending = self.pending_record
        if op in (9, 10):
            cache.instance_count -= 1
            if op == 10 or cache.instance_count < 1:
                cache.instance_count = 0
        if op in CACHE_TEXTS:
            cache.add_operation(pending, op, CACHE_TEXTS[op])
        elif op == 6:
            cache.add_operation(pending, op, "Cache Fetch. Cursor [" + self.pending_cursor + "]")
        elif op == 7:
            cursor = between(pending.text, "hCursor:[")
            cache.add_operation(pending, op, "Open Cursor [" + cursor + "]", cursor)
        elif op == 11:
            cursor = between(pending.text, "hCursor:[")
            cache.add_operation(pending, op, "Reset Cursor [" + cursor + "]")
        elif op == 8:
            cursor = between(pending.text, "hCursor:[")
            cache.add_operation(pending, op, "Close Cursor [" + cursor + "]", cursor)

    def failed_fetch(self):
        text = "Fetch Failed.  Cursor [" + self.pending_cursor + "]"
        for cache in reversed(self.caches):
            for cursor in reversed(cache.cursors):
                if cursor.handle == self.pending_cursor and cursor.close is None:
                    cache.add_operation(self.pending_record, 6, text)
                    return

    def announce(self, record):
        text = record.text
        if "jdeCacheInit" in text:
            self.pending_name = between(text, "Name:[")
        if "Created new cache" in text:
            self.caches.append(Cache(self.pending_name, between(text, "hCache:["), "", record.process))
            self.pending_op = 1
        if "Found existing cache" in text:
            self.pending_op = 2
        if "jdeCacheFetch" in text:
            self.pending_cursor = between(text, "hCursor:[")
            self.pending_op = 6
        self.pending_record = record
        if "jdeCacheTerminate" in text:
            self.pending_op = 10 if "jdeCacheTerminateAll" in text else 9
        elif "jdeCacheAdd" in text:
            self.pending_op = 3
        elif "jdeCacheUpdate" in text:
            self.pending_op = 4
        elif "jdeCacheDelete" in text:
            self.pending_op = 12 if "jdeCacheDeleteAll" in text else 5
        elif "Open Cursor Success" in text:
            self.pending_op = 7
        elif "jdeCacheResetCursor" in text:
            self.pending_op = 11
        elif "jdeCacheCloseCursor" in text:
            self.pending_op = 8


class Thread:
    def __init__(self, number, threshold):
        self.id = number
        self.start_time = self.end_time = 0
        self.details = []
        self.errors = []
        self.sql = SqlAnalysis()
        self.bsfn = BsfnAnalysis(threshold)
        self.pending_sql = None


class Process:
    def __init__(self, number, threshold):
        self.id = number
        self.start_time = self.end_time = 0
        self.threads = []
        self.errors = []
        self.sql = SqlAnalysis()
        self.bsfn = BsfnAnalysis(threshold)
        self.cache = CacheAnalysis()


class User:
    def __init__(self, name, threshold):
        self.name = name
        self.details = []
        self.errors = []
        self.sql = SqlAnalysis()
        self.bsfn = BsfnAnalysis(threshold)
        self.pending_sql = None
        self.pending_object = None


# ------------------------------------------------------------------------------------- classification

def return_code(text):
    return digit_at(text, 16)


def er_rule(text):
    """(kind, display name) of an event rule line."""
    behind = text.find(" ") + 1
    tab = text.find("\t", behind)
    marker = text[behind:tab] if tab >= 0 else ""
    if marker == ">>>Beginning ER:":
        end = text.find("\t", tab + 1)
        name = text[tab + 1:end] if end >= 0 else ""
        form = ""
        at = text.find("Form:")
        if at > 0:
            end = text.find("\t", at + 5)
            form = text[at + 5:end] if end >= 0 else ""
        if form > " ":
            name = "Form: %s - %s" % (form, name)
        return EVENT_START, name
    if marker == "<<<Finished  ER:":
        return EVENT_END, ""
    return NONE, ""


def classify_debug(text):
    """(kind, return code, display name)"""
    word = first_word(text)
    if word in SQL_WORDS:
        return SQL, 0, ""
    if word == "[JDBOLEDB]":
        behind = text[text.find(" "):]
        for sql_word in SQL_WORDS:
            if sql_word in behind:
                return SQL, 0, ""
        return NONE, 0, ""
    if word == "Calling":
        if text == "Calling legacy API" or text == "Calling sqlplus.exe":
            return NONE, 0, ""
        return CALL, 0, ""
    if word == "On":
        return ON, 0, ""
    if word == "Return":
        return RETURN, return_code(text), ""
    if word.startswith("ERROR"):
        return ERROR, 0, ""
    if word.startswith("IN->["):
        return PARM_IN, 0, ""
    if word.startswith("OUT->["):
        return PARM_OUT, 0, ""
    if word == "RT:":
        kind, name = er_rule(text)
        return kind, 0, name
    for code in JDB_CODES:
        if code in text:
            return JDB_ERROR, 0, ""
    if text[:3] == "JDB":
        return JDB_ERROR, 0, ""
    for cache_word in CACHE_WORDS:
        if cache_word in text:
            return CACHE, 0, ""
    if "Exiting DBPerformRequest" in text:
        return SQL_DONE, 0, ""
    if "--UBE--" in text:
        return UBE, 0, ""
    if word == "[CARVELOT":
        return MESSAGE, 0, ""
    return NONE, 0, ""


def parse_param(text):
    """(value, index) of one parameter line of a prepared statement."""
    text = text.rstrip(" ,")
    value = ""
    index = 0
    dot = text.rfind(".")
    if dot < 0:
        return value, index
    kind = text[dot + 1:]
    colon = text.find(":")
    if colon >= 0:
        index = wtoi(text[5:colon])
        types = text.find("_Types.")
        if types >= 0:
            value = text[colon + 2:types]
    if kind == "VARCHAR" or kind == "LONGVARCHAR":
        value = "'" + value + "'"
    return value, index


class JasClassifier:
    """Holds the prepared statement that awaits its parameters, across lines and files."""

    def __init__(self):
        self.pending = ""
        self.count = 0

    def classify(self, level, text):
        """(kind, return code, display name, text)"""
        if level == "MANDATORY":
            return MANDATORY, 0, "", text
        if level == "WARN":
            return WARN, 0, "", text
        if level == "SEVERE":
            return SEVERE, 0, "", text
        word = first_word(text)
        if word in SQL_WORDS:
            self.count = text.count("?")
            if self.count == 0:
                self.pending = text
                return SQL, 0, "", text
            numbered = ""
            number = 0
            for ch in text:
                numbered += ch
                if ch == "?":
                    number += 1
                    numbered += "%d" % number
            self.pending = numbered
            return NONE, 0, "", numbered
        if self.count > 0:
            if "Param" in text:
                value, index = parse_param(text)
                mark = "?%d" % index
                at = self.pending.find(mark)
                if at >= 0:
                    self.pending = self.pending[:at] + value + self.pending[at + len(mark):]
                self.count -= 1
            if self.count > 0:
                return NONE, 0, "", text
            return SQL, 0, "", self.pending
        if word == "Calling":
            if text == "Calling legacy API" or "Calling server component" in text:
                return NONE, 0, "", text
            return CALL, 0, "", text
        if word == "On":
            return ON, 0, "", text
        if word == "Return":
            return RETURN, return_code(text), "", text
        if word.startswith("ERROR"):
            return ERROR, 0, "", text
        if word.startswith("IN->["):
            return PARM_IN, 0, "", text
        if word.startswith("OUT->["):
            return PARM_OUT, 0, "", text
        if "Event Starts :" in text:
            return EVENT_START, 0, "", text
        if "Event Ends:" in text:
            return EVENT_END, 0, "", text
        if "at ER Line" in text:
            return ER_LINE, 0, "", text
        if "Object Called:" in text:
            return OBJECT_CALL, 0, "", text
        if word == "RT:":
            kind, name = er_rule(text)
            return kind, 0, name, text
        for cache_word in CACHE_WORDS:
            if cache_word in text:
                return CACHE, 0, "", text
        return NONE, 0, "", text


# -------------------------------------------------------------------------------------------- session

def read_lines(data):
    """The log's lines as bytes. What stands behind the last line end is no line."""
    lines = []
    pieces = re.split(b"[\n\r]", data)
    for number, piece in enumerate(pieces):
        while len(piece) >= LINE_BYTES:
            lines.append(piece[:LINE_BYTES])
            piece = piece[LINE_BYTES:]
        if number + 1 < len(pieces):
            lines.append(piece)
    return lines


class Session:
    def __init__(self, threshold=1.0, process_filter=0, cache_analysis=True, classifier=None):
        self.threshold = f32(threshold)
        self.process_filter = process_filter
        self.cache_analysis = cache_analysis
        self.jas_classifier = classifier if classifier is not None else JasClassifier()
        self.log_format = FORMAT_DEBUG
        self.text_column = 0
        self.tab_count = 0
        self.dash_form = 0
        self.ube_log = False
        self.path = ""
        self.clear()

    def clear(self):
        self.details = []
        self.processes = []
        self.users = {}
        self.gaps = []

    # ---- loading

    def load(self, path):
        self.path = path
        try:
            with open(path, "rb") as stream:
                data = stream.read()
        except OSError:
            raise LogError(CANNOT_OPEN)
        self.load_bytes(data)

    def load_bytes(self, data):
        self.clear()
        lines = read_lines(data)
        if not self.detect(lines):
            raise LogError(NO_FORMAT)
        for line in lines:
            if self.log_format == FORMAT_DEBUG:
                self.parse_debug(line)
            else:
                self.parse_jas(line)
        for process in self.processes:
            for thread in process.threads:
                thread.end_time = thread.details[-1].time
                if thread.end_time > process.end_time:
                    process.end_time = thread.end_time

    def detect(self, lines):
        hits = 0
        tabs = 0
        looked_at = 0
        for raw in lines:
            looked_at += 1
            line = wide(raw)
            column = line.find("Entering JDB")
            if column > 0:
                hits += 1
                tabs = 0
                search = 0
                while True:
                    tab = line.find("\t", search)
                    if tab < 0:
                        self.text_column = column
                        break
                    if tab <= column:
                        tabs += 1
                    search = tab + 1
                    if not search < column:
                        break
            if "--UBE--" in line:
                hits += 1
            if looked_at > 5000:
                break
        if tabs >= 1:
            self.tab_count = tabs
            return True
        if self.text_column > 0:
            return True
        if hits > 0:
            return True
        return self.detect_jas(lines)

    def detect_jas(self, lines):
        score = 0
        looked_at = 0
        for raw in lines:
            line = wide(raw)
            if line == "":
                continue
            tokens = Tokens(line)
            for number in range(1, 7):
                token = tokens.next(" ")
                if token is None:
                    break
                if number == 5 and token.startswith("["):
                    score += 1
                    break
            looked_at += 1
            if looked_at == 5001:
                break
        if score >= 6:
            self.log_format = FORMAT_JAS
            return True
        return False

    # ---- debug log lines

    def parse_debug(self, raw):
        line = wide(raw)
        tokens = Tokens(line)
        record = Detail()
        delimiters = " \t"
        field = 0
        any_token = False
        while True:
            token = tokens.next(delimiters)
            if token is None:
                break
            any_token = True
            field += 1
            if field == 1:
                record.month = token if token in MONTHS else "MONTH"
            elif field == 2:
                record.day = wtoi(token)
            elif field == 3:
                values = scan(token, "::.")
                if len(values) < 4:
                    values = scan(token, "::")
                    if len(values) < 3:
                        return
                    values.append(0)
                record.hour, record.minute, record.second, record.microsecond = values
            elif field == 4:
                if token == "**":
                    self.dash_form = 0
                elif token == "-":
                    self.dash_form = 1
                else:
                    field -= 1
            elif field == 5:
                values = scan(token, "/") + [0, 0]
                record.process = values[0] % U32
                record.thread = values[1] % U32
                if self.dash_form == 0:
                    break
                delimiters = "\t"
            else:
                record.label = token
                break
        if not any_token:
            return

        text = ""
        if self.tab_count > 0:
            tab = -1
            for _ in range(self.tab_count):
                tab = line.find("\t", tab + 1)
            if tab >= 0:
                column = tab + 1
                if line[column:column + 3] == " - ":
                    column += 3
                    if self.text_column == 0:
                        self.text_column = column
                text = trim_statement(line[column:])
        if self.text_column > 0:
            text = trim_statement(line[self.text_column:])

        if "--UBE--" in line:
            record.process = 0
            record.thread = 0
            self.ube_log = True
            record.ube = True
            text = line
            record.ube_level = digit_at(line, 8)

        record.text = text
        record.kind, record.return_code, record.name = classify_debug(text)
        if self.process_filter != 0 and self.process_filter != record.process:
            return
        record.time = log_time(record.hour, record.minute, record.second, record.microsecond)
        self.append(record)
        split_sql(record)
        self.commit_detail(record)

    # ---- JAS log lines

    def parse_jas(self, raw):
        line = wide(raw)
        tokens = Tokens(line)
        record = Detail()
        delimiters = " "
        field = 1
        while True:
            token = tokens.next(delimiters)
            if token is None:
                if field == 1:
                    return
                break
            if field == 1:
                record.day = wtoi(token)
                delimiters = " \t"
                field = 2
            elif field == 2:
                if token not in MONTHS:
                    return
                record.month = token
                field = 3
            elif field == 3:
                field = 4
            elif field == 4:
                values = scan(token, "::,")
                values += [0] * (4 - len(values))
                record.hour, record.minute, record.second = values[:3]
                record.microsecond = saturate32(values[3] * 1000)
                delimiters = "[]"
                field = 5
            elif field == 5:
                record.level = token.strip("[] ")
                delimiters = " \t"
                field = 6
            elif field == 6:
                if token.startswith("-"):
                    delimiters = "[]"
                    field = 7
                else:
                    record.user = token
            else:
                record.source = token
                break
        text = trim_statement(tokens.rest())
        record.kind, record.return_code, record.name, record.text = self.jas_classifier.classify(
            record.level, text)
        if self.process_filter != 0:
            return
        record.time = log_time(record.hour, record.minute, record.second, record.microsecond)
        self.append(record)
        split_sql(record)
        self.commit_to_user(record)
        self.commit_detail(record)

    # ---- commit

    def append(self, record):
        record.index = len(self.details)
        self.details.append(record)

    def commit_to_user(self, record):
        if record.user == "":
            record.user = "SYSTEM LEVEL"
        if record.user not in self.users:
            self.users[record.user] = User(record.user, self.threshold)
        user = self.users[record.user]
        if user.pending_object is not None:
            user.bsfn.end_object_call(record, user.pending_object)
            user.pending_object.duration = elapsed_seconds(record.time, user.pending_object.time)
            user.pending_object = None
        if user.pending_sql is not None:
            user.pending_sql.duration = elapsed_seconds(record.time, user.pending_sql.time)
            if user.pending_sql.duration > self.threshold:
                user.sql.long_tasks.insert(0, user.pending_sql)
            user.pending_sql = None
        if record.kind == SQL:
            user.sql.add_statement(record)
            user.pending_sql = record
        if record.kind == OBJECT_CALL:
            user.bsfn.add_object_call(record)
            user.pending_object = record
        if record.kind in (WARN, SEVERE):
            user.errors.insert(0, record)
        user.details.append(record)

    def commit_detail(self, record):
        process = None
        for known in self.processes:
            if known.id == record.process:
                process = known
                break
        if process is None:
            process = Process(record.process, self.threshold)
            process.start_time = record.time
            self.processes.append(process)
        if record.kind in (ERROR, JDB_ERROR):
            process.errors.append(record)
        if record.kind == SQL:
            process.sql.add_statement(record)
        if record.kind == CACHE and self.cache_analysis:
            process.cache.add_line(record)
        if record.kind in (CALL, RETURN):
            process.bsfn.add_call(record)

        thread = None
        for known in process.threads:
            if known.id == record.thread:
                thread = known
                break
        if thread is not None:
            self.add_detail(thread, record)
        else:
            thread = Thread(record.thread, self.threshold)
            self.add_detail(thread, record)
            thread.start_time = record.time
            process.threads.append(thread)
        if record.kind in (ERROR, JDB_ERROR):
            thread.errors.append(record)
        if record.kind == SQL:
            thread.sql.add_statement(record)
            thread.pending_sql = record
        if record.kind == SQL_DONE and thread.pending_sql is not None:
            pending = thread.pending_sql
            pending.duration = elapsed_seconds(record.time, pending.time)
            if pending.duration > self.threshold:
                thread.sql.long_tasks.insert(0, pending)
                process.sql.long_tasks.insert(0, pending)
        if record.kind in (CALL, RETURN):
            thread.bsfn.add_call(record)
        if record.return_code > 0:
            process.errors.append(record)
            thread.errors.append(record)

    def add_detail(self, thread, record):
        if thread.details and thread.details[-1].time != 0:
            last = thread.details[-1]
            gap = elapsed_seconds(record.time, last.time)
            if gap > self.threshold:
                if last.kind == NONE:
                    last.kind = GAP
                if record.kind == NONE:
                    record.kind = GAP
                record.gap = gap
                self.gaps.append(record)
            elif last.kind == NONE:
                thread.details.pop()
        thread.details.append(record)

    # ---- find and export

    def find(self, text):
        wanted = upper(units(text))
        return [record.index for record in self.details
                if record.kind != NONE and wanted in upper(record.text)]

    def export_gaps(self, extension):
        """The text of the timing gap export; the extension without its dot, in any case."""
        extension = extension.upper()
        if extension not in ("CSV", "TXT"):
            raise LogError(BAD_EXTENSION)
        out = []
        if extension == "CSV":
            out.append("Proc/Thread,Timestamp,Gap Duration,Message\n")
        else:
            out.append("%-14s%-19s%-17sMessage\n" % ("Proc/Thread", "Timestamp", "Gap Duration"))
        for record in reversed(self.gaps):
            owner = owner_text(self, record)
            gap = "%08.6f" % record.gap
            if extension == "CSV":
                out.append('"%s",%s,%s,"%s"\n' % (owner, record.clock(), gap, record.text))
            else:
                out.append("%-14s%-19s%-17s%s\n" % (owner, record.clock().strip(" "), gap, record.text))
        return plain("".join(out))


# ---------------------------------------------------------------------------------------- detail tree

class Node:
    def __init__(self, parent, text, image, record):
        self.parent = parent
        self.text = text
        self.image = image
        self.record = record
        self.children = []


class DetailTree:
    def __init__(self, session):
        self.session = session
        self.root = Node(None, "", -1, None)

    def insert(self, parent, text, image, record):
        node = Node(parent, text, image, record)
        parent.children.append(node)
        return node

    def parent_of(self, node):
        return node.parent if node.parent is not None else self.root

    def fill(self, single_thread, records):
        jas = self.session.log_format == FORMAT_JAS
        if single_thread:
            self.root = Node(None, "", -1, None)
        root = self.root
        parent = root
        last = None
        previous = 0
        in_in = in_out = False
        ube_root = ube_parent = None
        if self.session.ube_log:
            ube_root = self.insert(root, "UBE", 21, None)
            ube_parent = ube_root
        for record in records:
            kind = record.kind
            if kind == NONE:
                continue
            if in_in and kind not in (PARM_IN, UBE):
                parent = self.parent_of(parent)
                in_in = False
            if in_out and kind not in (PARM_OUT, UBE):
                parent = self.parent_of(parent)
                in_out = False
            if kind in (JDB_ERROR, SEVERE):
                image = 0
            elif kind == UBE:
                image = 21
            elif kind == MANDATORY:
                image = 12
            elif kind == WARN:
                image = 1
            else:
                image = previous
            timed = kind != UBE
            if kind == RETURN:
                code = record.return_code
                real = parent is not root
                failed = real and parent.record is not None and parent.record.failed_below
                if code == 0:
                    call_image = 10 if failed else 2
                    image = 2
                elif code == 1:
                    call_image = 11 if failed else 1
                    image = 1
                else:
                    call_image = 0
                    image = 0
                if real:
                    parent.image = call_image
                if code == 2 and real:
                    ancestor = parent.parent
                    while ancestor is not None and ancestor is not root:
                        if ancestor.record is not None:
                            ancestor.record.failed_below = True
                        ancestor = ancestor.parent
            if kind == PARM_IN:
                timed = False
                image = 4
                if not in_in:
                    parent = last = self.insert(parent, "PARMS IN", 4, record)
                    in_in = True
            if kind == PARM_OUT:
                timed = False
                image = 5
                if not in_out:
                    parent = last = self.insert(parent, "PARMS OUT", 5, None)
                    in_out = True
            if kind == GAP:
                final = 22
            elif kind in (EVENT_START, ER_LINE):
                final = 6
            elif kind == CACHE:
                final = 17
            elif kind == ERROR:
                final = 0
            elif kind == SQL:
                final = 3
            elif kind == MESSAGE:
                final = 12
            elif kind == OBJECT_CALL:
                final = 15
            else:
                final = image
            previous = final
            if kind not in (EVENT_END, SQL_DONE) or record.gap > 0:
                prefix = record.clock() if timed else ""
                if record.duration > 0:
                    prefix += "(%08f) " % record.duration
                body = record.name if record.name > " " else record.text
                if jas:
                    display = "%s[%s] %s" % (prefix, record.source, body)
                else:
                    display = prefix + body
                if not single_thread:
                    display = "(%d)" % signed32(record.thread) + display
                record.display = display
                if record.ube:
                    below = ube_root if record.ube_level == 2 else ube_parent
                else:
                    below = parent
                # Below no node is at the top.
                last = self.insert(below if below is not None else root, display, final, record)
            if kind in (RETURN, EVENT_END) and parent is not root:
                parent = self.parent_of(parent)
            if kind in (CALL, ON, EVENT_START):
                parent = last
            if record.ube and record.ube_level == 2:
                ube_parent = last
        if self.session.ube_log and not ube_root.children:
            root.children.remove(ube_root)


def scope_records(session, scope):
    """(single thread, [record lists]) of a scope, or None when the session doesn't hold it."""
    def numbers(text, count):
        parts = text.split("/")
        if len(parts) != count:
            return None
        values = []
        for part in parts:
            digits = part[1:] if part.startswith("-") else part
            if not (digits.isascii() and digits.isdigit()):
                return None
            value = int(part)
            if not -(1 << 31) <= value < U32:
                return None
            values.append(value % U32)
        return values

    kind, _, name = scope.partition(":")
    if session.log_format == FORMAT_DEBUG and kind == "process":
        wanted = numbers(name, 1)
        for process in session.processes:
            if wanted and process.id == wanted[0]:
                return False, [thread.details for thread in process.threads]
    elif session.log_format == FORMAT_DEBUG and kind == "thread":
        wanted = numbers(name, 2)
        for process in session.processes:
            for thread in process.threads:
                if wanted and process.id == wanted[0] and thread.id == wanted[1]:
                    return True, [thread.details]
    elif session.log_format == FORMAT_JAS and kind == "user":
        user = session.users.get(units(name))
        if user is not None:
            return True, [user.details]
    return None


def tree_json(session, scope):
    found = scope_records(session, scope)
    if found is None:
        raise LogError("No such scope: " + scope)
    single, lists = found
    tree = DetailTree(session)
    for records in lists:
        tree.fill(single, records)

    def node_json(node):
        return {"text": plain(node.text), "image": node.image,
                "record": None if node.record is None else node.record.index,
                "children": [node_json(child) for child in node.children]}

    return {"scope": scope, "nodes": [node_json(child) for child in tree.root.children]}


# ---------------------------------------------------------------------------------------- rows of panes

def owner_text(session, record):
    if session.log_format == FORMAT_JAS:
        return record.user
    return "%d/%d" % (signed32(record.process), signed32(record.thread))


def thread_tree(session, process_name=""):
    """The texts of the thread tree: for a debug log (process, [threads]) pairs, for a JAS log the users."""
    if session.log_format == FORMAT_JAS:
        return list(session.users)
    out = []
    for p in session.processes:
        elapsed = "(%08f)" % elapsed_seconds(p.end_time, p.start_time)
        if process_name > " ":
            text = "Process - %d - %s %s" % (signed32(p.id), process_name, elapsed)
        else:
            text = "Process - %d %s" % (signed32(p.id), elapsed)
        out.append((text, ["Thread - %d (%08f)" % (signed32(t.id), elapsed_seconds(t.end_time, t.start_time))
                           for t in p.threads]))
    return out


def bsfn_rows(analysis):
    """name, calls, total, shortest, longest, average as shown."""
    rows = []
    for f in analysis.functions.values():
        calls = len(f.instances)
        average = f.total // calls if calls > 0 and f.total != 0 else 0
        rows.append((f.name, "%d" % calls) + tuple(
            "%08.6f" % micros_to_seconds(v) for v in (f.total, f.shortest, f.longest, average)))
    return rows


def long_task_rows(session, bsfn, sql):
    """owner, type, duration, message; longest first."""
    tasks = [("BSFN", r) for r in bsfn.long_tasks] + [("SQL", r) for r in sql.long_tasks]
    tasks.sort(key=lambda task: -task[1].duration)
    return [(owner_text(session, r), kind, "%08.6f" % r.duration, r.text) for kind, r in tasks]


def error_rows(session, errors):
    """owner, error type, message; each record above those before it."""
    rows = []
    for r in errors:
        if r.kind == RETURN:
            kind = "BSFN Warning" if r.return_code == 1 else "BSFN Error"
        else:
            kind = "GBR Error" if r.kind == ERROR else "ERROR"
        rows.insert(0, (owner_text(session, r), kind, r.text))
    return rows


# --------------------------------------------------------------------------------------------- report

def indices(records):
    return [record.index for record in records]


def sql_json(analysis):
    return {"tables": [{"table": plain(t.name), "selects": t.selects, "inserts": t.inserts,
                        "updates": t.updates, "deletes": t.deletes} for t in analysis.tables],
            "longTasks": indices(analysis.long_tasks)}


def bsfn_json(analysis):
    return {"functions": [
        {"name": plain(f.name), "location": f.location, "calls": len(f.instances), "total": f.total,
         "shortest": f.shortest, "longest": f.longest,
         "instances": [{"record": i.start.index, "level": i.level, "start": i.start_time,
                        "end": i.end_time, "duration": i.duration, "result": i.result}
                       for i in f.instances]}
        for f in analysis.functions.values()],
        "longTasks": indices(analysis.long_tasks)}


def cache_json(cache):
    return {"name": plain(cache.name), "handle": plain(cache.handle), "instance": plain(cache.instance),
            "process": cache.process, "instanceCount": cache.instance_count,
            "operations": [{"record": o.record.index, "op": o.op, "text": plain(o.text), "image": o.image}
                           for o in cache.operations],
            "cursors": [{"handle": plain(c.handle), "open": c.open.index,
                         "close": None if c.close is None else c.close.index} for c in cache.cursors]}


def record_json(r):
    return {"kind": r.kind, "returnCode": r.return_code, "month": plain(r.month), "day": r.day,
            "hour": r.hour, "minute": r.minute, "second": r.second, "microsecond": r.microsecond,
            "time": r.time, "process": r.process, "thread": r.thread, "label": plain(r.label),
            "text": plain(r.text), "name": plain(r.name), "table": plain(r.table),
            "sqlOperation": r.sql_operation, "level": plain(r.level), "user": plain(r.user),
            "source": plain(r.source), "duration": r.duration, "gap": r.gap, "ube": r.ube,
            "ubeLevel": r.ube_level}


def report_json(s):
    return {
        "log": s.path,
        "format": "jas" if s.log_format == FORMAT_JAS else "debug",
        "textColumn": s.text_column, "tabCount": s.tab_count, "dashForm": s.dash_form, "ube": s.ube_log,
        "records": [record_json(r) for r in s.details],
        "processes": [
            {"id": p.id, "startTime": p.start_time, "endTime": p.end_time, "errors": indices(p.errors),
             "sql": sql_json(p.sql), "bsfn": bsfn_json(p.bsfn),
             "caches": [cache_json(c) for c in p.cache.caches],
             "threads": [{"id": t.id, "startTime": t.start_time, "endTime": t.end_time,
                          "details": indices(t.details), "errors": indices(t.errors),
                          "sql": sql_json(t.sql), "bsfn": bsfn_json(t.bsfn)} for t in p.threads]}
            for p in s.processes],
        "users": [{"name": plain(u.name), "details": indices(u.details), "errors": indices(u.errors),
                   "sql": sql_json(u.sql), "bsfn": bsfn_json(u.bsfn)} for u in s.users.values()],
        "gaps": indices(s.gaps)}


def extension_of(path):
    return os.path.splitext("x" + os.path.basename(path))[1][1:]


def seconds(text):
    value = float(text)
    if not 0 <= value < float("inf"):
        raise argparse.ArgumentTypeError("must be 0 or more")
    return value


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--json", action="store_true")
    mode = parser.add_mutually_exclusive_group()
    mode.add_argument("--tree", metavar="SCOPE")
    mode.add_argument("--find", metavar="TEXT")
    mode.add_argument("--export-gaps", metavar="FILE")
    parser.add_argument("--threshold", type=seconds, default=1.0)
    parser.add_argument("--process", type=int, default=0)
    parser.add_argument("--no-cache-analysis", action="store_true")
    parser.add_argument("log")
    options = parser.parse_args()
    session = Session(options.threshold, options.process % U32, not options.no_cache_analysis)
    try:
        session.load(options.log)
        if options.export_gaps is not None:
            text = session.export_gaps(extension_of(options.export_gaps))
            with open(options.export_gaps, "w", encoding="utf-8", newline="") as stream:
                stream.write(text)
            return 0
        if options.tree is not None:
            result = tree_json(session, options.tree)
        elif options.find is not None:
            result = {"hits": session.find(options.find)}
        else:
            result = report_json(session)
    except LogError as error:
        print(error, file=sys.stderr)
        return 1
    json.dump(result, sys.stdout, ensure_ascii=False)
    sys.stdout.write("\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
