#!/usr/bin/env bash
# tests/packaging/same_bytes.sh PACKAGE PRESET: builds the sources once more, in another folder, for another user's rights, clock and
# language and without a cache of compiled files, and compares the package with PACKAGE, byte by byte. It takes as long
# as the two programs take to build.
set -euo pipefail
package=$(realpath "$1")
preset=$2
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. cmake/setup.sh

elsewhere=$(mktemp -d)
trap 'rm -rf "$elsewhere"' EXIT
copy=$elsewhere/a-folder-of-another-name/carvelot
mkdir -p "$copy"
# As they are here, committed or not.
git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
    if [[ -e $file ]]; then
        printf '%s\0' "$file"
    fi
done | xargs -0 cp --parents -t "$copy"

epoch=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
say "building the package in another folder"
(
    umask 027
    cd "$copy"
    env -u CMAKE_CXX_COMPILER_LAUNCHER -u CMAKE_C_COMPILER_LAUNCHER CCACHE_DISABLE=1 SOURCE_DATE_EPOCH="$epoch" PRESET="$preset" \
        TZ=Pacific/Kiritimati LC_ALL=C HOME="$elsewhere" packaging/linux/build
)
other=$copy/build/$preset/package/$(basename "$package")
if cmp "$package" "$other"; then
    say "the same bytes: $(sha256sum <"$package" | cut -d ' ' -f 1)"
    exit
fi
dpkg-deb -R "$package" "$elsewhere/one"
dpkg-deb -R "$other" "$elsewhere/other"
diff -r "$elsewhere/one" "$elsewhere/other" || true
fail "The package of another folder differs."
