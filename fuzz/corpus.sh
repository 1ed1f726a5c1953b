#!/bin/sh
# SPDX-License-Identifier: MIT
# corpus.sh [SECONDS]: makes a corpus for each fuzz target, by running it for so long if SECONDS is
# given, and keeps the smallest inputs only that together take every edge; in build/fuzz/corpus.
#
# corpus.sh --seeds: writes the seeds in the tree anew, with the programs of build/release. They
# follow the formats of the panel and the simulated device; look at the difference before a commit.
set -eu
cd "$(dirname "$0")/.."
. fuzz/prepare.sh

write_seeds() {
    cmake --preset release >/dev/null
    cmake --build --preset release --target stallo_fuzz_seeds stallo_catalogues
    LC_ALL=C.UTF-8 TZ=UTC build/release/fuzz/stallo_fuzz_seeds fuzz/seeds
    mkdir -p fuzz/seeds/catalogue
    cp build/release/translations/*.qm fuzz/seeds/catalogue/
    lrelease=$(command -v lrelease || echo /usr/lib/qt5/bin/lrelease)
    "$lrelease" -silent fuzz/seeds/small.ts -qm fuzz/seeds/catalogue/small.qm
}

minimise() {
    for target in $(all_targets); do
        mkdir -p "$corpora/$target"
        rm -rf "$corpora/$target.smaller"
        mkdir "$corpora/$target.smaller"
        # shellcheck disable=SC2046 # folders without blanks
        if "build/fuzz/fuzz/fuzz_$target" -merge=1 "$corpora/$target.smaller" "$corpora/$target" \
            $(kept_inputs "$target") >"build/fuzz/$target.log" 2>&1; then
            rm -rf "${corpora:?}/$target"
            mv "$corpora/$target.smaller" "$corpora/$target"
            echo "$target: $(find "$corpora/$target" -type f | wc -l) inputs"
        else
            echo "corpus.sh: $target failed, see build/fuzz/$target.log" >&2
            exit 1
        fi
    done
}

case ${1-} in
    --seeds) write_seeds ;;
    '') prepare_fuzzing; minimise ;;
    *[!0-9]*) echo "usage: corpus.sh [SECONDS | --seeds]" >&2; exit 2 ;;
    *) fuzz/run.sh "$1"; prepare_fuzzing; minimise ;;
esac
