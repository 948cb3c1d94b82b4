# The pictures become part of the program file: an assembler file takes their bytes in, a table
# names them. A picture that is added or changed is taken in by the next build.
file(GLOB png_files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/png/*.png)
file(GLOB icon_files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/icons/*.png)
set(bitmap_file ${CMAKE_CURRENT_SOURCE_DIR}/png/132.png)
set(icon_id 16)
list(REMOVE_ITEM png_files ${bitmap_file})
list(SORT png_files COMPARE NATURAL)
list(SORT icon_files COMPARE NATURAL ORDER DESCENDING)  # the largest first

if(WIN32)
  set(embedded_assembly ".section .rdata,\"dr\"\n")
else()
  set(embedded_assembly ".section .rodata\n")
endif()
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
tonalyx_embed(Bitmap 132 ${bitmap_file})
foreach(file IN LISTS icon_files)
  tonalyx_embed(Icon ${icon_id} ${file})
endforeach()
if(NOT WIN32)
  string(APPEND embedded_assembly ".section .note.GNU-stack,\"\",%progbits\n")
endif()

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
