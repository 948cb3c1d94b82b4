// How boxes, menus and file dialogs of the toolkit look beside the dark skins.
#pragma once

#include <QFont>
#include <string_view>

namespace platform {

void ApplyTheme();

// For widgets of the toolkit, in the screen's resolution.
QFont ToolkitFont(std::u16string_view family, int points);

}  // namespace platform
