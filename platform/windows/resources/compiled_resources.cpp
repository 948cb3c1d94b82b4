#include <windows.h>

#include "platform/little_endian.h"
#include "platform/resources.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

std::span<const std::byte> Find(const wchar_t* type, std::uint16_t id) {
  const HMODULE program = GetModuleHandleW(nullptr);
  const HRSRC found = FindResourceW(program, MAKEINTRESOURCEW(id), type);
  if (found == nullptr) return {};
  const auto* const bytes =
      static_cast<const std::byte*>(LockResource(LoadResource(program, found)));
  if (bytes == nullptr) return {};
  return {bytes, SizeofResource(program, found)};
}

// An icon is a directory of images with numbers of their own.
std::uint16_t FirstImageOf(std::span<const std::byte> directory) {
  constexpr std::size_t kNumber = 18;  // after the head and what the first entry says of its image
  if (directory.size() < kNumber + sizeof(std::uint16_t)) return 0;
  return FromLittleEndian<std::uint16_t>(directory.subspan<kNumber, sizeof(std::uint16_t)>());
}

}  // namespace

std::span<const std::byte> FindResourceData(ResourceType type, std::uint16_t id) {
  switch (type) {
    case ResourceType::Png:
      return Find(L"PNG", id);
    case ResourceType::Bitmap:
      return Find(L"PNGBITMAP", id);
    case ResourceType::Icon:
      return Find(RT_ICON, FirstImageOf(Find(RT_GROUP_ICON, id)));
  }
  return {};
}

std::u16string LoadStringResource(std::uint16_t id) {
  const wchar_t* text = nullptr;
  // With room for none it tells where the text lies in the program file.
  const int length =
      LoadStringW(GetModuleHandleW(nullptr), id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? FromWide({text, static_cast<std::size_t>(length)}) : std::u16string();
}

}  // namespace platform
