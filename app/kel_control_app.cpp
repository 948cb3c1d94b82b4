#include "app/kel_control_app.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "app/codec_probe.h"
#include "platform/text.h"
#include "resources/window_titles.h"
#include "store/tuning_import.h"

namespace app {
namespace {

constexpr std::u16string_view kInstanceName = u"Velsona";
// The advanced dialog hides the main window, so its title is looked for first.
constexpr std::array<std::u16string_view, 2> kWindowTitles = {resources::kAdvancedTitle,
                                                              resources::kMainTitle};
constexpr std::u16string_view kInstallArgument = u"/init";

}  // namespace

CKelControlApp::CKelControlApp(platform::Platform& platform, ProductWindows& windows,
                               std::span<const std::u16string> arguments)
    : platform_(platform), windows_(windows), arguments_(arguments) {}

bool CKelControlApp::InitInstance() {
  platform::RegisterCommonControls(platform::kCommonControlClasses);
  if (!platform_.singleInstance.Acquire(kInstanceName)) {
    platform_.singleInstance.BringRunningCopyForward(kWindowTitles);
    return false;
  }
  drawing_.emplace();
  platform::RegisterForRestart();
  const ModelInfo model = IdentifyModel();
  return IsInstallMode() ? RunInstall(model) : RunInteractive(model);
}

std::int32_t CKelControlApp::ExitInstance() {
  drawing_.reset();
  return exitCodeOverride_;
}

bool CKelControlApp::IsInstallMode() const {
  return arguments_.size() == 1 &&
         platform::CompareIgnoreCase(arguments_.front(), kInstallArgument) == 0;
}

ModelInfo CKelControlApp::IdentifyModel() {
  ModelInfo model;
  model.ssid = ProbeCodecSsid(platform_);
  model.supported = IsSupportedModel(model.ssid, platform_.files);
  model.threeGuiLayers = HasThreeGuiLayers(model.ssid);
  model.davrinModel = IsDavrinModel(model.ssid);
  return model;
}

bool CKelControlApp::RunInstall(const ModelInfo& model) {
  if (!model.supported) {
    exitCodeOverride_ = kExitInstallFailure;
    return true;
  }
  store::TuningImport tuningImport(platform_.registry, platform_.files,
                                   {model.threeGuiLayers, model.davrinModel});
  if (!tuningImport.RunInstallImport(model.ssid)) {
    std::fputs("tonalyx: the tuning could not be stored, its files stay\n", stderr);
  }
  return false;
}

bool CKelControlApp::RunInteractive(const ModelInfo& model) {
  if (!model.supported) {
    windows_.ShowUnsupportedModel();
    exitCodeOverride_ = kExitUnsupported;
    return true;
  }
  windows_.RunMainWindow(model);
  return false;
}

}  // namespace app
