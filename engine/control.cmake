# What the engine decides, and the program.
find_package(nlohmann_json REQUIRED)

tonalyx_library(tonalyx_engine_status
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/engine_status.cpp
  PRIVATE_LIBS nlohmann_json::nlohmann_json)

tonalyx_library(tonalyx_engine_control
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/active_set.cpp
    ${CMAKE_CURRENT_LIST_DIR}/engine_control.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sound_control.cpp
  LIBS tonalyx_engine_core tonalyx_engine_status tonalyx_endpoints tonalyx_platform
  PRIVATE_LIBS tonalyx_dsp tonalyx_store_layout)

add_executable(tonalyx-engine ${CMAKE_CURRENT_LIST_DIR}/main.cpp)
target_link_libraries(tonalyx-engine PRIVATE tonalyx_engine_control tonalyx_engine_pipewire
  tonalyx_host tonalyx_host_tools)
