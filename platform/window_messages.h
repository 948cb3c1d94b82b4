// Window messages and their parameters, with the original platform's numbers.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace platform {

// Names a window across threads; 0 is none. A handle names no other window while messages to it may
// be on their way.
using WindowHandle = std::uintptr_t;
using WParam = std::uintptr_t;
using LParam = std::intptr_t;
using LResult = std::intptr_t;

namespace message {
inline constexpr std::uint32_t kDestroy = 0x0002;
inline constexpr std::uint32_t kPaint = 0x000F;
inline constexpr std::uint32_t kClose = 0x0010;
inline constexpr std::uint32_t kEraseBackground = 0x0014;  // wParam: Graphics* or 0
inline constexpr std::uint32_t kQueryDragIcon = 0x0037;
inline constexpr std::uint32_t kNonClientHitTest = 0x0084;  // lParam: screen point; HitTest result
inline constexpr std::uint32_t kSetCheck = 0x00F1;
inline constexpr std::uint32_t kGetCheck = 0x00F0;
inline constexpr std::uint32_t kInitDialog = 0x0110;
inline constexpr std::uint32_t kCommand = 0x0111;  // wParam: MakeWParam(id, notification)
inline constexpr std::uint32_t kSystemCommand = 0x0112;
inline constexpr std::uint32_t kTimer = 0x0113;      // wParam: timer id
inline constexpr std::uint32_t kMouseMove = 0x0200;  // lParam of mouse messages: client point
inline constexpr std::uint32_t kLeftButtonDown = 0x0201;
inline constexpr std::uint32_t kLeftButtonUp = 0x0202;
inline constexpr std::uint32_t kUser = 0x0400;
}  // namespace message

enum class HitTest : LResult { Client = 1, Caption = 2, SystemMenu = 3 };

inline constexpr std::int32_t kIdOk = 1;
inline constexpr std::int32_t kIdCancel = 2;
inline constexpr std::int32_t kIdYes = 6;
inline constexpr std::int32_t kIdNo = 7;

// Entries that the system menu has by itself, as kSystemCommand tells them.
inline constexpr std::uint16_t kSystemMinimize = 0xF020;
inline constexpr std::uint16_t kSystemClose = 0xF060;

inline constexpr std::uint16_t kNotifyClicked = 0;  // a button or check box was clicked

inline constexpr WParam MakeWParam(std::uint16_t low, std::uint16_t high) {
  return static_cast<WParam>(low) | (static_cast<WParam>(high) << 16U);
}
inline constexpr std::uint16_t LowWord(WParam value) {
  return static_cast<std::uint16_t>(value & 0xFFFFU);
}
inline constexpr std::uint16_t HighWord(WParam value) {
  return static_cast<std::uint16_t>((value >> 16U) & 0xFFFFU);
}

// Mouse and hit-test points travel in lParam as two signed 16-bit numbers.
inline constexpr LParam PointToLParam(Point point) {
  const auto x = static_cast<std::uint16_t>(static_cast<std::int16_t>(point.x));
  const auto y = static_cast<std::uint16_t>(static_cast<std::int16_t>(point.y));
  return static_cast<LParam>(static_cast<std::uint32_t>(x) |
                             (static_cast<std::uint32_t>(y) << 16U));
}
inline constexpr Point PointFromLParam(LParam value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return {static_cast<std::int16_t>(bits & 0xFFFFU), static_cast<std::int16_t>(bits >> 16U)};
}

}  // namespace platform
