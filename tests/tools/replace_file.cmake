tonalyx_test(replace_file_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/replace_file_test.cpp
  LIBS tonalyx_backend)
