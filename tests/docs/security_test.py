#!/usr/bin/env python3
"""SECURITY.md names a test for everything that is not trusted, and every test that it names exists.

security_test.py SOURCE
"""

import os
import re
import sys

NAME = re.compile(r"`([A-Za-z_]+(?:\.[A-Za-z0-9_]+)*(?:::[A-Za-z0-9_]+)?)`")
GOOGLE_TEST = re.compile(r"^TEST(?:_F|_P)?\((\w+), (\w+)\)", re.M)
QT_TEST = re.compile(r"^    void (\w+)\(\)", re.M)
ADDED = re.compile(r'add_test\(NAME "?([A-Za-z_.]+)')


def text_of(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        return file.read()


def tests_of(source):
    """The names of all tests, from the sources that make them."""
    names = set(ADDED.findall(text_of(source, "tests/CMakeLists.txt")))
    for folder, _, files in os.walk(os.path.join(source, "tests")):
        for file in files:
            if not file.endswith(".cpp"):
                continue
            text = text_of(folder, file)
            names |= {".".join(test) for test in GOOGLE_TEST.findall(text)}
            if os.path.basename(folder) == "ui":
                program = file.removesuffix(".cpp")
                names |= {"ui." + program} | {f"{program}::{test}" for test in QT_TEST.findall(text)}
    for folder in ("fuzz", "fuzz/ui"):
        for file in os.listdir(os.path.join(source, folder)):
            if file.endswith("Fuzz.cpp"):
                names |= {kind + file.removesuffix(".cpp") for kind in ("fuzz.", "corpus.")}
    return names


def complaints(page, known):
    table = page.split("## What is not trusted")[1].split("\n## ")[0]
    rows = [re.split(r"\s*\|\s*", line.strip("| ")) for line in table.splitlines() if line.startswith("|")][2:]
    found = [] if len(rows) >= 10 else ["the table is missing"]
    for row in rows:
        tests = NAME.findall(row[-1])
        if len(row) != 4 or not tests:
            found.append(f"{row[0]}: no test")
        found += [f"{row[0]}: there is no test {test}" for test in tests if test not in known]
    return found


def main():
    source = sys.argv[1]
    page = text_of(source, "SECURITY.md")
    known = tests_of(source)
    found = complaints(page, known)
    # What is wrong is found: each name spoilt, each row without tests.
    table = page.split("## What is not trusted")[1].split("\n## ")[0]
    names = {test for line in table.splitlines()[4:] for test in NAME.findall(line.rsplit("|", 2)[-2])} if not found else set()
    for name in names:
        if not complaints(page.replace(f"`{name}`", f"`{name}More`"), known):
            found.append(f"{name} with another name is not missed")
    if not found and not complaints(re.sub(r"`packaging\.install`", "", page), known):
        found.append("a row without a test is not missed")
    for line in found:
        print(line)
    print(f"{len(names)} tests named, {len(found)} complaints")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
