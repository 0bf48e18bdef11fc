# What run.sh and test.sh share: installing packages, configuring and building. Sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Installs what packages.txt lists and this machine lacks.
install_packages() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
        fail "this is no Debian system; install the packages that scripts/packages.txt names by hand, then build with 'cmake --preset release'"
    local wanted missing=() package
    mapfile -t wanted < <(sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$root/scripts/packages.txt")
    for package in "${wanted[@]}"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            fail "these packages are missing and neither root nor sudo is at hand: ${missing[*]}"
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -q >/dev/null
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing[@]}" >/dev/null
}

# configure_and_build <preset> [<target> ...]
configure_and_build() {
    local preset=$1 targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    (cd "$root" && cmake --preset "$preset" >"$root/build/$preset.configure.log" 2>&1) ||
        { cat "$root/build/$preset.configure.log" >&2; fail "configuring '$preset' failed"; }
    (cd "$root" && cmake --build --preset "$preset" "${targets[@]}")
}

mkdir -p "$root/build"
