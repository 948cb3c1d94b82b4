// Property keys in the system's form.
#pragma once

#include <windows.h>

// Needs the one above.
#include <wtypes.h>

#include <bit>

#include "platform/audio_devices.h"

namespace platform {

inline PROPERTYKEY ToSystem(const PropertyKey& key) {
  return {std::bit_cast<GUID>(key.format), key.id};
}

inline PropertyKey FromSystem(const PROPERTYKEY& key) {
  return {std::bit_cast<Guid>(key.fmtid), key.pid};
}

}  // namespace platform
