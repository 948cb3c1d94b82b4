#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <algorithm>

#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/qt_text.h"
#include "platform/linux/windows/window_icon.h"
#include "platform/linux/windows/window_table.h"
#include "platform/linux/windows/x11.h"
#include "platform/shell.h"
#include "resources/resource_ids.h"

namespace platform {
namespace {

// A question that only its buttons answer.
class QuestionBox : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void closeEvent(QCloseEvent* event) override { event->ignore(); }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Escape) QMessageBox::keyPressEvent(event);
  }
};

void SetUp(QMessageBox& box, std::u16string_view text, std::u16string_view caption) {
  box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                     Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
  if (box.parentWidget() == nullptr) {
    box.setWindowIcon(LoadWindowIcon(resources::kApplicationIcon));
  }
  box.setWindowTitle(ToQString(caption));
  box.setTextFormat(Qt::PlainText);
  box.setText(ToQString(text));
}

std::int32_t AskYesNo(QWidget* owner, std::u16string_view text, std::u16string_view caption) {
  QuestionBox box(owner);
  SetUp(box, text, caption);
  box.setIcon(QMessageBox::Question);
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes ? kIdYes : kIdNo;
}

}  // namespace

std::int32_t ShowMessageBox(WindowHandle owner, std::u16string_view text,
                            std::u16string_view caption, MessageBoxKind kind) {
  QWidget* parent = WindowTable::Instance().Find(owner);
  if (kind == MessageBoxKind::YesNoDefaultNo) return AskYesNo(parent, text, caption);
  QMessageBox box(parent);
  SetUp(box, text, caption);
  box.setStandardButtons(QMessageBox::Ok);
  if (kind == MessageBoxKind::SystemError) {
    box.setIcon(QMessageBox::Critical);
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    box.show();
    box.raise();
    if (!x11::Activate(box.winId())) box.activateWindow();
  } else {
    box.setIcon(QMessageBox::Warning);
  }
  box.exec();
  return kIdOk;
}

// Between two windows, and while another program is in front, the toolkit knows of no active one;
// the one that was made last is where the person left off.
WindowHandle ActiveWindow() {
  if (const auto* active = dynamic_cast<NativeWindow*>(QApplication::activeWindow())) {
    return active->Handle();
  }
  WindowHandle newest = 0;
  const QWidgetList widgets = QApplication::topLevelWidgets();
  for (const QWidget* widget : widgets) {
    const auto* window = dynamic_cast<const NativeWindow*>(widget);
    if (window != nullptr && window->isVisible()) newest = std::max(newest, window->Handle());
  }
  return newest;
}

}  // namespace platform
