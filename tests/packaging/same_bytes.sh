#!/usr/bin/env bash
# tests/packaging/same_bytes.sh PACKAGE PRESET: builds the sources once more, in another folder, for another user's rights, clock and
# language, and compares the package with PACKAGE, byte by byte.
#
# It takes as long as the two programs take to build. Where compiled files are kept (CMAKE_CXX_COMPILER_LAUNCHER=ccache), those of the other
# folder are kept apart, so that none of PACKAGE's is taken for one of its own.
set -euo pipefail
package=$(realpath "$1")
preset=$2
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. cmake/setup.sh

cache=${XDG_CACHE_HOME:-$HOME/.cache}/carvelot
elsewhere=$PWD/build/$preset/package-elsewhere
copy=$elsewhere/a-folder-of-another-name/carvelot
rm -rf "$elsewhere"
trap 'rm -rf "$elsewhere"' EXIT
mkdir -p "$copy" "$elsewhere/home"
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
    env -u CCACHE_BASEDIR -u CCACHE_NOHASHDIR CCACHE_DIR="$cache/ccache-elsewhere" SOURCE_DATE_EPOCH="$epoch" PRESET="$preset" \
        TZ=Pacific/Kiritimati LC_ALL=C HOME="$elsewhere/home" packaging/linux/build
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
