# SPDX-License-Identifier: MIT
# Flags that every target of the project is built with.
add_library(stallo_options INTERFACE)
target_compile_options(stallo_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_compile_definitions(stallo_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_STRICT_ITERATORS
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
if(STALLO_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    # Of the debug information the sanitizers print lines and functions only; with the rest, objects are
    # twice as large.
    target_compile_options(stallo_options INTERFACE ${sanitizers} -g1)
    target_link_options(stallo_options INTERFACE ${sanitizers})
endif()
