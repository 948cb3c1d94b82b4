#include "platform/fake/fake_events.h"

#include <utility>

namespace platform {

class FakeNamedEvents::Handle : public NamedEvent {
 public:
  Handle(FakeNamedEvents& events, std::u16string name) : events_(events), name_(std::move(name)) {}
  ~Handle() override { events_.calls_.push_back({Action::Close, name_}); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool Set() override {
    const bool exists = events_.existing_.contains(name_);
    events_.calls_.push_back({exists ? Action::Set : Action::FailedSet, name_});
    if (exists && events_.onSet_) events_.onSet_(name_);
    return exists;
  }

 private:
  FakeNamedEvents& events_;
  std::u16string name_;
};

void FakeNamedEvents::Add(std::u16string_view name) {
  existing_.emplace(name);
}

void FakeNamedEvents::Remove(std::u16string_view name) {
  existing_.erase(std::u16string(name));
}

void FakeNamedEvents::SetOnSet(std::function<void(const std::u16string&)> onSet) {
  onSet_ = std::move(onSet);
}

std::unique_ptr<NamedEvent> FakeNamedEvents::Open(std::u16string_view name) {
  const bool exists = existing_.contains(name);
  calls_.push_back({exists ? Action::Open : Action::FailedOpen, std::u16string(name)});
  if (!exists) return nullptr;
  return std::make_unique<Handle>(*this, std::u16string(name));
}

std::vector<std::u16string> FakeNamedEvents::Sets() const {
  std::vector<std::u16string> names;
  for (const Call& call : calls_) {
    if (call.action == Action::Set) names.push_back(call.name);
  }
  return names;
}

void FakeNamedEvents::ClearCalls() {
  calls_.clear();
}

}  // namespace platform
