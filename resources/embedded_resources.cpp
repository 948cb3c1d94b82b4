#include <algorithm>
#include <array>

#include "platform/resources.h"
#include "resources/icon_images.h"
#include "resources/templates.h"

#include "resources/embedded_declarations.inc"

namespace platform {
namespace {

struct EmbeddedFile {
  ResourceType type;
  std::uint16_t id;
  const std::byte* begin;
  const std::byte* end;

  std::span<const std::byte> Bytes() const { return {begin, end}; }
};

const auto kFiles = std::to_array<EmbeddedFile>({
#include "resources/embedded_rows.inc"
});

}  // namespace

std::span<const std::byte> FindResourceData(ResourceType type, std::uint16_t id) {
  const auto* found = std::find_if(kFiles.begin(), kFiles.end(), [&](const EmbeddedFile& file) {
    return file.type == type && file.id == id;
  });
  return found == kFiles.end() ? std::span<const std::byte>() : found->Bytes();
}

std::u16string LoadStringResource(std::uint16_t id) {
  for (const resources::StringEntry& entry : resources::kStringTable) {
    if (entry.id == id) return std::u16string(entry.text);
  }
  return {};
}

}  // namespace platform

namespace resources {

std::vector<std::span<const std::byte>> IconImages(std::uint16_t id) {
  std::vector<std::span<const std::byte>> images;
  for (const platform::EmbeddedFile& file : platform::kFiles) {
    if (file.type == platform::ResourceType::Icon && file.id == id) images.push_back(file.Bytes());
  }
  return images;
}

}  // namespace resources
