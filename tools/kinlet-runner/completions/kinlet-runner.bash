# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
# shellcheck shell=bash

# Completion of kinlet-runner for bash, with the functions of the package bash-completion.

_kinlet_runner() {
    # shellcheck disable=SC2034 # They are set by the next line.
    local cur prev words cword split
    _init_completion -s || return
    [[ $prev == --idle-exit ]] && return
    $split && return
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--list --idle-exit --help --help-all --version' -- "$cur")
        return
    fi
    _filedir so
    local names
    names=$(kinlet-runner --list 2>/dev/null | sed -n 's,^\([A-Za-z_][A-Za-z0-9_]*\) */.*,\1,p')
    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -W "$names" -- "$cur")
}

complete -F _kinlet_runner kinlet-runner
