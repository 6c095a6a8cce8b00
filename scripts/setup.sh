#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the Debian packages the project builds, tests and runs with.
# Does nothing when everything is already there.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config
    qt6-base-dev libgl-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    clang-14 libclang-rt-14-dev clang-format
    xvfb xauth fonts-dejavu-core fonts-noto-cjk ccache
    help2man desktop-file-utils appstream dpkg-dev fakeroot file lintian
    ansible-core
)

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$p" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}" >&2
sudo=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: need root or sudo to install: ${missing[*]}" >&2; exit 1; }
    sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
