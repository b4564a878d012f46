# The packages that Scripts/package makes: what VekInstall.cmake and the examples install, by component.
set(CPACK_PACKAGE_CONTACT "The VekAppCore developers <vekappcore@example.org>")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # else it would stand before that of each package
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_COMPONENTS_ALL)

# vek_package(<component> <Debian name> <section> <summary> [<depends>])
macro(vek_package component name section summary)
    string(TOUPPER ${component} key)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}")
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${ARGN}")
    install(FILES "${PROJECT_SOURCE_DIR}/LICENSE"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" RENAME copyright COMPONENT ${component})
endmacro()

set(major ${PROJECT_VERSION_MAJOR})
set(same "(= ${PROJECT_VERSION})")
set(base libvekbase${major})
set(core libvekappcore${major})
set(widgets libvekappcorewidgets${major})
vek_package(VekBase ${base} libs "Application core: base library")
vek_package(VekAppCore ${core} libs "Application core: libraries for programs without windows" "${base} ${same}")
vek_package(VekAppCoreWidgets ${widgets} libs "Application core: libraries for programs with windows" "${core} ${same}")
vek_package(Development libvekappcore-dev libdevel "Application core: headers, documents and tools"
    "${base} ${same}, ${core} ${same}, ${widgets} ${same}, qt6-base-dev (>= 6.4), libtinyxml2-dev, libfmt-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "qt6-tools-dev, qt6-tools-dev-tools, qt6-l10n-tools, gdb")
if(TARGET InspectionDesk)
    vek_package(InspectionDesk inspection-desk science "Shows how flat a plate is, from points measured on it"
        "${widgets} ${same}")
    set(CPACK_DEBIAN_INSPECTIONDESK_PACKAGE_RECOMMENDS "fonts-dejavu-core, qt6-translations-l10n")
endif()

install(FILES
        "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${PROJECT_SOURCE_DIR}/CONTRIBUTING.md"
        "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libvekappcore-dev" COMPONENT Development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Examples" # the documents lead to them
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libvekappcore-dev" COMPONENT Development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Docs"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libvekappcore-dev" COMPONENT Development
    FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.png)

include(CPack)
