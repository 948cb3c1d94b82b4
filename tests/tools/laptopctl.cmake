tonalyx_test(laptopctl_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/laptopctl_test.cpp
  LIBS tonalyx_platform_virtual tonalyx_registry_sqlite tonalyx_models tonalyx_test_process)
add_dependencies(laptopctl_test laptopctl)
