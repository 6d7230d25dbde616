# shellcheck shell=bash
# Sourced by ./run, ./test and .ci/run: packages, configuring and building.

say() { printf '== %s\n' "$*"; }
fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# need PACKAGE... installs what is missing of the named Debian packages, and is quick when nothing is.
need() {
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null) == ii* ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    local sudo=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "Missing packages: ${missing[*]}. Install them as root, or install sudo."
        sudo=(sudo)
    fi
    say "installing ${missing[*]}"
    "${sudo[@]}" apt-get update -qq
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET TARGET... -- OPTION... configures a preset and builds the targets, or everything without any.
build() {
    local preset=$1 targets=()
    shift
    while (($#)) && [[ $1 != -- ]]; do
        targets+=(--target "$1")
        shift
    done
    (($#)) && shift
    say "configuring build/$preset"
    cmake --preset "$preset" "$@" >"$(log_of "$preset" configure)" 2>&1 || fail_with "$preset" configure
    say "building build/$preset"
    cmake --build "build/$preset" --parallel "${JOBS:-$(nproc)}" "${targets[@]}" \
        >"$(log_of "$preset" build)" 2>&1 || fail_with "$preset" build
}

log_of() {
    mkdir -p "build/$1"
    printf 'build/%s/%s.log' "$1" "$2"
}

fail_with() {
    cat "$(log_of "$1" "$2")" >&2
    fail "The $2 step of build/$1 failed."
}

# shellcheck disable=SC2034 # used by those that source this
{
    packages_build=(cmake g++ make ninja-build rapidjson-dev libcli11-dev libarchive-dev zlib1g-dev libzstd-dev
        libsqlite3-dev)
    packages_window=(qt6-base-dev qt6-base-dev-tools libgl-dev librsvg2-bin fonts-dejavu-core)
    packages_test=(libgtest-dev libgmock-dev locales python3 xdotool xvfb)
    packages_coverage=(gcovr)
    packages_soak=(libxcb1-dev libxcb-xtest0-dev openbox xvfb)
    packages_sanitize=(clang-14 libclang-rt-14-dev llvm-14)
    # Its standard library has what the sources use, and it is built anew for MemorySanitizer.
    packages_memory=(clang-16 libclang-rt-16-dev llvm-16 googletest dpkg-dev tcl zip zstd)
    # Node and npm come too where they are not there in another version.
    packages_readers=(valgrind python3 python3-jsonschema)
    packages_fleet=(clickhouse-server clickhouse-client)
    packages_lint=(clang-format-14 clang-tidy-14 libbenchmark-dev shellcheck)
    packages_mingw=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev xz-utils)
    packages_windows=("${packages_mingw[@]}" googletest wine wine64)
    packages_windows_window=(xvfb fonts-wine fonts-liberation)
    packages_windows_qt=(dpkg-dev)
    packages_windows_libs=(dpkg-dev tcl)
    packages_windows_package=(nsis python3 wixl msitools faketime osslsigncode openssl)
    packages_linux_package=(dpkg-dev file python3)
    packages_linux_test=(appstream debootstrap desktop-file-utils libglib2.0-bin lintian man-db shared-mime-info xdotool
        xvfb zsh)
}
