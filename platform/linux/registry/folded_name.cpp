#include "platform/linux/registry/folded_name.h"

#include "platform/text.h"

namespace platform {

FoldedName::FoldedName(std::u16string_view name) {
  std::size_t length = 0;
  if (name.size() <= kShort) {
    for (; length < name.size() && name[length] < 0x80; ++length) {
      const auto unit = static_cast<char>(name[length]);
      short_[length] = unit >= 'a' && unit <= 'z' ? static_cast<char>(unit - 'a' + 'A') : unit;
    }
  }
  if (length == name.size()) {
    utf8_ = {short_.data(), length};
    return;
  }
  long_ = ToUtf8(FoldCase(name));
  utf8_ = long_;
}

}  // namespace platform
