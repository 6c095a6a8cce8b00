#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The desktop entry and the AppStream metainfo validate without a remark.
set -euo pipefail
desktop=$1 metainfo=$2
status=0
remarks=$(desktop-file-validate "$desktop" 2>&1) || status=1
if [ -n "$remarks" ]; then
    echo "$remarks"
    status=1
fi
appstreamcli validate --no-net --strict "$metainfo" || status=1
exit $status
