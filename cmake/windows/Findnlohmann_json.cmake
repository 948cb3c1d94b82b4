# The build machine's headers serve every target, but the folder they lie in must not.
set(nlohmann_json_folder ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${nlohmann_json_folder})
file(CREATE_LINK /usr/include/nlohmann ${nlohmann_json_folder}/nlohmann SYMBOLIC)
find_file(nlohmann_json_header json.hpp PATHS ${nlohmann_json_folder}/nlohmann
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(nlohmann_json REQUIRED_VARS nlohmann_json_header)
if(nlohmann_json_FOUND AND NOT TARGET nlohmann_json::nlohmann_json)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
  target_include_directories(nlohmann_json::nlohmann_json INTERFACE ${nlohmann_json_folder})
endif()
