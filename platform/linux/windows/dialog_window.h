// The window of a dialog: its modal loop, its keys, its place and its system menu. The kinds of
// frames derive from it.
#pragma once

#include <QEventLoop>
#include <string>
#include <vector>

#include "platform/dialog_template.h"
#include "platform/linux/windows/native_window.h"

namespace platform {

class DialogWindow : public NativeWindow {
 public:
  enum class Placement { OnScreen, OnOwner };

  DialogWindow(Window& window, QWidget* owner, Qt::WindowFlags flags, std::uint16_t id);

  // Runs until `End`; at once over when it was called before.
  void RunModal();
  void End();
  bool HasEnded() const { return ended_; }

  // What the frame does with the window before it is shown for the first time.
  virtual void PlaceBeforeShow() {}
  void ShowActive();

  // Entries that follow the usual ones; a separator has no text.
  void AppendSystemMenu(std::uint16_t command, std::u16string text);
  void OpenSystemMenu(const QPoint& screen);
  // When the event in progress has been handled.
  void OpenSystemMenuLater(const QPoint& screen);

  void SetSize(const QSize& size) override { setFixedSize(size); }
  void SetText(std::u16string_view text) override;
  std::u16string Text() const override;

 protected:
  void Centre(Placement placement);
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct SystemMenuEntry {
    std::uint16_t command;
    std::u16string text;
  };

  QEventLoop loop_;
  bool ended_ = false;
  std::vector<SystemMenuEntry> systemMenu_;
};

}  // namespace platform
