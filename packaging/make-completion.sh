#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Writes the bash completion of remote-setup-cli and recorder-sim from the
# programs' own --help and the field names and named values of the setup
# record, so options, commands and fields added to the programs are
# completed without editing this.
#   make-completion.sh OUTPUT REMOTE-SETUP-CLI RECORDER-SIM LIST-FIELD-NAMES
set -euo pipefail
out=$1 cli=$2 sim=$3 fields=$4

cli_help=$("$cli" --help)
sim_help=$("$sim" --help)
field_names=$("$fields" | tr '\n' ' ')

# "--opt V" with a single space before an argument placeholder; a wider gap
# starts the description instead.
value_options() { grep -oE -- '--[a-z][a-z0-9-]* [^][ -][^] ]*' || true; }
options() { grep -oE -- '--[a-z][a-z0-9-]*' | sort -u || true; }
# What an option's argument or a command's operand is: file, dir, field (a
# setting's name), "words W..." (one of W) or any other value.
kind_of() {
    case $1 in
        *NAME*) echo field ;;
        *'|'*) echo "words ${1//|/ }" ;;
        DIR*) echo dir ;;
        F | FILE* | PACKAGE* | *FILE) echo file ;;
        *) echo value ;;
    esac
}
# A case branch per field with named values, each value quoted for bash:
# "camera.covert) printf '%s\n' Off On ;;".
value_name_cases() {
    "$fields" --values | while IFS=$'\t' read -r -a parts; do
        printf '        %s) printf %s %s;;\n' "${parts[0]}" "'%s\n'" "$(printf '%q ' "${parts[@]:1}")"
    done
}
# A case branch per value-taking option: "--opt) echo KIND ;;".
value_cases() {
    value_options | sort -u | while read -r option value; do
        echo "        $option) echo $(kind_of "$value") ;;"
    done
}

global_lines=$(sed '/^Commands:/,$d' <<<"$cli_help")
command_lines=$(sed -n '/^Commands:/,/^$/p' <<<"$cli_help" | grep -E '^  [a-z]' || true)
commands=$(awk '{print $1}' <<<"$command_lines" | tr '\n' ' ')

command_cases=""
operand_cases=""
while read -r name synopsis; do
    [ -n "$name" ] || continue
    opts=$(options <<<"$synopsis" | tr '\n' ' ')
    command_cases+="        $name) echo '${opts% }' ;;"$'\n'
    # The operands: the synopsis without its options and their arguments.
    operands=$(sed -E 's/--[a-z][a-z0-9-]*( [^][ -][^] ]*)?//g; s/[][]//g' <<<"$synopsis")
    kind=""
    for word in $operands; do
        k=$(kind_of "$word")
        [ "$k" = value ] || kind=$k
    done
    [ -z "$kind" ] || operand_cases+="        $name) echo $kind ;;"$'\n'
done <<<"$command_lines"

cat >"$out" <<EOF
# bash completion for remote-setup-cli and recorder-sim.
# Written by the build from the programs' --help and the setup record's
# field table; do not edit.

_remote_setup_cli_fields='${field_names% }'

# What the argument of an option is (see kind_of above); nothing for a flag.
_remote_setup_cli_value_kind()
{
    case \$1 in
$(value_cases <<<"$cli_help")
    esac
}

_remote_setup_cli_command_options()
{
    case \$1 in
${command_cases}    esac
}

_remote_setup_cli_operand_kind()
{
    case \$1 in
${operand_cases}    esac
}

_remote_setup_cli_value_names()
{
    case \$1 in
$(value_name_cases)
    esac
}

# After NAME= the named values of the field, whatever their case. Bash
# breaks the line at = by default (words NAME = VALUE); without that break
# NAME=VALUE is one word and the replies carry NAME= too.
_remote_setup_cli_setting_value()
{
    local cur=\${COMP_WORDS[COMP_CWORD]} name prefix before="" value
    if [ "\$cur" = = ]; then
        name=\${COMP_WORDS[COMP_CWORD - 1]} prefix=""
    elif [ "\${COMP_WORDS[COMP_CWORD - 1]}" = = ]; then
        name=\${COMP_WORDS[COMP_CWORD - 2]} prefix=\$cur
    elif [[ \$cur == *=* ]]; then
        name=\${cur%%=*} prefix=\${cur#*=} before=\${cur%%=*}=
    else
        return 1
    fi
    prefix=\${prefix//\\\\/}
    COMPREPLY=()
    while IFS= read -r value; do
        [[ \${value,,} == "\${prefix,,}"* ]] && COMPREPLY+=("\$before\$(printf '%q' "\$value")")
    done < <(_remote_setup_cli_value_names "\${name%%\\[*}")
    return 0
}

_remote_setup_complete_kind()
{
    case \$1 in
        file) mapfile -t COMPREPLY < <(compgen -f -- "\$2") ;;
        dir) mapfile -t COMPREPLY < <(compgen -d -- "\$2") ;;
        field) mapfile -t COMPREPLY < <(compgen -W "\$_remote_setup_cli_fields" -- "\$2") ;;
        words\ *) mapfile -t COMPREPLY < <(compgen -W "\${1#words }" -- "\$2") ;;
        *) COMPREPLY=() ;;
    esac
}

_remote_setup_cli()
{
    local cur=\${COMP_WORDS[COMP_CWORD]} prev=\${COMP_WORDS[COMP_CWORD - 1]}
    local command="" i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case \${COMP_WORDS[i]} in
            -*) [ -z "\$(_remote_setup_cli_value_kind "\${COMP_WORDS[i]}")" ] || ((i++)) ;;
            *) command=\${COMP_WORDS[i]}; break ;;
        esac
    done
    local kind
    kind=\$(_remote_setup_cli_value_kind "\$prev")
    if [ -n "\$kind" ]; then
        _remote_setup_complete_kind "\$kind" "\$cur"
    elif [ -z "\$command" ]; then
        case \$cur in
            -*) mapfile -t COMPREPLY < <(compgen -W '$(options <<<"$global_lines" | tr '\n' ' ')--help' -- "\$cur") ;;
            *) mapfile -t COMPREPLY < <(compgen -W '${commands% }' -- "\$cur") ;;
        esac
    elif [[ \$cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "\$(_remote_setup_cli_command_options "\$command")" -- "\$cur")
    else
        kind=\$(_remote_setup_cli_operand_kind "\$command")
        [ "\$kind" = field ] && _remote_setup_cli_setting_value && return
        _remote_setup_complete_kind "\$kind" "\$cur"
    fi
}
complete -F _remote_setup_cli remote-setup-cli

_recorder_sim_value_kind()
{
    case \$1 in
$(value_cases <<<"$sim_help")
    esac
}

_recorder_sim()
{
    local cur=\${COMP_WORDS[COMP_CWORD]} prev=\${COMP_WORDS[COMP_CWORD - 1]}
    local kind
    kind=\$(_recorder_sim_value_kind "\$prev")
    if [ -n "\$kind" ]; then
        _remote_setup_complete_kind "\$kind" "\$cur"
    else
        mapfile -t COMPREPLY < <(compgen -W '$(options <<<"$sim_help" | tr '\n' ' ')--help' -- "\$cur")
    fi
}
complete -F _recorder_sim recorder-sim
EOF
