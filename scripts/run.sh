#!/usr/bin/env bash
# Builds the programs, starts a simulated recorder on a free local port with a
# fresh setup record, and runs the command-line client against it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh release
bin=$PWD/build/release/bin
work=$(mktemp -d)
sim_pid=
cleanup() {
    [ -n "$sim_pid" ] && kill "$sim_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

mkfifo "$work/listening"
"$bin/recorder-sim" --listen 127.0.0.1:0 --record "$work/recorder-setup.dat" \
    >"$work/listening" 2>"$work/recorder-sim.log" &
sim_pid=$!
read -r line <"$work/listening"
port=${line##*:}
echo "recorder-sim: $line (log in $work/recorder-sim.log)"

run() {
    echo
    echo "\$ remote-setup-cli $*"
    "$bin/remote-setup-cli" "$@"
}
run --port "$port" info
run --port "$port" set-time
run --port "$port" export "$work/Export_SetupData.dat"
run translate --escapes --language 1 "CONNECT" "Login failed by password error" "Complete Save   \t"
run translate --escapes --language 2 "CONNECT" "Login failed by password error" "Complete Save   \t"
