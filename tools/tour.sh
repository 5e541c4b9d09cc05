#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The guided tour: performs the main task step by step on a virtual display, with a session bus, settings and resources
# of its own. Each step shows the answer of the daemon or the window; a wrong answer ends the tour with exit code 1.
# Usage: tour.sh FOLDER_OF_THE_EXECUTABLES FOLDER_FOR_THE_SCREENSHOTS
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
if [ -z "${KESTRA_TOUR_FOLDER:-}" ]; then
    KESTRA_TOUR_FOLDER=$(mktemp -d)
    export KESTRA_TOUR_FOLDER
    trap 'rm -rf "$KESTRA_TOUR_FOLDER"' EXIT
    mkdir -p "$2"
    # Leaves the settings of the user unchanged.
    export HOME=$KESTRA_TOUR_FOLDER/home
    export XDG_STATE_HOME=$HOME/state XDG_DATA_HOME=$HOME/data XDG_CONFIG_HOME=$HOME/config XDG_CACHE_HOME=$HOME/cache
    export XDG_RUNTIME_DIR=$KESTRA_TOUR_FOLDER/runtime
    mkdir -p "$XDG_STATE_HOME" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
    mkdir -m 700 "$XDG_RUNTIME_DIR"
    cp -r "$1/resources" "$KESTRA_TOUR_FOLDER/resources"
    export QUILL_KESTRA_RESOURCES=$KESTRA_TOUR_FOLDER/resources
    export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
    unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
    status=0
    dbus-run-session -- "$here/tour.sh" "$(cd "$1" && pwd)" "$(cd "$2" && pwd)" || status=$?
    exit $status
fi

bin=$1
pictures=$2
folder=$KESTRA_TOUR_FOLDER
started=()
step_number=0

finish() {
    local status=$? pid
    # Ends them in reverse order, because later processes depend on earlier ones.
    for ((index = ${#started[@]} - 1; index >= 0; index--)); do
        pid=${started[index]}
        kill -TERM "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    if [ "$status" -ne 0 ]; then
        echo "The tour failed; the logs follow."
        tail -n 20 "$folder"/*.log
    fi
    exit "$status"
}
trap finish EXIT

step() {
    step_number=$((step_number + 1))
    printf '\n%d. %s\n' "$step_number" "$1"
}
say() { printf '   %s\n' "$1"; }
fail() {
    printf '   WRONG: %s\n' "$1"
    exit 1
}

# wait_until SECONDS COMMAND...: polls until the command succeeds.
wait_until() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        [ "$SECONDS" -lt "$deadline" ] || return 1
        sleep 0.1
    done
}

picture() {
    # The display is larger than the window; the black border is cut off.
    import -window root png:- | convert - -bordercolor black -border 1 -trim +repage "$pictures/$1.png"
    say "screenshot: $1.png"
}

answers() { "$bin/kestractl" status >/dev/null 2>&1; }
key_a() { "$bin/kestractl" key A 2>&1; }
key_a_is() { [ "$(key_a)" = "A: $1" ]; }
expect_key_a() { # expected assignment
    wait_until 10 key_a_is "$1" || fail "kestractl key A says \"$(key_a)\", not \"A: $1\""
    say "kestractl key A: $(key_a)"
}

# control NAME: prints "x y width height states description".
control() { "$bin/kestra-find-control" "$configurator" "$1"; }
is_showing() { control "$1" >/dev/null; }
click() { # name
    wait_until 10 is_showing "$1" || {
        "$bin/kestra-find-control" "$configurator" >"$folder/controls.log" || true
        fail "the window shows no \"$1\""
    }
    local x y rest
    read -r x y rest < <(control "$1")
    xdotool mousemove "$x" "$y" click 1
    say "clicked \"$1\" at $x,$y"
}

# Whether the window shows the control with this description and in this state.
shows() { # name state description
    local states description
    read -r _ _ _ _ states description < <(control "$1")
    [[ ",$states," == *",$2,"* && $description == "$3" ]]
}
expect_window() { # name state description
    wait_until 10 shows "$@" || fail "the window shows \"$1\" as: $(control "$1")"
    say "the window shows \"$1\": $3 ($2)"
}

configurator=
start_configurator() {
    : >"$folder/ready"
    KESTRA_BENCH_READY=1 "$bin/kestra-configurator" >"$folder/ready" 2>>"$folder/configurator.log" &
    configurator=$!
    started+=("$configurator")
    wait_until 20 grep -q ready "$folder/ready" || fail "the window's controls are not enabled after 20 s"
    say "the window is there and its controls are enabled"
}
# The display has no window manager: gives a window the keys, as a user's desktop does with a new dialog or after a click.
focus() { # beginning of the window's title
    local window
    wait_until 10 xdotool search --onlyvisible --name "^$1" >/dev/null || fail "there is no window \"$1\""
    window=$(xdotool search --onlyvisible --name "^$1" | head -n 1)
    xdotool windowfocus --sync "$window"
}
type_keys() { # xdotool's names of keys, one after the other
    xdotool key --delay 60 "$@"
    say "typed $*"
}
received() { "$bin/kestractl" keyboard sent; }
is_b_received() { [ "$(received)" = B ]; }
macro_is_there() { "$bin/kestractl" macro show "$1" >/dev/null 2>&1; }
# The usages that the computer has received: +4 for a press of A, -4 for its release.
received_keys() {
    awk '/uint32/ { usage = $2 } /boolean/ { printf "%s%s ", $2 == "true" ? "+" : "-", usage }' "$folder/sent"
}
is_received() { [ "$(received_keys)" = "$1" ]; }
has_ended() { ! kill -0 "$1" 2>/dev/null; }

exec 3>"$folder/display"
Xvfb -displayfd 3 -screen 0 1500x950x24 -nolisten tcp >"$folder/xvfb.log" 2>&1 &
started+=($!)
exec 3>&-
wait_until 10 test -s "$folder/display" || fail "the virtual display does not start"
DISPLAY=:$(cat "$folder/display")
export DISPLAY
"$bin/kestra-find-control" --serve 2>"$folder/accessibility.log" &
started+=($!)

step "The daemon starts, with a virtual keyboard and factory settings"
"$here/supervise.sh" "$folder/daemon.pid" "$bin/QuillKestraDaemon" >"$folder/daemon.log" 2>&1 &
started+=($!)
wait_until 10 answers || fail "no daemon answers"
"$bin/kestractl" status | sed 's/^/   /'
expect_key_a "default key"

step "The configurator shows the keyboard"
start_configurator
picture 1-keys-tab

step "Give the key A another key: type B into the window"
click "A"
click "Assignment:"
xdotool key Down Return
focus "Single key"
expect_window "Type the key here: the virtual keyboard is in use." "focused" "Hold Escape for one second to use this keyboard in the window again."
type_keys b
picture 2-single-key
click "OK"
expect_key_a "single key B"
expect_window "A" "selected" "Single key: B"
picture 3-key-a-remapped
"$bin/kestractl" keyboard press A
wait_until 10 is_b_received || fail "the computer received: $(received)"
say "pressed A; kestractl keyboard sent: $(received)"
"$bin/kestractl" keyboard release A

step "Record a macro by typing it"
focus "Quill Kestra Configurator"
click "Macros"
click "Add a macro"
type_keys g r e e t Return
wait_until 10 macro_is_there greet || fail "kestractl macro list says: $("$bin/kestractl" macro list)"
click "Record"
wait_until 10 is_showing "Stop" || fail "the window does not record"
type_keys h i space Tab F1
wait_until 10 is_showing "Key Release F1" || fail "the window does not show the typed keys"
picture 4-recording
click "Stop"
wait_until 10 is_showing "Record" || fail "the window still records"
"$bin/kestractl" macro show greet | sed 's/^/   /'

step "Put the macro on the key M1, and press it"
click "Keys"
click "M1"
click "Assignment:"
xdotool key Down Down Right Up Return
expect_window "M1" "selected" "Macro: greet (Play once)"
picture 5-macro-on-m1
dbus-monitor --session "interface='org.quillkestra.VirtualKeyboard',member='Sent'" >"$folder/sent" &
started+=($!)
wait_until 10 grep -q "member=Name" "$folder/sent" || fail "nothing follows the keys that the computer receives"
"$bin/kestractl" keyboard press M1
"$bin/kestractl" keyboard release M1
# h, i, Space, Tab, F1
wait_until 10 is_received "+11 -11 +12 -12 +44 -44 +43 -43 +58 -58 " || fail "the computer received: $(received_keys)"
say "the computer received: $(received_keys)"

step "Select the key A"
click "A"
expect_window "A" "selected" "Single key: B"
picture 6-key-a-selected

step "Choose \"Disable key\" as its assignment"
click "Assignment:"
picture 7-assignments
xdotool key Down Down Down Down Return # from "Single key"
expect_window "Assignment:" "enabled" "Disable key"
expect_window "A" "selected" "Disable key"
expect_key_a "disabled"
picture 8-key-a-disabled

step "That was a mistake: take it back, and make it again after all"
type_keys ctrl+z
expect_window "A" "selected" "Single key: B"
expect_key_a "single key B"
picture 9-mistake-undone
type_keys ctrl+shift+z
expect_window "A" "selected" "Disable key"
expect_key_a "disabled"

step "Kill the daemon without warning (kill -9); its supervisor starts it again"
old_daemon=$(cat "$folder/daemon.pid")
kill -9 "$old_daemon"
is_restarted() { [ -s "$folder/daemon.pid" ] && [ "$(cat "$folder/daemon.pid")" != "$old_daemon" ] && answers; }
wait_until 15 is_restarted || fail "the daemon does not come back"
say "process $old_daemon was killed; process $(cat "$folder/daemon.pid") answers"
expect_key_a "disabled"

step "Close the configurator and start it again"
kill -TERM "$configurator"
wait_until 10 has_ended "$configurator" || fail "the configurator does not end"
ending=0
wait "$configurator" || ending=$?
[ "$ending" -eq 0 ] || fail "the configurator ended with status $ending"
say "the configurator has ended by itself"
start_configurator
expect_key_a "disabled"
expect_window "A" "selected" "Disable key"
picture 10-after-restart

step "Press A and B on the virtual keyboard: the computer receives only B"
"$bin/kestractl" keyboard press A
"$bin/kestractl" keyboard press B
wait_until 10 is_b_received || fail "the computer received: $(received)"
say "kestractl keyboard sent: $(received)"
"$bin/kestractl" keyboard release A
"$bin/kestractl" keyboard release B

step "Give the key its default again from the command line; the open window follows"
"$bin/kestractl" key A default | sed 's/^/   /'
expect_key_a "default key"
expect_window "A" "selected" "Default key"
picture 11-default-again

printf '\nThe tour is done; the screenshots are in %s\n' "$pictures"
