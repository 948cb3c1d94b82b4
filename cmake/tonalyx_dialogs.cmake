# tonalyx_dialogs(name header): the target gives the programs that link it the dialog templates of that
# header, in the form in which their system finds them by number. Elsewhere the tables are enough.
function(tonalyx_dialogs name header)
  add_library(${name} INTERFACE)
  if(NOT WIN32)
    return()
  endif()
  set(script ${CMAKE_BINARY_DIR}/generated/${name}.rc)
  tonalyx_read_tables(${CMAKE_CURRENT_SOURCE_DIR}/${header})
  tonalyx_dialog_script(dialogs)
  file(CONFIGURE OUTPUT ${script} @ONLY
    CONTENT "#include <windows.h>\n#include \"frames.rch\"\n${numbers}${dialogs}")
  add_library(${name}_script OBJECT ${script})
  set_target_properties(${name}_script PROPERTIES COMPILE_OPTIONS "" COMPILE_DEFINITIONS "")
  target_include_directories(${name}_script PRIVATE ${CMAKE_SOURCE_DIR}/resources/windows)
  target_link_libraries(${name} INTERFACE $<TARGET_OBJECTS:${name}_script>)
endfunction()
