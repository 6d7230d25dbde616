#!/usr/bin/env python3
"""A second, independent reading of the rules by which a log is explored, over the records of carvelot_model.py.

It finds where the time of a log went: the clock of its records, what each thread or user had open, the profile of
a scope, the shapes of its statements, what is worth a look, and what differs from another log. Every rule is a
function that bears its name. No walk grows with more than the log times a logarithm, none recurses over depth.

`Explored.fired` counts how often each of RULES decided something, so that a test can tell whether it saw them all.
"""

import argparse
import bisect
import collections
import decimal
import json
import re
import sys

import carvelot_model as model

MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
MONTH_DAYS = [31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31]
DAY = 86400000000
TEN_MINUTES = 600000000
RUN_PAUSE = 1000000  # between two executions of one run
REPEATED = 10
FIRST_RECORDS = 100
FOLDED_DEPTH = 500

# In the order in which the classifier looks for them.
OPERATION_WORDS = ["SELECT", "UPDATE", "INSERT", "DELETE", "ALTER", "DROP", "CREATE"]
SIGN_WORDS = ["AND", "BETWEEN", "THEN", "ELSE", "LIKE", "SELECT"]
BEGIN = "Entering JDB_BeginTransaction"
ROLLBACK = "Entering JDB_RollbackUser"

FUNCTION, EVENT, STATEMENT, OBJECT = "function", "event", "statement", "object"
TOP = "(top)"
NO_NAME = "(no name)"
NO_TIME, NO_MONTH, FILTERED = "third word no time", "second word no month", "filtered"
SEVERITIES = {"repeated-statement": "warning", "cache-not-terminated": "warning", "cursor-not-closed": "note",
              "call-without-return": "warning", "orphan-return": "note", "first-cause": "error",
              "silence-in-call": "note", "rolled-back": "error", "unread-lines": "note"}

RULES = [
    "unstamped: month", "unstamped: day", "unstamped: time", "leap year", "year wraps forward", "year wraps back",
    "stray", "stray first", "stray last", "clock set back", "small step back", "ahead of the first stamp",
    "stream time passes over a step back",
    "call without a name", "return without a name", "call ends calls of its level", "call of no level",
    "return closes", "return closes over others", "return of no level closes", "orphan return", "failed", "warned",
    "event by display name", "event by cut text", "event by whole text", "event end closes", "event end of nothing",
    "statement closed", "statement left by another record", "statement at the end", "statement without a table",
    "statement of a driver", "object closed", "object at the end", "open at the end",
    "shape: ahead cut", "shape: white space", "shape: literal", "shape: doubled quote", "shape: unterminated literal",
    "shape: number", "shape: sign", "shape: exponent", "shape: number of a name stays", "shape: mark with digits",
    "shape: list",
    "repeated below a frame", "repeated through children", "repeated at the top", "share too small", "run too short",
    "pause ends a run", "cache not terminated", "cache terminated", "cursor not closed", "cursor of an ended cache",
    "call without return", "cause is a return", "cause is another record", "failed below a failed call",
    "silence in a call", "silence outside of calls", "rolled back with a cause", "rolled back without a cause",
    "rolled back in a call", "trouble ahead of a transaction", "own trouble of a transaction",
    "unread: no time", "unread: no month", "unread: filtered", "cut line"]


# ------------------------------------------------------------------------------------------------ texts

def code_points(text):
    """The text with surrogate pairs joined, so that it orders by code point."""
    return text if text.isascii() else text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "surrogatepass")


def key_order(key):
    """Where a key of kind and name stands among others: none first, then by kind and name."""
    return ("", "") if key is None else (key[0], code_points(key[1]))


# ------------------------------------------------------------------------------------------------ lines

def numbered_lines(data):
    """(number, bytes) of each line as the reader cuts them; the number is the one that an editor shows, from 1.

    A line feed, a carriage return or both in this order end one line of an editor.
    """
    out = []
    number = 1
    pieces = re.split(b"(\r\n|\r|\n)", data)
    for at in range(0, len(pieces), 2):
        piece = pieces[at]
        while len(piece) >= model.LINE_BYTES:
            out.append((number, piece[:model.LINE_BYTES]))
            piece = piece[model.LINE_BYTES:]
        if at + 1 < len(pieces):
            out.append((number, piece))
            if pieces[at + 1] == b"\r\n":
                out.append((number, b""))
            number += 1
    return out, number - 1


def third_word_is_no_time(line):
    tokens = model.Tokens(line)
    word = None
    for _ in range(3):
        word = tokens.next(" \t")
    return word is not None and len(model.scan(word, "::.")) < 4 and len(model.scan(word, "::")) < 3


def second_word_is_no_month(line):
    tokens = model.Tokens(line)
    tokens.next(" ")
    word = tokens.next(" \t")
    return word is not None and word not in model.MONTHS


class ExploredSession(model.Session):
    """A session that also counts its lines and knows on which line each record stands."""

    def load_bytes(self, data):
        lines, total = numbered_lines(data)
        self.lines = {"total": total, "words": 0, "records": 0, "noTime": 0, "noMonth": 0, "filtered": 0}
        self.line_of = []
        self.cut_lines = sum(1 for (_, piece) in lines if len(piece) == model.LINE_BYTES)
        self.numbers = iter(lines)
        super().load_bytes(data)

    def parse_debug(self, raw):
        self.count(raw, super().parse_debug, " \t", "noTime", third_word_is_no_time)

    def parse_jas(self, raw):
        self.count(raw, super().parse_jas, " ", "noMonth", second_word_is_no_month)

    def count(self, raw, parse, delimiters, reason, is_reason):
        number = next(self.numbers)[0]
        parse(raw)
        line = model.wide(raw)
        if len(self.details) > len(self.line_of):
            self.line_of.append(number)
            self.lines["records"] += 1
        elif model.Tokens(line).next(delimiters) is None:
            return
        else:
            self.lines[reason if is_reason(line) else "filtered"] += 1
        self.lines["words"] += 1


# ------------------------------------------------------------------------------------------------ clock

def is_stamped(record, fired):
    if record.month not in MONTHS:
        fired["unstamped: month"] += 1
        return False
    month = MONTHS.index(record.month)
    if not 1 <= record.day <= (29 if month == 1 else MONTH_DAYS[month]):
        fired["unstamped: day"] += 1
        return False
    if record.time >= DAY:
        fired["unstamped: time"] += 1
        return False
    return True


class Year:
    """The year that all stamps of a log are taken for."""

    def __init__(self, stamped, fired):
        self.fired = fired
        self.leap = any(record.month == "Feb" and record.day == 29 for record in stamped)
        self.days = 366 if self.leap else 365
        if self.leap:
            fired["leap year"] += 1

    def day_number(self, record):
        month = MONTHS.index(record.month)
        leap_day = 1 if self.leap and month > 1 else 0
        return sum(MONTH_DAYS[:month]) + leap_day + record.day - 1

    def distance(self, earlier, later):
        """From one stamped record to another in microseconds, the short way round the year."""
        days = self.day_number(later) - self.day_number(earlier)
        if 2 * days > self.days:
            days -= self.days
            self.fired["year wraps back"] += 1
        elif 2 * days <= -self.days:
            days += self.days
            self.fired["year wraps forward"] += 1
        return days * DAY + later.time - earlier.time


def without_strays(stamped, year, fired):
    """The stamped records of one piece that are not stray."""
    kept = []
    for at, record in enumerate(stamped):
        if is_stray(stamped, at, kept[-1] if kept else None, year, fired):
            continue
        kept.append(record)
    return kept


def is_stray(stamped, at, before, year, fired):
    """`before` is the last stamped record ahead that is not stray."""
    record = stamped[at]
    if at == 0:
        if len(stamped) >= 3 and abs(year.distance(record, stamped[1])) > DAY \
                and abs(year.distance(stamped[1], stamped[2])) <= TEN_MINUTES:
            fired["stray first"] += 1
            return True
        return False
    if before is None:
        return False
    away = abs(year.distance(before, record))
    if away > TEN_MINUTES:
        if any(abs(year.distance(before, later)) <= TEN_MINUTES for later in stamped[at + 1:at + 4]):
            fired["stray"] += 1
            return True
    if at == len(stamped) - 1 and len(stamped) >= 3 and away > DAY:
        fired["stray last"] += 1
        return True
    return False


def clocks(records, pieces=(0,), fired=None):
    """(clock of each record, the record at which the clock starts or None). `pieces` are the places in the records
    at which a piece of the log begins.

    A later piece starts as far from the first one's start as its own first stamp, also backwards. Where the first
    pieces hold no stamp at all, the first one that does is the one that the others are measured from.
    """
    fired = collections.Counter() if fired is None else fired
    stamped = [record for record in records if is_stamped(record, fired)]
    year = Year(stamped, fired)
    of_piece = [[] for _ in pieces]
    for record in stamped:
        of_piece[bisect.bisect_right(pieces, record.index) - 1].append(record)
    origin = None
    at_record = {}
    for piece in of_piece:
        last = None
        for record in without_strays(piece, year, fired):
            if last is None:
                if origin is None:
                    origin = record
                    at_record[record.index] = 0
                else:
                    at_record[record.index] = year.distance(origin, record)
            else:
                step = year.distance(last, record)
                if step < -TEN_MINUTES:
                    fired["clock set back"] += 1
                    step = 0
                elif step < 0:
                    fired["small step back"] += 1
                at_record[record.index] = at_record[last.index] + step
            last = record
    out = []
    starts = set(pieces)
    clock = 0
    seen = False
    for record in records:
        if record.index in starts:
            clock = 0
            seen = False
        if record.index in at_record:
            clock = at_record[record.index]
            seen = True
        elif not seen:
            fired["ahead of the first stamp"] += 1
        out.append(clock)
    return out, None if origin is None else origin.index


# ------------------------------------------------------------------------------------------------ names

def call_name(text):
    at = text.find("Calling Business function")
    end = text.find(" ", at + 26) if at >= 0 else -1
    return text[at + 26:end] if end >= 0 else ""


def return_name(text):
    at = text.find("for ")
    end = text.find(" ", at + 4) if at >= 0 else -1
    return text[at + 4:end].rstrip(".") if end >= 0 else ""


def call_level(text):
    at = text.find("BSFNLevel = ")
    if at < 0:
        return 0
    end = text.find(")", at + 12)
    return model.wtoi(text[at + 12:end] if end >= 0 else text[at + 12:])


def object_name(text):
    if "Object Called:" not in text:
        return ""
    name = text[15:]
    return name[name.find(".") + 1:]


def event_name(record, fired):
    """A blank is the character 32 alone here, no tab."""
    if record.name != "":
        fired["event by display name"] += 1
        return record.name
    text = record.text
    at = text.find("Event Starts :")
    if at < 0:
        fired["event by whole text"] += 1
        return text
    fired["event by cut text"] += 1
    ahead = text[:at].rstrip(" ,")
    behind = text[at + len("Event Starts :"):].lstrip(" ")
    return ahead + " " + behind if ahead and behind else ahead + behind


def operation_word(text):
    """(operation word, its place) of a statement."""
    for word in OPERATION_WORDS:
        if text.startswith(word):
            return word, 0
    if text.startswith("[JDBOLEDB]"):
        for word in OPERATION_WORDS:
            at = text.find(word, text.find(" "))
            if at >= 0:
                return word, at
    return "", 0


def statement_name(record):
    word = operation_word(record.text)[0]
    return word + " " + record.table if record.table else word


# ----------------------------------------------------------------------------------------------- frames

class Frame:
    def __init__(self, kind, name, record, stream, place, parent, start, level=0):
        self.kind = kind
        self.name = name
        self.record = record
        self.stream = stream
        self.place = place  # of its record in the stream
        self.parent = parent
        self.start = self.end = start
        self.level = level
        self.closed = False
        self.result = None
        self.end_place = None  # of the record that closed it
        self.index = -1
        self.below = 0  # total of its children
        self.shape = None

    @property
    def key(self):
        return self.kind, self.name

    @property
    def total(self):
        return self.end - self.start

    @property
    def self_time(self):
        return self.total - self.below

    @property
    def failed(self):
        return self.result is not None and self.result >= 2

    @property
    def warned(self):
        return self.result == 1


class OpenFrames:
    """The stack of a stream, which answers who is open without a walk through it."""

    def __init__(self):
        self.frames = []
        self.functions = []
        self.events = []
        self.peaks = []  # the highest level among the open functions up to each of them
        self.named = collections.defaultdict(list)

    def top(self):
        return self.frames[-1] if self.frames else None

    def innermost_function(self):
        return self.functions[-1] if self.functions else None

    def innermost_event(self):
        return self.events[-1] if self.events else None

    def open(self, frame):
        frame.depth = len(self.frames)
        self.frames.append(frame)
        if frame.kind == FUNCTION:
            self.functions.append(frame)
            self.peaks.append(max(frame.level, self.peaks[-1]) if self.peaks else frame.level)
            self.named[frame.name].append(frame)
            self.named[frame.name, frame.level].append(frame)
        else:
            self.events.append(frame)

    def outermost_of_level(self, level):
        """The function nearest to the bottom that has this level or a higher one."""
        at = bisect.bisect_left(self.peaks, level)
        return self.functions[at] if at < len(self.functions) else None

    def innermost_named(self, name, level):
        found = self.named.get(name if level == 0 else (name, level))
        return found[-1] if found else None

    def end_from(self, frame, now):
        """Ends a frame and every one above it; returns how many stood above it."""
        ended = 0
        while len(self.frames) > frame.depth:
            top = self.frames.pop()
            top.end = now
            ended += 1
            if top.kind == FUNCTION:
                self.functions.pop()
                self.peaks.pop()
                self.named[top.name].pop()
                self.named[top.name, top.level].pop()
            else:
                self.events.pop()
        return ended - 1


class Stream:
    def __init__(self, name):
        self.name = name
        self.process = self.thread = 0
        self.records = []
        self.times = []
        self.frames = []
        self.troubles = []  # places of records that tell of a failure


def is_trouble(record):
    return record.kind in (model.ERROR, model.JDB_ERROR, model.SEVERE) or record.return_code >= 2


def stream_key(session, record):
    if session.log_format == model.FORMAT_JAS:
        return record.user
    return record.process, record.thread


def streams_of(session):
    """The streams in the order of their first records."""
    streams = {}
    for record in session.details:
        key = stream_key(session, record)
        if key not in streams:
            jas = session.log_format == model.FORMAT_JAS
            streams[key] = Stream("user:" + key if jas else "thread:%d/%d" % key)
            if not jas:
                streams[key].process, streams[key].thread = key
        streams[key].records.append(record)
    return streams


class StreamWalk:
    """One pass over a stream that makes its frames and finds what is told by their order."""

    def __init__(self, explored, stream):
        self.explored = explored
        self.fired = explored.fired
        self.jas = explored.session.log_format == model.FORMAT_JAS
        self.stream = stream
        self.open = OpenFrames()
        self.childless = None  # the statement or object call that awaits its end
        self.trouble = None  # the last one since a transaction began or was rolled back
        self.place = 0
        self.now = 0
        self.record = None

    def run(self):
        stream = self.stream
        stream.times = stream_times(stream, self.explored.clock, self.fired)
        for self.place, self.record in enumerate(stream.records):
            if self.place > 0:
                self.silence(stream.times[self.place] - self.now)
            self.now = stream.times[self.place]
            self.end_childless()
            self.rollback()
            self.frame_of_record()
            if is_trouble(self.record):
                stream.troubles.append(self.place)
        if self.childless is not None:
            self.fired["%s at the end" % self.childless.kind] += 1
        if self.open.frames:
            self.fired["open at the end"] += 1
            self.open.end_from(self.open.frames[0], self.now)

    # ---- frames

    def start(self, kind, name, level=0):
        frame = Frame(kind, name, self.record, self.stream, self.place, self.open.top(), self.now, level)
        self.stream.frames.append(frame)
        return frame

    def close(self, frame, result=None):
        above = self.open.end_from(frame, self.now)
        frame.closed = True
        frame.result = result
        frame.end_place = self.place
        return above

    def end_childless(self):
        """A debug log says when a statement is done; a web log's statement or object call lasts until its user's
        next line."""
        frame = self.childless
        if frame is None:
            return
        if self.jas or self.record.kind == model.SQL_DONE:
            frame.end = self.now
            frame.closed = True
            self.fired["%s closed" % frame.kind] += 1
            self.childless = None
        elif self.record.kind in (model.SQL, model.CALL, model.RETURN, model.EVENT_START, model.EVENT_END):
            self.fired["statement left by another record"] += 1
            self.childless = None

    def frame_of_record(self):
        kind = self.record.kind
        if kind == model.CALL:
            self.call()
        elif kind == model.RETURN:
            self.returned()
        elif kind == model.EVENT_START:
            self.open.open(self.start(EVENT, event_name(self.record, self.fired)))
        elif kind == model.EVENT_END:
            self.event_end()
        elif kind == model.SQL:
            self.childless = self.start(STATEMENT, statement_name(self.record))
            self.childless.shape = self.explored.shape_of(self.record.text)
            self.fired["statement without a table"] += not self.record.table
            self.fired["statement of a driver"] += self.record.text.startswith("[")
        elif kind == model.OBJECT_CALL:
            self.childless = self.start(OBJECT, object_name(self.record.text))

    def call(self):
        name = call_name(self.record.text)
        level = call_level(self.record.text)
        if not name:
            self.fired["call without a name"] += 1
            return
        if level > 0:
            ended = self.open.outermost_of_level(level)
            if ended is not None:
                self.fired["call ends calls of its level"] += 1
                self.open.end_from(ended, self.now)
        else:
            self.fired["call of no level"] += 1
        self.open.open(self.start(FUNCTION, name, level))

    def returned(self):
        name = return_name(self.record.text)
        level = call_level(self.record.text)
        if not name:
            self.fired["return without a name"] += 1
            return
        frame = self.open.innermost_named(name, level)
        if frame is None:
            self.fired["orphan return"] += 1
            self.explored.orphans.append((name, self.record))
            return
        above = self.close(frame, self.record.return_code)
        self.fired["return closes over others" if above else "return closes"] += 1
        self.fired["return of no level closes"] += level == 0
        self.fired["failed"] += frame.failed
        self.fired["warned"] += frame.warned

    def event_end(self):
        frame = self.open.innermost_event()
        if frame is None:
            self.fired["event end of nothing"] += 1
            return
        self.fired["event end closes"] += 1
        self.close(frame)

    # ---- what the order tells

    def silence(self, step):
        if not model.micros_to_seconds(step) > self.explored.session.threshold:
            return
        frame = self.open.innermost_function()
        if frame is None:
            self.fired["silence outside of calls"] += 1
            return
        self.fired["silence in a call"] += 1
        self.explored.silences.append((frame, self.record, step))

    def rollback(self):
        """A record that begins or rolls back a transaction is never the trouble of a later rollback."""
        text = self.record.text
        if ROLLBACK in text:
            frame = self.open.innermost_function()
            self.fired["rolled back with a cause" if self.trouble else "rolled back without a cause"] += 1
            self.fired["rolled back in a call"] += frame is not None
            self.explored.rollbacks.append((frame, self.trouble, self.record))
        if ROLLBACK in text or BEGIN in text:
            self.fired["own trouble of a transaction"] += is_trouble(self.record)
            self.fired["trouble ahead of a transaction"] += self.trouble is not None
            self.trouble = None
        elif is_trouble(self.record):
            self.trouble = self.record


def stream_times(stream, clock, fired):
    """The largest clock so far, at each record."""
    times = []
    for record in stream.records:
        now = clock[record.index]
        if times and now < times[-1]:
            fired["stream time passes over a step back"] += 1
            now = times[-1]
        times.append(now)
    return times


# ----------------------------------------------------------------------------------------------- shapes

def is_digit(ch):
    return ch in "0123456789"


def is_name_character(ch):
    """What joins a number to a name: a letter, a digit or one of four signs."""
    return "A" <= ch <= "Z" or "a" <= ch <= "z" or ord(ch) > 127 or is_digit(ch) or ch in "_#$@"


def literals_as_marks(text, fired):
    out = []
    at = 0
    while True:
        quote = text.find("'", at)
        if quote < 0:
            out.append(text[at:])
            return "".join(out)
        out.append(text[at:quote] + "?")
        fired["shape: literal"] += 1
        end = quote + 1
        while True:
            end = text.find("'", end)
            if end < 0:
                fired["shape: unterminated literal"] += 1
                return "".join(out)
            if text[end + 1:end + 2] != "'":
                break
            fired["shape: doubled quote"] += 1
            end += 2
        at = end + 1


def one_blank_for_white_space(text, fired):
    out = re.sub("[ \t\n\v\f\r]+", " ", text).strip(" ")
    fired["shape: white space"] += out != text
    return out


NUMBER = re.compile(r"(?:[0-9]+(?:\.[0-9]+)?|\.[0-9]+)(?:[eE][+-]?[0-9]+)?")


def sign_belongs(text, at):
    """Whether the sign at this place is a number's own and no operator.

    One of the words stands alone: no character of a name right ahead of it.
    """
    end = at
    while end > 0 and text[end - 1] == " ":
        end -= 1
    if end > 0 and text[end - 1] in "(,=<>":
        return True
    for word in SIGN_WORDS:
        begin = end - len(word)
        if begin >= 0 and text.startswith(word, begin) and (begin == 0 or not is_name_character(text[begin - 1])):
            return True
    return False


def number_end(text, at, fired):
    """Where the number that begins here, with its sign, ends; None when none begins here that becomes a mark.

    A number is as long as it can be and is taken whole or not at all; a dot that no digit follows is no fraction.
    Its own sign is the beginning of it, so what stands ahead of the number then stands ahead of the sign.
    """
    digits = at
    if text[at] in "+-":
        if not sign_belongs(text, at):
            return None
        digits += 1
    elif at > 0 and text[at - 1] in "+-" and sign_belongs(text, at - 1):
        return None
    if digits == len(text) or not (is_digit(text[digits]) or text[digits] == "."):
        return None
    if at > 0 and (is_name_character(text[at - 1]) or text[at - 1] == "."):
        fired["shape: number of a name stays"] += is_digit(text[digits])
        return None
    number = NUMBER.match(text, digits)
    if number is None:
        return None
    end = number.end()
    if end < len(text) and is_name_character(text[end]):
        fired["shape: number of a name stays"] += 1
        return None
    fired["shape: number"] += 1
    fired["shape: sign"] += digits > at
    fired["shape: exponent"] += "e" in number.group() or "E" in number.group()
    return end


def numbers_as_marks(text, fired):
    """From left to right; behind a place where no number begins the next character is tried."""
    out = []
    at = 0
    while at < len(text):
        if text[at] == "?":
            out.append("?")
            at += 1
            while at < len(text) and is_digit(text[at]):
                fired["shape: mark with digits"] += 1
                at += 1
            continue
        end = number_end(text, at, fired) if text[at] in "+-.0123456789" else None
        out.append(text[at] if end is None else "?")
        at = at + 1 if end is None else end
    return "".join(out)


def lists_as_one_mark(text, fired):
    out, count = re.subn(r"\?(?: *, *\?)+", "?, ...", text)
    fired["shape: list"] += count
    return out


def statement_shape(text, fired=None):
    """The text with its values replaced, the same for all statements that differ in values alone."""
    fired = collections.Counter() if fired is None else fired
    at = operation_word(text)[1]
    fired["shape: ahead cut"] += at > 0
    text = literals_as_marks(text[at:], fired)
    text = one_blank_for_white_space(text, fired)
    text = numbers_as_marks(text, fired)
    return lists_as_one_mark(text, fired)


# --------------------------------------------------------------------------------------------- explored

class Finding:
    def __init__(self, rule, subject, count, cost, records, group=None):
        self.rule = rule
        self.severity = SEVERITIES[rule]
        self.subject = subject
        self.count = count
        self.cost = cost
        self.records = records[:FIRST_RECORDS]
        self.group = subject if group is None else group  # what two logs are joined by

    def order(self):
        rank = ["error", "warning", "note"].index(self.severity)
        return rank, -self.cost, -self.count, code_points(self.subject), self.rule, self.records


class Explored:
    """All that is found in one loaded session."""

    def __init__(self, session, pieces=(0,)):
        self.session = session
        self.fired = collections.Counter()
        self.clock, self.first_record = clocks(session.details, pieces, self.fired)
        self.length = max(self.clock, default=0)
        self.orphans = []
        self.silences = []
        self.rollbacks = []
        self.shapes = {}
        self.streams = streams_of(session)
        for stream in self.streams.values():
            StreamWalk(self, stream).run()
        self.frames = sorted((frame for stream in self.streams.values() for frame in stream.frames),
                             key=lambda frame: frame.record.index)
        for index, frame in enumerate(self.frames):
            frame.index = index
            if frame.parent is not None:
                frame.parent.below += frame.total
        self.findings = sorted(all_findings(self), key=Finding.order)

    def shape_of(self, text):
        if text not in self.shapes:
            self.shapes[text] = statement_shape(text, self.fired)
        return self.shapes[text]

    def scope_streams(self, scope):
        """The streams of a scope, all without one; None when the session doesn't hold it."""
        if scope is None:
            return list(self.streams.values())
        found = model.scope_records(self.session, scope)
        if found is None:
            return None
        if self.session.log_format == model.FORMAT_JAS:
            return [self.streams[model.units(scope.partition(":")[2])]]
        keys = {stream_key(self.session, record) for records in found[1] for record in records}
        return [stream for key, stream in self.streams.items() if key in keys]


# --------------------------------------------------------------------------------------------- findings

def all_findings(explored):
    return (repeated_statements(explored) + caches_not_terminated(explored) + cursors_not_closed(explored)
            + calls_without_return(explored) + orphan_returns(explored) + first_causes(explored)
            + silences_in_calls(explored) + rolled_back(explored) + unread_lines(explored))


def indices(records):
    return [record.index for record in records]


def executions_of(frames):
    """count, cost and records of statement frames."""
    frames = sorted(frames, key=lambda frame: frame.index)
    return len(frames), sum(frame.total for frame in frames), [frame.record.index for frame in frames]


class ShapeCounts:
    """How often each shape runs below any frame of a stream. The frames of a stream stand as they opened, so
    what is below one of them is a stretch of them behind it."""

    def __init__(self, frames):
        self.place = {frame: at for at, frame in enumerate(frames)}
        self.last = list(range(len(frames)))
        for at in range(len(frames) - 1, -1, -1):
            parent = frames[at].parent
            if parent is not None:
                above = self.place[parent]
                self.last[above] = max(self.last[above], self.last[at])
        self.places = collections.defaultdict(list)
        for at, frame in enumerate(frames):
            if frame.shape is not None:
                self.places[frame.shape].append(at)

    def below(self, frame, shape):
        at = self.place[frame]
        places = self.places[shape]
        return bisect.bisect_right(places, self.last[at]) - bisect.bisect_right(places, at)


def paths(frames):
    """(frame, the frames that it stands in, outermost first) of a stream's frames; the list is one and the same."""
    path = []
    for frame in frames:
        while path and path[-1] is not frame.parent:
            path.pop()
        yield frame, path
        path.append(frame)


def shares(frames):
    """{(frame, shape): its share}, only those that hold enough executions below them.

    Going up from an execution, the first frame with ten or more of the shape below it is the one whose share it is
    of: all between hold fewer, and none above can count it, as the frame below them holds too many.
    """
    counts = ShapeCounts(frames)
    out = collections.defaultdict(list)
    for frame, path in paths(frames):
        if frame.shape is None or len(counts.places[frame.shape]) < REPEATED:
            continue
        # Those with enough below them come first on the path.
        low, high = 0, len(path)
        while low < high:
            middle = (low + high) // 2
            if counts.below(path[middle], frame.shape) >= REPEATED:
                low = middle + 1
            else:
                high = middle
        if low > 0:
            out[path[low - 1], frame.shape].append(frame)
    return out


def runs(frames, fired):
    """The runs of executions of one shape in one stream that follow each other closely, long enough ones alone."""
    out = []
    run = []
    for frame in frames + [None]:
        if frame is not None and run and frame.start - run[-1].end <= RUN_PAUSE:
            run.append(frame)
            continue
        if len(run) >= REPEATED:
            out.append(run)
            fired["pause ends a run"] += frame is not None
        elif run:
            fired["run too short"] += 1
        run = [frame]
    return out


def repeated_statements(explored):
    fired = explored.fired
    of_key = collections.defaultdict(list)
    of_top = collections.defaultdict(list)
    for stream in explored.streams.values():
        counted = set()
        for (frame, shape), share in shares(stream.frames).items():
            if len(share) < REPEATED:
                fired["share too small"] += 1
                continue
            fired["repeated below a frame"] += 1
            fired["repeated through children"] += any(run.parent is not frame for run in share)
            counted.update(share)
            of_key[frame.key, shape] += share
        others = collections.defaultdict(list)
        for frame in stream.frames:
            if frame.shape is not None and frame not in counted:
                others[frame.shape].append(frame)
        for shape, frames in others.items():
            for run in runs(frames, fired):
                fired["repeated at the top"] += 1
                of_top[shape] += run
    return [Finding("repeated-statement", key[1] + " > " + shape, *executions_of(frames))
            for (key, shape), frames in of_key.items()] \
        + [Finding("repeated-statement", TOP + " > " + shape, *executions_of(frames))
           for shape, frames in of_top.items()]


def caches_of(explored):
    return [cache for process in explored.session.processes for cache in process.cache.caches]


def is_terminated(cache):
    return any(operation.op in (9, 10) for operation in cache.operations)


def caches_not_terminated(explored):
    out = []
    for cache in caches_of(explored):
        made = [operation.record for operation in cache.operations if operation.op == 1]
        if is_terminated(cache):
            explored.fired["cache terminated"] += 1
        elif made:
            explored.fired["cache not terminated"] += 1
            out.append(Finding("cache-not-terminated", cache.name + " " + cache.handle, 1, 0, indices(made), cache.name))
    return out


def cursors_not_closed(explored):
    out = []
    for cache in caches_of(explored):
        for cursor in cache.cursors:
            if cursor.close is not None:
                continue
            if is_terminated(cache):
                explored.fired["cursor of an ended cache"] += 1
                continue
            explored.fired["cursor not closed"] += 1
            out.append(Finding("cursor-not-closed", cursor.handle, 1, 0, [cursor.open.index], cache.name))
    return out


def by_name(frames):
    out = collections.defaultdict(list)
    for frame in frames:
        out[frame.name].append(frame)
    return out.items()


def calls_without_return(explored):
    explored.fired["call without return"] += any(f.kind == FUNCTION and not f.closed for f in explored.frames)
    return [Finding("call-without-return", name, *executions_of(frames))
            for name, frames in by_name(f for f in explored.frames if f.kind == FUNCTION and not f.closed)]


def orphan_returns(explored):
    names = collections.defaultdict(list)
    for name, record in explored.orphans:
        names[name].append(record.index)
    return [Finding("orphan-return", name, len(records), 0, sorted(records)) for name, records in names.items()]


def first_causes(explored):
    """The pairs stand in the order of the calls."""
    below_failed = set()
    outermost = []
    for frame in explored.frames:
        if frame.parent is not None and (frame.parent.failed or frame.parent in below_failed):
            below_failed.add(frame)
            explored.fired["failed below a failed call"] += frame.failed
        elif frame.failed:
            outermost.append(frame)
    out = []
    for name, frames in by_name(outermost):
        records = []
        for frame in frames:
            troubles = frame.stream.troubles
            place = troubles[bisect.bisect_right(troubles, frame.place)]
            explored.fired["cause is a return" if place == frame.end_place else "cause is another record"] += 1
            records += [frame.stream.records[place].index, frame.record.index]
        out.append(Finding("first-cause", name, len(frames), sum(frame.total for frame in frames), records))
    return out


def silences_in_calls(explored):
    names = collections.defaultdict(list)
    for frame, record, step in explored.silences:
        names[frame.name].append((record.index, step))
    return [Finding("silence-in-call", name, len(found), sum(step for _, step in found),
                    sorted(record for record, _ in found)) for name, found in names.items()]


def rolled_back(explored):
    return [Finding("rolled-back", "" if frame is None else frame.name, 1, 0,
                    ([] if trouble is None else [trouble.index]) + [record.index])
            for frame, trouble, record in explored.rollbacks]


def unread_lines(explored):
    lines = explored.session.lines
    explored.fired["unread: no time"] += lines["noTime"]
    explored.fired["unread: no month"] += lines["noMonth"]
    explored.fired["unread: filtered"] += lines["filtered"]
    explored.fired["cut line"] += explored.session.cut_lines
    return [Finding("unread-lines", reason, lines[field], 0, [])
            for reason, field in ((NO_TIME, "noTime"), (NO_MONTH, "noMonth"), (FILTERED, "filtered"))
            if lines[field] > 0]


# ---------------------------------------------------------------------------------------------- profile

def percentile(ordered, percent):
    """The ceil(percent * n / 100)-th smallest."""
    return ordered[-(-percent * len(ordered) // 100) - 1]


class Profile:
    """The frames of some streams, cut to a range of the clock, and what they add up to."""

    def __init__(self, explored, streams=None, start=None, end=None):
        self.explored = explored
        self.start = start
        self.end = end
        self.streams = list(explored.streams.values()) if streams is None else streams
        chosen = set(self.streams)
        kept = [frame.stream in chosen and self.in_range(frame) for frame in explored.frames]
        for frame in reversed(explored.frames):
            if kept[frame.index] and frame.parent is not None:
                kept[frame.parent.index] = True
        self.frames = [frame for frame in explored.frames if kept[frame.index]]
        self.total = {frame: self.cut_end(frame) - self.cut_start(frame) for frame in self.frames}
        self.self_time = dict(self.total)
        for frame in self.frames:
            if frame.parent is not None:
                self.self_time[frame.parent] -= self.total[frame]
        self.outermost = self.outermost_of_key()

    def in_range(self, frame):
        start, end = self.start, self.end
        if start is not None and end is not None and end <= start:
            return False
        if end is not None and not frame.start < end:
            return False
        return start is None or frame.end > start or (frame.start == frame.end and frame.start >= start)

    def cut_start(self, frame):
        return frame.start if self.start is None else max(frame.start, self.start)

    def cut_end(self, frame):
        return frame.end if self.end is None else min(frame.end, self.end)

    def frames_of(self, stream):
        return [frame for frame in stream.frames if frame in self.total]

    def outermost_of_key(self):
        """The frames that stand in no other one of their key."""
        out = set()
        for stream in self.streams:
            path = []
            on_path = collections.Counter()
            for frame in self.frames_of(stream):
                while path and path[-1] is not frame.parent:
                    on_path[path.pop().key] -= 1
                if on_path[frame.key] == 0:
                    out.add(frame)
                path.append(frame)
                on_path[frame.key] += 1
        return out

    # ---- what it adds up to

    def functions(self):
        groups = collections.defaultdict(list)
        for frame in self.frames:
            groups[frame.key].append(frame)
        out = []
        for (kind, name), frames in groups.items():
            totals = sorted(self.total[frame] for frame in frames)
            out.append({"kind": kind, "name": name, "calls": len(frames),
                        "unclosed": sum(not frame.closed for frame in frames),
                        "failed": sum(frame.failed for frame in frames),
                        "warned": sum(frame.warned for frame in frames),
                        "total": sum(self.total[frame] for frame in frames if frame in self.outermost),
                        "self": sum(self.self_time[frame] for frame in frames),
                        "shortest": totals[0], "longest": totals[-1],
                        "p50": percentile(totals, 50), "p95": percentile(totals, 95)})
        return sorted(out, key=lambda row: (-row["total"], row["kind"], code_points(row["name"])))

    def edges(self):
        """[caller key or none, callee key, calls, total]"""
        groups = {}
        for frame in self.frames:
            caller = None if frame.parent is None else frame.parent.key
            edge = groups.setdefault((caller, frame.key), [caller, frame.key, 0, 0])
            edge[2] += 1
            edge[3] += self.total[frame]
        return sorted(groups.values(), key=lambda edge: (-edge[3], key_order(edge[0]), key_order(edge[1])))

    def tree(self):
        """The calls of all streams merged by key below their parents, in order of first appearance."""
        top = []
        nodes = {}
        node_of = {}
        for frame in self.frames:
            above = None if frame.parent is None else node_of[frame.parent]
            place = (None if above is None else id(above), frame.key)
            if place not in nodes:
                nodes[place] = {"kind": frame.kind, "name": model.plain(frame.name), "calls": 0, "total": 0, "self": 0,
                                "children": []}
                (top if above is None else above["children"]).append(nodes[place])
            node = node_of[frame] = nodes[place]
            node["calls"] += 1
            node["total"] += self.total[frame]
            node["self"] += self.self_time[frame]
        return top

    def shapes(self):
        groups = collections.defaultdict(list)
        for frame in self.frames:
            if frame.shape is not None:
                groups[frame.shape].append(frame)
        out = []
        for shape, frames in groups.items():
            totals = sorted(self.total[frame] for frame in frames)
            first = frames[0]
            callers = {}
            for frame in frames:
                caller = None if frame.parent is None else frame.parent.key
                callers[caller] = callers.get(caller, 0) + 1
            out.append({"shape": shape, "operation": operation_word(first.record.text)[0], "table": first.record.table,
                        "count": len(frames), "total": sum(totals), "longest": totals[-1],
                        "p95": percentile(totals, 95), "firstRecord": first.record.index,
                        "longestRecord": max(frames, key=lambda frame: self.total[frame]).record.index,
                        "topCaller": max(callers, key=callers.get)})
        return sorted(out, key=lambda row: (-row["total"], -row["count"], code_points(row["shape"])))


# ----------------------------------------------------------------------------------------------- output

def key_json(key):
    return None if key is None else {"kind": key[0], "name": model.plain(key[1])}


def frame_json(frame):
    return {"kind": frame.kind, "name": model.plain(frame.name), "record": frame.record.index,
            "stream": model.plain(frame.stream.name), "parent": None if frame.parent is None else frame.parent.index,
            "start": frame.start, "end": frame.end, "closed": frame.closed, "result": frame.result,
            "self": frame.self_time}


def finding_json(finding):
    """All but the sentence that says what it means."""
    return {"rule": finding.rule, "severity": finding.severity, "subject": model.plain(finding.subject),
            "count": finding.count, "cost": finding.cost, "records": finding.records}


def profile_of_scope(explored, scope, start, end):
    streams = explored.scope_streams(scope)
    if streams is None:
        raise model.LogError("No such scope: " + scope)
    return Profile(explored, streams, start, end)


def explore_json(explored, scope=None, start=None, end=None):
    session = explored.session
    profile = profile_of_scope(explored, scope, start, end)
    return {
        "log": session.path, "lines": dict(session.lines),
        "span": {"firstRecord": explored.first_record, "length": explored.length},
        "frames": [frame_json(frame) for frame in explored.frames],
        "functions": [dict(row, name=model.plain(row["name"])) for row in profile.functions()],
        "edges": [{"caller": key_json(caller), "callee": key_json(callee), "calls": calls, "total": total}
                  for caller, callee, calls, total in profile.edges()],
        "tree": profile.tree(),
        "shapes": [dict(row, shape=model.plain(row["shape"]), table=model.plain(row["table"]),
                        topCaller=key_json(row["topCaller"])) for row in profile.shapes()],
        "findings": [finding_json(finding) for finding in explored.findings]}


def joined(base, log, numbers):
    """{key: row} of two tables, each number with the base's value, the log's and what lies between."""
    out = {}
    for key in list(base) + [key for key in log if key not in base]:
        row = {"in": "both" if key in base and key in log else "base" if key in base else "log"}
        for number in numbers:
            ours = base[key][number] if key in base else 0
            theirs = log[key][number] if key in log else 0
            row[number] = {"base": ours, "log": theirs, "difference": theirs - ours}
        out[key] = row
    return out


def findings_by_group(explored):
    out = {}
    for finding in explored.findings:
        row = out.setdefault((finding.rule, finding.group), {"count": 0, "cost": 0})
        row["count"] += finding.count
        row["cost"] += finding.cost
    return out


FUNCTION_NUMBERS = ["calls", "unclosed", "failed", "warned", "total", "self", "shortest", "longest", "p50", "p95"]
SHAPE_NUMBERS = ["count", "total", "longest", "p95"]


def comparison_json(base, log, scope=None, start=None, end=None):
    """What differs from one log to another. A scope that neither of them has is none; findings are whole."""
    sides = []
    found = False
    for explored in (base, log):
        streams = explored.scope_streams(scope)
        found = found or streams is not None
        sides.append(Profile(explored, streams or [], start, end))
    if not found:
        raise model.LogError("No such scope: " + scope)
    functions = joined(*[{(row["kind"], row["name"]): row for row in side.functions()} for side in sides],
                       FUNCTION_NUMBERS)
    shapes = joined(*[{row["shape"]: row for row in side.shapes()} for side in sides], SHAPE_NUMBERS)
    findings = joined(findings_by_group(base), findings_by_group(log), ["count", "cost"])
    return {
        "base": base.session.path, "log": log.session.path,
        "functions": [dict({"kind": key[0], "name": model.plain(key[1])}, **row) for key, row in sorted(
            functions.items(), key=lambda item: (-abs(item[1]["total"]["difference"]), code_points(item[0][1]),
                                                 item[0][0]))],
        "shapes": [dict({"shape": model.plain(shape)}, **row) for shape, row in sorted(
            shapes.items(), key=lambda item: (-abs(item[1]["total"]["difference"]), code_points(item[0])))],
        "findings": [dict({"rule": key[0], "subject": model.plain(key[1])}, **row) for key, row in sorted(
            findings.items(), key=lambda item: (-abs(item[1]["cost"]["difference"]), code_points(item[0][1]),
                                                item[0][0]))]}


# ---------------------------------------------------------------------------------------------- exports

def shown_name(name):
    """A name as other tools are given it."""
    return model.plain(name) if name.strip(" ") else NO_NAME


def folded_paths(profile):
    """{path: self time} in order of first appearance, stream by stream. The stream is ahead of a path's frames and
    none of them."""
    out = {}
    for stream in profile.streams:
        top = model.plain(stream.name).replace(";", ":")
        path_of = {}
        for frame in profile.frames_of(stream):
            above, depth = path_of[frame.parent] if frame.parent is not None else (top, 0)
            if depth < FOLDED_DEPTH:
                above += ";" + shown_name(frame.name).replace(";", ":")
            path_of[frame] = above, depth + 1
            out[above] = out.get(above, 0) + profile.self_time[frame]
    return out


def folded_text(profile):
    return "".join("%s %d\n" % (path, self_time) for path, self_time in folded_paths(profile).items())


def stream_totals(profile):
    """{stream: {name: (total without what stands in another of the name, self)}}, as a reader that knows names
    alone shows an evented profile."""
    out = {}
    for stream in profile.streams:
        totals = collections.defaultdict(lambda: [0, 0])
        path = []
        on_path = collections.Counter()
        for frame in profile.frames_of(stream):
            while path and path[-1] is not frame.parent:
                on_path[shown_name(path.pop().name)] -= 1
            name = shown_name(frame.name)
            totals[name][0] += profile.total[frame] if on_path[name] == 0 else 0
            totals[name][1] += profile.self_time[frame]
            path.append(frame)
            on_path[name] += 1
        if totals:
            out[model.plain(stream.name)] = {name: tuple(pair) for name, pair in totals.items()}
    return out


def trace_events(profile):
    """(process, thread, name, start, duration, record, line) of each frame. A web log is process 1, whose users are
    threads from 1 on, in the order of their first records."""
    out = []
    number_of = {}
    for number, stream in enumerate(profile.explored.streams.values(), 1):
        jas = profile.explored.session.log_format == model.FORMAT_JAS
        number_of[stream] = (1, number) if jas else (stream.process, stream.thread)
    for frame in profile.frames:
        process, thread = number_of[frame.stream]
        out.append((process, thread, shown_name(frame.name), profile.cut_start(frame), profile.total[frame],
                    frame.record.index, profile.explored.session.line_of[frame.record.index]))
    return out


def callgrind_costs(profile):
    """({(kind, name): self}, {(caller, callee): (calls, inclusive)}), each key with the name as other tools get it.

    What nothing called is called by TOP, so that the calls of a function that is also called make up its total.
    """
    own = collections.defaultdict(int)
    calls = collections.defaultdict(lambda: [0, 0])
    for frame in profile.frames:
        key = frame.kind, shown_name(frame.name)
        own[key] += profile.self_time[frame]
        caller = (TOP, TOP) if frame.parent is None else (frame.parent.kind, shown_name(frame.parent.name))
        own[caller] += 0
        edge = calls[caller, key]
        edge[0] += 1
        edge[1] += profile.total[frame]
    return dict(own), {edge: tuple(pair) for edge, pair in calls.items()}


# ----------------------------------------------------------------------------------------------- program

def flat_tree(nodes):
    """[(depth, node without its children)] in the order in which an outline shows them."""
    out = []
    waiting = [(0, node) for node in reversed(nodes)]
    while waiting:
        depth, node = waiting.pop()
        out.append((depth, {key: value for key, value in node.items() if key != "children"}))
        waiting += [(depth + 1, child) for child in reversed(node["children"])]
    return out


def tree_text(nodes):
    """The JSON of a call tree of any depth."""
    out = []
    depth = -1
    for level, node in flat_tree(nodes):
        out.append("]}" * (depth - level + 1) + ("," if level <= depth else ""))
        out.append(json.dumps(node, ensure_ascii=False)[:-1] + ', "children": [')
        depth = level
    return "[" + "".join(out) + "]}" * (depth + 1) + "]"


def json_text(value):
    """The JSON of what was explored or compared."""
    return "{" + ", ".join('"%s": %s' % (key, tree_text(part) if key == "tree"
                                         else json.dumps(part, ensure_ascii=False)) for key, part in value.items()) + "}"


def clock_of_seconds(text):
    """Microseconds of a decimal number of seconds; digits behind the sixth place are cut off."""
    return int(decimal.Decimal(text) * 1000000)


def explore(path, threshold=1.0, process_filter=0, cache_analysis=True):
    session = ExploredSession(threshold, process_filter, cache_analysis)
    session.load(path)
    return Explored(session)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--scope")
    parser.add_argument("--from", dest="start", type=clock_of_seconds)
    parser.add_argument("--to", dest="end", type=clock_of_seconds)
    parser.add_argument("--compare", metavar="BASE")
    parser.add_argument("--folded", action="store_true")
    parser.add_argument("--threshold", type=model.seconds, default=1.0)
    parser.add_argument("--process", type=int, default=0)
    parser.add_argument("--no-cache-analysis", action="store_true")
    parser.add_argument("log")
    options = parser.parse_args()
    loading = options.threshold, options.process % model.U32, not options.no_cache_analysis
    where = options.scope, options.start, options.end
    try:
        explored = explore(options.log, *loading)
        if options.compare is not None:
            text = json_text(comparison_json(explore(options.compare, *loading), explored, *where)) + "\n"
        elif options.folded:
            text = folded_text(profile_of_scope(explored, *where))
        else:
            text = json_text(explore_json(explored, *where)) + "\n"
    except model.LogError as error:
        print(error, file=sys.stderr)
        return 1
    sys.stdout.buffer.write(text.encode("utf-8"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
