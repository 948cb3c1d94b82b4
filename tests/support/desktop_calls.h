// How a test program that Wine runs works on the desktop: its calls go as lines of JSON to a server
// on this machine. [method, argument...] is answered by the result alone.
#pragma once

#include <nlohmann/json.hpp>

#include "tests/support/x11_desktop.h"

namespace support {

// Names the server's port.
inline constexpr const char* kDesktopPort = "TONALYX_DESKTOP_PORT";

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ScreenRect, x, y, width, height)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ScreenPoint, x, y)

}  // namespace support

template <>
struct nlohmann::adl_serializer<std::chrono::milliseconds> {
  static void to_json(json& number, std::chrono::milliseconds time) { number = time.count(); }
  static void from_json(const json& number, std::chrono::milliseconds& time) {
    time = std::chrono::milliseconds(number.get<std::int64_t>());
  }
};

template <>
struct nlohmann::adl_serializer<std::optional<support::ScreenRect>> {
  static void to_json(json& value, const std::optional<support::ScreenRect>& rect) {
    value = rect ? json(*rect) : json();
  }
  static void from_json(const json& value, std::optional<support::ScreenRect>& rect) {
    rect = value.is_null() ? std::nullopt : std::optional(value.get<support::ScreenRect>());
  }
};
