// Access lists from their text form.
#pragma once

#include <windows.h>

#include <string_view>

#include "platform/windows/handle.h"

namespace platform {

// None when the text is no descriptor.
using SecurityDescriptor = OwnedHandle<PSECURITY_DESCRIPTOR, &LocalFree>;
SecurityDescriptor ParseSecurityDescriptor(std::u16string_view sddl);

// The descriptor's list, which lives as long as it; null when it has none.
PACL AccessListOf(const SecurityDescriptor& descriptor);

}  // namespace platform
