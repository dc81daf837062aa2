# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
# shellcheck shell=bash

# Completion of kinlet for bash, with the functions of the package bash-completion.

# The ids of accounts, from where the words of the command line say. A provider that is slow must not
# hold up the typing.
_kinlet_accounts() {
    local word source=()
    for word in "${words[@]}"; do
        case $word in
        --bus | --in-process) source+=("$word") ;;
        esac
    done
    kinlet accounts --json --timeout 1 --wait 1 "${source[@]}" 2>/dev/null |
        sed -n 's/.*"Id":"\([^"\\]*\)".*/\1/p'
}

_kinlet_runners() {
    kinlet runners --json --wait 1 2>/dev/null | sed -n 's/.*"name":"\([^"\\]*\)".*/\1/p'
}

_kinlet_words() {
    mapfile -t COMPREPLY < <(compgen "${@:2}" -W "$1" -- "$cur")
}

# Completes the value of an option; false if $1 is none that takes one.
_kinlet_value() {
    case $1 in
    --account)
        _kinlet_words "all $(_kinlet_accounts)"
        __ltrim_colon_completions "$cur"
        ;;
    --filter)
        compopt -o nospace
        _kinlet_words "Id Description ParentAccount ScreenName FirstName LastName AvatarList
            Status StatusChangeTime AboutMe Relationship ProfileLink PhoneNumber
            EmailAddresses Websites Birthday" -S =
        ;;
    --type) _kinlet_words "status comment message any" ;;
    --plugin-path) _filedir -d ;;
    --limit | --before | --after | --profile | --pause | --timeout | --wait) ;;
    *) return 1 ;;
    esac
}

_kinlet_argument() {
    case $1 in
    import) _filedir ;;
    check) _filedir so ;;
    new-provider) (($2 == 1)) && _filedir -d ;;
    runners)
        if (($2 == 0)); then
            _kinlet_words start
        elif (($2 == 1)); then
            _kinlet_words "$(_kinlet_runners)"
        fi
        ;;
    esac
}

_kinlet() {
    local cur prev words cword split
    _init_completion -s -n : || return

    # The commands, and the options of each that do not go with every command.
    local -A own=(
        [services]=''
        [accounts]='--account'
        [providers]=''
        [persons]='--account --limit --filter'
        [timeline]='--account --limit --before --after --profile --type'
        [show]='--account --limit'
        [post]='--account'
        [comment]='--account'
        [like]='--account'
        [unlike]='--account'
        [likers]='--account --limit --filter'
        [import]=''
        [watch]=''
        [runners]=''
        [check]='--post --pause'
        [new-provider]=''
    )
    local general='--json --absolute --in-process --bus --plugin-path --timeout --wait --help --version'

    _kinlet_value "$prev" && return
    $split && return
    local command='' arguments=0 i
    for ((i = 1; i < cword; ++i)); do
        case ${words[i]} in
        --account | --filter | --type | --plugin-path | --limit | --before | --after | --profile | \
            --pause | --timeout | --wait) ((++i)) ;;
        -?*) ;;
        *)
            if [[ $command ]]; then
                ((++arguments))
            else
                command=${words[i]}
            fi
            ;;
        esac
    done
    if [[ $cur == -* && $command ]]; then
        _kinlet_words "$general ${own[$command]-}"
    elif [[ $cur == -* ]]; then
        _kinlet_words "$general ${own[*]}"
    elif [[ $command ]]; then
        _kinlet_argument "$command" "$arguments"
    else
        _kinlet_words "${!own[*]}"
    fi
}

complete -F _kinlet kinlet
