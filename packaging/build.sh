#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the Debian package from a clean export of the last commit (of the folder as it is where there
# is no repository), installing what is missing. The tree stays as it is: everything is in
# build/package. The last line that it prints is the package's path.
set -eu
cd "$(dirname "$0")/.."
root=$PWD
. packaging/prepare.sh
packages="build-essential debhelper"
prepare_packages

version=$(dpkg-parsechangelog --show-field Version)
output=$root/build/package
source=$output/stallo-$version
rm -rf "$output"
mkdir -p "$source"
if [ "$(git rev-parse --show-toplevel 2>/dev/null)" = "$root" ]; then
    if [ -n "$(git status --porcelain 2>/dev/null)" ]; then
        echo "Changes that are not committed are left out."
    fi
    git archive HEAD | tar -x -C "$source"
else
    tar -c --exclude=./build --exclude=./.git . | tar -x -C "$source"
fi

cd "$source"
if ! dpkg-checkbuilddeps 2>/dev/null; then
    admin=
    if [ "$(id -u)" -ne 0 ]; then
        admin=sudo
    fi
    $admin apt-get update -qq
    $admin env DEBIAN_FRONTEND=noninteractive apt-get build-dep -y -qq --no-install-recommends "$source" >/dev/null
fi
dpkg-buildpackage --no-sign --build=full >"$output/build.log" 2>&1 || {
    tail -n 40 "$output/build.log" >&2
    exit 1
}
ls "$output/stallo_${version}_$(dpkg --print-architecture).deb"
