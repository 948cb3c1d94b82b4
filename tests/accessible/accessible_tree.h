// A window as a screen reader gets to know it, and what it is told of changes.
#pragma once

#include <QAccessible>
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

#include "platform/window.h"

namespace support {

// One line: role, name, value, number with its range, states, in this form:
//   slider "Gain" "+3.0 dB" 3 of -12..12 [disabled]
std::string LineOf(QAccessibleInterface& element);

enum class Detail { None, Places };

// The tree of a window that is on the screen. Everything a test asks for must be there: what is not
// ends the test program's case with an exception.
class AccessibleTree {
 public:
  explicit AccessibleTree(platform::Window& window);
  // A menu or a box of the toolkit.
  explicit AccessibleTree(QWidget* widget);

  QAccessibleInterface& Root() const { return *root_; }
  // All below the window's root, in the order of the tree; with places seen from the root (but for
  // the parts of a control) and descriptions.
  std::vector<std::string> Lines(Detail detail = Detail::None) const;
  QAccessibleInterface& Find(const std::string& name) const;
  std::string Line(const std::string& name) const { return LineOf(Find(name)); }

  // Does the first thing that the element can do: presses, toggles.
  void Press(const std::string& name) const;
  void Set(const std::string& name, double value) const;

 private:
  QAccessibleInterface* root_;
};

// While it lives, it notes what assistive technology is told: name, description, value, check,
// enabling or expansion of what has changed, or that it is shown or hidden, a colon, and its line.
class Listener {
 public:
  Listener();
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::vector<std::string> Take() { return std::exchange(heard_, {}); }
  // Whether the line was heard since the last Take.
  bool Heard(const std::string& line) const;

 private:
  static void OnEvent(QAccessibleEvent* event);

  static inline Listener* current_ = nullptr;
  QAccessible::UpdateHandler before_;
  std::vector<std::string> heard_;
};

}  // namespace support
