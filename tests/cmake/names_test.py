#!/usr/bin/env python3
"""names_test.py SCRIPT: what the check of names finds, and what it lets stand."""

import os
import subprocess
import sys
import tempfile

# A line of source, and whether a name in it has a prefix for its type.
CASES = [
    ("int nCount = 0;", True),
    ("void Show(const QString& strText);", True),
    ("for (const CRow* pRow : rows) {", True),
    ("const auto fnRun = [] {};", True),
    ("bool bOk;", True),
    ("int count = 0;", False),
    ("int m_nCount = 0;", False),
    ("constexpr int kCount = 0;", False),
    ("static CInterface* s_pInterface;", False),
    ("int n = 0;", False),
    ("int number = 0;", False),
    ("// a log says nCount", False),
    ("/* pRow */", False),
    ('Name("strText \\" bOk");', False),
    ('R"(pRow)";', False),
    ("view->mapToGlobal(point);", False),
    ("int hex = 0xBAD'F00D;", False),
]


def main():
    script = sys.argv[1]
    failures = 0
    with tempfile.TemporaryDirectory() as scratch:
        source = os.path.join(scratch, "A.cpp")
        for line, found in CASES:
            with open(source, "w", encoding="utf-8") as file:
                file.write("\n" + line + "\n")
            run = subprocess.run([sys.executable, script, source], capture_output=True, text=True, check=False)
            told = run.stdout.startswith(source + ":2: ") if found else run.stdout == ""
            if run.returncode != (1 if found else 0) or not told:
                print("%r: ended with %d and said %r" % (line, run.returncode, run.stdout + run.stderr))
                failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
