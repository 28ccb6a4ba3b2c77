# What every target of this project shares: warnings, sanitizers, the precompiled header.

option(ZNTADS_WERROR "Treat warnings as errors" OFF)
set(ZNTADS_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")

# znt_configure_target(TARGET [NO_PCH])
function(znt_configure_target target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
        -Wnon-virtual-dtor -Woverloaded-virtual $<$<BOOL:${ZNTADS_WERROR}>:-Werror>)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
        QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_EXCEPTIONS)
    if(ZNTADS_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${ZNTADS_SANITIZE}
            -fno-omit-frame-pointer -fno-sanitize-recover=undefined
            # Qt's headers use fences; our own synchronisation does not.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-tsan>)
        target_link_options(${target} PRIVATE -fsanitize=${ZNTADS_SANITIZE})
    endif()
    if(NOT "NO_PCH" IN_LIST ARGN)
        target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src/pch.h)
    endif()
endfunction()
