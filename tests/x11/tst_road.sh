#!/usr/bin/env bash
# usage: tst_road.sh EDITOR
#
# The road of one capture through the real program: over the socket into the window, a pen stroke with the
# server's own mouse, undo and redo by keys, a save through the file dialog, an automatic save, the ways out.
# With TINDRA_TEST_PICTURES set, pictures of the window are left there.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
editor=$1
. "$root/tools/use-window.sh"
trap end_editor EXIT

# Sizes at 96 DPI of what stands around the capture.
toolbar=80 panel=172
work=$XDG_DATA_HOME/Norvane/Tindra
results=$TMPDIR/results
mkdir -p "$results" "$XDG_CONFIG_HOME/Norvane"
cat >"$XDG_CONFIG_HOME/Norvane/Tindra.conf" <<END
[Config]
AutoSavePath=$results
FilePath=$results
LastDrawingItem=1
LineWidth=8
PenColor=-16776961
ShowPostSaveDlg=0
END

send() { "$root/tools/tindra-send" "$@"; }
start_with() {
    send --editor "$editor" --road commandline "$@"
    wait_for "no window appeared" find_window
    rest
}
picture() {
    [ -z "${TINDRA_TEST_PICTURES:-}" ] || import -silent -window root "$TINDRA_TEST_PICTURES/road-$1.png"
}
expect() { # expect WHAT ACTUAL EXPECTED
    [ "$2" = "$3" ] || fail "$1: $2 instead of $3"
}
color_at() { convert "$1" -format "%[pixel:p{$2,$3}]" info: | sed 's/srgba\?//'; }
# Sets X, Y, WIDTH, HEIGHT of the client area (xdotool counts the frame twice) and the frame's sides.
measure() {
    read -r X Y WIDTH HEIGHT < <(xwininfo -id "$window" | awk '
        /Absolute upper-left/ { printf "%d ", $NF } /Width:|Height:/ { printf "%d ", $NF } END { print "" }')
    read -r left right top bottom < <(xprop -id "$window" _NET_FRAME_EXTENTS | sed 's/.*=//; s/,//g')
}
key() { xdotool key --window "$window" "$1"; }
one_file() { [ "$(find "$results" -type f -size +0 | wc -l)" = "$1" ]; }

# An automatic save, told by its one new file.
saves=0 file=
auto_save() {
    find "$results" -type f >"$TMPDIR/before"
    send --autosave --skip
    saves=$((saves + 1))
    wait_for "save $saves did not come" one_file "$saves"
    file=$(find "$results" -type f | grep -vxFf "$TMPDIR/before")
}
stroke_in_file() { color_at "$file" 300 150; }

# --- The capture arrives, and the window takes its place.
convert -size 600x300 xc:white "$TMPDIR/capture.png"
send --editor "$editor" --road commandline --show
wait_for "no window appeared" find_window
send --hide
wait_for "the window did not hide" bash -c '! wmctrl -lp | grep -q .'
send --point 400 300 "$TMPDIR/capture.png"
wait_for "the capture did not bring up the window" find_window
rest
measure
expect "width" "$((WIDTH + left + right))" "$((600 + 200 + panel))"
expect "height" "$((HEIGHT + top + bottom))" "$((300 + 200 + toolbar))"
expect "left" "$X" 300
expect "top" "$Y" "$((300 - toolbar - 100))"
picture capture

# --- A stroke with the pen, through the middle of the capture.
middle_x=$(((WIDTH - panel) / 2)) middle_y=$((toolbar + (HEIGHT - toolbar) / 2))
drag $((middle_x - 150)) $middle_y $((middle_x - 75)) $middle_y $middle_x $middle_y $((middle_x + 150)) $middle_y
rest
look "$TMPDIR/stroke.png"
expect "stroke in the window" "$(color_at "$TMPDIR/stroke.png" "$middle_x" "$middle_y")" "(255,0,0)"
picture stroke
auto_save
expect "stroke in the file" "$(stroke_in_file)" "(255,0,0)"
expect "size of the file" "$(identify -format %wx%h "$file")" 600x300

# --- Undo and redo by keys.
key ctrl+z
rest
auto_save
expect "after undo" "$(stroke_in_file)" "(255,255,255)"
key ctrl+y
rest
auto_save
expect "after redo" "$(stroke_in_file)" "(255,0,0)"

# --- A save through the dialog; the name gets the suffix of the filter.
dialog_is_open() { [ "$(wmctrl -lp | wc -l)" = 2 ]; }
dialog_is_closed() { [ "$(wmctrl -lp | wc -l)" = 1 ]; }
key ctrl+s
wait_for "no file dialog" dialog_is_open
sleep 0.3
picture dialog
xdotool key ctrl+a
xdotool type "by hand"
xdotool key Return
saves=$((saves + 1))
wait_for "the dialog saved nothing" test -s "$results/by hand.png"
wait_for "the dialog stayed" dialog_is_closed
file="$results/by hand.png"
expect "saved by hand" "$(stroke_in_file)" "(255,0,0)"
picture saved

# --- A kill leaves the capture for the next start; a normal exit clears it away.
captures() { find "$work" -maxdepth 1 -name '*.png' | wc -l; }
expect "captures" "$(captures)" 1
send --kill
wait_for "the editor did not end" is_gone
expect "captures after a kill" "$(captures)" 1
rm "$work"/*.png # what the next start makes of it is another test's matter
window= editor_pid=
# A capture larger than the screen gives a window that fills it, frame included.
convert -size 2500x1500 gradient:white-lightblue "$TMPDIR/huge.png"
start_with --point 50 50 "$TMPDIR/huge.png"
measure
read -r screen_width screen_height < <(xdotool getdisplaygeometry)
expect "width" "$((WIDTH + left + right))" "$screen_width"
expect "height" "$((HEIGHT + top + bottom))" "$screen_height"
expect "left" "$((X - left))" 0
expect "top" "$((Y - top))" 0
picture huge
auto_save
send --close
wait_for "the editor did not end" is_gone
expect "captures after an exit" "$(captures)" 0
editor_pid=
