# find_package(VekAppCore) for users of an installed copy.
include(CMakePackageConfigHelpers)
set(VEK_CONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/VekAppCore")
configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/VekAppCoreConfig.cmake.in" "${PROJECT_BINARY_DIR}/VekAppCoreConfig.cmake"
    INSTALL_DESTINATION "${VEK_CONFIG_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VekAppCoreConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VekAppCoreConfig.cmake" "${PROJECT_BINARY_DIR}/VekAppCoreConfigVersion.cmake"
    DESTINATION "${VEK_CONFIG_DIR}")
install(EXPORT VekAppCoreTargets NAMESPACE Vek:: DESTINATION "${VEK_CONFIG_DIR}")
