#include "ui/main/orvan_dlg.h"

#include <array>
#include <future>
#include <string_view>
#include <utility>

#include "platform/screen.h"
#include "platform/shell.h"
#include "resources/resource_ids.h"
#include "resources/templates.h"
#include "resources/window_titles.h"

namespace ui {
namespace {

using platform::LParam;
using platform::LResult;
using platform::WParam;

constexpr std::u16string_view kMakerLocation = u"https://www.norvane.example/";

constexpr std::uint32_t kRepaintTimer = 1001;
constexpr std::uint32_t kRepaintPeriod = 1000;  // milliseconds

constexpr std::int32_t kResultClosed = 0;

Skin SkinOf(store::ModelFlags model) {
  return model.davrinModel ? Skin::Davrin : Skin::Standard;
}

}  // namespace

COrvanDlg::COrvanDlg(const platform::Platform& platform, store::ModelFlags model,
                     AdvancedDialogFactory makeAdvancedDialog)
    : Dialog(resources::kMainTemplate),
      model_(model),
      makeAdvancedDialog_(std::move(makeAdvancedDialog)),
      modes_(platform),
      watcher_(platform.registry, platform.audioDevices, platform.owner),
      notificationClient_(platform.audioDevices, platform.clock),
      spoken_(SkinOf(model), model.threeGuiLayers) {}

LResult COrvanDlg::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  namespace msg = platform::message;
  using platform::OnMessage;
  static constexpr auto kMap = std::to_array<platform::MessageMapEntry<COrvanDlg>>({
      OnMessage(msg::kInitDialog, &COrvanDlg::OnInitDialog),
      OnMessage(msg::kPaint, &COrvanDlg::OnPaint),
      OnMessage(msg::kEraseBackground, &COrvanDlg::OnEraseBackground),
      OnMessage(msg::kNonClientHitTest, &COrvanDlg::OnNonClientHitTest),
      OnMessage(msg::kMouseMove, &COrvanDlg::OnMouseMove),
      OnMessage(msg::kLeftButtonDown, &COrvanDlg::OnLeftButtonDown),
      OnMessage(UM_OPEN_ADVANCED, &COrvanDlg::OnOpenAdvanced),
      OnMessage(endpoints::UM_SETTING_CHANGED, &COrvanDlg::OnSettingChanged),
      OnMessage(msg::kTimer, &COrvanDlg::OnTimer),
      OnMessage(msg::kDestroy, &COrvanDlg::OnDestroy),
  });
  if (const auto result =
          platform::DispatchMessageMap<COrvanDlg>(*this, kMap, message, wParam, lParam)) {
    return *result;
  }
  return Dialog::WindowProc(message, wParam, lParam);
}

LResult COrvanDlg::OnInitDialog(WParam wParam, LParam lParam) {
  Dialog::WindowProc(platform::message::kInitDialog, wParam, lParam);
  const Skin skin = SkinOf(model_);
  SetText(resources::kMainTitle);
  // Nothing needs the images before the window is sized and drawn, so they are decoded while the
  // registration, which evaluates the warning before the first picture, lets an endpoint settle.
  std::future<MainImages> images = std::async(std::launch::async, MainImages::Load, skin);
  notificationClient_.Register();
  composer_.emplace(skin, platform::GetScreenDpi().x / 96.0, images.get());
  Resize(composer_->Size());
  LoadActiveMode();
  DrawSkin();
  SetIcon(resources::kApplicationIcon);
  StartTimer(kRepaintTimer, kRepaintPeriod);
  return 1;
}

void COrvanDlg::LoadActiveMode() {
  if (const auto start = modes_.Load()) {
    watcher_.Start(*start, [window = Handle()](store::OutputPath outputPath) {
      platform::PostToWindow(window, endpoints::UM_SETTING_CHANGED, 0,
                             static_cast<LParam>(outputPath));
    });
  }
  if (modes_.ApplyFirstModeIfUnknown()) watcher_.Wake();
}

LResult COrvanDlg::OnPaint(WParam /*wParam*/, LParam /*lParam*/) {
  // A layered window presents its picture past the paint surface, which only marks it as painted.
  const platform::PaintContext painted(*this);
  DrawSkin();
  return 0;
}

LResult COrvanDlg::OnEraseBackground(WParam /*wParam*/, LParam /*lParam*/) {
  return 1;
}

LResult COrvanDlg::OnNonClientHitTest(WParam wParam, LParam lParam) {
  if (!composer_) {
    return Dialog::WindowProc(platform::message::kNonClientHitTest, wParam, lParam);
  }
  return static_cast<LResult>(
      composer_->Layout().HitTestCaption(platform::PointFromLParam(lParam), WindowRect()));
}

LResult COrvanDlg::OnMouseMove(WParam wParam, LParam lParam) {
  const Element hovered = ElementAt(platform::PointFromLParam(lParam));
  if (hovered != hoverItem_) {
    hoverItem_ = hovered;
    RedrawNow();
  }
  return Dialog::WindowProc(platform::message::kMouseMove, wParam, lParam);
}

LResult COrvanDlg::OnLeftButtonDown(WParam wParam, LParam lParam) {
  Click(ElementAt(platform::PointFromLParam(lParam)));
  return Dialog::WindowProc(platform::message::kLeftButtonDown, wParam, lParam);
}

Element COrvanDlg::ElementAt(platform::Point client) const {
  if (!composer_) return Element::None;
  return composer_->Layout().HitTest(client, composer_->AdvancedBox());
}

void COrvanDlg::Click(Element element) {
  if (IsMode(element)) {
    SelectMode(element);
  } else if (element == Element::Minimize) {
    Show(platform::ShowCommand::Minimize);
  } else if (element == Element::Close || element == Element::Done) {
    EndDialog(kResultClosed);
  } else if (element == Element::Advanced) {
    platform::PostToWindow(Handle(), UM_OPEN_ADVANCED, 0, 0);
  } else if (element == Element::MakerLogo) {
    platform::OpenInBrowser(kMakerLocation);
  }
}

void COrvanDlg::SelectMode(Element element) {
  if (!modes_.Select(static_cast<store::SoundMode>(element))) return;
  RedrawNow();
  modes_.Apply();
}

LResult COrvanDlg::OnOpenAdvanced(WParam /*wParam*/, LParam /*lParam*/) {
  // A second click can be on its way before the window hides.
  if (advancedDialog_ != nullptr) return 0;
  advancedDialog_ = makeAdvancedDialog_();
  if (advancedDialog_ == nullptr) return 0;
  Show(platform::ShowCommand::Hide);
  advancedDialog_->DoModal(Handle());
  // The window comes back with what is true now: a report of the watcher may still be on its way,
  // and where there was no endpoint at the start, none watches.
  modes_.Refresh();
  DrawSkin();
  Show(platform::ShowCommand::Normal);
  advancedDialog_.reset();
  return 0;
}

LResult COrvanDlg::OnSettingChanged(WParam /*wParam*/, LParam lParam) {
  if (modes_.Follow(static_cast<store::OutputPath>(lParam))) RedrawNow();
  return 0;
}

LResult COrvanDlg::OnTimer(WParam wParam, LParam lParam) {
  if (wParam != kRepaintTimer) return Dialog::WindowProc(platform::message::kTimer, wParam, lParam);
  Invalidate(platform::Erase::Yes);
  return 0;
}

LResult COrvanDlg::OnDestroy(WParam wParam, LParam lParam) {
  const LResult result = Dialog::WindowProc(platform::message::kDestroy, wParam, lParam);
  StopTimer(kRepaintTimer);
  return result;
}

MainScene COrvanDlg::Scene() const {
  const bool warning =
      notificationClient_.endpointWarning.load() == endpoints::EndpointWarning::Shown;
  return {modes_.SelectedMode(), hoverItem_, model_.threeGuiLayers, warning};
}

void COrvanDlg::DrawSkin() {
  if (!composer_) return;
  const MainScene scene = Scene();
  const platform::Bitmap* picture = composer_->Compose(scene);
  if (picture != nullptr) UpdateLayered(*picture);
  spoken_.Announce(*this, scene);
}

std::int32_t COrvanDlg::AccessiblePartCount() const {
  return composer_ ? spoken_.Count() : 0;
}

platform::AccessibleInfo COrvanDlg::DescribeAccessible(std::int32_t part) const {
  if (part == platform::kAccessibleSelf) return Dialog::DescribeAccessible(part);
  return composer_ ? spoken_.Describe(part, Scene(), *composer_) : platform::AccessibleInfo{};
}

void COrvanDlg::DoDefaultAction(std::int32_t part) {
  Click(spoken_.At(part));
}

void COrvanDlg::RedrawNow() {
  Invalidate(platform::Erase::Yes);
  Update();
}

}  // namespace ui
