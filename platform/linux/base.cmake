# Named events, files, the single instance and the machine's codecs.
tonalyx_library(tonalyx_platform_linux_base
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/com_apartment.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fifo_event_listener.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fifo_events.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fifo_name.cpp
    ${CMAKE_CURRENT_LIST_DIR}/posix_files.cpp
    ${CMAKE_CURRENT_LIST_DIR}/raise_channel.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sysfs_devices.cpp
    ${CMAKE_CURRENT_LIST_DIR}/user_instance.cpp
  LIBS tonalyx_platform_linux_core)
