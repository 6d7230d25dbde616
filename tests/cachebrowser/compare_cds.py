#!/usr/bin/env python3
"""compare_cds.py DEFINITION_HELPER: holds the program's definition files against the model in cds.py, both ways."""

import os
import random
import subprocess
import sys
import tempfile
import unittest

import cds

HELPER = None
EXAMPLE = bytes.fromhex(
    "0100 ffff 0100 0700 434d656d626572 00 00 02000000 01000000 04000000 fffeff 01 6100 fffeff 04 6c006f006e006700"
)
MESSAGES = {"end": "past its end", "schema": "incorrect schema", "class": "unexpected object", "format": "bad format"}


def to_hex(text):
    return text.encode("utf-8", "surrogatepass").hex() or "-"


def from_hex(text):
    return "" if text == "-" else bytes.fromhex(text).decode("utf-8", "surrogatepass")


def to_line(member):
    return " ".join(str(int(field)) for field in member[:5]) + f" {to_hex(member[5])} {to_hex(member[6])}"


def from_line(line):
    fields = line.split()
    return (*map(int, fields[:5]), from_hex(fields[5]), from_hex(fields[6]))


class Definitions(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = os.path.join(self.folder.name, "test.cds")

    def tearDown(self):
        self.folder.cleanup()

    def program_reads(self, data):
        with open(self.path, "wb") as file:
            file.write(data)
        out = subprocess.run([HELPER, "read", self.path], stdout=subprocess.PIPE, check=True, timeout=20).stdout
        lines = out.decode().splitlines()
        error = lines.pop() if lines and lines[-1].startswith("error ") else None
        return [from_line(line) for line in lines], error

    def program_writes(self, members):
        text = "".join(to_line(member) + "\n" for member in members)
        subprocess.run([HELPER, "write", self.path], input=text.encode(), check=True, timeout=20)
        with open(self.path, "rb") as file:
            return file.read()

    def check_both_ways(self, members):
        data = cds.write(members)
        self.assertEqual(cds.read(data), members)
        self.assertEqual(self.program_reads(data), (members, None))
        self.assertEqual(self.program_writes(members), data)

    def test_example(self):
        self.assertEqual(len(EXAMPLE), 47)
        members = [(0, 0, 2, 1, 4, "a", "long")]
        self.assertEqual(cds.write(members), EXAMPLE)
        self.check_both_ways(members)

    def test_no_members(self):
        self.check_both_ways([])
        self.assertEqual(cds.write([]), b"\0\0")

    def test_many_members(self):
        for count in (65534, 65535, 65536):
            self.check_both_ways([(0, 1, 2, 1, 4, str(n), "ID") for n in range(count)])

    def test_string_forms(self):
        for length in (0, 1, 127, 128, 254, 255, 256, 0xFFFD, 0xFFFE, 0xFFFF, 70000):
            self.check_both_ways([(1, 0, 5, 1, 4, "n" * length, "VOID")])
        self.check_both_ways([(1, 0, 5, 1, 4, "\ud83d", "\U0001f6b2\udeb2")])

    def test_random_structures(self):
        generator = random.Random(552)
        for _ in range(100):
            self.check_both_ways([self.random_member(generator) for _ in range(generator.randrange(12))])

    def random_member(self, generator):
        def number():
            return generator.choice([generator.randrange(100), generator.randrange(-(2**31), 2**31)])

        def text():
            letters = "abcXYZ_[] \t\0\u00e4\u20ac\uffff\U0001f6b2"
            return "".join(generator.choice(letters) for _ in range(generator.choice([0, 1, 8, 30, 300])))

        return (generator.randrange(2), generator.randrange(2), number(), number(), number(), text(), text())

    def test_narrow_strings(self):
        members = [(0, 0, 2, 1, 4, "n" * length, "long") for length in (0, 1, 254, 255, 300, 0xFFFD, 0xFFFE, 70000)]
        self.assertEqual(self.program_reads(cds.write(members, cds.write_narrow)), (members, None))

    def test_damaged_files(self):
        generator = random.Random(47)
        for _ in range(300):
            members = [self.random_member(generator)[:5] + ("name", "int") for _ in range(generator.randrange(1, 4))]
            data = bytearray(cds.write(members))
            if generator.randrange(2):
                del data[generator.randrange(len(data)) :]
            else:
                data[generator.randrange(2)] ^= 1 << generator.randrange(8)
            try:
                expected, kind = cds.read(bytes(data)), None
            except cds.BadFile as bad:
                expected, kind = bad.members, bad.kind
            found, error = self.program_reads(bytes(data))
            self.assertEqual(found, expected)
            if kind is None:
                self.assertIsNone(error)
            else:
                self.assertIn(MESSAGES[kind], error or "")

    def test_refused_files(self):
        for at, byte, kind in ((4, 2, "schema"), (8, 0x63, "class"), (2, 0xFE, "format")):
            data = bytearray(EXAMPLE)
            data[at] = byte
            with self.assertRaises(cds.BadFile) as raised:
                cds.read(bytes(data))
            self.assertEqual(raised.exception.kind, kind)
            found, error = self.program_reads(bytes(data))
            self.assertEqual(found, [])
            self.assertIn(MESSAGES[kind], error)


if __name__ == "__main__":
    HELPER = sys.argv.pop(1)
    unittest.main()
