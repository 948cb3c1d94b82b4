#include "ui/controls/plot/spoken_bands.h"

#include <string>

#include "dsp/conversions.h"
#include "dsp/eq_model.h"

namespace ui {

using platform::AccessibleChange;
using platform::AccessibleCheck;

namespace {

constexpr std::u16string_view kBandName = u"Band ";
constexpr std::u16string_view kInactive = u"off";

std::size_t Index(std::int32_t band) {
  return static_cast<std::size_t>(band) - 1;
}

std::u16string PlaceText(const dsp::BandMarker& marker) {
  return dsp::FrequencyText(dsp::FrequencyToSlider(marker.frequency)) + u", " +
         dsp::GainText(dsp::DecibelsToSlider(marker.gainDb));
}

}  // namespace

platform::AccessibleInfo DescribeBand(const PlotState& state, std::int32_t band) {
  platform::AccessibleInfo info;
  info.role = platform::AccessibleRole::RadioButton;
  info.name = kBandName;
  for (const char digit : std::to_string(band)) info.name += static_cast<char16_t>(digit);
  info.value = PlaceText(state.data.bandMarkers[Index(band)]);
  if (!dsp::IsOn(state.data.bandState[Index(band)])) info.value.append(u", ").append(kInactive);
  // Few screen readers look for the value of a button.
  info.description = info.value;
  info.check = band == state.selectedBand ? AccessibleCheck::Checked : AccessibleCheck::Unchecked;
  return info;
}

void SpokenBands::Announce(const platform::Window& plot, const PlotState& state) {
  for (std::int32_t band = 1; band <= dsp::kBandCount; ++band) {
    const dsp::BandMarker& marker = state.data.bandMarkers[Index(band)];
    const Band now{marker.frequency, marker.gainDb, dsp::IsOn(state.data.bandState[Index(band)])};
    if (bands_[Index(band)] == now) continue;
    bands_[Index(band)] = now;
    NotifyAccessible(plot, AccessibleChange::Description, band);
  }
  const std::int32_t before = selectedBand_;
  if (before == state.selectedBand) return;
  selectedBand_ = state.selectedBand;
  for (const std::int32_t band : {before, selectedBand_}) {
    if (dsp::IsBandNumber(band)) NotifyAccessible(plot, AccessibleChange::Check, band);
  }
}

}  // namespace ui
