#include "tests/eq/open_dialog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <thread>

#include "platform/drawing.h"
#include "platform/resources.h"
#include "platform/screen.h"
#include "resources/resource_ids.h"
#include "ui/eq/kel_control_dlg.h"

namespace ui {
namespace {

constexpr const char* kTitle = "Velsona";
constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kHandDelay{15};

struct Units {
  double dpi;
  double baseWidth;
  double baseHeight;
  DialogSize size;
};
constexpr Units kUnits[] = {{96, 6, 13, {755, 214, 644}},
                            {120, 8, 16, {1006, 264, 792}},
                            {144, 9, 20, {1132, 330, 990}},
                            {192, 12, 25, {1509, 412, 1238}}};

constexpr std::uint32_t kBusyMessage = platform::message::kUser + 100;
constexpr std::chrono::milliseconds kBusyTime{400};

class SometimesBusyDialog : public CKelControlDlg {
 public:
  using CKelControlDlg::CKelControlDlg;

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override {
    if (message != kBusyMessage) return CKelControlDlg::WindowProc(message, wParam, lParam);
    std::this_thread::sleep_for(kBusyTime);
    return 0;
  }
};

const Units& UnitsOfScreen() {
  for (const Units& units : kUnits) {
    if (units.dpi == platform::GetScreenDpi().x) return units;
  }
  throw std::runtime_error("a resolution that the tests do not know");
}

}  // namespace

OpenDialog::OpenDialog(EqMachine& machine) : machine_(machine) {
  const Units& units = UnitsOfScreen();
  dpi_ = units.dpi;
  baseWidth_ = units.baseWidth;
  baseHeight_ = units.baseHeight;
  size_ = units.size;
  const auto tile = platform::Bitmap::FromPng(
      platform::FindResourceData(platform::ResourceType::Bitmap, resources::kDialogTileBitmap));
  tileWidth_ = tile.value().Width();
  tileHeight_ = tile->Height();
  for (int y = 0; y < tileHeight_; ++y) {
    for (int x = 0; x < tileWidth_; ++x) tile_.push_back(tile->GetPixel(x, y) & 0xFFFFFFU);
  }
  machine_.events.SetOnSet([this](const std::u16string&) { ++signals_; });
}

std::int32_t OpenDialog::Run(store::ModelFlags model, Script script) {
  SometimesBusyDialog dialog(machine_.platform, model);
  dialog_ = &dialog;
  std::thread person([&] {
    const auto place = desktop_.WaitForWindow(kTitle, kPatience);
    EXPECT_TRUE(place.has_value());
    place_ = place.value_or(support::ScreenRect());
    if (place) script(*this);
    Post(platform::message::kCommand, platform::MakeWParam(platform::kIdCancel, 0), 0);
  });
  const std::int32_t result = dialog.DoModal();
  person.join();
  // The next run must not take this window for its own.
  EXPECT_TRUE(desktop_.WaitUntilGone(kTitle, kPatience));
  dialog_ = nullptr;
  return result;
}

support::ScreenRect OpenDialog::Place() {
  place_ = desktop_.FindWindow(kTitle).value_or(place_);
  return place_;
}

bool OpenDialog::WaitForHeight(int height) {
  return support::Eventually([&] { return Place().height == height; });
}

void OpenDialog::Expand() {
  Click(468, 117);
  EXPECT_TRUE(WaitForHeight(size_.full));
}

support::ScreenRect OpenDialog::At(double x, double y, int dx, int dy) {
  return {place_.x + static_cast<int>(std::lround(x * baseWidth_ / 4)) + dx,
          place_.y + static_cast<int>(std::lround(y * baseHeight_ / 8)) + dy};
}

// A window manager that looks at every press first holds back what follows it; positions would blur
// if a hand were as quick as a program.
void OpenDialog::Point(const support::ScreenRect& at) {
  desktop_.MovePointer(at.x, at.y);
  std::this_thread::sleep_for(kHandDelay);
}

void OpenDialog::Click(double x, double y, int dx, int dy) {
  Point(At(x, y, dx, dy));
  desktop_.PressButton();
  desktop_.ReleaseButton();
  std::this_thread::sleep_for(kHandDelay);
}

void OpenDialog::Drag(const support::ScreenRect& from, const support::ScreenRect& to) {
  Point(from);
  desktop_.PressButton();
  std::this_thread::sleep_for(kHandDelay);
  Point({(from.x + to.x) / 2, (from.y + to.y) / 2});
  Point(to);
  desktop_.ReleaseButton();
}

std::uint32_t OpenDialog::Pixel(double x, double y, int dx, int dy) {
  const support::ScreenRect at = At(x, y, dx, dy);
  return desktop_.PixelAt(at.x, at.y);
}

std::uint32_t OpenDialog::TilePixel(double x, double y, int dx, int dy) {
  const support::ScreenRect at = At(x, y, dx, dy);
  const auto column = static_cast<std::size_t>((at.x - place_.x) % tileWidth_);
  const auto row = static_cast<std::size_t>((at.y - place_.y) % tileHeight_);
  return tile_[row * static_cast<std::size_t>(tileWidth_) + column];
}

void OpenDialog::ActWhileBusy(const std::function<void()>& action) {
  Post(kBusyMessage, 0, 0);
  std::this_thread::sleep_for(kHandDelay);
  action();
}

void OpenDialog::Post(std::uint32_t message, platform::WParam wParam, platform::LParam lParam) {
  platform::PostToWindow(dialog_->Handle(), message, wParam, lParam);
}

}  // namespace ui
