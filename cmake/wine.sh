#!/usr/bin/env bash
# wine.sh PROGRAM.exe ARGUMENT...: runs a Windows program in the build tree's own Wine.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/wine-setup.sh"
prepare_wine "${WINEPREFIX:-$(cd "$(dirname "$1")/.." && pwd)/wine}"
if [[ ! -p /dev/stdout && ! -p /dev/stderr ]]; then
    exec "$WINE" "$@"
fi
# The first program of a prefix starts its services, which would hold the pipe for as long as any program runs there.
printed=$(mktemp)
trap 'rm -f "$printed"' EXIT
status=0
"$WINE" "$@" >"$printed" 2>&1 || status=$?
cat "$printed"
exit "$status"
