// The install-time import of the factory's tuning files.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/files.h"
#include "platform/registry.h"
#include "store/model_flags.h"

namespace store {

class TuningImport {
 public:
  TuningImport(platform::Registry& registry, platform::FileSystem& files, ModelFlags model);

  // The whole work of install mode on a supported machine with this subsystem ID. False when the
  // store could not take all of a tuning; whatever else fails is silent.
  bool RunInstallImport(std::uint32_t ssid);

  // Imports every tuning file beside the program and deletes it, whether it is good or not; once
  // the store could not take one, the files stay. True when one of this machine's own was imported;
  // only without one the generic file counts.
  bool ImportTuningFiles(std::uint32_t ssid);

  // Imports one file, which must be made for `expectedSsid`, and describes it in the diagnostic
  // log. The file's subsystem ID; nothing when it was rejected or failed, and then whatever was
  // written before the failure stays.
  std::optional<std::uint32_t> ImportTuningFile(std::u16string_view path,
                                                std::uint32_t expectedSsid);

 private:
  void RemoveUnlessLost(std::u16string_view path);
  void SetHardwareOutputPath();

  platform::Registry& registry_;
  platform::FileSystem& files_;
  ModelFlags model_;
  bool hasLostWrites_ = false;
};

}  // namespace store
