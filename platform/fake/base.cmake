tonalyx_library(tonalyx_fake_base
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/fake_device_setup.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fake_events.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fake_files.cpp
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_backend)
