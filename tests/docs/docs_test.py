#!/usr/bin/env python3
"""What README.md and docs/ show and tell a reader to type is what the program does today.

docs_test.py SOURCE BIN: SOURCE is the checkout, BIN the folder of the programs that were built from it.

A block behind `<!-- COMMAND -->` is an excerpt of that command's output, one behind `<!-- FILE -->` of that file: its
lines are lines of that, in order; a line "..." stands for any that are left out. Every command, in a block or within a
line, names files and options that exist.
"""

import json
import os
import re
import subprocess
import sys

FENCE = re.compile(r"(?:<!--\s*(?P<command>[^\n]*?)\s*-->\n+)?^```[^\n]*\n(?P<body>.*?)^```", re.M | re.S)
INLINE = re.compile(r"`([^`\n]+)`")
# What begins a command in our pages.
PROGRAM = re.compile(
    r"^(?:[A-Z_]+=\S+ )*(?P<program>\./\S+|(?:build|bench|fleet|fuzz|packaging|simulator|tests|docs|samples)/\S+|cmake|ctest|"
    r"carvelot-report)(?P<rest>(?: .*)?)$")
OPTION = re.compile(r"^--[a-z_-]+")
FILLED_IN = {"LOG": "samples/order-entry.log", "TEXT": "order", "FILE": "x.csv", "SCOPE": "process:1"}


def is_told(option, help_text):
    return re.search(re.escape(option) + r"(?![a-z_-])", help_text) is not None


def pages(source):
    yield "README.md"
    yield "CONTRIBUTING.md"
    for name in sorted(os.listdir(os.path.join(source, "docs"))):
        if name.endswith(".md"):
            yield "docs/" + name


def check_excerpts(text, run, complain):
    count = 0
    for block in FENCE.finditer(text):
        if block["command"] is None:
            continue
        count += 1
        output = iter(run(block["command"]).splitlines())
        for line in block["body"].splitlines():
            if line.strip() != "..." and not any(line == printed for printed in output):
                complain(f"`{block['command']}` does not print or hold, or not in this place: {line}")
                break
    return count


def check_command(line, source, help_of, complain):
    command = re.split(r"\s{2,}|\s#", line.strip())[0]
    for part in command.split(" && "):
        match = PROGRAM.match(part)
        if match is None:
            continue
        program, words = match["program"], match["rest"].split()
        if program == "cmake" or program == "ctest":
            names = {preset["name"] for kind in ("configurePresets", "buildPresets", "testPresets")
                     for preset in json.load(open(os.path.join(source, "CMakePresets.json"), encoding="utf-8"))[kind]}
            for option, name in zip(words, words[1:]):
                if option == "--preset" and name not in names:
                    complain(f"`{part}`: there is no such preset")
            continue
        if re.search(r"[<>*]|/$", program):
            folder = re.split(r"[<*]", program)[0]
            if not folder.startswith("build/") and not os.path.isdir(os.path.join(source, os.path.dirname(folder))):
                complain(f"`{part}`: there is no such folder")
            continue
        known = help_of(program)
        if known is None:
            complain(f"`{part}`: there is no such program")
            continue
        for word in words:
            option = re.match(r"^\[?(--[a-z_-]+)", word)
            if option and not is_told(option[1], known):
                complain(f"`{part}`: there is no option {option[1]}")


def main():
    source, programs = sys.argv[1:]
    failures = []

    def help_of(program):
        """The text that tells the options of a program; None if it is not there, "" if it is not built here."""
        name = os.path.basename(program)
        if program.startswith("build/windows/"):
            return ""
        if program == "carvelot-report" or program.startswith("build/"):
            path = os.path.join(programs, name)
            if "/bench/" in program:
                # The benchmarks are not part of this build: their sources tell.
                return "".join(open(os.path.join(source, "bench", file), encoding="utf-8").read()
                               for file in ("CarvelotBench.cpp", "window/main.cpp"))
            if not os.path.exists(path):
                return None
            return subprocess.run([path, "--help"], capture_output=True, text=True, check=False).stdout
        path = os.path.join(source, program)
        if os.path.isdir(path):
            return ""
        return open(path, encoding="utf-8", errors="replace").read() if os.path.exists(path) else None

    def run(command):
        file = os.path.join(source, command)
        if os.path.isfile(file):
            return open(file, encoding="utf-8").read()
        words = [FILLED_IN.get(word, word) for word in command.split()]
        words[0] = os.path.join(programs, os.path.basename(words[0]))
        return subprocess.run(words, cwd=source, capture_output=True, text=True, check=True).stdout

    excerpts = commands = 0
    for page in pages(source):
        text = open(os.path.join(source, page), encoding="utf-8").read()

        def complain(message, page=page):
            failures.append(f"{page}: {message}")

        excerpts += check_excerpts(text, run, complain)
        lines = [line for block in FENCE.finditer(text) if block["command"] is None
                 for line in block["body"].splitlines()]
        lines += INLINE.findall(FENCE.sub("", text))
        for line in lines:
            commands += PROGRAM.match(re.split(r"\s{2,}|\s#", line.strip())[0].split(" && ")[0]) is not None
            check_command(line, source, help_of, complain)
            option = OPTION.match(line)
            if option:
                commands += 1
                if not any(is_told(option[0], help_of(program)) for program in ("carvelot-report", "./test")):
                    complain(f"`{line}`: no program has this option")
    for failure in failures:
        print(failure)
    print(f"{excerpts} excerpts, {commands} commands, {len(failures)} of them wrong")
    return 1 if failures or excerpts == 0 or commands == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
