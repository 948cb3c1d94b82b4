// The platform that this program was built for.
#pragma once

#include <memory>

#include "platform/platform.h"

namespace platform {

// Builds every adapter of the build's backend from the environment and owns them, together with
// those who hold the platform's `owner`. Construction
// opens no display and writes nothing.
class Host {
 public:
  struct Impl;

  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  Platform& Get();

 private:
  std::shared_ptr<Impl> impl_;
  Platform platform_;
};

}  // namespace platform
