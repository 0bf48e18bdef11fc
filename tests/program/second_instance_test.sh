#!/usr/bin/env bash
# A second start ends at once with 0 and brings the first window forward; what a killed instance left
# behind doesn't block the next start.
. "$(dirname "$0")/harness.sh"

make_server
start -f "$file"
first=$pid
main=$(main_window)
xdotool windowminimize --sync "$main"
no_window '^Zandrel - '

# Its own command line isn't looked at, not even a bad one.
start -x y
ends_with 0
no_window '^Zandrel Dialog$'
wait_for search '^Zandrel - '

# Messages that are none don't harm the running instance.
socket=$(find "$XDG_RUNTIME_DIR" -type s)
expect "$(stat -c %a "$(dirname "$socket")")" 700
[ -z "$(find "$XDG_RUNTIME_DIR" -type s -perm /077)" ] || fail "others can talk to the instance"
head -c 100000 /dev/urandom | timeout 5 socat -u - UNIX-CONNECT:"$socket" || true
printf '\377\377\377\376x' | timeout 5 socat -u - UNIX-CONNECT:"$socket" || true
kill -0 "$first"

kill -9 "$first"
wait "$first" 2>/dev/null || true
start -f "$file"
close_window "$(main_window)"
ends_with 0
