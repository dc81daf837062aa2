#!/usr/bin/zsh -f
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Usage: complete.zsh FILE LINE...
#
# Prints what the completion of FILE offers at the end of each line, and a line with a dot. An
# interactive shell does it, on a terminal of its own.

zmodload zsh/zpty
folder=${1:A:h}

# Whatever is about to be offered is printed, each between marks, and not shown.
zpty shell zsh -f -i
zpty -w shell "PS1= PS2= RPS1=; stty -echo columns 2000; fpath=(${(q)folder} \$fpath)"
zpty -w shell 'autoload -Uz compinit && compinit -D -u
    zstyle ":completion:*" menu no
    compadd() {
        if [[ " $* " == *" -"[OAD]" "* ]]; then
            builtin compadd "$@"
            return
        fi
        local -a offered
        builtin compadd -O offered "$@"
        local name
        for name in $offered; do print -rn -- "<offered>$name</offered>"; done
        builtin compadd "$@"
    }
    offer() { _main_complete; compstate[insert]= compstate[list]=; print -rn -- "<end/>" }
    zle -C offer complete-word offer
    bindkey "^I" offer
    zle-line-init() { print -rn "<re""ady/>" }
    zle -N zle-line-init'
# Before the shell reads keys by itself, the terminal would take some of them.
zpty -r shell output '*<ready/>*' || exit 1

for line in "${@:2}"; do
    # The line is emptied for the next one.
    zpty -w -n shell "$line"$'\t\C-u'
    zpty -r shell output '*<end/>*' || exit 1
    while [[ $output == *'<offered>'* ]]; do
        output=${output#*<offered>}
        print -r -- ${output%%</offered>*}
    done
    print .
done
zpty -d shell
