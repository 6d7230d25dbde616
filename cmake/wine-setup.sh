# Sourced: prepare_wine FOLDER makes a Wine prefix of its own, once, and sets the environment for it.

prepare_wine() {
    export WINEPREFIX=$1 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LC_ALL=C.UTF-8
    unset DISPLAY WAYLAND_DISPLAY
    if command -v wine64 >/dev/null; then
        WINE=$(command -v wine64)
    else
        WINE=$(command -v wine)
    fi
    export WINE
    if [[ ! -e $WINEPREFIX/ready ]]; then
        mkdir -p "$WINEPREFIX"
        "$WINE" wineboot -i >/dev/null 2>&1 || true
        [[ -e $WINEPREFIX/system.reg || -d $WINEPREFIX/drive_c/windows/system32 ]] || return 1
        touch "$WINEPREFIX/ready"
    fi
}
