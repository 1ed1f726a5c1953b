# SPDX-License-Identifier: MIT
# Flags that every target of the project is built with.
add_library(stallo_options INTERFACE)
target_compile_options(stallo_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# Warnings are held to gcc's reading of them. clang also counts flags of the toolkit that become an int, names
# that are also in a namespace, and the empty arguments of the toolkit's logging macros.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(stallo_options INTERFACE
        -Wno-sign-conversion -Wno-shadow -Wno-gnu-zero-variadic-macro-arguments)
endif()
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
if(STALLO_SANITIZE OR STALLO_FUZZ)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    # Of the debug information the sanitizers print lines and functions only; with the rest, objects are
    # twice as large.
    target_compile_options(stallo_options INTERFACE ${sanitizers} -g1)
    target_link_options(stallo_options INTERFACE ${sanitizers})
endif()
if(STALLO_FUZZ)
    # Counts which edges an input takes; the fuzz targets themselves add libFuzzer's main().
    target_compile_options(stallo_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
