add_executable(regtool
  ${CMAKE_CURRENT_LIST_DIR}/regtool.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regtool/arguments.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regtool/commands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/regtool/value_text.cpp)
target_include_directories(regtool PRIVATE ${CMAKE_SOURCE_DIR})
target_link_libraries(regtool PRIVATE tonalyx_registry_sqlite)
