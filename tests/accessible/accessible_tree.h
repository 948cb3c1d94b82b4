// A window as a screen reader gets to know it, and what it is told of changes.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/window.h"

namespace support {

// What the system's interface tells of a window or a part of it.
struct AccessibleNode {
  std::string role;
  std::string name;
  std::string value;
  std::string number;  // with its range, where the interface has them
  std::string states;
  std::string description;
  platform::Rect place;  // on the screen
  bool isPart = false;
};

class AccessibleElement {
 public:
  virtual ~AccessibleElement() = default;
  virtual AccessibleNode Tell() const = 0;
  // Does the first thing that the element can do: presses, toggles.
  virtual void Press() = 0;
  virtual void Set(double value) = 0;
};

// The home's part. First the window itself, then all in it in the order of the tree.
std::vector<std::unique_ptr<AccessibleElement>> ElementsOf(platform::Window& window);
// A line as this home's interface can tell it.
std::string Told(std::string line);
bool IsOnScreen(platform::Window& window);
// Tells until it is destroyed, kind and element of each change.
class ChangeSource {
 public:
  virtual ~ChangeSource() = default;
};
using OnChange = std::function<void(const std::string& kind, const AccessibleNode& node)>;
std::unique_ptr<ChangeSource> ListenToChanges(OnChange onChange);

// Adds `word` to a list of states.
inline void AddState(std::string& states, bool is, const char* word) {
  if (is) states += (states.empty() ? "" : " ") + std::string(word);
}

// Role, name, value, number with its range, states, in this form:
//   slider "Gain" "+3.0 dB" 3 of -12..12 [disabled]
inline std::string LineOf(const AccessibleNode& node) {
  std::string line = node.role + " \"" + node.name + '"';
  if (!node.value.empty()) line += " \"" + node.value + '"';
  if (!node.number.empty()) line += ' ' + node.number;
  if (!node.states.empty()) line += " [" + node.states + ']';
  return line;
}

inline std::vector<std::string> AllTold(std::vector<std::string> lines) {
  for (std::string& line : lines) line = Told(std::move(line));
  return lines;
}

enum class Detail { None, Places };

// The tree of a window that is on the screen. Everything a test asks for must be there: what is not
// ends the test program's case with an exception.
class AccessibleTree {
 public:
  explicit AccessibleTree(platform::Window& window) : elements_(ElementsOf(window)) {}

  AccessibleNode Root() const { return elements_.front()->Tell(); }
  // All below the window's root; with places seen from the root (but for the parts of a control)
  // and descriptions.
  std::vector<std::string> Lines(Detail detail = Detail::None) const {
    std::vector<std::string> lines;
    const platform::Rect root = Root().place;
    for (std::size_t i = 1; i < elements_.size(); ++i) {
      const AccessibleNode node = elements_[i]->Tell();
      std::string line = LineOf(node);
      if (detail == Detail::Places) {
        if (!node.isPart) {
          line = std::to_string(node.place.left - root.left) + ',' +
                 std::to_string(node.place.top - root.top) + ' ' +
                 std::to_string(node.place.Width()) + 'x' + std::to_string(node.place.Height()) +
                 ' ' + line;
        }
        line += " (" + node.description + ')';
      }
      lines.push_back(line);
    }
    return lines;
  }
  AccessibleNode Find(const std::string& name) const { return Named(name).Tell(); }
  std::string Line(const std::string& name) const { return LineOf(Find(name)); }
  void Press(const std::string& name) const { Named(name).Press(); }
  void Set(const std::string& name, double value) const { Named(name).Set(value); }

 private:
  AccessibleElement& Named(const std::string& name) const {
    for (std::size_t i = 1; i < elements_.size(); ++i) {
      if (elements_[i]->Tell().name == name) return *elements_[i];
    }
    throw std::runtime_error("nothing is called " + name);
  }

  std::vector<std::unique_ptr<AccessibleElement>> elements_;
};

// While it lives, it notes what assistive technology is told: name, description, value, check,
// enabling or expansion of what has changed, or that it is shown or hidden, a colon, and its line.
class Listener {
 public:
  std::vector<std::string> Take() { return std::exchange(heard_, {}); }
  // Whether the line was heard since the last Take.
  bool Heard(const std::string& line) const {
    return std::find(heard_.begin(), heard_.end(), Told(line)) != heard_.end();
  }

 private:
  std::vector<std::string> heard_;
  // A screen reader looks at whatever it hears of, so this does too.
  std::unique_ptr<ChangeSource> source_ =
      ListenToChanges([this](const std::string& kind, const AccessibleNode& node) {
        heard_.push_back(kind + ": " + LineOf(node));
      });
};

}  // namespace support
