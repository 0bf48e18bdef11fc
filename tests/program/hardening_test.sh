#!/usr/bin/env bash
# Release binaries are position independent, have full RELRO, a stack protector and fortified calls, and
# leave no core dump.
set -euo pipefail
console=$1

fail() { echo "FAILED: $*" >&2; exit 1; }
has() { grep -q "$2" <<<"$1" || fail "$console has no $2"; }
headers=$(readelf -hlW "$console")
dynamic=$(readelf -dW "$console")
symbols=$(readelf -sW --dyn-syms "$console")
has "$headers" 'DYN (Position-Independent Executable file)'
has "$headers" GNU_RELRO
has "$dynamic" BIND_NOW
has "$symbols" __stack_chk_fail
has "$symbols" '__[a-z]*_chk@'
grep -q 'GNU_STACK.*RWE' <<<"$headers" && fail "the stack is executable"
has "$symbols" setrlimit
