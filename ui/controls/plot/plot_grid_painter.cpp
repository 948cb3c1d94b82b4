#include <array>
#include <span>
#include <string_view>

#include "ui/controls/plot/plot_painter.h"
#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

using dsp::PlotMapping;
using platform::Argb;
using platform::Graphics;
using platform::Pen;
using platform::PointF;

constexpr Argb kBase = 0xFF272727;
constexpr Argb kBaseRedAccent = 0xFF000000;
constexpr Argb kSlantedBand = 0xFF1A1A1A;
constexpr Argb kOuterFrame = 0xFF1C1C1C;
constexpr Argb kMiddleFrame = 0xFF4A4A4A;
constexpr Argb kInnerFrame = 0xFF212121;
constexpr Argb kMinorGrid = 0x3CFFFFFF;
constexpr Argb kMajorGrid = 0x64FFFFFF;
constexpr Argb kLabels = 0x64FFFFFF;

using dsp::kPlotFreqMax;
using dsp::kPlotFreqMin;
constexpr float kGainMax = dsp::kPlotGainMax;

struct Label {
  float value;
  std::u16string_view text;
};

// There is a line at each.
constexpr auto kGainLabels = std::to_array<Label>({
    {-20.0F, u"-20"},
    {-15.0F, u"-15"},
    {-10.0F, u"-10"},
    {-5.0F, u"-5"},
    {0.0F, u"0"},
    {5.0F, u"+5"},
    {10.0F, u"+10"},
    {15.0F, u"+15"},
    {20.0F, u"+20"},
});

constexpr auto kMinorFrequencies = std::to_array<float>(
    {20.0F,   30.0F,   40.0F,   50.0F,   60.0F,   70.0F,   80.0F,   90.0F,   200.0F,
     300.0F,  400.0F,  500.0F,  600.0F,  700.0F,  800.0F,  900.0F,  2000.0F, 3000.0F,
     4000.0F, 5000.0F, 6000.0F, 7000.0F, 8000.0F, 9000.0F, 20000.0F});

constexpr auto kMajorFrequencies = std::to_array<float>({100.0F, 1000.0F, 10000.0F});

constexpr auto kFrequencyLabels = std::to_array<Label>({
    {20.0F, u"20"},
    {30.0F, u"30"},
    {40.0F, u"40"},
    {50.0F, u"50"},
    {100.0F, u"100"},
    {200.0F, u"200"},
    {300.0F, u"300"},
    {400.0F, u"400"},
    {500.0F, u"500"},
    {1000.0F, u"1k"},
    {2000.0F, u"2k"},
    {3000.0F, u"3k"},
    {4000.0F, u"4k"},
    {5000.0F, u"5k"},
    {10000.0F, u"10k"},
    {20000.0F, u"20k"},
});

// Plain colour with a slanted, darker band on the right.
void FillBackground(Graphics& graphics, const PlotMapping& mapping, Argb base) {
  const auto width = static_cast<float>(mapping.width);
  const auto height = static_cast<float>(mapping.height);
  graphics.FillRectangle(base, {0.0F, 0.0F, width, height});
  const auto bottom = static_cast<float>(ScaledPixels(108.0, mapping.dpiScale));
  const auto top = static_cast<float>(mapping.width - ScaledPixels(142.0, mapping.dpiScale));
  const std::array<PointF, 4> band{{{bottom, height}, {top, 0.0F}, {width, 0.0F}, {width, height}}};
  graphics.FillPolygon(kSlantedBand, band);
}

void DrawFrame(Graphics& graphics, const PlotMapping& mapping) {
  const auto width = static_cast<float>(mapping.width);
  const auto height = static_cast<float>(mapping.height);
  const float s = mapping.dpiScale;
  graphics.DrawRectangle({kOuterFrame, 1.0F}, {0.0F, 0.0F, width, height});
  graphics.DrawRectangle({kMiddleFrame, 1.0F}, {s, s, width - 3.0F * s, height - 3.0F * s});
  graphics.DrawRectangle({kInnerFrame, 1.0F},
                         {2.0F * s, 2.0F * s, width - 5.0F * s, height - 5.0F * s});
}

void DrawFrequencyLines(Graphics& graphics, const PlotMapping& mapping, const Pen& pen,
                        std::span<const float> frequencies) {
  const float bottom = mapping.Y(-kGainMax);
  const float top = mapping.Y(kGainMax);
  for (const float frequency : frequencies) {
    const float x = mapping.X(frequency);
    graphics.DrawLine(pen, {x, bottom}, {x, top});
  }
}

void DrawGrid(Graphics& graphics, const PlotMapping& mapping) {
  const Pen minorGridPen{kMinorGrid, mapping.dpiScale};
  const Pen majorGridPen{kMajorGrid, 2.0F * mapping.dpiScale};
  for (const Label& gain : kGainLabels) {
    const float y = mapping.Y(gain.value);
    graphics.DrawLine(majorGridPen, {mapping.X(kPlotFreqMin), y}, {mapping.X(kPlotFreqMax), y});
  }
  DrawFrequencyLines(graphics, mapping, minorGridPen, kMinorFrequencies);
  DrawFrequencyLines(graphics, mapping, majorGridPen, kMajorFrequencies);
}

float HalfInPixels(float length) {
  return static_cast<float>(dsp::TruncateToInt32(length / 2.0F));
}

void DrawLabels(Graphics& graphics, const PlotMapping& mapping, const platform::Font& font) {
  constexpr auto kFormat = platform::StringFormat::GenericDefault;
  const float s = mapping.dpiScale;
  graphics.SetTextRenderingHint(platform::TextRenderingHint::AntiAliasGridFit);
  for (const Label& gain : kGainLabels) {
    const platform::SizeF size = graphics.MeasureString(gain.text, font, kFormat);
    const PointF origin{mapping.X(kPlotFreqMin) - size.width - 2.0F * s,
                        mapping.Y(gain.value) - HalfInPixels(size.height)};
    graphics.DrawString(gain.text, font, origin, kFormat, kLabels);
  }
  for (const Label& frequency : kFrequencyLabels) {
    const platform::SizeF size = graphics.MeasureString(frequency.text, font, kFormat);
    const PointF origin{mapping.X(frequency.value) - HalfInPixels(size.width),
                        mapping.Y(-kGainMax) + 3.0F * s};
    graphics.DrawString(frequency.text, font, origin, kFormat, kLabels);
  }
}

}  // namespace

void PaintPlotGrid(platform::Bitmap& layer, const PlotMapping& mapping,
                   const platform::Font& labelFont, bool redAccent) {
  Graphics graphics(layer);
  graphics.SetCompositingQuality(platform::CompositingQuality::HighQuality);
  graphics.SetInterpolationMode(platform::InterpolationMode::Bilinear);
  graphics.SetSmoothingMode(platform::SmoothingMode::AntiAlias);
  graphics.SetPixelOffsetMode(platform::PixelOffsetMode::HighSpeed);
  FillBackground(graphics, mapping, redAccent ? kBaseRedAccent : kBase);
  DrawFrame(graphics, mapping);
  DrawGrid(graphics, mapping);
  DrawLabels(graphics, mapping, labelFont);
}

}  // namespace ui
