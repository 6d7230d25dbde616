# shellcheck shell=bash
# Sourced after setup.sh: find_windows_qt looks for a Qt for 64-bit Windows (mingw-w64) and sets windows_qt to its prefix,
# or to nothing. Places, the first wins:
#
#   CARVELOT_QT_WINDOWS                              a prefix, or a .tar archive of one
#   the cache, ${XDG_CACHE_HOME:-~/.cache}/carvelot  what packaging/windows/build has built there
#   ../shared/windows/                               an archive beside the checkout
#
# An archive is unpacked into the cache, once.

windows_qt_version=6.4.2
windows_qt_name=qt-$windows_qt_version-mingw64
windows_qt_cache=${XDG_CACHE_HOME:-${HOME:-$PWD/build}/.cache}/carvelot

is_windows_qt() { [[ -e $1/lib/cmake/Qt6Widgets/Qt6WidgetsConfig.cmake && -e $1/bin/Qt6Widgets.dll ]]; }

# unpack_windows_qt ARCHIVE prints the prefix, and fails when the archive holds none.
unpack_windows_qt() {
    local folder scratch prefix
    folder=$windows_qt_cache/unpacked-$(sha256sum "$1" | cut -c 1-16)
    if [[ ! -d $folder ]]; then
        mkdir -p "$windows_qt_cache"
        scratch=$(mktemp -d "$windows_qt_cache/unpacking.XXXXXX")
        # Whole or not at all, also when two of us unpack at once.
        if ! tar -x -f "$1" -C "$scratch" || ! mv -T "$scratch" "$folder"; then
            rm -rf "$scratch"
        fi
    fi
    for prefix in "$folder" "$folder"/*; do
        if is_windows_qt "$prefix"; then
            printf '%s\n' "$prefix"
            return
        fi
    done
    return 1
}

find_windows_qt() {
    local place=${CARVELOT_QT_WINDOWS-}
    windows_qt=
    if [[ -d $place ]]; then
        is_windows_qt "$place" || fail "CARVELOT_QT_WINDOWS=$place holds no Qt for Windows."
        windows_qt=$(cd "$place" && pwd)
    elif [[ -n $place ]]; then
        # shellcheck disable=SC2034 # the result
        windows_qt=$(unpack_windows_qt "$place") || fail "CARVELOT_QT_WINDOWS=$place holds no Qt for Windows."
    elif is_windows_qt "$windows_qt_cache/$windows_qt_name"; then
        windows_qt=$windows_qt_cache/$windows_qt_name
    elif [[ -e ../shared/windows/$windows_qt_name.tar.xz ]]; then
        # shellcheck disable=SC2034 # the result
        windows_qt=$(unpack_windows_qt "../shared/windows/$windows_qt_name.tar.xz") || windows_qt=
    fi
}
