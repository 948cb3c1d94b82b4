#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/files.h"
#include "platform/little_endian.h"

namespace store {

// Reads a file field by field, strictly in sequence. A read that delivers only a part of what was
// asked for has failed. The file must outlive the reader.
class SequentialReader {
 public:
  // The file is asked for at most `bufferSize` bytes at a time.
  SequentialReader(platform::File& file, std::size_t bufferSize);

  // False when not every byte could be read; the bytes are then undefined.
  bool Read(std::span<std::byte> bytes);

  template <std::size_t kSize>
  std::optional<std::array<std::byte, kSize>> ReadBytes() {
    std::array<std::byte, kSize> bytes;
    if (!Read(bytes)) return std::nullopt;
    return bytes;
  }

  template <std::unsigned_integral Number>
  std::optional<Number> ReadNumber() {
    const auto bytes = ReadBytes<sizeof(Number)>();
    if (!bytes) return std::nullopt;
    return platform::FromLittleEndian<Number>(*bytes);
  }

 private:
  bool Refill();

  platform::File& file_;
  std::vector<std::byte> buffer_;
  std::span<const std::byte> unread_;
};

}  // namespace store
