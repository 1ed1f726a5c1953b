#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the Debian package and tries it in a bare system in build/check: lintian; installing it;
# debian/tests there, as an ordinary user; removing it, after which no file of it may be left. Takes
# packages from where this machine takes them. Needs root, for chroot.
#
# The bare system and the packages that were fetched are kept in build/check, so that the next run is
# quick; to begin anew, delete that folder.
set -eu
cd "$(dirname "$0")/.."
if [ "$(id -u)" -ne 0 ]; then
    echo "check.sh: needs root, for a system of its own in build/check" >&2
    exit 2
fi
. packaging/prepare.sh
packages="debootstrap lintian"
prepare_packages

check=$PWD/build/check
root=$check/root
started=$(date +%s)
mounted=

step() { echo "== $* (after $(($(date +%s) - started)) s)"; }

unmount() {
    if [ -n "$mounted" ]; then
        umount "$root/proc" || umount -l "$root/proc"
        mounted=
    fi
}
trap unmount EXIT
trap 'exit 143' TERM
trap 'exit 130' INT HUP

# Also after a run that was killed.
clear_root() {
    if mountpoint -q "$root/proc"; then
        umount "$root/proc"
    fi
    rm -rf --one-file-system "$root"
}

inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        ${http_proxy:+"http_proxy=$http_proxy"} ${https_proxy:+"https_proxy=$https_proxy"} "$@"
}

inside_apt() {
    inside apt-get -y -q -o Dpkg::Use-Pty=0 --no-install-recommends "$@" >>"$check/apt.log" 2>&1 || {
        tail -n 20 "$check/apt.log" >&2
        return 1
    }
}

# The distribution's own archives as this machine knows them, one "URI RELEASE" on each line.
archives() {
    # shellcheck disable=SC2016 # the names are apt-get's to replace
    apt-get indextargets --format '$(ORIGIN)|$(REPO_URI) $(RELEASE)' 'Created-By: Packages' |
        sed -n 's/^Debian|//p' | sort -u
}

make_base() {
    if [ -z "$(archives)" ]; then
        apt-get update -qq
    fi
    # The one whose release is named as the system is; updates and security come behind it.
    mirror=$(archives | sed -n "s/ $suite\$//p" | head -n 1)
    if [ -z "$mirror" ]; then
        echo "check.sh: no archive of $suite among this machine's sources" >&2
        exit 1
    fi
    eval "$(apt-config shell proxy Acquire::http::Proxy)"
    if [ -n "${proxy-}" ] && [ "$proxy" != DIRECT ]; then
        export http_proxy="$proxy"
    fi
    clear_root
    debootstrap --variant=minbase "$suite" "$root" "$mirror" >"$check/debootstrap.log" 2>&1 || {
        tail -n 20 "$check/debootstrap.log" >&2
        exit 1
    }
    archives | sed 's/^/deb /; s/$/ main/' >"$root/etc/apt/sources.list"
    apt-config dump Acquire | grep -E '::(Proxy|Check-Valid-Until|Check-Date)' >"$root/etc/apt/apt.conf.d/90machine" || :
    find /etc/apt/trusted.gpg.d -type f -exec cp -t "$root/etc/apt/trusted.gpg.d" {} +
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod 755 "$root/usr/sbin/policy-rc.d"
    inside useradd --create-home guard
    tar -c -C "$root" . >"$base.part"
    mv "$base.part" "$base"
}

make_root() {
    suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
    base=$check/base-$suite-$(dpkg --print-architecture).tar
    mkdir -p "$check/archives"
    if [ -e "$base" ]; then
        clear_root
        mkdir "$root"
        tar -x -C "$root" -f "$base"
    else
        step "making a bare system of $suite"
        make_base
    fi
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    mount -t proc proc "$root/proc"
    mounted=yes
    find "$check/archives" -name '*.deb' -exec cp -t "$root/var/cache/apt/archives" {} +
}

# What the package and its test ask for, each line a relation as in debian/control.
wanted() {
    dpkg-deb -f "$package" Depends
    dpkg-deb -f "$package" Recommends
    sed -n 's/^Depends: @, //p' debian/tests/control
}

# All files, but for what keeps account of installed packages.
list_files() {
    inside find / -xdev -not -path '/tmp/*' -not -path '/var/cache/*' -not -path '/var/log/*' \
        -not -path '/var/lib/apt/*' -not -path '/var/lib/dpkg/*-old' | sort
}

run_test() {
    inside rm -rf /tmp/source /tmp/trial
    mkdir "$root/tmp/source" "$root/tmp/trial"
    tar -x --strip-components=1 -C "$root/tmp/source" -f "$(dirname "$package")"/stallo_*.tar.xz
    inside chown guard /tmp/trial
    chroot --userspec=guard "$root" env -i PATH=/usr/bin:/bin HOME=/home/guard LC_ALL=C.UTF-8 \
        AUTOPKGTEST_TMP=/tmp/trial AUTOPKGTEST_ARTIFACTS=/tmp/trial \
        sh -c 'cd /tmp/source && exec debian/tests/passage'
    rm -rf "$check/pictures"
    cp -r "$root/tmp/trial/pictures" "$check/pictures"
}

check_removal() {
    list_files >"$check/after"
    if ! diff "$check/before" "$check/after" >"$check/difference"; then
        echo "Files that were not there before (>) or are there no more (<):"
        cat "$check/difference"
        return 1
    fi
    while read -r path; do
        if [ ! -d "$root$path" ] && [ -e "$root$path" ]; then
            echo "$path is left"
            return 1
        fi
    done <"$check/contents"
    if inside dpkg-query -W stallo >/dev/null 2>&1; then
        echo "dpkg still knows the package"
        return 1
    fi
}

mkdir -p "$check"
step "building the package"
packaging/build.sh | tee "$check/build.out"
package=$(tail -n 1 "$check/build.out")
[ -f "$package" ] # the status of tee says nothing

step "lintian"
lintian --allow-root -i -I --pedantic --fail-on error,warning "${package%.deb}.changes"
echo "no errors and no warnings"

make_root
step "installing what the package and its test ask for"
rm -f "$check/apt.log"
inside_apt update
wanted | tr '\n' ',' | sed 's/,$//' >"$check/wanted"
inside_apt satisfy "$(cat "$check/wanted")"
cp -t "$check/archives" "$root"/var/cache/apt/archives/*.deb 2>/dev/null || :
list_files >"$check/before"

step "installing the package"
cp "$package" "$root/tmp/"
inside_apt install "/tmp/$(basename "$package")"
inside dpkg -L stallo | sort >"$check/contents"
echo "$(wc -l <"$check/contents") paths"

step "debian/tests"
run_test

step "removing the package"
inside_apt purge stallo
check_removal
echo "no file is left"

unmount
clear_root
step "all good; what the panel looked like is in $check/pictures"
