#pragma once

#include <windows.h>

#include "platform/registry.h"

namespace platform {

// What the system answers when a key is deleted under an open handle is FileNotFound here.
inline RegistryStatus ToRegistryStatus(LSTATUS status) {
  return status == ERROR_KEY_DELETED ? RegistryStatus::FileNotFound
                                     : static_cast<RegistryStatus>(status);
}

}  // namespace platform
