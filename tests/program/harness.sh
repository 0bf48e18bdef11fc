# Functions for tests that drive the real executable on a virtual display. Sourced by each test, which
# CTest runs as: <test> <console> <sampleserver> [<other program>]

set -euo pipefail
console=$1
sampleserver=$2
other=${3:-}
work=$(mktemp -d)
export XDG_RUNTIME_DIR=$work/runtime
mkdir -m 700 "$XDG_RUNTIME_DIR"
unset QT_QPA_PLATFORM
openbox --sm-disable >"$work/openbox.log" 2>&1 &

fail() {
    echo "FAILED: $*" >&2
    cat "$work/openbox.log" >&2
    import -window root "$work/failed.png" 2>/dev/null && cp "$work/failed.png" "$(basename "$0" .sh)_failed.png"
    exit 1
}

end() {
    local status=$?
    jobs -p | xargs -r kill -9 2>/dev/null
    wait 2>/dev/null
    rm -rf "$work"
    exit "$status"
}
trap end EXIT

# --sync waits for ever when the window is gone.
xdotool() { timeout 20 xdotool "$@"; }

# Waits until a command succeeds, for ten seconds.
wait_for() {
    local i
    for ((i = 0; i < 200; ++i)); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.05
    done
    fail "waited in vain for: $*"
}

wait_for xdotool get_desktop # the window manager is ready

file=$work/server/ServerConfig.xml
make_server() { "$sampleserver" "$work/server" >/dev/null; }

# Starts the console in the background; its process is in $pid.
start() {
    "$console" "$@" 2>>"$work/log" &
    pid=$!
}

# Waits for the end of the console and checks its exit code.
ends_with() {
    local status=0
    wait_for ended
    wait "$pid" || status=$?
    [ "$status" = "$1" ] || fail "exit code $status, expected $1"
}

ended() { ! kill -0 "$pid"; }

search() { xdotool search --onlyvisible --name "$1"; }

# Prints the identifier of the window whose title matches.
window() {
    wait_for search "$1"
    search "$1" | tail -n 1
}

no_window() { ! search "$1" >/dev/null 2>&1 || fail "there is a window: $1"; }

# press <window> <key> ...
press() {
    local id=$1
    shift
    xdotool windowactivate --sync "$id"
    xdotool key --clearmodifiers --delay 30 "$@"
}

# Prints that many Tab keys.
tabs() { yes Tab | head -n "$1"; }

# write <window> <text>
write() {
    xdotool windowactivate --sync "$1"
    xdotool type --clearmodifiers --delay 30 "$2"
}

# Prints the text of a message box, which can be selected and copied.
text_of() {
    xdotool windowactivate --sync "$1" mousemove --window "$1" 100 20 click 1
    xdotool key --clearmodifiers --delay 30 ctrl+a ctrl+c
    wait_for xclip -o -selection clipboard -t UTF8_STRING
    xclip -o -selection clipboard -t UTF8_STRING
}

# Presses the box's default button and waits until it is gone.
confirm() {
    press "$1" Return
    wait_for gone "$1"
}
gone() { ! xdotool getwindowname "$1" >/dev/null 2>&1; }

# The console's window, once it is shown.
main_window() { window '^Zandrel - '; }

# click <window> <place>: clicks on a control of the main window in its initial size.
declare -A place=(
    [endpoints]='60 22' [trace]='140 22' [anonymous]='60 83' [user_password]='300 83'
    [trace_file]='340 84' [host]='550 180' [apply]='558 457'
    [certificates]='215 22' [certificates_list]='100 136' [create_certificate]='350 446'
)
click() {
    xdotool windowactivate --sync "$1" mousemove --window "$1" ${place[$2]} click 1
    sleep 0.2
}

# Closes a window as its title bar's button does. The window manager's key won't do: it is lost when it
# comes with the first key strokes, which make the window manager read the keyboard anew.
close_window() { wmctrl -i -c "$1"; }

expect() { [ "$1" = "$2" ] || fail "got '$1', expected '$2'"; }

# What the file holds between the first pair of these tags.
element() { sed -n "s|.*<$1>\(.*\)</$1>.*|\1|p" "$file" | head -n 1; }
