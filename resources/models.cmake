# Model tables: constant data made from models.txt, so that another model list is another file.
set(model_rows ${CMAKE_BINARY_DIR}/generated/resources/model_rows.inc)
add_custom_command(
  OUTPUT ${model_rows}
  COMMAND ${CMAKE_COMMAND} -DINPUT=${CMAKE_CURRENT_SOURCE_DIR}/models.txt -DOUTPUT=${model_rows}
    -P ${CMAKE_SOURCE_DIR}/cmake/make_model_tables.cmake
  DEPENDS models.txt ${CMAKE_SOURCE_DIR}/cmake/make_model_tables.cmake
  VERBATIM)
add_custom_target(tonalyx_model_rows DEPENDS ${model_rows})
add_library(tonalyx_models INTERFACE)
add_dependencies(tonalyx_models tonalyx_model_rows)
target_include_directories(tonalyx_models INTERFACE ${CMAKE_SOURCE_DIR}
  ${CMAKE_BINARY_DIR}/generated)
