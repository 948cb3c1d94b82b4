#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/case_folding.h"

namespace platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kEscapedByteFirst = 0xDC80;  // stands for byte 0x80
constexpr char32_t kEscapedByteLast = 0xDCFF;

bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes one code point, or one lone surrogate as it stands, from the front of `text`.
char32_t TakeCodePoint(std::u16string_view* text) {
  const char32_t first = text->front();
  text->remove_prefix(1);
  if (!IsHighSurrogate(first) || text->empty() || !IsLowSurrogate(text->front())) return first;
  const char32_t second = text->front();
  text->remove_prefix(1);
  return 0x10000 + ((first - 0xD800) << 10U) + (second - 0xDC00);
}

void AppendUtf16(std::u16string* text, char32_t point) {
  if (point < 0x10000) {
    *text += static_cast<char16_t>(point);
    return;
  }
  *text += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10U));
  *text += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FFU));
}

void AppendUtf8(std::string* bytes, char32_t point) {
  const auto append = [bytes](char32_t byte) { *bytes += static_cast<char>(byte); };
  if (point < 0x80) {
    append(point);
  } else if (point < 0x800) {
    append(0xC0U | (point >> 6U));
    append(0x80U | (point & 0x3FU));
  } else if (point < 0x10000) {
    append(0xE0U | (point >> 12U));
    append(0x80U | ((point >> 6U) & 0x3FU));
    append(0x80U | (point & 0x3FU));
  } else {
    append(0xF0U | (point >> 18U));
    append(0x80U | ((point >> 12U) & 0x3FU));
    append(0x80U | ((point >> 6U) & 0x3FU));
    append(0x80U | (point & 0x3FU));
  }
}

struct Utf8Form {
  std::size_t length;
  char32_t leadBits;
  char32_t smallest;  // below it the form is overlong
};

Utf8Form FormOfLead(std::uint8_t lead) {
  if (lead < 0x80) return {1, 0x7F, 0};
  if (lead >= 0xC0 && lead < 0xE0) return {2, 0x1F, 0x80};
  if (lead >= 0xE0 && lead < 0xF0) return {3, 0x0F, 0x800};
  if (lead >= 0xF0 && lead < 0xF8) return {4, 0x07, 0x10000};
  return {0, 0, 0};
}

// Takes one code point from the front of `bytes`, or one byte that begins none, escaped.
char32_t TakeUtf8(std::string_view* bytes) {
  const auto lead = static_cast<std::uint8_t>(bytes->front());
  const char32_t escaped = kEscapedByteFirst + (lead & 0x7FU);
  const Utf8Form form = FormOfLead(lead);
  const auto giveUp = [&] {
    bytes->remove_prefix(1);
    return escaped;
  };
  if (form.length == 0 || bytes->size() < form.length) return giveUp();
  char32_t point = lead & form.leadBits;
  for (std::size_t i = 1; i < form.length; ++i) {
    const auto next = static_cast<std::uint8_t>((*bytes)[i]);
    if ((next & 0xC0U) != 0x80) return giveUp();
    point = (point << 6U) | (next & 0x3FU);
  }
  if (point < form.smallest || point > 0x10FFFF || IsHighSurrogate(point) ||
      IsLowSurrogate(point)) {
    return giveUp();
  }
  bytes->remove_prefix(form.length);
  return point;
}

// U+0080 to U+009F as Windows-1252 fills them; 0 where the page has no character of its own and
// keeps the control code.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char ToWindows1252(char16_t unit) {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return static_cast<char>(unit);
  for (std::size_t i = 0; i < kWindows1252.size(); ++i) {
    const auto byte = static_cast<char16_t>(0x80 + i);
    if (kWindows1252[i] == unit || (kWindows1252[i] == 0 && byte == unit)) {
      return static_cast<char>(byte);
    }
  }
  return '?';
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  // Names of events and keys are ASCII as a rule, and there are many in every edit.
  const auto ascii =
      std::ranges::find_if(text, [](char16_t unit) { return unit >= 0x80; }) - text.begin();
  std::string bytes(text.begin(), text.begin() + ascii);
  text.remove_prefix(static_cast<std::size_t>(ascii));
  bytes.reserve(bytes.size() + text.size());
  while (!text.empty()) {
    const char32_t point = TakeCodePoint(&text);
    if (point >= kEscapedByteFirst && point <= kEscapedByteLast) {
      bytes += static_cast<char>(point - kEscapedByteFirst + 0x80);
    } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
      AppendUtf8(&bytes, kReplacement);
    } else {
      AppendUtf8(&bytes, point);
    }
  }
  return bytes;
}

std::u16string FromUtf8(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) AppendUtf16(&text, TakeUtf8(&bytes));
  return text;
}

std::string ToAnsi(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (const char16_t unit : text) bytes += ToWindows1252(unit);
  return bytes;
}

int CompareIgnoreCase(std::u16string_view left, std::u16string_view right) {
  while (!left.empty() && !right.empty()) {
    const char32_t a = FoldCodePoint(TakeCodePoint(&left));
    const char32_t b = FoldCodePoint(TakeCodePoint(&right));
    if (a != b) return a < b ? -1 : 1;
  }
  if (left.empty() && right.empty()) return 0;
  return left.empty() ? -1 : 1;
}

std::u16string FoldCase(std::u16string_view text) {
  std::u16string folded;
  folded.reserve(text.size());
  while (!text.empty()) AppendUtf16(&folded, FoldCodePoint(TakeCodePoint(&text)));
  return folded;
}

}  // namespace platform
