#include "tests/accessible/accessible_tree.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

#include "platform/linux/windows/native_window.h"

namespace support {
namespace {

std::string RoleName(QAccessible::Role role) {
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

std::string StatesOf(const QAccessible::State& state) {
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

void Visit(QAccessibleInterface& parent, const std::function<void(QAccessibleInterface&)>& visit) {
  for (int i = 0; i < parent.childCount(); ++i) {
    QAccessibleInterface* child = parent.child(i);
    if (child == nullptr) throw std::runtime_error("a child that is none");
    visit(*child);
    Visit(*child, visit);
  }
}

// The toolkit looks for assistive technology when it has nothing else to do.
bool WaitUntilActive() {
  constexpr int kMilliseconds = 10000;
  for (QDeadlineTimer patience(kMilliseconds); !QAccessible::isActive();) {
    if (patience.hasExpired()) return false;
    QCoreApplication::processEvents();
  }
  return true;
}

std::string KindOf(const QAccessibleEvent& event) {
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

}  // namespace

std::string LineOf(QAccessibleInterface& element) {
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

AccessibleTree::AccessibleTree(platform::Window& window) : AccessibleTree(window.Native().native) {}

AccessibleTree::AccessibleTree(QWidget* widget)
    : root_(QAccessible::queryAccessibleInterface(widget)) {
  if (root_ == nullptr) throw std::runtime_error("the window has no interface");
}

std::vector<std::string> AccessibleTree::Lines(Detail detail) const {
  std::vector<std::string> lines;
  Visit(*root_, [&](QAccessibleInterface& each) {
    std::ostringstream line;
    const QRect place = each.rect().translated(-root_->rect().topLeft());
    if (detail == Detail::Places && each.parent() == root_) {
      line << place.x() << ',' << place.y() << ' ' << place.width() << 'x' << place.height() << ' ';
    }
    line << LineOf(each);
    if (detail == Detail::Places) {
      line << " (" << each.text(QAccessible::Description).toStdString() << ')';
    }
    lines.push_back(line.str());
  });
  return lines;
}

QAccessibleInterface& AccessibleTree::Find(const std::string& name) const {
  QAccessibleInterface* found = nullptr;
  Visit(*root_, [&](QAccessibleInterface& each) {
    if (each.text(QAccessible::Name).toStdString() == name) found = &each;
  });
  if (found == nullptr) throw std::runtime_error("nothing is called " + name);
  return *found;
}

void AccessibleTree::Press(const std::string& name) const {
  QAccessibleActionInterface* actions = Find(name).actionInterface();
  if (actions == nullptr || actions->actionNames().isEmpty()) {
    throw std::runtime_error("nothing to press: " + name);
  }
  actions->doAction(actions->actionNames().first());
}

void AccessibleTree::Set(const std::string& name, double value) const {
  QAccessibleValueInterface* number = Find(name).valueInterface();
  if (number == nullptr) throw std::runtime_error("no number: " + name);
  number->setCurrentValue(value);
}

Listener::Listener() {
  if (!WaitUntilActive()) throw std::runtime_error("nobody listens: use with_listener.sh");
  current_ = this;
  before_ = QAccessible::installUpdateHandler(&Listener::OnEvent);
}

Listener::~Listener() {
  QAccessible::installUpdateHandler(before_);
  current_ = nullptr;
}

bool Listener::Heard(const std::string& line) const {
  return std::find(heard_.begin(), heard_.end(), line) != heard_.end();
}

// A screen reader looks at whatever it hears of, so this does too.
void Listener::OnEvent(QAccessibleEvent* event) {
  QAccessibleInterface* element = event->accessibleInterface();
  if (element == nullptr) return;
  const std::string line = LineOf(*element);
  const std::string kind = KindOf(*event);
  if (!kind.empty()) current_->heard_.push_back(kind + ": " + line);
}

}  // namespace support
