#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Line and branch coverage of the test suite, per source folder.
#   scripts/coverage.sh [--report-only] [ctest arguments...]
# Builds a debug tree instrumented with --coverage into build/coverage, runs
# the tests there and sums gcov's counts of every .cpp outside tests/,
# bench/ and fuzz/ by the folder it lives in.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
[ "${1:-}" = --report-only ] || scripts/setup.sh
flags=(-DCMAKE_BUILD_TYPE=Debug -DRS_BUILD_BENCH=OFF "-DCMAKE_CXX_FLAGS=--coverage -O0")
if command -v ccache >/dev/null; then
    flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$(dirname "$PWD")}
    export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
fi
# --report-only sums the counts of the last run again.
if [ "${1:-}" = --report-only ]; then
    shift
else
    cmake -S . -B build/coverage -G Ninja "${flags[@]}" >/dev/null
    cmake --build build/coverage >/dev/null
    find build/coverage -name '*.gcda' -delete
    ctest --test-dir build/coverage --parallel 2 "$@" >build/coverage/ctest.log 2>&1 ||
        echo "coverage: some tests failed, see build/coverage/ctest.log" >&2
fi

# gcov -n prints a summary per source file of every object without writing
# .gcov files; a .cpp is compiled into one object, so its first summary is its own.
find "$root/build/coverage" -name "*.gcda" -print0 |
    (cd build/coverage && xargs -0 gcov -b -n 2>/dev/null) |
    awk -v root="$root/" '
        /^File / {
            # Sources are named relative to build/coverage or absolutely.
            file = substr($0, 7, length($0) - 7)
            if (index(file, "../../") == 1)
                file = root substr(file, 7)
            keep = index(file, root) == 1 && file ~ /\.cpp$/ && !(file in seen)
            if (keep) {
                seen[file] = 1
                rel = substr(file, length(root) + 1)
                keep = rel !~ /^(tests|bench|fuzz|build)\//
                dir = rel; sub(/\/[^\/]*$/, "", dir)
            }
            next
        }
        !keep { next }
        /^Lines executed:/ { split($0, a, /[:% ]+/); lines[dir] += a[5]; hit[dir] += a[3] * a[5] / 100 }
        /^Taken at least once:/ { split($0, a, /[:% ]+/); br[dir] += a[7]; taken[dir] += a[5] * a[7] / 100 }
        END { for (d in lines) print d, lines[d], hit[d], br[d] + 0, taken[d] + 0 }' |
    sort |
    awk '
        BEGIN { printf "%-16s %8s %7s %8s %7s\n", "folder", "lines", "line%", "branches", "branch%" }
        function row(name, l, h, b, t) {
            printf "%-16s %8d %6.1f%% %8d %6.1f%%\n", name, l, l ? 100 * h / l : 0, b, b ? 100 * t / b : 0
        }
        { row($1, $2, $3, $4, $5); tl += $2; th += $3; tb += $4; tt += $5 }
        END { row("total", tl, th, tb, tt) }'
