# The program's resources in the system's own form: the script names them, one header gives it the
# numbers, others take in dialogs, menu, texts and pictures.
set(compiled_folder ${CMAKE_BINARY_DIR}/generated/resources)
include(${CMAKE_CURRENT_LIST_DIR}/tables.cmake)
tonalyx_read_tables(${CMAKE_SOURCE_DIR}/resources/templates.h
  ${CMAKE_SOURCE_DIR}/resources/resource_ids.h)

string(REPLACE "." "," version_words ${PROJECT_VERSION}.0)
string(APPEND numbers "#define VERSION_WORDS ${version_words}\n"
  "#define VERSION_TEXT \"${PROJECT_VERSION}\"\n")
file(CONFIGURE OUTPUT ${compiled_folder}/numbers.rch CONTENT "${numbers}" @ONLY)

tonalyx_dialog_script(script)
string(APPEND script "kAdvancedMenu MENU\n{\n  POPUP \"\"\n  {\n")
tonalyx_rows(kAdvancedMenuItems ", u\"" rows)
foreach(row IN LISTS rows)
  string(REGEX REPLACE "^{ ?(.*), u(\".*\")}$" "    MENUITEM \\2, \\1\n" line "${row}")
  string(REPLACE "MENUITEM \"\", 0" "MENUITEM SEPARATOR" line "${line}")
  string(APPEND script "${line}")
endforeach()
string(APPEND script "  }\n}\n\nSTRINGTABLE\n{\n")
tonalyx_rows(kStringTable "kText" rows)
foreach(row IN LISTS rows)
  string(REGEX REPLACE "^{ ?(.*), u(\".*\")}$" "  \\1 \\2\n" line "${row}")
  string(APPEND script "${line}")
endforeach()
string(APPEND script "}\n")
file(CONFIGURE OUTPUT ${compiled_folder}/tables.rc CONTENT "${script}" @ONLY)

# An icon is a directory of images; each image is a resource of its own, numbered from 1.
set(pictures "${bitmap_id} PNGBITMAP \"${bitmap_file}\"\n")
foreach(file IN LISTS png_files)
  get_filename_component(id ${file} NAME_WE)
  string(APPEND pictures "${id} PNG \"${file}\"\n")
endforeach()
list(LENGTH icon_files image_count)
set(directory "0, 1, ${image_count}")
set(image 0)
foreach(file IN LISTS icon_files)
  math(EXPR image "${image} + 1")
  get_filename_component(name ${file} NAME_WE)
  string(REGEX MATCH "[0-9]+$" side ${name})
  # A byte each for width and height, where 256 is 0; then no colours, planes, bits, bytes, number.
  math(EXPR measures "(${side} % 256) * 257")
  file(SIZE ${file} bytes)
  string(APPEND directory ",\n  ${measures}, 0, 1, 32, ${bytes}L, ${image}")
  string(APPEND pictures "${image} RT_ICON_TYPE \"${file}\"\n")
endforeach()
string(APPEND pictures "${icon_id} RT_GROUP_ICON_TYPE {\n  ${directory}\n}\n")
file(CONFIGURE OUTPUT ${compiled_folder}/pictures.rc CONTENT "${pictures}" @ONLY)

# An object, since a linker leaves out of a library what no code refers to.
add_library(tonalyx_compiled_resources OBJECT ${CMAKE_CURRENT_LIST_DIR}/tonalyx.rc)
set_target_properties(tonalyx_compiled_resources PROPERTIES COMPILE_OPTIONS "" COMPILE_DEFINITIONS "")
target_include_directories(tonalyx_compiled_resources PRIVATE ${compiled_folder}
  ${CMAKE_CURRENT_LIST_DIR})
set(compiled_files ${compiled_folder}/numbers.rch ${compiled_folder}/pictures.rc
  ${compiled_folder}/tables.rc ${CMAKE_CURRENT_LIST_DIR}/frames.rch
  ${CMAKE_CURRENT_LIST_DIR}/tonalyx.manifest ${png_files} ${bitmap_file} ${icon_files})
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/tonalyx.rc PROPERTIES
  OBJECT_DEPENDS "${compiled_files}")

tonalyx_library(tonalyx_resources
  SOURCES ${CMAKE_SOURCE_DIR}/platform/windows/resources/compiled_resources.cpp
  LIBS tonalyx_platform $<TARGET_OBJECTS:tonalyx_compiled_resources>)
