#include "tools/heard/plot_sheet.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <optional>
#include <span>

#include "dsp/biquad.h"
#include "dsp/response.h"
#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/plot/plot_painter.h"

namespace heard {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Graphics;
using platform::PointF;

constexpr float kScale = 1.5F;
constexpr platform::Size kPlot{1101, 296};  // the dialog's plot at that scale
constexpr std::int32_t kGap = 24;
constexpr std::int32_t kTitle = 40;
constexpr std::int32_t kLegend = 44;
constexpr std::int32_t kColumns = 2;

constexpr Argb kPaper = 0xFF15181C;
constexpr Argb kText = 0xFFE6EAEE;
constexpr Argb kCurve = 0xFF20BFD5;
constexpr Argb kDots = 0xFFFFFFFF;
constexpr Argb kWhole = 0xFFFFB347;

dsp::ConstParameterValues ValuesOf(const SettingPlot& plot) {
  return dsp::ConstParameterValues(plot.values.data(), dsp::kParameterCount);
}

// The filters that count for what is heard: none where the equalizer's own switch is off, which the
// panel's curve does not look at.
dsp::CoefficientTable HeardFilters(dsp::ConstParameterValues values) {
  dsp::CoefficientTable filters{};
  if (!dsp::IsOn(values[dsp::ParameterIndex(dsp::kEqualizerEnable)])) return filters;
  dsp::UpdateBandCoefficients(values, filters);
  for (int band = 1; band <= dsp::kBandCount; ++band) {
    if (!dsp::IsOn(dsp::GetBand(values, band).enabled)) {
      filters[static_cast<std::size_t>(band - 1)] = {};
    }
  }
  return filters;
}

dsp::ResponsePlotData Evaluate(dsp::ConstParameterValues values) {
  dsp::ResponsePlotData data;
  dsp::BuildResponseGrid(data.evalFreqs);
  dsp::EvaluateResponse(values, HeardFilters(values), data);
  return data;
}

// Of the filters, one after the other, in dB.
double FilterGain(const dsp::CoefficientTable& filters, double frequency) {
  const auto delay =
      std::polar(1.0, -2.0 * std::numbers::pi * frequency / double{dsp::kSampleRate});
  std::complex<double> gain = 1.0;
  for (const dsp::BiquadCoefficients& filter : filters) {
    const auto polynomial = [&](double c0, double c1, double c2) {
      return c0 + delay * (c1 + delay * c2);
    };
    gain *= polynomial(filter.b0, filter.b1, filter.b2) / polynomial(1.0, filter.a1, filter.a2);
  }
  return 20.0 * std::log10(std::abs(gain));
}

// The curve between its points, which lie evenly on a logarithmic axis.
double DrawnGain(const dsp::ResponsePlotData& data, double frequency) {
  const dsp::EvalFreqs& grid = data.evalFreqs;
  const double part = std::log(frequency / double{grid.f.front()}) /
                      std::log(double{grid.f.back()} / double{grid.f.front()});
  const double place = part * static_cast<double>(dsp::kGridPoints - 1);
  const auto below = std::min(static_cast<std::size_t>(place), dsp::kGridPoints - 2);
  const auto gain = [&](std::size_t i) {
    return 20.0 * std::log10(std::hypot(double{grid.response.re[i]}, double{grid.response.im[i]}));
  };
  return std::lerp(gain(below), gain(below + 1), place - static_cast<double>(below));
}

PointF PointOf(const dsp::PlotMapping& mapping, const Heard& heard) {
  return {mapping.X(static_cast<float>(heard.frequency)),
          mapping.Y(static_cast<float>(heard.gain))};
}

void DrawDots(Graphics& graphics, const dsp::PlotMapping& mapping,
              const std::vector<Heard>& heard) {
  constexpr float kRadius = 2.5F;
  for (const Heard& one : heard) {
    const PointF at = PointOf(mapping, one);
    graphics.FillEllipse({{at.x, at.y - kRadius}, {at.x, at.y + kRadius + 1.0F}, kDots, kDots},
                         {at.x - kRadius, at.y - kRadius, 2.0F * kRadius, 2.0F * kRadius});
  }
}

Bitmap DrawPlot(const SettingPlot& plot) {
  const dsp::PlotMapping mapping = ui::MakePlotMapping(kPlot, kScale);
  Bitmap layer(kPlot.width, kPlot.height, platform::PixelFormat::PremultipliedArgb32);
  const platform::Font labels(u"Verdana", 8.0F * kScale, platform::FontStyle::Regular);
  ui::PaintPlotGrid(layer, mapping, labels, false);

  dsp::ResponsePlotData data = Evaluate(ValuesOf(plot));
  dsp::MapResponseToPlot(mapping, data);
  Bitmap picture(kPlot.width, kPlot.height, platform::PixelFormat::PremultipliedArgb32);
  const std::optional<Bitmap> none;
  ui::PaintPlot(picture, layer, mapping, {none, none, none}, {data});

  Graphics graphics(picture);
  graphics.SetSmoothingMode(platform::SmoothingMode::AntiAlias);
  graphics.SetClip(ui::CurveClip(mapping));
  std::vector<PointF> whole;
  for (const Heard& one : plot.whole) whole.push_back(PointOf(mapping, one));
  if (whole.size() > 1) graphics.DrawCurve({kWhole, 1.5F}, whole, 0.5F);
  DrawDots(graphics, mapping, plot.equalizer);
  return picture;
}

void DrawLegend(Graphics& graphics, float y) {
  const platform::Font font(u"Segoe WP", 11.0F, platform::FontStyle::Regular);
  float x = static_cast<float>(kGap);
  const auto entry = [&](Argb color, std::u16string_view text) {
    graphics.FillRectangle(color, {x, y + 8.0F, 26.0F, 4.0F});
    graphics.DrawString(text, font, {x + 34.0F, y}, platform::StringFormat::GenericTypographic,
                        kText);
    x += 34.0F +
         graphics.MeasureString(text, font, platform::StringFormat::GenericTypographic).width +
         48.0F;
  };
  entry(kCurve, u"the panel's curve");
  entry(kDots, u"heard: the equalizer, knobs at rest");
  entry(kWhole, u"heard: the setting as it is, with bass, treble, widener and loudness");
}

Heard Worst(const std::vector<Heard>& heard, const std::function<double(double)>& gain) {
  Heard worst{0.0, 0.0};
  for (const Heard& one : heard) {
    const double difference = std::abs(one.gain - gain(one.frequency));
    if (difference > worst.gain) worst = {one.frequency, difference};
  }
  return worst;
}

}  // namespace

WorstDifferences FindWorstDifferences(const SettingPlot& plot) {
  const dsp::ResponsePlotData drawn = Evaluate(ValuesOf(plot));
  const dsp::CoefficientTable filters = HeardFilters(ValuesOf(plot));
  return {Worst(plot.equalizer, [&](double frequency) { return DrawnGain(drawn, frequency); }),
          Worst(plot.equalizer, [&](double frequency) { return FilterGain(filters, frequency); })};
}

Bitmap DrawSheet(const std::vector<SettingPlot>& plots) {
  const auto rows = static_cast<std::int32_t>((plots.size() + kColumns - 1) / kColumns);
  const std::int32_t cell = kTitle + kPlot.height;
  Bitmap sheet(kGap + kColumns * (kPlot.width + kGap), kGap + rows * (cell + kGap) + kLegend,
               platform::PixelFormat::PremultipliedArgb32);
  Graphics graphics(sheet);
  graphics.Clear(kPaper);
  graphics.SetTextRenderingHint(platform::TextRenderingHint::AntiAlias);
  const platform::Font title(u"Segoe WP", 15.0F, platform::FontStyle::Regular);
  for (std::size_t i = 0; i < plots.size(); ++i) {
    const auto place = static_cast<std::int32_t>(i);
    const std::int32_t x = kGap + place % kColumns * (kPlot.width + kGap);
    const std::int32_t y = kGap + place / kColumns * (cell + kGap);
    graphics.DrawString(plots[i].name, title, {static_cast<float>(x), static_cast<float>(y)},
                        platform::StringFormat::GenericTypographic, kText);
    graphics.DrawImage(DrawPlot(plots[i]), x, y + kTitle);
  }
  DrawLegend(graphics, static_cast<float>(kGap + rows * (cell + kGap)));
  return sheet;
}

}  // namespace heard
