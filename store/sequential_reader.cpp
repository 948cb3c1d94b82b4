#include "store/sequential_reader.h"

#include <algorithm>

namespace store {

SequentialReader::SequentialReader(platform::File& file, std::size_t bufferSize)
    : file_(file), buffer_(bufferSize) {}

bool SequentialReader::Read(std::span<std::byte> bytes) {
  while (!bytes.empty()) {
    if (unread_.empty() && !Refill()) return false;
    const std::size_t count = std::min(bytes.size(), unread_.size());
    std::ranges::copy(unread_.first(count), bytes.begin());
    unread_ = unread_.subspan(count);
    bytes = bytes.subspan(count);
  }
  return true;
}

bool SequentialReader::Refill() {
  std::size_t count = 0;
  if (!file_.Read(buffer_, &count) || count == 0) return false;
  unread_ = std::span(buffer_).first(count);
  return true;
}

}  // namespace store
