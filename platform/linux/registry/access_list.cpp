#include "platform/registry.h"

namespace platform {

// The store leaves permissions to the file system and keeps the text for those who ask for it, so
// nothing in it is looked at but that it is a list.
bool IsAccessList(std::u16string_view sddl) {
  return sddl.starts_with(u"D:");
}

}  // namespace platform
