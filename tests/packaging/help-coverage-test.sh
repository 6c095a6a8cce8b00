#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Every option and command the programs' live --help lists appears in their
# manual pages and the bash completion, every field name in the completion,
# and the completion completes what it offers.
#   help-coverage-test.sh BIN-DIR GENERATED-DIR
set -euo pipefail
bin=$1 generated=$2
completion=$generated/completion/remote-setup-cli
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}
options() { grep -oE -- '--[a-z][a-z0-9-]*' | sort -u; }
man_text() { zcat "$generated/man/$1.1.gz" | sed 's/\\-/-/g; s/\\f[BIRP]//g'; }

cli_help=$("$bin/remote-setup-cli" --help)
for program in remote-setup-cli recorder-sim make-krp-package remote-setup; do
    page=$(man_text "$program")
    for option in $("$bin/$program" --help | options); do
        grep -qe "$option" <<<"$page" || fail "$option of $program is not in its manual page"
        [[ $program == remote-setup || $program == make-krp-package ]] \
            || grep -qe "$option\b" "$completion" || fail "$option of $program is not completed"
    done
done
commands=$(sed -n '/^Commands:/,/^$/p' <<<"$cli_help" | awk '/^  [a-z]/ {print $1}')
[ -n "$commands" ] || fail "no commands in remote-setup-cli --help"
for command in $commands; do
    grep -qe "$command" <<<"$(man_text remote-setup-cli)" || fail "command $command not in the manual page"
done
for name in $("$generated/list-field-names"); do
    grep -qF -- " $name " <<<" $(sed -n "s/^_remote_setup_cli_fields='\(.*\)'$/\1/p" "$completion") " \
        || fail "field $name is not completed"
done

# What pressing Tab offers for a command line that ends in the last word.
complete_line() {
    bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
             "_$(tr - _ <<<"${1}")"; printf "%s\n" "${COMPREPLY[@]}"' _ "$completion" "$@"
}
expect() {
    local want=$1
    shift
    grep -qxF -- "$want" <<<"$(complete_line "$@")" || fail "'$*' does not offer $want"
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
touch "$work/password.txt"
first=$(head -n1 <<<"$commands")
expect "$first" remote-setup-cli "${first:0:2}"
expect "$first" remote-setup-cli --host 127.0.0.1 "${first:0:2}"
expect --timeout remote-setup-cli --ti
expect --port remote-setup-cli --host h --po
expect --language remote-setup-cli --port 9000 translate --lang
expect "$work/password.txt" remote-setup-cli --password-file "$work/pass"
expect --channels recorder-sim --chan
expect "$work/password.txt" recorder-sim --admin-password-file "$work/pass"
for command in $(sed -n '/^Commands:/,/^$/p' <<<"$cli_help" | awk '/^  [a-z].*NAME/ {print $1}'); do
    expect camera.title remote-setup-cli "$command" camera.ti
done
# A setting's named values after =, which bash makes a word of its own.
expect On remote-setup-cli set 'camera.covert[0]' =
expect On remote-setup-cli set 'camera.covert[0]' = o
expect 'camera.covert[0]=Off' remote-setup-cli set 'camera.covert[0]=of'
expect '24\ Hour' remote-setup-cli set date-time.time-format = 24
exit $((failures > 0))
