tonalyx_test(replace_file_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/replace_file_test.cpp ${CMAKE_SOURCE_DIR}/tools/shared/replace_file.cpp)
