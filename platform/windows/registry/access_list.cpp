#include "platform/windows/registry/access_list.h"

#include <sddl.h>

#include "platform/registry.h"
#include "platform/windows/wide_text.h"

namespace platform {

SecurityDescriptor ParseSecurityDescriptor(std::u16string_view sddl) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorW(ToWide(sddl).c_str(), SDDL_REVISION_1,
                                                       &descriptor, nullptr);
  return SecurityDescriptor(descriptor);
}

PACL AccessListOf(const SecurityDescriptor& descriptor) {
  BOOL present = FALSE;
  BOOL defaulted = FALSE;
  PACL list = nullptr;
  if (!descriptor.IsOpen() ||
      GetSecurityDescriptorDacl(descriptor.Get(), &present, &list, &defaulted) == FALSE ||
      present == FALSE) {
    return nullptr;
  }
  return list;
}

bool IsAccessList(std::u16string_view sddl) {
  return AccessListOf(ParseSecurityDescriptor(sddl)) != nullptr;
}

}  // namespace platform
