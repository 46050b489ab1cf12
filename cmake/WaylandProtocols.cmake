# nimbarrow_wayland_protocols(TARGET): the library TARGET with what wayland-scanner makes of the interface descriptions
# that the packages install, and of our own where no package carries one. A caller includes "NAME-client.h".
find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(WAYLAND_PROTOCOLS_DIR wayland-protocols pkgdatadir)
# Of the compositors' own extensions only the bindings for Rust install the descriptions.
find_path(WLR_PROTOCOLS_DIR wlr-layer-shell-unstable-v1.xml REQUIRED
    HINTS /usr/share/cargo/registry/wayland-protocols-0.29.5 /usr/share/cargo/registry/wayland-protocols-0.29.4
    PATH_SUFFIXES wlr-protocols/unstable)
find_path(PLASMA_PROTOCOLS_DIR fake-input.xml REQUIRED PATH_SUFFIXES share/plasma-wayland-protocols)

# REPLACE: pairs of a text in the description and what stands there for us.
function(nimbarrow_wayland_protocol target name description)
    cmake_parse_arguments(arg "" "" "REPLACE" ${ARGN})
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/protocols)
    file(READ ${description} text)
    while(arg_REPLACE)
        list(POP_FRONT arg_REPLACE found put)
        string(REPLACE "${found}" "${put}" text "${text}")
    endwhile()
    file(CONFIGURE OUTPUT ${folder}/${name}.xml CONTENT "${text}" @ONLY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${description})
    add_custom_command(OUTPUT ${folder}/${name}-client.h ${folder}/${name}.c
        COMMAND ${WAYLAND_SCANNER} client-header ${folder}/${name}.xml ${folder}/${name}-client.h
        COMMAND ${WAYLAND_SCANNER} private-code ${folder}/${name}.xml ${folder}/${name}.c
        DEPENDS ${folder}/${name}.xml VERBATIM)
    target_sources(${target} PRIVATE ${folder}/${name}-client.h ${folder}/${name}.c)
endfunction()

function(nimbarrow_wayland_protocols target)
    add_library(${target} STATIC)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
    target_include_directories(${target} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR}/protocols)
    target_link_libraries(${target} PUBLIC PkgConfig::WAYLAND PRIVATE project_build)
    # A parameter of it has a name that C++ keeps for itself.
    nimbarrow_wayland_protocol(${target} layer-shell ${WLR_PROTOCOLS_DIR}/wlr-layer-shell-unstable-v1.xml
        REPLACE [[name="namespace"]] [[name="scope"]])
    # The layer shell's popups refer to it.
    nimbarrow_wayland_protocol(${target} xdg-shell ${WAYLAND_PROTOCOLS_DIR}/stable/xdg-shell/xdg-shell.xml)
    nimbarrow_wayland_protocol(${target} foreign-toplevel
        ${WLR_PROTOCOLS_DIR}/wlr-foreign-toplevel-management-unstable-v1.xml)
    nimbarrow_wayland_protocol(${target} data-control ${WLR_PROTOCOLS_DIR}/wlr-data-control-unstable-v1.xml)
    # Its successor has the same requests and events under another name; of version 1 are all of them.
    nimbarrow_wayland_protocol(${target} ext-data-control ${WLR_PROTOCOLS_DIR}/wlr-data-control-unstable-v1.xml
        REPLACE wlr_data_control_unstable_v1 ext_data_control_v1 zwlr_data_control ext_data_control [[ version="2"]] [[ version="1"]] [[ since="2"]] "")
    nimbarrow_wayland_protocol(${target} idle-inhibit
        ${WAYLAND_PROTOCOLS_DIR}/unstable/idle-inhibit/idle-inhibit-unstable-v1.xml)
    nimbarrow_wayland_protocol(${target} xdg-output
        ${WAYLAND_PROTOCOLS_DIR}/unstable/xdg-output/xdg-output-unstable-v1.xml)
    nimbarrow_wayland_protocol(${target} fake-input ${PLASMA_PROTOCOLS_DIR}/fake-input.xml)
    nimbarrow_wayland_protocol(${target} virtual-keyboard ${CMAKE_CURRENT_SOURCE_DIR}/keys/virtual-keyboard.xml)
endfunction()
