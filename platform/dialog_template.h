// Dialog templates and menus as plain tables. A system that has such resources by number finds them
// in the program file: CMake compiles the headers with the tables (resources/windows/,
// tonalyx_dialogs).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace platform {

enum class DialogFrame {
  Layered,   // no frame; every pixel with its alpha comes from Dialog::UpdateLayered
  Skinned,   // no caption, thin border inside the client area, centred, shown in the task bar
  Captioned  // the system's own caption, fixed size, centred on the owner
};

enum class ControlKind { Custom, PushButton, DefaultPushButton, CheckBox, Text, Icon };

// Position and size in dialog units. What a person can work is reached by the tab key, in the order
// of the table, when it is one of the system's kinds; a custom control takes no focus.
struct DialogControl {
  std::uint16_t id;
  ControlKind kind;
  std::u16string_view text;
  std::int16_t x;
  std::int16_t y;
  std::int16_t width;
  std::int16_t height;
  std::u16string_view windowClass = {};  // of a custom control, never empty there
  std::uint16_t icon = 0;                // resource of an icon
};

struct DialogTemplate {
  std::uint16_t id;
  DialogFrame frame;
  std::int16_t width;
  std::int16_t height;
  std::u16string_view title;
  std::u16string_view fontFamily;
  std::int16_t fontPoints;
  std::span<const DialogControl> controls;
};

// "&" marks the mnemonic; a row without text is a separator.
struct MenuItem {
  std::uint16_t command;
  std::u16string_view text;
};

struct PopupMenu {
  std::uint16_t id;
  std::span<const MenuItem> items;
};

}  // namespace platform
