# The same tests, built for this machine, press the pointer on programs that Wine runs.
set(TONALYX_NATIVE_TESTS "" CACHE PATH "Folder with the test programs built for this machine")
if(NOT TONALYX_NATIVE_TESTS)
  return()
endif()

# tonalyx_wine_panel_test(program DPI [ARGUMENT...])
function(tonalyx_wine_panel_test program dpi)
  set(support ${CMAKE_SOURCE_DIR}/tests/support)
  set(name ${program}_${dpi})
  add_test(NAME ${name} COMMAND ${support}/with_display.sh ${dpi} ${support}/with_own_wine.sh ${dpi}
    ${CMAKE_BINARY_DIR}/prefix ${TONALYX_NATIVE_TESTS}/${program} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS display TIMEOUT 300 ENVIRONMENT
    "TONALYX_WINDOWS_PROGRAMS=${CMAKE_RUNTIME_OUTPUT_DIRECTORY};GTEST_OUTPUT=xml:${CMAKE_BINARY_DIR}/test-results/${name}.xml")
endfunction()

tonalyx_wine_panel_test(main_window_e2e 96)
tonalyx_wine_panel_test(main_window_e2e 144 --gtest_filter=*HasItsSize*)
tonalyx_wine_panel_test(advanced_dialog_e2e 96)
tonalyx_wine_panel_test(same_store_e2e 96)
