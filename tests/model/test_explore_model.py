#!/usr/bin/env python3
"""The rules by which a log is explored, each by value on a log small enough to reckon by hand."""

import json
import os
import random
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import carvelot_model as m  # noqa: E402
import explore_logs  # noqa: E402
import explore_model as e  # noqa: E402

MINUTE = 60 * 1000000
CALL_A = "Calling Business function A from x (BSFNLevel = 1)"
RETURN_A = "Return value is 0 for A. (BSFNLevel = 1)"
FAILED_A = "Return value is 2 for A. (BSFNLevel = 1)"
DONE = "Exiting DBPerformRequest"
ONE_SHAPE = "SELECT X FROM F1 WHERE A = 1"


def call(name, level=None):
    return "Calling Business function %s from x%s" % (name, "" if level is None else " (BSFNLevel = %d)" % level)


def returned(name, level=None, code=0):
    return "Return value is %d for %s. %s" % (code, name, "x" if level is None else "(BSFNLevel = %d)" % level)


def stamp(micros):
    seconds, fraction = divmod(micros, 1000000)
    return "%02d:%02d:%02d.%06d" % (seconds // 3600, seconds // 60 % 60, seconds % 60, fraction)


def line(text, at=0, owner="7/1", date="Sep 22"):
    return "%s %s - %s L\t%s" % (date, stamp(at), owner, text)


def explored(lines, **options):
    data = lines if isinstance(lines, bytes) else b"".join(text.encode() + b"\n" for text in lines)
    session = e.ExploredSession(**options)
    session.load_bytes(data)
    return e.Explored(session)


def debug(*texts, **options):
    """A thread's lines: a text is 10 microseconds behind the one before, (text, step) so many. The first line, which
    makes it a debug log, is record 0 at clock 0 of a thread of its own."""
    lines = [line("Entering JDB_InitUser", 0, "9/9")]
    now = 0
    for text in texts:
        step = 10
        if isinstance(text, tuple):
            text, step = text
        now += step
        lines.append(line(text, now))
    return explored(lines, **options)


def jas_line(text, at=0, user="U", level="APP   ", date="29 Jun 2016"):
    clock = stamp(at)[:-3].replace(".", ",")
    return "%s %s [%s] %s%s- [JDBJ] %s" % (date, clock, level, user, " " if user else "", text)


def jas(*texts, **options):
    """A user's lines a millisecond apart behind six lines of another user at clock 0."""
    lines = [jas_line("start", 0, "OTHER")] * 6
    for number, text in enumerate(texts, 1):
        lines.append(text if text.startswith("29") else jas_line(text, number * 1000))
    return explored(lines, **options)


def spans(found):
    """name, start, end, closed of all frames."""
    return [(f.name, f.start, f.end, f.closed) for f in found.frames]


def nested(found):
    """name and name of the parent of all frames."""
    return [(f.name, None if f.parent is None else f.parent.name) for f in found.frames]


def findings(found, rule):
    return [(f.subject, f.count, f.cost, f.records) for f in found.findings if f.rule == rule]


def stamped(*stamps):
    """The clocks of records that bear (date, microseconds of the day)."""
    found = explored([line("Entering JDB_InitUser" if n == 0 else "x", at, "7/1", date)
                      for n, (date, at) in enumerate(stamps)])
    return found.clock


class Lines(unittest.TestCase):
    def counts(self, data, **options):
        lines = explored(data, **options).session.lines
        return [lines[key] for key in ("total", "words", "records", "noTime", "noMonth", "filtered")]

    def test_each_kind_of_line_end_ends_one_line(self):
        first = line("Entering JDB_InitUser").encode()
        self.assertEqual(self.counts(first + b"\r\n" + first + b"\r" + first + b"\n\n" + first), [4, 3, 3, 0, 0, 0])

    def test_a_debug_line_whose_third_word_is_no_time_is_unread(self):
        data = line("Entering JDB_InitUser").encode() + b"\nat Foo.bar x\none two\n \t\nat 12:00 1:2 x\n"
        self.assertEqual(self.counts(data), [5, 4, 2, 2, 0, 0])

    def test_filtered_lines_are_counted_on_their_own(self):
        data = line("Entering JDB_InitUser").encode() + b"\n" + line("x", owner="8/1").encode() + b"\na b c\nx\n"
        self.assertEqual(self.counts(data, process_filter=8), [4, 4, 1, 1, 0, 2])

    def test_a_jas_line_whose_second_word_is_no_month_is_unread(self):
        data = (jas_line("x") + "\n").encode() * 6 + b"at Foo\n29\n\t\n \n29 anF\n"
        self.assertEqual(self.counts(data), [11, 10, 9, 0, 1, 0])
        self.assertEqual(self.counts(data, process_filter=8), [11, 10, 0, 0, 1, 9])

    def test_a_line_that_the_reader_cuts_is_one_line_with_words_in_each_piece(self):
        long_line = line("Entering JDB_InitUser " + "x " * 5000).encode()
        found = explored(long_line + b"\n" + line("y").encode() + b"\n")
        self.assertEqual(found.session.lines, {"total": 2, "words": 3, "records": 2, "noTime": 1, "noMonth": 0,
                                               "filtered": 0})
        self.assertEqual(found.session.line_of, [1, 2])

    def test_the_line_of_a_record_counts_empty_lines_and_no_halves_of_a_line_end(self):
        first = line("Entering JDB_InitUser").encode()
        self.assertEqual(explored(first + b"\r\n\r\n" + first + b"\r\r" + first + b"\n").session.line_of, [1, 3, 5])

    def test_lines_are_cut_as_the_reader_cuts_them(self):
        rng = random.Random(1)
        for _ in range(200):
            data = b"".join(rng.choice([b"a", b"\r", b"\n", b"\r\n", b"x" * 8190, b"yy", b"z" * 8192])
                            for _ in range(rng.randint(0, 12)))
            self.assertEqual([piece for _, piece in e.numbered_lines(data)[0]], m.read_lines(data))

    def test_unread_lines_are_one_finding_a_reason(self):
        found = explored(line("Entering JDB_InitUser").encode() + b"\na b c\na b d\n", process_filter=8)
        self.assertEqual(findings(found, "unread-lines"), [("third word no time", 2, 0, []), ("filtered", 1, 0, [])])
        found = jas("29 anFX", "29 06 2016 x")
        self.assertEqual(findings(found, "unread-lines"), [("second word no month", 2, 0, [])])


class Clock(unittest.TestCase):
    def test_the_first_stamped_record_starts_the_clock(self):
        self.assertEqual(stamped(("Foo 22", 5), ("Sep 22", 1000), ("Sep 22", 1500)), [0, 0, 500])

    def test_a_month_is_exactly_one_of_the_twelve(self):
        for month in ("sep", "anF", "JanFeb", "Foo"):
            self.assertEqual(stamped(("Sep 22", 0), (month + " 22", 500), ("Sep 22", 700)), [0, 0, 700])

    def test_a_day_lies_in_its_month(self):
        for day, counts in (("Apr 30", True), ("Apr 31", False), ("Apr 0", False), ("Feb 29", True), ("Feb 30", False)):
            self.assertEqual(e.clocks(explored([line("Entering JDB_x", 0, "7/1", day)]).session.details)[1],
                             0 if counts else None)

    def test_a_time_of_day_is_below_24_hours(self):
        self.assertEqual(stamped(("Sep 22", 86399999999), ("Sep 22", 86400000000), ("Sep 23", 1)), [0, 0, 2])

    def test_a_time_of_day_below_zero_is_none(self):
        found = explored([line("Entering JDB_x"), "Sep 22 -1:00:00.0 - 7/1 L\tx", line("y", 7)])
        self.assertEqual(found.clock, [0, 0, 7])

    def test_over_midnight_and_new_year_time_goes_on(self):
        self.assertEqual(stamped(("Sep 30", 86399000000), ("Oct 1", 1000000)), [0, 2000000])
        self.assertEqual(stamped(("Dec 31", 86399000000), ("Jan 1", 1000000)), [0, 2000000])

    def test_february_has_29_days_only_where_one_record_is_of_that_day(self):
        self.assertEqual(stamped(("Feb 28", 0), ("Mar 1", 0)), [0, e.DAY])
        self.assertEqual(stamped(("Feb 28", 0), ("Mar 1", 0), ("Feb 29", 0))[1], 2 * e.DAY)

    def test_the_distance_goes_the_short_way_round_the_year(self):
        fired = e.collections.Counter()
        year = e.Year([], fired)

        def days(earlier, later, leap=False):
            records = []
            for month, day in (earlier, later):
                record = m.Detail()
                record.month, record.day = month, day
                records.append(record)
            year.leap, year.days = leap, 366 if leap else 365
            return year.distance(*records) // e.DAY

        self.assertEqual(days(("Jan", 1), ("Jul", 2)), 182)
        self.assertEqual(days(("Jan", 1), ("Jul", 3)), -182)
        self.assertEqual(days(("Jul", 2), ("Jan", 1)), -182)
        self.assertEqual(days(("Jul", 3), ("Jan", 1)), 182)
        # Half a year of 366 days is 183 either way round.
        self.assertEqual(days(("Jan", 1), ("Jul", 2), True), 183)
        self.assertEqual(days(("Jul", 2), ("Jan", 1), True), 183)
        self.assertEqual(days(("Dec", 31), ("Jan", 1)), 1)
        self.assertEqual(days(("Jan", 1), ("Dec", 31)), -1)

    def test_a_clock_set_back_by_ten_minutes_goes_back_and_by_more_stands(self):
        base = 60 * MINUTE
        self.assertEqual(stamped(("Sep 22", base), ("Sep 22", base - 600000000), ("Sep 22", base - 600000000)),
                         [0, -600000000, -600000000])
        self.assertEqual(stamped(("Sep 22", base), ("Sep 22", base - 600000001), ("Sep 22", base - 600000002)), [0, 0, -1])

    def test_a_record_is_stray_when_the_one_before_is_near_one_of_the_three_behind(self):
        base = 60 * MINUTE

        def third(*behind):
            return stamped(*[("Sep 22", base)] * 2, ("Sep 22", base + 601000000),
                           *[("Sep 22", base + 700000000)] * (len(behind) - 1), ("Sep 22", base + behind[-1]))[2]

        self.assertEqual(third(600000000), 0)
        self.assertEqual(third(0, 600000000), 0)
        self.assertEqual(third(0, 0, 600000000), 0)
        self.assertEqual(third(0, 0, 0, 600000000), 601000000)  # the fourth one behind is too late
        self.assertEqual(third(600000001), 601000000)

    def test_ten_minutes_away_are_not_astray(self):
        for away, clock in ((600000000, 600000000), (600000001, 0)):
            self.assertEqual(stamped(("Sep 22", 0), ("Sep 22", away), ("Sep 22", 1), ("Sep 22", 1))[1], clock)

    def test_a_stray_record_has_the_clock_of_the_one_before(self):
        self.assertEqual(stamped(("Sep 22", 0), ("Sep 22", 50), ("Mar 1", 0), ("Sep 22", 60)), [0, 50, 50, 60])

    def test_what_is_near_a_stray_one_is_judged_by_the_last_that_is_not(self):
        self.assertEqual(stamped(("Sep 22", 0), ("Sep 22", 5), ("Mar 1", 0), ("Mar 1", 10), ("Sep 22", 60)), [0, 5, 5, 5, 60])

    def test_the_first_one_is_stray_more_than_a_day_from_two_near_each_other(self):
        day = e.DAY
        self.assertEqual(stamped(("Sep 1", 5), ("Sep 2", 6), ("Sep 2", 7)), [0, 0, 1])
        self.assertEqual(stamped(("Sep 1", 5), ("Sep 2", 5), ("Sep 2", 6)), [0, day, day + 1])
        self.assertEqual(stamped(("Sep 1", 5), ("Sep 2", 6), ("Sep 2", 600000006)), [0, 0, 600000000])
        self.assertEqual(stamped(("Sep 1", 5), ("Sep 2", 6), ("Sep 2", 600000007)), [0, day + 1, day + 600000002])
        self.assertEqual(stamped(("Sep 1", 5), ("Sep 9", 6)), [0, 8 * day + 1])

    def test_the_last_one_of_three_or_more_is_stray_more_than_a_day_from_the_one_before(self):
        self.assertEqual(stamped(("Sep 1", 0), ("Sep 1", 1), ("Sep 2", 2)), [0, 1, 1])
        self.assertEqual(stamped(("Sep 1", 0), ("Sep 1", 1), ("Sep 2", 1)), [0, 1, 1 + e.DAY])
        self.assertEqual(stamped(("Sep 1", 0), ("Sep 2", 2)), [0, e.DAY + 2])

    def test_each_piece_starts_as_far_from_the_first_as_its_first_stamp(self):
        records = explored([line("Entering JDB_x", 5000000), line("x", 6000000), line("x", 7, "7/1", "Foo 1"),
                            line("x", 3000000), line("x", 3000005)]).session.details
        self.assertEqual(e.clocks(records, (0, 2)), ([0, 1000000, 0, -2000000, -1999995], 0))

    def test_a_log_without_a_stamp_has_no_span(self):
        found = explored([line("Entering JDB_x", 5, date="Foo 1"), line("x", 7, date="Foo 1")])
        self.assertEqual((found.clock, found.first_record, found.length), ([0, 0], None, 0))

    def test_the_span_is_the_largest_clock(self):
        found = explored([line("Entering JDB_x", 5, date="Foo 1"), line("x", 50), line("x", 90), line("x", 60)])
        self.assertEqual((found.first_record, found.length, found.clock[-1]), (1, 40, 10))


class Streams(unittest.TestCase):
    def test_a_thread_belongs_to_its_process(self):
        found = explored([line("Entering JDB_x", 0, "7/1"), line("x", 1, "8/1"), line("x", 1, "-1/1")])
        self.assertEqual([s.name for s in found.streams.values()], ["thread:7/1", "thread:8/1", "thread:4294967295/1"])

    def test_a_user_without_a_name_is_filed_under_one(self):
        found = jas(jas_line("x", 0, ""))
        self.assertEqual([s.name for s in found.streams.values()], ["user:OTHER", "user:SYSTEM LEVEL"])

    def test_time_never_falls_in_a_stream_and_streams_keep_their_own(self):
        found = explored([line("Entering JDB_x", 100), line("x", 50), line("x", 70, "7/2"), line("x", 160), line("x", 90)])
        self.assertEqual([s.times for s in found.streams.values()], [[0, 0, 60, 60], [-30]])


class Frames(unittest.TestCase):
    def test_a_call_lasts_until_its_return(self):
        self.assertEqual(spans(debug(call("A", 1), ("x", 5), returned("A", 1))), [("A", 10, 25, True)])

    def test_calls_nest(self):
        found = debug(call("A", 1), call("B", 2), returned("B", 2), returned("A", 1))
        self.assertEqual(nested(found), [("A", None), ("B", "A")])
        self.assertEqual([(f.total, f.self_time) for f in found.frames], [(30, 20), (10, 10)])

    def test_a_call_or_return_without_a_name_does_nothing(self):
        found = debug("Calling Business function  x", "Calling x y", "Return value is 2", "Return value is 2 for ... x")
        self.assertEqual(spans(found), [])
        self.assertEqual(findings(found, "orphan-return"), [])

    def test_a_call_ends_the_outermost_of_its_level_or_more_and_all_above_it(self):
        found = debug(call("A", 1), call("B", 2), call("C", 3), call("D", 2))
        self.assertEqual(spans(found), [("A", 10, 40, False), ("B", 20, 40, False), ("C", 30, 40, False), ("D", 40, 40, False)])
        self.assertEqual(nested(found)[3], ("D", "A"))
        self.assertEqual(nested(debug(call("A", 3), call("B", 5), call("C", 4)))[2], ("C", "A"))
        self.assertEqual(nested(debug(call("A", 3), call("B"), call("C", 3)))[2], ("C", None))

    def test_the_outermost_is_found_below_a_lower_level(self):
        # A negative level is none, so 1 may stand above 4.
        found = debug(call("A", 2), call("B", -1), call("C"), call("D", 9), call("E", 5))
        self.assertEqual(nested(found)[4], ("E", "C"))

    def test_a_call_of_no_level_nests(self):
        self.assertEqual(nested(debug(call("A", 1), call("B"), call("C", -3))), [("A", None), ("B", "A"), ("C", "B")])

    def test_events_between_calls_end_with_them(self):
        found = debug(call("A", 1), "RT: >>>Beginning ER:\tX\t", call("B", 1))
        self.assertEqual(spans(found)[1], ("X", 20, 30, False))

    def test_an_event_is_of_no_level(self):
        self.assertEqual(nested(debug("RT: >>>Beginning ER:\tX\t", call("B", 1)))[1], ("B", "X"))

    def test_a_return_closes_the_topmost_of_its_name_and_level(self):
        found = debug(call("A"), call("A"), returned("A", 0, 1))
        self.assertEqual([(f.closed, f.result) for f in found.frames], [(False, None), (True, 1)])
        found = debug(call("A", 1), call("A", 2), returned("A", 1))
        self.assertEqual([(f.closed, f.end) for f in found.frames], [(True, 30), (False, 30)])

    def test_a_return_of_no_level_closes_any_level_and_of_a_negative_one_only_that(self):
        self.assertTrue(debug(call("A", 5), returned("A")).frames[0].closed)
        self.assertFalse(debug(call("A", 5), returned("A", -1)).frames[0].closed)
        self.assertTrue(debug(call("A", -1), returned("A", -1)).frames[0].closed)

    def test_a_return_leaves_the_outer_call_of_its_name_open(self):
        found = debug(call("A", 1), call("A", 2), returned("A", 2, 1), returned("A", None, 2))
        self.assertEqual([(f.level, f.result, f.end) for f in found.frames], [(1, 2, 40), (2, 1, 30)])

    def test_a_return_without_its_call_is_an_orphan(self):
        found = debug(call("A", 1), returned("A", 2), returned("B", 1), returned("B"))
        self.assertEqual(findings(found, "orphan-return"), [("B", 2, 0, [3, 4]), ("A", 1, 0, [2])])

    def test_other_threads_are_apart(self):
        found = explored([line("Entering JDB_x"), line(CALL_A, 1), line(RETURN_A, 2, "7/2"), line("x", 5)])
        self.assertEqual(spans(found), [("A", 1, 5, False)])

    def test_what_is_open_ends_with_the_stream(self):
        found = debug(call("A", 1), call("B", 2), "x", ("y", -3))
        self.assertEqual(spans(found), [("A", 10, 30, False), ("B", 20, 30, False)])

    def test_an_event_bears_its_display_name(self):
        self.assertEqual(nested(debug("RT: >>>Beginning ER:\tOK\tForm:W\t"))[0][0], "Form: W - OK")

    def test_an_event_without_a_display_name_bears_its_text(self):
        text = "RT: >>>Beginning ER:\tOK"
        self.assertEqual(nested(debug(text))[0][0], text)

    def test_an_event_of_a_jas_log_is_named_by_its_text_without_the_words(self):
        for text, name in (("P, Event Starts :Dialog", "P Dialog"), ("P ,, Event Starts :  Dialog is", "P Dialog is"),
                           ("Event Starts :Dialog", "Dialog"), ("P, Event Starts :", "P"), ("Event Starts :", ""),
                           ("Event Starts :a, Event Starts :b", "a, Event Starts :b"),
                           ("P, Event Starts :, D", "P , D")):
            self.assertEqual(nested(jas(text))[0][0], name)

    def test_an_event_end_closes_the_topmost_event_and_all_above_it(self):
        found = debug("RT: >>>Beginning ER:\tX\t", "RT: >>>Beginning ER:\tY\t", call("A", 1), "RT: <<<Finished  ER:\tX\t")
        self.assertEqual([(f.name, f.closed, f.result) for f in found.frames],
                         [("X", False, None), ("Y", True, None), ("A", False, None)])
        self.assertEqual(spans(debug(call("A", 1), "RT: <<<Finished  ER:\tX\t", "x")), [("A", 10, 30, False)])

    def test_jas_calls_and_events_are_told_by_their_kinds(self):
        found = jas(CALL_A, "X, Event Starts :Y", "X, Event Ends:Z", RETURN_A)
        self.assertEqual(spans(found), [("A", 1000, 4000, True), ("X Y", 2000, 3000, True)])

    def test_a_statement_lasts_until_it_is_done(self):
        self.assertEqual(spans(debug(ONE_SHAPE, "x", DONE, DONE)), [("SELECT F1", 10, 30, True)])

    def test_a_statement_that_another_one_or_a_call_or_event_overtakes_has_no_time(self):
        for text in (ONE_SHAPE, call("A", 1), "Calling x y", returned("A"), "Return value is 2", "RT: >>>Beginning ER:\tX\t",
                     "RT: <<<Finished  ER:\tX\t"):
            self.assertEqual(spans(debug(ONE_SHAPE, text, DONE))[0], ("SELECT F1", 10, 10, False))
        self.assertEqual(spans(debug(ONE_SHAPE, "On x", "IN->[1] x", DONE))[0], ("SELECT F1", 10, 40, True))
        self.assertEqual(spans(debug(ONE_SHAPE, "x")), [("SELECT F1", 10, 10, False)])

    def test_a_jas_statement_or_object_call_lasts_until_the_next_line_of_its_user(self):
        found = jas("Object Called: P.W", ONE_SHAPE, jas_line("x", 9000, "OTHER"), "y")
        self.assertEqual(spans(found), [("W", 1000, 2000, True), ("SELECT F1", 2000, 4000, True)])
        self.assertEqual(spans(jas("Object Called: P.W")), [("W", 1000, 1000, False)])
        self.assertEqual(spans(jas("X", ONE_SHAPE)), [("SELECT F1", 2000, 2000, False)])

    def test_statements_and_object_calls_stand_in_what_is_open(self):
        found = jas(CALL_A, ONE_SHAPE, "Object Called: P.W", RETURN_A)
        self.assertEqual(nested(found), [("A", None), ("SELECT F1", "A"), ("W", "A")])
        self.assertEqual([f.self_time for f in found.frames], [1000, 1000, 1000])

    def test_a_statement_is_named_by_its_operation_and_table(self):
        for text, name in (("DROP TABLE F1", "DROP"), ("SELECT COUNT(*)", "SELECT CT"),
                           ("[JDBOLEDB] UPDATE x SELECT y", "SELECT"), ("[JDBOLEDB] INSERT DELETE", "INSERT"),
                           ("DELETE FROM PRODDTA.F4211 ", "DELETE PRODDTA.F4211")):
            self.assertEqual(nested(debug(text))[0][0], name)

    def test_codes_of_two_or_more_failed_and_one_warned(self):
        for code, failed, warned in ((0, False, False), (1, False, True), (2, True, False), (9, True, False)):
            frame = debug(call("A"), returned("A", None, code)).frames[0]
            self.assertEqual((frame.result, frame.failed, frame.warned), (code, failed, warned))

    def test_frames_stand_in_the_order_of_their_records(self):
        found = explored([line("Entering JDB_x"), line(CALL_A, 1), line(call("B", 1), 2, "8/2"), line(call("C", 2), 3),
                          line(call("D", 2), 4, "8/2")])
        self.assertEqual([(f.name, f.stream.name, None if f.parent is None else f.parent.index) for f in found.frames],
                         [("A", "thread:7/1", None), ("B", "thread:8/2", None), ("C", "thread:7/1", 0), ("D", "thread:8/2", 1)])


    def test_what_is_open_agrees_with_a_plain_stack(self):
        rng = random.Random(7)
        for _ in range(300):
            texts = []
            for _ in range(rng.randint(1, 25)):
                name, level = rng.choice("AB"), rng.choice([None, -1, 0, 1, 2, 3, 4])
                texts.append(rng.choice([call(name, level), call(name, level), returned(name, level), "RT: >>>Beginning ER:\tX\t",
                                         "RT: <<<Finished  ER:\tX\t"]))
            self.assertEqual(spans(debug(*texts)), self.by_plain_stack(texts))

    def by_plain_stack(self, texts):
        frames, stack = [], []  # a frame is [name, start, end, closed, level or None for an event]

        def end_from(at, now):
            for frame in stack[at:]:
                frame[2] = now
            del stack[at:]

        now = 0
        for text in texts:
            now += 10
            level = e.call_level(text)
            functions = [at for at, frame in enumerate(stack) if frame[4] is not None]
            if text.startswith("Calling"):
                of_level = [at for at in functions if stack[at][4] >= level] if level > 0 else []
                if of_level:
                    end_from(of_level[0], now)
                frames.append([e.call_name(text), now, now, False, level])
                stack.append(frames[-1])
            elif text.startswith("Return"):
                named = [at for at in functions if stack[at][0] == e.return_name(text) and level in (0, stack[at][4])]
                if named:
                    stack[named[-1]][3] = True
                    end_from(named[-1], now)
            elif "Beginning" in text:
                frames.append(["X", now, now, False, None])
                stack.append(frames[-1])
            else:
                events = [at for at, frame in enumerate(stack) if frame[4] is None]
                if events:
                    stack[events[-1]][3] = True
                    end_from(events[-1], now)
        end_from(0, now)
        return [tuple(frame[:4]) for frame in frames]


class Profiles(unittest.TestCase):
    def rows(self, profile, *numbers):
        return [tuple([row["name"]] + [row[number] for number in numbers]) for row in profile.functions()]

    def test_a_recursive_call_counts_its_total_once(self):
        found = debug(call("A", 1), call("B", 2), call("A", 3), returned("A", 3), returned("B", 2), returned("A", 1))
        self.assertEqual(self.rows(e.Profile(found), "calls", "total", "self", "shortest", "longest"),
                         [("A", 2, 50, 30, 10, 50), ("B", 1, 30, 20, 30, 30)])

    def test_kinds_of_one_name_are_apart(self):
        found = debug("RT: >>>Beginning ER:\tA\t", call("A", 1), returned("A", 1), "RT: <<<Finished  ER:\tX\t")
        self.assertEqual([(r["kind"], r["total"]) for r in e.Profile(found).functions()], [("event", 30), ("function", 10)])

    def test_percentiles_are_the_next_rank_up(self):
        self.assertEqual([e.percentile(list(range(1, n + 1)), 50) for n in (1, 2, 3, 4, 10)], [1, 1, 2, 2, 5])
        self.assertEqual([e.percentile(list(range(1, n + 1)), 95) for n in (1, 19, 20, 21, 40, 100)], [1, 19, 19, 20, 38, 95])

    def test_functions_count_what_was_left_failed_or_warned(self):
        found = debug(call("A"), returned("A", None, 2), call("A"), returned("A", None, 1), call("A"))
        self.assertEqual(self.rows(e.Profile(found), "calls", "unclosed", "failed", "warned"), [("A", 3, 1, 1, 1)])

    def test_functions_stand_by_total_then_kind_then_name_by_code_point(self):
        texts = []
        for name in ("\U0001F600", "\uff21", "B"):
            texts += [call(name), returned(name)]
        found = debug(*texts, ONE_SHAPE, DONE, call("Z"), ("x", 1), returned("Z"))
        self.assertEqual([m.plain(row["name"]) for row in e.Profile(found).functions()],
                         ["Z", "B", "\uff21", "\U0001F600", "SELECT F1"])

    def test_a_range_cuts_frames(self):
        found = debug(call("A", 1), call("B", 2), returned("B", 2), returned("A", 1))  # A 10 to 40, B 20 to 30
        for start, end, rows in ((0, 15, [("A", 5, 5)]), (15, 25, [("A", 10, 5), ("B", 5, 5)]), (25, None, [("A", 15, 10), ("B", 5, 5)]),
                                 (None, 20, [("A", 10, 10)]), (30, 99, [("A", 10, 10)]), (40, 99, []), (0, 10, []), (0, 11, [("A", 1, 1)]),
                                 (20, 20, []), (25, 20, [])):
            self.assertEqual(self.rows(e.Profile(found, None, start, end), "total", "self"), rows)

    def test_a_range_holds_frames_without_length_at_its_start_and_not_at_its_end(self):
        found = debug(call("A", 1), (returned("A", 1), 0))  # 10 to 10
        for start, end, calls in ((10, 11, 1), (9, 10, 0), (11, 12, 0), (0, 11, 1), (10, 10, 0), (10, None, 1), (None, 11, 1)):
            self.assertEqual(len(e.Profile(found, None, start, end).frames), calls)

    def test_what_a_frame_that_stays_stands_in_stays(self):
        found = debug(call("A", 1), call("B", 2), (returned("B", 2), 0), (returned("A", 1), 0))  # A 10 to 20, B 20 to 20
        self.assertEqual(self.rows(e.Profile(found, None, 20, 30), "calls", "total"), [("A", 1, 0), ("B", 1, 0)])

    def test_a_scope_holds_its_streams_alone(self):
        found = explored([line("Entering JDB_x"), line(CALL_A, 1), line(call("B", 1), 2, "7/2"), line(call("C", 1), 3, "8/2")])
        for scope, names in ((None, "ABC"), ("process:7", "AB"), ("thread:7/2", "B"), ("process:8", "C")):
            self.assertEqual("".join(f.name for f in e.Profile(found, found.scope_streams(scope)).frames), names)
        self.assertIsNone(found.scope_streams("process:1"))
        self.assertIsNone(found.scope_streams("user:U"))
        found = jas(CALL_A, jas_line(call("B", 1), 5, "OTHER"))
        self.assertEqual([f.name for f in e.Profile(found, found.scope_streams("user:U")).frames], ["A"])
        with self.assertRaises(m.LogError) as caught:
            e.explore_json(found, "process:0")
        self.assertEqual(str(caught.exception), "No such scope: process:0")

    def test_edges_go_from_callers_to_callees(self):
        found = debug(call("A", 1), call("B", 2), call("B", 3), returned("B", 3), returned("B", 2), returned("A", 1))
        self.assertEqual(e.Profile(found).edges(), [
            [None, ("function", "A"), 1, 50], [("function", "A"), ("function", "B"), 1, 30],
            [("function", "B"), ("function", "B"), 1, 10]])

    def test_of_equal_edges_those_from_the_top_come_first(self):
        found = debug(call("A", 1), (call("B", 2), 0), returned("B", 2), (returned("A", 1), 0))
        self.assertEqual([edge[0] for edge in e.Profile(found).edges()], [None, ("function", "A")])

    def test_equal_edges_stand_by_caller_and_callee(self):
        texts = []
        for caller in "CA":
            for callee in "YX":
                texts += [(call(caller, 1), 0), (call(callee, 2), 0), (returned(callee, 2), 5), (returned(caller, 1), 0)]
        self.assertEqual([(edge[0][1], edge[1][1]) for edge in e.Profile(debug(*texts)).edges() if edge[0]],
                         [("A", "X"), ("A", "Y"), ("C", "X"), ("C", "Y")])

    def test_the_tree_merges_calls_below_their_parents_in_order_of_appearance(self):
        found = explored([line("Entering JDB_x")] + [line(text, at, owner) for at, (text, owner) in enumerate([
            (call("A", 1), "7/1"), (call("C", 2), "7/1"), (call("A", 1), "7/2"), (call("B", 2), "7/2"), (returned("C", 2), "7/1"),
            (call("B", 2), "7/1"), (returned("A", 1), "7/1"), (returned("A", 1), "7/2")], 1)])
        self.assertEqual([(depth, node["name"], node["calls"], node["total"], node["self"])
                          for depth, node in e.flat_tree(e.Profile(found).tree())],
                         [(0, "A", 2, 11, 3), (1, "C", 1, 3, 3), (1, "B", 2, 5, 5)])

    def test_self_times_add_up_to_what_the_streams_had_open(self):
        for seed in range(30):
            found = e.ExploredSession()
            found.load_bytes(explore_logs.make(seed))
            found = e.Explored(found)
            for start, end in ((None, None), (found.length // 4, found.length // 2)):
                profile = e.Profile(found, None, start, end)
                roots = sum(profile.total[f] for f in profile.frames if f.parent is None)
                self.assertEqual(sum(profile.self_time.values()), roots)
                self.assertEqual(sum(edge[3] for edge in profile.edges()), sum(profile.total.values()))
                self.assertEqual(sum(node["self"] for _, node in e.flat_tree(profile.tree())), roots)
                self.assertTrue(all(value >= 0 for value in profile.self_time.values()))
                self.assertEqual(sum(e.folded_paths(profile).values()), roots)
                self.assertEqual(sum(e.callgrind_costs(profile)[0].values()), roots)


class Shapes(unittest.TestCase):
    def shapes(self, *pairs):
        for text, shape in pairs:
            self.assertEqual(e.statement_shape("UPDATE " + text), "UPDATE " + shape)

    def test_what_stands_ahead_of_the_operation_word_is_cut(self):
        self.assertEqual(e.statement_shape("[JDBOLEDB] req=1 SELECT A"), "SELECT A")
        self.assertEqual(e.statement_shape("[JDBOLEDB] DELETE INSERT A"), "INSERT A")

    def test_white_space_is_one_blank(self):
        self.shapes(("a \t\v\f b ", "a b"), ("a\u00a0 b", "a\u00a0 b"), (" a\r\nb", "a b"))

    def test_literals_are_marks(self):
        self.shapes(("'a'", "?"), ("''", "?"), ("'a''b'  c", "? c"), ("'a  b", "?"), ("'a''", "?"), ("N'x' 'y'", "N? ?"),
                    ("'a '' b' 'c", "? ?"))

    def test_numbers_are_marks(self):
        self.shapes(("1", "?"), ("12.5", "?"), (".5", "?"), ("1e5", "?"), ("1.5E-10", "?"), (".5e+1", "?"), ("a=1", "a=?"), ("(1)", "(?)"),
                    ("1/2", "?/?"), ("1.", "?."), ("1.e", "?.e"), ("1..5", "?..5"))

    def test_numbers_of_names_stay(self):
        self.shapes(("a1", "a1"), ("F4211", "F4211"), ("_1", "_1"), ("#1", "#1"), ("$1", "$1"), ("@1", "@1"), ("a.1", "a.1"), ("\u00e91", "\u00e91"),
                    ("1a", "1a"), ("1_", "1_"), ("1#", "1#"), ("1$", "1$"), ("1@", "1@"), ("1\u00e9", "1\u00e9"), ("T0.X", "T0.X"))

    def test_a_number_is_as_long_as_it_can_be(self):
        self.shapes(("1.5.2", "?.2"), ("1e", "1e"), ("1e+", "1e+"), ("1.5x", "1.5x"), ("1e5x", "1e5x"), ("12ab3", "12ab3"), ("a1e-5", "a1e-?"))

    def test_a_sign_belongs_to_a_number_behind_a_bracket_a_comma_or_a_comparison(self):
        self.shapes(("(-1", "(?"), ("( +1", "( ?"), (",-1", ",?"), ("=-1", "=?"), ("< -1", "< ?"), (">-.5", ">?"), ("a-1", "a-?"), ("5 - 3", "? - ?"),
                    ("5 -3", "? -?"), ("=- 1", "=- ?"), ("=--1", "=--?"), ("=+-1", "=+-?"), ("*-1", "*-?"), ("=-a", "=-a"), ("=-1a", "=-1a"))

    def test_a_sign_belongs_to_a_number_behind_one_of_six_words(self):
        for word in ("AND", "BETWEEN", "THEN", "ELSE", "LIKE", "SELECT"):
            self.shapes((word + " -1", word + " ?"))
        self.shapes(("and -1", "and -?"), ("BRAND -1", "BRAND -?"), ("OR -1", "OR -?"), ("AND-1", "AND-1"), ("(AND+.5)", "(AND+.5)"), ("AND- 1", "AND- ?"), ("_AND -1", "_AND -?"),
                    ("(AND -1", "(AND ?"), ("\u00e9AND -1", "\u00e9AND -?"))
        self.assertEqual(e.statement_shape("SELECT -1, +2 FROM X"), "SELECT ?, ... FROM X")

    def test_a_mark_takes_the_digits_behind_it(self):
        self.shapes(("?1", "?"), ("?12a", "?a"), ("?1.5", "?.5"), ("'a'5", "?"), ("a = ?1 AND", "a = ? AND"))

    def test_lists_are_one_mark(self):
        self.shapes(("(?, ?)", "(?, ...)"), ("(?,?,?)", "(?, ...)"), ("(1 , 2, 'a')", "(?, ...)"), ("(?)", "(?)"), ("(?,,?)", "(?,,?)"), ("?,?,a,?", "?, ...,a,?"),
                    ("(?, a, ?)", "(?, a, ?)"), ("(-1, +2)", "(?, ...)"))

    def test_case_and_owner_stay(self):
        self.shapes(("Proddta.F4211 set X", "Proddta.F4211 set X"))

    def test_rows_of_shapes(self):
        found = debug(call("A", 1), "SELECT X FROM F1 WHERE A = 1", DONE, "SELECT X FROM F1 WHERE A = 22", ("x", 5), (DONE, 25),
                      returned("A", 1), "SELECT X FROM F1 WHERE A = 3", (DONE, 30), "DROP TABLE F2", DONE)
        rows = e.Profile(found).shapes()
        self.assertEqual(rows, [
            {"shape": "SELECT X FROM F1 WHERE A = ?", "operation": "SELECT", "table": "F1", "count": 3, "total": 70, "longest": 30, "p95": 30,
             "firstRecord": 2, "longestRecord": 4, "topCaller": ("function", "A")},
            {"shape": "DROP TABLE F2", "operation": "DROP", "table": "", "count": 1, "total": 10, "longest": 10, "p95": 10, "firstRecord": 10,
             "longestRecord": 10, "topCaller": None}])

    def test_of_callers_that_ran_it_as_often_the_first_one_stands(self):
        found = debug(ONE_SHAPE, call("A", 1), ONE_SHAPE, returned("A", 1))
        self.assertIsNone(e.Profile(found).shapes()[0]["topCaller"])

    def test_the_top_caller_ran_it_most_often(self):
        found = debug(ONE_SHAPE, call("A", 1), ONE_SHAPE, ONE_SHAPE, returned("A", 1))
        self.assertEqual(e.Profile(found).shapes()[0]["topCaller"], ("function", "A"))

    def test_a_range_cuts_shapes(self):
        found = debug(ONE_SHAPE, (DONE, 100), ONE_SHAPE, DONE)  # 10 to 110, 120 to 130
        row = e.Profile(found, None, 100, 126).shapes()[0]
        self.assertEqual((row["count"], row["total"], row["longest"], row["firstRecord"]), (2, 16, 10, 1))


class Repeated(unittest.TestCase):
    SUBJECT = "A > SELECT X FROM F1 WHERE A = ?"
    TOP = "(top) > SELECT X FROM F1 WHERE A = ?"

    def found(self, *texts):
        return [row[:3] for row in findings(debug(*texts), "repeated-statement")]

    def test_ten_executions_below_a_call_are_told_and_nine_are_not(self):
        run = [ONE_SHAPE, DONE]
        self.assertEqual(self.found(call("A", 1), *run * 10, returned("A", 1)), [(self.SUBJECT, 10, 100)])
        # Nine in a call and one behind it are the ten of a run at the top.
        self.assertEqual(self.found(call("A", 1), *run * 9, returned("A", 1)), [])

    def test_events_count_as_calls_do(self):
        subject = "A > SELECT X FROM F1 WHERE A = ?"
        self.assertEqual(self.found("RT: >>>Beginning ER:\tA\t", *[ONE_SHAPE, DONE] * 10), [(subject, 10, 100)])

    def test_children_with_fewer_than_ten_count_for_what_they_stand_in(self):
        child = [call("B", 2), ONE_SHAPE, DONE, returned("B", 2)]
        self.assertEqual(self.found(call("A", 1), *child * 10, returned("A", 1)), [(self.SUBJECT, 10, 100)])

    def test_children_with_ten_keep_theirs(self):
        child = [call("B", 2)] + [ONE_SHAPE, DONE] * 10 + [returned("B", 2)]
        own = [ONE_SHAPE, DONE]
        self.assertEqual(self.found(call("A", 1), *child, *own * 9), [("B > SELECT X FROM F1 WHERE A = ?", 10, 100)])
        self.assertEqual(self.found(call("A", 1), *child, *own * 10),
                         [(self.SUBJECT, 10, 100), ("B > SELECT X FROM F1 WHERE A = ?", 10, 100)])

    def test_a_call_that_holds_ten_without_a_share_of_ten_hides_them_from_those_above(self):
        # B holds 11: 10 of C and one of its own. A has its own 9 and may not take B's one.
        inner = [call("C", 3)] + [ONE_SHAPE, DONE] * 10 + [returned("C", 3)]
        found = self.found(call("A", 1), call("B", 2), *inner, ("x", 2000000), ONE_SHAPE, DONE, returned("B", 2),
                           ("x", 2000000), *[ONE_SHAPE, DONE] * 9)
        self.assertEqual(found, [("C > SELECT X FROM F1 WHERE A = ?", 10, 100)])

    def test_shares_of_one_key_are_summed_over_calls_that_hold_ten(self):
        ten = [call("A", 1)] + [ONE_SHAPE, DONE] * 10 + [returned("A", 1)]
        nine = [call("A", 1)] + [ONE_SHAPE, DONE] * 9 + [returned("A", 1)]
        self.assertEqual(self.found(*ten, *nine, *ten), [(self.SUBJECT, 20, 200)])

    def test_shapes_are_apart(self):
        self.assertEqual(self.found(call("A", 1), *[ONE_SHAPE, DONE, "SELECT Y FROM F1", DONE] * 9), [])

    def test_ten_that_follow_each_other_within_a_second_are_a_run(self):
        self.assertEqual(self.found(*[(ONE_SHAPE, 1000000), DONE] * 10), [(self.TOP, 10, 100)])
        self.assertEqual(self.found(*[(ONE_SHAPE, 1000001), DONE] * 10), [])
        self.assertEqual(self.found(*[ONE_SHAPE, DONE] * 9), [])

    def test_runs_are_summed_over_all_streams_and_shorter_ones_left_out(self):
        ten, nine, pause = [ONE_SHAPE, DONE] * 10, [ONE_SHAPE, DONE] * 9, [("x", 1000001)]
        self.assertEqual(self.found(*ten, *pause, *nine, *pause, *ten, *pause, *ten), [(self.TOP, 30, 300)])

    def test_what_a_call_counts_stands_in_no_run_and_interrupts_none(self):
        ten = [call("A", 1)] + [ONE_SHAPE, DONE] * 10 + [returned("A", 1)]
        self.assertEqual(self.found(*[ONE_SHAPE, DONE] * 5, *ten, *[ONE_SHAPE, DONE] * 5), [(self.TOP, 10, 100), (self.SUBJECT, 10, 100)])

    def test_calls_with_fewer_make_a_run(self):
        child = [call("B", 1), ONE_SHAPE, DONE, returned("B", 1)]
        self.assertEqual(self.found(*child * 10), [(self.TOP, 10, 100)])

    def test_the_records_are_the_first_hundred_executions(self):
        rows = findings(debug(call("A", 1), *[ONE_SHAPE, DONE] * 101), "repeated-statement")
        self.assertEqual(rows[0][1:], (101, 1010, list(range(2, 202, 2))))

    def test_shares_agree_with_their_definition(self):
        def by_definition(frames):
            children = e.collections.defaultdict(list)
            for frame in frames:
                children[frame.parent].append(frame)

            def all_below(frame, shape):
                return [f for c in children[frame] for f in ([c] if c.shape == shape else []) + all_below(c, shape)]

            out = {}
            for frame in frames:
                for shape in {f.shape for f in frames if f.shape is not None} if frame.kind in (e.FUNCTION, e.EVENT) else ():
                    share = [c for c in children[frame] if c.shape == shape]
                    for child in children[frame]:
                        below = all_below(child, shape)
                        share += below if len(below) < 10 else []
                    if len(share) >= 10:
                        out[frame, shape] = {f.index for f in share}
            return out

        told = 0
        for seed in range(40):
            session = e.ExploredSession()
            session.load_bytes(explore_logs.make(seed))
            for stream in e.Explored(session).streams.values():
                if len(stream.frames) < 200:
                    ours = {key: {f.index for f in share} for key, share in e.shares(stream.frames).items() if len(share) >= 10}
                    self.assertEqual(ours, by_definition(stream.frames))
                    told += len(ours)
        self.assertGreater(told, 10)


class Findings(unittest.TestCase):
    CONFIRM = "  hCache:[1A] Nm:[9x]"
    MADE = ["Entering jdeCacheInit - Name:[N]", "Created new cache - hCache:[1A]", CONFIRM]

    def test_a_cache_made_and_not_ended_is_told(self):
        found = debug(*self.MADE)
        self.assertEqual(findings(found, "cache-not-terminated"), [("N 1A", 1, 0, [2])])
        for end in ("jdeCacheTerminate", "jdeCacheTerminateAll"):
            self.assertEqual(findings(debug(*self.MADE, end, self.CONFIRM), "cache-not-terminated"), [])
        self.assertEqual(findings(debug("Found existing cache", self.CONFIRM), "cache-not-terminated"), [])
        self.assertEqual(findings(debug(*self.MADE, cache_analysis=False), "cache-not-terminated"), [])

    def test_a_cursor_without_a_close_is_told_unless_its_cache_ended(self):
        opened = ["Open Cursor Success hCursor:[09] hCache:[1A]", self.CONFIRM]
        self.assertEqual(findings(debug(*self.MADE, *opened), "cursor-not-closed"), [("09", 1, 0, [4])])
        self.assertEqual(findings(debug(*self.MADE, *opened, "jdeCacheCloseCursor hCursor:[09]", self.CONFIRM), "cursor-not-closed"), [])
        self.assertEqual(findings(debug(*self.MADE, *opened, "jdeCacheTerminate", self.CONFIRM), "cursor-not-closed"), [])

    def test_calls_without_return_are_one_finding_a_name(self):
        found = debug(call("A"), call("A"), call("B"), "RT: >>>Beginning ER:\tX\t", returned("B"))
        self.assertEqual(findings(found, "call-without-return"), [("A", 2, 40 + 30, [1, 2])])

    def test_the_first_trouble_within_a_failed_call_is_its_cause(self):
        found = debug("ERROR: before", call("A", 1), "x", "JDB9900401 - failed", "ERROR: later", FAILED_A)
        self.assertEqual(findings(found, "first-cause"), [("A", 1, 40, [4, 2])])

    def test_each_kind_of_trouble_is_a_cause(self):
        for text in ("ERROR: x", "JDB3100001", "Return value is 2 for Nobody. x", "Return value is 9 for Nobody. x"):
            self.assertEqual(findings(debug(CALL_A, text, FAILED_A), "first-cause")[0][3], [2, 1])
        self.assertEqual(findings(debug(CALL_A, "Return value is 1 for Nobody. x", FAILED_A), "first-cause")[0][3], [3, 1])
        found = jas(CALL_A, jas_line("x", 2000, level="SEVERE"), jas_line(FAILED_A, 3000))
        self.assertEqual(findings(found, "first-cause"), [("A", 1, 2000, [7, 6])])

    def test_a_return_that_is_the_first_trouble_is_the_cause(self):
        self.assertEqual(findings(debug(CALL_A, "x", FAILED_A), "first-cause"), [("A", 1, 20, [3, 1])])

    def test_the_outermost_failed_call_is_told(self):
        found = debug(call("A", 1), call("B", 2), call("C", 3), returned("C", 3, 2), returned("B", 2, 0), returned("A", 1, 3))
        self.assertEqual(findings(found, "first-cause"), [("A", 1, 50, [4, 1])])
        found = debug(call("A", 1), call("B", 2), returned("B", 2, 2), returned("A", 1, 1))
        self.assertEqual(findings(found, "first-cause"), [("B", 1, 10, [3, 2])])

    def test_other_streams_have_no_part_in_a_cause(self):
        found = explored([line("Entering JDB_x"), line(CALL_A, 1), line("ERROR: x", 2, "7/2"), line(FAILED_A, 3)])
        self.assertEqual(findings(found, "first-cause"), [("A", 1, 2, [3, 1])])

    def test_causes_of_one_name_are_one_finding_of_pairs(self):
        found = debug(*[CALL_A, FAILED_A] * 51)
        self.assertEqual(findings(found, "first-cause"), [("A", 51, 510, [r for n in range(1, 101, 2) for r in (n + 1, n)])])

    def test_a_silence_is_longer_than_the_threshold_as_a_float_of_32_bits(self):
        def count(step, threshold):
            return len(findings(debug(CALL_A, ("x", step), threshold=threshold), "silence-in-call"))
        self.assertEqual((count(1000000, 1.0), count(1000001, 1.0)), (0, 1))
        # 16.777217 and 16.777216 seconds are the same 32-bit float once made of so many microseconds.
        self.assertEqual((count(16777217, 16.777216), count(16777218, 16.777216)), (0, 1))

    def test_a_silence_counts_for_the_innermost_call_open_ahead_of_it(self):
        found = debug(("x", 5000000), (CALL_A, 5000000), ("x", 5000000), (call("B", 2), 3000000), "RT: >>>Beginning ER:\tX\t",
                      (returned("B", 2), 2000000), (RETURN_A, 1500000), ("x", 9000000))
        self.assertEqual(findings(found, "silence-in-call"), [("A", 3, 9500000, [3, 4, 7]), ("B", 1, 2000000, [6])])

    def test_a_silence_is_a_growth_of_the_streams_time(self):
        base = 60000000
        found = explored([line("Entering JDB_x", base, "9/9"), line(CALL_A, base + 5000000), line("x", base), line("x", base + 5500000)])
        self.assertEqual(findings(found, "silence-in-call"), [])

    def test_a_rollback_tells_the_last_trouble_of_its_transaction(self):
        found = debug("ERROR: old", "Entering JDB_BeginTransaction", CALL_A, "ERROR: 1", "ERROR: 2", "x", "Entering JDB_RollbackUser",
                      "Entering JDB_RollbackUser", RETURN_A, "ERROR: 3", "x Entering JDB_RollbackUser\ty")
        self.assertEqual(findings(found, "rolled-back"), [("", 1, 0, [10, 11]), ("A", 1, 0, [5, 7]), ("A", 1, 0, [8])])

    def test_a_rollback_without_a_beginning_looks_back_to_the_streams_start(self):
        self.assertEqual(findings(debug("ERROR: 1", "Entering JDB_RollbackUser"), "rolled-back"), [("", 1, 0, [1, 2])])

    def test_what_begins_or_rolls_back_is_no_trouble_of_a_later_rollback(self):
        found = debug("ERROR: Entering JDB_BeginTransaction\tx", "ERROR: Entering JDB_RollbackUser\tx", "Entering JDB_RollbackUser")
        self.assertEqual(findings(found, "rolled-back"), [("", 1, 0, [2]), ("", 1, 0, [3])])

    def test_a_commit_ends_nothing(self):
        found = debug("ERROR: 1", "Entering JDB_CommitUser", "Entering JDB_RollbackUser")
        self.assertEqual(findings(found, "rolled-back"), [("", 1, 0, [1, 3])])

    def test_findings_stand_by_severity_cost_count_subject_and_rule(self):
        def order(rule, subject, count, cost, records=()):
            return e.Finding(rule, subject, count, cost, list(records))
        wanted = [order("first-cause", "z", 1, 9), order("rolled-back", "z", 1, 0), order("call-without-return", "b", 1, 5),
                  order("repeated-statement", "b", 1, 5), order("cache-not-terminated", "c", 9, 4), order("call-without-return", "a", 8, 4),
                  order("cursor-not-closed", "\uff21", 1, 0), order("orphan-return", "\ud83d\ude00", 1, 0),
                  order("orphan-return", "\ud83d\ude00", 1, 0, [4])]
        self.assertEqual(sorted(reversed(wanted), key=e.Finding.order), wanted)

    def test_severities(self):
        self.assertEqual(sorted(rule for rule, severity in e.SEVERITIES.items() if severity == "error"), ["first-cause", "rolled-back"])
        self.assertEqual(sorted(rule for rule, severity in e.SEVERITIES.items() if severity == "warning"),
                         ["cache-not-terminated", "call-without-return", "repeated-statement"])


class Comparisons(unittest.TestCase):
    def test_a_log_compared_with_itself_has_no_differences_and_swapped_logs_negate_them(self):
        def differences(value):
            if isinstance(value, dict):
                return [value["difference"]] if "difference" in value else [d for v in value.values() for d in differences(v)]
            return [d for v in value for d in differences(v)] if isinstance(value, list) else []

        for seed in range(1, 40, 3):
            sides = []
            for one in (seed, seed + 1):
                session = e.ExploredSession()
                session.load_bytes(explore_logs.make(one))
                sides.append(e.Explored(session))
            self.assertEqual(set(differences(e.comparison_json(sides[0], sides[0]))) - {0}, set())
            there, back = e.comparison_json(*sides), e.comparison_json(sides[1], sides[0])
            self.assertEqual(sum(map(abs, differences(there))), sum(map(abs, differences(back))))
            self.assertEqual([-d for d in differences(there)], differences(back))

    def test_rows_are_joined_and_stand_by_the_size_of_their_difference(self):
        base = debug(call("A", 1), returned("A", 1), call("B", 1), (returned("B", 1), 50))
        log = debug(call("A", 1), (returned("A", 1), 30), call("C", 1), (returned("C", 1), 20))
        rows = e.comparison_json(base, log)["functions"]
        self.assertEqual([(r["name"], r["in"], r["total"], r["calls"]["difference"]) for r in rows], [
            ("B", "base", {"base": 50, "log": 0, "difference": -50}, -1), ("A", "both", {"base": 10, "log": 30, "difference": 20}, 0),
            ("C", "log", {"base": 0, "log": 20, "difference": 20}, 1)])

    def test_shapes_are_joined_by_text(self):
        rows = e.comparison_json(debug(ONE_SHAPE, DONE), debug(ONE_SHAPE + "7", (DONE, 30)))["shapes"]
        self.assertEqual(rows, [{"shape": "SELECT X FROM F1 WHERE A = ?", "in": "both", "count": {"base": 1, "log": 1, "difference": 0},
                                 "total": {"base": 10, "log": 30, "difference": 20}, "longest": {"base": 10, "log": 30, "difference": 20},
                                 "p95": {"base": 10, "log": 30, "difference": 20}}])

    def test_caches_are_joined_by_name_and_cursors_by_their_caches_name(self):
        def story(handle, cursor):
            confirm = "hCache:[%s] Nm:[9x]" % handle
            return ["jdeCacheInit Name:[N]", "Created new cache hCache:[%s]" % handle, confirm,
                    "Open Cursor Success hCursor:[%s]" % cursor, confirm]
        rows = e.comparison_json(debug(*story("1A", "1"), *story("1B", "2")), debug(*story("1C", "3")))["findings"]
        self.assertEqual([(r["rule"], r["subject"], r["in"], r["count"]) for r in rows],
                         [("cache-not-terminated", "N", "both", {"base": 2, "log": 1, "difference": -1}),
                          ("cursor-not-closed", "N", "both", {"base": 2, "log": 1, "difference": -1})])

    def test_a_scope_of_one_side_empties_the_other(self):
        base, log = debug(call("A", 1), "x"), explored([line("Entering JDB_x"), line(call("A", 1), 5, "8/8")])
        found = e.comparison_json(base, log, "process:7")
        self.assertEqual([(r["in"], r["calls"]["log"]) for r in found["functions"]], [("base", 0)])
        self.assertEqual([r["in"] for r in found["findings"]], ["both"])
        with self.assertRaises(m.LogError):
            e.comparison_json(base, log, "process:6")


class Exports(unittest.TestCase):
    def test_a_folded_line_is_a_path_and_its_self_time(self):
        found = debug(call("A;B", 1), call("C", 2), returned("C", 2), returned("A;B", 1), "RT: >>>Beginning ER:\t \t", "x")
        self.assertEqual(e.folded_text(e.Profile(found)),
                         "thread:7/1;A:B 20\nthread:7/1;A:B;C 10\nthread:7/1;(no name) 10\n")

    def test_a_folded_path_names_500_frames(self):
        found = debug(*[call("A", level) for level in range(1, 503)], "x")
        paths = e.folded_paths(e.Profile(found))
        self.assertEqual(len(paths), 500)
        deepest = "thread:7/1" + ";A" * 500
        self.assertEqual(paths[deepest], 10 * 3)
        self.assertEqual(paths[deepest[:-2]], 10)

    def test_totals_by_name_count_recursion_once(self):
        found = debug(call("A", 1), call("A", 2), returned("A", 2), returned("A", 1))
        self.assertEqual(e.stream_totals(e.Profile(found)), {"thread:7/1": {"A": (30, 30)}})

    def test_trace_events_bear_record_and_line(self):
        self.assertEqual(e.trace_events(e.Profile(debug(CALL_A, RETURN_A))), [(7, 1, "A", 10, 10, 1, 2)])
        self.assertEqual(e.trace_events(e.Profile(jas(CALL_A, RETURN_A))), [(1, 2, "A", 1000, 1000, 6, 7)])
        self.assertEqual(e.trace_events(e.Profile(debug(CALL_A, RETURN_A), None, 15, 18)), [(7, 1, "A", 15, 3, 1, 2)])

    def test_callgrind_costs_are_self_and_inclusive(self):
        found = debug(call("A", 1), call("B", 2), returned("B", 2), call("B", 2), returned("B", 2), returned("A", 1))
        top, a, b = (e.TOP, e.TOP), ("function", "A"), ("function", "B")
        self.assertEqual(e.callgrind_costs(e.Profile(found)), ({a: 30, b: 20, top: 0}, {(top, a): (1, 50), (a, b): (2, 20)}))


class Hostile(unittest.TestCase):
    def test_twenty_thousand_nested_calls(self):
        count = 20000
        session = e.ExploredSession()
        session.load_bytes(line("Entering JDB_InitUser", 0, "9/9").encode() + b"\n")
        levels = list(range(1, count + 1))
        for kind, text, level in [(m.CALL, call, level) for level in levels] + [(m.RETURN, returned, level) for level in reversed(levels)]:
            record = m.Detail()
            record.index = record.time = len(session.details)
            record.month, record.day, record.kind, record.text = "Sep", 22, kind, text("F%d" % level, level)
            session.details.append(record)
        found = e.Explored(session)
        self.assertEqual((len(found.frames), found.frames[0].total, found.frames[-1].total), (count, 2 * count - 1, 1))
        self.assertEqual(found.findings, [])
        out = e.explore_json(found)
        self.assertEqual(len(e.flat_tree(out["tree"])), count)
        self.assertEqual(e.json_text(out).count('"children": ['), count)
        self.assertEqual(len(e.folded_paths(e.Profile(found))), 500)

    def test_statements_of_many_shapes_below_deep_calls(self):
        texts = [call("F%d" % level, level) for level in range(1, 3001)]
        statements = [text for number in range(1000) for text in ("SELECT C%d FROM F1" % number, DONE)]
        found = debug(*texts, *statements * 10)
        rows = findings(found, "repeated-statement")
        self.assertEqual((len(rows), rows[0][:3]), (1000, ("F3000 > SELECT C0 FROM F1", 10, 100)))


class Output(unittest.TestCase):
    def test_the_json_of_a_small_log(self):
        found = debug(call("A", 1), ONE_SHAPE, DONE, returned("A", 1, 1))
        found.session.path = "x.log"
        self.assertEqual(json.loads(e.json_text(e.explore_json(found))), {
            "log": "x.log", "lines": {"total": 5, "words": 5, "records": 5, "noTime": 0, "noMonth": 0, "filtered": 0},
            "span": {"firstRecord": 0, "length": 40},
            "frames": [{"kind": "function", "name": "A", "record": 1, "stream": "thread:7/1", "parent": None, "start": 10, "end": 40,
                        "closed": True, "result": 1, "self": 20},
                       {"kind": "statement", "name": "SELECT F1", "record": 2, "stream": "thread:7/1", "parent": 0, "start": 20, "end": 30,
                        "closed": True, "result": None, "self": 10}],
            "functions": [{"kind": "function", "name": "A", "calls": 1, "unclosed": 0, "failed": 0, "warned": 1, "total": 30, "self": 20,
                           "shortest": 30, "longest": 30, "p50": 30, "p95": 30},
                          {"kind": "statement", "name": "SELECT F1", "calls": 1, "unclosed": 0, "failed": 0, "warned": 0, "total": 10,
                           "self": 10, "shortest": 10, "longest": 10, "p50": 10, "p95": 10}],
            "edges": [{"caller": None, "callee": {"kind": "function", "name": "A"}, "calls": 1, "total": 30},
                      {"caller": {"kind": "function", "name": "A"}, "callee": {"kind": "statement", "name": "SELECT F1"}, "calls": 1,
                       "total": 10}],
            "tree": [{"kind": "function", "name": "A", "calls": 1, "total": 30, "self": 20, "children": [
                {"kind": "statement", "name": "SELECT F1", "calls": 1, "total": 10, "self": 10, "children": []}]}],
            "shapes": [{"shape": "SELECT X FROM F1 WHERE A = ?", "operation": "SELECT", "table": "F1", "count": 1, "total": 10,
                        "longest": 10, "p95": 10, "firstRecord": 2, "longestRecord": 2, "topCaller": {"kind": "function", "name": "A"}}],
            "findings": []})

    def test_seconds_become_microseconds(self):
        self.assertEqual([e.clock_of_seconds(t) for t in ("0", "1.5", "0.000001", "123456789.123456")], [0, 1500000, 1, 123456789123456])

    def test_the_program_prints_what_the_module_finds(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.log")
            with open(path, "wb") as stream:
                stream.write(explore_logs.make(7))
            program = [sys.executable, "-B", e.__file__]
            out = subprocess.run(program + [path], capture_output=True, check=True).stdout
            self.assertEqual(json.loads(out), e.explore_json(e.explore(path)))
            out = subprocess.run(program + ["--compare", path, path], capture_output=True, check=True).stdout
            self.assertEqual(json.loads(out)["log"], path)
            done = subprocess.run(program + ["--scope", "x", path], capture_output=True)
            self.assertEqual((done.returncode, done.stderr, done.stdout), (1, b"No such scope: x\n", b""))


FIRED = {}


def tearDownModule():
    for rule, count in FIRED.items():
        print("%8d  %s" % (count, rule))


class Logs(unittest.TestCase):
    SEEDS = range(1, 201)

    def test_logs_are_the_same_for_the_same_seed(self):
        self.assertEqual([explore_logs.make(seed) for seed in range(12)], [explore_logs.make(seed) for seed in range(12)])
        self.assertNotEqual(explore_logs.make(3), explore_logs.make(6))

    def test_every_rule_and_finding_fires(self):
        FIRED.update(explore_logs.fired(self.SEEDS))
        self.assertEqual([rule for rule, count in FIRED.items() if count == 0], [])
        self.assertEqual(set(FIRED), set(e.RULES) | {"finding: " + rule for rule in e.SEVERITIES})


if __name__ == "__main__":
    unittest.main()
