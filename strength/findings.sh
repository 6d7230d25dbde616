# shellcheck shell=bash
# Sourced after setup.sh by the parts that run what sanitizers look at: what they find is kept in files, one a process.
. cmake/sanitizer-options.sh

# What the findings of each look like.
declare -A finding_marks=(
    [AddressSanitizer]='ERROR: AddressSanitizer'
    [LeakSanitizer]='ERROR: LeakSanitizer'
    [MemorySanitizer]='WARNING: MemorySanitizer'
    [ThreadSanitizer]='WARNING: ThreadSanitizer'
    [UndefinedBehaviorSanitizer]='runtime error: '
)
findings_asan=$ASAN_OPTIONS findings_lsan=$LSAN_OPTIONS findings_msan=$MSAN_OPTIONS findings_tsan=$TSAN_OPTIONS
findings_ubsan=$UBSAN_OPTIONS

# keep_findings FOLDER: what is found from now on goes to files there.
keep_findings() {
    rm -rf "$1"
    mkdir -p "$1"
    export ASAN_OPTIONS=$findings_asan:log_path=$1/of LSAN_OPTIONS=$findings_lsan:log_path=$1/of
    export MSAN_OPTIONS=$findings_msan:log_path=$1/of TSAN_OPTIONS=$findings_tsan:log_path=$1/of
    export UBSAN_OPTIONS=$findings_ubsan:log_path=$1/of
}

# findings FOLDER SANITIZER prints how many of its there are.
findings() { find "$1" -type f -exec cat {} + | grep -a -c -e "${finding_marks[$2]}" || true; }

# show_findings FOLDER SANITIZER prints the first of each file.
show_findings() { find "$1" -type f -exec grep -a -h -m1 -A25 -e "${finding_marks[$2]}" {} \; | head -n 200; }

# found PRESET MISTAKE SANITIZER ends the script if it does not find the mistake, or something else besides.
found() {
    local folder=$PWD/build/$1/findings-on-purpose
    keep_findings "$folder"
    if "build/$1/bin/mistake_helper" "$2" >/dev/null 2>&1 || [[ $(findings "$folder" "$3") != 1 ]]; then
        fail "a mistake on purpose, $2, was not found by $3"
    fi
    say "found on purpose by $3: $2"
}
