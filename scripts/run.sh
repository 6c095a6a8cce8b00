#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the programs and starts a simulated recorder on a free local port
# with a fresh setup record: scripts/run.sh [DIR]
# With a display it opens the desktop client and tells what to enter. Without
# one it saves pictures of the client connected to the simulator (into DIR,
# or a new temporary folder) and shows the command-line client's view of it.
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

# The simulator's first line names the port it took; a fifo hands that line
# over while the simulator keeps running.
mkfifo "$work/listening"
"$bin/recorder-sim" --listen 127.0.0.1:0 --record "$work/recorder-setup.dat" \
    >"$work/listening" 2>"$work/recorder-sim.log" &
sim_pid=$!
read -r line <"$work/listening"
port=${line##*:}
echo "recorder-sim: $line (log in $work/recorder-sim.log)"

if [ -n "${DISPLAY:-}" ]; then
    cat <<END

In the Remote Setup window enter
    ADDRESS      127.0.0.1
    PORT NUMBER  $port
    USER ID      Admin
    PASSWORD     (leave it empty)
and press CONNECT. Closing the window stops the simulator.
END
    "$bin/remote-setup"
    exit 0
fi

shots=${1:-$(mktemp -d "${TMPDIR:-/tmp}/remote-setup-screenshots.XXXXXX")}
echo
echo "No display: pictures of the window connected to a simulator instead"
xvfb-run -a -s "-screen 0 1280x1024x24" "$bin/remote-setup-screenshots" "$shots"
echo "The pictures are in $shots"

echo
echo "\$ remote-setup-cli --port $port info"
"$bin/remote-setup-cli" --port "$port" info
