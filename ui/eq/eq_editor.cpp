#include "ui/eq/eq_editor.h"

#include <optional>

#include "dsp/conversions.h"
#include "endpoints/enumeration.h"
#include "endpoints/route_detection.h"
#include "store/active_mode.h"
#include "store/path_key.h"

namespace ui {
namespace {

using dsp::FilterType;
using dsp::Knob;

constexpr char16_t kFirstSetting = u'1';

}  // namespace

EqEditor::EqEditor(const engine_link::EngineLink& engine, EqView& view)
    : engine_(engine), view_(view) {
  store_.values = dsp::InitialParameters();
  store_.activeSetting.assign(1, kFirstSetting);
}

endpoints::WatchStart EqEditor::LoadFirstSet() {
  endpoints::DefaultEndpointInfo endpoint;
  static_cast<void>(endpoints::GetDefaultEndpointInfo(engine_.audioDevices, endpoint));
  outputPath_ = endpoints::DetectOutputPath(engine_.registry, endpoint.endpointGuid);
  static_cast<void>(store::LoadActiveSet(
      engine_.registry, store::ResolvePathKey(endpoint.jackSubType, outputPath_), store_));
  loading_ = false;
  return {endpoint.endpointGuid, outputPath_, store::ModeIndexFromSetting(store_.activeSetting)};
}

void EqEditor::ShowEqualizerSwitch() {
  view_.SetChecked(EqSwitch::Equalizer,
                   dsp::IsOn(store_.values[dsp::ParameterIndex(dsp::kEqualizerEnable)]));
}

void EqEditor::ShowFirstSet() {
  dsp::UpdateBandCoefficients(store_.values, coefficients_);
  SelectFirstBand();
  ShowCurve();
}

void EqEditor::Reload(store::OutputPath route) {
  outputPath_ = route;
  endpoints::DefaultEndpointInfo endpoint;
  if (endpoints::GetDefaultEndpointInfo(engine_.audioDevices, endpoint)) {
    static_cast<void>(store::LoadActiveSet(
        engine_.registry, store::ResolvePathKey(endpoint.jackSubType, outputPath_), store_));
  }
  SelectFirstBand();
  dsp::UpdateBandCoefficients(store_.values, coefficients_);
  ShowCurve();
}

void EqEditor::EditKnob(Knob knob) {
  if (loading_) return;
  dsp::SetKnob(store_.values, knob, view_.KnobValue(knob));
  SignalParameterChange();
}

void EqEditor::EditSlider(BandSlider slider) {
  if (loading_) return;
  switch (slider) {
    case BandSlider::Gain:
      EditGain();
      break;
    case BandSlider::Frequency:
      EditFrequency();
      break;
    case BandSlider::Bandwidth:
      EditBandwidth();
      break;
  }
}

template <class Change>
void EqEditor::ChangeBand(std::int32_t band, Change change) {
  if (!dsp::IsBandNumber(band)) return;
  dsp::EqBand fields = dsp::GetBand(store_.values, band);
  change(fields);
  dsp::SetBand(store_.values, band, fields);
}

void EqEditor::EditGain() {
  ShowGainText();
  ChangeBand(selectedBand_, [this](dsp::EqBand& band) {
    band.gain = dsp::GainFromSlider(view_.SliderValue(BandSlider::Gain));
  });
  FinishEdit();
}

void EqEditor::EditFrequency() {
  ShowFrequencyText();
  ChangeBand(selectedBand_, [this](dsp::EqBand& band) {
    band.frequency = dsp::FrequencyFromSlider(view_.SliderValue(BandSlider::Frequency));
  });
  // The bandwidth in Hz depends on the frequency; the band's q becomes the slider's along the way.
  EditBandwidth();
}

void EqEditor::EditBandwidth() {
  ShowBandwidthText();
  ChangeBand(selectedBand_, [this](dsp::EqBand& band) {
    band.q = dsp::QFromSlider(view_.SliderValue(BandSlider::Bandwidth));
  });
  FinishEdit();
}

void EqEditor::EditType(FilterType type) {
  ShowType(type);
  ChangeBand(selectedBand_, [type](dsp::EqBand& band) { dsp::ChangeFilterType(band, type); });
  FinishEdit();
  RefreshControls(Refresh::Full);
}

void EqEditor::Toggle(EqSwitch box) {
  const bool on = !view_.IsChecked(box);
  view_.SetChecked(box, on);
  if (box == EqSwitch::Equalizer) {
    store_.values[dsp::ParameterIndex(dsp::kEqualizerEnable)] = dsp::SwitchValue(on);
  } else {
    ChangeBand(selectedBand_, [on](dsp::EqBand& band) { band.enabled = dsp::SwitchValue(on); });
  }
  FinishEdit();
}

void EqEditor::SelectBand(std::int32_t band) {
  if (loading_) return;
  selectedBand_ = band;
  RefreshControls(Refresh::Full);
}

void EqEditor::DragBand(std::int32_t band, dsp::BandMarker position) {
  if (loading_) return;
  ChangeBand(band, [position](dsp::EqBand& fields) {
    fields.frequency = position.frequency;
    fields.gain = dsp::GainFromDecibels(position.gainDb);
  });
  RefreshControls(Refresh::Partial);
  ShowBandwidthText();
  FinishEdit();
}

void EqEditor::TakeLoadedSettings() {
  ShowNewValues();
  static_cast<void>(store::CommitChanges(engine_.registry, store_));
  FinishEdit();
}

void EqEditor::RestoreDefaults() {
  if (!store::CopyDefaultsToActive(engine_.registry, store_)) return;
  ShowNewValues();
  FinishEdit();
}

void EqEditor::SignalParameterChange() {
  engine_link::SignalParameterChange(engine_, store_);
}

// The end of every edit of a band or of the equalizer's switch.
void EqEditor::FinishEdit() {
  SignalParameterChange();
  if (dsp::IsBandNumber(selectedBand_)) {
    dsp::UpdateBandCoefficients(store_.values, selectedBand_, coefficients_);
  }
  ShowCurve();
}

void EqEditor::SelectFirstBand() {
  selectedBand_ = 1;
  RefreshControls(Refresh::Full);
}

// Shows a set of which anything may have changed, first in the band that was selected.
void EqEditor::ShowNewValues() {
  RefreshControls(Refresh::Full);
  dsp::UpdateBandCoefficients(store_.values, coefficients_);
  ShowCurve();
  SelectFirstBand();
}

void EqEditor::ShowCurve() {
  view_.SetSelectedBand(selectedBand_);
  view_.ShowResponse(store_.values, coefficients_);
}

void EqEditor::RefreshControls(Refresh refresh) {
  if (refresh == Refresh::Full) {
    ShowEqualizerSwitch();
    RefreshKnobs();
  }
  if (!dsp::IsBandNumber(selectedBand_)) return;
  const dsp::EqBand band = dsp::GetBand(store_.values, selectedBand_);
  view_.SetSliderValue(BandSlider::Frequency, dsp::FrequencyToSlider(band.frequency));
  view_.SetSliderValue(BandSlider::Gain, dsp::GainToSlider(band.gain));
  if (refresh == Refresh::Full) RefreshShape(band);
  ShowFrequencyText();
  ShowGainText();
}

void EqEditor::RefreshKnobs() {
  for (const Knob knob : kKnobsInOrder) {
    view_.SetKnobValue(knob, dsp::GetKnob(store_.values, knob));
  }
}

// Everything of a band that a drag of its marker leaves alone.
void EqEditor::RefreshShape(const dsp::EqBand& band) {
  view_.SetSliderValue(BandSlider::Bandwidth, dsp::QToSlider(band.q));
  view_.SetChecked(EqSwitch::Band, dsp::IsOn(band.enabled));
  ShowType(dsp::FilterTypeFromCode(dsp::TypeCode(band)));
  ShowBandwidthText();
}

// A type that is none checks no button and leaves the sliders enabled as they were.
void EqEditor::ShowType(std::optional<FilterType> type) {
  for (const FilterType each : kTypesInOrder) view_.SetTypeChecked(each, each == type);
  if (!type) return;
  const dsp::SliderEnabling enabling = dsp::SlidersFor(*type);
  view_.EnableSlider(BandSlider::Bandwidth, enabling.bandwidth);
  view_.EnableSlider(BandSlider::Gain, enabling.gain);
}

void EqEditor::ShowGainText() {
  view_.SetSliderText(BandSlider::Gain, dsp::GainText(view_.SliderValue(BandSlider::Gain)));
}

void EqEditor::ShowFrequencyText() {
  view_.SetSliderText(BandSlider::Frequency,
                      dsp::FrequencyText(view_.SliderValue(BandSlider::Frequency)));
}

void EqEditor::ShowBandwidthText() {
  view_.SetSliderText(BandSlider::Bandwidth,
                      dsp::BandwidthText(view_.SliderValue(BandSlider::Frequency),
                                         view_.SliderValue(BandSlider::Bandwidth)));
}

}  // namespace ui
