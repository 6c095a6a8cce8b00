#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Puts the licence line at the top of every source, script and build file
# that lacks it: C++ files and their templates take it as a // comment on
# the first line, scripts right after their #! line, CMake, Python and YAML
# files as a # comment on the first line. Running it again changes nothing.
#   scripts/spdx-headers.sh           adds the missing lines
#   scripts/spdx-headers.sh --check   only lists the files without one; fails if any
set -euo pipefail
cd "$(dirname "$0")/.."
line='SPDX-License-Identifier: GPL-3.0-or-later'
check=0
case ${1:-} in
    '') ;;
    --check) check=1 ;;
    *) echo "usage: scripts/spdx-headers.sh [--check]" >&2; exit 2 ;;
esac

# The files of the project: tracked and new ones, or outside a git checkout
# the source tree without its build trees.
project_files() {
    if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git ls-files --cached --others --exclude-standard
    else
        find . -path ./build -prune -o -path ./.git -prune -o -type f -print | sed 's|^\./||'
    fi
}

# How a file takes the line: cpp, script, hash, or nothing.
kind_of() {
    case $1 in
        *.cpp | *.h | *.h.in) echo cpp ;;
        *)
            if [ "$(head -c 2 "$1")" = '#!' ]; then
                echo script
            else
                case $1 in
                    CMakeLists.txt | */CMakeLists.txt | *.cmake | *.py | *.yml | *.yaml) echo hash ;;
                esac
            fi
            ;;
    esac
}

missing=0
while read -r file; do
    [ -f "$file" ] && [ -s "$file" ] || continue
    kind=$(kind_of "$file")
    [ -n "$kind" ] || continue
    head -n 2 "$file" | grep -qF "$line" && continue
    missing=$((missing + 1))
    if [ $check = 1 ]; then
        echo "no licence line: $file"
        continue
    fi
    # sed -i keeps the file's mode, so scripts stay executable.
    case $kind in
        cpp) sed -i "1i // $line\n" "$file" ;;
        hash) sed -i "1i # $line\n" "$file" ;;
        script) sed -i "1a # $line" "$file" ;;
    esac
done < <(project_files)
[ $check = 0 ] || [ $missing = 0 ] || {
    echo "$missing file(s) without '$line': run scripts/spdx-headers.sh" >&2
    exit 1
}
