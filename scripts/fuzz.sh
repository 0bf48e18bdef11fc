#!/usr/bin/env bash
# Builds the fuzz targets and runs each on a copy of its corpus:
#   fuzz.sh [--keep] <seconds each> [<name> ...]
# Findings are left in build/fuzz/findings. With --keep the corpus gets those of the inputs found that reach
# what no older one does, as few as cover all of it.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

keep=
if [ "${1:-}" = --keep ]; then
    keep=1
    shift
fi
seconds=${1:?usage: fuzz.sh [--keep] <seconds each> [<name> ...]}
shift
names=("$@")
if [ ${#names[@]} -eq 0 ]; then
    mapfile -t names < <(cd "$root/fuzz/corpus" && ls)
fi
configure_and_build fuzz
export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS=suppressions=$root/scripts/lsan.supp:print_suppressions=0
mkdir -p "$root/build/fuzz/findings"

run() {
    local name=$1 fuzzer work dictionary=()
    fuzzer=$root/build/fuzz/fuzz/${1}_fuzzer
    work=$(mktemp -d)
    cp -r "$root/fuzz/corpus/$name" "$work/corpus"
    [ ! -e "$root/fuzz/$name.dict" ] || dictionary=("-dict=$root/fuzz/$name.dict")
    "$fuzzer" -max_total_time="$seconds" -rss_limit_mb=4096 -timeout=25 \
        -artifact_prefix="$root/build/fuzz/findings/$name-" "${dictionary[@]}" "$work/corpus" \
        >"$work/log" 2>&1 || { tail -n 60 "$work/log"; rm -rf "$work"; return 1; }
    printf '%-20s %s\n' "$name" "$(tail -n 1 "$work/log")"
    [ -z "$keep" ] ||
        "$fuzzer" -set_cover_merge=1 "$root/fuzz/corpus/$name" "$work/corpus" >"$work/log" 2>&1 ||
        { tail -n 60 "$work/log"; rm -rf "$work"; return 1; }
    rm -rf "$work"
}
export -f run
export root seconds keep
printf '%s\n' "${names[@]}" | xargs -n 1 -P "$(nproc)" bash -euo pipefail -c 'run "$0"'
