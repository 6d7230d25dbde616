#!/usr/bin/env python3
"""What `cmake --install` puts below a prefix is whole, says what the programs do, and needs nothing of where it was built.

install_test.py CMAKE BUILD SOURCE
"""

import copy
import gzip
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

import spdx

CMAKE, BUILD, SOURCE = sys.argv[1:4]
TOOLS = {"LC_ALL": "C", "PATH": os.environ["PATH"]}
VALUE_OPTION = re.compile(r"^  (--[a-z-]+) [A-Z]+", re.M)


def output_of(*command, **more):
    return subprocess.run(command, capture_output=True, text=True, check=True, stdin=subprocess.DEVNULL, **more).stdout


def complete(script, words):
    """What bash offers for the last of the words, by the completion in a file."""
    quoted = " ".join("'" + word + "'" for word in words)
    # compopt needs a completion that runs; what it asks for is no part of the words.
    return output_of("bash", "--norc", "-c", f"""
        compopt() {{ :; }}
        . "$1"
        COMP_WORDS=({quoted})
        COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))
        _carvelot_report
        ((${{#COMPREPLY[@]}} == 0)) || printf '%s\\n' "${{COMPREPLY[@]}}"
        """, "bash", script).split("\n")[:-1]


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.prefix = os.path.join(cls.scratch.name, "any prefix")
        output_of(CMAKE, "--install", BUILD, "--prefix", cls.prefix)
        cls.report = os.path.join(cls.prefix, "bin/carvelot-report")
        cls.help = output_of(cls.report, "--help")
        cls.options = set(re.findall(r"^  (--[a-z-]+)", cls.help, re.M))
        cls.doc = os.path.join(cls.prefix, "share/doc/carvelot")
        cls.bill = os.path.join(cls.doc, "carvelot.spdx.json")

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def path(self, name):
        return os.path.join(self.prefix, name)

    def text(self, name):
        opened = gzip.open if name.endswith(".gz") else open
        with opened(self.path(name), "rt", encoding="utf-8") as file:
            return file.read()

    def has_window(self):
        return os.path.exists(self.path("bin/carvelot"))

    def test_programs_and_their_company(self):
        files = spdx.files_below(self.prefix)
        programs = {"carvelot-report"} | ({"carvelot"} if self.has_window() else set())
        self.assertEqual({name for name in files if name.startswith("bin/")}, {"bin/" + name for name in programs})
        for program in programs:
            self.assertTrue(os.access(self.path("bin/" + program), os.X_OK))
            self.assertIn(f"share/man/man1/{program}.1.gz", files)
        self.assertIn("share/bash-completion/completions/carvelot-report", files)
        self.assertIn("share/zsh/site-functions/_carvelot-report", files)
        if self.has_window():
            self.assertIn("share/applications/carvelot.desktop", files)
            self.assertIn("share/mime/packages/carvelot.xml", files)
            self.assertIn("share/metainfo/com.tamrisk.carvelot.metainfo.xml", files)
            for size in (16, 22, 24, 32, 48, 64, 128, 256, 512):
                picture = spdx.bytes_of(self.path(f"share/icons/hicolor/{size}x{size}/apps/carvelot.png"))
                self.assertEqual(picture[:8], b"\x89PNG\r\n\x1a\n")
                self.assertEqual([int.from_bytes(picture[at:at + 4], "big") for at in (16, 20)], [size, size])

    def test_nothing_knows_where_it_was_built(self):
        for name in spdx.files_below(self.prefix):
            content = spdx.bytes_of(self.path(name))
            if name.endswith(".gz"):
                content = gzip.decompress(content)
            for folder in {SOURCE, BUILD, self.prefix, os.path.realpath(SOURCE)}:
                self.assertNotIn(folder.encode(), content, f"{name} names {folder}")

    def test_the_report_reads_an_installed_sample_elsewhere(self):
        sample = os.path.join(self.doc, "examples/order-entry.log")
        told = output_of(self.report, sample, cwd="/", env={"PATH": "/usr/bin:/bin"})
        self.assertIn("Calling Business function F00095ReserveRecord", told)

    def test_the_programs_are_hard_to_turn_around(self):
        for program in os.listdir(self.path("bin")):
            told = output_of("readelf", "-hldW", self.path("bin/" + program), env=TOOLS)
            self.assertRegex(told, r"Type: +DYN")  # stands anywhere
            self.assertIn("GNU_RELRO", told)
            self.assertRegex(told, r"\(FLAGS\).*BIND_NOW|\(FLAGS_1\).*NOW")
            self.assertNotRegex(told, r"GNU_STACK.* RWE ")
            self.assertNotRegex(told, r"\((RPATH|RUNPATH|TEXTREL)\)")

    def test_the_programs_open_no_connection(self):
        for program in os.listdir(self.path("bin")):
            path = self.path("bin/" + program)
            self.assertNotRegex(output_of("readelf", "-dW", path, env=TOOLS), r"NEEDED.*(Network|curl|ssl)")
            called = {line.split()[-1].split("@")[0] for line in output_of("nm", "-D", "--undefined-only", path).splitlines()}
            self.assertIn("open", {name.removesuffix("64") for name in called})
            self.assertEqual(called & {"accept", "bind", "connect", "getaddrinfo", "gethostbyname", "socket"}, set())
            if program == "carvelot-report":
                self.assertEqual({name for name in called if re.match(r"(exec|fork|posix_spawn|popen|system$|vfork)", name)}, set())

    def test_versions_agree(self):
        version = output_of(self.report, "--version").split()[1]
        changelog = self.text("share/doc/carvelot/changelog.gz")
        self.assertEqual(re.match(r"carvelot \((.+?)\) ", changelog)[1], version)
        self.assertIn(f'"Carvelot {version}"', self.text("share/man/man1/carvelot-report.1.gz").splitlines()[0])
        self.assertEqual(spdx.read(self.bill)["packages"][0]["versionInfo"], version)
        if self.has_window():
            release = re.search(r'<release version="(.+?)" date="(.+?)"',
                                self.text("share/metainfo/com.tamrisk.carvelot.metainfo.xml"))
            self.assertEqual(release[1], version)
            self.assertIn(f'"{release[2]}" "Carvelot {version}"', self.text("share/man/man1/carvelot.1.gz").splitlines()[0])

    def test_the_manual_page_tells_each_option_and_its_help(self):
        page = self.text("share/man/man1/carvelot-report.1.gz").replace("\\-", "-").replace("\\&", "")
        told = re.findall(r"^\.TP\n\\fB(--[a-z-]+)\\fR", page, re.M)
        self.assertEqual(set(told), self.options)
        self.assertEqual(len(told), len(set(told)))
        texts = [line[30:] for line in self.help.split("Options:\n")[1].splitlines() if line[28:30] == "  "]
        self.assertEqual(len(texts), len(self.options))
        for text in texts:
            self.assertIn(text, page)

    def test_bash_completes_what_the_program_takes(self):
        script = self.path("share/bash-completion/completions/carvelot-report")
        self.assertEqual(set(complete(script, ["carvelot-report", "--"])), self.options)
        self.assertEqual(complete(script, ["carvelot-report", "--shapes"]), ["--shapes-only"])
        for option, least in {"--rows": 7, "--format": 2, "--dialect": 3}.items():
            words = complete(script, ["carvelot-report", option, ""])
            self.assertGreaterEqual(len(words), least)
            self.assertEqual(complete(script, ["carvelot-report", option, "=", ""]), words)
            needed = ["--rows", "records"] if option == "--format" else []
            sample = os.path.join(self.doc, "examples/worked-example.log")
            for word in words:
                output_of(self.report, *needed, option, word, sample)  # it is taken
        self.assertEqual(complete(script, ["carvelot-report", "--tree", "th"]), ["thread:"])
        # Paths stand where paths are taken, and nothing where only the user knows.
        log = os.path.join(self.doc, "examples/utf")
        for words in ([], ["--compare"], ["--json"], ["--sqlite"]):
            self.assertEqual(complete(script, ["carvelot-report", *words, log]), [log + "-8.log"], words)
        for option in set(VALUE_OPTION.findall(self.help)) - {"--compare", "--export-gaps", "--export-profile", "--sqlite",
                                                              "--rows", "--format", "--dialect", "--tree", "--scope"}:
            self.assertEqual(complete(script, ["carvelot-report", option, ""]), [], option)

    def test_zsh_is_told_the_same_options(self):
        told = re.findall(r"^    '(?:\*|\([^)]*\))?(--[a-z-]+)(=?)\[", self.text("share/zsh/site-functions/_carvelot-report"), re.M)
        self.assertEqual({name for name, _ in told}, self.options)
        self.assertEqual({name for name, value in told if value}, set(VALUE_OPTION.findall(self.help)))

    def test_links_of_pages_lead_to_what_is_installed(self):
        links = 0
        for page in (name for name in os.listdir(self.doc) if name.endswith(".md")):
            for target in re.findall(r"\]\(([^)#\s]+)", self.text("share/doc/carvelot/" + page)):
                if not re.match(r"[a-z]+:", target):
                    links += 1
                    self.assertTrue(os.path.exists(os.path.join(self.doc, target)), f"{page}: {target}")
        self.assertGreater(links, 10)

    def test_licences_of_what_the_programs_hold_are_there(self):
        licences = self.text("share/doc/carvelot/copyright")
        for words in ("The Carvelot authors", "University of Cincinnati", "Milo Yip",
                      "Redistributions in binary form must reproduce"):
            self.assertIn(words, licences)

    def test_the_bill_of_materials_is_whole_and_true(self):
        self.assertEqual(spdx.problems(self.bill, self.prefix), [])
        libraries = spdx.libraries_of(self.bill, "carvelot-report")
        self.assertLessEqual({"CLI11", "RapidJSON"}, libraries)
        needed = re.findall(r"\(NEEDED\)", output_of("readelf", "-dW", self.report, env=TOOLS))
        self.assertEqual(len(libraries), len(needed) + 2)

    def test_a_bill_that_is_wrong_is_found(self):
        right = spdx.read(self.bill)
        spoilt = {
            "spdxVersion": lambda bill: bill.pop("spdxVersion"),
            "documentNamespace": lambda bill: bill.update(documentNamespace="carvelot"),
            "files": lambda bill: bill["files"].pop(),
            "SHA256": lambda bill: bill["files"][0]["checksums"][1].update(checksumValue="0" * 64),
            "licenseConcluded": lambda bill: bill["packages"][-1].update(licenseConcluded="NOASSERTION"),
            "CONTAINS": lambda bill: bill["relationships"].remove(
                next(one for one in bill["relationships"] if one["relationshipType"] == "CONTAINS")),
            "nothing is linked": lambda bill: bill.update(relationships=[
                one for one in bill["relationships"] if one["relationshipType"] != "STATIC_LINK"]),
            "stands twice": lambda bill: bill["files"][1].update(SPDXID=bill["files"][0]["SPDXID"]),
            "packageVerificationCode": lambda bill: bill["packages"][0].pop("packageVerificationCode"),
        }
        kept = spdx.bytes_of(self.bill)
        try:
            for what, spoil in spoilt.items():
                bill = copy.deepcopy(right)
                spoil(bill)
                with open(self.bill, "w", encoding="utf-8") as file:
                    json.dump(bill, file)
                self.assertTrue(any(what in problem for problem in spdx.problems(self.bill, self.prefix)), what)
        finally:
            with open(self.bill, "wb") as file:
                file.write(kept)

    def test_installing_for_a_package_gives_the_same_files(self):
        stage = os.path.join(self.scratch.name, "stage")
        output_of(CMAKE, "--install", BUILD, "--prefix", "/usr", env=os.environ | {"DESTDIR": stage})
        staged = spdx.files_below(os.path.join(stage, "usr"))
        self.assertEqual({name.replace("vendor-completions", "site-functions") for name in staged}, spdx.files_below(self.prefix))
        self.assertIn("share/zsh/vendor-completions/_carvelot-report", staged)
        self.assertEqual(spdx.problems(os.path.join(stage, "usr/share/doc/carvelot/carvelot.spdx.json"),
                                       os.path.join(stage, "usr")), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
