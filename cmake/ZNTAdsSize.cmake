# A release is made small, for it is a part of its host's download, and fast where that counts.

# znt_optimize(LEVEL SOURCE…): what is called for every pixel, item or answer.
function(znt_optimize level)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ZNTAds PROPERTIES
        COMPILE_OPTIONS "$<$<NOT:$<CONFIG:Debug>>:${level}>" SKIP_PRECOMPILE_HEADERS ON)
endfunction()

if(NOT CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    return()
endif()
include(CheckIPOSupported)
include(CheckLinkerFlag)

set(release $<CONFIG:Release,MinSizeRel>)
target_compile_options(ZNTAds PRIVATE -fno-exceptions $<${release}:-Os>)
if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE)
    target_compile_options(ZNTAds PRIVATE $<${release}:-ffunction-sections;-fdata-sections>)
    target_link_options(ZNTAds PRIVATE $<${release}:-Wl,--gc-sections;-Wl,-Bsymbolic-functions>)
    if(NOT ZNTADS_BUILD_TESTS AND NOT ZNTADS_BUILD_BENCHMARKS) # which see more
        target_link_options(ZNTAds PRIVATE $<${release}:-Wl,--version-script=${CMAKE_CURRENT_LIST_DIR}/ZNTAdsExports.map>)
        set_property(TARGET ZNTAds APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/ZNTAdsExports.map)
    endif()
    # Each lambda would bring its name along. The public classes keep theirs, for what hosts derive:
    # the code that moc makes holds their tables.
    target_compile_options(ZNTAds PRIVATE $<${release}:-fno-rtti>)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/ZNTAds_autogen/mocs_compilation.cpp
        PROPERTIES COMPILE_OPTIONS $<${release}:-frtti> SKIP_PRECOMPILE_HEADERS ON)
    target_link_options(ZNTAds PRIVATE $<${release}:LINKER:-z,noseparate-code>)
    check_linker_flag(CXX LINKER:-z,pack-relative-relocs ZNTADS_PACKS_RELOCATIONS)
    if(ZNTADS_PACKS_RELOCATIONS)
        target_link_options(ZNTAds PRIVATE $<${release}:LINKER:-z,pack-relative-relocs>)
    endif()
    check_ipo_supported(RESULT can_optimize_at_link OUTPUT reason LANGUAGES CXX)
    set_target_properties(ZNTAds PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ${can_optimize_at_link})
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_link_options(ZNTAds PRIVATE $<${release}:-flto-partition=one>)
    endif()
endif()
