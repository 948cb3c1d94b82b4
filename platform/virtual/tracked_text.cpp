#include "platform/virtual/tracked_text.h"

#include <algorithm>

namespace platform {
namespace {

bool IsContinuationByte(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool IsWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == 'E' || c == '+' || c == '-' ||
         c == '.';
}

// Whether an odd number of backslashes stands before the quote.
bool IsEscaped(std::string_view text, std::size_t quote) {
  std::size_t first = quote;
  while (first > 0 && text[first - 1] == '\\') --first;
  return (quote - first) % 2 == 1;
}

}  // namespace

TextPosition TrackedText::PositionOf(std::size_t offset) const {
  const std::string_view before = text_.substr(0, std::min(offset, text_.size()));
  const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  const std::string_view line = before.substr(lineStart);
  const auto breaks = std::ranges::count(before, '\n');
  const auto continuations = std::ranges::count_if(line, IsContinuationByte);
  return {static_cast<std::size_t>(breaks) + 1,
          line.size() - static_cast<std::size_t>(continuations) + 1};
}

TextPosition TrackedText::StartOfString() const {
  std::size_t start = consumed_ - 1;
  do {
    --start;
  } while (start > 0 && (text_[start] != '"' || IsEscaped(text_, start)));
  return PositionOf(start);
}

TextPosition TrackedText::StartOfBracket() const {
  return PositionOf(consumed_ - 1);
}

TextPosition TrackedText::StartOfWord() const {
  std::size_t start = consumed_ - 1;
  if (!IsWordCharacter(text_[start])) --start;
  while (start > 0 && IsWordCharacter(text_[start - 1])) --start;
  return PositionOf(start);
}

}  // namespace platform
