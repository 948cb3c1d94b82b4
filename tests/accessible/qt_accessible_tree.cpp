// Windows as the toolkit shows them to assistive technology.
#include <QAccessible>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QWidget>
#include <QWindow>
#include <map>
#include <sstream>

#include "platform/linux/windows/native_window.h"
#include "tests/accessible/accessible_tree.h"

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
  AddState(text, state.checkable && state.checked, "checked");
  AddState(text, state.checkable && !state.checked, "unchecked");
  AddState(text, !state.checkable && state.checked, "checked without being checkable");
  AddState(text, state.expandable && state.expanded, "expanded");
  AddState(text, state.expandable && state.collapsed, "collapsed");
  AddState(text, state.disabled, "disabled");
  AddState(text, state.invisible, "hidden");
  return text;
}

class Element : public AccessibleElement {
 public:
  explicit Element(QAccessibleInterface& element) : element_(element) {}

  AccessibleNode Tell() const override {
    std::ostringstream range;
    if (QAccessibleValueInterface* number = element_.valueInterface()) {
      range << number->currentValue().toDouble() << " of " << number->minimumValue().toDouble()
            << ".." << number->maximumValue().toDouble();
    }
    const QRect rect = element_.rect();
    return {.role = RoleName(element_.role()),
            .name = element_.text(QAccessible::Name).toStdString(),
            .value = element_.text(QAccessible::Value).toStdString(),
            .number = range.str(),
            .states = StatesOf(element_.state()),
            .description = element_.text(QAccessible::Description).toStdString(),
            .place = {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()},
            .isPart = element_.object() == nullptr};
  }
  void Press() override {
    QAccessibleActionInterface* actions = element_.actionInterface();
    if (actions == nullptr || actions->actionNames().isEmpty()) {
      throw std::runtime_error("nothing to press");
    }
    actions->doAction(actions->actionNames().first());
  }
  void Set(double value) override {
    QAccessibleValueInterface* number = element_.valueInterface();
    if (number == nullptr) throw std::runtime_error("no number");
    number->setCurrentValue(value);
  }

 private:
  QAccessibleInterface& element_;
};

void Collect(QAccessibleInterface* element,
             std::vector<std::unique_ptr<AccessibleElement>>& elements) {
  if (element == nullptr) throw std::runtime_error("a window or a child that is none");
  elements.push_back(std::make_unique<Element>(*element));
  for (int i = 0; i < element->childCount(); ++i) Collect(element->child(i), elements);
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

// The toolkit looks for assistive technology when it has nothing else to do.
bool WaitUntilActive() {
  constexpr int kMilliseconds = 10000;
  for (QDeadlineTimer patience(kMilliseconds); !QAccessible::isActive();) {
    if (patience.hasExpired()) return false;
    QCoreApplication::processEvents();
  }
  return true;
}

class Source : public ChangeSource {
 public:
  explicit Source(OnChange onChange) : onChange_(std::move(onChange)) {
    if (!WaitUntilActive()) throw std::runtime_error("nobody listens: use with_listener.sh");
    current_ = this;
    before_ = QAccessible::installUpdateHandler(&Source::OnEvent);
  }
  ~Source() override {
    QAccessible::installUpdateHandler(before_);
    current_ = nullptr;
  }

 private:
  static void OnEvent(QAccessibleEvent* event) {
    QAccessibleInterface* element = event->accessibleInterface();
    if (element == nullptr) return;
    const AccessibleNode node = Element(*element).Tell();
    const std::string kind = KindOf(*event);
    if (!kind.empty()) current_->onChange_(kind, node);
  }

  static inline Source* current_ = nullptr;
  OnChange onChange_;
  QAccessible::UpdateHandler before_;
};

}  // namespace

std::vector<std::unique_ptr<AccessibleElement>> ElementsOf(platform::Window& window) {
  std::vector<std::unique_ptr<AccessibleElement>> elements;
  Collect(QAccessible::queryAccessibleInterface(window.Native().native), elements);
  return elements;
}

std::string Told(std::string line) {
  return line;
}

bool IsOnScreen(platform::Window& window) {
  return window.Native().native->window()->windowHandle()->isExposed();
}

std::unique_ptr<ChangeSource> ListenToChanges(OnChange onChange) {
  return std::make_unique<Source>(std::move(onChange));
}

}  // namespace support
