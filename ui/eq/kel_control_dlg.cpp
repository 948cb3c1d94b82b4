#include "ui/eq/kel_control_dlg.h"

#include <array>
#include <string>
#include <string_view>

#include "platform/resources.h"
#include "platform/screen.h"
#include "platform/shell.h"
#include "resources/resource_ids.h"
#include "resources/templates.h"
#include "resources/window_titles.h"
#include "store/user_settings_dialogs.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/eq/dialog_frame.h"
#include "ui/images/png_resource.h"

namespace ui {
namespace {

using platform::LParam;
using platform::LResult;
using platform::WParam;

constexpr std::u16string_view kSettingsExtension = u".tus";
constexpr std::u16string_view kSettingsFilter =
    u"Tonalyx user settings (*.tus)|*.tus|All files (*.*)|*.*||";

constexpr float kHeaderDpi = 192.0F;
constexpr WParam kSystemCommandMask = 0xFFF0;

constexpr float kIconSize = 32.0F;

// What a message carries as a number; null for 0.
template <class Object>
Object* FromParameter(std::uintptr_t parameter) {
  return reinterpret_cast<Object*>(parameter);  // NOLINT(performance-no-int-to-ptr)
}

// Pictures that the system would draw itself.
std::optional<platform::Bitmap> LoadUnscaled(platform::ResourceType type, std::uint16_t id) {
  return platform::Bitmap::FromPng(platform::FindResourceData(type, id));
}

}  // namespace

CKelControlDlg::CKelControlDlg(const platform::Platform& platform, store::ModelFlags model)
    : Dialog(resources::kAdvancedTemplate),
      files_(platform.files),
      model_(model),
      editor_({platform.registry, platform.events, platform.audioDevices}, controls_),
      icon_(LoadUnscaled(platform::ResourceType::Icon, resources::kApplicationIcon)),
      watcher_(platform.registry, platform.audioDevices, platform.owner) {
  controls_.ForEach(
      [this](std::uint16_t id, platform::Window& control) { BindControl(id, control); });
}

CKelControlDlg::~CKelControlDlg() {
  static_cast<void>(watcher_.Stop());
}

LResult CKelControlDlg::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  namespace msg = platform::message;
  using Dlg = CKelControlDlg;
  using dsp::FilterType;
  using dsp::Knob;
  using platform::kNotifyClicked;
  using platform::OnControl;
  using platform::OnMessage;
  static constexpr auto kMap = std::to_array<MapEntry>({
      OnMessage(msg::kInitDialog, &Dlg::OnInitDialog),
      OnMessage(msg::kSystemCommand, &Dlg::OnSystemCommand),
      OnMessage(msg::kPaint, &Dlg::OnPaint),
      OnMessage(msg::kEraseBackground, &Dlg::OnEraseBackground),
      OnMessage(msg::kQueryDragIcon, &Dlg::OnQueryDragIcon),
      OnMessage(msg::kNonClientHitTest, &Dlg::OnNonClientHitTest),
      OnMessage(msg::kLeftButtonUp, &Dlg::OnLeftButtonUp),
      OnControl(resources::kExpandButton, kNotifyClicked, &Dlg::OnExpand),
      OnControl(resources::kEqualizerEnable, kNotifyClicked, &Dlg::OnSwitch<EqSwitch::Equalizer>),
      OnControl(resources::kGainSlider, PSN_VALUECHANGED, &Dlg::OnSlider<BandSlider::Gain>),
      OnControl(resources::kFrequencySlider, PSN_VALUECHANGED,
                &Dlg::OnSlider<BandSlider::Frequency>),
      OnControl(resources::kBandwidthSlider, PSN_VALUECHANGED,
                &Dlg::OnSlider<BandSlider::Bandwidth>),
      OnControl(resources::kTypePeaking, kNotifyClicked, &Dlg::OnType<FilterType::Peaking>),
      OnControl(resources::kTypeHighShelving, kNotifyClicked,
                &Dlg::OnType<FilterType::HighShelving>),
      OnControl(resources::kTypeLowShelving, kNotifyClicked, &Dlg::OnType<FilterType::LowShelving>),
      OnControl(resources::kTypeLowPass, kNotifyClicked, &Dlg::OnType<FilterType::LowPass>),
      OnControl(resources::kTypeHighPass, kNotifyClicked, &Dlg::OnType<FilterType::HighPass>),
      OnControl(resources::kBandEnable, kNotifyClicked, &Dlg::OnSwitch<EqSwitch::Band>),
      OnControl(resources::kKnobBass, POTN_VALUECHANGED, &Dlg::OnKnob<Knob::Bass>),
      OnControl(resources::kKnobTreble, POTN_VALUECHANGED, &Dlg::OnKnob<Knob::Treble>),
      OnControl(resources::kKnobWidener, POTN_VALUECHANGED, &Dlg::OnKnob<Knob::Widener>),
      OnControl(resources::kKnobLoudness, POTN_VALUECHANGED, &Dlg::OnKnob<Knob::Loudness>),
      OnControl(resources::kMenuButton, kNotifyClicked, &Dlg::OnMenuButton),
      OnControl(resources::kCommandAbout, kNotifyClicked, &Dlg::OnAbout),
      OnControl(resources::kCommandLoad, kNotifyClicked, &Dlg::OnLoad),
      OnControl(resources::kCommandSave, kNotifyClicked, &Dlg::OnSave),
      OnControl(resources::kCommandRestore, kNotifyClicked, &Dlg::OnRestore),
      OnControl(resources::kCommandClose, kNotifyClicked, &Dlg::OnCloseCommand),
      OnMessage(kBandSelectedMessage, &Dlg::OnBandSelected),
      OnMessage(kBandDraggedMessage, &Dlg::OnBandDragged),
      OnMessage(endpoints::UM_SETTING_CHANGED, &Dlg::OnSettingChanged),
      OnMessage(kSignalEngineMessage, &Dlg::OnSignalEngine),
  });
  if (const auto result = platform::DispatchMessageMap<Dlg>(*this, kMap, message, wParam, lParam)) {
    return *result;
  }
  return Dialog::WindowProc(message, wParam, lParam);
}

LResult CKelControlDlg::OnInitDialog(WParam wParam, LParam lParam) {
  dpiScale_ = static_cast<float>(platform::GetScreenDpi().x) / kDesignDpi;
  Dialog::WindowProc(platform::message::kInitDialog, wParam, lParam);
  eraseBuffer_.reset();
  backgroundBrush_ = LoadUnscaled(platform::ResourceType::Bitmap, resources::kDialogTileBitmap);
  SetText(resources::kAdvancedTitle);
  AddAboutToSystemMenu();
  Collapse();
  controls_.SetCaptionsAndRanges();
  TellExpansion();
  LoadImages();
  SetIcon(resources::kApplicationIcon);
  LoadFirstSet();
  return 1;
}

void CKelControlDlg::AddAboutToSystemMenu() {
  const std::u16string about = platform::LoadStringResource(resources::kTextAboutMenu);
  if (about.empty()) return;
  AppendSystemMenuSeparator();
  AppendSystemMenuItem(resources::kCommandAbout, about);
}

// The window comes up with the template's size.
void CKelControlDlg::Collapse() {
  const platform::Rect window = WindowRect();
  windowWidth_ = window.Width();
  fullHeight_ = window.Height();
  collapsedHeight_ = fullHeight_ / 3;
  Resize({windowWidth_, collapsedHeight_});
  expanded_ = false;
}

void CKelControlDlg::LoadImages() {
  headerImage_ = LoadPngResource(resources::kImageHeader, kHeaderDpi);
  controls_.expandButton.showImage = model_.threeGuiLayers;
  controls_.expandButton.SetImage(LoadPngResource(resources::kImageExpandButton, kDesignDpi));
  controls_.menuButton.SetImage(LoadPngResource(resources::kImageMenuButton, kDesignDpi));
  controls_.closeButton.SetImage(LoadPngResource(resources::kImageCloseButton, kDesignDpi));
}

void CKelControlDlg::LoadFirstSet() {
  watcher_.Start(editor_.LoadFirstSet(), [window = Handle()](store::OutputPath outputPath) {
    platform::PostToWindow(window, endpoints::UM_SETTING_CHANGED, 0,
                           static_cast<LParam>(outputPath));
  });
  // What changed after the set was read, before the watcher was ready, is seen by its first look.
  watcher_.Wake();
  editor_.ShowEqualizerSwitch();
  controls_.plot.BuildResponseGrid();
  if (model_.davrinModel) controls_.SetRedAccent();
  editor_.ShowFirstSet();
}

LResult CKelControlDlg::OnSystemCommand(WParam wParam, LParam lParam) {
  if ((wParam & kSystemCommandMask) == resources::kCommandAbout) return OnAbout(0, 0);
  return Dialog::WindowProc(platform::message::kSystemCommand, wParam, lParam);
}

LResult CKelControlDlg::OnEraseBackground(WParam wParam, LParam /*lParam*/) {
  const platform::Size client = ClientSize(*this);
  eraseBuffer_ = MakeCanvas(client, platform::PixelFormat::PremultipliedArgb32);
  if (backgroundBrush_) {
    platform::Graphics(*eraseBuffer_)
        .FillTiled(*backgroundBrush_, {0, 0, client.width, client.height});
  }
  if (auto* graphics = FromParameter<platform::Graphics>(wParam)) {
    graphics->SetCompositingMode(platform::CompositingMode::SourceCopy);
    graphics->DrawImage(*eraseBuffer_, 0, 0);
  }
  controls_.CaptureBackground(*eraseBuffer_);
  return 1;
}

LResult CKelControlDlg::OnPaint(WParam /*wParam*/, LParam /*lParam*/) {
  platform::PaintContext paint(*this);
  if (IsMinimized()) {
    PaintMinimized(paint.Surface());
  } else {
    PaintSkin(paint.Surface());
  }
  return 0;
}

void CKelControlDlg::PaintMinimized(platform::Graphics& graphics) const {
  const platform::Rect client = ClientRect();
  if (backgroundBrush_) graphics.FillTiled(*backgroundBrush_, client);
  if (!icon_) return;
  const auto size = static_cast<std::int32_t>(kIconSize * dpiScale_);
  const std::int32_t left = (client.Width() - size + 1) / 2;
  const std::int32_t top = (client.Height() - size + 1) / 2;
  graphics.SetInterpolationMode(platform::InterpolationMode::HighQualityBicubic);
  graphics.DrawImage(*icon_, {left, top, left + size, top + size});
}

void CKelControlDlg::PaintSkin(platform::Graphics& graphics) {
  if (headerImage_) PaintHeader(graphics, *headerImage_, dpiScale_);
  PaintExpandedEdge(graphics, collapsedHeight_, ClientRect().Width(), dpiScale_);
  PaintSliderEdge(graphics, SliderColumn(), dpiScale_);
}

// From the top of the first slider to the bottom of the last, seen from the window's corner.
platform::Rect CKelControlDlg::SliderColumn() {
  platform::Rect column = AreaInParent(controls_.Slider(BandSlider::Gain));
  column.bottom = AreaInParent(controls_.Slider(BandSlider::Bandwidth)).bottom;
  return column;
}

LResult CKelControlDlg::OnQueryDragIcon(WParam /*wParam*/, LParam /*lParam*/) {
  return resources::kApplicationIcon;
}

LResult CKelControlDlg::OnNonClientHitTest(WParam wParam, LParam lParam) {
  const platform::Size header = headerImage_ ? SizeOf(*headerImage_) : platform::Size{};
  if (const auto hit = HitTestTopEdge(platform::PointFromLParam(lParam), WindowRect(), header)) {
    return static_cast<LResult>(*hit);
  }
  return Dialog::WindowProc(platform::message::kNonClientHitTest, wParam, lParam);
}

LResult CKelControlDlg::OnLeftButtonUp(WParam wParam, LParam lParam) {
  const platform::Point client = platform::PointFromLParam(lParam);
  if (IsSystemMenuSpot(client)) {
    const platform::Rect window = WindowRect();
    TrackSystemMenu({client.x + window.left, client.y + window.top});
  }
  return Dialog::WindowProc(platform::message::kLeftButtonUp, wParam, lParam);
}

template <dsp::Knob kKnob>
LResult CKelControlDlg::OnKnob(WParam /*wParam*/, LParam /*lParam*/) {
  editor_.EditKnob(kKnob);
  return 0;
}

template <BandSlider kSlider>
LResult CKelControlDlg::OnSlider(WParam /*wParam*/, LParam /*lParam*/) {
  editor_.EditSlider(kSlider);
  return 0;
}

template <EqSwitch kBox>
LResult CKelControlDlg::OnSwitch(WParam /*wParam*/, LParam /*lParam*/) {
  editor_.Toggle(kBox);
  return 0;
}

template <dsp::FilterType kType>
LResult CKelControlDlg::OnType(WParam /*wParam*/, LParam /*lParam*/) {
  editor_.EditType(kType);
  return 0;
}

LResult CKelControlDlg::OnBandSelected(WParam wParam, LParam /*lParam*/) {
  editor_.SelectBand(static_cast<std::int32_t>(wParam));
  return 0;
}

LResult CKelControlDlg::OnBandDragged(WParam wParam, LParam lParam) {
  editor_.DragBand(static_cast<std::int32_t>(wParam),
                   *FromParameter<const dsp::BandMarker>(static_cast<WParam>(lParam)));
  return 0;
}

LResult CKelControlDlg::OnExpand(WParam /*wParam*/, LParam /*lParam*/) {
  if (!model_.threeGuiLayers) return 0;
  const std::uint16_t image =
      expanded_ ? resources::kImageExpandButton : resources::kImageCollapseButton;
  const std::int32_t height = expanded_ ? collapsedHeight_ : fullHeight_;
  controls_.expandButton.SetImage(LoadPngResource(image, kDesignDpi));
  expanded_ = !expanded_;
  Resize({windowWidth_, height});
  TellExpansion();
  return 0;
}

void CKelControlDlg::TellExpansion() {
  controls_.TellExpansion(expanded_ ? platform::AccessibleExpansion::Expanded
                                    : platform::AccessibleExpansion::Collapsed);
}

LResult CKelControlDlg::OnMenuButton(WParam /*wParam*/, LParam /*lParam*/) {
  const platform::Rect button = controls_.menuButton.WindowRect();
  TrackPopupMenu(resources::kAdvancedPopup, {button.left, button.top});
  return 0;
}

LResult CKelControlDlg::OnAbout(WParam /*wParam*/, LParam /*lParam*/) {
  platform::Dialog(resources::kAboutTemplate).DoModal(Handle());
  return 0;
}

LResult CKelControlDlg::OnLoad(WParam /*wParam*/, LParam /*lParam*/) {
  const auto path = platform::ShowFileDialog(Handle(), platform::FileDialogKind::Open,
                                             kSettingsExtension, kSettingsFilter);
  if (path && store::LoadUserSettings(files_, editor_.Store(), *path)) {
    editor_.TakeLoadedSettings();
  }
  return 0;
}

LResult CKelControlDlg::OnSave(WParam /*wParam*/, LParam /*lParam*/) {
  const auto path = platform::ShowFileDialog(Handle(), platform::FileDialogKind::Save,
                                             kSettingsExtension, kSettingsFilter);
  if (path) static_cast<void>(store::SaveUserSettings(files_, editor_.Store(), *path));
  return 0;
}

LResult CKelControlDlg::OnRestore(WParam /*wParam*/, LParam /*lParam*/) {
  if (store::AskRestoreDefaults(Handle())) editor_.RestoreDefaults();
  return 0;
}

LResult CKelControlDlg::OnCloseCommand(WParam /*wParam*/, LParam /*lParam*/) {
  EndDialog(platform::kIdCancel);
  return 0;
}

LResult CKelControlDlg::OnSettingChanged(WParam /*wParam*/, LParam lParam) {
  editor_.Reload(static_cast<store::OutputPath>(lParam));
  return 0;
}

LResult CKelControlDlg::OnSignalEngine(WParam /*wParam*/, LParam /*lParam*/) {
  editor_.SignalParameterChange();
  return 0;
}

}  // namespace ui
