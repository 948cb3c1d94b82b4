tonalyx_test(platform_base_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/base_contracts_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/windows_base_backends.cpp
  LIBS tonalyx_backend)

tonalyx_test(registry_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/registry_contract_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/windows_registry_backend.cpp
  LIBS tonalyx_backend tonalyx_fake_registry)

tonalyx_test(platform_core_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/text_test.cpp
  LIBS tonalyx_backend)

tonalyx_test(drawing_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/drawing_test.cpp
    ${CMAKE_SOURCE_DIR}/tests/support/drawing_session.cpp
  LIBS tonalyx_platform_windows_drawing tonalyx_backend)
