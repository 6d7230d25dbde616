#!/usr/bin/env python3
"""on_a_screen.py HELPER PREFIX PROGRAM...: Qt Test programs with the toolkit's own Windows platform, on a screen.

Those that hold real keys down stay out: Qt Test presses none.
"""

import os
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop import Desktop, windows_path  # noqa: E402


def main():
    helper, prefix, programs = sys.argv[1], sys.argv[2], sys.argv[3:]
    failed = []
    with Desktop(prefix, helper) as desktop, tempfile.TemporaryDirectory() as folder:
        for program in programs:
            messages = os.path.join(folder, "messages.txt")
            status, _ = desktop.output(os.path.abspath(program), "-platform", "windows", "-o", windows_path(messages) + ",txt")
            with open(messages, encoding="utf-8", errors="replace") as file:
                lines = [line.rstrip() for line in file if not line.startswith(("QWARN", "QCRITICAL", "QDEBUG"))]
            print("\n".join(lines if status != 0 else lines[:1] + lines[-2:]))
            if status != 0:
                failed.append(os.path.basename(program))
    sys.exit(f"failed: {', '.join(failed)}" if failed else 0)


if __name__ == "__main__":
    main()
