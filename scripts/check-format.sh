#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a C++ file differs from what clang-format makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(find app session setup i18n pages cli sim firmware tests bench fuzz \
    -name '*.cpp' -o -name '*.h' 2>/dev/null | sort)
[ ${#files[@]} -eq 0 ] && exit 0
clang-format --dry-run --Werror "${files[@]}"
