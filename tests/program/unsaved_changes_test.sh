#!/usr/bin/env bash
# Leaving a tab, and closing the window, with unsaved changes asks; Save and Discard do as they say.
. "$(dirname "$0")/harness.sh"

endpoints_question='You have unsaved changes in the Endpoints tab.
Do you want to save or discard them?'
trace_question='You have unsaved changes in the Trace Settings tab.
Do you want to save or discard them?'

make_server
start -f "$file"
main=$(main_window)
wait_for grep -q '<Hostname>' "$file"
expect "$(element EnableUserPw)" false

# Discard is the default.
cp "$file" "$work/before"
click "$main" user_password
click "$main" trace
box=$(window '^Endpoints$')
expect "$(text_of "$box")" "$endpoints_question"
confirm "$box"
cmp "$file" "$work/before"

# Save is the other button.
click "$main" endpoints
click "$main" user_password
click "$main" trace
box=$(window '^Endpoints$')
press "$box" Tab space
wait_for gone "$box"
wait_for grep -q '<EnableUserPw>true' "$file"

# The trace tab asks too, and so does closing the window.
click "$main" trace_file
press "$main" End x
click "$main" endpoints
box=$(window '^Trace Settings$')
press "$box" Tab space
wait_for gone "$box"
expect "$(element UaAppTraceFile)" '[TracePath]/srvTrace.logx'
click "$main" anonymous
close_window "$main"
box=$(window '^Endpoints$')
confirm "$box"
ends_with 0
expect "$(element EnableAnonymous)" true
