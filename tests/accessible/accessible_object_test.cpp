// What only the system's own interface has: places and neighbours of parts, calls on any thread.
#include <gtest/gtest.h>
#include <windows.h>

#include <oleacc.h>

#include <future>
#include <string>

#include "platform/windows/com_pointer.h"
#include "resources/resource_ids.h"
#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"
#include "ui/eq/kel_control_dlg.h"
#include "ui/main/orvan_dlg.h"

namespace ui {
namespace {

using Object = platform::ComPointer<IAccessible>;

Object ObjectOf(HWND window) {
  Object object;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             object.ReceiveVoid());
  return object;
}

VARIANT Number(LONG number) {
  VARIANT variant{};
  V_VT(&variant) = VT_I4;
  V_I4(&variant) = number;
  return variant;
}

class AccessibleObject : public ModeFixture {
 protected:
  LONG Step(LONG direction, LONG from) {
    VARIANT end{};
    const HRESULT result = object_->accNavigate(direction, Number(from), &end);
    return result == S_OK ? V_I4(&end) : -1;
  }
  LONG Hit(LONG x, LONG y) {
    VARIANT hit{};
    return object_->accHitTest(x, y, &hit) == S_OK ? V_I4(&hit) : -1;
  }
  std::wstring Action(LONG part) {
    BSTR text = nullptr;
    object_->get_accDefaultAction(Number(part), &text);
    const std::wstring action = text != nullptr ? text : L"";
    SysFreeString(text);
    return action;
  }

  Object object_;
};

TEST_F(AccessibleObject, PartsAreFoundByPlaceAndByNeighbour) {
  support::Scripted<COrvanDlg> window(machine_.platform, store::ModelFlags{}, nullptr);
  window.ThenDo([&] {
    const platform::Rect place = window.WindowRect();
    object_ = ObjectOf(reinterpret_cast<HWND>(window.Handle()));
    EXPECT_EQ(Hit(place.left + 227 + 98, place.top + 145 + 54), 2) << "the second mode's button";
    EXPECT_EQ(Hit(place.left + 5, place.top + 200), CHILDID_SELF);
    EXPECT_EQ(Hit(place.left - 1, place.top), -1);
    EXPECT_EQ(Step(NAVDIR_FIRSTCHILD, CHILDID_SELF), 1);
    EXPECT_EQ(Step(NAVDIR_LASTCHILD, CHILDID_SELF), 11);
    EXPECT_EQ(Step(NAVDIR_NEXT, 10), 11);
    EXPECT_EQ(Step(NAVDIR_NEXT, 11), -1);
    EXPECT_EQ(Step(NAVDIR_PREVIOUS, 1), -1);
    EXPECT_EQ(Action(2), L"Check");
    EXPECT_EQ(Action(7), L"Jump");
    EXPECT_EQ(Action(8), L"Press");
    EXPECT_EQ(Action(11), L"") << "a warning does nothing";
    BSTR name = nullptr;
    EXPECT_EQ(object_->get_accName(Number(12), &name), E_INVALIDARG);
  });
  EXPECT_EQ(window.DoModal(), support::kScriptEnded);
  BSTR name = nullptr;
  EXPECT_EQ(object_->get_accName(Number(1), &name), CO_E_OBJNOTCONNECTED);
}

// The focus is the thread's own: whoever asks on another one learns of none.
TEST_F(AccessibleObject, AnswersOnAnyThreadWhatTheWindowsThreadKnows) {
  support::Scripted<CKelControlDlg> dialog(machine_.platform, store::ModelFlags{true, false});
  std::future<LONG> state;
  dialog.ThenDo([&] {
    const HWND window = reinterpret_cast<HWND>(dialog.Handle());
    const HWND button = GetDlgItem(window, resources::kExpandButton);
    SetFocus(button);
    object_ = ObjectOf(button);
    state = std::async(std::launch::async, [this] {
      VARIANT answer{};
      object_->get_accState(Number(CHILDID_SELF), &answer);
      return V_I4(&answer);
    });
  });
  dialog.Then([&] { return state.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
  dialog.ThenDo([&] {
    EXPECT_EQ(state.get(), STATE_SYSTEM_COLLAPSED | STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_FOCUSED);
  });
  EXPECT_EQ(dialog.DoModal(), support::kScriptEnded);
}

}  // namespace
}  // namespace ui
