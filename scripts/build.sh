#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Configures and builds one build tree: scripts/build.sh release|test|tsan [targets...]
#   release: optimised, into build/release
#   test:    debug with AddressSanitizer and UndefinedBehaviorSanitizer, into build/test
#   tsan:    debug with ThreadSanitizer, into build/tsan; by default only the
#            tests of the threaded code (session, firmware, simulator, and
#            the command line, whose fleet runs its sessions in fibers)
set -euo pipefail
cd "$(dirname "$0")/.."
kind=${1:-release}
shift || true
case "$kind" in
    release) flags=(-DCMAKE_BUILD_TYPE=Release -DRS_BUILD_TESTS=OFF) ;;
    test) flags=(-DCMAKE_BUILD_TYPE=Debug -DRS_SANITIZE=ON) ;;
    tsan)
        flags=(-DCMAKE_BUILD_TYPE=Debug -DRS_TSAN=ON -DRS_BUILD_BENCH=OFF)
        [ $# -gt 0 ] || set -- session_tests worker_tests firmware_tests sim_tests cli_tests default_setup
        ;;
    *) echo "usage: scripts/build.sh release|test|tsan [targets...]" >&2; exit 2 ;;
esac
scripts/setup.sh
# Rebuilds of other checkouts of the same sources come from the cache.
if command -v ccache >/dev/null; then
    flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$(dirname "$PWD")}
    export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
fi
cmake -S . -B "build/$kind" -G Ninja "${flags[@]}" >/dev/null
targets=()
for t in "$@"; do targets+=(--target "$t"); done
cmake --build "build/$kind" "${targets[@]}"
