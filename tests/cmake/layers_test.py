#!/usr/bin/env python3
"""layers_test.py CMAKE FOLDER: each kind of include that the table of rooms forbids is found, by its file, itself and the rule.

FOLDER holds CheckIncludes.cmake.
"""

import os
import shutil
import subprocess
import sys
import tempfile

HEADERS = ("platform/Registry.h", "platform/posix/PosixFile.h", "text/TextColumns.h", "records/LogDetail.h", "parse/Classifier.h",
           "parse/fast/LineScan.h", "session/CarvelotDoc.h", "live/ProcessList.h", "lists/PaneRows.h", "report/JsonReport.h", "ui/kit/ListCtrl.h",
           "ui/session/FindPane.h", "ui/app/MainFrame.h", "attic/Old.h")

# What a file includes, and the rule that must be told; None for what is allowed.
CASES = [
    ("parse/A.cpp", '"records/LogDetail.h"', None),
    ("parse/A.cpp", '"platform/Registry.h"', None),
    ("report/A.cpp", "<rapidjson/writer.h>", None),
    ("sources/A.cpp", "<archive.h>", None),
    ("ui/app/A.cpp", '"ui/session/FindPane.h"', None),
    ("session/A.cpp", '"parse/fast/LineScan.h"', None),
    ("ui/kit/A.cpp", "<QWidget>", None),
    ("platform/posix/A.cpp", "<unistd.h>", None),
    ("platform/posix/A.cpp", '"platform/posix/PosixFile.h"', None),
    ("records/A.h", '"parse/Classifier.h"', "records uses: text"),
    ("parse/A.cpp", '"session/CarvelotDoc.h"', "parse uses: records"),
    ("parse/A.cpp", '"parse/fast/LineScan.h"', "parse uses: records"),
    ("lists/A.cpp", '"live/ProcessList.h"', "lists uses: session"),
    ("session/A.cpp", '"lists/PaneRows.h"', "session uses: parse/fast analysis"),
    ("ui/session/A.cpp", '"ui/app/MainFrame.h"', "ui/session uses: ui/kit lists trees"),
    ("ui/live/A.cpp", '"ui/session/FindPane.h"', "ui/live uses: ui/kit live"),
    ("ui/kit/A.cpp", '"session/CarvelotDoc.h"', "ui/kit uses: settings"),
    ("tools/A.cpp", '"ui/kit/ListCtrl.h"', "tools uses: settings"),
    ("lists/A.cpp", "<QString>", "only the rooms of ui/ know the toolkit"),
    ("session/A.cpp", "<windows.h>", "only what implements the platform knows a system's headers"),
    ("platform/A.h", "<unistd.h>", "only what implements the platform knows a system's headers"),
    ("text/A.cpp", '"platform/posix/PosixFile.h"', "what implements the platform is its own affair"),
    ("text/A.cpp", '"Columns.h"', "an include in quotes names a file below src/"),
    ("text/A.cpp", '"text/Gone.h"', "an include in quotes names a file below src/"),
    ("session/A.cpp", "<rapidjson/writer.h>", "session has no such library"),
    ("session/A.cpp", "<zlib.h>", "session has no such library"),
    ("text/A.cpp", '"attic/Old.h"', "text uses: platform"),
    ("attic/A.cpp", '"text/TextColumns.h"', "its folder is no room"),
    ("ui/A.cpp", '"ui/kit/ListCtrl.h"', "its folder is no room"),
]


def check(cmake, script, source):
    run = subprocess.run([cmake, f"-DSOURCE={source}", "-P", script], capture_output=True, text=True, check=False)
    return run.returncode, " ".join((run.stdout + run.stderr).split())


def main():
    cmake, folder = sys.argv[1:]
    failures = 0
    with tempfile.TemporaryDirectory() as scratch:
        for name in ("CheckIncludes.cmake", "Layers.cmake"):
            shutil.copy(os.path.join(folder, name), scratch)
        script = os.path.join(scratch, "CheckIncludes.cmake")
        for number, (file, include, rule) in enumerate(CASES):
            source = os.path.join(scratch, f"tree{number}")
            for header in HEADERS:
                if header.startswith("attic/") and "attic" not in include:
                    continue
                os.makedirs(os.path.join(source, "src", os.path.dirname(header)), exist_ok=True)
                open(os.path.join(source, "src", header), "w", encoding="utf-8").close()
            path = os.path.join(source, "src", file)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as out:
                out.write(f"#include <vector>\n#include {include}\n")
            status, said = check(cmake, script, source)
            right = status == 0 if rule is None else status != 0 and f"src/{file}" in said and rule in said and (
                "no room" in rule or include in said)
            if not right:
                failures += 1
                print(f"{file} with {include}: expected {rule or 'nothing'}, but: {said}")
        # A room that uses one below it in the table makes a circle possible: the table is refused.
        table = os.path.join(scratch, "Layers.cmake")
        text = open(table, encoding="utf-8").read().replace('"text            | platform ', '"text            | session  ', 1)
        open(table, "w", encoding="utf-8").write(text)
        status, said = check(cmake, script, os.path.join(scratch, "tree0"))
        if status == 0 or "text uses session, which is no room above it in the table" not in said:
            failures += 1
            print(f"a circle in the table: {said}")
    print(f"{len(CASES) + 1} cases, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
