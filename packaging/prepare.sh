# SPDX-License-Identifier: MIT
# Shared by run.sh and test.sh, which source it: installs what the build needs, and builds.

packages="build-essential cmake ninja-build qtbase5-dev qttools5-dev-tools qttranslations5-l10n libbenchmark-dev
libxcb1-dev locales xvfb xdotool fonts-dejavu-core procps tzdata desktop-file-utils appstream groff-base python3 lld
e2fsprogs mount"

prepare_packages() {
    missing=
    for package in $packages; do
        if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
            missing="$missing $package"
        fi
    done
    if [ -z "$missing" ]; then
        return
    fi
    admin=
    if [ "$(id -u)" -ne 0 ]; then
        admin=sudo
    fi
    echo "Installing$missing"
    $admin apt-get update -qq
    # shellcheck disable=SC2086 # names and nothing else
    $admin env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

build_preset() {
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1"
}
