#!/bin/sh
# SPDX-License-Identifier: MIT
# checks.sh [--all] [--allow-skipped]: what can be said of a change before it is committed, in seconds:
# format, clang-tidy, shell scripts, floors and sizes, catalogues and documents. It looks at the files
# that differ from the last commit, new ones included; with --all at the whole tree (clang-tidy then
# takes long). Nothing is changed; the suite itself is ./test.sh.
#
# Ends with 0 when all went well, 1 when a check failed, 2 for a wrong command line, and 3 when none
# failed but one could not be run (a tool is missing, nothing is built); --allow-skipped makes 0 of 3.
set -u
cd "$(dirname "$0")/.." || exit 1

all=
allow_skipped=
for argument in "$@"; do
    case $argument in
        --all) all=yes ;;
        --allow-skipped) allow_skipped=yes ;;
        *) echo "usage: checks.sh [--all] [--allow-skipped]" >&2; exit 2 ;;
    esac
done

build=build/release
failed=
skipped=
output=$(mktemp) || exit 1
trap 'rm -f "$output"' EXIT
trap 'exit 130' INT HUP
trap 'exit 143' TERM

passed() { echo "passed   $1"; }
fail() {
    failed=yes
    echo "FAILED   $1"
    [ ! -s "$output" ] || sed 's/^/         /' "$output"
    : >"$output"
}
skip() {
    skipped=yes
    echo "SKIPPED  $1: $2"
}
# check NAME COMMAND...: the command's output is shown when it fails.
check() {
    name=$1
    shift
    if "$@" >"$output" 2>&1; then passed "$name"; else fail "$name"; fi
}
has() { command -v "$1" >/dev/null; }

# One name a line; no file of the tree has a blank in its name.
files() {
    if [ -n "$all" ]; then
        git ls-files
    else
        git diff --name-only --diff-filter=d HEAD
        git ls-files --others --exclude-standard
    fi
}
if ! changed=$(files | sort -u); then
    echo "checks.sh: git does not tell what has changed" >&2
    exit 1
fi
chosen() {
    echo "$changed" | grep -E "$1" | while read -r file; do
        if [ -f "$file" ]; then echo "$file"; fi
    done
}
sources=$(chosen '\.(cpp|h)$')
units=$(chosen '\.cpp$')
# Some have no ending, and one that is only sourced has no first line of a shell.
scripts=$(chosen . | while read -r file; do
    case $file in
        *.sh) echo "$file" ;;
        *) if head -n 1 "$file" | grep -qaE '^#!.*[ /](ba)?sh$'; then echo "$file"; fi ;;
    esac
done)

# shellcheck disable=SC2086 # lists of names
check_format() {
    if [ -z "$sources" ]; then
        passed "format: no sources"
    elif has clang-format; then
        check "format" clang-format --dry-run -Werror $sources
    else
        skip "format" "clang-format is not installed"
    fi
}

# Headers of the tree are looked at with the sources that include them, generated ones are not.
tidy() {
    echo "$units" | xargs -n 4 -P "$(nproc)" clang-tidy -p $build --quiet --warnings-as-errors='*' \
        --header-filter="^$PWD/(app|bench|fuzz|net|netsetup|pages|records|simulator|style|tests)/"
}

check_tidy() {
    if [ -z "$units" ]; then
        passed "clang-tidy: no sources"
    elif ! has clang-tidy; then
        skip "clang-tidy" "it is not installed"
    elif [ ! -e $build/compile_commands.json ]; then
        skip "clang-tidy" "$build is not configured (cmake --preset release)"
    else
        check "clang-tidy" tidy
    fi
}

check_shell() {
    if [ -z "$scripts" ]; then
        passed "shell: no scripts"
        return
    fi
    for script in $scripts; do
        shell="sh"
        if head -n 1 "$script" | grep -q bash; then shell="bash"; fi
        check "shell syntax: $script" $shell -n "$script"
        if has shellcheck; then
            check "shellcheck: $script" shellcheck -s $shell -S warning "$script"
        else
            skip "shellcheck: $script" "it is not installed"
        fi
    done
}

# The tests of the tree itself read the tree as it is; the catalogues are compiled anew. What a test
# does that was itself changed is only known when that is built.
check_tests() {
    if [ ! -e $build/CTestTestfile.cmake ]; then
        skip "floors, sizes, catalogues, documents" "$build is not built (cmake --build --preset release)"
        return
    fi
    check "catalogues compile" cmake --build --preset release --target stallo_catalogues
    for group in layers sizes translations docs; do
        # "layers" is a test, "docs" a folder of them.
        names="^$group(\\..*)?\$"
        if ! ctest --preset release -N -R "$names" 2>/dev/null | grep -q 'Test *#'; then
            skip "tests: $group" "there are none in $build"
        elif ctest --preset release -R "$names" >"$output" 2>&1; then
            passed "tests: $group"
        elif grep -q '\*\*\*Not Run' "$output" && ! grep -qE '\*\*\*(Failed|Timeout|Exception)' "$output"; then
            : >"$output"
            skip "tests: $group" "not all are built (cmake --build --preset release)"
        else
            fail "tests: $group"
        fi
    done
}

check_format
check_tidy
check_shell
check_tests

if [ -n "$failed" ]; then
    exit 1
fi
if [ -n "$skipped" ] && [ -z "$allow_skipped" ]; then
    echo "Nothing failed, but not all was checked; --allow-skipped takes that for good."
    exit 3
fi
