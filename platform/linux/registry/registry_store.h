// What the registry and its opened keys share.
#pragma once

#include <filesystem>
#include <utility>

#include "platform/linux/registry/registry_files.h"
#include "platform/linux/registry/registry_sessions.h"
#include "platform/linux/registry/registry_watch.h"

namespace platform {

struct RegistryStore {
  explicit RegistryStore(std::filesystem::path folder)
      : files(std::move(folder)), sessions(files), watch(files) {}

  RegistryFiles files;
  RegistrySessions sessions;
  RegistryWatch watch;
};

}  // namespace platform
