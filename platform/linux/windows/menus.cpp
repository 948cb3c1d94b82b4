#include "platform/linux/windows/menus.h"

#include <QMenu>

#include "platform/linux/windows/qt_text.h"

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
  // What assistive technology chooses is triggered, but the menu neither closes nor answers it.
  const QAction* triggered = nullptr;
  QObject::connect(&menu, &QMenu::triggered, &menu, [&](const QAction* action) {
    triggered = action;
    menu.close();
  });
  const QAction* chosen = menu.exec(screen);
  if (chosen == nullptr) chosen = triggered;
  return chosen != nullptr ? static_cast<std::uint16_t>(chosen->data().toUInt()) : 0;
}

}  // namespace platform
