#!/usr/bin/env bash
# Changes the trace level and an endpoint's host; the file then holds exactly that.
. "$(dirname "$0")/harness.sh"

make_server
start -f "$file"
main=$(main_window)
wait_for grep -q '<Hostname>' "$file"
cp "$file" "$work/expected"

# The trace level, one step towards fewer messages, then Apply.
expect "$(element UaAppTraceLevel)" Info
click "$main" trace
click "$main" trace_file
press "$main" $(tabs 6) Up $(tabs 3) space
sed -i 's|<UaAppTraceLevel>Info|<UaAppTraceLevel>Warning|' "$work/expected"
wait_for cmp "$file" "$work/expected"

# The host of the first endpoint, then Apply.
click "$main" endpoints
click "$main" host
press "$main" ctrl+a
write "$main" plant.example
press "$main" $(tabs 10) space
wait_for grep -q '<Url>opc.tcp://plant.example:4850</Url>' "$file"
expect "$(grep -c '<UaEndpoint>' "$file")" 3
expect "$(grep -c 'plant.example' "$file")" 1
expect "$(element UaAppTraceLevel)" Warning

# Applying the same once more, by switching a box on and off, gives the same bytes.
cp "$file" "$work/expected"
touch -d '2001-01-01' "$file" "$work/old"
click "$main" anonymous
click "$main" anonymous
click "$main" apply
wait_for test "$file" -nt "$work/old"
wait_for cmp "$file" "$work/expected"

close_window "$main"
ends_with 0
