#include "store/user_settings_file.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <span>

#include "dsp/eq_model.h"
#include "platform/little_endian.h"
#include "store/sequential_reader.h"

namespace store {
namespace {

constexpr std::array<std::byte, 4> kMagic = {std::byte{'K'}, std::byte{'U'}, std::byte{'S'},
                                             std::byte{0}};
constexpr std::uint16_t kVersion = 0x0100;

constexpr std::array<int, 4> kKnobParameters = {dsp::kWidenerAmount, dsp::kLoudnessAmount,
                                                dsp::kTrebleAmount, dsp::kBassAmount};
constexpr std::size_t kEqualizerFirst = dsp::ParameterIndex(dsp::kEqualizerEnable);
constexpr std::size_t kEqualizerCount = 101;
constexpr std::size_t kStoredCount = kKnobParameters.size() + kEqualizerCount;

static_assert(kMagic.size() + sizeof(kVersion) + kStoredCount * sizeof(float) ==
              kUserSettingsFileSize);

// Indices into a parameter set, in the order of the file.
constexpr std::array<std::size_t, kStoredCount> StoredIndices() {
  std::array<std::size_t, kStoredCount> indices{};
  for (std::size_t i = 0; i < kStoredCount; ++i) {
    indices[i] = i < kKnobParameters.size() ? dsp::ParameterIndex(kKnobParameters[i])
                                            : kEqualizerFirst + i - kKnobParameters.size();
  }
  return indices;
}

constexpr std::array<std::size_t, kStoredCount> kStoredIndices = StoredIndices();

UserSettingsResult ReadValues(SequentialReader& reader, ParameterSet& values) {
  const auto magic = reader.ReadBytes<kMagic.size()>();
  if (!magic) return UserSettingsResult::ReadFailed;
  if (*magic != kMagic) return UserSettingsResult::InvalidFile;
  const auto version = reader.ReadNumber<std::uint16_t>();
  if (!version) return UserSettingsResult::ReadFailed;
  if (*version != kVersion) return UserSettingsResult::InvalidFile;
  for (const std::size_t index : kStoredIndices) {
    const auto bits = reader.ReadNumber<std::uint32_t>();
    if (!bits) return UserSettingsResult::ReadFailed;
    values[index] = std::bit_cast<float>(*bits);
  }
  return UserSettingsResult::Success;
}

std::array<std::byte, kUserSettingsFileSize> EncodeFile(const ParameterSet& values) {
  std::array<std::byte, kUserSettingsFileSize> bytes{};
  std::ranges::copy(kMagic, bytes.begin());
  std::span<std::byte> rest = std::span(bytes).subspan(kMagic.size());
  platform::ToLittleEndian(kVersion, rest.first<sizeof(kVersion)>());
  rest = rest.subspan(sizeof(kVersion));
  for (const std::size_t index : kStoredIndices) {
    platform::ToLittleEndian(std::bit_cast<std::uint32_t>(values[index]),
                             rest.first<sizeof(float)>());
    rest = rest.subspan(sizeof(float));
  }
  return bytes;
}

}  // namespace

UserSettingsResult ReadUserSettingsFile(platform::FileSystem& files, std::u16string_view path,
                                        ParameterStore& store) {
  const std::unique_ptr<platform::File> file = files.OpenExisting(path, platform::FileAccess::Read);
  if (!file) return UserSettingsResult::OpenFailed;
  SequentialReader reader(*file, kUserSettingsFileSize);
  ParameterSet values = store.values;
  const UserSettingsResult result = ReadValues(reader, values);
  if (result == UserSettingsResult::Success) store.values = values;
  return result;
}

UserSettingsResult WriteUserSettingsFile(platform::FileSystem& files, std::u16string_view path,
                                         const ParameterStore& store) {
  const std::unique_ptr<platform::File> file = files.CreateAlways(path);
  if (!file) return UserSettingsResult::CreateFailed;
  return file->Write(EncodeFile(store.values)) ? UserSettingsResult::Success
                                               : UserSettingsResult::WriteFailed;
}

}  // namespace store
