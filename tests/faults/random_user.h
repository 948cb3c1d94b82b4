// Somebody who does anything that can be done to the panel's windows, in any order.
#pragma once

#include <array>
#include <functional>
#include <random>
#include <string>

#include "tests/e2e/dialog_fixture.h"

namespace faults {

// The dialog is open whenever an action begins; what closes it opens it again.
class RandomUser : public e2e::AdvancedDialogTest {
 protected:
  // Opens the panel and the dialog in full.
  void Begin();
  // One action by the user, by who plugs something in or by who writes to the store.
  void Act(std::mt19937& random);

  // Has the dialog open in full, whatever was done before.
  void OpenInFull();

 private:
  support::ScreenPoint PointOf(std::uint16_t control, std::mt19937& random);
  void ClickSomething(std::mt19937& random);
  void DragSomething(std::mt19937& random);
  void ScrollOrType(std::mt19937& random);
  void OpenAndCloseTheMenu(std::mt19937& random);
  void UseTheMainWindow(std::mt19937& random);
  void PlugOrUnplug(std::mt19937& random);
  void WriteToTheStore(std::mt19937& random);
};

}  // namespace faults
