tonalyx_library(tonalyx_fake_audio SOURCES ${CMAKE_CURRENT_LIST_DIR}/fake_audio_devices.cpp
  LIBS tonalyx_platform)
