tonalyx_library(tonalyx_fake_registry
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/fake_registry.cpp
  LIBS tonalyx_platform tonalyx_backend)
