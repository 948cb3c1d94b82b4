#include "app/hex_number.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace app {
namespace {

std::optional<std::int32_t> HexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return std::nullopt;
}

bool IsBlank(char16_t unit) {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

bool HasHexPrefix(std::u16string_view text) {
  return text.size() > 2 && text[0] == u'0' && (text[1] == u'x' || text[1] == u'X') &&
         HexDigit(text[2]);
}

}  // namespace

std::int32_t ParseHexLong(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative || (!text.empty() && text.front() == u'+')) text.remove_prefix(1);
  if (HasHexPrefix(text)) text.remove_prefix(2);

  constexpr std::int64_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (const char16_t unit : text) {
    const std::optional<std::int32_t> digit = HexDigit(unit);
    if (!digit) break;
    value = std::clamp(value * 16 + (negative ? -*digit : *digit), kMin, kMax);
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace app
