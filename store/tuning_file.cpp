#include "store/tuning_file.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace store {
namespace {

constexpr std::array<std::byte, 3> kMagic = {std::byte{'K'}, std::byte{'e'}, std::byte{'l'}};

constexpr std::size_t kHeaderSize = 13;
constexpr std::size_t kPropertiesSize = 48;

// A field that is not terminated ends at its width.
std::string FieldText(std::span<const std::byte> field) {
  std::string text;
  for (const std::byte byte : field) {
    if (byte == std::byte{0}) break;
    text.push_back(static_cast<char>(byte));
  }
  return text;
}

}  // namespace

std::optional<TuningHeader> ReadTuningHeader(SequentialReader& reader) {
  const auto bytes = reader.ReadBytes<kHeaderSize>();
  if (!bytes) return std::nullopt;
  const std::span<const std::byte, kHeaderSize> header(*bytes);
  if (!std::ranges::equal(header.first<kMagic.size()>(), kMagic)) return std::nullopt;
  const auto version = platform::FromLittleEndian<std::uint16_t>(header.subspan<3, 2>());
  if (version != kTuningFormat1 && version != kTuningFormat2) return std::nullopt;
  return TuningHeader{version, platform::FromLittleEndian<std::uint32_t>(header.subspan<5, 4>()),
                      platform::FromLittleEndian<std::uint32_t>(header.subspan<9, 4>())};
}

std::optional<TuningProperties> ReadTuningProperties(SequentialReader& reader) {
  const auto bytes = reader.ReadBytes<kPropertiesSize>();
  if (!bytes) return std::nullopt;
  const std::span<const std::byte, kPropertiesSize> block(*bytes);
  return TuningProperties{
      .engineName = FieldText(block.subspan<0, 20>()),
      .engineMajorVersion = static_cast<std::int32_t>(
          platform::FromLittleEndian<std::uint32_t>(block.subspan<20, 4>())),
      .engineBuild = static_cast<std::int32_t>(
          platform::FromLittleEndian<std::uint32_t>(block.subspan<24, 4>())),
      .toolVersion = FieldText(block.subspan<28, 10>()),
      .dataVersion = platform::FromLittleEndian<std::uint16_t>(block.subspan<38, 2>()),
      .date = platform::FromLittleEndian<std::uint32_t>(block.subspan<40, 4>()),
      .status = {.internalSpeaker = std::to_integer<std::uint8_t>(block[44]),
                 .speakerWithSubwoofer = std::to_integer<std::uint8_t>(block[45]),
                 .headphone = std::to_integer<std::uint8_t>(block[46]),
                 .lineOut = std::to_integer<std::uint8_t>(block[47])}};
}

}  // namespace store
