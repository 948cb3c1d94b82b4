// Takes an input apart.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace fuzz {

class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  bool IsEmpty() const { return rest_.empty(); }

  // What is missing at the end is 0, and no byte.
  std::uint8_t Byte() {
    const std::string_view byte = Bytes(1);
    return byte.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(byte.front());
  }
  std::uint16_t Number16() {
    const unsigned low = Byte();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(Byte()) << 8U);
  }
  std::string_view Bytes(std::size_t count) {
    const std::string_view bytes = rest_.substr(0, count);
    rest_.remove_prefix(bytes.size());
    return bytes;
  }

 private:
  std::string_view rest_;
};

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
