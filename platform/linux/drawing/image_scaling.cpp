#include "platform/linux/drawing/image_scaling.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform {
namespace {

// One pixel: blue, green, red, alpha.
using Pixel = float __attribute__((vector_size(16)));
using WholePixel = std::int32_t __attribute__((vector_size(16)));
using PixelBytes = std::uint8_t __attribute__((vector_size(4)));

// The cubic family with B = 0. Sharpness C grows from enlarging (0.625) to strong shrinking (1).
double CubicKernel(double x, double sharpness) {
  x = std::abs(x);
  if (x < 1.0) return ((2.0 - sharpness) * x - (3.0 - sharpness)) * x * x + 1.0;
  if (x < 2.0) return (((-x + 5.0) * x - 8.0) * x + 4.0) * sharpness;
  return 0.0;
}

// The source positions that make up one target position, and their weights.
struct Taps {
  int count;                   // taps for each target position
  std::vector<int> first;      // first source position; may lie outside the image
  std::vector<float> weights;  // each position's sum is 1
};

Taps MakeTaps(int sourceSize, int targetSize) {
  const double ratio = static_cast<double>(sourceSize) / targetSize;
  const double stretch = std::max(ratio, 1.0);
  const double sharpness = 0.625 + 0.375 * std::clamp(ratio - 1.0, 0.0, 1.0);
  const double support = 2.0 * stretch;
  Taps taps{static_cast<int>(std::ceil(2.0 * support)), {}, {}};
  std::vector<double> weights(static_cast<std::size_t>(taps.count));
  for (int target = 0; target < targetSize; ++target) {
    const double centre = (target + 0.5) * ratio - 0.5;
    const int first = static_cast<int>(std::floor(centre - support)) + 1;
    double sum = 0.0;
    for (int tap = 0; tap < taps.count; ++tap) {
      const double weight = CubicKernel((first + tap - centre) / stretch, sharpness);
      weights[static_cast<std::size_t>(tap)] = weight;
      sum += weight;
    }
    taps.first.push_back(first);
    for (const double weight : weights) taps.weights.push_back(static_cast<float>(weight / sum));
  }
  return taps;
}

int Mirror(int index, int size) {
  const int period = 2 * size;
  index = ((index % period) + period) % period;
  return index < size ? index : period - 1 - index;
}

Pixel Load(QRgb color) {
  return __builtin_convertvector(std::bit_cast<PixelBytes>(color), Pixel);
}

// Overshoot of the kernel is cut off so that the result stays a premultiplied colour.
QRgb Store(Pixel pixel) {
  const auto rounded = __builtin_convertvector(pixel + 0.5F, WholePixel);
  const int alpha = std::clamp(rounded[3], 0, 255);
  const auto channel = [alpha](int value) { return std::clamp(value, 0, alpha); };
  return qRgba(channel(rounded[2]), channel(rounded[1]), channel(rounded[0]), alpha);
}

// Scales a row. `source` points to its first pixel and goes on mirrored on both sides. Four sums
// at once keep the processor from waiting for each addition.
void ScaleRow(const Pixel* source, const Taps& taps, Pixel* target, std::size_t width) {
  const float* weight = taps.weights.data();
  for (std::size_t x = 0; x < width; ++x, weight += taps.count) {
    const Pixel* pixel = source + taps.first[x];
    std::array<Pixel, 4> sums{};
    int tap = 0;
    for (; tap + 4 <= taps.count; tap += 4) {
      for (int i = 0; i < 4; ++i)
        sums[static_cast<std::size_t>(i)] += pixel[tap + i] * weight[tap + i];
    }
    for (; tap < taps.count; ++tap) sums[0] += pixel[tap] * weight[tap];
    target[x] = (sums[0] + sums[1]) + (sums[2] + sums[3]);
  }
}

// One target row as the weighted sum of whole rows.
void BlendRows(const std::vector<const Pixel*>& rows, const float* weights, QRgb* target,
               std::size_t width) {
  constexpr std::size_t kBlock = 4;
  std::size_t x = 0;
  for (; x + kBlock <= width; x += kBlock) {
    std::array<Pixel, kBlock> sums{};
    for (std::size_t tap = 0; tap < rows.size(); ++tap) {
      for (std::size_t i = 0; i < kBlock; ++i) sums[i] += rows[tap][x + i] * weights[tap];
    }
    for (std::size_t i = 0; i < kBlock; ++i) target[x + i] = Store(sums[i]);
  }
  for (; x < width; ++x) {
    Pixel sum{};
    for (std::size_t tap = 0; tap < rows.size(); ++tap) sum += rows[tap][x] * weights[tap];
    target[x] = Store(sum);
  }
}

// All rows of the image scaled horizontally.
std::vector<Pixel> ScaleAcross(const QImage& source, int width) {
  const Taps taps = MakeTaps(source.width(), width);
  const auto targetWidth = static_cast<std::size_t>(width);
  std::vector<Pixel> rows(targetWidth * static_cast<std::size_t>(source.height()));
  const int margin = taps.count + 1;
  std::vector<Pixel> padded(static_cast<std::size_t>(source.width() + 2 * margin));
  Pixel* row = padded.data() + margin;
  for (int y = 0; y < source.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(source.constScanLine(y));
    std::transform(line, line + source.width(), row, Load);
    for (int i = 1; i <= margin; ++i) {
      row[-i] = row[Mirror(-i, source.width())];
      row[source.width() - 1 + i] = row[Mirror(source.width() - 1 + i, source.width())];
    }
    ScaleRow(row, taps, &rows[static_cast<std::size_t>(y) * targetWidth], targetWidth);
  }
  return rows;
}

}  // namespace

QImage ScaleBicubic(const QImage& source, int width, int height) {
  if (source.width() == width && source.height() == height) return source;
  const std::vector<Pixel> scaled = ScaleAcross(source, width);
  const Taps taps = MakeTaps(source.height(), height);
  const auto targetWidth = static_cast<std::size_t>(width);
  QImage result(width, height, QImage::Format_ARGB32_Premultiplied);
  std::vector<const Pixel*> rows(static_cast<std::size_t>(taps.count));
  for (int y = 0; y < height; ++y) {
    for (int tap = 0; tap < taps.count; ++tap) {
      const int row = Mirror(taps.first[static_cast<std::size_t>(y)] + tap, source.height());
      rows[static_cast<std::size_t>(tap)] = &scaled[static_cast<std::size_t>(row) * targetWidth];
    }
    BlendRows(rows, &taps.weights[static_cast<std::size_t>(y) * rows.size()],
              reinterpret_cast<QRgb*>(result.scanLine(y)), targetWidth);
  }
  return result;
}

}  // namespace platform
