# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completes the command lines of kestractl in bash. kestractl itself knows how a line can continue.

# Reads the word $1 as the shell does: `text` is the word without its quotes, `quote` the one that is still open, and
# `kept` the part of the text that bash leaves on the line when it inserts a completion.
_kestractl_read() {
    local -i at
    local character next
    text='' quote='' kept=''
    for ((at = 0; at < ${#1}; ++at)); do
        character=${1:at:1} next=${1:at+1:1}
        if [[ $character == "$quote" ]]; then
            quote=''
            kept=$text
        elif [[ ! $quote && $character == [\"\'] ]]; then
            quote=$character
            kept=$text
        elif [[ $character == \\ && $quote != \' ]]; then
            # Between double quotes, it quotes these characters alone.
            [[ $quote && $next != [\$\`\"\\] ]] && text+=\\
            text+=$next
            ((++at))
        else
            text+=$character
            [[ ! $quote && $character == [:=] ]] && kept=$text
        fi
    done
}

# Quotes the completion $1 for its place behind `quote`, as `word`.
_kestractl_quote() {
    case $quote in
    \") word=${1//\\/\\\\} word=${word//\"/\\\"} word=${word//\$/\\\$} word=${word//\`/\\\`} ;;
    \') word=${1//\'/\'\\\'\'} ;;
    *) printf -v word '%q' "$1" ;;
    esac
}

_kestractl() {
    local line word text quote kept words=() lines=() glued=
    # bash breaks a word at each of these characters, which the names of profiles and macros may have.
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        if [[ $word == [:=]* && ${#words[@]} -gt 0 ]] || [[ $glued ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
        glued=
        [[ $word == [:=] ]] && glued=yes
    done
    for line in "${!words[@]}"; do
        _kestractl_read "${words[line]}"
        words[line]=$text
    done
    COMPREPLY=()
    mapfile -t lines < <(kestractl --complete "${words[@]}" 2>/dev/null)
    # The kind of the answer, then each word and its help.
    for ((line = 1; line < ${#lines[@]}; line += 2)); do
        _kestractl_quote "${lines[line]#"$kept"}"
        COMPREPLY+=("$word")
    done
    if [[ ${lines[0]} == files ]]; then
        compopt -o filenames
        while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -f -- "$text")
    fi
}
complete -F _kestractl kestractl
