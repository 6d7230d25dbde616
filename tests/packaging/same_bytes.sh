#!/usr/bin/env bash
# tests/packaging/same_bytes.sh linux|windows PRESET: builds the packages of that system once more, in another folder, for another user's
# rights, clock and language, and compares them with those in build/PRESET/package, byte by byte.
#
# It takes as long as the two programs take to build. Where compiled files are kept (CMAKE_CXX_COMPILER_LAUNCHER=ccache), those of the other
# folder are kept apart, so that none is taken from the packages that it is compared with.
set -euo pipefail
system=$1
preset=$2
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. cmake/setup.sh

packages=$PWD/build/$preset/package
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

settings=()
if [[ $system == windows ]]; then
    . cmake/windows-qt.sh
    . cmake/windows-libs.sh
    find_windows_qt
    find_windows_libs
    settings=(CARVELOT_QT_WINDOWS="$windows_qt" CARVELOT_LIBS_WINDOWS="$windows_libs")
fi
say "building the packages in another folder"
(
    umask 027
    cd "$copy"
    env -u CCACHE_BASEDIR -u CCACHE_NOHASHDIR CCACHE_DIR="$cache/ccache-elsewhere" PRESET="$preset" \
        SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}" \
        TZ=Pacific/Kiritimati LC_ALL=C HOME="$elsewhere/home" "${settings[@]}" "packaging/$system/build"
)

# files_of PACKAGE FOLDER unpacks what can be unpacked, to show what differs.
files_of() {
    mkdir -p "$2"
    case $1 in
    *.deb) dpkg-deb -R "$1" "$2" ;;
    *.zip) (cd "$2" && cmake -E tar xf "$1") ;;
    esac
}
shopt -s nullglob
different=()
compared=0
for package in "$packages"/*.{deb,zip,exe,msi}; do
    other=$copy/build/$preset/package/$(basename "$package")
    compared=$((compared + 1))
    if cmp "$package" "$other"; then
        say "the same bytes: $(basename "$package"), $(sha256sum <"$package" | cut -d ' ' -f 1)"
        continue
    fi
    different+=("$(basename "$package")")
    files_of "$package" "$elsewhere/one/$(basename "$package")"
    files_of "$other" "$elsewhere/other/$(basename "$package")"
    diff -r "$elsewhere/one" "$elsewhere/other" || true
done
((compared)) || fail "There is no package in build/$preset/package."
((${#different[@]} == 0)) || fail "Of another folder differ: ${different[*]}"
