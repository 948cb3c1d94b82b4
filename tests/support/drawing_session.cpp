// Compiled into a test program of drawing alone, gives all its tests one drawing session.
#include <gtest/gtest.h>

#include <memory>

#include "platform/startup.h"
#include "tests/support/lacks.h"
#include "tests/support/wine.h"

namespace {

class Session : public testing::Environment {
 public:
  void SetUp() override {
    session_ = std::make_unique<platform::DrawingSession>();
    if (!support::RunsUnderWine()) return;
    support::Lacks() = {
        {"StraightLinesAndRectanglesReachTheirPixelsSharply", "lines end a pixel too early"},
        {"PixelOffsetHalfMovesPixelCentres", "shapes are not anti-aliased"},
        {"GradientRepeatsOutsideItsPoints", "an ellipse is a pixel too small"},
        {"CurvePassesThroughItsPointsWithGivenTension", "lines end a pixel too early"},
        {"ImagesStayExactAtTheirSizeAndConstantAtAnyOther", "blending rounds twice"},
        {"ScaledImagesFilterFirstStayInPlaceAndTakeNoColourFromTransparency",
         "bicubic scaling does not filter first"},
        {"LineHeightsAreThoseOfTheOriginalFonts", "stand-ins of fonts have their own"},
        {"WidthsComeFromTheFontsDesignOrAreWholePixels", "widths are those of hinted glyphs"}};
  }
  void TearDown() override { session_.reset(); }

 private:
  std::unique_ptr<platform::DrawingSession> session_;
};

[[maybe_unused]] const auto* const kRegistered = testing::AddGlobalTestEnvironment(new Session);

}  // namespace
