// Compiled into a test program for Windows, says which of its tests Wine cannot pass, and why.
#include <gtest/gtest.h>

#include "tests/support/lacks.h"
#include "tests/support/wine.h"

namespace {

class WineLacks : public testing::Environment {
 public:
  void SetUp() override {
    if (!support::RunsUnderWine()) return;
    support::Lacks() = {
        {"AQuestionCannotBeDismissed", "every box can be closed"},
        {"ReportsAnEndpointThatGoes", "a program's endpoints are those of its first look"},
        {"StraightLinesAndRectanglesReachTheirPixelsSharply", "lines end a pixel too early"},
        {"SlantedLinesReachHalfAPixelBeyondTheirEnds", "shapes are not anti-aliased"},
        {"GridAndLabels", "shapes are not anti-aliased"},
        {"TheCurveGoesThroughTheBandsGains", "shapes are not anti-aliased"},
        {"FaceTicksAndTheirLight", "shapes are not anti-aliased"},
        {"TheIndicatorPointsWhereThePositionSays", "an ellipse is a pixel too small"},
        {"LinesAndHeaderGrowWithTheResolution", "lines are whole pixels wide"},
        {"TheAdvancedEntryIsAsWideAsWhatItShows", "widths are those of hinted glyphs"},
        {"GradientRepeatsOutsideItsPoints", "an ellipse is a pixel too small"},
        {"ScaledImagesFilterFirstStayInPlaceAndTakeNoColourFromTransparency",
         "bicubic scaling does not filter first"},
        {"LineHeightsAreThoseOfTheOriginalFonts", "stand-ins of fonts have their own"},
        {"UnknownFamiliesHaveAStandInWithBold", "its stand-in is not drawn in bold"},
        {"WidthsComeFromTheFontsDesignOrAreWholePixels", "widths are those of hinted glyphs"}};
  }
};

[[maybe_unused]] const auto* const kRegistered = testing::AddGlobalTestEnvironment(new WineLacks);

}  // namespace
