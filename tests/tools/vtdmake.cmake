tonalyx_test(vtdmake_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/vtdmake_test.cpp
  LIBS tonalyx_store tonalyx_fake_base tonalyx_fake_registry tonalyx_backend
    tonalyx_test_process)
add_dependencies(vtdmake_test vtdmake)
