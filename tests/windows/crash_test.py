#!/usr/bin/env python3
"""crash_test.py HELPER.EXE WINDOW_HELPER.EXE REPORT.EXE CARVELOT.EXE PREFIX: what a crash leaves, whichever it is.

The helper crashes in each way. The dumps are read as any debugger would, byte by byte.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import minidump  # noqa: E402
import pe  # noqa: E402
from desktop import Desktop, windows_path  # noqa: E402

HELPER, WINDOWS, REPORT, CARVELOT, PREFIX = sys.argv[1:6]
READ, DIVIDE, OVERFLOW, ABORTED, HUNG = 0xC0000005, 0xC0000094, 0xC00000FD, 0x40000015, 0xDEAD


class Crash(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(PREFIX, WINDOWS).__enter__()
        cls.addClassCleanup(cls.desktop.__exit__)
        # Wine's debugger would look at each crash, at length.
        cls.desktop.run("reg", "add", r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug", "/v", "Debugger", "/d", "none", "/f")

    def setUp(self):
        self.local = tempfile.mkdtemp(prefix="carvelot-crash-ä-")
        self.addCleanup(shutil.rmtree, self.local)
        self.folder = os.path.join(self.local, "Tamrisk", "Carvelot", "CrashDumps")

    def crash(self, way, local=None):
        """Thread, process, how it ended, and what stood on standard error."""
        with tempfile.TemporaryFile() as printed, tempfile.TemporaryFile() as errors:
            subprocess.run([self.desktop.wine, HELPER, "run", "line", way, local or windows_path(self.local)],
                           stdin=subprocess.DEVNULL, stdout=printed, stderr=errors, env=self.desktop.environment, timeout=150,
                           check=True)
            printed.seek(0)
            errors.seek(0)
            said = printed.read().decode().replace("\r", "")
            numbers = {name: number for name, number in re.findall(r"(thread|process|ended) (\w+)", said)}
            if "thread" not in numbers:
                self.fail(f"{way} prints {said!r}")
            return int(numbers["thread"]), int(numbers["process"]), int(numbers["ended"], 16), errors.read().decode()

    def dumps(self):
        return sorted(os.listdir(self.folder)) if os.path.isdir(self.folder) else []

    def check_crash(self, way, *codes):
        thread, process, ended, said = self.crash(way)
        self.assertIn(f"{ended:08X}", [f"{code:08X}" for code in codes], said)
        self.assertEqual(len(self.dumps()), 1, said)
        name = self.dumps()[0]
        self.assertRegex(name, rf"^crash_helper-\d{{8}}-\d{{6}}-{process}\.dmp$")
        path = windows_path(os.path.join(self.folder, name))
        line = f"crash_helper has crashed. A crash dump for whoever mends it was written to {path}\n"
        self.assertEqual(said.count(line), 1, said)
        self.assertEqual(said.count("has crashed"), 1, said)
        dump = minidump.read(os.path.join(self.folder, name))
        self.assertEqual(f"{dump.code:08X}", f"{ended:08X}")
        if way != "two-threads":
            self.assertEqual(dump.thread, thread)
        self.assertIn(dump.thread, dump.threads)
        self.assertGreater(len(dump.stack), 0)
        self.assertIn("crash_helper.exe", [module.rsplit("\\", 1)[-1] for module in dump.modules])
        return dump

    def test_reading_where_nothing_is(self):
        dump = self.check_crash("read", READ)
        self.assertEqual(dump.flags, minidump.WITH_THREAD_INFO)
        self.assertNotIn(minidump.MEMORY64, dump.streams, "not all of the memory")

    def test_writing_where_nothing_is(self):
        self.check_crash("write", READ)

    def test_dividing_by_zero(self):
        self.check_crash("divide", DIVIDE)

    def test_a_stack_that_overflows(self):
        self.check_crash("stack-code", OVERFLOW)

    def test_the_stack_of_another_thread_overflows(self):
        self.check_crash("stack-code-of-a-thread", OVERFLOW)

    def test_a_stack_without_room_for_any_handler_ends_the_program_all_the_same(self):
        # Wine ends the thread without asking anybody; Windows leaves what SetThreadStackGuarantee asked for.
        _, _, ended, _ = self.crash("stack")
        self.assertNotEqual(ended, HUNG)

    def test_an_abort(self):
        self.check_crash("abort", ABORTED)

    def test_terminate(self):
        self.check_crash("terminate", ABORTED)

    def test_an_exception_that_nobody_catches(self):
        self.check_crash("throw", ABORTED)

    def test_a_function_that_is_not_there(self):
        # Statically linked, the run time's own answer to that may be missing: a call of nothing then.
        self.check_crash("pure", ABORTED, READ)

    def test_another_thread(self):
        self.check_crash("thread", READ)

    def test_two_threads_at_once_are_one_crash(self):
        self.check_crash("two-threads", READ)

    def test_an_end_is_no_crash(self):
        for way in "end", "invalid-parameter":
            _, _, ended, said = self.crash(way)
            self.assertEqual((ended, said, self.dumps()), (0, "", []))

    def test_the_newest_five_stay_and_what_bears_another_name(self):
        os.makedirs(self.folder)
        others = ["crash_helper-report-20200101-000000-1.dmp", "crash_helper-20200101.dmp", "carvelot-20200101-000000-1.dmp",
                  "crash_helper-20200101-000000-1.dmp.txt", "notes.txt"]
        older = [f"crash_helper-2020010{day}-000000-{day}.dmp" for day in range(1, 9)]
        for name in others + older:
            with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
                file.write("x")
        self.crash("end")
        self.assertEqual(self.dumps(), sorted(others + older[-5:]))
        self.crash("read")
        mine = [name for name in self.dumps() if name not in others]
        self.assertEqual(mine[:4], older[-4:])
        self.assertEqual(len(mine), 5)
        self.assertEqual(minidump.read(os.path.join(self.folder, mine[4])).code, READ)

    def test_where_none_can_be_written_it_says_so(self):
        os.makedirs(os.path.dirname(self.folder))
        with open(self.folder, "w", encoding="utf-8") as file:
            file.write("a file in the folder's place")
        for local in None, "Q:\\nowhere", "x" * 2000:
            _, _, ended, said = self.crash("read", local)
            self.assertEqual(ended, READ)
            self.assertRegex(said, r"crash_helper has crashed\. No crash dump could be written to .*: error \d+\.\n")
            self.assertEqual(said.count("has crashed"), 1)

    def check_box(self, way):
        running = self.desktop.start(HELPER, "run", "box", way, windows_path(self.local))
        box = self.desktop.window("Carvelot", seconds=180, kind="boxes")
        time.sleep(1)
        self.assertEqual(len(self.desktop.boxes()), 1)
        self.assertEqual(len(self.dumps()), 1, "the dump is there before the message")
        minidump.read(os.path.join(self.folder, self.dumps()[0]))
        text = self.desktop.run(WINDOWS, "text", str(box.handle))
        self.assertIn(windows_path(os.path.join(self.folder, self.dumps()[0])), text)
        self.assertIsNone(running.poll(), "the program waits for the answer")
        self.desktop.close(box)
        running.wait(120)
        self.assertEqual(self.desktop.boxes(), [])
        self.assertEqual(len(self.dumps()), 1)

    def test_one_message_box_with_the_path(self):
        self.check_box("read")

    def test_one_message_box_for_two_threads(self):
        self.check_box("two-threads")

    def test_one_message_box_after_an_overflow(self):
        self.check_box("stack-code")

    def test_one_message_box_with_a_locked_heap(self):
        self.check_box("heap-locked")

    def test_both_programs_are_ready_for_it(self):
        for program in REPORT, CARVELOT:
            names = {name for listed in pe.read(program).imports.values() for name in listed}
            self.assertIn("SetUnhandledExceptionFilter", names)
            self.assertIn("SetThreadStackGuarantee", names)
            self.assertIn("CrashDumps".encode("utf-16-le"), pe.read(program).data)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[6:])
