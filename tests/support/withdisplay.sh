#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command on an X server of its own, without a window manager, and ends the server with it.
# STALLO_SCREEN sets the size, 1920x1080 without it.
set -eu
folder=$(mktemp -d)
server=
child=
cleanup() {
    if [ -n "$child" ]; then
        kill "$child" 2>/dev/null || :
        wait "$child" 2>/dev/null || :
    fi
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || :
        wait "$server" 2>/dev/null || :
    fi
    rm -rf "$folder"
}
trap cleanup EXIT
trap 'exit 143' TERM
trap 'exit 130' INT HUP
mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 "${STALLO_SCREEN:-1920x1080}x24" -nolisten tcp -noreset \
    3>"$folder/display" >/dev/null 2>&1 &
server=$!
if ! read -r number <"$folder/display"; then
    echo "withdisplay.sh: the X server does not start; is xvfb installed?" >&2
    exit 1
fi
# Without OpenGL, which nothing here draws with: its driver for virtual screens leaves memory behind
# in a library that is unloaded by then, so that no suppression can name it.
# In the background, so that a signal to this script ends the command at once.
DISPLAY=":$number" QT_QPA_PLATFORM=xcb QT_XCB_GL_INTEGRATION=none "$@" &
child=$!
status=0
wait "$child" || status=$?
child=
exit $status
