# What a machine must have; what it lacks is named with the Debian packages that bring it.

# vek_missing(<what> <Debian package>...): ends the configure step.
function(vek_missing what)
    string(JOIN " " packages ${ARGN})
    message(FATAL_ERROR "VekAppCore needs ${what}, which was not found.\n"
        "On Debian 12, \"apt-get install ${packages}\" installs it, and Scripts/install-dependencies all that is "
        "needed. A copy in a folder of your own is found with -D CMAKE_PREFIX_PATH=<folder>.")
endfunction()

# vek_find_package(<Debian packages> <arguments of find_package>...). A macro, since packages set variables for the
# folder that asks.
macro(vek_find_package debian_packages name)
    find_package(${name} ${ARGN} QUIET)
    if(NOT ${name}_FOUND)
        string(JOIN " " VEK_WANTED ${name} ${ARGN})
        if(${name}_CONSIDERED_VERSIONS)
            string(APPEND VEK_WANTED " (not ${${name}_CONSIDERED_VERSIONS})")
        endif()
        if(${name}_NOT_FOUND_MESSAGE)
            message(NOTICE "${${name}_NOT_FOUND_MESSAGE}")
        endif()
        string(REPLACE "," ";" VEK_PACKAGES "${debian_packages}")
        vek_missing("${VEK_WANTED}" ${VEK_PACKAGES})
    endif()
endmacro()

# This stands before project(), whose own words name no package.
if(CMAKE_HOST_UNIX)
    if(CMAKE_GENERATOR MATCHES "Ninja" AND NOT CMAKE_MAKE_PROGRAM)
        find_program(VEK_NINJA NAMES ninja ninja-build samu NO_CACHE)
        if(NOT VEK_NINJA)
            vek_missing("Ninja" ninja-build)
        endif()
    endif()
    if(NOT CMAKE_CXX_COMPILER AND NOT CMAKE_TOOLCHAIN_FILE AND NOT DEFINED ENV{CXX})
        find_program(VEK_COMPILER NAMES c++ g++ clang++ NO_CACHE)
        if(NOT VEK_COMPILER)
            vek_missing("a C++ compiler" g++)
        endif()
    elseif(CMAKE_CXX_COMPILER MATCHES "^clang[+][+]-[0-9]+$") # that a preset asks for
        find_program(VEK_COMPILER NAMES "${CMAKE_CXX_COMPILER}" NO_CACHE)
        if(NOT VEK_COMPILER)
            string(REPLACE "++" "" package "${CMAKE_CXX_COMPILER}")
            vek_missing("${CMAKE_CXX_COMPILER}" ${package})
        endif()
    endif()
endif()
