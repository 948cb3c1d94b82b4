if(TARGET tonalyx_platform_linux_ui)
  add_executable(gallery ${CMAKE_CURRENT_LIST_DIR}/gallery.cpp)
  target_link_libraries(gallery PRIVATE tonalyx_controls tonalyx_fake_base
    tonalyx_platform_linux_ui tonalyx_resources)
endif()
