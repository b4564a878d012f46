# vek_add_translations(<target> LANGUAGES <language>... [NAME <name>] [FOLDER <folder>] [WITH <target>...]): the texts
# of an application, a library or a plug-in in further languages, such as fr or pt_BR. To be called once for a target
# that links VekAppCore, behind the list of its sources.
#   NAME    of the files, <name>_<language>.ts; the target unless given
#   FOLDER  where they are; Translations in the present source folder unless given
#   WITH    further targets whose texts stand in the same files
# The target <target>_lupdate refreshes the files from the sources and from the headers beside them; building the target
# compiles them into its resources, with a few lines that declare them.
function(vek_add_translations target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;FOLDER" "LANGUAGES;WITH")
    if(NOT arg_LANGUAGES OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vek_add_translations(${target}): expected LANGUAGES, and NAME, FOLDER or WITH.")
    endif()
    if(NOT arg_NAME)
        set(arg_NAME "${target}")
    endif()
    if(NOT arg_FOLDER)
        set(arg_FOLDER "${CMAKE_CURRENT_SOURCE_DIR}/Translations")
    endif()
    find_package(Qt6 REQUIRED COMPONENTS Core LinguistTools)

    # Headers as well: lupdate looks only at files that it is told.
    set(sources)
    foreach(each IN LISTS target arg_WITH)
        get_target_property(files ${each} SOURCES)
        get_target_property(base ${each} SOURCE_DIR)
        foreach(file IN LISTS files)
            cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${base}" NORMALIZE)
            if(EXISTS "${file}")
                cmake_path(GET file PARENT_PATH folder)
                file(GLOB headers CONFIGURE_DEPENDS "${folder}/*.h" "${folder}/*.hpp")
                list(APPEND sources "${file}" ${headers})
            endif()
        endforeach()
    endforeach()
    list(REMOVE_DUPLICATES sources)
    list(TRANSFORM arg_LANGUAGES REPLACE "(.+)" "${arg_FOLDER}/${arg_NAME}_\\1.ts" OUTPUT_VARIABLE files)
    file(MAKE_DIRECTORY "${arg_FOLDER}") # lupdate makes the files alone
    set_target_properties(${target} PROPERTIES VEK_TEXT_SOURCES "${sources}" VEK_TEXT_FILES "${files}")
    qt6_add_translations(${target}
        TS_FILES ${files}
        SOURCES ${sources}
        INCLUDE_DIRECTORIES "${CMAKE_CURRENT_SOURCE_DIR}" # contexts are literals; lupdate stumbles over others' headers
        RESOURCE_PREFIX "/${target}/Translations"
        LUPDATE_OPTIONS -locations none -no-ui-lines)

    set(declaration "${CMAKE_CURRENT_BINARY_DIR}/${target}_translations.cpp")
    set(content [==[
#include <VekAppCore/App/DeclarationSystem.h>
#include <VekAppCore/App/Translations.h>

[[maybe_unused]] static const bool areTranslationsDeclared = [] {
    using vek::App::ITranslationDeclarationCtx;
    vek::App::DeclarationSystem::GetInstance().Append<ITranslationDeclarationCtx>(
        [](ITranslationDeclarationCtx& context) {
            context.AddTranslation(QStringLiteral(":/@target@/Translations"), QStringLiteral("@arg_NAME@"));
        },
        "@target@");
    return true;
}();
]==])
    file(CONFIGURE OUTPUT "${declaration}" CONTENT "${content}" @ONLY)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
        # From the library itself the linker would take only what somebody calls.
        add_library(${target}_declaration OBJECT "${declaration}")
        target_link_libraries(${target}_declaration PRIVATE $<TARGET_PROPERTY:${target},LINK_LIBRARIES>)
        target_link_libraries(${target} INTERFACE $<TARGET_OBJECTS:${target}_declaration>)
    else()
        target_sources(${target} PRIVATE "${declaration}")
    endif()
endfunction()
