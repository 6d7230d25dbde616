#!/usr/bin/env python3
"""What ran and what did not, for the sections of strength/sanitizers and strength/memory.

suites.py ran RESULTS                 prints: suites, tests that ran, tests that were skipped; then a line a skipped test with
                                      its reason. RESULTS is what ctest --output-junit wrote, *.xml, or what --gtest_output=json did,
                                      with the output beside it, *.txt.
suites.py left-out PLAIN BUILD WHY... is about the tests and programs of tests that ctest knows in the build PLAIN and not in
                                      BUILD. Each takes its reason from the first WHY, NAME=REASON, whose NAME (* and ? stand
                                      for anything) matches. It prints a line a WHY that is needed: NAME, how many, REASON;
                                      and fails where one has no reason.
Fields are separated by tabs.
"""
import fnmatch
import json
import os
import re
import subprocess
import sys
import xml.etree.ElementTree


def reason_of_skip(output):
    """What a test said when it skipped itself."""
    found = re.search(r": Skipped\n(.+)", output) or re.search(r"^SKIP +: \S+ (.+)", output, re.MULTILINE)
    if found:
        return found.group(1).strip()
    lines = [line for line in output.splitlines() if line.strip()]
    return lines[-1].strip() if lines else "says nothing"


def of_ctest(path):
    suites, ran, skipped = set(), 0, []
    for case in xml.etree.ElementTree.parse(path).getroot().iter("testcase"):
        name = case.get("name")
        output = case.findtext("system-out") or ""
        if case.get("status") == "run" or case.find("failure") is not None:
            ran += 1
            # A test of GoogleTest belongs to a suite; any other is one.
            suites.add(name.split(".")[0] if f"[ RUN      ] {name}" in output else name)
            for part, why in re.findall(r"^SKIP +: (\S+) (.+)", output, re.MULTILINE):
                skipped.append((part, why.strip()))
        else:
            skipped.append((name, reason_of_skip(output)))
    return suites, ran, skipped


def of_google_test(path):
    with open(path, encoding="utf-8") as file:
        results = json.load(file)
    # Which reason a test gave stands in the output alone.
    with open(os.path.splitext(path)[0] + ".txt", encoding="utf-8", errors="replace") as file:
        outputs = dict(re.findall(r"^\[ RUN      \] (\S+)\n(.*?)^\[  SKIPPED \] \1", file.read(), re.MULTILINE | re.DOTALL))
    suites, ran, skipped = set(), 0, []
    for suite in results["testsuites"]:
        for test in suite["testsuite"]:
            name = f"{suite['name']}.{test['name']}"
            if test["result"] == "SKIPPED":
                skipped.append((name, reason_of_skip(outputs.get(name, ""))))
            elif test["status"] == "RUN":
                suites.add(suite["name"])
                ran += 1
    return suites, ran, skipped


def ran_of(path):
    suites, ran, skipped = of_ctest(path) if path.endswith(".xml") else of_google_test(path)
    print(len(suites), ran, len(skipped), sep="\t")
    for name, why in sorted(skipped):
        print(name, why, sep="\t")


def known(build):
    """The tests of a build; those of a program of GoogleTest, which need not be built, under the program's name."""
    listed = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], check=True, capture_output=True, text=True)
    names = set()
    for test in json.loads(listed.stdout)["tests"]:
        command = test.get("command", [])
        if any(argument.startswith("--gtest_filter=") for argument in command):
            names.add(os.path.basename(command[0]))
        else:
            names.add(test["name"].removesuffix("_NOT_BUILT"))
    return names


def left_out(plain, build, reasons):
    reasons = [tuple(reason.split("=", 1)) for reason in reasons]
    counts, nameless = dict.fromkeys(reasons, 0), []
    for name in sorted(known(plain) - known(build)):
        for reason in reasons:
            if fnmatch.fnmatchcase(name, reason[0]):
                counts[reason] += 1
                break
        else:
            nameless.append(name)
    if nameless:
        sys.exit(f"left out of {build}, and nobody says why: {', '.join(nameless)}")
    for (name, why), count in counts.items():
        if count:
            print(name, count, why, sep="\t")


if __name__ == "__main__":
    if sys.argv[1:2] == ["ran"] and len(sys.argv) == 3:
        ran_of(sys.argv[2])
    elif sys.argv[1:2] == ["left-out"] and len(sys.argv) >= 4:
        left_out(sys.argv[2], sys.argv[3], sys.argv[4:])
    else:
        sys.exit(__doc__)
