tonalyx_test(drawing_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/drawing_test.cpp
    ${ui_session}
  LIBS tonalyx_platform_linux_ui tonalyx_resources)

tonalyx_test(window_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/window_test.cpp
    ${ui_session}
  LIBS tonalyx_platform_linux_ui tonalyx_resources tonalyx_test_desktop tonalyx_test_dialogs
  LABELS display)

# The same program where the screen is another one. What a person has told the toolkit about
# scaling must not matter.
set(with_display ${CMAKE_SOURCE_DIR}/scripts/lib/with_display.sh)
function(tonalyx_window_size_test name dpi)
  add_test(NAME ${name} COMMAND ${with_display} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS display TIMEOUT 60
    ENVIRONMENT
      "TONALYX_EXPECTED_DPI=${dpi};QT_FONT_DPI=300;QT_SCALE_FACTOR=2;QT_ENABLE_HIGHDPI_SCALING=1")
endfunction()
set(size_test $<TARGET_FILE:window_test> --gtest_filter=WindowSizes.*)
foreach(dpi IN ITEMS 120 144 192)
  tonalyx_window_size_test(window_test_${dpi}dpi ${dpi} ${dpi} ${size_test})
endforeach()
# The resource manager's word counts more than the server's.
tonalyx_window_size_test(window_test_resource_dpi 144
  96 sh -c "echo Xft.dpi: 144 | xrdb -merge - && exec \"$@\"" sh ${size_test})

add_test(NAME window_test_without_compositor
  COMMAND ${with_display} 96 $<TARGET_FILE:window_test> --gtest_filter=Layered.*)
set_tests_properties(window_test_without_compositor PROPERTIES LABELS display TIMEOUT 60
  ENVIRONMENT TONALYX_COMPOSITOR=none)

tonalyx_test(shell_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/shell_test.cpp
    ${ui_session}
  LIBS tonalyx_platform_linux_ui tonalyx_platform_linux_core tonalyx_resources tonalyx_test_desktop
  LABELS display)
