#include "platform/windows/events/kernel_events.h"

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/windows/handle.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

KernelHandle OpenToSet(const std::wstring& name) {
  return KernelHandle(OpenEventW(EVENT_MODIFY_STATE, FALSE, name.c_str()));
}

// An open handle would keep the event in existence after its engine, so none is kept.
class KernelEvent : public NamedEvent {
 public:
  explicit KernelEvent(std::wstring name) : name_(std::move(name)) {}

  bool Set() override {
    const KernelHandle event = OpenToSet(name_);
    return event.IsOpen() && SetEvent(event.Get()) != FALSE;
  }

 private:
  const std::wstring name_;
};

}  // namespace

std::unique_ptr<NamedEvent> KernelEvents::Open(std::u16string_view name) {
  std::optional<std::wstring> wideName = ToWideName(name);
  if (!wideName || wideName->empty() || !OpenToSet(*wideName).IsOpen()) return nullptr;
  return std::make_unique<KernelEvent>(*std::move(wideName));
}

}  // namespace platform
