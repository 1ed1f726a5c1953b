# SPDX-License-Identifier: MIT
# Shared by the scripts of this folder, which source it from the root of the tree: the list of
# targets, and building them with clang, which nothing else needs.
. packaging/prepare.sh

# shellcheck disable=SC2034 # read by the scripts
corpora=build/fuzz/corpus
# shellcheck disable=SC2034
crashes=build/fuzz/crashes

all_targets() {
    for source in fuzz/fuzz_*.cpp; do
        name=${source#fuzz/fuzz_}
        echo "${name%.cpp}"
    done
}

prepare_fuzzing() {
    packages="$packages clang libclang-rt-14-dev"
    prepare_packages
    build_preset fuzz
    # What the toolkit keeps until the process ends is no leak of ours.
    export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
    export UBSAN_OPTIONS=print_stacktrace=1
    # Where the targets write: in memory where there is such a place, and gone afterwards.
    if [ -d /dev/shm ] && [ -w /dev/shm ]; then
        TMPDIR=$(mktemp -d /dev/shm/stallo-fuzz-XXXXXX)
    else
        TMPDIR=$(mktemp -d)
    fi
    export TMPDIR
    trap 'rm -rf "$TMPDIR"' EXIT
    trap 'exit 130' INT HUP
    trap 'exit 143' TERM
}

# The folders with inputs that the tree holds for a target.
kept_inputs() {
    for folder in "fuzz/seeds/$1" "fuzz/findings/$1"; do
        if [ -d "$folder" ]; then
            echo "$folder"
        fi
    done
}
