# What the scripts share. To be sourced; sets `top` to the root of the checkout and goes there.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"

# Debian 12's names of everything that building, running and testing takes.
packages=(
    g++ cmake ninja-build ccache pkg-config
    qt6-base-dev qt6-base-private-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev
    qt6-declarative-dev qt6-declarative-dev-tools qml6-module-qtqml qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-templates
    qml6-module-qtquick-controls qml6-module-qtquick-layouts
    rapidjson-dev libcpp-httplib-dev nlohmann-json3-dev libsqlite3-dev libgtest-dev
    libbenchmark-dev
    clang-format clang-tidy fonts-dejavu-core iproute2 curl jq openssl faketime
)
# Fonts of many scripts, for pictures.
picture_packages=(fonts-inter fonts-noto-core fonts-noto-cjk fonts-noto-color-emoji)
# An X server, a message bus, a client for what Qt tells assistive technology, a screen reader, and
# Wayland.
accessibility_packages=(
    xvfb xauth dbus at-spi2-core gir1.2-atspi-2.0 python3-gi orca weston qt6-wayland
)
# Comparing the interfaces of shared libraries; reading the documents.
package_packages=(abigail-tools binutils python3)
# A compiler with fuzzers, their runtime, and names for their stack traces.
fuzz_packages=(clang libclang-rt-14-dev llvm)

# say TEXT...: one line about what happens now.
say() {
    printf '== %s\n' "$*"
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_packages [PACKAGE...]: installs what is missing of these packages and of `packages`.
install_packages() {
    local missing=() package
    for package in "${packages[@]}" "$@"; do
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

# start_service PORT SURVEYS FOLDER: runs kestrio-service until the script ends, with its log and its
# records in FOLDER, which is removed then. Returns once it listens.
start_service() {
    build/dev/service/kestrio-service --port "$1" --surveys "$2" \
        --database "$3/records.sqlite" 2>"$3/service.log" &
    # Whatever else the script has started may not heed a request to end.
    trap "kill -KILL \$(jobs -p) 2>/dev/null; wait 2>/dev/null; rm -rf '$3'" EXIT
    until grep -q listening "$3/service.log"; do
        kill -0 $! 2>/dev/null || { cat "$3/service.log"; exit 1; }
        sleep 0.1
    done
}
