// GUIDs made from names, so that the same name has the same GUID on every machine and day.
#pragma once

#include <string_view>

#include "platform/guid.h"

namespace platform {

// UUID version 5 (RFC 4122, SHA-1) of a name within a name space.
Guid NameToGuid(const Guid& nameSpace, std::string_view name);

}  // namespace platform
