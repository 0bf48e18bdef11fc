#!/usr/bin/env bash
# Runs the console on a virtual display with a fresh sample server and saves a picture of each tab
# and of the main dialogs: take-pictures.sh <console> <folder> [<scale factor>]
set -euo pipefail

console=$(realpath "$1")
pictures=$2
scale=${3:-1}
sampleserver=$(realpath "$(dirname "$console")/../examples/sampleserver/sampleserver")

mkdir -p "$pictures"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -m 700 "$work/runtime"
export XDG_RUNTIME_DIR=$work/runtime QT_SCALE_FACTOR=$scale console sampleserver pictures work scale
unset QT_QPA_PLATFORM
timeout 120 xvfb-run -a -s "-screen 0 1920x1440x24 -noreset" bash -euo pipefail <<'SCRIPT'
trap 'jobs -p | xargs -r kill 2>/dev/null; wait 2>/dev/null' EXIT
openbox --sm-disable >"$work/openbox.log" 2>&1 &
until xdotool get_desktop >/dev/null 2>&1; do sleep 0.05; done

start() {
    "$console" "$@" 2>>"$work/log" &
    program=$!
}
stop() {
    kill "$program"
    wait "$program" 2>/dev/null || true
}
# The search fails when another window closes while it looks at it.
window() {
    until xdotool search --onlyvisible --name "$1" >"$work/windows" 2>/dev/null; do sleep 0.05; done
    tail -n 1 "$work/windows"
}
# click <window> <x> <y>, in units of the window's layout
click() {
    xdotool windowactivate --sync "$1" mousemove --window "$1" \
        "$(awk "BEGIN { print int($2 * $scale) }")" "$(awk "BEGIN { print int($3 * $scale) }")" click 1
    sleep 0.3
}
# shot <window> <name>: a picture once the toolkit has painted
shot() {
    sleep 0.5
    import -window "$1" "$pictures/$2.png"
}

"$sampleserver" "$work/server" >/dev/null
file=$work/server/ServerConfig.xml

start -f "$file" -t "Zandrel - ServerConfig.xml"
main=$(window '^Zandrel - ')
shot "$main" endpoints
click "$main" 140 22
shot "$main" trace
click "$main" 340 84
xdotool key --clearmodifiers End x
click "$main" 60 22
question=$(window '^Trace Settings$')
shot "$question" unsaved-changes
xdotool key Return
sleep 0.3
click "$main" 220 22
shot "$main" certificates
click "$main" 120 57
shot "$main" certificates-issuers
click "$main" 55 57
click "$main" 350 446
dialog=$(window '^New Application Instance Certificate$')
shot "$dialog" new-certificate
xdotool key Escape
sleep 0.3
stop

# A computer that has got a new name.
sed -i 's|<Hostname>[^<]*|<Hostname>formername|' "$file"
start -f "$file"
shot "$(window '^Change in Hostname Detected$')" hostname-changed
stop

start -f NoSuchServer.xml
shot "$(window '^Configuration File Not Found$')" file-not-found
stop

start -x y
shot "$(window '^Zandrel Dialog$')" usage
stop
SCRIPT

echo "Pictures of the console are in $pictures:"
ls "$pictures"
