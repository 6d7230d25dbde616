#!/usr/bin/env python3
"""The rules that the reference model has to keep, each by value."""

import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import carvelot_model as m  # noqa: E402
import near_misses  # noqa: E402
import odd_logs  # noqa: E402


def dash(clock, text, owner="7/1", label="L"):
    """A debug line of the dash form with one tab ahead of its text."""
    return "Sep 22 %s - %s %s\t%s" % (clock, owner, label, text)


FIRST = dash("10:00:00.000000", "Entering JDB_InitUser")


def load(lines, **options):
    session = m.Session(**options)
    if isinstance(lines, bytes):
        data = lines
    else:
        data = b"".join((line if isinstance(line, bytes) else line.encode("utf-8")) + b"\n" for line in lines)
    session.load_bytes(data)
    return session


def debug(*lines, **options):
    return load([FIRST] + list(lines), **options)


def one(line, **options):
    """The record of one debug line behind the line that teaches the tab."""
    return debug(line, **options).details[-1]


def kind(text):
    return one(dash("10:00:00.000001", text)).kind


def jas_line(text, clock="12:00:00,000", level="APP   ", user="U"):
    return "29 Jun 2016 %s [%s] %s%s- [JDBJ] %s" % (clock, level, user, " " if user else "", text)


def jas(*lines, **options):
    return load(["29 Jun 2016 12:00:00,000 [APP   ] - [BASE] start"] * 6 + list(lines), **options)


def jas_records(*lines):
    return jas(*lines).details[6:]


def tree_text(session, scope):
    """A tree as indented lines: image, then text."""
    out = []

    def walk(nodes, depth):
        for node in nodes:
            out.append("%s%d %s" % ("  " * depth, node["image"], node["text"]))
            walk(node["children"], depth + 1)

    walk(m.tree_json(session, scope)["nodes"], 0)
    return out


class Reading(unittest.TestCase):
    def test_an_empty_file_fails_detection(self):
        with self.assertRaises(m.LogError) as caught:
            load(b"")
        self.assertEqual(str(caught.exception), "Error: Cannot determine tracing log format")

    def test_a_missing_file_cannot_be_opened(self):
        with self.assertRaises(m.LogError) as caught:
            m.Session().load("/nonexistent/x.log")
        self.assertEqual(str(caught.exception), "Failed to open file.")

    def test_analyze_after_emptying_leaves_an_empty_session(self):
        session = debug(dash("10:00:01.0", "x"))
        session.tab_count = 0
        with self.assertRaises(m.LogError):
            session.load_bytes(b"")
        self.assertEqual(session.details, [])
        self.assertEqual(session.processes, [])

    def test_a_line_without_a_terminator_is_no_line(self):
        self.assertEqual(m.read_lines(b"only line"), [])
        self.assertEqual(m.read_lines(b"a\nb"), [b"a"])
        self.assertEqual(len(load((FIRST + "\n" + FIRST).encode()).details), 1)

    def test_both_line_ends_end_a_line(self):
        self.assertEqual(m.read_lines(b"a\r\nb\rc\n"), [b"a", b"", b"b", b"c"])

    def test_a_line_of_8192_bytes_ends_without_a_look_at_the_next_byte(self):
        self.assertEqual([len(x) for x in m.read_lines(b"x" * 8191 + b"\n")], [8191])
        self.assertEqual([len(x) for x in m.read_lines(b"x" * 8192 + b"\n")], [8192, 0])
        self.assertEqual([len(x) for x in m.read_lines(b"x" * 8193 + b"\n")], [8192, 1])
        self.assertEqual([len(x) for x in m.read_lines(b"x" * 8192)], [8192])

    def test_the_rest_of_a_long_line_is_parsed_on_its_own(self):
        head = dash("10:00:01.0", "")
        session = debug(head + "x" * (8192 - len(head)) + dash("10:00:02.0", "SELECT 1 FROM A B"))
        self.assertEqual([len(r.text) for r in session.details[1:]], [8192 - len(head), 17])
        self.assertEqual(session.details[2].kind, m.SQL)

    def test_a_process_filter_leaves_a_jas_log_empty(self):
        session = jas(process_filter=7)
        self.assertEqual((session.details, session.processes, session.users), ([], [], {}))
        self.assertEqual(session.log_format, m.FORMAT_JAS)

    def test_a_nul_ends_the_text(self):
        self.assertEqual(one(dash("10:00:01.0", "abc\0def")).text, "abc")

    def test_a_line_is_utf8_as_a_whole_or_windows_1252(self):
        head = dash("10:00:01.0", "").encode()
        self.assertEqual(one(head + b"\xc3\xa9").text, "\u00e9")
        self.assertEqual(one(head + b"\xc3\xa9\xe9").text, "\u00c3\u00a9\u00e9")
        self.assertEqual(one(head + b"\x80\x81\x9d").text, "\u20ac\x81\x9d")
        self.assertEqual(one(head + b"\xed\xa0\x80").text, "\u00ed\u00a0\u20ac")

    def test_a_character_outside_the_basic_plane_is_two_columns(self):
        self.assertEqual(m.units("\U0001F600"), "\ud83d\ude00")
        self.assertEqual(m.plain("\ud83d\ude00"), "\U0001F600")
        self.assertEqual(m.plain("\ude00x"), "\uFFFDx")


class Times(unittest.TestCase):
    def test_elapsed_of_equal_times_is_zero(self):
        self.assertEqual(m.elapsed_seconds(5, 5), 0.0)

    def test_elapsed_from_a_zero_time_is_zero(self):
        self.assertEqual(m.elapsed_seconds(5000000, 0), 0.0)

    def test_a_time_one_second_earlier_is_almost_thirteen_hours(self):
        self.assertEqual(m.elapsed_seconds(1000000, 2000000), m.f32(46798.999999))
        self.assertEqual(m.elapsed_seconds(1000000, 2000000), 46799.0)

    def test_across_midnight_is_enormous(self):
        value = m.elapsed_seconds(1, 86399000000)
        self.assertTrue(1.84e13 < value < 1.85e13, value)

    def test_a_fraction_of_three_digits_is_not_scaled(self):
        self.assertEqual(one(dash("10:00:00.250", "x")).microsecond, 250)

    def test_at_midnight_a_gap_is_skipped_and_a_duration_is_zero(self):
        session = debug(dash("00:00:00.000000", "SELECT A FROM B C", "8/1"),
                        dash("00:00:09.000000", "Exiting DBPerformRequest", "8/1"))
        self.assertEqual(session.details[1].time, 0)
        self.assertEqual(session.details[1].duration, 0.0)
        self.assertEqual(session.gaps, [])

    def test_integers_become_floats_in_one_rounding(self):
        self.assertEqual(m.f32_from_int((1 << 60) + (1 << 36) + 1), float((1 << 60) + (1 << 37)))
        self.assertEqual(m.f32_from_int(16777217), 16777216.0)
        self.assertEqual(m.f32_from_int(-16777219), -16777220.0)


class Detection(unittest.TestCase):
    def fails(self, lines):
        with self.assertRaises(m.LogError):
            load(lines)

    def test_a_sign_at_column_0_is_no_sign(self):
        self.fails(["Entering JDB_InitUser"] * 3)

    def test_of_a_crlf_file_text_line_2501_is_the_last_looked_at(self):
        sign = b"x \tEntering JDB_InitUser\r\n"
        self.assertEqual(load(b"x\r\n" * 2500 + sign).tab_count, 1)
        with self.assertRaises(m.LogError):
            load(b"x\r\n" * 2501 + sign)

    def test_5001_lines_are_looked_at(self):
        sign = "x \tEntering JDB_InitUser"
        self.assertEqual(load([""] * 5000 + [sign]).tab_count, 1)
        self.fails([""] * 5001 + [sign])

    def test_five_lines_of_jas_shape_fail_and_six_succeed(self):
        line = jas_line("x")
        self.fails([line] * 5)
        self.assertEqual(load([line] * 6).log_format, m.FORMAT_JAS)

    def test_the_jas_test_looks_only_at_the_bracket_of_the_fifth_token(self):
        self.assertEqual(load(["a b  c d [e"] * 6).log_format, m.FORMAT_JAS)
        self.fails(["a b c d\t[e"] * 6)

    def test_a_ube_line_alone_makes_a_debug_log_without_text_columns(self):
        session = load(["--UBE--[1] Started", dash("10:00:00.1", "SELECT A FROM B C")])
        self.assertEqual((session.tab_count, session.text_column), (0, 0))
        self.assertEqual(session.details[1].text, "")

    def test_one_debug_sign_makes_a_mixed_log_a_debug_log(self):
        session = load([jas_line("x")] * 8 + [FIRST])
        self.assertEqual(session.log_format, m.FORMAT_DEBUG)

    def test_the_last_line_with_the_sign_decides_the_tab_count(self):
        self.assertEqual(load(["x\t\tEntering JDB_A", "x\tEntering JDB_B"]).tab_count, 1)

    def test_no_tab_fixes_the_text_column(self):
        session = load(["Sep 22 10:00:00 ** 7/1 Entering JDB_A"])
        self.assertEqual((session.tab_count, session.text_column), (0, 23))
        self.assertEqual(session.details[0].text, "Entering JDB_A")

    def test_a_tab_just_ahead_of_the_sign_leaves_the_column_open(self):
        self.assertEqual(load(["x\tEntering JDB_A"]).text_column, 0)

    def test_a_tab_far_ahead_and_none_behind_fixes_the_column_too(self):
        session = load(["Sep 22\t10:00:00 ** 7/1 Entering JDB_A"])
        self.assertEqual((session.tab_count, session.text_column), (1, 23))


class DebugLines(unittest.TestCase):
    def test_a_short_fraction_is_the_number_as_written(self):
        r = one("Jun 3 12:00:01.5 - 1/2 x")
        self.assertEqual((r.microsecond, r.process, r.thread, r.label), (5, 1, 2, "x"))

    def test_a_third_token_that_is_no_time_gives_no_record(self):
        self.assertEqual(len(debug("a b --UBE--[1]").details), 1)

    def test_a_ube_line_of_two_tokens_is_a_record(self):
        r = load(["--UBE--[1] Started"]).details[0]
        self.assertEqual((r.ube, r.ube_level, r.text, r.process, r.thread, r.time, r.hour),
                         (True, 1, "--UBE--[1] Started", 0, 0, 0, 0))
        self.assertEqual(r.kind, m.UBE)

    def test_a_ube_line_is_dropped_by_a_filter(self):
        session = debug("--UBE--[1] Started", process_filter=7)
        self.assertEqual(len(session.details), 1)
        self.assertTrue(session.ube_log)

    def test_a_line_with_too_few_tabs_restarts_its_search(self):
        session = load(["x\ty\tEntering JDB_A", dash("10:00:00.1", "text")])
        self.assertEqual((session.tab_count, session.details[-1].text), (2, ""))
        session = load(["x\ty\tz\tEntering JDB_A", dash("10:00:00.1", "text")])
        self.assertEqual((session.tab_count, session.details[-1].text), (3, "text"))

    def test_an_unknown_month_is_kept_as_month(self):
        r = one(dash("10:00:01.0", "x").replace("Sep", "Foo"))
        self.assertEqual((r.month, r.text), ("MONTH", "x"))

    def test_a_piece_of_the_month_table_passes(self):
        self.assertEqual(one(dash("10:00:01.0", "x").replace("Sep", "anF")).month, "anF")

    def test_the_first_blank_dash_blank_fixes_the_column_for_all_later_lines(self):
        session = debug(dash("10:00:01.000000", " - first"), dash("10:00:02.000000", "abcdef", "123456/1"))
        column = len(dash("10:00:01.000000", " - "))
        self.assertEqual(session.text_column, column)
        self.assertEqual([r.text for r in session.details[1:]],
                         ["first", dash("10:00:02.000000", "abcdef", "123456/1")[column:].lstrip("\t")])

    def test_the_marker_may_be_far_along_the_line(self):
        r = one("Sep 22 10:00:01.5 any number of words ** 7/3 \tOn x")
        self.assertEqual((r.process, r.thread, r.label, r.kind), (7, 3, "", m.ON))

    def test_the_label_runs_to_the_next_tab(self):
        self.assertEqual(one("Sep 22 10:00:01.5 - 7/3 WRK:Call Object \tx").label, "WRK:Call Object ")
        self.assertEqual(one("Sep 22 10:00:01.5 - 7/3 \tText").label, "Text")
        self.assertEqual(one("Sep 22 10:00:01.5 - 7/3\tText").label, "Text")

    def test_a_line_without_a_time_is_a_record_of_process_0(self):
        r = one("two words")
        self.assertEqual((r.process, r.thread, r.time, r.month, r.day), (0, 0, 0, "MONTH", 0))

    def test_numbers_saturate_and_negative_ids_wrap(self):
        r = one("Sep x 99999999999:-99999999999:+1.3 ** -5/99999999999 \tx")
        self.assertEqual((r.day, r.hour, r.minute, r.second), (0, 2147483647, -2147483648, 1))
        self.assertEqual((r.process, r.thread), (4294967291, 2147483647))
        self.assertEqual(r.time, ((2147483647 * 60 - 2147483648) * 60 + 1) * 1000000 + 3)

    def test_text_is_trimmed_of_blanks_and_tabs_left_and_blanks_right(self):
        self.assertEqual(one(dash("10:00:01.0", " \t x\t  ")).text, "x\t")

    def test_a_line_shorter_than_the_column_has_no_text(self):
        session = load(["Sep 22 10:00:00 ** 7/1 Entering JDB_A", "Sep 22 10:00:01 **"])
        self.assertEqual(session.details[1].text, "")


class Sql(unittest.TestCase):
    def check(self, text, table, operation):
        r = one(dash("10:00:00.1", text))
        self.assertEqual((r.table, r.sql_operation), (table, operation))

    def test_tables(self):
        self.check("SELECT * FROM F0101 WHERE AN8 = 1", "F0101", 1)
        self.check("SELECT T0.AN8 FROM F0101 T0 WHERE T0.AN8 = 1", "F0101 T0", 1)
        self.check("SELECT T0.AN8 FROM F0101 T0", "F0101", 1)
        self.check("SELECT T0.A FROM F0101 T0, F0116 T1 WHERE X", "F0101 T0, F0116 T1", 1)
        self.check("UPDATE F0101 SET X = 1", "F0101", 2)
        self.check("INSERT INTO F0101(AN8) VALUES (1)", "F0101", 3)
        self.check("DELETE FROM F0101", "F0101", 4)
        self.check("SELECT COUNT(*)", "CT", 1)
        self.check("DROP TABLE X", "", 0)
        self.check("[JDBOLEDB] SELECT A FROM B", "", 0)
        self.check("SELECT FROMDATE FROM F1 WHERE A", "ATE", 1)

    def test_tables_that_differ_in_case_are_one_under_the_first_spelling(self):
        s = debug(dash("10:00:00.1", "SELECT A FROM f0101 X"), dash("10:00:00.2", "UPDATE F0101 SET"),
                  dash("10:00:00.3", "ALTER TABLE F1"))
        tables = [(t.name, t.selects, t.inserts, t.updates, t.deletes) for t in s.processes[0].sql.tables]
        self.assertEqual(tables, [("f0101", 1, 0, 1, 0), ("", 0, 0, 0, 0)])


class JasLines(unittest.TestCase):
    def test_a_line_without_a_user_is_of_system_level(self):
        r = jas_records("15 Jan 2024 09:12:03,250 [WARN  ] - [BASE] x")[0]
        self.assertEqual((r.level, r.kind, r.user, r.source, r.text, r.microsecond, r.month, r.day),
                         ("WARN", m.WARN, "SYSTEM LEVEL", "BASE", "x", 250000, "Jan", 15))

    def test_of_two_user_tokens_the_second_wins(self):
        self.assertEqual(jas_records(jas_line("x", user="A B"))[0].user, "B")

    def test_a_line_without_a_dash_uses_up_its_words(self):
        r = jas_records("15 Jan 2024 09:12:03,250 [APP   ] these are all words")[0]
        self.assertEqual((r.user, r.text, r.source), ("words", "", ""))

    def test_a_stack_trace_line_is_no_record(self):
        self.assertEqual(jas_records("at Foo.bar(Foo:12)", "\tat x"), [])

    def test_a_line_that_ends_early_has_a_zero_time(self):
        r = jas_records("15 Jan")[0]
        self.assertEqual((r.day, r.month, r.time, r.text), (15, "Jan", 0, ""))

    def test_milliseconds_that_overflow_saturate(self):
        self.assertEqual(jas_records("15 Jan 2024 12:00:00,9999999 [X] - [B] y")[0].microsecond, 2147483647)
        self.assertEqual(jas_records("15 Jan 2024 12:00:00,-9999999 [X] - [B] y")[0].microsecond, -2147483648)

    def test_two_blanks_ahead_of_the_bracket_empty_the_level(self):
        r = jas_records("15 Jan 2024 12:00:00,250  [WARN  ] - [BASE] x")[0]
        self.assertEqual((r.level, r.kind, r.user), ("", m.NONE, "]"))

    def test_parameters(self):
        self.assertEqual(m.parse_param("Param2: 1000_Types.DECIMAL,"), ("1000", 2))
        self.assertEqual(m.parse_param("Param1: a.b_Types.VARCHAR,"), ("'a.b'", 1))
        self.assertEqual(m.parse_param("Param1: a_Types.b_Types.LONGVARCHAR , "), ("'a'", 1))
        self.assertEqual(m.parse_param("Param1: 5"), ("", 0))
        self.assertEqual(m.parse_param("Param 5_Types.VARCHAR"), ("''", 0))


class Classification(unittest.TestCase):
    def test_calls_in_a_debug_log(self):
        self.assertEqual(kind("Calling Business function X"), m.CALL)
        self.assertEqual(kind("Calling legacy API"), m.NONE)
        self.assertEqual(kind("Calling sqlplus.exe"), m.NONE)
        self.assertEqual(kind("Calling legacy API now"), m.CALL)
        self.assertEqual(kind("Calling"), m.NONE)
        self.assertEqual(kind("Calling server component"), m.CALL)

    def test_other_debug_words(self):
        for text, wanted in [("ERRORS found", m.ERROR), ("ERROR", m.NONE), ("JDB", m.JDB_ERROR), ("JDBanything", m.JDB_ERROR),
                             ("x jdeCache JDB3100001", m.JDB_ERROR), ("CAC0001111 x", m.JDB_ERROR), ("CAC0001112 x", m.NONE),
                             ("a Found existing cache", m.CACHE), ("hCursor:", m.CACHE), ("Exiting DBPerformRequest", m.SQL_DONE),
                             ("[CARVELOT MESSAGE]x", m.MESSAGE), ("[CARVELOT]", m.NONE), ("IN->[ 1", m.PARM_IN), ("IN->[1", m.NONE),
                             ("OUT->[ 1", m.PARM_OUT), ("On x", m.ON), ("[JDBOLEDB] x", m.NONE), ("[JDBOLEDB] SELECT", m.SQL),
                             ("SELECT", m.NONE), ("ALTER x", m.SQL), ("RT: jdeCache", m.NONE)]:
            self.assertEqual(kind(text), wanted, text)

    def test_return_codes(self):
        for text, code in [("Return value is 1 for X", 1), ("Return value is 12 for X", 1), ("Return value is x for X", 0),
                           ("Return x", 0), ("Return value is 9", 9)]:
            self.assertEqual(one(dash("10:00:00.1", text)).return_code, code)

    def test_event_rules(self):
        self.assertEqual(m.er_rule("RT: >>>Beginning ER:\tOK\tForm:W4210A\t"), (m.EVENT_START, "Form: W4210A - OK"))
        self.assertEqual(m.er_rule("RT: >>>Beginning ER:\tOK\tForm: \t"), (m.EVENT_START, "OK"))
        self.assertEqual(m.er_rule("RT: >>>Beginning ER:\tOK"), (m.EVENT_START, ""))
        self.assertEqual(m.er_rule("RT: >>>Beginning ER:\tOK\tForm:W"), (m.EVENT_START, "OK"))
        self.assertEqual(m.er_rule("RT: <<<Finished  ER:\t"), (m.EVENT_END, ""))
        self.assertEqual(m.er_rule("RT: <<<Finished ER:\t"), (m.NONE, ""))
        self.assertEqual(m.er_rule("RT: >>>Beginning ER:"), (m.NONE, ""))

    def test_in_a_jas_log(self):
        for text, wanted in [("x Calling server component", m.NONE), ("Calling server component y", m.NONE), ("Calling x y", m.CALL),
                             ("JDB3100001 x", m.NONE), ("P, Event Starts :x", m.EVENT_START), ("P, Event Ends:x", m.EVENT_END),
                             ("x at ER Line 5", m.ER_LINE), ("Object Called: A.B", m.OBJECT_CALL), ("hCache:", m.CACHE)]:
            self.assertEqual(jas_records(jas_line(text))[0].kind, wanted, text)

    def test_a_prepared_statement_is_the_record_of_its_last_parameter(self):
        r = jas_records(jas_line("SELECT A FROM F1 WHERE B = ? AND C = ?"), jas_line("Param1: x_Types.VARCHAR,", "12:00:00,200"),
                        jas_line("Object Called: A.B", "12:00:00,300"), jas_line("Param2: 5_Types.DECIMAL,", "12:00:00,700"))
        self.assertEqual([x.kind for x in r], [m.NONE, m.NONE, m.NONE, m.SQL])
        self.assertEqual(r[0].text, "SELECT A FROM F1 WHERE B = ?1 AND C = ?2")
        self.assertEqual(r[3].text, "SELECT A FROM F1 WHERE B = 'x' AND C = 5")
        self.assertEqual((r[3].table, r[3].hour, r[3].microsecond), ("F1", 12, 700000))

    def test_a_level_decides_before_the_statement(self):
        r = jas_records(jas_line("SELECT A FROM F1 WHERE B = ?"), jas_line("SELECT ? ?", level="WARN  "), jas_line("Param1: 1_Types.INT"))
        self.assertEqual([x.kind for x in r], [m.NONE, m.WARN, m.SQL])

    def test_the_leftmost_mark_that_begins_with_the_index_is_replaced(self):
        marks = ", ".join("?" * 10)
        r = jas_records(jas_line("INSERT INTO F1 VALUES(%s)" % marks), jas_line("Param10: z_Types.INT"), jas_line("Param1: a_Types.INT"),
                        jas_line("Param1: b_Types.INT"), *[jas_line("Param%d: %d_Types.INT" % (i, i)) for i in range(2, 9)])
        self.assertEqual(r[-1].text, "INSERT INTO F1 VALUES(a, 2, 3, 4, 5, 6, 7, 8, ?9, z)")
        # Once ?1 is used up, "?1" is found inside ?10.
        r = jas_records(jas_line("INSERT INTO F1 VALUES(%s)" % marks), *[jas_line("Param1: %s_Types.INT" % c) for c in "abcdefghij"])
        self.assertTrue(r[-1].text.endswith("?9, b0)"), r[-1].text)

    def test_the_pending_statement_outlives_a_session(self):
        classifier = m.JasClassifier()
        jas(jas_line("SELECT A FROM B WHERE C = ?"), classifier=classifier)
        session = jas(jas_line("Param1: 1_Types.INT"), classifier=classifier)
        self.assertEqual(session.details[6].text, "SELECT A FROM B WHERE C = 1")


class Commit(unittest.TestCase):
    def test_a_gap_has_to_be_above_the_threshold(self):
        self.assertEqual(debug(dash("10:00:01.000000", "x")).gaps, [])
        self.assertEqual(len(debug(dash("10:00:01.000001", "x"), threshold=0.5).gaps), 1)

    def test_both_lines_beside_a_gap_stay(self):
        s = debug(dash("10:00:02.5", "x"))
        self.assertEqual([r.kind for r in s.processes[0].threads[0].details], [m.GAP, m.GAP])
        self.assertEqual(m.indices(s.gaps), [1])
        self.assertEqual(s.details[1].gap, m.f32(2.000005))
        self.assertEqual(s.details[0].gap, 0.0)

    def test_a_record_of_interest_keeps_its_kind_after_a_gap(self):
        r = one(dash("10:00:03.000000", "On x"))
        self.assertEqual((r.kind, r.gap), (m.ON, 3.0))

    def test_the_first_record_of_a_thread_makes_no_gap(self):
        self.assertEqual(debug(dash("10:00:09.0", "x", "7/2")).gaps, [])

    def test_of_lines_without_interest_only_the_last_stays(self):
        s = debug(dash("10:00:00.1", "a"), dash("10:00:00.2", "b"))
        self.assertEqual(m.indices(s.processes[0].threads[0].details), [2])
        self.assertEqual(len(s.details), 3)

    def test_a_statement_without_its_end_is_not_measured(self):
        s = debug(dash("10:00:00.1", "SELECT A FROM B C"), dash("10:00:09.1", "x"))
        self.assertEqual((s.details[1].duration, s.processes[0].sql.long_tasks), (0.0, []))

    def test_a_second_end_measures_the_statement_again(self):
        s = debug(dash("10:00:00.000000", "SELECT A FROM B C"), dash("10:00:02.000000", "Exiting DBPerformRequest"),
                  dash("10:00:05.000000", "Exiting DBPerformRequest"))
        self.assertEqual(s.details[1].duration, 5.0)
        self.assertEqual(m.indices(s.processes[0].sql.long_tasks), [1, 1])
        self.assertEqual(m.indices(s.processes[0].threads[0].sql.long_tasks), [1, 1])
        self.assertEqual(m.long_task_rows(s, s.processes[0].bsfn, s.processes[0].sql),
                         [("7/1", "SQL", "5.000000", "SELECT A FROM B C")] * 2)

    def test_without_cache_analysis_the_record_still_enters_the_list(self):
        s = debug(dash("10:00:00.1", "Created new cache hCache:[1]"), dash("10:00:00.2", "hCache:[1] Nm:[2]"), cache_analysis=False)
        self.assertEqual(m.indices(s.processes[0].threads[0].details), [1, 2])
        self.assertEqual(s.processes[0].cache.caches, [])

    def test_midnight_is_one_huge_gap(self):
        s = load([dash("23:59:59.000000", "Entering JDB_A"), dash("00:00:01.000000", "x"), dash("00:00:01.5", "x")])
        self.assertEqual(m.indices(s.gaps), [1])
        self.assertGreater(s.gaps[0].gap, 1.8e13)
        self.assertEqual((s.processes[0].start_time, s.processes[0].end_time), (86399000000, 1000005))
        self.assertEqual(s.gaps[0].gap, m.f32(m.f32(float((1 << 64) - 39598000001)) / 1000000))
        self.assertTrue(m.thread_tree(s)[0][0].startswith("Process - 7 (184467440"))

    def test_a_failed_return_joins_the_errors(self):
        s = debug(*[dash("10:00:00.1", "Return value is %d for X. y" % c) for c in (0, 1, 2)], dash("10:00:00.1", "ERROR x"),
                  dash("10:00:00.1", "JDB9900401 - y"))
        self.assertEqual(m.indices(s.processes[0].errors), [2, 3, 4, 5])
        self.assertEqual([row[1] for row in m.error_rows(s, s.processes[0].errors)], ["ERROR", "GBR Error", "BSFN Error", "BSFN Warning"])

    def test_a_jas_statement_and_object_call_last_until_the_next_line_of_the_user(self):
        s = jas(jas_line("SELECT A FROM B C", "12:00:01,000"), jas_line("x", "12:00:02,000", user="V"),
                jas_line("Object Called: P.W", "12:00:04,000"), jas_line("y", "12:00:05,000"), jas_line("z", "12:00:09,000"))
        u = s.users["U"]
        self.assertEqual((s.details[6].duration, s.details[8].duration), (3.0, 1.0))
        self.assertEqual((m.indices(u.sql.long_tasks), u.bsfn.long_tasks), ([6], []))
        self.assertEqual(len(s.users["SYSTEM LEVEL"].details), 6)

    def test_user_errors_stand_newest_first(self):
        s = jas(jas_line("a", level="WARN  "), jas_line("b", level="SEVERE"), jas_line("ERROR c"))
        self.assertEqual(m.indices(s.users["U"].errors), [7, 6])
        self.assertEqual([row[2] for row in m.error_rows(s, s.users["U"].errors)], ["a", "b"])


class Functions(unittest.TestCase):
    def call(self, clock, name="F", level=2, owner="7/1"):
        return dash(clock, "Calling Business function %s from X (BSFNLevel = %s)" % (name, level), owner)

    def back(self, clock, name="F", level=2, owner="7/1", code=0):
        return dash(clock, "Return value is %d for %s. (BSFNLevel = %s)" % (code, name, level), owner)

    def test_one_return_closes_all_open_calls_of_its_level(self):
        s = debug(self.call("10:00:00.000000"), self.call("10:00:01.000000"), self.call("10:00:03.000000"), self.back("10:00:06.000000"))
        f = s.processes[0].bsfn.functions["F"]
        self.assertEqual([i.duration for i in f.instances], [6000000, 5000000, 3000000])
        self.assertEqual((f.total, f.shortest, f.longest, f.location), (14000000, 3000000, 6000000, "Local"))
        self.assertEqual(m.bsfn_rows(s.processes[0].bsfn), [("F", "3", "14.000000", "3.000000", "6.000000", "4.666666")])
        self.assertEqual(m.indices(s.processes[0].bsfn.long_tasks), [1, 2, 3])

    def test_the_process_closes_the_calls_of_all_its_threads(self):
        s = debug(self.call("10:00:00.1"), self.call("10:00:00.2", owner="7/2"), self.back("10:00:00.3", owner="7/2"))
        self.assertEqual([i.end_time != 0 for i in s.processes[0].bsfn.functions["F"].instances], [True, True])
        self.assertEqual([i.end_time != 0 for i in s.processes[0].threads[0].bsfn.functions["F"].instances], [False])

    def test_a_call_across_midnight_is_enormous(self):
        s = load([dash("23:59:58.0", "Entering JDB_A"), self.call("23:59:59.000000"), self.back("00:00:01.000000")])
        f = s.processes[0].bsfn.functions["F"]
        self.assertEqual(f.total, (1000000 - 86399000000 + 3850327039) % (1 << 64))
        self.assertTrue(1.8e13 < float(m.bsfn_rows(s.processes[0].bsfn)[0][2]) < 1.9e13)

    def test_a_return_without_a_level_closes_level_0_only(self):
        s = debug(self.call("10:00:00.1"), self.call("10:00:00.2", level=0), dash("10:00:00.3", "Return value is 0 for F. x"))
        self.assertEqual([i.end_time != 0 for i in s.processes[0].bsfn.functions["F"].instances], [False, True])

    def test_a_call_at_time_0_is_never_measured(self):
        s = load([dash("00:00:00.000000", "Entering JDB_A"), self.call("00:00:00.000000"), self.back("00:00:05.000000")])
        f = s.processes[0].bsfn.functions["F"]
        self.assertEqual((f.instances[0].duration, f.total, s.processes[0].bsfn.long_tasks), ((1 << 64) - 1, 0, []))
        self.assertEqual(m.bsfn_rows(s.processes[0].bsfn)[0][2:], ("0.000000",) * 4)

    def test_a_call_of_0_microseconds_never_stays_the_shortest(self):
        lines = []
        for start, end in ((1, 1), (10, 15), (20, 23)):
            lines += [self.call("10:00:00.%06d" % start), self.back("10:00:00.%06d" % end)]
        self.assertEqual(debug(*lines).processes[0].bsfn.functions["F"].shortest, 3)

    def test_a_duration_at_the_threshold_is_no_long_task(self):
        s = debug(self.call("10:00:00.000000"), self.back("10:00:01.000000"))
        self.assertEqual((s.details[1].duration, s.processes[0].bsfn.long_tasks), (1.0, []))

    def test_object_names(self):
        def name(text):
            r = m.Detail()
            r.text = text
            return m.BsfnAnalysis(1.0).object_name(r)
        self.assertEqual(name("Object Called: a.b.c"), "b.c")
        self.assertEqual(name("Object Called: abc"), "abc")
        self.assertEqual(name("12 Object Called: abc"), "d: abc")

    def test_names_and_levels(self):
        s = debug(dash("10:00:00.1", "Return value is 0 for F4211. (BSFNLevel = 12)"), self.call("10:00:00.2", "F4211", 12),
                  self.back("10:00:00.3", "F4211", 12), dash("10:00:00.4", "Calling Business function Nothing"),
                  dash("10:00:00.5", "Calling Business function X y (BSFNLevel = -3"))
        f = s.processes[0].bsfn.functions
        self.assertEqual(sorted(f), ["", "F4211", "X"])
        self.assertEqual((f["F4211"].location, f["F4211"].instances[0].level, f["F4211"].instances[0].end_time != 0), ("", 12, True))
        self.assertEqual(f["X"].instances[0].level, -3)

    def test_times_in_rows_are_wider_than_eight_where_they_have_to_be(self):
        s = debug(self.call("10:00:00.000000"), self.back("10:00:00.500000"), self.call("10:00:01.000000"), self.back("10:00:13.500000"))
        self.assertEqual(m.bsfn_rows(s.processes[0].bsfn)[0][1:], ("2", "13.000000", "0.500000", "12.500000", "6.500000"))


class Caches(unittest.TestCase):
    def caches(self, *texts):
        return debug(*[dash("10:00:00.%06d" % (i + 1), t) for i, t in enumerate(texts)]).processes[0].cache.caches

    def test_a_new_cache_is_confirmed_without_regard_to_case(self):
        (c,) = self.caches("Entering jdeCacheInit - Name:[Orders]", "Created new cache - hCache:[1A]", "hCache:[1a] Nm:[9Orders]")
        self.assertEqual((c.name, c.handle, c.instance, c.process, c.instance_count), ("Orders", "1A", "9Orders", 7, 1))
        self.assertEqual([(o.text, o.op, o.image, o.record.index) for o in c.operations], [("10:00:00.000002    Cache Init (New)", 1, 4, 2)])

    def test_an_unknown_handle_names_a_new_cache(self):
        (c,) = self.caches("Found existing cache, total references:[2]", "hCache:[77] Nm:[x]")
        self.assertEqual((c.name, c.handle, c.instance, c.operations[0].op), ("77", "77", "x", 2))

    def test_a_fetch_without_a_name_behind_it_failed(self):
        (c,) = self.caches("Found existing cache", "hCache:[1] Nm:[x]", "Open Cursor Success hCursor:[C]", "hCache:[1] Nm:[x]",
                           "jdeCacheFetch hCursor:[C]", "jdeCacheAdd", "hCache:[1] Nm:[x]")
        self.assertEqual([o.text[19:] for o in c.operations],
                         ["Cache Init (Existing)", "Open Cursor [C]", "Fetch Failed.  Cursor [C]", "Cache Add"])
        (c,) = self.caches("Found existing cache", "hCache:[1] Nm:[x]", "jdeCacheFetch hCursor:[C]", "hCursor: x")
        self.assertEqual(len(c.operations), 1)

    def test_an_update_makes_the_cache_known_and_is_not_recorded(self):
        (c,) = self.caches("jdeCacheUpdate", "hCache:[1] Nm:[x]")
        self.assertEqual((c.name, c.operations), ("1", []))

    def test_an_unconfirmed_add_is_lost(self):
        self.assertEqual(self.caches("jdeCacheAdd", "hCache:[1]", "hCache:[1] Nm:[x]"), [])

    def test_a_close_finds_the_older_of_two_cursors_with_one_handle(self):
        confirm = "hCache:[1] Nm:[x]"
        (c,) = self.caches("Open Cursor Success hCursor:[C]", "hCursor: " + confirm, "Open Cursor Success hCursor:[C]", confirm,
                           "jdeCacheCloseCursor hCursor:[C]", confirm, "jdeCacheCloseCursor hCursor:[C]", confirm)
        self.assertEqual([None if k.close is None else k.close.index for k in c.cursors], [7, None])

    def test_a_line_with_fetch_and_add_ends_as_an_add_with_a_new_cursor(self):
        (c,) = self.caches("jdeCacheFetch jdeCacheAdd hCursor:[Q]", "hCache:[1] Nm:[x]")
        self.assertEqual([o.op for o in c.operations], [3])

    def test_a_reset_closes_nothing(self):
        confirm = "hCache:[1] Nm:[x]"
        (c,) = self.caches("Open Cursor Success hCursor:[C]", confirm, "jdeCacheResetCursor hCursor:[C]", confirm)
        self.assertEqual((c.operations[1].text[19:], c.operations[1].image, c.cursors[0].close), ("Reset Cursor [C]", 8, None))

    def test_terminated_caches_stay(self):
        confirm = "hCache:[1] Nm:[x]"
        (c,) = self.caches("jdeCacheTerminate", confirm, "jdeCacheTerminateAll", confirm, "jdeCacheDeleteAll", confirm)
        self.assertEqual(([o.op for o in c.operations], c.instance_count), ([9, 10, 12], 0))

    def test_malformed_values(self):
        self.assertEqual(m.between("0123456789]", "hCache:["), "789")
        self.assertEqual(m.between("hCache:[x", "hCache:["), "")

    def test_analysis_can_be_off(self):
        s = debug(dash("10:00:00.1", "Created new cache hCache:[1]"), cache_analysis=False)
        self.assertEqual(s.processes[0].cache.caches, [])


class GapsAndFind(unittest.TestCase):
    def test_exports(self):
        s = debug(dash("10:00:02.000000", 'say "hi"'), dash("10:00:03.500000", "SELECT A FROM B C"), dash("10:00:02.500000", "x"))
        back = "%08.6f" % m.elapsed_seconds(36002500000, 36003500000)
        self.assertEqual(s.export_gaps("csv"),
                         'Proc/Thread,Timestamp,Gap Duration,Message\n'
                         '"7/1",10:00:02.500000    ,' + back + ',"x"\n'
                         '"7/1",10:00:03.500000    ,1.500000,"SELECT A FROM B C"\n'
                         '"7/1",10:00:02.000000    ,2.000000,"say "hi""\n')
        self.assertEqual(s.export_gaps("TXT").split("\n")[-2],
                         '7/1           10:00:02.000000    2.000000         say "hi"')
        self.assertEqual(s.export_gaps("txt").split("\n")[0], "Proc/Thread   Timestamp          Gap Duration     Message")
        self.assertEqual(back, "46799.000000")

    def test_an_export_of_nothing_is_its_header(self):
        self.assertEqual(debug().export_gaps("CSV"), "Proc/Thread,Timestamp,Gap Duration,Message\n")

    def test_another_extension_is_refused(self):
        for name in ("report.log", "gaps", ".", "a.csv.bak"):
            with self.assertRaises(m.LogError) as caught:
                debug().export_gaps(m.extension_of(name))
            self.assertEqual(str(caught.exception), "Invalid file type")

    def test_find_ignores_case_and_skips_lines_of_no_interest(self):
        s = debug(dash("10:00:00.1", "On a Busy day"), dash("10:00:00.2", "busy"), dash("10:00:00.3", "On \u00e4"))
        self.assertEqual(s.find("busy"), [1])
        self.assertEqual(s.find("BUSY"), [1])
        self.assertEqual(s.find("\u00c4"), [3])
        self.assertEqual(s.find(""), [1, 3])
        self.assertEqual(s.find("nothing like it"), [])


class Trees(unittest.TestCase):
    def test_thread_tree_texts(self):
        s = load([dash("12:59:59.000000", "Entering JDB_A"), dash("00:00:01.000000", "x"), dash("10:00:00.0", "x", "7/-2")])
        self.assertEqual(m.elapsed_seconds(1000000, 46799000000), m.f32(1.999999))
        self.assertEqual(m.thread_tree(s)[0][1], ["Thread - 1 (1.999999)", "Thread - -2 (0.000000)"])
        self.assertTrue(m.thread_tree(s, "activConsole.exe")[0][0].startswith("Process - 7 - activConsole.exe ("))
        self.assertEqual(m.thread_tree(load(["--UBE--[1] x"])), [("Process - 0 (0.000000)", ["Thread - 0 (0.000000)"])])

    def test_a_process_shows_its_threads_one_after_the_other(self):
        s = debug(dash("10:00:00.000001", "Calling Business function A x"), dash("10:00:00.000002", "On b", "7/2"),
                  dash("10:00:00.000003", "SELECT A FROM B"))
        self.assertEqual(tree_text(s, "process:7"), [
            "0 (1)10:00:00.000001    Calling Business function A x",
            "  3 (1)10:00:00.000003    SELECT A FROM B",
            "0 (2)10:00:00.000002    On b"])
        self.assertEqual(tree_text(s, "thread:7/2"), ["0 10:00:00.000002    On b"])

    def test_a_return_at_the_top_changes_nothing_above(self):
        s = debug(dash("10:00:00.000001", "Return value is 2 for X. y"), dash("10:00:00.000002", "On b"))
        self.assertEqual(tree_text(s, "thread:7/1"), ["0 10:00:00.000001    Return value is 2 for X. y", "0 10:00:00.000002    On b"])

    def test_a_failure_below_marks_the_outer_call(self):
        s = debug(dash("10:00:00.000001", "Calling A b"), dash("10:00:00.000002", "Calling B b"),
                  dash("10:00:00.000003", "Return value is 2 for X. y"), dash("10:00:00.000004", "Return value is 0 for X. y"))
        self.assertEqual(tree_text(s, "thread:7/1"), [
            "10 10:00:00.000001    Calling A b", "  0 10:00:00.000002    Calling B b",
            "    0 10:00:00.000003    Return value is 2 for X. y", "  2 10:00:00.000004    Return value is 0 for X. y"])

    def test_return_1_and_3(self):
        s = debug(dash("10:00:00.000001", "Calling A b"), dash("10:00:00.000002", "Calling B b"), dash("10:00:00.000003", "Calling C b"),
                  dash("10:00:00.000004", "Return value is 2 for X. y"), dash("10:00:00.000005", "Return value is 1 for X. y"),
                  dash("10:00:00.000006", "Return value is 3 for X. y"))
        self.assertEqual([line.strip().split(" ")[0] for line in tree_text(s, "thread:7/1")], ["0", "11", "0", "0", "1", "0"])

    def test_parameters_hang_in_their_groups_and_the_return_lands_on_the_call(self):
        s = debug(dash("10:00:00.000001", "Calling A b"), dash("10:00:00.000002", "IN->[ 1] p"), dash("10:00:00.000003", "IN->[ 2] q"),
                  dash("10:00:00.000004", "OUT->[ 1] p"), dash("10:00:00.000005", "Return value is 0 for A. y"))
        self.assertEqual(tree_text(s, "thread:7/1"), [
            "2 10:00:00.000001    Calling A b", "  4 PARMS IN", "    4 IN->[ 1] p", "    4 IN->[ 2] q", "  5 PARMS OUT",
            "    5 OUT->[ 1] p", "  2 10:00:00.000005    Return value is 0 for A. y"])
        nodes = m.tree_json(s, "thread:7/1")["nodes"][0]["children"]
        self.assertEqual([n["record"] for n in nodes], [2, None, 5])

    def test_an_event_end_without_a_gap_leaves_no_node_but_closes_its_level(self):
        s = debug(dash("10:00:00.000001", "RT: >>>Beginning ER:\tOK\tForm:W1\t"), dash("10:00:00.000002", "RT: <<<Finished  ER:\t"),
                  dash("10:00:00.000003", "On x"), dash("10:00:09.000003", "RT: <<<Finished  ER:\t"))
        self.assertEqual(tree_text(s, "thread:7/1"), ["6 10:00:00.000001    Form: W1 - OK", "6 10:00:00.000003    On x",
                                                      "  6 10:00:09.000003    RT: <<<Finished  ER:\t"])

    def test_an_ube_root_without_lines_is_removed(self):
        s = debug(dash("10:00:00.1", "On x"), "--UBE--[1] a")
        self.assertEqual(len(tree_text(s, "thread:7/1")), 1)
        self.assertEqual(tree_text(s, "thread:0/0"), ["21 UBE", "  21 --UBE--[1] a"])

    def test_ube_lines_of_level_2_hold_the_later_ones(self):
        s = load(["--UBE--[%d] %s" % (n, t) for n, t in ((1, "a"), (2, "b"), (2, "c"), (3, "d"), (2, "e"))])
        self.assertEqual(tree_text(s, "process:0"), [
            "21 UBE", "  21 (0)--UBE--[1] a", "  21 (0)--UBE--[2] b", "  21 (0)--UBE--[2] c", "    21 (0)--UBE--[3] d",
            "  21 (0)--UBE--[2] e"])

    def test_an_ube_line_below_no_node_is_at_the_top(self):
        s = load(["--UBE--[2] 3 10:00:00.5 Exiting DBPerformRequest", "--UBE--[1] a"])
        self.assertEqual(tree_text(s, "thread:0/0"), ["21 --UBE--[1] a"])

    def test_the_ube_root_has_no_record_to_mark(self):
        zero = [dash("10:00:00.00000%d" % n, text, "0/0") for n, text in enumerate(
            ["Calling B b", "Return value is 2 for B. y", "Return value is 0 for A. y", "Return value is 0 for A. y"])]
        s = debug("--UBE--[1] u", "Calling 3 10:00:00 --UBE--", *zero)
        self.assertEqual([line.strip().split(" ")[0] for line in tree_text(s, "thread:0/0")], ["2", "21", "10", "0", "0", "2", "2"])

    def test_a_mark_of_a_failure_stays_from_fill_to_fill(self):
        zero = [dash("10:00:00.00000%d" % n, text, "0/0") for n, text in enumerate(
            ["Return value is 0 for A. y", "Return value is 0 for A. y", "Calling B b", "Return value is 2 for B. y"])]
        s = debug("--UBE--[2] u", "Calling 3 10:00:00 --UBE--", zero[0], zero[1], "Calling 4 10:00:00 --UBE--", zero[2], zero[3])
        self.assertEqual([tree_text(s, "thread:0/0")[1].strip() for _ in range(2)], ["2 --UBE--[2] u", "10 --UBE--[2] u"])

    def test_a_jas_node_bears_its_source_and_a_measured_one_its_seconds(self):
        s = jas(jas_line("Object Called: P.W", "12:00:01,000"), jas_line("Severe", "12:00:03,500", level="SEVERE"))
        self.assertEqual(tree_text(s, "user:U"), ["15 12:00:01.000000    (2.500000) [JDBJ] Object Called: P.W",
                                                  "0 12:00:03.500000    [JDBJ] Severe"])

    def test_a_missing_scope(self):
        for scope in ("process:8", "thread:7/9", "user:U"):
            with self.assertRaises(m.LogError) as caught:
                m.tree_json(debug(), scope)
            self.assertEqual(str(caught.exception), "No such scope: " + scope)

    def test_scopes_take_signed_and_unsigned_numbers(self):
        s = debug(dash("10:00:00.1", "On x", "-5/-7"))
        self.assertEqual(tree_text(s, "thread:-5/-7"), tree_text(s, "thread:4294967291/4294967289"))


class Program(unittest.TestCase):
    def test_the_program_prints_what_the_module_finds(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.log")
            with open(path, "wb") as stream:
                stream.write((FIRST + "\n" + dash("10:00:05.0", "On x") + "\n").encode())
            program = [sys.executable, "-B", m.__file__]
            done = subprocess.run(program + ["--json", "--find", "on", path], capture_output=True, check=True)
            self.assertEqual(m.json.loads(done.stdout), {"hits": [1]})
            done = subprocess.run(program + ["--tree", "process:9", path], capture_output=True)
            self.assertEqual((done.returncode, done.stderr, done.stdout), (1, b"No such scope: process:9\n", b""))

    def test_random_logs_are_the_same_for_the_same_seed(self):
        for logs in (odd_logs, near_misses):
            self.assertEqual([logs.make(seed) for seed in range(20)], [logs.make(seed) for seed in range(20)])
            self.assertNotEqual(logs.make(3), logs.make(8))


if __name__ == "__main__":
    unittest.main()
