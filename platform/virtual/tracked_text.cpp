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
  const std::size_t end = std::min(offset, text_.size());
  if (end < knownOffset_) {
    knownOffset_ = 0;
    known_ = {};
  }
  for (; knownOffset_ < end; ++knownOffset_) {
    const char byte = text_[knownOffset_];
    if (byte == '\n') {
      known_ = {known_.line + 1, 1};
    } else if (!IsContinuationByte(byte)) {
      ++known_.column;
    }
  }
  return known_;
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
