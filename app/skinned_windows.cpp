#include "app/skinned_windows.h"

#include <memory>

#include "ui/eq/kel_control_dlg.h"
#include "ui/main/orvan_dlg.h"

namespace app {

void SkinnedWindows::JoinDesktop() {
  if (!session_) session_.emplace(platform_.singleInstance);
}

void SkinnedWindows::ShowUnsupportedModel() {
  JoinDesktop();
  platform::ShowMessageBox(0, u"Error: Unsupported model.", u"Error",
                           platform::MessageBoxKind::SystemError);
}

void SkinnedWindows::RunMainWindow(const ModelInfo& model) {
  JoinDesktop();
  ui::COrvanDlg window(platform_, model, [this, model] {
    return std::make_unique<ui::CKelControlDlg>(platform_, model);
  });
  window.DoModal();
}

}  // namespace app
