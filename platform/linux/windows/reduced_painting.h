// Pictures of windows on a screen that is coarser than the one whose pixels the program works in.
#pragma once

#include <QImage>
#include <QObject>
#include <QWidget>
#include <map>

namespace platform {

// The toolkit enlarges what it paints for a denser screen, but does not reduce it for a coarser
// one: there every widget would be painted in its full size into too small a room. While this
// lives, such windows are painted as a whole aside, and their widgets show their parts of the
// reduced picture. Everywhere else it does nothing.
class ReducedPainting : public QObject {
 public:
  // Watches all widgets of the application object, which must be there.
  ReducedPainting();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Renders the window aside, then lets the toolkit bring the picture to the screen.
  void Refresh(QWidget& window, QEvent& request);
  // The widget's part of the reduced picture.
  void DrawPicture(QWidget& widget, const QWidget& window) const;

  enum class Phase { Idle, Rendering, Showing };
  Phase phase_ = Phase::Idle;
  std::map<const QWidget*, QImage> pictures_;
};

}  // namespace platform
