// The advanced equalizer: four effect knobs and, once expanded, a ten-band equalizer that edit the
// active setting of the current output route while the engine follows.
#pragma once

#include <cstdint>
#include <optional>

#include "endpoints/registry_watcher.h"
#include "platform/com_apartment.h"
#include "platform/dialog.h"
#include "platform/drawing.h"
#include "platform/files.h"
#include "platform/message_map.h"
#include "platform/platform.h"
#include "store/model_flags.h"
#include "ui/eq/eq_controls.h"
#include "ui/eq/eq_editor.h"

namespace ui {

// Sent to the dialog to have the engine read the stored values again.
inline constexpr std::uint32_t kSignalEngineMessage = platform::message::kUser + 4;

// Run with DoModal on the user-interface thread; `platform` outlives it. Models with three GUI
// layers can expand the dialog, Davrin models have red accents. Every change is stored at once, so
// the result of DoModal tells nothing that matters.
class CKelControlDlg : public platform::Dialog {
 public:
  CKelControlDlg(const platform::Platform& platform, store::ModelFlags model);
  ~CKelControlDlg() override;

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override;

 private:
  using LParam = platform::LParam;
  using LResult = platform::LResult;
  using WParam = platform::WParam;
  using MapEntry = platform::MessageMapEntry<CKelControlDlg>;

  LResult OnInitDialog(WParam wParam, LParam lParam);
  LResult OnSystemCommand(WParam wParam, LParam lParam);
  LResult OnPaint(WParam wParam, LParam lParam);
  LResult OnEraseBackground(WParam wParam, LParam lParam);
  LResult OnQueryDragIcon(WParam wParam, LParam lParam);
  LResult OnNonClientHitTest(WParam wParam, LParam lParam);
  LResult OnLeftButtonUp(WParam wParam, LParam lParam);

  template <dsp::Knob kKnob>
  LResult OnKnob(WParam wParam, LParam lParam);
  template <BandSlider kSlider>
  LResult OnSlider(WParam wParam, LParam lParam);
  template <EqSwitch kBox>
  LResult OnSwitch(WParam wParam, LParam lParam);
  template <dsp::FilterType kType>
  LResult OnType(WParam wParam, LParam lParam);
  LResult OnBandSelected(WParam wParam, LParam lParam);
  LResult OnBandDragged(WParam wParam, LParam lParam);

  LResult OnExpand(WParam wParam, LParam lParam);
  LResult OnMenuButton(WParam wParam, LParam lParam);
  LResult OnAbout(WParam wParam, LParam lParam);
  LResult OnLoad(WParam wParam, LParam lParam);
  LResult OnSave(WParam wParam, LParam lParam);
  LResult OnRestore(WParam wParam, LParam lParam);
  LResult OnCloseCommand(WParam wParam, LParam lParam);
  LResult OnSettingChanged(WParam wParam, LParam lParam);
  LResult OnSignalEngine(WParam wParam, LParam lParam);

  void AddAboutToSystemMenu();
  void Collapse();
  void TellExpansion();
  void LoadImages();
  void LoadFirstSet();
  void PaintMinimized(platform::Graphics& graphics) const;
  void PaintSkin(platform::Graphics& graphics);
  platform::Rect SliderColumn();

  platform::ComApartment apartment_;
  platform::FileSystem& files_;
  store::ModelFlags model_;
  EqControls controls_;
  EqEditor editor_;
  std::optional<platform::Bitmap> icon_;
  std::optional<platform::Bitmap> backgroundBrush_;
  std::optional<platform::Bitmap> headerImage_;
  std::optional<platform::Bitmap> eraseBuffer_;  // the background as it was last erased
  float dpiScale_ = 1.0F;
  std::int32_t windowWidth_ = 0;
  std::int32_t fullHeight_ = 0;
  std::int32_t collapsedHeight_ = 0;
  bool expanded_ = false;
  endpoints::RegistryWatcher watcher_;
};

}  // namespace ui
