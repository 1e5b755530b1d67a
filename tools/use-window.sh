# shellcheck shell=bash
# Functions for scripts that use the editor's window as a person would; sourced by bash, with a display and a
# TMPDIR of the script's own (tests/support/isolated).

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# wait_for COMPLAINT COMMAND …: until the command succeeds, for ten seconds at most.
wait_for() {
    local complaint=$1 tries
    shift
    for ((tries = 0; tries < 100; ++tries)); do
        ! "$@" || return 0
        sleep 0.1
    done
    fail "$complaint"
}

window= editor_pid=
# The first window on the display; sets `window` and `editor_pid`.
find_window() {
    read -r window editor_pid < <(wmctrl -lp | awk 'NR == 1 { print $1, $3 }')
}

# end_editor: for a trap; waits, so that the display outlives the editor.
end_editor() {
    [ -n "$editor_pid" ] && kill "$editor_pid" 2>/dev/null || return 0
    wait_for "the editor did not end" is_gone
}

# look FILE.png: a picture of the window.
look() { import -silent -window "$window" "$1"; }

# Two looks that are alike: everything is painted.
is_still() {
    look "$TMPDIR/before.png"
    sleep 0.2
    look "$TMPDIR/after.png"
    [ "$(compare -metric AE "$TMPDIR/before.png" "$TMPDIR/after.png" null: 2>&1)" = 0 ]
}
rest() { wait_for "the window never came to rest" is_still; }

is_gone() { ! kill -0 "$editor_pid" 2>/dev/null; }

# drag X Y [X Y …]: presses at the first point, moves over the others, releases; from the window's top left.
drag() {
    xdotool mousemove --window "$window" "$1" "$2" mousedown 1
    shift 2
    while [ $# -ge 2 ]; do
        xdotool mousemove --window "$window" "$1" "$2"
        # As slow as a hand: what comes faster is taken together on its way.
        sleep 0.03
        shift 2
    done
    xdotool mouseup 1
}

# ring X Y WIDE HIGH: the points of an ellipse drawn by hand, a little past its start.
ring() {
    awk -v x="$1" -v y="$2" -v wide="$3" -v high="$4" 'BEGIN {
        for (step = 0; step <= 76; ++step) {
            angle = step * 3.14159 / 36 - 2
            printf "%d %d ", x + cos(angle) * (wide / 2 + step / 12), y + sin(angle) * (high / 2 - step / 16)
        }
    }'
}
