add_executable(laptopctl
  ${CMAKE_CURRENT_LIST_DIR}/laptopctl.cpp
  ${CMAKE_CURRENT_LIST_DIR}/laptop_kinds.cpp
  ${CMAKE_CURRENT_LIST_DIR}/replace_file.cpp)
target_link_libraries(laptopctl PRIVATE tonalyx_platform_virtual tonalyx_registry_sqlite
  tonalyx_models)
