#include "platform/linux/menus.h"

#include <QMenu>

#include "platform/linux/qt_text.h"

namespace platform {

std::uint16_t RunPopupMenu(QWidget& owner, std::span<const MenuItem> items, const QPoint& screen) {
  QMenu menu(&owner);
  for (const MenuItem& item : items) {
    if (item.text.empty()) {
      menu.addSeparator();
    } else {
      menu.addAction(ToQString(item.text))->setData(item.command);
    }
  }
  const QAction* chosen = menu.exec(screen);
  return chosen != nullptr ? static_cast<std::uint16_t>(chosen->data().toUInt()) : 0;
}

}  // namespace platform
