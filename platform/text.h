// Text at the system's edge: UTF-16 inside, UTF-8 or the ANSI code page outside.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// UTF-8 and back. Lone surrogates from U+DC80 to U+DCFF stand for bytes that are no UTF-8, so
// that a file name of any bytes survives the way in and out; other lone surrogates become U+FFFD.
std::string ToUtf8(std::u16string_view text);
std::u16string FromUtf8(std::string_view bytes);

// The ANSI code page, Windows-1252: one byte for each UTF-16 unit, "?" for what the page lacks.
std::string ToAnsi(std::u16string_view text);

// Ordering without regard to letter case, over the whole of Unicode's simple case pairs; negative,
// zero or positive, as the platform's own string comparison answers.
int CompareIgnoreCase(std::u16string_view left, std::u16string_view right);

inline bool EndsWithIgnoreCase(std::u16string_view text, std::u16string_view ending) {
  return text.size() >= ending.size() &&
         CompareIgnoreCase(text.substr(text.size() - ending.size()), ending) == 0;
}

// The form in which names that differ only in letter case are equal.
std::u16string FoldCase(std::u16string_view text);

// The first `capacity` - 1 units of `text`: what fits into a buffer that keeps one unit for the
// NUL.
inline std::u16string_view CutToBuffer(std::u16string_view text, std::size_t capacity) {
  return text.substr(0, capacity - 1);
}

}  // namespace platform
