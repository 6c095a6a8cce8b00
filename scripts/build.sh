#!/usr/bin/env bash
# Configures and builds one build tree: scripts/build.sh release|test [targets...]
#   release: optimised, into build/release
#   test:    debug with AddressSanitizer and UndefinedBehaviorSanitizer, into build/test
set -euo pipefail
cd "$(dirname "$0")/.."
kind=${1:-release}
shift || true
case "$kind" in
    release) flags=(-DCMAKE_BUILD_TYPE=Release -DRS_BUILD_TESTS=OFF) ;;
    test) flags=(-DCMAKE_BUILD_TYPE=Debug -DRS_SANITIZE=ON) ;;
    *) echo "usage: scripts/build.sh release|test [targets...]" >&2; exit 2 ;;
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
