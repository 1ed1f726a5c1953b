#!/bin/sh
# SPDX-License-Identifier: MIT
# run.sh SECONDS [TARGET...]: builds the fuzz targets, installing what that needs, and runs each of
# them, or those that are named, for so long; with STALLO_FUZZ_RUNS=N in the environment until N
# inputs if that is sooner. They begin with the seeds and the past findings in the tree and with the
# corpus of former runs in build/fuzz/corpus, which grows.
#
# Prints a line for each: inputs, seconds, the edges of our code that were taken at the beginning
# and at the end. What a target says is in build/fuzz/<target>.log. Ends with 1 when a target found
# something, which is then in build/fuzz/crashes/<target>; with 2 for a wrong command line.
set -eu
cd "$(dirname "$0")/.."
. fuzz/prepare.sh
case ${1-} in
    '' | *[!0-9]*) echo "usage: run.sh SECONDS [TARGET...]" >&2; exit 2 ;;
esac
seconds=$1
shift
targets=${*:-$(all_targets)}
for target in $targets; do
    if [ ! -e "fuzz/fuzz_$target.cpp" ]; then
        echo "run.sh: there is no target $target; there are $(all_targets | tr '\n' ' ')" >&2
        exit 2
    fi
done
prepare_fuzzing

# one TARGET: libFuzzer ends with the first crash, with an input of more than 30 s and with one of
# more than 2 GiB.
one() {
    mkdir -p "$corpora/$1" "$crashes/$1"
    # shellcheck disable=SC2046 # folders without blanks
    nice "build/fuzz/fuzz/fuzz_$1" -max_total_time="$seconds" -runs="${STALLO_FUZZ_RUNS:--1}" -timeout=30 \
        -print_final_stats=1 -artifact_prefix="$crashes/$1/" "$corpora/$1" $(kept_inputs "$1") \
        >"build/fuzz/$1.log" 2>&1
}

# summary TARGET WORD
summary() {
    awk -v target="$1" -v word="$2" '
        / cov: / { for (i = 1; i < NF; ++i) if ($i == "cov:") { if (!first && /INITED/) first = $(i + 1); last = $(i + 1) } }
        /^Done / { seconds = $5 }
        /stat::number_of_executed_units/ { inputs = $2 }
        END { printf "%-12s %9d inputs %6s s  %5d edges at the beginning %5d at the end  %s\n", target, inputs, seconds, first, last, word }
    ' "build/fuzz/$1.log"
}

found=
for target in $targets; do
    if one "$target"; then
        summary "$target" ""
    else
        found=yes
        summary "$target" "FOUND something, see build/fuzz/$target.log"
    fi
done
if [ -n "$found" ]; then
    exit 1
fi
