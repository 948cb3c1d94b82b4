// A single-instance lock for programs that are not the product.
#pragma once

#include "platform/single_instance.h"

namespace support {

class NoInstance : public platform::SingleInstance {
 public:
  bool Acquire(std::u16string_view) override { return true; }
  bool BringRunningCopyForward(std::span<const std::u16string_view>) override { return false; }
};

}  // namespace support
