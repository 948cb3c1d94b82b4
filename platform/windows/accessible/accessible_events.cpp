#include <windows.h>

#include "platform/accessible.h"
#include "platform/window.h"
#include "platform/windows/accessible/accessible_element.h"
#include "platform/windows/windows/native_window.h"

namespace platform {
namespace {

DWORD EventOf(AccessibleChange change, const AccessibleElement& element) {
  switch (change) {
    case AccessibleChange::Name:
      return EVENT_OBJECT_NAMECHANGE;
    case AccessibleChange::Description:
      return EVENT_OBJECT_DESCRIPTIONCHANGE;
    case AccessibleChange::Value:
      return EVENT_OBJECT_VALUECHANGE;
    case AccessibleChange::Visibility:
      return element.IsHidden() ? EVENT_OBJECT_HIDE : EVENT_OBJECT_SHOW;
    case AccessibleChange::Check:
    case AccessibleChange::Expansion:
    case AccessibleChange::Enabling:
      break;
  }
  return EVENT_OBJECT_STATECHANGE;
}

}  // namespace

void NotifyAccessible(const Window& window, AccessibleChange change, std::int32_t part) {
  const NativeWindow* native = window.Native().native;
  if (native == nullptr) return;
  NotifyWinEvent(EventOf(change, AccessibleElement(native->Target(), part)), native->Handle(),
                 OBJID_CLIENT, part);
}

}  // namespace platform
