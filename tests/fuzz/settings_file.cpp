// The user's settings file: refused as a whole, or taken as a whole and written again to the bit.
#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "dsp/eq_model.h"
#include "platform/fake/fake_files.h"
#include "store/user_settings_file.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

constexpr std::u16string_view kPath = u"/any.tus";

using Bits = std::array<std::uint32_t, store::kParameterCount>;

Bits BitsOf(const store::ParameterStore& store) {
  return std::bit_cast<Bits>(store.values);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::AsText(data, size);
  platform::FakeFileSystem files;
  files.PutFile(kPath, bytes);
  store::ParameterStore store;
  store.values = dsp::InitialParameters();
  const Bits before = BitsOf(store);
  const store::UserSettingsResult result = store::ReadUserSettingsFile(files, kPath, store);
  const bool isValid = size >= store::kUserSettingsFileSize &&
                       bytes.substr(0, 6) == std::string_view("KUS\0\0\1", 6);
  fuzz::Require((result == store::UserSettingsResult::Success) == isValid,
                "files with the right beginning and length are taken, others are not");
  if (!isValid) {
    fuzz::Require(BitsOf(store) == before, "a refused file leaves the store as it was");
    return 0;
  }
  fuzz::Require(
      store::WriteUserSettingsFile(files, kPath, store) == store::UserSettingsResult::Success &&
          files.Contents(kPath) == bytes.substr(0, store::kUserSettingsFileSize),
      "what was read is written again to the bit");
  const Bits after = BitsOf(store);
  std::size_t changed = 0;
  for (std::size_t i = 0; i < after.size(); ++i) changed += after[i] != before[i] ? 1 : 0;
  fuzz::Require(changed <= 105, "only the knobs' and the equalizer's values change");
  return 0;
}
