// What the equalizer dialog does with the parameter set of the current route: loading it, showing
// it, and carrying every edit to the store, the engine and the curve.
#pragma once

#include <cstdint>
#include <optional>

#include "dsp/biquad.h"
#include "dsp/eq_model.h"
#include "dsp/response.h"
#include "endpoints/registry_watcher.h"
#include "engine_link/engine_signals.h"
#include "store/output_path.h"
#include "store/parameter_store.h"
#include "ui/eq/eq_view.h"

namespace ui {

// An edit takes its value from the view's control, and is committed and signalled before the call
// returns. Until LoadFirstSet the controls only take their places, so edits of sliders, knobs and
// the plot are ignored. User-interface thread; the view and what `engine` refers to outlive it.
class EqEditor {
 public:
  EqEditor(const engine_link::EngineLink& engine, EqView& view);
  EqEditor(const EqEditor&) = delete;
  EqEditor& operator=(const EqEditor&) = delete;

  // Reads the active set of the default endpoint's route; what cannot be read leaves the initial
  // values. The result is where a watcher has to start.
  endpoints::WatchStart LoadFirstSet();
  // Shows the set that was loaded first, with band 1 selected. ShowEqualizerSwitch comes before.
  void ShowEqualizerSwitch();
  void ShowFirstSet();

  // Follows a route or setting that changed elsewhere; nothing is written. The set stays when there
  // is no default endpoint to tell another one.
  void Reload(store::OutputPath route);

  void EditKnob(dsp::Knob knob);
  void EditSlider(BandSlider slider);
  void EditType(dsp::FilterType type);
  void Toggle(EqSwitch box);

  // A band number outside 1 to 10 leaves the band's controls as they are, and edits of a band then
  // change none.
  void SelectBand(std::int32_t band);
  void DragBand(std::int32_t band, dsp::BandMarker position);

  // Shows, commits and signals `Store().values` after a settings file was read into them.
  void TakeLoadedSettings();
  // Puts the factory's values into the set; nothing changes when there are none.
  void RestoreDefaults();

  void SignalParameterChange();

  store::ParameterStore& Store() { return store_; }
  const store::ParameterStore& Store() const { return store_; }
  const dsp::CoefficientTable& Coefficients() const { return coefficients_; }
  std::int32_t SelectedBand() const { return selectedBand_; }
  store::OutputPath Route() const { return outputPath_; }

 private:
  enum class Refresh { Full, Partial };

  template <class Change>
  void ChangeBand(std::int32_t band, Change change);
  void EditGain();
  void EditFrequency();
  void EditBandwidth();
  void FinishEdit();

  void SelectFirstBand();
  void ShowNewValues();
  void ShowCurve();
  void RefreshControls(Refresh refresh);
  void RefreshKnobs();
  void RefreshShape(const dsp::EqBand& band);
  void ShowType(std::optional<dsp::FilterType> type);
  void ShowGainText();
  void ShowFrequencyText();
  void ShowBandwidthText();

  engine_link::EngineLink engine_;
  EqView& view_;
  store::ParameterStore store_;
  dsp::CoefficientTable coefficients_{};
  std::int32_t selectedBand_ = 1;
  bool loading_ = true;
  store::OutputPath outputPath_ = store::OutputPath::LineOut;
};

}  // namespace ui
