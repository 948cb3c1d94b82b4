// The main window: six mode buttons on a skin of its own shape.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "endpoints/notification_client.h"
#include "endpoints/registry_watcher.h"
#include "platform/com_apartment.h"
#include "platform/dialog.h"
#include "platform/message_map.h"
#include "platform/platform.h"
#include "store/model_flags.h"
#include "ui/main/mode_selection.h"
#include "ui/main/skin_composer.h"
#include "ui/main/spoken_elements.h"

namespace ui {

// Posted by the main window to itself.
inline constexpr std::uint32_t UM_OPEN_ADVANCED = platform::message::kUser + 10;

// Makes the dialog behind the Advanced entry, ready to be run.
using AdvancedDialogFactory = std::function<std::unique_ptr<platform::Dialog>()>;

// Run with DoModal on the user-interface thread; `platform` outlives it.
class COrvanDlg : public platform::Dialog {
 public:
  COrvanDlg(const platform::Platform& platform, store::ModelFlags model,
            AdvancedDialogFactory makeAdvancedDialog);

  std::int32_t AccessiblePartCount() const override;
  void DoDefaultAction(std::int32_t part) override;

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override;
  platform::AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  using LParam = platform::LParam;
  using LResult = platform::LResult;
  using WParam = platform::WParam;

  LResult OnInitDialog(WParam wParam, LParam lParam);
  LResult OnPaint(WParam wParam, LParam lParam);
  LResult OnEraseBackground(WParam wParam, LParam lParam);
  LResult OnNonClientHitTest(WParam wParam, LParam lParam);
  LResult OnMouseMove(WParam wParam, LParam lParam);
  LResult OnLeftButtonDown(WParam wParam, LParam lParam);
  LResult OnOpenAdvanced(WParam wParam, LParam lParam);
  LResult OnSettingChanged(WParam wParam, LParam lParam);
  LResult OnTimer(WParam wParam, LParam lParam);
  LResult OnDestroy(WParam wParam, LParam lParam);

  void LoadActiveMode();
  Element ElementAt(platform::Point client) const;
  void Click(Element element);
  void SelectMode(Element element);
  MainScene Scene() const;
  void DrawSkin();
  void RedrawNow();

  // In this order because the notification client unregisters first, then the watcher stops, then
  // the apartment is left.
  platform::ComApartment apartment_;
  store::ModelFlags model_;
  AdvancedDialogFactory makeAdvancedDialog_;
  ModeSelection modes_;
  endpoints::RegistryWatcher watcher_;
  endpoints::CMMNotificationClient notificationClient_;
  std::optional<SkinComposer> composer_;  // from initialisation on
  SpokenElements spoken_;
  Element hoverItem_ = Element::None;
  std::unique_ptr<platform::Dialog> advancedDialog_;  // while it is open
};

}  // namespace ui
