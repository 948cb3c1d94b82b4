#include "app/hex_number.h"

#include <gtest/gtest.h>

#include <limits>

namespace app {
namespace {

TEST(ParseHexLong, ReadsLikeTheCLibrary) {
  struct Case {
    std::u16string_view text;
    std::int32_t value;
  };
  constexpr Case kCases[] = {
      {u"1234", 0x1234},
      {u"ABCD", 0xABCD},
      {u"abcd", 0xABCD},
      {u" \t12", 0x12},
      {u"-1", -1},
      {u"+7F", 0x7F},
      {u"0x1F", 0x1F},
      {u"0X1F", 0x1F},
      {u"0x", 0},
      {u"0xG", 0},
      {u"12G4", 0x12},
      {u"&REV", 0},
      {u"", 0},
      {u"  ", 0},
      {u"- 1", 0},
      {u"7FFFFFFF", std::numeric_limits<std::int32_t>::max()},
      {u"80000000", std::numeric_limits<std::int32_t>::max()},
      {u"FFFFFFFFFFFFFFFFFFFF", std::numeric_limits<std::int32_t>::max()},
      {u"-80000001", std::numeric_limits<std::int32_t>::min()},
  };
  for (const Case& test : kCases) {
    EXPECT_EQ(ParseHexLong(test.text), test.value)
        << testing::PrintToString(std::u16string(test.text));
  }
}

}  // namespace
}  // namespace app
