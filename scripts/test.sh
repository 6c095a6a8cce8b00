#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds everything with the sanitizers and runs every test, then the tests
# of the threaded code again under ThreadSanitizer. Arguments go to the
# first ctest run (for example -R REGEX); with arguments the ThreadSanitizer
# run is left out unless RS_TSAN=1.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh test
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/lsan.supp:print_suppressions=0}
ctest --test-dir build/test --output-on-failure --parallel 2 "$@"
[ $# -eq 0 ] || [ "${RS_TSAN:-0}" = 1 ] || exit 0
scripts/build.sh tsan
TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1:second_deadlock_stack=1:suppressions=$PWD/tests/tsan.supp} \
    ctest --test-dir build/tsan --output-on-failure --parallel 2 \
    -R '^(session_tests|worker_tests|firmware_tests|sim_tests|cli_tests)\.'
