# What every target of the project is built with, and the functions by which an area lists its own files.
include(GenerateExportHeader)
include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ${PROJECT_IS_TOP_LEVEL})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

find_program(VEK_CCACHE ccache)
mark_as_advanced(VEK_CCACHE)
if(VEK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VEK_CCACHE}")
endif()

add_library(VekOptions INTERFACE)
if(MSVC)
    target_compile_options(VekOptions INTERFACE /W4 /permissive- /utf-8
        /wd4251 /wd4275) # members and bases from the standard library need no export
else()
    target_compile_options(VekOptions INTERFACE -Wall -Wextra -Wpedantic -Wshadow
        -Wconversion -Wno-sign-conversion) # which clang alone counts among the conversions
endif()
# oneTBB's headers do not compile after Qt's "emit" macro.
target_compile_definitions(VekOptions INTERFACE QT_NO_KEYWORDS)
if(VEK_SANITIZE)
    target_compile_options(VekOptions INTERFACE -fsanitize=${VEK_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(VekOptions INTERFACE -fsanitize=${VEK_SANITIZE})
endif()

# What nearly all sources include, and what takes most of the time that they take to compile. They include it themselves
# all the same: the fuzz preset goes without.
set(VEK_COMMON_HEADERS <QDebug> <QObject> <QVariant> <chrono> <functional> <memory> <mutex>)

# vek_add_library(<name> <component>): an empty shared library with hidden symbols and an export macro of its own,
# which users find as that component of the package.
function(vek_add_library name component)
    add_library(${name} SHARED)
    add_library(Vek::${name} ALIAS ${name})
    generate_export_header(${name} EXPORT_FILE_NAME "${PROJECT_BINARY_DIR}/Include/${name}/Export.h")
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:VekOptions>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/Src")
    target_sources(${name} PUBLIC
        FILE_SET HEADERS
        BASE_DIRS "${PROJECT_SOURCE_DIR}/Include" "${PROJECT_BINARY_DIR}/Include"
        FILES "${PROJECT_BINARY_DIR}/Include/${name}/Export.h")
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN"
        VERIFY_INTERFACE_HEADER_SETS ON)
    vek_install_library(${name} ${component})
endfunction()

# vek_add_area(<area> [HEADERS ...] [SOURCES ...] [WIDGETS <class>...]): adds to VekAppCore, and classes that need Qt
# Widgets, by their names, to VekAppCoreWidgets; headers are public and must compile alone.
function(vek_add_area area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES;WIDGETS")
    set(include_folder "${PROJECT_SOURCE_DIR}/Include/VekAppCore")
    list(TRANSFORM arg_HEADERS PREPEND "${include_folder}/${area}/")
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    target_sources(VekAppCore PUBLIC FILE_SET HEADERS FILES "${include_folder}/${area}.h" ${arg_HEADERS})
    target_sources(VekAppCore PRIVATE ${arg_SOURCES})
    foreach(class ${arg_WIDGETS})
        target_sources(VekAppCoreWidgets PUBLIC FILE_SET HEADERS FILES "${include_folder}/${area}/${class}.h")
        target_sources(VekAppCoreWidgets PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${class}.cpp")
    endforeach()
endfunction()

# vek_add_test(<area> <Test>... [LIBRARIES ...] [NAME executable] [LABEL label]): one executable an area, from the
# sources of the current folder, every case a CTest test with the area as label.
function(vek_add_test area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;LABEL" "LIBRARIES")
    if(NOT arg_NAME)
        set(arg_NAME "${area}Tests")
    endif()
    if(NOT arg_LABEL)
        set(arg_LABEL "${area}")
    endif()
    list(TRANSFORM arg_UNPARSED_ARGUMENTS APPEND ".cpp")
    add_executable(${arg_NAME} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${arg_NAME} PRIVATE VekOptions VekAppCoreWidgets VekTestSupport ${arg_LIBRARIES})
    target_precompile_headers(${arg_NAME} REUSE_FROM VekTestSupport)
    gtest_discover_tests(${arg_NAME}
        PROPERTIES LABELS "${arg_LABEL}" ENVIRONMENT "${VEK_TEST_ENVIRONMENT}" TIMEOUT 120
        DISCOVERY_TIMEOUT 60)
endfunction()
