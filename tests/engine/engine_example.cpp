#include "tests/engine/engine_example.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>

#include "tests/support/child_process.h"

namespace engine {
namespace {

namespace fs = std::filesystem;

// The one line of the page that calls the compiler.
std::string CompilerCall() {
  std::ifstream page(TONALYX_SOURCE_DIR "/docs/engine.md");
  const std::string start = "    cc ";
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with(start)) return line;
  }
  return "false";
}

}  // namespace

fs::path BuildExample(const fs::path& folder) {
  fs::copy_file(TONALYX_SOURCE_DIR "/docs/examples/engine.c", folder / "engine.c");
  const std::string call = CompilerCall();
  for (const char* option : {"-std=c11", "-Wall", "-Wextra", "-Werror"}) {
    EXPECT_NE(call.find(option), std::string::npos) << option;
  }
  const support::ProcessResult result =
      support::RunProcess({"sh", "-c", "cd '" + folder.native() + "' && " + call});
  EXPECT_EQ(result.exitStatus, 0) << result.errors;
  return folder / "engine";
}

std::vector<std::string> ExpectedLines(const std::string& setting,
                                       dsp::ConstParameterValues values) {
  constexpr std::array kTypes = {"?",         "Peaking",      "Low Pass",
                                 "High Pass", "Low Shelving", "High Shelving"};
  const bool isOn = dsp::IsOn(values[dsp::ParameterIndex(dsp::kEqualizerEnable)]);
  std::vector<std::string> lines = {"setting " + setting + ", equalizer " + (isOn ? "on" : "off")};
  for (int number = 1; number <= dsp::kBandCount; ++number) {
    const dsp::EqBand band = dsp::GetBand(values, number);
    const auto type = dsp::FilterTypeFromCode(dsp::TypeCode(band));
    std::array<char, 100> line{};
    std::snprintf(line.data(), line.size(), "%2d %-3s %-13s %8.1f Hz %+6.2f dB  Q %.2f", number,
                  dsp::IsOn(band.enabled) ? "on" : "off",
                  kTypes.at(type ? static_cast<std::size_t>(*type) : 0),
                  static_cast<double>(band.frequency),
                  20.0 * std::log10(static_cast<double>(band.gain)), static_cast<double>(band.q));
    lines.emplace_back(line.data());
  }
  return lines;
}

}  // namespace engine
