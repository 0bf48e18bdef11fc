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
export XDG_RUNTIME_DIR=$work/runtime QT_SCALE_FACTOR=$scale console sampleserver pictures work
mkdir -m 700 "$XDG_RUNTIME_DIR"
xvfb-run -a -s "-screen 0 1920x1440x24" bash -euo pipefail <<'SCRIPT'
window() { xdotool search --sync --onlyvisible --name "$1" | tail -n 1; }
settle() { sleep 0.4; } # until the toolkit has painted
shot() { settle; import -window "$1" "$pictures/$2.png"; }
press() { xdotool windowfocus --sync "$1" key --clearmodifiers "$2"; }

"$sampleserver" "$work/server" >/dev/null
"$console" -f "$work/server/ServerConfig.xml" -t "Zandrel - ServerConfig.xml" 2>"$work/log" &
main=$(window '^Zandrel - ')
shot "$main" endpoints
press "$main" ctrl+Tab
shot "$main" trace

# A changed trace level, then the question that the console asks when it is left.
press "$main" ctrl+shift+Tab
settle
xdotool windowfocus --sync "$main" key --clearmodifiers Tab space
press "$main" ctrl+Tab
question=$(window '^Endpoints$')
shot "$question" unsaved-changes
press "$question" Return
settle
xdotool windowfocus --sync "$main"
kill %1
wait %1 2>/dev/null || true

# A computer that has got a new name.
sed -i 's|<Hostname>[^<]*|<Hostname>formername|' "$work/server/ServerConfig.xml"
"$console" -f "$work/server/ServerConfig.xml" 2>>"$work/log" &
shot "$(window '^Change in Hostname Detected$')" hostname-changed
kill %1
wait %1 2>/dev/null || true

# A file that isn't there, and a bad command line.
"$console" -f "$work/nowhere.xml" 2>>"$work/log" &
shot "$(window '^Configuration File Not Found$')" file-not-found
kill %1
wait %1 2>/dev/null || true
"$console" -x y 2>>"$work/log" &
shot "$(window '^Zandrel Dialog$')" usage
kill %1
wait %1 2>/dev/null || true
SCRIPT

echo "Pictures of the console are in $pictures:"
ls "$pictures"
