#!/usr/bin/env bash
# wine.sh PROGRAM.exe ARGUMENT...: runs a Windows program in the build tree's own Wine.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/wine-setup.sh"
prepare_wine "${WINEPREFIX:-$(cd "$(dirname "$1")/.." && pwd)/wine}"
exec "$WINE" "$@"
