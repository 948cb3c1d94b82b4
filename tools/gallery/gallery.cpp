// Shows the custom controls in all their states on the dialogs' textured background, at the
// screen's resolution. Everything can be used; Escape ends it.
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "dsp/biquad.h"
#include "dsp/conversions.h"
#include "dsp/eq_model.h"
#include "dsp/response.h"
#include "platform/dialog.h"
#include "platform/drawing.h"
#include "platform/fake/fake_single_instance.h"
#include "platform/resources.h"
#include "platform/shell.h"
#include "platform/startup.h"
#include "resources/resource_ids.h"
#include "tools/gallery/gallery_template.h"
#include "ui/controls/buttons/png_button.h"
#include "ui/controls/buttons/png_checkbox.h"
#include "ui/controls/knob/potentiometer.h"
#include "ui/controls/plot/freq_plot.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/slider/png_slider.h"
#include "ui/images/png_resource.h"

namespace {

using platform::LParam;
using platform::LResult;
using platform::WParam;

enum class Input { Enabled, Disabled };
enum class Accent { Standard, Red };
enum class Scale { Linear, Logarithmic };
enum class Check { Off, On };

struct KnobSample {
  std::int32_t value;
  Input input = Input::Enabled;
  Accent accent = Accent::Standard;
};

struct SliderSample {
  std::u16string_view text;
  std::int32_t minValue;
  std::int32_t maxValue;
  std::int32_t value;
  Scale scale = Scale::Linear;
  Input input = Input::Enabled;
  Accent accent = Accent::Standard;
};

struct CheckboxSample {
  Check check;
  Accent accent = Accent::Standard;
};

struct ButtonSample {
  std::uint16_t image;
  float designDpi = 96.0F;
  bool showImage = true;
};

// In the order of their places.
constexpr auto kKnobs = std::to_array<KnobSample>({
    {0},
    {50},
    {100},
    {73, Input::Enabled, Accent::Red},
    {50, Input::Disabled},
    {25},
});

constexpr auto kSliders = std::to_array<SliderSample>({
    {u"-12.0 dB", -120, 120, -120},
    {u"0.0 dB", -120, 120, 0},
    {u"+12.0 dB", -120, 120, 120},
    {u"+6.3 dB", -120, 120, 63, Scale::Linear, Input::Enabled, Accent::Red},
    {u"-4.5 dB", -120, 120, -45, Scale::Linear, Input::Disabled},
    {u"1000 Hz", 20, 20000, 1000, Scale::Logarithmic},
    {u"20000 Hz", 1, 50, 10},
    {u"100000000 Hz", -120, 120, -60},
});

constexpr auto kCheckboxes = std::to_array<CheckboxSample>({
    {Check::Off},
    {Check::On},
    {Check::On, Accent::Red},
    {Check::Off, Accent::Red},
    {Check::On},
});

constexpr auto kButtons = std::to_array<ButtonSample>({
    {resources::kImageExpandButton},
    {resources::kImageCollapseButton},
    {resources::kImageExpandButton, 96.0F, false},
    {resources::kImageMenuButton},
    {resources::kImageCloseButton},
    {resources::kImageExpandButton, 24.0F},  // larger than the button
});

constexpr std::size_t kPlotCount = 2;  // one for each accent

std::array<float, dsp::kParameterCount> SampleParameters() {
  std::array<float, dsp::kParameterCount> values = dsp::InitialParameters();
  const auto change = [&values](int band, float gain, dsp::FilterType type) {
    dsp::EqBand fields = dsp::GetBand(values, band);
    fields.gain = dsp::GainFromDecibels(gain);
    dsp::ChangeFilterType(fields, type);
    dsp::SetBand(values, band, fields);
  };
  change(1, 0.0F, dsp::FilterType::HighPass);
  change(3, 9.0F, dsp::FilterType::Peaking);
  change(6, -12.0F, dsp::FilterType::Peaking);
  change(9, 6.0F, dsp::FilterType::HighShelving);
  dsp::EqBand off = dsp::GetBand(values, 5);
  off.enabled = dsp::SwitchValue(false);
  dsp::SetBand(values, 5, off);
  return values;
}

std::optional<platform::Bitmap> LoadTile() {
  return platform::Bitmap::FromPng(
      platform::FindResourceData(platform::ResourceType::Bitmap, resources::kDialogTileBitmap));
}

class Gallery : public platform::Dialog {
 public:
  Gallery() : Dialog(gallery::kGalleryTemplate) {
    std::size_t next = 0;
    const auto bind = [&](auto& samples) {
      for (auto& control : samples) BindControl(gallery::kGalleryControls.at(next++).id, control);
    };
    bind(knobs_);
    bind(sliders_);
    bind(checkboxes_);
    bind(buttons_);
    bind(plots_);
  }

 protected:
  LResult WindowProc(std::uint32_t message, WParam wParam, LParam lParam) override {
    switch (message) {
      case platform::message::kInitDialog:
        SetText(u"Controls");
        ShowSamples();
        return 1;
      case platform::message::kEraseBackground:
        // NOLINTNEXTLINE(performance-no-int-to-ptr): messages carry pointers as numbers
        PaintBackground(reinterpret_cast<platform::Graphics*>(wParam));
        return 1;
      case platform::message::kCommand:
        ToggleCheckbox(lParam);
        ShowSliderValue(lParam);
        break;
      case ui::kBandDraggedMessage:
        // NOLINTNEXTLINE(performance-no-int-to-ptr): messages carry pointers as numbers
        MoveBand(static_cast<int>(wParam), *reinterpret_cast<const dsp::BandMarker*>(lParam));
        return 0;
      default:
        break;
    }
    return Dialog::WindowProc(message, wParam, lParam);
  }

 private:
  void ShowSamples() {
    for (std::size_t i = 0; i < kKnobs.size(); ++i) Apply(kKnobs[i], knobs_[i]);
    for (std::size_t i = 0; i < kSliders.size(); ++i) Apply(kSliders[i], sliders_[i]);
    for (std::size_t i = 0; i < kCheckboxes.size(); ++i) Apply(kCheckboxes[i], checkboxes_[i]);
    for (std::size_t i = 0; i < kButtons.size(); ++i) {
      buttons_[i].SetImage(ui::LoadPngResource(kButtons[i].image, kButtons[i].designDpi));
      buttons_[i].showImage = kButtons[i].showImage;
    }
    plots_.back().redAccent = true;
    plots_.back().SetSelectedBand(6);
    for (ui::CFreqPlot& plot : plots_) plot.BuildResponseGrid();
    ShowResponse();
  }

  static void Apply(const KnobSample& sample, ui::CPotentiometer& knob) {
    knob.redAccent = sample.accent == Accent::Red;
    knob.Enable(sample.input == Input::Enabled);
    knob.SetRange(0, 100);
    knob.SetValue(sample.value);
  }

  static void Apply(const SliderSample& sample, ui::CPngSlider& slider) {
    slider.redAccent = sample.accent == Accent::Red;
    slider.Enable(sample.input == Input::Enabled);
    slider.SetLogScale(sample.scale == Scale::Logarithmic);
    slider.SetRange(sample.minValue, sample.maxValue);
    slider.SetValue(sample.value);
    slider.SetValueText(sample.text);
  }

  static void Apply(const CheckboxSample& sample, ui::CPngCheckbox& box) {
    box.redAccent = sample.accent == Accent::Red;
    box.Send(platform::message::kSetCheck, sample.check == Check::On ? 1 : 0, 0);
  }

  void ShowResponse() {
    dsp::UpdateBandCoefficients(values_, coefficients_);
    for (ui::CFreqPlot& plot : plots_) plot.EvaluateResponse(values_, coefficients_);
  }

  void PaintBackground(platform::Graphics* graphics) {
    if (graphics == nullptr || !tile_) return;
    const platform::Rect client = ClientRect();
    platform::Bitmap background(client.right, client.bottom,
                                platform::PixelFormat::PremultipliedArgb32);
    platform::Graphics(background).FillTiled(*tile_, client);
    graphics->DrawImage(background, 0, 0);
    const auto capture = [&background](auto& controls) {
      for (auto& control : controls) control.CaptureBackground(background);
    };
    capture(knobs_);
    capture(sliders_);
    capture(checkboxes_);
    capture(buttons_);
  }

  void ToggleCheckbox(LParam source) {
    for (ui::CPngCheckbox& box : checkboxes_) {
      if (box.Handle() != static_cast<platform::WindowHandle>(source)) continue;
      const bool checked = box.Send(platform::message::kGetCheck, 0, 0) == 1;
      box.Send(platform::message::kSetCheck, checked ? 0 : 1, 0);
    }
  }

  void ShowSliderValue(LParam source) {
    for (ui::CPngSlider& slider : sliders_) {
      if (slider.Handle() != static_cast<platform::WindowHandle>(source)) continue;
      slider.SetValueText(dsp::FrequencyText(slider.GetValue()));
    }
  }

  void MoveBand(int band, const dsp::BandMarker& marker) {
    dsp::EqBand fields = dsp::GetBand(values_, band);
    fields.frequency = marker.frequency;
    fields.gain = dsp::GainFromDecibels(marker.gainDb);
    dsp::SetBand(values_, band, fields);
    ShowResponse();
  }

  std::array<ui::CPotentiometer, kKnobs.size()> knobs_;
  std::array<ui::CPngSlider, kSliders.size()> sliders_;
  std::array<ui::CPngCheckbox, kCheckboxes.size()> checkboxes_;
  std::array<ui::CPngButton, kButtons.size()> buttons_;
  std::array<ui::CFreqPlot, kPlotCount> plots_;

  std::optional<platform::Bitmap> tile_ = LoadTile();
  std::array<float, dsp::kParameterCount> values_ = SampleParameters();
  dsp::CoefficientTable coefficients_;
};

}  // namespace

int main() {
  const platform::DrawingSession drawing;
  platform::FakeSingleInstance instance;
  const platform::UserInterfaceSession session(instance);
  Gallery().DoModal();
  return 0;
}
