#include "ui/controls/knob/knob_geometry.h"

#include <cmath>
#include <numbers>

#include "ui/controls/knob/knob_drag.h"
#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

constexpr double kStartAngle = 7.0 * std::numbers::pi / 6.0;
constexpr double kScaleAngle = 4.0 * std::numbers::pi / 3.0;

constexpr double kFaceInset = 15.0;
constexpr double kIndicatorInset = 14.0;
constexpr double kTickGap = 6.0;
constexpr double kTickLength = 9.0;
constexpr double kDotShare = 0.3;  // of the face's radius
constexpr double kDotRadiusShare = 0.15;

// Of the disc's space, to whole pixels.
std::int32_t HalfWidth(platform::Size client) {
  return client.width / 2;
}

}  // namespace

KnobGeometry::KnobGeometry(platform::Size client, double scale)
    : scale_(scale),
      discCentre_(client.width * 0.5),
      faceRadius_(HalfWidth(client) - kFaceInset * scale) {}

double KnobGeometry::IndicatorRadius() const {
  return faceRadius_ - kIndicatorInset * scale_;
}

double KnobGeometry::TickInnerRadius() const {
  return faceRadius_ + kTickGap * scale_;
}

double KnobGeometry::TickOuterRadius() const {
  return TickInnerRadius() + kTickLength * scale_;
}

std::int32_t KnobGeometry::DotDiameter() const {
  return dsp::TruncateToInt32(kDotShare * faceRadius_);
}

platform::Point KnobGeometry::DotOrigin(std::int32_t knobPos) const {
  const double angle = IndicatorAngle(knobPos);
  const double radius = IndicatorRadius();
  const double half = kDotRadiusShare * faceRadius_;
  return {PixelPosition(std::cos(angle) * radius - half + discCentre_),
          PixelPosition(discCentre_ - (std::sin(angle) * radius + half))};
}

platform::PointF KnobGeometry::PointAt(double angle, double radius) const {
  return {static_cast<float>(discCentre_ + std::cos(angle) * radius),
          static_cast<float>(discCentre_ - std::sin(angle) * radius)};
}

platform::Point TurningCentre(platform::Size client) {
  return {client.width / 2, client.height / 2};
}

double IndicatorAngle(std::int32_t knobPos) {
  return kStartAngle - knobPos * kScaleAngle / kKnobTravel;
}

double TickAngle(int degrees) {
  return kStartAngle - degrees * kScaleAngle / kScaleDegrees;
}

std::int32_t LitDegrees(std::int32_t knobPos) {
  return WrappingMultiply(knobPos, kScaleDegrees) / kKnobTravel;
}

}  // namespace ui
