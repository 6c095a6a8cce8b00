#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the Debian packages from an optimised build tree:
#   scripts/package.sh   leaves remote-setup_*.deb and remote-setup-cli_*.deb
#                        in build/packages
set -euo pipefail
cd "$(dirname "$0")/.."
# Only what the packages hold, not the benchmarks.
scripts/build.sh release remote-setup remote-setup-cli recorder-sim make-krp-package \
    default_setup packaging_files
cpack --config build/release/CPackConfig.cmake -B build/packages >/dev/null
ls build/packages/*.deb
