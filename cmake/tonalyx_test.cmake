# tonalyx_test(name SOURCES ... LIBS ... [LABELS ...] [DPI n] [TIMEOUT seconds] [RUNNER ...]): one
# GoogleTest program, registered with CTest under its name. Label "unit" (the default) runs anywhere;
# "display" runs on an X server of its own with window manager and compositor, at DPI (default 96);
# "audio" starts an audio server of its own; "faults" makes real faults, some of them as root. The
# runner's command line goes before the program's. What is built for another system is run by the
# toolchain's emulator.
find_package(GTest REQUIRED)

# tonalyx_test_program(name SOURCES ... LIBS ...): such a program, registered by whoever can run it.
function(tonalyx_test_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gmock GTest::gtest GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE TONALYX_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    TONALYX_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
endfunction()

function(tonalyx_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT;DPI" "SOURCES;LIBS;LABELS;RUNNER" ${ARGN})
  foreach(default IN ITEMS LABELS=unit TIMEOUT=120 DPI=96)
    string(REPLACE "=" ";" default ${default})
    list(GET default 0 key)
    list(GET default 1 value)
    if(NOT ARG_${key})
      set(ARG_${key} ${value})
    endif()
  endforeach()

  tonalyx_test_program(${name} SOURCES ${ARG_SOURCES} LIBS ${ARG_LIBS})
  set(runner "")
  if("display" IN_LIST ARG_LABELS)
    set(displays ${CMAKE_SOURCE_DIR}/scripts/lib)
    set(runner ${displays}/with_display.sh ${ARG_DPI})
    if(CMAKE_CROSSCOMPILING)
      list(APPEND runner ${displays}/with_own_wine.sh ${ARG_DPI} ${CMAKE_BINARY_DIR}/prefix wine)
    endif()
  elseif(CMAKE_CROSSCOMPILING)
    set(runner ${CMAKE_CROSSCOMPILING_EMULATOR})
  endif()
  add_test(NAME ${name} COMMAND ${runner} ${ARG_RUNNER} $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT ${ARG_TIMEOUT})
endfunction()

# Cross-compiled programs are worked on, on a display, by test programs that were built for the
# machine at hand; without these, nothing of the kind is tested.
set(TONALYX_NATIVE_TESTS "" CACHE PATH "Folder with the test programs built for this machine")

# tonalyx_wine_display_test(name DPI COMMAND...): the command on a display with Wine at its hand.
function(tonalyx_wine_display_test name dpi)
  set(displays ${CMAKE_SOURCE_DIR}/scripts/lib)
  add_test(NAME ${name} COMMAND ${displays}/with_display.sh ${dpi} ${displays}/with_own_wine.sh ${dpi}
    ${CMAKE_BINARY_DIR}/prefix ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS display TIMEOUT 300
    ENVIRONMENT GTEST_OUTPUT=xml:${CMAKE_BINARY_DIR}/test-results/${name}.xml)
endfunction()
