#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Usage: complete.bash FILE LINE...
#
# Prints what the completion of FILE offers at the end of each line, and a line with a dot.

set -uo pipefail
shopt -s extglob

# shellcheck source=/dev/null
source /usr/share/bash-completion/bash_completion
# shellcheck source=/dev/null
source "$1"

# As the shell: a colon and an equals sign are words of their own.
split_words() {
    local line=$1 pattern='^( *)([:=]+|[^ :=]+)'
    COMP_WORDS=()
    while [[ $line =~ $pattern ]]; do
        COMP_WORDS+=("${BASH_REMATCH[2]}")
        line=${line:${#BASH_REMATCH[0]}}
    done
    if [[ $1 == *' ' ]]; then
        COMP_WORDS+=('')
    fi
}

# There is no completion going on that they could change.
compopt() { :; }

for line in "${@:2}"; do
    split_words "$line"
    COMP_LINE=$line
    COMP_POINT=${#line}
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    program=${COMP_WORDS[0]}
    read -ra specification <<<"$(complete -p "$program")"
    "${specification[-2]}" "$program" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    printf '%s\n' "${COMPREPLY[@]}" .
done
