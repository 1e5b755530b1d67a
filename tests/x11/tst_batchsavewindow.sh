#!/usr/bin/env bash
# usage: tst_batchsavewindow.sh EDITOR
#
# Saves all recent captures of the real program with mouse and keys: the names are set in the dialog's own
# dialog, the files are written, the rows get their marks, the result is told.
# With TINDRA_TEST_PICTURES set, pictures of the screen are left there.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
editor=$1
. "$root/tools/use-window.sh"
trap end_editor EXIT

results=$TMPDIR/results
mkdir -p "$XDG_CONFIG_HOME/Norvane"
cat >"$XDG_CONFIG_HOME/Norvane/Tindra.conf" <<END
[Config]
FilePath=$results
FileNameType=0
FileNameTamplate=shot
END

send() { "$root/tools/tindra-send" "$@"; }
expect() { # expect WHAT ACTUAL EXPECTED
    [ "$2" = "$3" ] || fail "$1: $2 instead of $3"
}
picture() {
    [ -z "${TINDRA_TEST_PICTURES:-}" ] || import -silent -window root "$TINDRA_TEST_PICTURES/batch-$1.png"
}
has_windows() { [ "$(wmctrl -lp | wc -l)" = "$1" ]; }
color_of() { convert "$1" -format '%[pixel:p{5,5}]' info: | sed 's/srgba\?//'; }
# Clicks in the recent captures: X from the window's right edge, Y from its lower one, at 96 DPI.
click_from_corner() {
    local width height
    read -r width height < <(xwininfo -id "$window" | awk '/Width:|Height:/ { printf "%d ", $NF } END { print "" }')
    xdotool mousemove --window "$window" $((width - $1)) $((height - $2)) click 1
}

for color in red lime blue; do
    convert -size 1600x900 "xc:$color" "$TMPDIR/$color.png"
done
send --editor "$editor" --road commandline "$TMPDIR/red.png"
wait_for "no window appeared" find_window
rest
for color in lime blue; do
    send "$TMPDIR/$color.png"
    rest
done

# The last capture may still place the window when it looks still on a busy machine, and the click goes astray.
has_dialog() {
    has_windows 2 && return
    click_from_corner 84 56 # "save images"
    sleep 1
    has_windows 2
}
wait_for "no dialog" has_dialog
sleep 0.3
picture dialog
# The dialog for the names, over the button that opens it, and back.
dialog=$(xdotool getactivewindow)
xdotool mousemove --window "$dialog" 314 142 click 1
wait_for "no dialog for the names" has_windows 3
sleep 0.3
picture names
xdotool key Escape
wait_for "the dialog for the names stayed" has_windows 2
xdotool key alt+s
wait_for "the files did not come" test -s "$results/shot_3.png"
wait_for "the result was not told" has_windows 2
sleep 0.3
picture result
for number in 1 2 3; do
    color=$(sed -n "${number}p" <<<$'(255,0,0)\n(0,255,0)\n(0,0,255)')
    expect "file $number" "$(color_of "$results/shot_$number.png")" "$color"
done
expect "files" "$(find "$results" -type f | wc -l)" 3
xdotool key Escape
wait_for "the message stayed" has_windows 1
rest
picture marks
# Everything is saved, so nothing is asked.
send --close
wait_for "the editor did not end" is_gone
editor_pid=
