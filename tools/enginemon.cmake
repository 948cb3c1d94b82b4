find_package(nlohmann_json REQUIRED)
find_package(Threads REQUIRED)

tonalyx_library(tonalyx_engine_monitor
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/engine_monitor.cpp
    ${CMAKE_CURRENT_LIST_DIR}/json_report.cpp
    ${CMAKE_CURRENT_LIST_DIR}/monitor_report.cpp
    ${CMAKE_CURRENT_LIST_DIR}/parameter_meaning.cpp
    ${CMAKE_CURRENT_LIST_DIR}/parameter_watch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/route_name.cpp
    ${CMAKE_CURRENT_LIST_DIR}/route_watch.cpp
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_dsp tonalyx_endpoints tonalyx_store_layout tonalyx_platform_linux_core
    nlohmann_json::nlohmann_json)

add_executable(enginemon ${CMAKE_CURRENT_LIST_DIR}/enginemon.cpp)
target_link_libraries(enginemon PRIVATE tonalyx_engine_monitor tonalyx_endpoints tonalyx_host
  tonalyx_platform_linux_base Threads::Threads)
