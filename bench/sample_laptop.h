// A virtual laptop with the sample tuning in a store of its own, for programs that are started.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "tests/support/child_process.h"

namespace bench {

struct Laptop {
  std::filesystem::path folder;
  std::filesystem::path program;  // a copy, beside which tuning files may be put
  std::map<std::string, std::string> environment;
};

inline void ImportSample(const Laptop& laptop) {
  support::RunProcess({TONALYX_BIN_DIR "/vtdmake",
                       TONALYX_SOURCE_DIR "/resources/samples/sample.json",
                       (laptop.program.parent_path() / "0.vtd").string()});
  support::RunProcess({laptop.program.string(), "/init"}, laptop.environment);
}

inline Laptop PrepareLaptop(const std::string& kind) {
  Laptop laptop;
  laptop.folder = std::filesystem::temp_directory_path() / ("tonalyx-bench-" + kind);
  laptop.program = laptop.folder / "program" / "tonalyx";
  std::filesystem::remove_all(laptop.folder);
  std::filesystem::create_directories(laptop.program.parent_path());
  std::filesystem::copy(TONALYX_BIN_DIR "/tonalyx", laptop.program);
  const std::string file = (laptop.folder / "laptop.json").string();
  laptop.environment = {{"TONALYX_ROOT", (laptop.folder / "state").string()},
                        {"TONALYX_LAPTOP", file}};
  support::RunProcess({TONALYX_BIN_DIR "/laptopctl", file, "new", kind}, laptop.environment);
  ImportSample(laptop);
  return laptop;
}

}  // namespace bench
