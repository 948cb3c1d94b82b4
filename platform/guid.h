#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct Guid {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::array<std::uint8_t, 8> data4;
  bool operator==(const Guid&) const = default;
};

// Registry form: braces, upper-case hexadecimal, 38 units.
std::u16string GuidToString(const Guid& guid);

// Accepts the registry form in either case and nothing else.
std::optional<Guid> GuidFromString(std::u16string_view text);

// The binary layout: three little-endian fields, then eight bytes as they stand.
Guid GuidFromBytes(const std::array<std::uint8_t, 16>& bytes);

}  // namespace platform
