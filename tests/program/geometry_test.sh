#!/usr/bin/env bash
# The window comes back with the size that it had.
. "$(dirname "$0")/harness.sh"

size_of() { xdotool getwindowgeometry "$1" | sed -n 's/.*Geometry: //p'; }
has_size() { [ "$(size_of "$1")" = "$2" ]; }

make_server
start -f "$file"
main=$(main_window)
expect "$(size_of "$main")" 704x538
xdotool windowsize --sync "$main" 820 640
wait_for has_size "$main" 820x640
close_window "$main"
ends_with 0
[ -n "$(element Geometry)" ]

start -f "$file"
main=$(main_window)
expect "$(size_of "$main")" 820x640
cp "$file" "$work/before"
close_window "$main"
ends_with 0
cmp "$file" "$work/before"
