// Windows as the system's accessibility interface shows them.
#include <windows.h>

#include <oleacc.h>

#include <map>
#include <regex>

#include "platform/text.h"
#include "platform/windows/com_pointer.h"
#include "platform/windows/wide_text.h"
#include "tests/accessible/accessible_tree.h"

namespace support {
namespace {

using Object = std::shared_ptr<IAccessible>;

Object Owned(IAccessible* object) {
  if (object == nullptr) throw std::runtime_error("a window or a child that is none");
  return {object, [](IAccessible* owned) { owned->Release(); }};
}

Object ObjectOf(HWND window) {
  void* object = nullptr;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             &object);
  return Owned(static_cast<IAccessible*>(object));
}

VARIANT Child(LONG number) {
  VARIANT child{};
  V_VT(&child) = VT_I4;
  V_I4(&child) = number;
  return child;
}

std::string RoleName(LONG role) {
  static const std::map<LONG, std::string> kNames = {{ROLE_SYSTEM_DIALOG, "dialog"},
                                                     {ROLE_SYSTEM_ALERT, "alert"},
                                                     {ROLE_SYSTEM_CHART, "chart"},
                                                     {ROLE_SYSTEM_PUSHBUTTON, "button"},
                                                     {ROLE_SYSTEM_BUTTONMENU, "menu button"},
                                                     {ROLE_SYSTEM_CHECKBUTTON, "check box"},
                                                     {ROLE_SYSTEM_RADIOBUTTON, "radio button"},
                                                     {ROLE_SYSTEM_LINK, "link"},
                                                     {ROLE_SYSTEM_SLIDER, "slider"},
                                                     {ROLE_SYSTEM_DIAL, "dial"}};
  const auto found = kNames.find(role);
  return found != kNames.end() ? found->second : "role " + std::to_string(role);
}

std::string StatesOf(LONG role, LONG state) {
  std::string text;
  const bool checkable = role == ROLE_SYSTEM_CHECKBUTTON || role == ROLE_SYSTEM_RADIOBUTTON;
  const bool checked = (state & STATE_SYSTEM_CHECKED) != 0;
  AddState(text, checked, checkable ? "checked" : "checked without being checkable");
  AddState(text, checkable && !checked, "unchecked");
  AddState(text, (state & STATE_SYSTEM_EXPANDED) != 0, "expanded");
  AddState(text, (state & STATE_SYSTEM_COLLAPSED) != 0, "collapsed");
  AddState(text, (state & STATE_SYSTEM_UNAVAILABLE) != 0, "disabled");
  AddState(text, (state & STATE_SYSTEM_INVISIBLE) != 0, "hidden");
  return text;
}

class Element : public AccessibleElement {
 public:
  Element(Object object, LONG child) : object_(std::move(object)), child_(Child(child)) {}

  AccessibleNode Tell() const override {
    VARIANT role{};
    VARIANT state{};
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    object_->get_accRole(child_, &role);
    object_->get_accState(child_, &state);
    object_->accLocation(&left, &top, &width, &height, child_);
    return {.role = RoleName(V_I4(&role)),
            .name = Text(&IAccessible::get_accName),
            .value = Text(&IAccessible::get_accValue),
            .number = {},
            .states = StatesOf(V_I4(&role), V_I4(&state)),
            .description = Text(&IAccessible::get_accDescription),
            .place = {left, top, left + width, top + height},
            .isPart = V_I4(&child_) != CHILDID_SELF};
  }
  void Press() override {
    if (object_->accDoDefaultAction(child_) != S_OK) throw std::runtime_error("nothing to press");
  }
  void Set(double value) override {
    const std::wstring text = std::to_wstring(value);
    const BSTR number = SysAllocString(text.c_str());
    const HRESULT result = object_->put_accValue(child_, number);
    SysFreeString(number);
    if (result != S_OK) throw std::runtime_error("no number");
  }

 private:
  std::string Text(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, BSTR*)) const {
    BSTR text = nullptr;
    (object_.get()->*get)(child_, &text);
    const std::u16string known =
        text != nullptr ? platform::FromWide({text, SysStringLen(text)}) : std::u16string();
    SysFreeString(text);
    return platform::ToUtf8(known);
  }

  Object object_;
  VARIANT child_;
};

// What has an object of its own is a window, whose client area shows the control.
void Collect(const Object& object, std::vector<std::unique_ptr<AccessibleElement>>& elements) {
  elements.push_back(std::make_unique<Element>(object, CHILDID_SELF));
  LONG count = 0;
  object->get_accChildCount(&count);
  for (LONG number = 1; number <= count; ++number) {
    IDispatch* child = nullptr;
    if (object->get_accChild(Child(number), &child) == S_FALSE) {
      elements.push_back(std::make_unique<Element>(object, number));
      continue;
    }
    const platform::ComPointer<IDispatch> owned(child);
    HWND window = nullptr;
    void* windowObject = nullptr;
    if (child != nullptr) child->QueryInterface(__uuidof(IAccessible), &windowObject);
    WindowFromAccessibleObject(Owned(static_cast<IAccessible*>(windowObject)).get(), &window);
    Collect(ObjectOf(window), elements);
  }
}

std::string KindOf(DWORD event) {
  static const std::map<DWORD, std::string> kKinds = {
      {EVENT_OBJECT_NAMECHANGE, "name"},   {EVENT_OBJECT_DESCRIPTIONCHANGE, "description"},
      {EVENT_OBJECT_VALUECHANGE, "value"}, {EVENT_OBJECT_STATECHANGE, "state"},
      {EVENT_OBJECT_SHOW, "shown"},        {EVENT_OBJECT_HIDE, "hidden"}};
  const auto found = kKinds.find(event);
  return found != kKinds.end() ? found->second : std::string();
}

class Source : public ChangeSource {
 public:
  explicit Source(OnChange onChange) : onChange_(std::move(onChange)) {
    current_ = this;
    hook_ = SetWinEventHook(EVENT_OBJECT_SHOW, EVENT_OBJECT_VALUECHANGE, GetModuleHandleW(nullptr),
                            &Source::OnEvent, GetCurrentProcessId(), 0, WINEVENT_INCONTEXT);
    if (hook_ == nullptr) throw std::runtime_error("nobody can listen");
  }
  ~Source() override {
    UnhookWinEvent(hook_);
    current_ = nullptr;
  }

 private:
  static void CALLBACK OnEvent(HWINEVENTHOOK /*hook*/, DWORD event, HWND window, LONG object,
                               LONG child, DWORD /*thread*/, DWORD /*time*/) {
    const std::string kind = KindOf(event);
    if (object != OBJID_CLIENT || kind.empty()) return;
    current_->onChange_(kind, Element(ObjectOf(window), child).Tell());
  }

  static inline Source* current_ = nullptr;
  OnChange onChange_;
  HWINEVENTHOOK hook_ = nullptr;
};

}  // namespace

std::vector<std::unique_ptr<AccessibleElement>> ElementsOf(platform::Window& window) {
  std::vector<std::unique_ptr<AccessibleElement>> elements;
  Collect(ObjectOf(reinterpret_cast<HWND>(window.Handle())), elements);
  return elements;
}

// There are no numbers beside the texts of values, and changes of state are all alike.
std::string Told(std::string line) {
  line = std::regex_replace(line, std::regex("^(check|enabling|expansion): "), "state: ");
  return std::regex_replace(line, std::regex(R"( [-+.e\d]+ of [-.\d]+)"), "");
}

bool IsOnScreen(platform::Window& window) {
  return window.IsVisible();
}

std::unique_ptr<ChangeSource> ListenToChanges(OnChange onChange) {
  return std::make_unique<Source>(std::move(onChange));
}

}  // namespace support
