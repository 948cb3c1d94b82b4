tonalyx_test(registry_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/registry_contract_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registry_watch_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sqlite_registry_test.cpp
  LIBS tonalyx_registry_sqlite tonalyx_fake_registry)

tonalyx_test(platform_core_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/state_folder_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/text_test.cpp
  LIBS tonalyx_platform_linux_core)
