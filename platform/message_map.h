// The table by which a window class names the handler of each message that it handles.
#pragma once

#include <optional>
#include <span>

#include "platform/window_messages.h"

namespace platform {

// One row: a message, for kCommand also the control or menu id and the notification code, and the
// member that handles it.
template <class WindowClass>
struct MessageMapEntry {
  std::uint32_t message;
  std::uint16_t id;
  std::uint16_t notification;
  LResult (WindowClass::*handler)(WParam wParam, LParam lParam);
};

template <class WindowClass>
constexpr MessageMapEntry<WindowClass> OnMessage(std::uint32_t message,
                                                 LResult (WindowClass::*handler)(WParam, LParam)) {
  return {message, 0, 0, handler};
}

template <class WindowClass>
constexpr MessageMapEntry<WindowClass> OnControl(std::uint16_t id, std::uint16_t notification,
                                                 LResult (WindowClass::*handler)(WParam, LParam)) {
  return {message::kCommand, id, notification, handler};
}

// The handler's result, or nothing when the table has no row for the message.
template <class WindowClass>
std::optional<LResult> DispatchMessageMap(WindowClass& window,
                                          std::span<const MessageMapEntry<WindowClass>> map,
                                          std::uint32_t message, WParam wParam, LParam lParam) {
  for (const MessageMapEntry<WindowClass>& entry : map) {
    if (entry.message != message) continue;
    if (message == message::kCommand &&
        (entry.id != LowWord(wParam) || entry.notification != HighWord(wParam))) {
      continue;
    }
    return (window.*entry.handler)(wParam, lParam);
  }
  return std::nullopt;
}

}  // namespace platform
