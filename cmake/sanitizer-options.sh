# shellcheck shell=bash
# Sourced: how the sanitizers' run times behave in tests and fuzzing.
export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=suppressions=$PWD/cmake/leak-suppressions.txt:print_suppressions=0
ASAN_SYMBOLIZER_PATH=$(command -v llvm-symbolizer-14 || true)
export ASAN_SYMBOLIZER_PATH
export TSAN_OPTIONS=suppressions=$PWD/cmake/thread-suppressions.txt:print_suppressions=0
# Not 77, which a test that is skipped ends with.
export MSAN_OPTIONS=exitcode=86
MSAN_SYMBOLIZER_PATH=$(command -v llvm-symbolizer-16 || true)
export MSAN_SYMBOLIZER_PATH
# GLib's own pools of memory pass blocks from thread to thread in a way that ThreadSanitizer does not see.
export G_SLICE=always-malloc
