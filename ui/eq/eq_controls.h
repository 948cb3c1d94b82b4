// The controls of the equalizer dialog, and what the dialog does to all of them at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "dsp/eq_model.h"
#include "platform/drawing.h"
#include "platform/window.h"
#include "ui/controls/buttons/png_button.h"
#include "ui/controls/buttons/png_checkbox.h"
#include "ui/controls/knob/potentiometer.h"
#include "ui/controls/plot/freq_plot.h"
#include "ui/controls/slider/png_slider.h"
#include "ui/eq/eq_view.h"

namespace ui {

// User-interface thread.
class EqControls final : public EqView {
 public:
  // Calls `visit` with every control, so that a dialog can bind them.
  void ForEach(const std::function<void(std::uint16_t id, platform::Window& control)>& visit);

  // Gives the attached controls their captions, spoken texts, ranges and first values.
  void SetCaptionsAndRanges();
  // Whether the dialog shows all of them, for assistive technology.
  void TellExpansion(platform::AccessibleExpansion expansion);
  // The dialog's skin; before the first paint.
  void SetRedAccent();
  // Hands the dialog's background to the controls that keep a copy of it. The plot needs none, and
  // the Menu and close buttons are drawn onto the dialog itself.
  void CaptureBackground(const platform::Bitmap& background);

  std::int32_t KnobValue(dsp::Knob knob) const override;
  void SetKnobValue(dsp::Knob knob, std::int32_t value) override;
  std::int32_t SliderValue(BandSlider slider) const override;
  void SetSliderValue(BandSlider slider, std::int32_t value) override;
  void SetSliderText(BandSlider slider, std::u16string_view text) override;
  void EnableSlider(BandSlider slider, bool enabled) override;
  bool IsChecked(EqSwitch box) override;
  void SetChecked(EqSwitch box, bool checked) override;
  void SetTypeChecked(dsp::FilterType type, bool checked) override;
  void SetSelectedBand(std::int32_t band) override;
  void ShowResponse(dsp::ConstParameterValues values,
                    const dsp::CoefficientTable& coefficients) override;

  CPngSlider& Slider(BandSlider slider) { return sliders_[static_cast<std::size_t>(slider)]; }

  CFreqPlot plot;
  CPngButton expandButton;
  CPngButton menuButton;
  CPngButton closeButton;

 private:
  CPotentiometer& KnobOf(dsp::Knob knob) { return knobs_[static_cast<std::size_t>(knob)]; }
  CPngCheckbox& Box(EqSwitch box) { return switches_[static_cast<std::size_t>(box)]; }
  CPngCheckbox& TypeButton(dsp::FilterType type);
  void PrepareSlider(BandSlider slider, std::int32_t minValue, std::int32_t maxValue,
                     std::int32_t value);
  void SetSpokenTexts();

  std::array<CPotentiometer, 4> knobs_;
  std::array<CPngSlider, 3> sliders_;
  std::array<CPngCheckbox, 2> switches_;
  std::array<CPngCheckbox, 5> types_;
};

}  // namespace ui
