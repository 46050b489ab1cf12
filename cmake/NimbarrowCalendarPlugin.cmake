# nimbarrow_calendar_plugin(<name> <library> <source>...)
#
# The library as a plugin, nimbarrow-<name>.so, which the program loads when it needs it. It has its own copy of
# what it shares with the program, so nothing that is in it meets the program but through the interface.
include(GNUInstallDirs)
set(NIMBARROW_FOLDER ${CMAKE_INSTALL_LIBDIR}/nimbarrow)
file(RELATIVE_PATH NIMBARROW_FOLDER_FROM_PROGRAM /${CMAKE_INSTALL_BINDIR} /${NIMBARROW_FOLDER})

function(nimbarrow_calendar_plugin name library)
    add_library(nimbarrow-${name} MODULE ${ARGN})
    target_link_libraries(nimbarrow-${name} PRIVATE ${library} nimbarrow_linux project_options)
    target_link_options(nimbarrow-${name} PRIVATE LINKER:--as-needed,--exclude-libs,ALL)
    set_target_properties(nimbarrow-${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    install(TARGETS nimbarrow-${name} LIBRARY DESTINATION ${NIMBARROW_FOLDER})
endfunction()
