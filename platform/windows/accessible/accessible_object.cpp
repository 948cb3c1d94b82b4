#include "platform/windows/accessible/accessible_object.h"

#include <oleacc.h>

#include <cwchar>
#include <vector>

#include "platform/windows/accessible/accessible_element.h"
#include "platform/windows/accessible/child_windows.h"
#include "platform/windows/accessible/plain_accessible.h"
#include "platform/windows/accessible/posted_press.h"
#include "platform/windows/accessible/window_call.h"
#include "platform/windows/com_pointer.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows/native_window.h"

namespace platform {
namespace {

HRESULT Give(BSTR* out, std::u16string_view text) {
  const std::wstring wide = ToWide(text);
  *out = wide.empty() ? nullptr : SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  return *out != nullptr ? S_OK : S_FALSE;
}

HRESULT GiveNumber(VARIANT* out, DWORD number) {
  V_VT(out) = VT_I4;
  V_I4(out) = static_cast<LONG>(number);
  return S_OK;
}

HRESULT GiveNothing(VARIANT* out) {
  V_VT(out) = VT_EMPTY;
  return S_FALSE;
}

// Children are the parts, numbered as they are, and after these the windows in the window, which
// have objects of their own.
class AccessibleObject final : public PlainAccessible {
 public:
  explicit AccessibleObject(HWND window) : window_(window) {}

  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    return GiveObject(parent, window_);
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
    *count = 0;
    return WithWindow([&](Window& window) {
      *count = window.AccessiblePartCount() + static_cast<LONG>(ChildWindowsOf(window_).size());
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    *object = nullptr;
    if (V_VT(&child) != VT_I4) return E_INVALIDARG;
    HWND found = nullptr;
    const HRESULT result = WithWindow([&](Window& window) {
      const std::vector<HWND> windows = ChildWindowsOf(window_);
      const LONG parts = window.AccessiblePartCount();
      const LONG number = V_I4(&child);
      if (number < 0 || number > parts + static_cast<LONG>(windows.size())) return E_INVALIDARG;
      if (number <= parts) return S_FALSE;  // has no object of its own
      found = windows[static_cast<std::size_t>(number - parts - 1)];
      return S_OK;
    });
    return found == nullptr ? result : GiveObject(object, found);
  }

  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    return Tell(child, name, [](const AccessibleInfo& info) { return info.name; });
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
    return Tell(child, value, [](const AccessibleInfo& info) { return info.value; });
  }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override {
    return Tell(child, description, [](const AccessibleInfo& info) { return info.description; });
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    *action = nullptr;
    return WithElement(
        child, [&](const AccessibleElement& element) { return Give(action, element.Action()); });
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    GiveNothing(role);
    return WithElement(
        child, [&](const AccessibleElement& element) { return GiveNumber(role, element.Role()); });
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    GiveNothing(state);
    return WithElement(child, [&](const AccessibleElement& element) {
      const bool canBeFocused =
          V_I4(&child) == CHILDID_SELF && (GetWindowLongW(window_, GWL_STYLE) & WS_TABSTOP) != 0;
      const bool isFocused = V_I4(&child) == CHILDID_SELF && GetFocus() == window_;
      return GiveNumber(state, element.State() | (canBeFocused ? STATE_SYSTEM_FOCUSABLE : 0U) |
                                   (isFocused ? STATE_SYSTEM_FOCUSED : 0U));
    });
  }
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                        VARIANT child) override {
    return WithElement(child, [&](const AccessibleElement& element) {
      const Rect area = element.Area();
      *left = area.left;
      *top = area.top;
      *width = area.Width();
      *height = area.Height();
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
    GiveNothing(focus);
    HWND inside = nullptr;
    const HRESULT result = WithWindow([&](Window&) {
      const HWND focused = GetFocus();
      if (focused == window_) return GiveNumber(focus, CHILDID_SELF);
      if (IsChild(window_, focused) != FALSE) inside = focused;
      return S_FALSE;
    });
    return inside == nullptr ? result : GiveObject(focus, inside);
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override {
    if (flags != SELFLAG_TAKEFOCUS || V_I4(&child) != CHILDID_SELF) return DISP_E_MEMBERNOTFOUND;
    return WithElement(child, [&](const AccessibleElement& element) {
      if (!element.CanBeClicked()) return S_FALSE;
      SetFocus(window_);
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override {
    GiveNothing(end);
    if (V_VT(&start) != VT_I4) return E_INVALIDARG;
    LONG count = 0;
    const HRESULT result = get_accChildCount(&count);
    if (result != S_OK) return result;
    const LONG from = V_I4(&start);
    const bool isSelf = from == CHILDID_SELF;
    switch (direction) {
      case NAVDIR_FIRSTCHILD:
        return isSelf ? GiveChild(end, 1, count) : S_FALSE;
      case NAVDIR_LASTCHILD:
        return isSelf ? GiveChild(end, count, count) : S_FALSE;
      case NAVDIR_NEXT:
        return isSelf ? S_FALSE : GiveChild(end, from + 1, count);
      case NAVDIR_PREVIOUS:
        return isSelf ? S_FALSE : GiveChild(end, from - 1, count);
      default:
        return S_FALSE;
    }
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* hit) override {
    GiveNothing(hit);
    HWND inside = nullptr;
    const HRESULT result = WithWindow([&](Window& window) {
      const auto contains = [&](const Rect& area) {
        return x >= area.left && x < area.right && y >= area.top && y < area.bottom;
      };
      if (!contains(window.WindowRect())) return S_FALSE;
      // Where parts overlap, the later one is meant.
      for (std::int32_t part = window.AccessiblePartCount(); part > 0; --part) {
        const AccessibleElement element(window, part);
        if (!element.IsHidden() && contains(element.Area())) {
          return GiveNumber(hit, static_cast<DWORD>(part));
        }
      }
      inside = ChildWindowAt(window_, {x, y});
      return GiveNumber(hit, CHILDID_SELF);
    });
    return inside == nullptr ? result : GiveObject(hit, inside);
  }

  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    return WithElement(child, [&](const AccessibleElement& element) {
      if (element.Action().empty()) return DISP_E_MEMBERNOTFOUND;
      PostPress(window_, V_I4(&child));
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override {
    return WithElement(child, [&](const AccessibleElement& element) {
      if (!element.Info().range) return DISP_E_MEMBERNOTFOUND;
      wchar_t* end = nullptr;
      const double number = value != nullptr ? std::wcstod(value, &end) : 0.0;
      if (end == nullptr || end == value) return E_INVALIDARG;
      element.PutValue(number);
      return S_OK;
    });
  }

 private:
  ~AccessibleObject() override = default;

  // Runs `use` with the window's object on the window's thread.
  template <class Use>
  HRESULT WithWindow(Use use) const {
    HRESULT result = CO_E_OBJNOTCONNECTED;
    CallOnThreadOf(window_, [&] {
      if (const NativeWindow* native = NativeWindow::Find(window_)) result = use(native->Target());
    });
    return result;
  }
  template <class Use>
  HRESULT WithElement(const VARIANT& child, Use use) const {
    if (V_VT(&child) != VT_I4) return E_INVALIDARG;
    return WithWindow([&](Window& window) -> HRESULT {
      const LONG part = V_I4(&child);
      if (part < 0 || part > window.AccessiblePartCount()) return E_INVALIDARG;
      return use(AccessibleElement(window, part));
    });
  }
  template <class Field>
  HRESULT Tell(const VARIANT& child, BSTR* out, Field field) const {
    *out = nullptr;
    return WithElement(
        child, [&](const AccessibleElement& element) { return Give(out, field(element.Info())); });
  }

  // A part by its number, a window by its object.
  HRESULT GiveChild(VARIANT* out, LONG number, LONG count) {
    if (number < 1 || number > count) return S_FALSE;
    VARIANT child{};
    GiveNumber(&child, static_cast<DWORD>(number));
    IDispatch* object = nullptr;
    const HRESULT result = get_accChild(child, &object);
    if (result == S_FALSE) return GiveNumber(out, static_cast<DWORD>(number));
    if (result != S_OK) return result;
    V_VT(out) = VT_DISPATCH;
    V_DISPATCH(out) = object;
    return S_OK;
  }

  const HWND window_;
};

}  // namespace

std::optional<LRESULT> AnswerAssistiveTechnology(HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam) {
  if (TookCall(message, wParam) || TookPress(window, message, wParam)) return 1;
  // The upper half of the number may or may not be extended by the sign.
  if (message != WM_GETOBJECT || static_cast<LONG>(lParam) != OBJID_CLIENT) return std::nullopt;
  const ComPointer<AccessibleObject> object(new AccessibleObject(window));
  return LresultFromObject(__uuidof(IAccessible), wParam, object.Get());
}

}  // namespace platform
