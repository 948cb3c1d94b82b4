#include "platform/windows/events/kernel_event_listener.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/windows/registry/access_list.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

// All to the system, the administrators and the owner; waiting and setting to everybody.
constexpr std::u16string_view kAccess =
    u"D:(A;;0x1F0003;;;SY)(A;;0x1F0003;;;BA)(A;;0x1F0003;;;OW)(A;;0x100002;;;WD)";

std::uint64_t Now() {
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count());
}

// None when another holds an event of that name.
KernelHandle MakeEvent(const std::wstring& name) {
  const SecurityDescriptor descriptor = ParseSecurityDescriptor(kAccess);
  SECURITY_ATTRIBUTES attributes{sizeof(attributes), descriptor.Get(), FALSE};
  SetLastError(ERROR_SUCCESS);
  KernelHandle event(CreateEventW(&attributes, FALSE, FALSE, name.c_str()));
  return GetLastError() == ERROR_ALREADY_EXISTS ? KernelHandle() : std::move(event);
}

}  // namespace

KernelEventListener::~KernelEventListener() {
  for (const std::unique_ptr<Event>& event : events_) {
    UnregisterWaitEx(event->wait, INVALID_HANDLE_VALUE);
  }
}

bool KernelEventListener::Create(std::u16string_view name) {
  const auto wideName = ToWideName(name);
  if (!wideName || wideName->empty()) return false;
  auto event = std::make_unique<Event>(Event{this, events_.size(), MakeEvent(*wideName)});
  if (!event->handle.IsOpen() ||
      RegisterWaitForSingleObject(&event->wait, event->handle.Get(), &OnSet, event.get(), INFINITE,
                                  WT_EXECUTEINWAITTHREAD) == FALSE) {
    return false;
  }
  events_.push_back(std::move(event));
  return true;
}

void CALLBACK KernelEventListener::OnSet(void* event, BOOLEAN /*timedOut*/) {
  const auto& set = *static_cast<const Event*>(event);
  const std::lock_guard lock(set.listener->mutex_);
  set.listener->sets_.push_back({set.index, Now()});
  set.listener->changed_.notify_all();
}

std::vector<EventSet> KernelEventListener::Wait(std::chrono::milliseconds timeout) {
  constexpr std::chrono::hours kLongest(24 * 365);
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, std::min<std::chrono::milliseconds>(timeout, kLongest),
                    [this] { return interrupted_ || !sets_.empty(); });
  interrupted_ = false;
  return std::exchange(sets_, {});
}

void KernelEventListener::Interrupt() {
  const std::lock_guard lock(mutex_);
  interrupted_ = true;
  changed_.notify_all();
}

}  // namespace platform
