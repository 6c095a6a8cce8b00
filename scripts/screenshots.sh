#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Saves pictures of the main window, connected to a simulated recorder, in
# English, German and Korean: scripts/screenshots.sh [DIR]
# (default docs/screenshots; the pictures go to DIR/en, DIR/de and DIR/ko).
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-docs/screenshots}
scripts/build.sh release remote-setup-screenshots
tool=$PWD/build/release/bin/remote-setup-screenshots

# Without a display the pictures come from a virtual one, in true colour.
run=()
if [ -z "${DISPLAY:-}" ]; then
    run=(xvfb-run -a -s "-screen 0 1280x1024x24")
fi
for language in 0:en 1:de 2:ko; do
    "${run[@]}" "$tool" --language "${language%%:*}" "$dir/${language#*:}"
done
