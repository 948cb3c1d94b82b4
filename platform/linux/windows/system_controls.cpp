#include "platform/linux/windows/system_controls.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "platform/linux/windows/qt_text.h"
#include "platform/linux/windows/window_icon.h"

namespace platform {
namespace {

QPushButton* MakePushButton(DialogWindow& dialog, const DialogControl& control) {
  auto* button = new QPushButton(ToQString(control.text), &dialog);
  button->setDefault(control.kind == ControlKind::DefaultPushButton);
  QObject::connect(button, &QPushButton::clicked, &dialog, [&dialog, id = control.id] {
    dialog.Deliver(message::kCommand, MakeWParam(id, kNotifyClicked), 0);
  });
  return button;
}

QLabel* MakeIcon(DialogWindow& dialog, std::uint16_t icon, const QRect& place) {
  auto* label = new QLabel(&dialog);
  const int side = std::min(place.width(), place.height());
  label->setPixmap(LoadWindowIcon(icon).pixmap(side, side));
  return label;
}

QWidget* MakeWidget(DialogWindow& dialog, const DialogControl& control, const QRect& place) {
  switch (control.kind) {
    case ControlKind::PushButton:
    case ControlKind::DefaultPushButton:
      return MakePushButton(dialog, control);
    case ControlKind::CheckBox:
      return new QCheckBox(ToQString(control.text), &dialog);
    case ControlKind::Text:
      return new QLabel(ToQString(control.text), &dialog);
    case ControlKind::Icon:
      return MakeIcon(dialog, control.icon, place);
    case ControlKind::Custom:
      break;
  }
  return nullptr;
}

}  // namespace

void MakeSystemControl(DialogWindow& dialog, const DialogControl& control, const QRect& place,
                       const QFont& font) {
  QWidget* widget = MakeWidget(dialog, control, place);
  if (widget == nullptr) return;
  widget->setFont(font);
  widget->setGeometry(place);
}

}  // namespace platform
