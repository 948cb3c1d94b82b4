# A protocol's description, turned into code that becomes part of a target. The code is not ours, so
# that no checker asks it to follow our rules.
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)

function(tonalyx_wayland_protocol target description)
  get_filename_component(name ${description} NAME_WE)
  set(code ${CMAKE_CURRENT_BINARY_DIR}/${name}.c)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/${name}-client-protocol.h)
  add_custom_command(OUTPUT ${header} DEPENDS ${description}
    COMMAND ${WAYLAND_SCANNER} client-header ${description} ${header})
  add_custom_command(OUTPUT ${code} DEPENDS ${description}
    COMMAND ${WAYLAND_SCANNER} private-code ${description} ${code})
  target_sources(${target} PRIVATE ${code} ${header})
  target_include_directories(${target} SYSTEM PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
endfunction()
