// The controls of the equalizer as the editor sees them: values in and out, no windows.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "dsp/biquad.h"
#include "dsp/eq_model.h"

namespace ui {

enum class BandSlider { Gain, Frequency, Bandwidth };
enum class EqSwitch { Equalizer, Band };

// As they stand on the screen: knobs from left to right, buttons of the types from top to bottom.
inline constexpr std::array kKnobsInOrder = {dsp::Knob::Bass, dsp::Knob::Treble, dsp::Knob::Widener,
                                             dsp::Knob::Loudness};
inline constexpr std::array kTypesInOrder = {
    dsp::FilterType::Peaking, dsp::FilterType::HighShelving, dsp::FilterType::LowShelving,
    dsp::FilterType::HighPass, dsp::FilterType::LowPass};

// Setting a value sends no notification back. User-interface thread.
class EqView {
 public:
  virtual std::int32_t KnobValue(dsp::Knob knob) const = 0;
  virtual void SetKnobValue(dsp::Knob knob, std::int32_t value) = 0;

  // Integers in the slider's own range, as in "dsp/conversions.h". A slider shows the text that it
  // is given beside its value.
  virtual std::int32_t SliderValue(BandSlider slider) const = 0;
  virtual void SetSliderValue(BandSlider slider, std::int32_t value) = 0;
  virtual void SetSliderText(BandSlider slider, std::u16string_view text) = 0;
  virtual void EnableSlider(BandSlider slider, bool enabled) = 0;

  virtual bool IsChecked(EqSwitch box) = 0;
  virtual void SetChecked(EqSwitch box, bool checked) = 0;
  // The buttons of the filter types know nothing of one another.
  virtual void SetTypeChecked(dsp::FilterType type, bool checked) = 0;

  // Any number may come: one that names no band marks none. Shown by the next ShowResponse.
  virtual void SetSelectedBand(std::int32_t band) = 0;
  // Evaluates the curve and shows it, with the bands' markers, before it returns.
  virtual void ShowResponse(dsp::ConstParameterValues values,
                            const dsp::CoefficientTable& coefficients) = 0;

 protected:
  ~EqView() = default;
};

}  // namespace ui
