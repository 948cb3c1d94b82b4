// The advanced dialog on the screen, with its controls found by their places.
#pragma once

#include <string>
#include <vector>

#include "dsp/plot_mapping.h"
#include "resources/templates.h"
#include "tests/e2e/panel_fixture.h"

namespace e2e {

inline const std::string kDialogTitle = "Velsona";

class AdvancedDialogTest : public PanelTest {
 protected:
  // Laptop with three layers, engine, panel, dialog opened through the main window's entry.
  void OpenDialog();
  void ClickAdvancedEntry();
  // Opens the lower part.
  void Expand();

  // Gives the selected band the type with which all of its sliders work.
  void UsePeakingBand();

  support::ScreenRect Control(std::uint16_t id);
  void ClickControl(std::uint16_t id);
  // Presses at the control's client point, moves in steps, releases.
  void Drag(std::uint16_t id, support::ScreenPoint from, support::ScreenPoint to, int steps = 8);

  // The mapping of the plot as it stands in the window.
  dsp::PlotMapping Plot();
  support::ScreenPoint MarkerOf(int band);

  // A parameter of the set that is active on the route, as stored.
  float Stored(int parameter, const std::string& pathKey = kSpeakerKey);
  // Waits until the stored parameter is this very value.
  bool BecomesStored(int parameter, float value, const std::string& pathKey = kSpeakerKey);
  // The signals of as many edits as the events received make; -1 when they make none.
  int ReceivedEdits();
};

}  // namespace e2e
