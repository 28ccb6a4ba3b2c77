# Installs the library with its headers, its QML module, the CMake package ZNTAds with the target
# ZNTAds::ZNTAds, and zntads.pc. Included by src/, which has set what is named here in lower case.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZNTAds)
target_sources(ZNTAds INTERFACE
    $<INSTALL_INTERFACE:$<${linked_whole}:$<INSTALL_PREFIX>/${package_dir}/ZNTAdsQmlTypes.cpp>>)

install(TARGETS ZNTAds ${objects} EXPORT ZNTAdsTargets
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/ZNTAds
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ZNTAds ${generated_headers}/ZNTAds
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
)
# For qmllint and editors: an application has the module from the library itself.
install(FILES ${module_dir}/qmldir ${module_dir}/ZNTAds.qmltypes ${qml_files}
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/qt6/qml/ZNTAds
)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/translations DESTINATION ${CMAKE_INSTALL_DATADIR}/ZNTAds)

install(EXPORT ZNTAdsTargets NAMESPACE ZNTAds:: DESTINATION ${package_dir})
if(NOT BUILD_SHARED_LIBS)
    get_property(linked_qt TARGET ZNTAds PROPERTY ZNTADS_LINKED_QT)
    list(JOIN linked_qt " " linked_qt)
    set(static_dependencies "find_dependency(Qt6 6.4 COMPONENTS Core ${linked_qt})
find_dependency(OpenSSL COMPONENTS Crypto)
find_dependency(ZLIB)")
endif()
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZNTAdsConfig.cmake.in ZNTAdsConfig.cmake
    INSTALL_DESTINATION ${package_dir}
)
write_basic_package_version_file(ZNTAdsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/ZNTAdsConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/ZNTAdsConfigVersion.cmake
    ${PROJECT_SOURCE_DIR}/cmake/ZNTAdsQmlTypes.cpp
    DESTINATION ${package_dir}
)

# A static library needs its resources linked, too, which CMake's package knows.
if(BUILD_SHARED_LIBS)
    file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    string(REGEX REPLACE "/$" "" to_prefix ${to_prefix})
    if(UNIX AND NOT APPLE)
        # A host that uses it from QML alone would have it dropped by the linker.
        set(keep_library "-Wl,--push-state,--no-as-needed ")
        set(end_keep_library " -Wl,--pop-state")
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/zntads.pc.in zntads.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zntads.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    )
endif()
