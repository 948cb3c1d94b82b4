#include "engine/loudness_contour.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace engine {
namespace {

constexpr double kBassCorner = 120.0;     // Hz
constexpr double kTrebleCorner = 6000.0;  // Hz
constexpr double kRiseTime = 0.05;        // s, of the level
constexpr double kFallTime = 1.5;
// A level so far under full scale gets the whole contour. From 80 to 40 phon the curves of equal
// loudness part by some 12 dB at 50 Hz and by 4 dB toward 10 kHz.
constexpr double kDepth = 40.0;  // dB
constexpr double kBassPerDecibel = 0.3;
constexpr double kTreblePerDecibel = 0.1;

double PartOfTheWay(double steps) {
  return 1.0 - std::exp(-1.0 / steps);
}

}  // namespace

LoudnessContour::Pole LoudnessContour::MakePole(double part) noexcept {
  return {.kept = Both(1.0 - part), .taken = Both(part)};
}

// For a shelf of this height, to be reached at the end of the next block.
void LoudnessContour::Shelf::SetOut(double decibels) noexcept {
  gain = goal;
  goal = Both(std::pow(10.0, decibels / 20.0) - 1.0);
  step = (goal - gain) * Both(1.0 / static_cast<double>(kBlockFrames));
}

void LoudnessContour::Start(double sampleRate, double amount) noexcept {
  *this = {};
  const double blocksPerSecond = sampleRate / static_cast<double>(kBlockFrames);
  const double perRadian = sampleRate / (2.0 * std::numbers::pi);
  bassPole_ = MakePole(PartOfTheWay(perRadian / kBassCorner));
  treblePole_ = MakePole(PartOfTheWay(perRadian / kTrebleCorner));
  rise_ = PartOfTheWay(kRiseTime * blocksPerSecond);
  fall_ = PartOfTheWay(kFallTime * blocksPerSecond);
  amount_ = amount;
}

void LoudnessContour::Advance(std::size_t count) noexcept {
  framesInBlock_ += count;
  if (framesInBlock_ == kBlockFrames) EndBlock();
}

void LoudnessContour::EndBlock() noexcept {
  const double now =
      (energy_.lanes[0] + energy_.lanes[1]) / (2.0 * static_cast<double>(kBlockFrames));
  meanSquare_ += (now > meanSquare_ ? rise_ : fall_) * (now - meanSquare_);
  const double under = std::clamp(-10.0 * std::log10(meanSquare_), 0.0, kDepth);
  bass_.SetOut(amount_ * kBassPerDecibel * under);
  treble_.SetOut(amount_ * kTreblePerDecibel * under);
  energy_ = {};
  framesInBlock_ = 0;
}

}  // namespace engine
