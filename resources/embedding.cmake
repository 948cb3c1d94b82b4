# An assembler file takes the pictures' bytes in, a table names them.
set(embedded_assembly ".section .rodata\n")
set(embedded_declarations "")
set(embedded_rows "")
function(tonalyx_embed type id file)
  get_filename_component(name ${file} NAME_WE)
  string(MAKE_C_IDENTIFIER "tonalyx_${type}_${name}" symbol)
  string(APPEND embedded_assembly ".balign 8\n.globl ${symbol}, ${symbol}_end\n${symbol}:\n"
    ".incbin \"${file}\"\n${symbol}_end:\n.byte 0\n")
  string(APPEND embedded_declarations
    "extern \"C\" const std::byte ${symbol}[], ${symbol}_end[];\n")
  string(APPEND embedded_rows
    "EmbeddedFile{ResourceType::${type}, ${id}, ${symbol}, ${symbol}_end},\n")
  set(embedded_assembly "${embedded_assembly}" PARENT_SCOPE)
  set(embedded_declarations "${embedded_declarations}" PARENT_SCOPE)
  set(embedded_rows "${embedded_rows}" PARENT_SCOPE)
endfunction()

foreach(file IN LISTS png_files)
  get_filename_component(id ${file} NAME_WE)
  tonalyx_embed(Png ${id} ${file})
endforeach()
tonalyx_embed(Bitmap ${bitmap_id} ${bitmap_file})
foreach(file IN LISTS icon_files)
  tonalyx_embed(Icon ${icon_id} ${file})
endforeach()
string(APPEND embedded_assembly ".section .note.GNU-stack,\"\",%progbits\n")

set(embedded_folder ${CMAKE_BINARY_DIR}/generated/resources)
file(CONFIGURE OUTPUT ${embedded_folder}/embedded_files.S CONTENT "${embedded_assembly}" @ONLY)
file(CONFIGURE OUTPUT ${embedded_folder}/embedded_declarations.inc
  CONTENT "${embedded_declarations}" @ONLY)
file(CONFIGURE OUTPUT ${embedded_folder}/embedded_rows.inc CONTENT "${embedded_rows}" @ONLY)
set_source_files_properties(${embedded_folder}/embedded_files.S PROPERTIES
  OBJECT_DEPENDS "${png_files};${bitmap_file};${icon_files}")

tonalyx_library(tonalyx_resources
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/embedded_resources.cpp
    ${embedded_folder}/embedded_files.S
  LIBS tonalyx_platform)
target_include_directories(tonalyx_resources PRIVATE ${CMAKE_BINARY_DIR}/generated)
