#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the README's fleet demo, the block after its marker comment, as a new
# user would paste it at the top of a checkout: the programs it finds under
# build/release/bin are this build tree's. The demo's own claims are checked:
# every recorder took the new title and the diff shows the one change.
#   readme-demo-test.sh README BIN-DIR
set -euo pipefail
readme=$1 bin=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

demo=$(awk '/^<!-- tests\/packaging\/readme-demo-test.sh runs the next block/ { marked = 1; next }
            marked && /^```/ { if (inside) exit; inside = 1; next }
            inside { print }' "$readme")
[ -n "$demo" ] || { echo "FAIL: no marked demo block in $readme"; exit 1; }

mkdir -p "$work/checkout/build/release"
ln -s "$bin" "$work/checkout/build/release/bin"
# Whatever the demo starts is stopped, also when one of its lines fails.
script='set -euo pipefail
trap '\''kill $(jobs -p) 2>/dev/null || true'\'' EXIT
'$demo
status=0
(cd "$work/checkout" && env -u REMOTE_SETUP_PASSWORD TMPDIR="$work" PATH="/usr/bin:/bin" \
    bash -c "$script") >"$work/out" 2>&1 || status=$?
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}
[ $status = 0 ] || fail "the demo ended with exit code $status"
[ "$(grep -c ': camera.title\[0\] = "Entrance"$' "$work/out")" = 20 ] \
    || fail "not every recorder took the new title"
grep -qE '^  ok +20$' "$work/out" || fail "no summary of 20 recorders ok"
grep -qF 'camera.title[0] = "CAM 01" -> "Entrance"' "$work/out" || fail "the diff shows no change"
[ $failures = 0 ] || cat "$work/out"
exit $((failures > 0))
