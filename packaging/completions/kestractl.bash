# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completes the command lines of kestractl in bash. kestractl itself knows how a line can continue.

_kestractl() {
    local line word words=() lines=() glued=
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
    # As kestractl would get it: without the quotes of the shell.
    local -i last=${#words[@]}-1
    local typed=${words[last]//\\/}
    typed=${typed#[\"\']}
    words[last]=$typed
    local start=${typed%"${typed##*[:=]}"}
    COMPREPLY=()
    mapfile -t lines < <(kestractl --complete "${words[@]}" 2>/dev/null)
    # The kind of the answer, then each word and its help.
    for ((line = 1; line < ${#lines[@]}; line += 2)); do
        printf -v word '%q' "${lines[line]#"$start"}"
        COMPREPLY+=("$word")
    done
    if [[ ${lines[0]} == files ]]; then
        compopt -o filenames
        while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -f -- "$typed")
    fi
}
complete -F _kestractl kestractl
