// One running copy for each session, by a named mutex; its windows are found by their titles.
#pragma once

#include <span>
#include <string_view>

#include "platform/single_instance.h"

namespace platform {

class MutexInstance : public SingleInstance {
 public:
  bool Acquire(std::u16string_view name) override;
  bool BringRunningCopyForward(std::span<const std::u16string_view> titles) override;
};

}  // namespace platform
