# What the scripts share. To be sourced; sets `top` to the root of the checkout and goes there.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"

# Debian 12's names of everything that building, running and testing takes.
packages=(
    g++ cmake ninja-build ccache pkg-config
    qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev
    rapidjson-dev libcpp-httplib-dev nlohmann-json3-dev libsqlite3-dev libgtest-dev
    clang-format clang-tidy fonts-dejavu-core iproute2 curl jq openssl
)

# say TEXT...: one line about what happens now.
say() {
    printf '== %s\n' "$*"
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs the packages that are missing, if any are.
install_packages() {
    local missing=() package
    for package in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    say "installing ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# quietly LOG COMMAND...: runs the command with its output in build/LOG.log, shown if it fails.
quietly() {
    local log=build/$1.log
    shift
    mkdir -p build
    "$@" >"$log" 2>&1 || { tail -n 80 "$log"; return 1; }
}

# build_preset NAME: configures, if need be, and builds what has changed.
build_preset() {
    say "building the $1 preset"
    quietly "$1-configure" cmake --preset "$1"
    quietly "$1-build" cmake --build --preset "$1"
}
