# shellcheck shell=bash
# Sourced after setup.sh by the parts that run what sanitizers look at: what they find is kept in files, one a process. Such
# a part says in work where its files go, and in quick whether it is to be quick; what does not hold stands in broken.
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

rm -rf "${work:?}"
mkdir -p "$work"
broken=()

# run_suites PRESET [FILTER]: all suites; or, quickly, core_tests, all of it or what FILTER names. What they say stands in
# $work/<preset>.txt.
run_suites() {
    local status=0
    keep_findings "$PWD/build/$1/findings"
    started=$SECONDS
    if [[ -n $quick ]]; then
        "build/$1/bin/core_tests" --gtest_filter="${2-*}" --gtest_output=json:"$work/$1.json" >"$work/$1.txt" 2>&1 || status=$?
        results=$work/$1.json
    else
        ctest --preset "$1" --output-junit "$work/$1.xml" >"$work/$1.txt" 2>&1 || status=$?
        results=$work/$1.xml
    fi
    seconds=$((SECONDS - started))
    if ((status)); then
        grep -aE '^\[  FAILED  \]|\*\*\*|Failure$' "$work/$1.txt" | head -n 60 || true
        broken+=("a suite of build/$1: ${work#"$PWD/"}/$1.txt")
    fi
    suites=0 tests=0
    [[ ! -s $results ]] || IFS=$'\t' read -r suites tests _ < <(strength/suites.py ran "$results")
    say "$tests tests of $suites suites in $((seconds / 60)) min $((seconds % 60)) s"
}

# ask_the_plain_build OPTION... configures it, for left_out.
ask_the_plain_build() {
    say "asking what the plain build runs beside these"
    cmake --preset release -B "$work/plain" "$@" >"$work/plain.txt" 2>&1 || fail "the plain build does not configure: $work/plain.txt"
}

# left_out PRESET WHY... prints what the plain build runs and this one does not, as a list with the reasons (see suites.py).
left_out() {
    strength/suites.py left-out "$work/plain" "build/$1" "${@:2}" |
        awk -F'\t' '{ printf "- `%s`%s: %s\n", $1, ($2 > 1 ? " (" $2 " suites)" : ""), $3 }'
}

# skipped RESULTS prints which tests were, as a list with their reasons.
skipped() {
    strength/suites.py ran "$1" | tail -n +2 | awk -F'\t' '{ printf "- `%s`%s%s\n", $1, ($2 == "" ? "" : ": "), $2 }'
}
