# What every target of the project compiles with: project_options, or project_build where generated sources, which
# nobody here can mend, stand beside our own.
option(NIMBARROW_WERROR "Treat warnings as errors" OFF)
# Nobody links to the program, and every name that it shows to others takes memory in each of its processes.
# The same for all, so that they can share precompiled headers and go into plugins.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(NIMBARROW_SANITIZE "" CACHE STRING "Sanitizers, for example address;undefined")

set(NIMBARROW_WARNINGS -Wall -Wextra -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
if(NIMBARROW_WERROR)
    list(APPEND NIMBARROW_WARNINGS -Werror)
endif()

add_library(project_build INTERFACE)
add_library(project_options INTERFACE)
target_link_libraries(project_options INTERFACE project_build)
target_compile_options(project_options INTERFACE ${NIMBARROW_WARNINGS})
target_compile_features(project_build INTERFACE cxx_std_20)
# GLib asks for it, and precompiled headers want one answer from all.
target_compile_options(project_build INTERFACE -pthread)
target_compile_definitions(project_build INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_KEYWORDS QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060800
)

# Where a program stands in memory changes thousands of its addresses; their list is read at every start.
include(CheckLinkerFlag)
check_linker_flag(CXX LINKER:-z,pack-relative-relocs NIMBARROW_PACKS_RELOCATIONS)
if(NIMBARROW_PACKS_RELOCATIONS)
    target_link_options(project_build INTERFACE $<$<CONFIG:Release>:LINKER:-z,pack-relative-relocs>)
endif()

if(NIMBARROW_SANITIZE)
    list(JOIN NIMBARROW_SANITIZE "," joined)
    target_compile_options(project_build INTERFACE
        -fsanitize=${joined} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(project_build INTERFACE -fsanitize=${joined})
    # Qt's global statics end with a fence, which the thread sanitizer does not follow; nobody else uses them then.
    target_compile_options(project_build INTERFACE
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<IN_LIST:thread,${NIMBARROW_SANITIZE}>>:-Wno-tsan>)
endif()

# The compiler warns of classes that hold what a header has for itself, and takes sources that stand together for headers.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(project_options INTERFACE -Wno-subobject-linkage)
endif()

# nimbarrow_rooms(<target>): where sources are compiled together, which halves the time of a build from nothing, those of
# one folder are: in a room one name means one thing.
function(nimbarrow_rooms target)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(GET source PARENT_PATH room)
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${room}")
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()
