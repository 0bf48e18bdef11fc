#!/usr/bin/env bash
# Installs what is missing, builds the console and opens it on a sample server directory under
# build/sampleserver. Without a display the console runs on a virtual one, and pictures of it are
# left under build/pictures.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages
configure_and_build release zandrel sampleserver

server=$root/build/sampleserver
[ -e "$server/ServerConfig.xml" ] || "$root/build/release/examples/sampleserver/sampleserver" "$server"

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$root/build/release/console/zandrel" -f "$server/ServerConfig.xml"
fi
echo "No display: taking pictures of the console on a virtual one."
exec "$root/scripts/take-pictures.sh" "$root/build/release/console/zandrel" "$root/build/pictures"
