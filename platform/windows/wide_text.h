// The system's own text: 16-bit units too, but of another type.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

inline std::wstring ToWide(std::u16string_view text) {
  return {text.begin(), text.end()};
}

inline std::u16string FromWide(std::wstring_view text) {
  return {text.begin(), text.end()};
}

// A name as the system's calls take it; nothing when a NUL would cut it short.
inline std::optional<std::wstring> ToWideName(std::u16string_view name) {
  if (name.find(u'\0') != std::u16string_view::npos) return std::nullopt;
  return ToWide(name);
}

}  // namespace platform
