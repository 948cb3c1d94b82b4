// Named events that remember what was done to them.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/events.h"

namespace platform {

// The test decides which events exist; names are compared with regard to case. One thread at a
// time. Opened events must not outlive the object.
class FakeNamedEvents : public NamedEvents {
 public:
  enum class Action { Open, FailedOpen, Set, FailedSet, Close };

  struct Call {
    Action action;
    std::u16string name;
    bool operator==(const Call&) const = default;
  };

  void Add(std::u16string_view name);
  void Remove(std::u16string_view name);

  // Runs during every set that succeeds, with the event's name.
  void SetOnSet(std::function<void(const std::u16string&)> onSet);

  std::unique_ptr<NamedEvent> Open(std::u16string_view name) override;

  // Everything done so far, in order; and the names of the events set, in order.
  const std::vector<Call>& Calls() const { return calls_; }
  std::vector<std::u16string> Sets() const;
  void ClearCalls();

 private:
  class Handle;

  std::set<std::u16string, std::less<>> existing_;
  std::vector<Call> calls_;
  std::function<void(const std::u16string&)> onSet_;
};

}  // namespace platform
