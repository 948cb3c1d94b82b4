// The documentation's engine as a program, and what it prints.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "dsp/eq_model.h"

namespace engine {

// Compiles docs/examples/engine.c in `folder` with the command of docs/engine.md; the program. A
// failure is the test's, and the path then names nothing.
std::filesystem::path BuildExample(const std::filesystem::path& folder);

// The lines that it prints for a set.
std::vector<std::string> ExpectedLines(const std::string& setting,
                                       dsp::ConstParameterValues values);

}  // namespace engine
