#!/usr/bin/env bash
# Checks the format of all sources, then clang-tidy on them with the release preset's commands.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

cd "$root"
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format-14 --dry-run -Werror
echo "format: clean"

database=build/release/compile_commands.json
[ -e "$database" ] || fail "build the release preset first: scripts/test.sh"
git ls-files -z '*.cpp' ':!tests' ':!benchmarks' ':!fuzz' ':!*_windows.cpp' |
    xargs -0 -n 3 -P "$(nproc)" clang-tidy-14 -p build/release --quiet \
        --extra-arg=-Wno-unknown-warning-option 2>build/tidy.log ||
    { cat build/tidy.log >&2; fail "clang-tidy found something"; }
echo "tidy: clean"
