// A window as a screen reader gets to know it, and what it is told of changes.
#pragma once

#include <QAccessible>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QWidget>
#include <algorithm>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/windows/native_window.h"

namespace support {

inline std::string RoleName(QAccessible::Role role) {
  static const std::map<QAccessible::Role, std::string> kNames = {
      {QAccessible::Dialog, "dialog"},
      {QAccessible::AlertMessage, "alert"},
      {QAccessible::Chart, "chart"},
      {QAccessible::Button, "button"},
      {QAccessible::ButtonMenu, "menu button"},
      {QAccessible::CheckBox, "check box"},
      {QAccessible::RadioButton, "radio button"},
      {QAccessible::Link, "link"},
      {QAccessible::Slider, "slider"},
      {QAccessible::Dial, "dial"}};
  const auto found = kNames.find(role);
  return found != kNames.end() ? found->second : "role " + std::to_string(role);
}

inline std::string StatesOf(const QAccessible::State& state) {
  std::string text;
  const auto add = [&text](bool is, const char* word) {
    if (is) text += (text.empty() ? "" : " ") + std::string(word);
  };
  add(state.checkable && state.checked, "checked");
  add(state.checkable && !state.checked, "unchecked");
  add(!state.checkable && state.checked, "checked without being checkable");
  add(state.expandable && state.expanded, "expanded");
  add(state.expandable && state.collapsed, "collapsed");
  add(state.disabled, "disabled");
  add(state.invisible, "hidden");
  return text;
}

inline void Visit(QAccessibleInterface& parent,
                  const std::function<void(QAccessibleInterface&)>& visit) {
  for (int i = 0; i < parent.childCount(); ++i) {
    QAccessibleInterface* child = parent.child(i);
    if (child == nullptr) throw std::runtime_error("a child that is none");
    visit(*child);
    Visit(*child, visit);
  }
}

// The toolkit looks for assistive technology when it has nothing else to do.
inline bool WaitUntilActive() {
  constexpr int kMilliseconds = 10000;
  for (QDeadlineTimer patience(kMilliseconds); !QAccessible::isActive();) {
    if (patience.hasExpired()) return false;
    QCoreApplication::processEvents();
  }
  return true;
}

inline std::string KindOf(const QAccessibleEvent& event) {
  static const std::map<QAccessible::Event, std::string> kKinds = {
      {QAccessible::NameChanged, "name"},
      {QAccessible::DescriptionChanged, "description"},
      {QAccessible::ValueChanged, "value"},
      {QAccessible::ObjectShow, "shown"},
      {QAccessible::ObjectHide, "hidden"}};
  if (const auto found = kKinds.find(event.type()); found != kKinds.end()) return found->second;
  if (event.type() != QAccessible::StateChanged) return {};
  const QAccessible::State changed =
      static_cast<const QAccessibleStateChangeEvent&>(event).changedStates();
  if (changed.checked) return "check";
  if (changed.disabled) return "enabling";
  return changed.expanded ? "expansion" : "";
}

// One line: role, name, value, number with its range, states, in this form:
//   slider "Gain" "+3.0 dB" 3 of -12..12 [disabled]
inline std::string LineOf(QAccessibleInterface& element) {
  std::ostringstream line;
  line << RoleName(element.role()) << " \"" << element.text(QAccessible::Name).toStdString() << '"';
  const std::string value = element.text(QAccessible::Value).toStdString();
  if (!value.empty()) line << " \"" << value << '"';
  if (QAccessibleValueInterface* number = element.valueInterface()) {
    line << ' ' << number->currentValue().toDouble() << " of " << number->minimumValue().toDouble()
         << ".." << number->maximumValue().toDouble();
  }
  const std::string states = StatesOf(element.state());
  if (!states.empty()) line << " [" << states << ']';
  return line.str();
}

enum class Detail { None, Places };

// The tree of a window that is on the screen. Everything a test asks for must be there: what is not
// ends the test program's case with an exception.
class AccessibleTree {
 public:
  explicit AccessibleTree(platform::Window& window) : AccessibleTree(window.Native().native) {}
  // A menu or a box of the toolkit.
  explicit AccessibleTree(QWidget* widget) : root_(QAccessible::queryAccessibleInterface(widget)) {
    if (root_ == nullptr) throw std::runtime_error("the window has no interface");
  }

  QAccessibleInterface& Root() const { return *root_; }
  // All below the window's root, in the order of the tree; with places seen from the root (but for
  // the parts of a control) and descriptions.
  std::vector<std::string> Lines(Detail detail = Detail::None) const {
    std::vector<std::string> lines;
    Visit(*root_, [&](QAccessibleInterface& each) {
      std::ostringstream line;
      const QRect place = each.rect().translated(-root_->rect().topLeft());
      if (detail == Detail::Places && each.parent() == root_) {
        line << place.x() << ',' << place.y() << ' ' << place.width() << 'x' << place.height()
             << ' ';
      }
      line << LineOf(each);
      if (detail == Detail::Places) {
        line << " (" << each.text(QAccessible::Description).toStdString() << ')';
      }
      lines.push_back(line.str());
    });
    return lines;
  }
  QAccessibleInterface& Find(const std::string& name) const {
    QAccessibleInterface* found = nullptr;
    Visit(*root_, [&](QAccessibleInterface& each) {
      if (each.text(QAccessible::Name).toStdString() == name) found = &each;
    });
    if (found == nullptr) throw std::runtime_error("nothing is called " + name);
    return *found;
  }
  std::string Line(const std::string& name) const { return LineOf(Find(name)); }

  // Does the first thing that the element can do: presses, toggles.
  void Press(const std::string& name) const {
    QAccessibleActionInterface* actions = Find(name).actionInterface();
    if (actions == nullptr || actions->actionNames().isEmpty()) {
      throw std::runtime_error("nothing to press: " + name);
    }
    actions->doAction(actions->actionNames().first());
  }
  void Set(const std::string& name, double value) const {
    QAccessibleValueInterface* number = Find(name).valueInterface();
    if (number == nullptr) throw std::runtime_error("no number: " + name);
    number->setCurrentValue(value);
  }

 private:
  QAccessibleInterface* root_;
};

// While it lives, it notes what assistive technology is told: name, description, value, check,
// enabling or expansion of what has changed, or that it is shown or hidden, a colon, and its line.
class Listener {
 public:
  Listener() {
    if (!WaitUntilActive()) throw std::runtime_error("nobody listens: use with_listener.sh");
    current_ = this;
    before_ = QAccessible::installUpdateHandler(&Listener::OnEvent);
  }
  ~Listener() {
    QAccessible::installUpdateHandler(before_);
    current_ = nullptr;
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::vector<std::string> Take() { return std::exchange(heard_, {}); }
  // Whether the line was heard since the last Take.
  bool Heard(const std::string& line) const {
    return std::find(heard_.begin(), heard_.end(), line) != heard_.end();
  }

 private:
  // A screen reader looks at whatever it hears of, so this does too.
  static void OnEvent(QAccessibleEvent* event) {
    QAccessibleInterface* element = event->accessibleInterface();
    if (element == nullptr) return;
    const std::string line = LineOf(*element);
    const std::string kind = KindOf(*event);
    if (!kind.empty()) current_->heard_.push_back(kind + ": " + line);
  }

  static inline Listener* current_ = nullptr;
  QAccessible::UpdateHandler before_;
  std::vector<std::string> heard_;
};

}  // namespace support
