find_package(Threads REQUIRED)

tonalyx_library(tonalyx_engine_monitor
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/engine_monitor.cpp
    ${CMAKE_CURRENT_LIST_DIR}/parameter_watch.cpp
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_store_layout tonalyx_platform_linux_core)

add_executable(enginemon ${CMAKE_CURRENT_LIST_DIR}/enginemon.cpp)
target_link_libraries(enginemon PRIVATE tonalyx_engine_monitor tonalyx_endpoints tonalyx_host
  tonalyx_platform_linux_base Threads::Threads)
