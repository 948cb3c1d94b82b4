// A text whose reader can be asked how far it has come, for errors that name line and column.
#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

namespace platform {

// Both count from 1; columns count characters.
struct TextPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

// Belongs to one reader at a time; the iterators must not outlive it.
class TrackedText {
 public:
  // An input iterator that notes its place in the text it belongs to.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Iterator(TrackedText* text, std::size_t offset) : text_(text), offset_(offset) {}

    reference operator*() const { return text_->text_[offset_]; }
    Iterator& operator++() {
      text_->consumed_ = ++offset_;
      return *this;
    }
    Iterator operator++(int) {
      const Iterator old = *this;
      ++*this;
      return old;
    }
    bool operator==(const Iterator& other) const { return offset_ == other.offset_; }

   private:
    TrackedText* text_;
    std::size_t offset_;
  };

  explicit TrackedText(std::string_view text) : text_(text) {}
  TrackedText(const TrackedText&) = delete;
  TrackedText& operator=(const TrackedText&) = delete;

  Iterator Begin() { return {this, 0}; }
  Iterator End() { return {this, text_.size()}; }

  // An offset past the end is the end.
  TextPosition PositionOf(std::size_t offset) const;

  // Where the token begins that the reader has just consumed: a string with its closing quote, a
  // bracket, or a word or number of which one more character may have been consumed.
  TextPosition StartOfString() const;
  TextPosition StartOfBracket() const;
  TextPosition StartOfWord() const;

 private:
  std::string_view text_;
  std::size_t consumed_ = 0;
  // The place asked for last: the next one is mostly not far behind it.
  mutable std::size_t knownOffset_ = 0;
  mutable TextPosition known_;
};

}  // namespace platform
