#!/usr/bin/env bash
# A missing file and one that can't be written are told; the tabs are disabled, and the file stays as
# it is.
. "$(dirname "$0")/harness.sh"

start -f "$work/missing.xml"
box=$(window '^Configuration File Not Found$')
expect "$(text_of "$box")" "The configuration file '$work/missing.xml' could not be opened.
Please check if it exists!"
confirm "$box"
close_window "$(main_window)"
ends_with 0
[ ! -e "$work/missing.xml" ]

make_server
cp "$file" "$work/before"
as_user=()
if [ "$(id -u)" -eq 0 ]; then
    # Root may write everything: let somebody else look at the file.
    chmod 755 "$work" "$work/server"
    chmod 644 "$file"
    cp "${XAUTHORITY:-/dev/null}" "$work/xauthority" 2>/dev/null || true
    chown -R nobody "$XDG_RUNTIME_DIR" "$work/xauthority" 2>/dev/null || true
    as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups env "XAUTHORITY=$work/xauthority" HOME="$work")
else
    chmod 444 "$file"
fi
"${as_user[@]}" "$console" -f "$file" 2>>"$work/log" &
pid=$!
box=$(window '^Configuration File Not Writable$')
expect "$(text_of "$box")" "The configuration file '$file' could not be opened for writing.
Please check for sufficient access rights!"
confirm "$box"
main=$(main_window)
click "$main" trace
click "$main" trace_file
press "$main" x
close_window "$main"
ends_with 0
cmp "$file" "$work/before"
