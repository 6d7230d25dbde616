#!/usr/bin/env python3
"""What is installed for the desktop, the manual and the shells, as the tools of these read it.

desktop_test.py PREFIX: what `cmake --install` has put there.
"""

import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PREFIX = os.path.abspath(sys.argv[1])
SHARE = os.path.join(PREFIX, "share")
SECONDS = 30  # for a shell that answers; nothing is measured by it


def run(*command, **more):
    return subprocess.run(command, capture_output=True, text=True, check=False, stdin=subprocess.DEVNULL, **more)


class Desktop(unittest.TestCase):
    def said(self, *command, **more):
        done = run(*command, **more)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout + done.stderr

    def test_the_desktop_entry_is_valid_and_leads_to_what_is_there(self):
        entry = os.path.join(SHARE, "applications/carvelot.desktop")
        self.assertEqual(self.said("desktop-file-validate", entry), "")
        with open(entry, encoding="utf-8") as file:
            keys = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        self.assertTrue(os.access(os.path.join(PREFIX, "bin", keys["Exec"].split()[0]), os.X_OK))
        self.assertTrue(os.path.exists(os.path.join(SHARE, "icons/hicolor/scalable/apps", keys["Icon"] + ".svg")))

    def test_the_software_catalogue_takes_it(self):
        said = self.said("appstreamcli", "validate", "--no-net", "--explain",
                         os.path.join(SHARE, "metainfo/com.tamrisk.carvelot.metainfo.xml"))
        self.assertIn("Validation was successful", said)
        self.said("appstreamcli", "validate-tree", "--no-net", PREFIX)

    def test_logs_have_their_types_and_open_with_it(self):
        with tempfile.TemporaryDirectory() as scratch:
            data = os.path.join(scratch, "share")
            shutil.copytree(os.path.join(SHARE, "mime"), os.path.join(data, "mime"))
            shutil.copytree(os.path.join(SHARE, "applications"), os.path.join(data, "applications"))
            bin_folder = os.path.join(PREFIX, "bin")
            environment = os.environ | {"XDG_DATA_DIRS": data + ":/usr/share", "XDG_DATA_HOME": os.path.join(scratch, "home"),
                                        "XDG_CONFIG_HOME": os.path.join(scratch, "config"), "LC_ALL": "C.UTF-8",
                                        "PATH": bin_folder + ":" + os.environ["PATH"]}
            self.assertEqual(self.said("update-mime-database", os.path.join(data, "mime"), env=environment), "")
            self.assertEqual(self.said("update-desktop-database", os.path.join(data, "applications"), env=environment), "")
            with open(os.path.join(data, "mime/globs2"), encoding="utf-8") as file:
                self.assertIn("60:text/x-jdedebug-log:jdedebug*.log\n", file.readlines())
            # GLib looks for no pattern once an ending is known: to it jdedebug_1.log may be any log.
            types = {"jdedebug.log": "text/x-jdedebug-log", "JDEDEBUG.LOG": "text/x-jdedebug-log",
                     "jas_1.log": "text/x-log", "jde.log": "text/x-log", "jdedebug_1.log": "text/x-(jdedebug-)?log", "jdedebug.txt": "text/plain",
                     "jdedebug.log.gz": "application/gzip"}
            for name, expected in types.items():
                path = os.path.join(scratch, name)
                with open(path, "wb") as file:
                    file.write(b"\x1f\x8b\x08\0" if name.endswith(".gz") else b"Jan 02 10:00:00.000000\n")
                told = self.said("gio", "info", "-a", "standard::content-type", path, env=environment)
                self.assertRegex(told, f"standard::content-type: {expected}\\s", name)
            for kind in ("text/x-jdedebug-log", "text/x-log"):
                self.assertIn("carvelot.desktop", self.said("gio", "mime", kind, env=environment), kind)

    def test_manual_pages_have_no_mistakes(self):
        for page in ("carvelot", "carvelot-report"):
            path = os.path.join(SHARE, "man/man1", page + ".1.gz")
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", path], check=False,
                                  env=os.environ | {"LC_ALL": "C.UTF-8", "MANROFFSEQ": ""}, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.PIPE, text=True, stdin=subprocess.DEVNULL)
            self.assertEqual((done.returncode, done.stderr), (0, ""), page)
            self.assertRegex(run("lexgrog", path).stdout, f'"{page} - [a-z]')

    def test_zsh_completes_options_and_values(self):
        with tempfile.TemporaryDirectory() as scratch:
            answer = os.path.join(scratch, "answer")
            start = os.path.join(scratch, "start")
            with open(start, "w", encoding="utf-8") as file:
                file.write(f"""PROMPT='ready> '
                    fpath=('{SHARE}/zsh/site-functions' $fpath)
                    autoload -Uz compinit && compinit -u -D
                    tell() {{ print -r -- "$BUFFER" >'{answer}.new' && mv '{answer}.new' '{answer}'; BUFFER=; }}
                    zle -N tell
                    bindkey '^I' complete-word '^Xt' tell
                    touch '{scratch}/listening'
                    """)
            open(os.path.join(scratch, "a log.gz"), "wb").close()
            child, terminal = pty.fork()
            if child == 0:
                os.chdir(scratch)
                os.execvpe("zsh", ["zsh", "-f", "-i"], {"PATH": os.environ["PATH"], "TERM": "dumb", "HOME": scratch})

            def wait_for(name):
                end = time.monotonic() + SECONDS
                while not os.path.exists(os.path.join(scratch, name)):
                    self.assertLess(time.monotonic(), end, f"zsh does not get as far as {name}")
                    if select.select([terminal], [], [], 0.05)[0]:
                        os.read(terminal, 65536)

            try:
                os.write(terminal, f". {start}\n".encode())
                wait_for("listening")
                typed = {"--export-p": "--export-profile=", "--shapes": "--shapes-only ", "--rows fi": "--rows findings ",
                         "--rows rec": "--rows records ", "--scope=us": "--scope=user:", "--tree th": "--tree thread:",
                         "--format=nd": "--format=ndjson ", "--json a": "--json a\\ log.gz ", "--sqlite a": "--sqlite a\\ log.gz "}
                for words, expected in typed.items():
                    os.write(terminal, f"carvelot-report {words}\t\x18t".encode())
                    wait_for("answer")
                    with open(answer, encoding="utf-8") as file:
                        self.assertEqual(file.read(), f"carvelot-report {expected}\n")
                    os.remove(answer)
            finally:
                os.write(terminal, b"\x03exit\n")
                os.close(terminal)
                os.waitpid(child, 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
