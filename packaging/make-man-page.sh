#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Writes a program's manual page from its --help and --version with
# help2man, adding the sections of an include file. The usage (a line
# starting "usage: ", with its continuation lines) becomes the SYNOPSIS, one
# paragraph that breaks lines only between bracketed options; the command
# list of remote-setup-cli (a synopsis line, then its summary indented
# below) becomes a tagged list like the options.
#   make-man-page.sh HELP2MAN INCLUDE OUTPUT PROGRAM
set -euo pipefail
help2man=$1 include=$2 out=$3 program=$4
"$help2man" --no-info --section=1 --include="$include" --source=RemoteSetup \
    --output="$out.raw" "$program"
# Two passes over the page: the first collects the usage, the second writes
# it before the description and leaves it out where help2man put it.
awk '
    # Spaces inside [...] do not break a line.
    function keep_together(text,    out, depth, i, c) {
        out = ""
        for (i = 1; i <= length(text); i++) {
            c = substr(text, i, 1)
            depth += (c == "[") - (c == "]")
            out = out (c == " " && depth > 0 ? "\\ " : c)
        }
        return out
    }
    # A usage line runs on over the next lines up to the next paragraph or
    # heading; help2man sets those lines apart with .IP or .TP.
    function usage_line(line) {
        if (line ~ /^usage: /) {
            in_usage = 1
            return 1
        }
        if (in_usage && line ~ /^\.(PP|SS|SH)/)
            in_usage = 0
        return in_usage
    }
    FNR == NR {
        if (usage_line($0) && $0 !~ /^\.(IP|TP)$/) {
            sub(/^usage: /, "")
            usage = usage (usage == "" ? "" : "\n") keep_together($0)
        }
        next
    }
    FNR == 1 { in_usage = 0 }
    /^\.SH DESCRIPTION$/ && usage != "" {
        split(usage, words, " ")
        print ".SH SYNOPSIS"
        print ".B " words[1]
        print substr(usage, length(words[1]) + 2)
    }
    # The paragraph break help2man puts before the usage.
    /^\.PP$/ { in_usage = 0; held = 1; next }
    usage_line($0) { held = 0; next }
    held { print ".PP"; held = 0 }
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
' "$out.raw" "$out.raw" >"$out"
rm -f "$out.raw"
