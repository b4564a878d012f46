# What every target of the project is built with, and the functions by which an area lists its own files.
include(GenerateExportHeader)
include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
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
    target_compile_options(VekOptions INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
endif()
# oneTBB's headers do not compile after Qt's "emit" macro.
target_compile_definitions(VekOptions INTERFACE QT_NO_KEYWORDS)
if(VEK_SANITIZE)
    target_compile_options(VekOptions INTERFACE -fsanitize=${VEK_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(VekOptions INTERFACE -fsanitize=${VEK_SANITIZE})
endif()

# vek_add_library(<name>): an empty shared library with hidden symbols and an export macro of its own.
function(vek_add_library name)
    add_library(${name} SHARED)
    add_library(Vek::${name} ALIAS ${name})
    generate_export_header(${name} EXPORT_FILE_NAME "${PROJECT_BINARY_DIR}/Include/${name}/Export.h")
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:VekOptions>)
    target_compile_features(${name} PUBLIC cxx_std_23)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/Src")
    target_sources(${name} PUBLIC
        FILE_SET HEADERS
        BASE_DIRS "${PROJECT_SOURCE_DIR}/Include" "${PROJECT_BINARY_DIR}/Include"
        FILES "${PROJECT_BINARY_DIR}/Include/${name}/Export.h")
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        VERIFY_INTERFACE_HEADER_SETS ON)
    install(TARGETS ${name} EXPORT VekAppCoreTargets FILE_SET HEADERS
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endfunction()

# vek_add_area(<area> [HEADERS ...] [SOURCES ...]): adds to VekAppCore; headers are public and must compile alone.
function(vek_add_area area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES")
    list(TRANSFORM arg_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/Include/VekAppCore/${area}/")
    list(APPEND arg_HEADERS "${PROJECT_SOURCE_DIR}/Include/VekAppCore/${area}.h")
    list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    target_sources(VekAppCore PUBLIC FILE_SET HEADERS FILES ${arg_HEADERS})
    target_sources(VekAppCore PRIVATE ${arg_SOURCES})
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
    target_link_libraries(${arg_NAME} PRIVATE VekOptions VekAppCore VekTestSupport ${arg_LIBRARIES})
    gtest_discover_tests(${arg_NAME}
        PROPERTIES LABELS "${arg_LABEL}" ENVIRONMENT "${VEK_TEST_ENVIRONMENT}" TIMEOUT 120
        DISCOVERY_TIMEOUT 60)
endfunction()
