// The user's settings file: refused as a whole, or taken as a whole and written again to the bit.
#include "store/user_settings_file.h"

#include <array>
#include <bit>

#include "dsp/eq_model.h"
#include "platform/fake/fake_files.h"
#include "tests/fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::u16string_view kPath = u"/any.tus";
  constexpr std::size_t kSize = 426;
  using Bits = std::array<std::uint32_t, store::kParameterCount>;
  using Result = store::UserSettingsResult;
  const std::string_view bytes = fuzz::AsText(data, size);
  platform::FakeFileSystem files;
  files.PutFile(kPath, bytes);
  store::ParameterStore store;
  store.values = dsp::InitialParameters();
  const auto before = std::bit_cast<Bits>(store.values);
  const bool isTaken = store::ReadUserSettingsFile(files, kPath, store) == Result::Success;
  const bool isValid = size >= kSize && bytes.starts_with(std::string_view("KUS\0\0\1", 6));
  fuzz::Require(isTaken == isValid, "the right beginning and length are taken, others are not");
  std::size_t changed = 0;
  const auto after = std::bit_cast<Bits>(store.values);
  for (std::size_t i = 0; i < after.size(); ++i) changed += after[i] != before[i] ? 1 : 0;
  fuzz::Require(changed <= (isValid ? 105 : 0), "only what the file holds changes");
  fuzz::Require(!isValid || (store::WriteUserSettingsFile(files, kPath, store) == Result::Success &&
                             files.Contents(kPath) == bytes.substr(0, kSize)),
                "what was read is written again to the bit");
  return 0;
}
