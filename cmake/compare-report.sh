#!/usr/bin/env bash
# compare-report.sh NATIVE REPORT.exe LOG
#
# The report of a log must be the same on every platform, line ends apart. Exit 77: the log can't be compared.
set -euo pipefail
native=$1 windows=$2 log=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# Bytes beyond ASCII that are valid UTF-8 are UTF-8 here and the ANSI code page there.
if LC_ALL=C grep -q -a -P '[\xC2-\xF4][\x80-\xBF]' "$log"; then
    echo "$log holds UTF-8, which is another text in the ANSI code page of Windows"
    exit 77
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0
# By its name alone: the report repeats the path that it is given.
cd "$(dirname "$log")"
log=$(basename "$log")
"$native" --json "$log" >"$scratch/native" 2>"$scratch/native-errors" || status=$?
windows_status=0
"$here/wine.sh" "$windows" --json "$log" >"$scratch/crlf" 2>"$scratch/windows-errors" || windows_status=$?
sed 's/\r$//' "$scratch/crlf" >"$scratch/windows"

if ((status != windows_status)); then
    cat "$scratch/native-errors" "$scratch/windows-errors"
    echo "exit status: native $status, Windows $windows_status"
    exit 1
fi
if ((status != 0)); then
    diff <(cat "$scratch/native-errors") <(sed 's/\r$//' "$scratch/windows-errors")
fi
if cmp -s "$scratch/native" "$scratch/windows"; then
    echo "$(wc -c <"$scratch/native") bytes, equal"
    exit 0
fi
# One long line shows nothing: cut at every object.
diff <(sed 's/[{[]/\n&/g' "$scratch/native") <(sed 's/[{[]/\n&/g' "$scratch/windows") | head -40
exit 1
