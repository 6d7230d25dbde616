#!/usr/bin/env python3
"""programs_test.py VERSION CARVELOT.EXE REPORT.EXE: what the two programs' files tell Windows before they run."""

import sys
import unittest
import xml.etree.ElementTree as xml

import pe

SETTINGS_2005 = "{http://schemas.microsoft.com/SMI/2005/WindowsSettings}"
SETTINGS_2016 = "{http://schemas.microsoft.com/SMI/2016/WindowsSettings}"
VERSION, CARVELOT, REPORT = sys.argv[1:4]


def manifest(program):
    found = [data for (kind, _), data in program.resources.items() if kind == pe.MANIFEST]
    assert len(found) == 1, f"{len(found)} manifests"
    return xml.fromstring(found[0])


def one(tree, name):
    found = [element for element in tree.iter() if element.tag.endswith("}" + name)]
    assert len(found) == 1, f"{len(found)} elements {name}"
    return found[0]


class Window(unittest.TestCase):
    program = pe.read(CARVELOT)
    tree = manifest(program)

    def test_it_is_a_64_bit_window_program(self):
        self.assertEqual((self.program.machine, self.program.subsystem), (0x8664, pe.GUI))

    def test_it_asks_for_administrator_rights(self):
        level = one(self.tree, "requestedExecutionLevel")
        self.assertEqual((level.get("level"), level.get("uiAccess")), ("requireAdministrator", "false"))

    def test_it_takes_the_common_controls_6(self):
        names = {element.get("name"): element.get("version") for element in self.tree.iter()
                 if element.tag.endswith("}assemblyIdentity")}
        self.assertEqual(names["Microsoft.Windows.Common-Controls"], "6.0.0.0")

    def test_it_is_sharp_on_every_monitor(self):
        self.assertEqual(one(self.tree, "dpiAwareness").tag, SETTINGS_2016 + "dpiAwareness")
        self.assertEqual(one(self.tree, "dpiAwareness").text.split(",")[0].strip(), "PerMonitorV2")
        self.assertEqual(one(self.tree, "dpiAware").tag, SETTINGS_2005 + "dpiAware")
        self.assertEqual(one(self.tree, "dpiAware").text, "true/pm")

    def test_it_knows_long_paths(self):
        self.assertEqual(one(self.tree, "longPathAware").tag, SETTINGS_2016 + "longPathAware")
        self.assertEqual(one(self.tree, "longPathAware").text, "true")

    def test_it_bears_its_version(self):
        self.assertEqual(".".join(map(str, self.program.file_version())), VERSION)
        self.assertEqual(self.program.version_text("ProductVersion"), VERSION)
        self.assertEqual(self.program.version_text("OriginalFilename"), "carvelot.exe")
        self.assertEqual(self.program.version_text("CompanyName"), "Tamrisk")

    def test_it_bears_an_icon_in_the_usual_sizes(self):
        self.assertLessEqual({16, 32, 48, 256}, set(self.program.icon_sizes()))

    def test_it_names_its_windows_and_registers_for_a_restart(self):
        names = {name for listed in self.program.imports.values() for name in listed}
        self.assertIn("SetCurrentProcessExplicitAppUserModelID", names)
        self.assertIn("RegisterApplicationRestart", names)


class Report(unittest.TestCase):
    program = pe.read(REPORT)

    def test_it_is_a_64_bit_console_program(self):
        self.assertEqual((self.program.machine, self.program.subsystem), (0x8664, pe.CONSOLE))

    def test_it_runs_with_the_rights_of_whoever_starts_it(self):
        self.assertEqual(one(manifest(self.program), "requestedExecutionLevel").get("level"), "asInvoker")

    def test_it_knows_long_paths(self):
        self.assertEqual(one(manifest(self.program), "longPathAware").text, "true")

    def test_it_bears_its_version(self):
        self.assertEqual(".".join(map(str, self.program.file_version())), VERSION)
        self.assertEqual(self.program.version_text("OriginalFilename"), "carvelot-report.exe")

    def test_it_needs_no_other_file(self):
        self.assertEqual([name for name in self.program.imports if name.startswith(("lib", "Qt6"))], [])


class Both(unittest.TestCase):
    def test_their_memory_is_protected(self):
        for program in (Window.program, Report.program):
            wanted = pe.HIGH_ENTROPY | pe.DYNAMIC_BASE | pe.NX
            self.assertEqual(program.protection & wanted, wanted)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
