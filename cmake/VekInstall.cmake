# What an installed copy holds: libraries with their headers, found by find_package and pkg-config, in the prefix that
# "cmake --install" names. The packages under VekPackages.cmake are made of the same parts.
include(CMakePackageConfigHelpers)
set(VEK_CONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/VekAppCore")

# vek_install_library(<name> <component>)
function(vek_install_library name component)
    install(TARGETS ${name} EXPORT VekAppCore${component}
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${name} NAMELINK_COMPONENT Development
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${name}
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
        FILE_SET HEADERS COMPONENT Development)
    install(EXPORT VekAppCore${component} NAMESPACE Vek:: FILE VekAppCore${component}.cmake
        DESTINATION "${VEK_CONFIG_DIR}" COMPONENT Development)
endfunction()

# vek_install_pkgconfig(<name> <description> <modules it requires>)
function(vek_install_pkgconfig name description requires)
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
        BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE up)
    file(WRITE "${PROJECT_BINARY_DIR}/${name}.pc" "prefix=\${pcfiledir}/${up}
libdir=\${prefix}/${CMAKE_INSTALL_LIBDIR}
includedir=\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}

Name: ${name}
Description: ${description}
Version: ${PROJECT_VERSION}
Requires: ${requires}
Libs: -L\${libdir} -l${name}
Cflags: -I\${includedir}
")
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT Development)
endfunction()

vek_install_pkgconfig(VekBase "Base library of VekAppCore" "Qt6Core")
vek_install_pkgconfig(VekAppCore "Application core of measuring programs" "VekBase Qt6Gui tinyxml2")
vek_install_pkgconfig(VekAppCoreWidgets "Application core of measuring programs, with windows" "VekAppCore Qt6Widgets")

configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/VekAppCoreConfig.cmake.in" "${PROJECT_BINARY_DIR}/VekAppCoreConfig.cmake"
    INSTALL_DESTINATION "${VEK_CONFIG_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VekAppCoreConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES
        "${PROJECT_BINARY_DIR}/VekAppCoreConfig.cmake" "${PROJECT_BINARY_DIR}/VekAppCoreConfigVersion.cmake"
        "${CMAKE_CURRENT_LIST_DIR}/VekPlugin.cmake" "${CMAKE_CURRENT_LIST_DIR}/VekTranslations.cmake"
    DESTINATION "${VEK_CONFIG_DIR}" COMPONENT Development)
