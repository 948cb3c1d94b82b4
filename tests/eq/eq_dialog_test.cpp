// The advanced dialog's picture with all its controls, in both skins.
#include <gtest/gtest.h>

#include <string>

#include "platform/resources.h"
#include "resources/resource_ids.h"
#include "tests/controls/picture.h"
#include "tests/eq/eq_machine.h"
#include "tests/support/scripted_window.h"
#include "ui/eq/kel_control_dlg.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Rect;
namespace msg = platform::message;

class EqDialogTest : public testing::Test {
 protected:
  EqDialogTest() {
    machine_.SetActive(kSpeakerPathKey, u"3");
    Parameters set = EqMachine::InitialSet();
    for (const int knob : {232, 250, 6, 223}) set[knob] = 1.0F;
    set[121] = 2.0F;
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", set);
  }

  static Bitmap Picture() {
    Settle();
    return WindowPicture({0, 0, 755, 644});
  }

  EqMachine machine_;
};

// Places of the template in pixels, with something of each control that the accent turns red.
TEST_F(EqDialogTest, TheAccentIsEverywhere) {
  for (const bool davrin : {false, true}) {
    support::Scripted<CKelControlDlg> dialog(machine_.platform, store::ModelFlags{true, davrin});
    dialog.ThenDo([&] {
      EXPECT_EQ(dialog.WindowRect().Height(), 214);
      EXPECT_TRUE(Shows(Picture(), 139, 662 + 4, 174 + 3));
      dialog.Send(msg::kCommand, platform::MakeWParam(1021, 0), 0);
      EXPECT_EQ(dialog.WindowRect().Width(), 755);
      EXPECT_EQ(dialog.WindowRect().Height(), 644);
      const Bitmap picture = Picture();
      for (const std::int32_t left : {87, 236, 384, 533}) {
        ExpectSpots(picture, {{left + 64, 39 + 5, davrin ? 0xFFBE0000 : 0xFF20BFD5}});
      }
      for (const auto& [x, y] : {std::pair{370, 455}, std::pair{190, 517}, std::pair{200, 579}}) {
        ExpectSpots(picture, {{x, y + 44, davrin ? 0xFFBE0000 : 0xFF22DFFF}});
      }
      ExpectSpots(picture, {{11 + 60, 249 + 42, davrin ? 0xFF000000 : 0xFF272727}});
      const std::uint16_t dot = davrin ? 190 : 142;
      EXPECT_TRUE(Shows(picture, dot, 584 + 134, 221 + 2)) << "Equalizer Enable";
      EXPECT_TRUE(Shows(picture, dot, 584 + 134, 458)) << "Peaking";
      EXPECT_TRUE(Shows(picture, dot, 11 + 102, 533)) << "Band Enable";
      EXPECT_TRUE(Shows(picture, dot, 11 + 65, 249 + 60)) << "the first band's marker";
      for (const std::int32_t y : {494, 530, 566, 601}) {
        EXPECT_TRUE(Shows(picture, 141, 584 + 134, y));
      }
      EXPECT_TRUE(Shows(picture, 140, 662 + 4, 174 + 3));
      EXPECT_TRUE(Shows(picture, 144, 669 + 9, 11 + 5));
      EXPECT_TRUE(Shows(picture, 138, 707 + 9, 11 + 5));
      EXPECT_TRUE(Shows(picture, 143, 10, 10, 192.0F));
      dialog.Send(msg::kCommand, platform::MakeWParam(1021, 0), 0);
      EXPECT_EQ(dialog.WindowRect().Height(), 214);
      EXPECT_TRUE(Shows(Picture(), 139, 662 + 4, 174 + 3));
    });
    EXPECT_EQ(dialog.DoModal(), support::kScriptEnded);
  }
}

TEST_F(EqDialogTest, TilesAndDividingLines) {
  support::Scripted<CKelControlDlg> dialog(machine_.platform, store::ModelFlags{true, false});
  const auto tile = Bitmap::FromPng(
      platform::FindResourceData(platform::ResourceType::Bitmap, resources::kDialogTileBitmap));
  ASSERT_TRUE(tile);
  dialog.ThenDo([&] {
    dialog.Send(msg::kCommand, platform::MakeWParam(1021, 0), 0);
    const Bitmap picture = Picture();
    const auto at = [&](std::int32_t x, std::int32_t y, Argb line) {
      return Spot{x, y, Mixed(line, tile->GetPixel(x % 128, y % 128))};
    };
    for (const std::int32_t x : {3, 300, 752}) {
      ExpectSpots(picture, {at(x, 214, 0), at(x, 215, 0xDC000000), at(x, 216, 0x1EFFFFFF),
                            at(x, 217, 0x14FFFFFF), at(x, 218, 0)});
    }
    for (const std::int32_t y : {455, 550, 638}) {
      ExpectSpots(picture, {at(147, y, 0), at(148, y, 0x14FFFFFF), at(149, y, 0x1EFFFFFF),
                            at(150, y, 0xDC000000), at(151, y, 0)});
    }
    ExpectSpots(picture, {at(148, 454, 0), at(150, 640, 0), at(87 + 2, 39 + 2, 0),
                          at(168 + 2, 455 + 2, 0), at(670, 12, 0)});
  });
  EXPECT_EQ(dialog.DoModal(), support::kScriptEnded);
}

TEST_F(EqDialogTest, WithoutThreeLayersThereIsNothingToExpand) {
  support::Scripted<CKelControlDlg> dialog(machine_.platform, store::ModelFlags{false, false});
  int woken = 0;
  machine_.events.SetOnSet([&](const std::u16string&) { ++woken; });
  dialog.ThenDo([&] {
    EXPECT_FALSE(Shows(Picture(), 139, 662 + 4, 174 + 3));
    dialog.Send(msg::kCommand, platform::MakeWParam(1021, 0), 0);
    EXPECT_EQ(dialog.WindowRect().Height(), 214);
    dialog.Send(0x404, 0, 0);
    EXPECT_EQ(woken, 6) << "whoever asks for it wakes the engine";
    EXPECT_TRUE(VisibleWindowHasIcon());
    EXPECT_EQ(dialog.Send(msg::kQueryDragIcon, 0, 0), 16);
    const Rect place = dialog.WindowRect();
    EXPECT_EQ(dialog.Send(msg::kNonClientHitTest, 0,
                          platform::PointToLParam({place.left + 121, place.top + 38})),
              static_cast<platform::LResult>(platform::HitTest::SystemMenu));
    // The system uses the low bits of its commands for itself.
    platform::PostToWindow(dialog.Handle(), msg::kSystemCommand, 16 + 3, 0);
  });
  dialog.Then([] { return ClientSizeOf(u"About Tonalyx").has_value(); });
  dialog.ThenDo([&] {
    EXPECT_EQ(ClientSizeOf(u"About Tonalyx"), (platform::Size{296, 124}));
    Close(u"About Tonalyx");
  });
  dialog.Then([] { return !ClientSizeOf(u"About Tonalyx"); });
  dialog.ThenDo([&] { dialog.Send(msg::kCommand, platform::MakeWParam(32774, 0), 0); });
  dialog.Then([] { return false; });
  EXPECT_EQ(dialog.DoModal(), 2);
}

}  // namespace
}  // namespace ui
