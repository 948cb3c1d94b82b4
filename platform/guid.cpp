#include "platform/guid.h"

#include <cstddef>

namespace platform {
namespace {

// Positions of the hyphens in the registry form.
constexpr std::array<std::size_t, 4> kHyphens = {9, 14, 19, 24};
constexpr std::size_t kLength = 38;

std::optional<std::uint8_t> HexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return static_cast<std::uint8_t>(unit - u'0');
  if (unit >= u'A' && unit <= u'F') return static_cast<std::uint8_t>(unit - u'A' + 10);
  if (unit >= u'a' && unit <= u'f') return static_cast<std::uint8_t>(unit - u'a' + 10);
  return std::nullopt;
}

bool IsHyphen(std::size_t position) {
  for (const std::size_t hyphen : kHyphens) {
    if (position == hyphen) return true;
  }
  return false;
}

// The 16 bytes in the order in which the registry form writes them.
std::array<std::uint8_t, 16> BytesAsWritten(const Guid& guid) {
  std::array<std::uint8_t, 16> bytes = {
      static_cast<std::uint8_t>(guid.data1 >> 24U), static_cast<std::uint8_t>(guid.data1 >> 16U),
      static_cast<std::uint8_t>(guid.data1 >> 8U),  static_cast<std::uint8_t>(guid.data1),
      static_cast<std::uint8_t>(guid.data2 >> 8U),  static_cast<std::uint8_t>(guid.data2),
      static_cast<std::uint8_t>(guid.data3 >> 8U),  static_cast<std::uint8_t>(guid.data3)};
  for (std::size_t i = 0; i < guid.data4.size(); ++i) bytes[8 + i] = guid.data4[i];
  return bytes;
}

Guid GuidFromBytesAsWritten(const std::array<std::uint8_t, 16>& b) {
  Guid guid{(static_cast<std::uint32_t>(b[0]) << 24U) | (static_cast<std::uint32_t>(b[1]) << 16U) |
                (static_cast<std::uint32_t>(b[2]) << 8U) | b[3],
            static_cast<std::uint16_t>((b[4] << 8U) | b[5]),
            static_cast<std::uint16_t>((b[6] << 8U) | b[7]),
            {}};
  for (std::size_t i = 0; i < guid.data4.size(); ++i) guid.data4[i] = b[8 + i];
  return guid;
}

}  // namespace

std::u16string GuidToString(const Guid& guid) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
  std::u16string text = u"{";
  for (const std::uint8_t byte : BytesAsWritten(guid)) {
    if (IsHyphen(text.size())) text += u'-';
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
  text += u'}';
  return text;
}

std::optional<Guid> GuidFromString(std::u16string_view text) {
  if (text.size() != kLength || text.front() != u'{' || text.back() != u'}') return std::nullopt;
  std::array<std::uint8_t, 16> bytes{};
  std::size_t position = 1;
  for (std::uint8_t& byte : bytes) {
    if (IsHyphen(position)) {
      if (text[position] != u'-') return std::nullopt;
      ++position;
    }
    const std::optional<std::uint8_t> high = HexDigit(text[position]);
    const std::optional<std::uint8_t> low = HexDigit(text[position + 1]);
    if (!high || !low) return std::nullopt;
    byte = static_cast<std::uint8_t>((*high << 4U) | *low);
    position += 2;
  }
  return GuidFromBytesAsWritten(bytes);
}

Guid GuidFromBytes(const std::array<std::uint8_t, 16>& b) {
  return GuidFromBytesAsWritten({b[3], b[2], b[1], b[0], b[5], b[4], b[7], b[6], b[8], b[9], b[10],
                                 b[11], b[12], b[13], b[14], b[15]});
}

}  // namespace platform
