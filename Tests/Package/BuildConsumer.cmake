# Builds programs and a plug-in of users: by find_package and by pkg-config against an installed copy, whose folder has a
# blank in its name, and as a part of their own project.
set(installed "${WORK_DIR}/Installed copy")
set(consumer "${SOURCE_DIR}/Tests/Package/Consumer")

function(run)
    execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(configure folder)
    run("${CMAKE_COMMAND}" -S "${consumer}" -B "${folder}" -G "${GENERATOR}" -D CMAKE_BUILD_TYPE=Release
        -D "CMAKE_CXX_COMPILER=${COMPILER}" -D "CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" -D "TESTS=${SOURCE_DIR}/Tests" ${ARGN})
endfunction()

function(expect_output text)
    run(${ARGN})
    if(NOT output MATCHES "${text}")
        message(FATAL_ERROR "${ARGN} printed \"${output}\" instead of \"${text}\"")
    endif()
endfunction()

function(expect_no_dependency pattern program)
    file(GET_RUNTIME_DEPENDENCIES EXECUTABLES "${program}" RESOLVED_DEPENDENCIES_VAR found)
    list(FILTER found INCLUDE REGEX "${pattern}")
    if(found)
        message(FATAL_ERROR "${program} needs ${found}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${installed}")

# Programs find the libraries, and the desk its plug-ins, from wherever they were installed.
file(GLOB_RECURSE desk "${installed}/*/InspectionDesk")
expect_output("Usage" "${installed}/bin/VariantDump" --help)
expect_output("PlyPlugin.cpp" "${desk}" --startup)
if(UNIX)
    file(GLOB_RECURSE modules "${installed}/*/VekBase.pc")
    cmake_path(GET modules PARENT_PATH modules)
    cmake_path(GET modules PARENT_PATH libraries)
    file(GLOB printers "${libraries}/libVekBase.so.*-gdb.py")
    if(NOT printers OR NOT EXISTS "${libraries}/VekPrinters.py")
        message(FATAL_ERROR "gdb finds no printers in ${libraries}")
    endif()
endif()

configure("${WORK_DIR}/Found" -D "CMAKE_PREFIX_PATH=${installed}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/Found")
expect_output("Hello from the base library" "${WORK_DIR}/Found/BaseProgram")
expect_output("Hello from a plug-in\nBonjour d’un greffon" "${WORK_DIR}/Found/CoreProgram")
expect_output("Hello from a service" "${WORK_DIR}/Found/WindowsProgram")
expect_no_dependency("Qt6(Gui|Network|Widgets)" "${WORK_DIR}/Found/BaseProgram")
expect_no_dependency("Qt6Widgets" "${WORK_DIR}/Found/CoreProgram")

# The libraries above VekBase are built by the same functions, which this would take minutes to do once more.
configure("${WORK_DIR}/Part" -D "LIBRARY_SOURCE=${SOURCE_DIR}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/Part" --target BaseProgram)
expect_output("Hello from the base library" "${WORK_DIR}/Part/BaseProgram")

if(UNIX)
    # pkg-config escapes the blanks for the shell, which reads them once more.
    set(main "${SOURCE_DIR}/Examples/FirstProgram/Main.cpp")
    run("${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${modules}" sh -c
        "eval '${COMPILER}' -std=c++20 -fPIC '${main}' -o '${WORK_DIR}/Program' $(pkg-config --cflags --libs 'VekAppCoreWidgets >= 1.0')")
    expect_output("Hello from a service"
        "${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${libraries}" "${WORK_DIR}/Program")
endif()
