#!/usr/bin/env bash
# Builds everything with the sanitizers and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh test
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/lsan.supp:print_suppressions=0}
ctest --test-dir build/test --output-on-failure --parallel 2 "$@"
