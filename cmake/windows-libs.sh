# shellcheck shell=bash
# Sourced after setup.sh: find_windows_libs looks for the static libraries for 64-bit Windows (mingw-w64) that the distribution
# has not (libarchive, zstd, SQLite) and sets windows_libs to their prefix, or to nothing. Places, the first wins:
#
#   CARVELOT_LIBS_WINDOWS                            a prefix, or a .tar archive of one
#   the cache, ${XDG_CACHE_HOME:-~/.cache}/carvelot  what packaging/windows/build-libs has built there
#   ../shared/windows/                               an archive beside the checkout
#
# An archive is unpacked into the cache, once.

windows_libs_name=libs-mingw64
windows_libs_cache=${XDG_CACHE_HOME:-${HOME:-$PWD/build}/.cache}/carvelot

is_windows_libs() {
    local file
    for file in lib/libarchive.a lib/libzstd.a lib/libsqlite3.a include/archive.h include/zstd.h include/sqlite3.h; do
        [[ -e $1/$file ]] || return 1
    done
}

# unpack_windows_libs ARCHIVE prints the prefix, and fails when the archive holds none.
unpack_windows_libs() {
    local folder scratch
    folder=$windows_libs_cache/unpacked-$(sha256sum "$1" | cut -c 1-16)
    if [[ ! -d $folder ]]; then
        mkdir -p "$windows_libs_cache"
        scratch=$(mktemp -d "$windows_libs_cache/unpacking.XXXXXX")
        # Whole or not at all, also when two of us unpack at once.
        if ! tar -x -f "$1" -C "$scratch" || ! mv -T "$scratch" "$folder"; then
            rm -rf "$scratch"
        fi
    fi
    is_windows_libs "$folder" && printf '%s\n' "$folder"
}

find_windows_libs() {
    local place=${CARVELOT_LIBS_WINDOWS-}
    windows_libs=
    if [[ -d $place ]]; then
        is_windows_libs "$place" || fail "CARVELOT_LIBS_WINDOWS=$place holds no libraries for Windows."
        windows_libs=$(cd "$place" && pwd)
    elif [[ -n $place ]]; then
        # shellcheck disable=SC2034 # the result
        windows_libs=$(unpack_windows_libs "$place") || fail "CARVELOT_LIBS_WINDOWS=$place holds no libraries for Windows."
    elif is_windows_libs "$windows_libs_cache/$windows_libs_name"; then
        windows_libs=$windows_libs_cache/$windows_libs_name
    elif [[ -e ../shared/windows/$windows_libs_name.tar.xz ]]; then
        # shellcheck disable=SC2034 # the result
        windows_libs=$(unpack_windows_libs "../shared/windows/$windows_libs_name.tar.xz") || windows_libs=
    fi
}
