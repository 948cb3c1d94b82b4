tonalyx_library(tonalyx_host
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/host.cpp
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_registry_sqlite tonalyx_platform_linux_base tonalyx_platform_linux_audio
    tonalyx_platform_linux_file_watcher tonalyx_platform_virtual)
