# SPDX-License-Identifier: MIT
# Completes the command lines of kestractl in fish. kestractl itself knows how a line can continue.

function __kestractl_complete
    set -l words (commandline --tokenize --current-process --cut-at-cursor)
    set -l current (commandline --current-token --cut-at-cursor | string unescape)
    # The kind of the answer, then each word and its help.
    set -l lines (kestractl --complete $words[2..] "$current" 2>/dev/null)
    test "$lines[1]" = files; and __fish_complete_path "$current"
    for line in (seq 2 2 (count $lines))
        printf '%s\t%s\n' $lines[$line] $lines[(math $line + 1)]
    end
end
complete --command kestractl --no-files --arguments '(__kestractl_complete)'
