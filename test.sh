#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds Stallo twice, optimised and with the address and undefined-behaviour sanitizers, installing
# what is missing, and runs the whole test suite in both. Ends with the suite's summary, after the
# first build's run if that failed.
set -eu
cd "$(dirname "$0")"
. packaging/prepare.sh
prepare_packages
for preset in release asan; do
    build_preset "$preset"
done
for preset in release asan; do
    echo "== $preset =="
    # Many tests wait for silent devices, so one more than there are cores.
    ctest --preset "$preset" -j "$(($(nproc) + 1))" # a failure ends here, with its summary
done
