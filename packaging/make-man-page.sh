#!/usr/bin/env bash
# Writes a program's manual page from its --help and --version with
# help2man, adding the sections of an include file, and sets the command
# list of remote-setup-cli (a synopsis line, then its summary indented
# below) as a tagged list like the options. A usage that runs over several
# lines stays one paragraph.
#   make-man-page.sh HELP2MAN INCLUDE OUTPUT PROGRAM
set -euo pipefail
help2man=$1 include=$2 out=$3 program=$4
"$help2man" --no-info --section=1 --include="$include" --source=RemoteSetup \
    --output="$out.raw" "$program"
awk '
    # A usage line continued on the next lines is one paragraph.
    /^\.TP$/ && previous ~ /^usage: / { next }
    { previous = $0 }
    /^\.SS "Commands:"$/ { print; commands = 1; next }
    commands && /^\.(SS|SH|PP)/ { commands = 0 }
    commands && /^\.IP$/ { paragraph++; first = 1; next }
    commands {
        if (paragraph % 2 == 1 && first) {
            gsub(/\\f[BRIP]/, "")
            print ".TP"
            print "\\fB" $0 "\\fR"
        } else {
            print
        }
        first = 0
        next
    }
    { print }
' "$out.raw" >"$out"
rm -f "$out.raw"
