#include "platform/registry_rules.h"

#include <cstring>

namespace platform {

std::optional<std::vector<std::u16string_view>> SplitRegistryPath(std::u16string_view path) {
  std::vector<std::u16string_view> parts;
  while (true) {
    const std::size_t end = path.find(u'\\');
    const std::u16string_view part = path.substr(0, end);
    if (part.empty() || part.size() > kRegistryKeyNameLimit) return std::nullopt;
    parts.push_back(part);
    if (end == std::u16string_view::npos) return parts;
    path.remove_prefix(end + 1);
  }
}

RegistryStatus CopyRegistryValue(std::span<const std::byte> value, void* data,
                                 std::uint32_t* size) {
  if (size == nullptr) {
    return data == nullptr ? RegistryStatus::Success : RegistryStatus::InvalidParameter;
  }
  const bool fits = *size >= value.size();
  *size = static_cast<std::uint32_t>(value.size());
  if (data == nullptr) return RegistryStatus::Success;
  if (!fits) return RegistryStatus::MoreData;
  if (!value.empty()) std::memcpy(data, value.data(), value.size());
  return RegistryStatus::Success;
}

}  // namespace platform
