// The store's values as the advanced dialog takes them: whatever bytes stand for a parameter, the
// dialog loads it, shows it, draws it and edits it. An input is a setting's name and values, each
// with number, size and bytes, then edits.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <map>
#include <span>
#include <string>

#include "dsp/response.h"
#include "tests/eq/eq_machine.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input.h"
#include "ui/controls/knob/knob_drag.h"
#include "ui/controls/knob/knob_geometry.h"
#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/slider/slider_geometry.h"
#include "ui/controls/slider/slider_scale.h"
#include "ui/eq/eq_editor.h"

namespace {

using Bits = std::array<std::uint32_t, store::kParameterCount>;

constexpr platform::Size kSliderSize{254, 48};
constexpr platform::Size kPlotSize{560, 300};
constexpr platform::Size kKnobSize{90, 110};
constexpr platform::Size kMarkerSize{15, 15};

// The controls without their windows: what they make of a value, down to the pixel.
class Controls final : public ui::EqView {
 public:
  Controls() {
    for (ui::SliderScale& scale : scales_) {
      scale.SetTravel(ui::SliderGeometry(kSliderSize, 1.0).Travel());
    }
    scales_[1].SetLogScale(true);
    scales_[0].SetRange(-120, 120);
    scales_[1].SetRange(20, 20000);
    scales_[2].SetRange(1, 50);
    dsp::BuildResponseGrid(plot_.evalFreqs);
  }

  std::int32_t KnobValue(dsp::Knob knob) const override {
    return knobMap_.Value(knobs_[Index(knob)]);
  }
  void SetKnobValue(dsp::Knob knob, std::int32_t value) override {
    knobs_[Index(knob)] = knobMap_.Position(value);
    static_cast<void>(ui::LitDegrees(knobs_[Index(knob)]));
    static_cast<void>(ui::KnobGeometry(kKnobSize, 1.0).DotOrigin(knobs_[Index(knob)]));
  }
  std::int32_t SliderValue(ui::BandSlider slider) const override {
    return scales_[Index(slider)].Value(sliders_[Index(slider)]);
  }
  void SetSliderValue(ui::BandSlider slider, std::int32_t value) override {
    const ui::SliderScale& scale = scales_[Index(slider)];
    sliders_[Index(slider)] = scale.Position(value);
    fuzz::Require(sliders_[Index(slider)] >= 0 && sliders_[Index(slider)] <= scale.Travel(),
                  "a thumb lies within its travel");
  }
  void SetSliderText(ui::BandSlider, std::u16string_view text) override {
    fuzz::Require(!text.empty() && text.size() < 32, "a value's text is short");
  }
  void EnableSlider(ui::BandSlider, bool) override {}
  bool IsChecked(ui::EqSwitch box) override { return switches_[Index(box)]; }
  void SetChecked(ui::EqSwitch box, bool checked) override { switches_[Index(box)] = checked; }
  void SetTypeChecked(dsp::FilterType, bool) override {}
  void SetSelectedBand(std::int32_t) override {}
  void ShowResponse(dsp::ConstParameterValues values,
                    const dsp::CoefficientTable& coefficients) override {
    const dsp::PlotMapping mapping = ui::MakePlotMapping(kPlotSize, 1.0F);
    dsp::EvaluateResponse(values, coefficients, plot_);
    dsp::MapResponseToPlot(mapping, plot_);
    for (const dsp::BandMarker& marker : plot_.bandMarkers) {
      static_cast<void>(ui::MarkerOrigin(mapping, marker, kMarkerSize));
      static_cast<void>(ui::MarkerHitBox(mapping, marker, kMarkerSize));
    }
  }

 private:
  template <class Which>
  static std::size_t Index(Which which) {
    return static_cast<std::size_t>(which);
  }

  ui::LinearMap knobMap_{0, 100, ui::kKnobTravel};
  std::array<ui::SliderScale, 3> scales_;
  std::array<std::int32_t, 4> knobs_{};
  std::array<std::int32_t, 3> sliders_{};
  std::array<bool, 2> switches_{};
  dsp::ResponsePlotData plot_;
};

std::u16string Wide(std::string_view text) {
  return {text.begin(), text.end()};
}

// Puts the input's values into the store and into `expected`, as the load should find them.
void PutValues(fuzz::Input& input, ui::EqMachine& machine, Bits& expected) {
  const std::u16string setting = Wide(input.Bytes(input.Byte() % 4U + 1U));
  machine.SetActive(ui::kSpeakerPathKey, setting);
  const std::u16string active = setting.substr(0, setting.find(u'\0'));
  const auto key = machine.registry.CreateKey(
      platform::RegistryRoot::LocalMachine,
      store::SettingKeyPath(store::Tree::Parameters, ui::kSpeakerPathKey, active),
      store::kWriteAccess);
  if (!key) return;
  std::map<std::size_t, std::string_view> written;
  for (unsigned count = input.Byte(); count > 0; --count) {
    const std::size_t index = input.Number16() % store::kParameterCount;
    written[index] = input.Bytes(input.Byte() % 8U);
  }
  for (const auto& [index, bytes] : written) {
    key->SetValue(store::ParameterName(index + 1), platform::RegistryType::Binary,
                  std::as_bytes(std::span(bytes)));
    if (bytes.size() <= sizeof(float)) {
      std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(&expected[index]));
    }
  }
}

bool MirrorEqualsBands(const store::ParameterStore& store) {
  constexpr std::size_t kCount = std::size_t{dsp::kBandCount} * dsp::kFieldsPerBand;
  return std::memcmp(&store.values[dsp::ParameterIndex(dsp::kFirstBandParameter)],
                     &store.values[dsp::ParameterIndex(dsp::kFirstMirrorParameter)],
                     kCount * sizeof(float)) == 0;
}

void Drag(fuzz::Input& input, ui::EqEditor& editor) {
  const platform::Point pointer{input.Number16() % 700 - 50, input.Number16() % 400 - 50};
  const auto marker = ui::DraggedMarker(ui::MakePlotMapping(kPlotSize, 1.0F), pointer, 1.0);
  editor.DragBand(input.Byte() % 16 - 2, marker.value_or(dsp::BandMarker{}));
}

void Edit(fuzz::Input& input, ui::EqEditor& editor) {
  switch (input.Byte() % 6U) {
    case 0:
      editor.EditKnob(static_cast<dsp::Knob>(input.Byte() % 4U));
      break;
    case 1:
      editor.EditSlider(static_cast<ui::BandSlider>(input.Byte() % 3U));
      break;
    case 2:
      editor.EditType(ui::kTypesInOrder[input.Byte() % ui::kTypesInOrder.size()]);
      break;
    case 3:
      editor.Toggle(static_cast<ui::EqSwitch>(input.Byte() % 2U));
      break;
    case 4:
      // Nothing is edited yet.
      editor.SelectBand(input.Byte() % 16 - 2);
      return;
    default:
      Drag(input, editor);
  }
  fuzz::Require(MirrorEqualsBands(editor.Store()), "after an edit the mirror equals the bands");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kMostEdits = 8;
  fuzz::Input input(fuzz::AsText(data, size));
  ui::EqMachine machine;
  Bits expected = std::bit_cast<Bits>(dsp::InitialParameters());
  PutValues(input, machine, expected);

  Controls controls;
  ui::EqEditor editor({machine.registry, machine.events, machine.audioDevices}, controls);
  editor.LoadFirstSet();
  fuzz::Require(std::bit_cast<Bits>(editor.Store().values) == expected,
                "values are loaded to the bit, others keep what they were");
  editor.ShowEqualizerSwitch();
  editor.ShowFirstSet();
  for (int edits = 0; edits < kMostEdits && !input.IsEmpty(); ++edits) Edit(input, editor);
  return 0;
}
