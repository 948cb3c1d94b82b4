tonalyx_test(enginemon_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/enginemon_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/monitor_report_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/parameter_watch_test.cpp
  LIBS tonalyx_engine_monitor tonalyx_fake_registry tonalyx_registry_sqlite
    tonalyx_platform_linux_base tonalyx_store_layout tonalyx_test_process)
add_dependencies(enginemon_test enginemon)
