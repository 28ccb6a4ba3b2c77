# Installs the library as the CMake package ZNTAds with the target ZNTAds::ZNTAds.

include(CMakePackageConfigHelpers)

install(TARGETS ZNTAds EXPORT ZNTAdsTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
)
install(DIRECTORY include/ZNTAds DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZNTAds)
install(EXPORT ZNTAdsTargets NAMESPACE ZNTAds:: FILE ZNTAdsTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/ZNTAdsConfig.cmake.in ZNTAdsConfig.cmake
    INSTALL_DESTINATION ${package_dir}
)
write_basic_package_version_file(ZNTAdsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/ZNTAdsConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/ZNTAdsConfigVersion.cmake
    cmake/ZNTAdsQmlTypes.cpp
    DESTINATION ${package_dir}
)
