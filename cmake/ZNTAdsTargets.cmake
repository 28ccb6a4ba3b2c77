# What every target of this project shares: language, warnings, sanitizers, the precompiled header.

option(ZNTADS_WERROR "Treat warnings as errors" OFF)
set(ZNTADS_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")

# znt_configure_target(TARGET [NO_PCH])
function(znt_configure_target target)
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
    )
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

# znt_install_program(TARGET): beside the installed library, wherever both are.
function(znt_install_program target)
    if(NOT ZNTADS_INSTALL)
        return()
    endif()
    file(RELATIVE_PATH to_libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${to_libraries})
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# znt_install_component(TARGET [PRIVATE_TARGET…]): a static library beside the library, with its
# headers, as a component of the package that is called by its name without the project's.
function(znt_install_component target)
    if(NOT ZNTADS_INSTALL)
        return()
    endif()
    install(TARGETS ${target} ${ARGN} EXPORT ${target}Targets
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    )
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/${target} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    install(EXPORT ${target}Targets NAMESPACE ZNTAds:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZNTAds)
endfunction()
