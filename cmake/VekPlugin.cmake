# vek_add_plugin(<name> [PROGRAM <target>] SOURCES ...): a module that programs load while they run. Given a program of
# the same build, it is put where that program looks for its plug-ins, the folder "addons" beside it. What it links
# beside VekAppCore is named by target_link_libraries, as for any target.
function(vek_add_plugin name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PROGRAM" "SOURCES")
    if(NOT arg_SOURCES OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vek_add_plugin(<name> [PROGRAM <target>] SOURCES ...)")
    endif()
    add_library(${name} MODULE ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Vek::VekAppCore)
    set_target_properties(${name} PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(arg_PROGRAM)
        set_target_properties(${name} PROPERTIES
            LIBRARY_OUTPUT_DIRECTORY "$<TARGET_FILE_DIR:${arg_PROGRAM}>/addons")
    endif()
endfunction()
