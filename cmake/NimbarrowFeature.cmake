# nimbarrow_feature(<name> URI <uri> SOURCES ... [QML_FILES ...] [RESOURCES ...] [LINK ...])
#
# One feature folder is one static library and one QML module. LINK names the libraries whose types stand in
# the feature's headers.
# Every feature with its module, for a program that shows them all.
add_library(nimbarrow_views INTERFACE)

function(nimbarrow_feature name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "URI" "SOURCES;QML_FILES;RESOURCES;LINK")
    if(arg_UNPARSED_ARGUMENTS OR NOT arg_URI)
        message(FATAL_ERROR "nimbarrow_feature(${name}): bad arguments: ${arg_UNPARSED_ARGUMENTS}")
    endif()
    qt_add_library(nimbarrow_${name} STATIC)
    qt_add_qml_module(nimbarrow_${name}
        URI ${arg_URI}
        VERSION 1.0
        RESOURCE_PREFIX /qt/qml
        # Where qmllint finds the types that ours stand on.
        DEPENDENCIES QtQuick
        SOURCES ${arg_SOURCES}
        QML_FILES ${arg_QML_FILES}
        RESOURCES ${arg_RESOURCES}
    )
    # The generated type registration includes the headers by bare name.
    target_include_directories(nimbarrow_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(nimbarrow_${name}
        PUBLIC nimbarrow_platform Qt6::Gui Qt6::Qml Qt6::Quick ${arg_LINK}
        PRIVATE project_build
    )
    nimbarrow_precompile(nimbarrow_${name} views)
    # Our own sources have the warnings and stand alone; what is made of the QML files has neither. Where all of a
    # folder is compiled together, warnings are left to the other builds.
    set(own ${arg_SOURCES})
    list(FILTER own INCLUDE REGEX "\\.cpp$")
    if(NOT CMAKE_UNITY_BUILD)
        set_source_files_properties(${own} PROPERTIES
            COMPILE_OPTIONS "${NIMBARROW_WARNINGS}" SKIP_UNITY_BUILD_INCLUSION ON)
        set_target_properties(nimbarrow_${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
    endif()
    # What Qt adds to carry resources and to start plugins has nothing for moc to find.
    get_property(targets DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
    list(FILTER targets INCLUDE REGEX "_(init|resources_[0-9]+)$")
    set_target_properties(${targets} PROPERTIES AUTOMOC OFF)
    target_link_libraries(nimbarrow_views INTERFACE nimbarrow_${name} nimbarrow_${name}plugin)
endfunction()
