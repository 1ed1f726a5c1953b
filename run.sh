#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds Stallo, installing what is missing, and runs it: without arguments a demo with two simulated
# devices on this machine, with "--device ADDRESS" the panel alone on a real device.
set -eu
cd "$(dirname "$0")"

usage() {
    echo "usage: ./run.sh                     demo with two simulated devices"
    echo "       ./run.sh --device ADDRESS    the panel on a real device, with your own settings"
}

device=
case "${1-}" in
    '') ;;
    --device)
        if [ $# -ne 2 ] || [ -z "$2" ]; then usage >&2; exit 2; fi
        device=$2 ;;
    -h | --help) usage; exit 0 ;;
    *) usage >&2; exit 2 ;;
esac

. packaging/prepare.sh
prepare_packages
build_preset release
root=$PWD
program=$root/build/release/stallo
# The program looks for its message catalogues where it is started.
catalogues=$root/build/release/translations

if [ -n "$device" ]; then
    cd "$catalogues"
    exec "$program" --online "$device"
fi

demo=$root/build/demo
simulator=$root/build/release/simulator/stallo-device
# The display is still the caller's.
export XAUTHORITY="${XAUTHORITY-$HOME/.Xauthority}"
export HOME=$demo/home XDG_CONFIG_HOME=$demo/home/.config
mkdir -p "$XDG_CONFIG_HOME/Dorvel Ltd"
settings="$XDG_CONFIG_HOME/Dorvel Ltd/Stallo.conf"
if [ ! -e "$settings" ]; then
    printf '[General]\nWindowMaximized=true\n[AddressList]\nAddresses=127.0.0.1, 127.0.0.2\n' >"$settings"
fi

devices=
panel=
stop_devices() {
    for process in $panel $devices; do
        kill "$process" 2>/dev/null || :
    done
    for process in $panel $devices; do
        wait "$process" 2>/dev/null || :
    done
    devices=
    panel=
}
trap stop_devices EXIT
trap 'exit 143' TERM
trap 'exit 130' INT HUP

# start_device ADDRESS NAME SEED: returns when it listens, or ends the demo.
start_device() {
    log=$demo/$2.log
    "$simulator" --address "$1" --online-port 3333 --file-port 5058 --id "$2" --seed "$3" \
        --rate 0.4 --unknown 0.2 --unreadable 0.1 --manual 0.05 --card 0.05 --late-photos 0.1 \
        --archive 5000 --archive-step 121 \
        >"$log" 2>&1 </dev/null &
    process=$!
    devices="$devices $process"
    tries=0
    until grep -q '^ready' "$log"; do
        tries=$((tries + 1))
        if [ $tries -gt 100 ] || ! kill -0 "$process" 2>/dev/null; then
            echo "The simulated device on $1 does not start:" >&2
            cat "$log" >&2
            exit 1
        fi
        sleep 0.1
    done
}
start_device 127.0.0.1 "north-gate" 1
start_device 127.0.0.2 "south-gate" 2
cd "$catalogues"

# In the background, so that a signal to this script ends the panel at once.
run_panel() {
    "$@" &
    panel=$!
    status=0
    wait "$panel" || status=$?
    panel=
    return $status
}

if xdotool getdisplaygeometry >/dev/null 2>&1; then
    run_panel "$program" --online 127.0.0.1
else
    pictures=$demo/pictures
    echo "There is no display here. The demo runs on a virtual one for a while, and leaves a picture of"
    echo "each page in $pictures"
    export STALLO_SCREENSHOTS="$pictures" STALLO_SCREEN=1280x800
    run_panel "$root/tests/support/withdisplay.sh" "$program" --online 127.0.0.1
    ls "$pictures"
fi
