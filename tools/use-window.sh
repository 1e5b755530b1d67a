# Functions for scripts that use the editor's window as a person would; sourced by bash, after editor_pid is
# set and with TMPDIR naming a folder of the script's own.

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

window=
find_window() {
    window=$(wmctrl -lp | awk -v pid="$editor_pid" '$3 == pid { print $1; exit }')
    [ -n "$window" ]
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
