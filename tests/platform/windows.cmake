tonalyx_test(platform_base_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/base_contracts_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/setup_devices_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/windows_base_backends.cpp
  LIBS tonalyx_backend)

tonalyx_test_program(audio_test
  SOURCES
    ${CMAKE_SOURCE_DIR}/tests/audio/audio_devices_contract_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/multimedia_devices_test.cpp
    ${CMAKE_SOURCE_DIR}/tests/support/wine_lacks.cpp
  LIBS tonalyx_platform_windows_audio tonalyx_backend)
target_compile_options(audio_test PRIVATE -Wno-non-virtual-dtor)
add_test(NAME audio_test COMMAND ${CMAKE_SOURCE_DIR}/scripts/lib/with_sound.sh Speaker
  ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:audio_test>)
set_tests_properties(audio_test PROPERTIES LABELS audio TIMEOUT 120)

tonalyx_test(registry_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/registry_contract_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/windows_registry_backend.cpp
  LIBS tonalyx_backend tonalyx_fake_registry)

tonalyx_test(platform_core_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/text_test.cpp
  LIBS tonalyx_backend)

tonalyx_test(drawing_test
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/drawing_test.cpp
    ${ui_session}
  LIBS tonalyx_platform_windows_drawing tonalyx_backend_ui tonalyx_backend)

# Pressed on by a server that was built for this machine.
if(NOT TONALYX_NATIVE_TESTS)
  return()
endif()
function(tonalyx_wine_window_test name source)
  tonalyx_test_program(${name}
    SOURCES ${source} ${ui_session}
    LIBS tonalyx_platform_windows_ui tonalyx_backend tonalyx_test_desktop tonalyx_test_dialogs)
  tonalyx_wine_display_test(${name} 96 ${TONALYX_NATIVE_TESTS}/desktop_server wine
    $<TARGET_FILE:${name}>)
  set_property(TEST ${name} PROPERTY
    ENVIRONMENT GTEST_OUTPUT=xml:Z:${CMAKE_BINARY_DIR}/test-results/${name}.xml)
endfunction()
tonalyx_wine_window_test(window_test ${CMAKE_CURRENT_LIST_DIR}/window_test.cpp)
foreach(dpi IN ITEMS 120 144 192)
  tonalyx_wine_display_test(window_test_${dpi}dpi ${dpi} ${TONALYX_NATIVE_TESTS}/desktop_server wine
    $<TARGET_FILE:window_test> --gtest_filter=WindowSizes.*)
  set_property(TEST window_test_${dpi}dpi PROPERTY ENVIRONMENT TONALYX_EXPECTED_DPI=${dpi}
    GTEST_OUTPUT=xml:Z:${CMAKE_BINARY_DIR}/test-results/window_test_${dpi}dpi.xml)
endforeach()
tonalyx_wine_window_test(shell_test ${CMAKE_CURRENT_LIST_DIR}/shell_test.cpp)
