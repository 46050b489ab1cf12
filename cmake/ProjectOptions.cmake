# What every target of the project compiles with.
option(NIMBARROW_WERROR "Treat warnings as errors" OFF)
# Nobody links to the program, and every name that it shows to others takes memory in each of its processes.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(NIMBARROW_SANITIZE "" CACHE STRING "Sanitizers, for example address;undefined")

add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${NIMBARROW_WERROR}>:-Werror>
)
target_compile_definitions(project_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_KEYWORDS QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400
)

if(NIMBARROW_SANITIZE)
    list(JOIN NIMBARROW_SANITIZE "," joined)
    target_compile_options(project_options INTERFACE
        -fsanitize=${joined} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(project_options INTERFACE -fsanitize=${joined})
    # Qt's global statics end with a fence, which the thread sanitizer does not follow; nobody else uses them then.
    target_compile_options(project_options INTERFACE
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<IN_LIST:thread,${NIMBARROW_SANITIZE}>>:-Wno-tsan>)
endif()
