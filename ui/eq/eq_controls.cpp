#include "ui/eq/eq_controls.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "dsp/conversions.h"
#include "platform/resources.h"
#include "resources/resource_ids.h"
#include "resources/spoken_texts.h"
#include "ui/controls/shared/spoken_scale.h"

namespace ui {
namespace {

using dsp::FilterType;
using dsp::Knob;

// A control's id in the dialog template and its caption in the string table.
template <typename Kind>
struct Row {
  Kind kind;
  std::uint16_t control;
  std::uint16_t caption;
};

constexpr auto kKnobs = std::to_array<Row<Knob>>({
    {Knob::Bass, resources::kKnobBass, resources::kTextBass},
    {Knob::Treble, resources::kKnobTreble, resources::kTextTreble},
    {Knob::Widener, resources::kKnobWidener, resources::kTextWidener},
    {Knob::Loudness, resources::kKnobLoudness, resources::kTextLoudness},
});
constexpr auto kSliders = std::to_array<Row<BandSlider>>({
    {BandSlider::Gain, resources::kGainSlider, resources::kTextGain},
    {BandSlider::Frequency, resources::kFrequencySlider, resources::kTextFrequency},
    {BandSlider::Bandwidth, resources::kBandwidthSlider, resources::kTextBandwidth},
});
constexpr auto kTypes = std::to_array<Row<FilterType>>({
    {FilterType::Peaking, resources::kTypePeaking, resources::kTextPeaking},
    {FilterType::LowPass, resources::kTypeLowPass, resources::kTextLowPass},
    {FilterType::HighPass, resources::kTypeHighPass, resources::kTextHighPass},
    {FilterType::LowShelving, resources::kTypeLowShelving, resources::kTextLowShelving},
    {FilterType::HighShelving, resources::kTypeHighShelving, resources::kTextHighShelving},
});
// The template gives the Equalizer box its caption.
constexpr std::uint16_t kNoText = 0;
constexpr auto kSwitches = std::to_array<Row<EqSwitch>>({
    {EqSwitch::Equalizer, resources::kEqualizerEnable, kNoText},
    {EqSwitch::Band, resources::kBandEnable, resources::kTextBandEnable},
});

// The buttons of the types are check boxes of which one is checked.
std::optional<platform::AccessibleRole> SpokenRole(std::uint16_t control) {
  if (control == resources::kMenuButton) return platform::AccessibleRole::ButtonMenu;
  if (std::ranges::find(kTypes, control, &Row<FilterType>::control) != kTypes.end())
    return platform::AccessibleRole::RadioButton;
  return std::nullopt;
}

platform::AccessibleAnnotation AnnotationOf(std::uint16_t control) {
  platform::AccessibleAnnotation annotation;
  annotation.role = SpokenRole(control);
  for (const resources::SpokenText& text : resources::kSpokenTexts) {
    if (text.control != control) continue;
    annotation.name = text.name;
    annotation.description = text.description;
  }
  return annotation;
}

// Whole tenths, without the traces of single precision.
double ToTenths(float number) {
  return std::round(double{number} * 10.0) / 10.0;
}

constexpr SpokenScale kDecibels{
    .toSpoken = [](std::int32_t slider) { return ToTenths(dsp::DecibelsFromSlider(slider)); },
    .fromSpoken =
        [](double decibels) { return dsp::DecibelsToSlider(static_cast<float>(decibels)); }};
constexpr SpokenScale kQ{
    .toSpoken = [](std::int32_t slider) { return ToTenths(dsp::QFromSlider(slider)); },
    .fromSpoken = [](double q) { return dsp::QToSlider(static_cast<float>(q)); }};

void SetCaption(platform::Window& control, std::uint16_t text) {
  if (text == kNoText) return;
  control.SetText(platform::LoadStringResource(text));
}

void Check(CPngCheckbox& box, bool checked) {
  box.Send(platform::message::kSetCheck, checked ? 1 : 0, 0);
}

}  // namespace

void EqControls::ForEach(const std::function<void(std::uint16_t, platform::Window&)>& visit) {
  for (const auto& row : kKnobs) visit(row.control, KnobOf(row.kind));
  for (const auto& row : kSliders) visit(row.control, Slider(row.kind));
  for (const auto& row : kSwitches) visit(row.control, Box(row.kind));
  for (const auto& row : kTypes) visit(row.control, TypeButton(row.kind));
  visit(resources::kPlot, plot);
  visit(resources::kExpandButton, expandButton);
  visit(resources::kMenuButton, menuButton);
  visit(resources::kCloseButton, closeButton);
}

void EqControls::SetCaptionsAndRanges() {
  SetSpokenTexts();
  for (const auto& row : kKnobs) SetCaption(KnobOf(row.kind), row.caption);
  for (const auto& row : kSliders) SetCaption(Slider(row.kind), row.caption);
  for (const auto& row : kTypes) SetCaption(TypeButton(row.kind), row.caption);
  for (const auto& row : kSwitches) SetCaption(Box(row.kind), row.caption);

  for (const Knob knob : {Knob::Bass, Knob::Treble, Knob::Loudness}) {
    KnobOf(knob).SetRange(0, 100);
    KnobOf(knob).SetValue(0);
  }
  KnobOf(Knob::Widener).SetRange(0, 100);

  PrepareSlider(BandSlider::Gain, -120, 120, 0);
  Slider(BandSlider::Frequency).SetLogScale(true);
  PrepareSlider(BandSlider::Frequency, 20, 20000, 1000);
  PrepareSlider(BandSlider::Bandwidth, 1, 50, 10);
}

void EqControls::SetSpokenTexts() {
  ForEach([](std::uint16_t id, platform::Window& control) { control.Annotate(AnnotationOf(id)); });
  Slider(BandSlider::Gain).SetSpokenScale(kDecibels);
  Slider(BandSlider::Bandwidth).SetSpokenScale(kQ);
}

void EqControls::TellExpansion(platform::AccessibleExpansion expansion) {
  platform::AccessibleAnnotation annotation = AnnotationOf(resources::kExpandButton);
  annotation.expansion = expansion;
  expandButton.Annotate(std::move(annotation));
  NotifyAccessible(expandButton, platform::AccessibleChange::Expansion);
}

void EqControls::PrepareSlider(BandSlider slider, std::int32_t minValue, std::int32_t maxValue,
                               std::int32_t value) {
  Slider(slider).SetRange(minValue, maxValue);
  Slider(slider).SetValue(value);
}

void EqControls::SetRedAccent() {
  for (CPotentiometer& knob : knobs_) knob.redAccent = true;
  for (CPngSlider& slider : sliders_) slider.redAccent = true;
  for (CPngCheckbox& box : switches_) box.redAccent = true;
  for (CPngCheckbox& button : types_) button.redAccent = true;
  plot.redAccent = true;
}

void EqControls::CaptureBackground(const platform::Bitmap& background) {
  for (const Knob knob : kKnobsInOrder) KnobOf(knob).CaptureBackground(background);
  expandButton.CaptureBackground(background);
  Box(EqSwitch::Equalizer).CaptureBackground(background);
  for (const BandSlider slider : {BandSlider::Frequency, BandSlider::Gain, BandSlider::Bandwidth}) {
    Slider(slider).CaptureBackground(background);
  }
  for (const FilterType type : {FilterType::HighPass, FilterType::LowPass, FilterType::HighShelving,
                                FilterType::LowShelving, FilterType::Peaking}) {
    TypeButton(type).CaptureBackground(background);
  }
  Box(EqSwitch::Band).CaptureBackground(background);
}

std::int32_t EqControls::KnobValue(Knob knob) const {
  return knobs_[static_cast<std::size_t>(knob)].GetValue();
}

void EqControls::SetKnobValue(Knob knob, std::int32_t value) {
  KnobOf(knob).SetValue(value);
}

std::int32_t EqControls::SliderValue(BandSlider slider) const {
  return sliders_[static_cast<std::size_t>(slider)].GetValue();
}

void EqControls::SetSliderValue(BandSlider slider, std::int32_t value) {
  Slider(slider).SetValue(value);
}

void EqControls::SetSliderText(BandSlider slider, std::u16string_view text) {
  Slider(slider).SetValueText(text);
}

void EqControls::EnableSlider(BandSlider slider, bool enabled) {
  Slider(slider).Enable(enabled);
}

bool EqControls::IsChecked(EqSwitch box) {
  return Box(box).Send(platform::message::kGetCheck, 0, 0) != 0;
}

void EqControls::SetChecked(EqSwitch box, bool checked) {
  Check(Box(box), checked);
}

void EqControls::SetTypeChecked(FilterType type, bool checked) {
  Check(TypeButton(type), checked);
}

void EqControls::SetSelectedBand(std::int32_t band) {
  plot.SetSelectedBand(band);
}

void EqControls::ShowResponse(dsp::ConstParameterValues values,
                              const dsp::CoefficientTable& coefficients) {
  plot.EvaluateResponse(values, coefficients);
}

CPngCheckbox& EqControls::TypeButton(FilterType type) {
  return types_[static_cast<std::size_t>(type) - 1];
}

}  // namespace ui
