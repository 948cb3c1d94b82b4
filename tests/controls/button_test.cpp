// Push button and check box as windows.
#include <gmock/gmock.h>

#include "tests/controls/control_dialog.h"
#include "ui/images/png_resource.h"

namespace ui {
namespace {

using platform::Bitmap;
using testing::ElementsAre;

class ScaledButtonTest : public ControlTest {
 protected:
  Point At(Point at96, Point at120, Point at192) const {
    return dpi_ == 96 ? at96 : dpi_ == 120 ? at120 : at192;
  }
};

TEST_F(ScaledButtonTest, ShowsItsImageInTheMiddle) {
  Run([&] {
    CPngButton& button = dialog_.button;
    const Bitmap bare = Picture(button);
    ExpectSpots(bare, {kMark, {40, 17, kBackground}});
    button.SetImage(LoadPngResource(139, 96.0F));
    const auto& [x, y] = At({4, 3}, {9, 3}, {8, 5});
    EXPECT_TRUE(Shows(Picture(button), 139, x, y));
    ExpectSpots(Picture(button), {kMark});
    button.showImage = false;
    button.Invalidate(platform::Erase::Yes);
    EXPECT_TRUE(SamePixels(Picture(button), bare));
    button.showImage = true;
    // Larger than the button: cut off alike on both sides, an odd pixel on the right.
    Bitmap large = Solid({bare.Width() + 7, bare.Height() + 10}, 0xFF00FF00);
    large.SetPixel(3, 5, 0xFFFF0000);
    button.SetImage(std::move(large));
    ExpectSpots(Picture(button), {{0, 0, 0xFFFF0000}, {bare.Width() - 1, 1, 0xFF00FF00}}, 0);
    button.SetImage(std::nullopt);
    EXPECT_TRUE(SamePixels(Picture(button), bare));
    Click(button, {5, 5});
    EXPECT_THAT(Notices(), ElementsAre(Changed(button, platform::kNotifyClicked)));
  });
}

TEST_F(ScaledButtonTest, ACheckBoxShowsItsStateAtTheRightAndItsCaptionAtTheLeft) {
  Run([&] {
    CPngCheckbox& box = dialog_.checkbox;
    const auto check = [&box](WParam state) {
      EXPECT_EQ(box.Send(platform::message::kSetCheck, state, 0), 0);
      return box.Send(platform::message::kGetCheck, 0, 0);
    };
    const auto& [x, y] = At({134, 10}, {183, 12}, {275, 18});
    EXPECT_EQ(box.Send(platform::message::kGetCheck, 0, 0), 0);
    EXPECT_TRUE(Shows(Picture(box), 141, x, y));
    EXPECT_EQ(check(1), 1);
    EXPECT_TRUE(Shows(Picture(box), 142, x, y));
    EXPECT_EQ(check(2), 0) << "undecided is not checked";
    EXPECT_TRUE(Shows(Picture(box), 141, x, y));
    box.redAccent = true;
    check(1);
    EXPECT_TRUE(Shows(Picture(box), 190, x, y));
    check(0);
    EXPECT_TRUE(Shows(Picture(box), 141, x, y));
    Click(box, {20, 5});
    EXPECT_EQ(box.Send(platform::message::kGetCheck, 0, 0), 0);
    EXPECT_THAT(Notices(), ElementsAre(Changed(box, platform::kNotifyClicked)));

    box.SetText(u"");
    Bitmap expected = Picture(box);
    ExpectSpots(expected, {kMark});
    const platform::Font font(u"Calibri", 12.0F, platform::FontStyle::Bold);
    Write(expected, u"Peaking", font,
          {0.0F, dpi_ == 96    ? 9.0F
                 : dpi_ == 120 ? 11.0F
                               : 17.0F},
          0xFFFFFFFF);
    box.SetText(u"Peaking");
    EXPECT_EQ(BoxOfDifference(Picture(box), expected), Rect{});
  });
}

}  // namespace
}  // namespace ui
