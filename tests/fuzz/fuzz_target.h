// What every fuzz target shares. A target is one function that takes any bytes and finds fault with
// what the product makes of them; see tests/fuzz/CMakeLists.txt for the two ways to run it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Ends the process when what must hold for every input does not.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// An error lies within the text, both counted from 1.
inline void RequirePlace(std::size_t line, std::size_t column, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
  Require(line >= 1 && line <= lines, "an error lies on a line of the text");
  Require(column >= 1 && column <= text.size() + 1, "an error lies in a column of the text");
}

// The pieces between the dividers; always one at least.
inline std::vector<std::string_view> Split(std::string_view text, char divider) {
  std::vector<std::string_view> pieces;
  while (true) {
    const std::size_t end = text.find(divider);
    pieces.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

}  // namespace fuzz
