// Popup menus.
#pragma once

#include <QPoint>
#include <QWidget>
#include <span>

#include "platform/dialog_template.h"

namespace platform {

// The command of the chosen entry, 0 when none was chosen.
std::uint16_t RunPopupMenu(QWidget& owner, std::span<const MenuItem> items, const QPoint& screen);

}  // namespace platform
