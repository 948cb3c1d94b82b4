tonalyx_test(platform_base_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/base_contracts_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fifo_events_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/posix_files_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sysfs_devices_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/user_instance_test.cpp
  LIBS tonalyx_fake_base tonalyx_platform_linux_base)
