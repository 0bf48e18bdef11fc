#!/usr/bin/env bash
# A platform that doesn't come up is told before anything else; the program ends with the result and
# without the clean-up.
. "$(dirname "$0")/harness.sh"

console=$other
start -x y >"$work/output"
box=$(window '^Zandrel Dialog$')
expect "$(text_of "$box")" 'UaPlatformLayer could not be initialized (ret = -1).'
confirm "$box"
ends_with 255
expect "$(cat "$work/output")" ''
