// Numbers in files, values and pipes, which are little-endian on every machine.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

template <std::unsigned_integral Number>
constexpr Number FromLittleEndian(std::span<const std::byte, sizeof(Number)> bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = sizeof(Number); i > 0; --i) {
    value = (value << 8U) | std::to_integer<std::uint64_t>(bytes[i - 1]);
  }
  return static_cast<Number>(value);
}

template <std::unsigned_integral Number>
constexpr void ToLittleEndian(Number number, std::span<std::byte, sizeof(Number)> bytes) {
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    bytes[i] = static_cast<std::byte>(number >> (8U * i));
  }
}

}  // namespace platform
