#!/bin/sh
# SPDX-License-Identifier: MIT
# makelocales.sh FOLDER: makes the russian locales that the code-page tests run under, in a folder
# of its own, so that none has to be installed on the machine. Needs the package "locales".
set -eu
mkdir -p "$1"
for charset in CP1251 KOI8-R UTF-8; do
    [ -e "$1/ru_RU.$charset/LC_CTYPE" ] || localedef -i ru_RU -f "$charset" "$1/ru_RU.$charset"
done
