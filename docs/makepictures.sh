#!/bin/sh
# SPDX-License-Identifier: MIT
# makepictures.sh [en] [ru]: makes the pictures of the operator's guides, docs/pictures/LANGUAGE/*.png,
# from the built programs (build/release) and simulated devices, on a virtual screen; without
# arguments for both languages. Needs xdotool, xvfb, locales, imagemagick. Takes about a minute for
# each language and ends after four at the most; what it starts ends with it. Ends with 1, and leaves the
# pictures that are there, when one of them cannot be made.
set -eu
cd "$(dirname "$0")/.."
root=$PWD
build=$root/build/release

if [ "${1-}" != --inside ]; then
    for tool in xdotool Xvfb localedef import convert compare identify mogrify timeout; do
        if ! command -v "$tool" >/dev/null; then
            echo "makepictures.sh: $tool is missing (packages xdotool xvfb locales imagemagick)" >&2
            exit 1
        fi
    done
    for program in stallo netsetup/stallo-netsetup simulator/stallo-device; do
        if [ ! -x "$build/$program" ]; then
            echo "makepictures.sh: build/release/$program is not built; see CONTRIBUTING.md" >&2
            exit 1
        fi
    done
    [ $# -gt 0 ] || set -- en ru
    # In the background, so that a signal to this script ends everything at once.
    child=
    trap 'kill $child 2>/dev/null; wait; exit 143' TERM INT HUP
    for language in "$@"; do
        case $language in
            en) locale=en_US.UTF-8 ;;
            ru) locale=ru_RU.CP1251 ;;
            *) echo "usage: makepictures.sh [en] [ru]" >&2; exit 2 ;;
        esac
        STALLO_SCREEN=1280x800 timeout 240 tests/support/withdisplay.sh \
            "$root/docs/makepictures.sh" --inside "$language" "$locale" &
        child=$!
        wait "$child"
    done
    exit 0
fi

language=$2
locale=$3
# Cyrillic numbers need a code page of one byte a letter: two do not fit into the devices' records.
letters=
[ "$language" != ru ] || letters=--cyrillic
pictures=$root/docs/pictures/$language
all="nodevice online address menu save interval busy archive filter error access network"
folder=$(mktemp -d)
home=$folder/guard
data=$home/Stallo
north=127.0.0.41
south=127.0.0.42
nobody=127.0.0.43
started=
panel=

stop() {
    for process in $started; do
        kill "$process" 2>/dev/null || :
    done
    for process in $started; do
        wait "$process" 2>/dev/null || :
    done
    rm -rf "$folder"
}
trap stop EXIT
trap 'exit 143' TERM
trap 'exit 130' INT HUP

give_up() {
    import -window root "$folder/last.png" 2>/dev/null && cp "$folder/last.png" "$build/makepictures-failed.png"
    echo "makepictures.sh: $language: $1 (build/release/makepictures-failed.png shows the screen)" >&2
    exit 1
}

# until_true TEXT COMMAND...: until the command succeeds, for ten seconds.
until_true() {
    text=$1
    shift
    tries=0
    until "$@"; do
        tries=$((tries + 1))
        [ $tries -lt 100 ] || give_up "$text"
        sleep 0.1
    done
}

# --- what can be waited for ---

# Of the program that was started last: the window itself, dialogs and menus.
windows() { xdotool search --onlyvisible --pid "$panel" 2>/dev/null | wc -l; }
has_windows() { [ "$(windows)" -eq "$1" ]; }
has_window_as_wide() {
    has_windows 2 && xdotool getwindowgeometry "$(newest_window)" | grep -q "Geometry: $1x"
}
newest_window() { xdotool search --onlyvisible --pid "$panel" 2>/dev/null | tail -n 1; }
size_at_least() { [ -e "$1" ] && [ "$(stat -c %s "$1")" -ge "$2" ]; }
files_at_least() { [ "$(find "$1" -type f -name '*.jpeg' 2>/dev/null | wc -l)" -ge "$2" ]; }
is_listening() { grep -q '^ready' "$1"; }

# Two looks, a fifth of a second apart, that show the same.
is_still() {
    import -window root "$folder/one.png"
    sleep 0.2
    import -window root "$folder/two.png"
    [ "$(compare -metric AE "$folder/one.png" "$folder/two.png" null: 2>&1)" = 0 ]
}
settle() { until_true "the screen does not come to rest" is_still; }

# --- hands ---

press() { xdotool mousemove "$1" "$2" click "${3:-1}"; }
park() { xdotool mousemove 1000 25; } # on the title bar, where nothing lights up
key() { xdotool key --delay 60 "$@"; }

# button Y N: the middle of the n-th button that the line of pixels Y goes through, wherever its text
# has moved it.
button() {
    import -window root -crop "1280x1+0+$1" "$folder/line.png"
    convert "$folder/line.png" -depth 8 txt:- | awk -F '[,:() ]+' -v wanted="$2" '
        /^#/ { next }
        { colour = $3 "," $4 "," $5; isButton = colour == "43,54,63" || colour == "32,39,45" }
        isButton && !inside { begin = $1 }
        !isButton && inside && $1 - begin > 30 && ++count == wanted { print int((begin + $1) / 2) }
        { inside = isButton }'
}
press_button() {
    place=$(button "$1" "$2")
    [ -n "$place" ] || give_up "no button number $2 at $1"
    press "$place" "$1"
    park
}
has_button() { [ -n "$(button "$1" "$2")" ]; }

# --- pictures ---

# take NAME [WINDOW]: what is on the screen or in one window. In 256 colours, which is a third of the
# size and hardly to be seen: it is mostly plain areas.
take() {
    import -window "${2:-root}" "$folder/raw.png"
    convert "$folder/raw.png" +dither -colors 256 -strip -define png:compression-level=9 "PNG8:$folder/$1.png"
}
take_still() {
    settle
    take "$@"
}

# --- programs ---

mkdir -p "$home/.config/Dorvel Ltd" "$folder/locales" "$folder/netsetup"
localedef -i "${locale%.*}" -f "${locale#*.}" "$folder/locales/$locale"
export LOCPATH="$folder/locales" LC_ALL="$locale" TZ=UTC
export HOME="$home" XDG_CONFIG_HOME="$home/.config" XDG_RUNTIME_DIR="$folder" QT_LOGGING_RULES='*=false'
unset STALLO_SCREENSHOTS LANGUAGE
chmod 700 "$folder"
# Camera pictures that stand still: one, and the next after ten minutes.
cat >"$home/.config/Dorvel Ltd/Stallo.conf" <<END
[General]
WindowMaximized=true
[AddressList]
Addresses=$north, $south, $nobody
[Global]
VaskParkingPort=3341
FileTransferPort=5041
VideoTimeout=600000
END

# start_device ADDRESS NAME SEED: orders go to the pipe of its name.
start_device() {
    mkfifo "$folder/$2.orders"
    "$build/simulator/stallo-device" --address "$1" --online-port 3341 --file-port 5041 --id "$2" \
        --seed "$3" --archive 600 --archive-step 140 --residents 24 ${letters:+"$letters"} --exit-with-stdin \
        <"$folder/$2.orders" >"$folder/$2.log" 2>&1 &
    started="$started $!"
}
start_device $north north-gate 1
exec 3>"$folder/north-gate.orders"
start_device $south south-gate 2
exec 4>"$folder/south-gate.orders"
until_true "a device does not start" is_listening "$folder/north-gate.log"
until_true "a device does not start" is_listening "$folder/south-gate.log"

# In a folder with the catalogues, where the programs look for them.
start_program() {
    "$@" 3>&- 4>&- &
    panel=$!
    started="$started $panel"
    until_true "$1 does not show itself" has_windows 1
    settle
}
end_program() {
    kill "$panel"
    wait "$panel" || :
}

# passages N: of both devices, one after the other, until N are in the table.
table=$data/OnLineTemp/tmponline.tpp
passages() {
    done=0
    while [ $done -lt "$1" ]; do
        done=$((done + 1))
        if [ $((done % 3)) -eq 0 ]; then echo push >&4; else echo push >&3; fi
        until_true "passage $done does not come" size_at_least "$table" $((done * 116))
    done
    until_true "photos do not come" files_at_least "$data/OnLineTemp/jpegdata" "$1"
}

cd "$build/translations"

# --- a device that is silent, and no device ---
start_program "$build/stallo" --online $nobody
take_still nodevice
end_program

# --- the live page ---
start_program "$build/stallo" --online $north
until_true "no camera picture" size_at_least "$data/VideoTemp/video0.jpeg" 1
settle
press 85 696 # "Select device" of the second device
park
until_true "no address dialog" has_windows 2
key Down
take_still address "$(newest_window)"
key Return
until_true "the address dialog stays" has_windows 1
settle
passages 11
take_still online
press 600 386 3
until_true "no menu" has_windows 2
take_still menu
key Escape
until_true "the menu stays" has_windows 1
press_button 733 3 # behind "Open barrier" and "New table"
until_true "no file dialog" has_windows 2
take_still save "$(newest_window)"
key Escape
until_true "the file dialog stays" has_windows 1

# --- the archive ---
key alt+1
settle
press_button 733 2
until_true "no address dialog" has_windows 2
key Return
until_true "no interval dialog" has_windows 2
key Down # "By selection", of the last day
take_still interval "$(newest_window)"
key Return
until_true "no photos" files_at_least "$data/ArchiveTemp" 150
take busy
until_true "not all photos" has_button 733 4
settle
press 400 386
key ctrl+End Home
park
take_still archive


# --- the filter, by the three digits of the newest passage ---
import -window root -crop 1280x1+0+568 "$folder/line.png"
box=$(convert "$folder/line.png" -depth 8 txt:- | awk -F '[,:() ]+' '
    /^#/ || $1 < 600 { next }
    { isLine = $3 "," $4 "," $5 == "121,136,148" }
    isLine && !inside { begin = $1 }
    !isLine && inside && $1 - begin < 4 && !found { found = begin }
    { inside = isLine }
    END { print found }')
[ -n "$box" ] || give_up "no filter"
press $((box + 10)) 568
press $((box + 10)) 700 # by the digits
press 1200 568
xdotool type --delay 60 68
park
take_still filter

# --- a device that does not answer ---
press_button 733 2
until_true "no address dialog" has_windows 2
key Down Down Return
until_true "no interval dialog" has_windows 2
key Return
until_true "no error dialog" has_window_as_wide 512
take_still error "$(newest_window)"
key Return
until_true "the error dialog stays" has_windows 1

# --- the access list ---
key alt+2
settle
press_button 733 2
until_true "no address dialog" has_windows 2
key Return
until_true "no list" size_at_least "$data/SufferedTemp/tmpaccessbase.tpa" 2784
settle
press 200 254
park
take_still access
end_program

# --- the panel's own network ---
cp "$build"/translations/*.qm "$folder/netsetup"
cd "$folder/netsetup"
printf 'HOSTNAME=gatehouse\nDOMAINNAME=parking.local\n' >cfg-common.cfg
printf 'DHCP=0\nIPADDR=192.168.1.10\nNETMASK=255.255.255.0\nGATEWAY=192.168.1.1\n' >cfg-ifcfg-eth0.cfg
printf 'nameserver 192.168.1.1\nnameserver 192.168.1.2\n' >cfg-resolv.cfg
start_program "$build/netsetup/stallo-netsetup"
take_still network "$(newest_window)"
# The hardware address is of the machine that makes the pictures.
width=$(identify -format %w "$folder/network.png")
mogrify -fill '#1c2329' -draw "rectangle $((width - 170)),8 $((width - 8)),50" "$folder/network.png"
end_program

for picture in $all; do
    size_at_least "$folder/$picture.png" 1000 || give_up "no picture $picture"
done
mkdir -p "$pictures"
for picture in $all; do
    mv "$folder/$picture.png" "$pictures"
done
echo "$pictures"
