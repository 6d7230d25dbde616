# shellcheck shell=bash
# Sourced: prepare_wine FOLDER makes a Wine prefix of its own, once, and sets the environment for it.

prepare_wine() {
    export WINEPREFIX=$1 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LC_ALL=C.UTF-8
    unset DISPLAY WAYLAND_DISPLAY
    # The loader itself before the distribution's wrapper, which complains about a missing 32-bit Wine each time.
    local candidate
    WINE=
    for candidate in wine64 /usr/lib/wine/wine64 wine; do
        [[ -n $WINE ]] || WINE=$(command -v "$candidate") || true
    done
    [[ -n $WINE ]] || return 1
    export WINE
    if [[ ! -e $WINEPREFIX/ready ]]; then
        mkdir -p "$WINEPREFIX"
        "$WINE" wineboot -i >/dev/null 2>&1 || true
        # It answers before the prefix is on the disk.
        "${WINE%/*}/wineserver" -w 2>/dev/null || wineserver -w 2>/dev/null || true
        [[ -e $WINEPREFIX/system.reg ]] || return 1
        touch "$WINEPREFIX/ready"
    fi
}
