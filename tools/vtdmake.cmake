find_package(nlohmann_json REQUIRED)

add_executable(vtdmake
  ${CMAKE_CURRENT_LIST_DIR}/json_source.cpp
  ${CMAKE_CURRENT_LIST_DIR}/replace_file.cpp
  ${CMAKE_CURRENT_LIST_DIR}/tuning_description.cpp
  ${CMAKE_CURRENT_LIST_DIR}/tuning_encoding.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vtdmake.cpp)
target_include_directories(vtdmake PRIVATE ${CMAKE_SOURCE_DIR})
target_link_libraries(vtdmake PRIVATE tonalyx_platform_virtual tonalyx_dsp
  nlohmann_json::nlohmann_json)
