# The same tests, built for this machine, press the pointer on programs that Wine runs.
if(NOT TONALYX_NATIVE_TESTS)
  return()
endif()

# tonalyx_wine_panel_test(program DPI [ARGUMENT...])
function(tonalyx_wine_panel_test program dpi)
  tonalyx_wine_display_test(${program}_${dpi} ${dpi} ${runner} ${TONALYX_NATIVE_TESTS}/${program}
    ${ARGN})
  set_property(TEST ${program}_${dpi} APPEND PROPERTY
    ENVIRONMENT TONALYX_WINDOWS_PROGRAMS=${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
endfunction()

tonalyx_wine_panel_test(main_window_e2e 96)
tonalyx_wine_panel_test(main_window_e2e 144 --gtest_filter=*HasItsSize*)
tonalyx_wine_panel_test(advanced_dialog_e2e 96)
tonalyx_wine_panel_test(advanced_dialog_e2e 144 --gtest_filter=*OpensCollapsed*:*Edits*)
tonalyx_wine_panel_test(same_store_e2e 96)
set(runner ${CMAKE_SOURCE_DIR}/scripts/lib/with_sound.sh "Realtek High Definition Audio")
tonalyx_wine_panel_test(own_devices_e2e 96)
