tonalyx_test(regtool_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/regtool_test.cpp
  LIBS tonalyx_test_process)
add_dependencies(regtool_test regtool)
