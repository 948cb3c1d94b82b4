#include "store/user_settings_file.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/fake/fake_files.h"

namespace store {
namespace {

const std::u16string kPath = u"/home/mine.tus";

// Bits that differ for every parameter and make some of them NaNs with payloads.
std::uint32_t PatternOf(std::size_t number) {
  return 0x7F900000U + static_cast<std::uint32_t>(number) * 0x10001U;
}

ParameterStore PatternStore() {
  ParameterStore store;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    store.values[i] = std::bit_cast<float>(PatternOf(i + 1));
  }
  return store;
}

std::uint32_t NumberAt(const std::string& bytes, std::size_t offset) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + offset, sizeof(number));
  return number;
}

using ParameterBits = std::array<std::uint32_t, kParameterCount>;

bool SameBits(const ParameterStore& left, const ParameterStore& right) {
  return std::bit_cast<ParameterBits>(left.values) == std::bit_cast<ParameterBits>(right.values) &&
         left.committed == right.committed;
}

class UserSettingsFileTest : public testing::Test {
 protected:
  std::string Saved() {
    EXPECT_EQ(WriteUserSettingsFile(files_, kPath, PatternStore()), UserSettingsResult::Success);
    return files_.Contents(kPath).value_or("");
  }

  platform::FakeFileSystem files_;
};

TEST_F(UserSettingsFileTest, LayoutToTheByte) {
  const std::string bytes = Saved();
  ASSERT_EQ(bytes.size(), 426U);
  EXPECT_EQ(bytes.substr(0, 6), std::string("KUS\0\0\1", 6));
  const std::size_t first[] = {6, 223, 250, 232};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(NumberAt(bytes, 6 + 4 * i), PatternOf(first[i]));
  }
  for (std::size_t number = 117; number <= 217; ++number) {
    EXPECT_EQ(NumberAt(bytes, 22 + 4 * (number - 117)), PatternOf(number));
  }
}

TEST_F(UserSettingsFileTest, LoadsTheSameBitsAndNothingElse) {
  files_.PutFile(kPath, Saved() + "and more");
  ParameterStore store;
  ASSERT_EQ(ReadUserSettingsFile(files_, kPath, store), UserSettingsResult::Success);
  for (std::size_t number = 1; number <= kParameterCount; ++number) {
    const bool stored = number == 6 || number == 223 || number == 250 || number == 232 ||
                        (number >= 117 && number <= 217);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(store.values[number - 1]),
              stored ? PatternOf(number) : 0U)
        << number;
  }
  EXPECT_EQ(store.committed, ParameterStore().committed);
}

TEST_F(UserSettingsFileTest, FirstFaultInTheFileDecides) {
  const std::string good = Saved();
  const auto changed = [&](std::size_t offset, char byte, std::size_t size) {
    std::string bytes = good.substr(0, size);
    bytes[offset] = byte;
    return bytes;
  };
  const struct {
    const char* what;
    std::string bytes;
    UserSettingsResult expected;
  } cases[] = {
      {"empty", "", UserSettingsResult::ReadFailed},
      {"short magic, wrong too", "XU", UserSettingsResult::ReadFailed},
      {"wrong magic", changed(2, 'X', 426), UserSettingsResult::InvalidFile},
      {"magic without NUL", changed(3, ' ', 426), UserSettingsResult::InvalidFile},
      {"wrong magic and short", changed(0, 'X', 4), UserSettingsResult::InvalidFile},
      {"short version", good.substr(0, 5), UserSettingsResult::ReadFailed},
      {"version 0x0200", changed(5, 2, 426), UserSettingsResult::InvalidFile},
      {"wrong version and short", changed(4, 1, 6), UserSettingsResult::InvalidFile},
      {"one byte short", good.substr(0, 425), UserSettingsResult::ReadFailed},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    files_.PutFile(kPath, c.bytes);
    ParameterStore store = PatternStore();
    EXPECT_EQ(ReadUserSettingsFile(files_, kPath, store), c.expected);
    EXPECT_TRUE(SameBits(store, PatternStore()));
  }
  files_.PutFile(kPath, good);
  files_.FailReadsFrom(kPath, 100);
  ParameterStore store;
  EXPECT_EQ(ReadUserSettingsFile(files_, kPath, store), UserSettingsResult::ReadFailed);
  EXPECT_TRUE(SameBits(store, ParameterStore()));
  EXPECT_EQ(ReadUserSettingsFile(files_, u"/none", store), UserSettingsResult::OpenFailed);
}

TEST_F(UserSettingsFileTest, SavingReplacesOrTellsWhy) {
  files_.PutFile(kPath, std::string(1000, 'x'));
  EXPECT_EQ(Saved().size(), 426U);
  files_.SetFreeSpace(100);
  EXPECT_EQ(WriteUserSettingsFile(files_, kPath, PatternStore()), UserSettingsResult::WriteFailed);
  EXPECT_EQ(files_.Contents(kPath)->size(), 100U) << "what was written stays";
  files_.DenyOpening(kPath);
  EXPECT_EQ(WriteUserSettingsFile(files_, kPath, PatternStore()), UserSettingsResult::CreateFailed);
}

}  // namespace
}  // namespace store
