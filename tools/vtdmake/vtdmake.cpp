// Makes a tuning file from a readable description.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host_tools.h"
#include "platform/replace_file.h"
#include "tools/vtdmake/json_source.h"
#include "tools/vtdmake/tuning_description.h"
#include "tools/vtdmake/tuning_encoding.h"

namespace {

constexpr std::string_view kUsage =
    "usage: vtdmake SOURCE.json OUT.vtd\n"
    "Makes the tuning file OUT.vtd from the description in SOURCE.json.\n"
    "An error names line, column and field; OUT.vtd is then neither made nor changed.\n";

int Fail(const std::string& message) {
  std::cerr << message << '\n';
  return EXIT_FAILURE;
}

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file || std::filesystem::is_directory(path)) return std::nullopt;
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) return std::nullopt;
  return text;
}

int Run(const std::string& source, const std::string& target) {
  const std::optional<std::string> text = ReadWholeFile(platform::ArgumentPath(source));
  if (!text) return Fail("vtdmake: cannot read " + source);
  try {
    const tools::JsonNode tree = tools::ParseJson(*text);
    if (!platform::ReplaceWholeFile(platform::ArgumentPath(target),
                                    tools::EncodeTuning(tools::DescribeTuning(tree)))) {
      return Fail("vtdmake: cannot write " + target);
    }
  } catch (const tools::SourceError& error) {
    return Fail(source + ":" + std::to_string(error.position.line) + ":" +
                std::to_string(error.position.column) + ": " +
                (error.fieldName.empty() ? "" : error.fieldName + ": ") + error.what());
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::string> arguments = platform::CommandLineArguments(argc, argv);
    if (arguments.size() == 1 && arguments[0] == "--help") {
      std::cout << kUsage;
      return EXIT_SUCCESS;
    }
    if (arguments.size() != 2 || arguments[0].starts_with("--")) {
      return Fail("vtdmake: give a source and a target\n" + std::string(kUsage));
    }
    return Run(arguments[0], arguments[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vtdmake: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
