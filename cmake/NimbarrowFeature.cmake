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
        PRIVATE project_options
    )
    target_link_libraries(nimbarrow_views INTERFACE nimbarrow_${name} nimbarrow_${name}plugin)
    # What newer Qt makes of the QML files narrows numbers; the same warnings in our own sources still count on
    # the older one.
    if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
        target_compile_options(nimbarrow_${name} PRIVATE -Wno-error=conversion -Wno-error=float-conversion)
    endif()
endfunction()
