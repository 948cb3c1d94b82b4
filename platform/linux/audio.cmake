find_package(PkgConfig REQUIRED)
pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)

tonalyx_library(tonalyx_platform_linux_file_watcher
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/inotify_file_watcher.cpp
  LIBS tonalyx_platform)

tonalyx_library(tonalyx_platform_linux_audio
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/adapter_name.cpp
    ${CMAKE_CURRENT_LIST_DIR}/jack_state_publisher.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pulse_audio_devices.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pulse_connection.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pulse_endpoints.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pulse_fetch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pulse_peak.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pulse_ports.cpp
    ${CMAKE_CURRENT_LIST_DIR}/uuid5.cpp
  LIBS tonalyx_platform PkgConfig::PULSE Threads::Threads
  PRIVATE_LIBS tonalyx_platform_linux_core)
