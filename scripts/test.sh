#!/usr/bin/env bash
# Installs what is missing, builds the release preset and runs all tests. Arguments go to CTest:
#   scripts/test.sh -R console
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages
configure_and_build release
cd "$root"
ctest --preset release -j "$(nproc)" --output-on-failure "$@"
