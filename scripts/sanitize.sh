#!/usr/bin/env bash
# Builds a sanitizer preset and runs its tests: sanitize.sh asan|tsan [<arguments for CTest>]
set -euo pipefail
. "$(dirname "$0")/lib.sh"

preset=${1:?usage: sanitize.sh asan|tsan}
shift
export ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1
export LSAN_OPTIONS=suppressions=$root/scripts/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1
export TSAN_OPTIONS=halt_on_error=1

# libcrypto keeps a few blocks of its own when its start fails or memory runs out inside it.
keeps_blocks='RsaFile\.failing_allocations_of_a_save|Provider\.source_that_gives_no_seed'
keeps_blocks+='|LibraryFaultsTest\.keys_are_written_or_not'

# Only some layers run threads; the program tests look at the release build.
targets=()
select=(-LE program)
if [ "$preset" = tsan ]; then
    targets=(platform_test platform_threads_test platform_crypto_test platform_start_test
        stack_threads_test base_test pki_threads_test)
    select=(-L '^(platform|base|threads)$')
fi
configure_and_build "$preset" "${targets[@]}"
cd "$root"
ctest --preset "$preset" -j "$(nproc)" --output-on-failure "${select[@]}" -E "$keeps_blocks" "$@"
