#include <windows.h>

#include "platform/accessible.h"
#include "platform/window.h"
#include "platform/windows/windows/native_window.h"

namespace platform {
namespace {

DWORD EventOf(AccessibleChange change) {
  switch (change) {
    case AccessibleChange::Name:
      return EVENT_OBJECT_NAMECHANGE;
    case AccessibleChange::Description:
      return EVENT_OBJECT_DESCRIPTIONCHANGE;
    case AccessibleChange::Value:
      return EVENT_OBJECT_VALUECHANGE;
    case AccessibleChange::Check:
    case AccessibleChange::Expansion:
    case AccessibleChange::Visibility:
    case AccessibleChange::Enabling:
      break;
  }
  return EVENT_OBJECT_STATECHANGE;
}

}  // namespace

void NotifyAccessible(const Window& window, AccessibleChange change, std::int32_t part) {
  if (window.Handle() == 0) return;
  NotifyWinEvent(EventOf(change), ToNative(window.Handle()), OBJID_CLIENT, part);
}

}  // namespace platform
