#!/usr/bin/env bash
# usage: tst_recovery.sh EDITOR
#
# What the real program keeps from one run to the next after each way to end: a normal exit with a pinned
# capture, SIGKILL, and the command to end for an update.
# With TINDRA_TEST_PICTURES set, pictures of the screen are left there.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
editor=$1
. "$root/tools/use-window.sh"
trap end_editor EXIT

work=$XDG_DATA_HOME/Norvane/Tindra
results=$TMPDIR/results
mkdir -p "$results" "$XDG_CONFIG_HOME/Norvane"
cat >"$XDG_CONFIG_HOME/Norvane/Tindra.conf" <<END
[Config]
AutoSavePath=$results
ShowPostSaveDlg=0
END

send() { "$root/tools/tindra-send" "$@"; }
expect() { # expect WHAT ACTUAL EXPECTED
    [ "$2" = "$3" ] || fail "$1: $2 instead of $3"
}
picture() {
    [ -z "${TINDRA_TEST_PICTURES:-}" ] || import -silent -window root "$TINDRA_TEST_PICTURES/recovery-$1.png"
}
start_with() {
    send --editor "$editor" --road commandline "$@"
    wait_for "no window appeared" find_window
}
windows() { wmctrl -lp | wc -l; }
has_windows() { [ "$(windows)" = "$1" ]; }
gone() {
    wait_for "the editor did not end" is_gone
    window= editor_pid=
}
captures() { find "$work" -maxdepth 1 -name '*.png' | wc -l; }
pins() { find "$work/pin" -name '*.png' -printf '%f %m\n' | sort; }
color_of() { convert "$1" -format '%[pixel:p{5,5}]' info: | sed 's/srgba\?//'; }
one_result() { [ "$(find "$results" -type f -size +0 | wc -l)" = 1 ]; }
# The colour of the capture that is shown.
shown() {
    rm -f "$results"/*
    send --autosave --skip
    wait_for "nothing was saved" one_result
    color_of "$results"/*
}
# Pins the capture in the first row with the mouse: the pin stands in its lower right corner, 56 from the right
# edge of the window and 220 below its top, at 96 DPI.
pin_first() {
    local pin_x
    pin_x=$(($(xwininfo -id "$window" | awk '/Width:/ { print $NF }') - 56))
    xdotool mousemove --window "$window" "$pin_x" 190
    sleep 0.2
    xdotool mousemove --window "$window" "$pin_x" 220 click 1
    sleep 0.2
}

convert -size 300x200 xc:red "$TMPDIR/red.png"
convert -size 300x200 xc:lime "$TMPDIR/lime.png"
convert -size 300x200 xc:blue "$TMPDIR/blue.png"

# --- A normal exit keeps the pinned capture and nothing else.
start_with "$TMPDIR/red.png"
rest
send "$TMPDIR/lime.png"
rest
pin_first
rest
picture pinned
send --close
wait_for "no question about unsaved captures" has_windows 2
xdotool key Return
gone
expect "captures after an exit" "$(captures)" 0
expect "pins after an exit" "$(pins)" "0.png 600"
expect "pinned capture" "$(color_of "$work/pin/0.png")" "(0,255,0)"

# --- The next start brings it back, and has nothing to tell.
start_with --show
rest
expect "windows" "$(windows)" 1
expect "capture shown" "$(shown)" "(0,255,0)"
picture restored

# --- Killed in the middle of the work: everything is there again, and the user is told.
send "$TMPDIR/blue.png"
rest
kill -KILL "$editor_pid"
gone
expect "captures after SIGKILL" "$(captures)" 2
send --editor "$editor" --road commandline --show
wait_for "no message about restored captures" has_windows 2
sleep 0.3
picture told
find_window
xdotool key Return
wait_for "the message stayed" has_windows 1
find_window
rest
picture after-crash
expect "captures back" "$(captures)" 2
expect "capture shown" "$(shown)" "(0,0,255)"

# --- Ended for an update: nothing is asked, nothing is cleared away, the pins are those of the last exit.
send --kill
gone
expect "captures after a kill" "$(captures)" 2
expect "pins after a kill" "$(pins)" "0.png 600"
