#!/usr/bin/env bash
# wine-qtest.sh PROGRAM.exe ARGUMENT...: runs a Qt Test program in the build tree's own Wine, without a display.
#
# Wine hides variables that begin with QT_ from its programs, and Qt Test prints nothing to a pipe there: so the platform
# is an argument and the messages go by a file.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
messages=$(mktemp)
trap 'rm -f "$messages"' EXIT
"$here/wine.sh" "$@" -platform offscreen -o "Z:${messages//\//\\},txt"
status=$?
cat "$messages"
exit "$status"
