# Compiler settings that every target shares.

option(TONALYX_BUILD_TESTS "Build the tests" ON)
option(TONALYX_BUILD_BENCHMARKS "Build the benchmarks" ON)
set(TONALYX_SANITIZE "" CACHE STRING "Value for -fsanitize, empty for none")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

set(CMAKE_CXX_FLAGS_RELEASE "-O2 -g1 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")

# The same bits from the same sources everywhere: no contraction of multiply and add.
add_compile_options(-ffp-contract=off)
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wall> $<$<COMPILE_LANGUAGE:CXX>:-Wextra>
  $<$<COMPILE_LANGUAGE:CXX>:-Wpedantic> $<$<COMPILE_LANGUAGE:CXX>:-Wshadow>
  $<$<COMPILE_LANGUAGE:CXX>:-Wconversion> $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
  $<$<COMPILE_LANGUAGE:CXX>:-Werror>)

# A fault that slips through stays a crash: guarded stack frames, checked calls of the C library,
# addresses that differ from start to start, tables of addresses and the stack that nobody can
# rewrite or run. Everything here is linked into programs, so code need not suit a shared library,
# which would cost inlining.
add_compile_options(-fstack-protector-strong)
if(WIN32)
  # Programs that bring along all they need but the system.
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00)
  add_link_options(-static -fstack-protector-strong LINKER:--dynamicbase,--high-entropy-va,--nxcompat)
else()
  add_compile_options(-fPIE)
  add_link_options(-pie LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
if(TONALYX_SANITIZE)
  add_compile_options(-fsanitize=${TONALYX_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TONALYX_SANITIZE})
else()
  # The sanitizers check the same calls themselves. Without optimization nothing would be checked.
  add_compile_options($<$<CONFIG:Release>:-U_FORTIFY_SOURCE>
    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
endif()

find_program(TONALYX_CCACHE ccache)
if(TONALYX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TONALYX_CCACHE})
endif()

# A library of this project: sources are found from the root of the tree, and what is not linked
# is not found.
function(tonalyx_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;PRIVATE_LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LIBS} PRIVATE ${ARG_PRIVATE_LIBS})
endfunction()
