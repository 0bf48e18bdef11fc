#!/usr/bin/env bash
# The host name takes the place of [NodeName]; a stored name that differs is reported once.
. "$(dirname "$0")/harness.sh"

make_server
grep -q 'opc.tcp://\[NodeName\]:4850' "$file"
start -f "$file"
main=$(main_window)
host=$(hostname)
wait_for grep -q "<Hostname>$host</Hostname>" "$file"
grep -q "<Url>opc.tcp://$host:4850</Url>" "$file"
expect "$(element GroupHost)" "$host"
no_window '^Change in Hostname Detected$'
close_window "$main"
ends_with 0

sed -i "s|<Hostname>.*</Hostname>|<Hostname>${host^^}x</Hostname>|" "$file"
start -f "$file"
box=$(window '^Change in Hostname Detected$')
expect "$(element Hostname)" "$host"
expect "$(text_of "$box")" 'The hostname of the computer was changed.

Please check the following settings and adjust them if necessary:
- Endpoint URLs of the UA Endpoints
- The Application Instance Certificate of UA Server'
confirm "$box"
close_window "$(main_window)"
ends_with 0

start -f "$file"
main=$(main_window)
sleep 0.5
no_window '^Change in Hostname Detected$'
close_window "$main"
ends_with 0
