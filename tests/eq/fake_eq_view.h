// Controls that hold what they are given and tell in which order things happened.
#pragma once

#include <array>
#include <map>
#include <string>

#include "ui/eq/eq_view.h"

namespace ui {

// "gain text +3.0 dB; curve; ", shared with what else the test wants in the same order.
using EventLog = std::string;

class FakeEqView final : public EqView {
 public:
  explicit FakeEqView(EventLog& log) : log_(log) {}

  static std::string Name(BandSlider slider) {
    return std::array{"gain", "frequency", "bandwidth"}[static_cast<std::size_t>(slider)];
  }
  static std::string Name(dsp::Knob knob) {
    return std::array{"bass", "treble", "widener", "loudness"}[static_cast<std::size_t>(knob)];
  }
  static std::string Name(dsp::FilterType type) {
    return std::array{"peaking", "low pass", "high pass", "low shelving",
                      "high shelving"}[static_cast<std::size_t>(type) - 1];
  }

  std::int32_t KnobValue(dsp::Knob knob) const override { return knobs[knob]; }
  void SetKnobValue(dsp::Knob knob, std::int32_t value) override {
    knobs[knob] = value;
    Note(Name(knob) + " " + std::to_string(value));
  }
  std::int32_t SliderValue(BandSlider slider) const override { return sliders.at(slider); }
  void SetSliderValue(BandSlider slider, std::int32_t value) override {
    sliders[slider] = value;
    Note(Name(slider) + " " + std::to_string(value));
  }
  void SetSliderText(BandSlider slider, std::u16string_view text) override {
    texts[slider] = std::string(text.begin(), text.end());
    Note(Name(slider) + " text " + texts[slider]);
  }
  void EnableSlider(BandSlider slider, bool enabled) override {
    sliderEnabled[slider] = enabled;
    Note((enabled ? "enable " : "disable ") + Name(slider));
  }
  bool IsChecked(EqSwitch box) override { return switches[box]; }
  void SetChecked(EqSwitch box, bool checked) override {
    switches[box] = checked;
    Note(std::string(box == EqSwitch::Band ? "band " : "equalizer ") + (checked ? "on" : "off"));
  }
  void SetTypeChecked(dsp::FilterType type, bool checked) override {
    types[type] = checked;
    Note((checked ? "check " : "uncheck ") + Name(type));
  }
  void SetSelectedBand(std::int32_t band) override {
    selectedBand = band;
    Note("select " + std::to_string(band));
  }
  void ShowResponse(dsp::ConstParameterValues /*values*/,
                    const dsp::CoefficientTable& shown) override {
    coefficients = shown;
    Note("curve");
  }

  mutable std::map<dsp::Knob, std::int32_t> knobs;
  std::map<BandSlider, std::int32_t> sliders{
      {BandSlider::Gain, 0}, {BandSlider::Frequency, 1000}, {BandSlider::Bandwidth, 10}};
  std::map<BandSlider, std::string> texts;
  std::map<BandSlider, bool> sliderEnabled;
  std::map<EqSwitch, bool> switches;
  std::map<dsp::FilterType, bool> types;
  std::int32_t selectedBand = 0;
  dsp::CoefficientTable coefficients{};

 private:
  void Note(const std::string& entry) { log_ += entry + "; "; }

  EventLog& log_;
};

}  // namespace ui
