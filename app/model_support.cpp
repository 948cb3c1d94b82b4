#include "app/model_support.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <span>

#include "resources/model_tables.h"
#include "store/diagnostic_log.h"

namespace app {
namespace {

constexpr std::size_t kLineBuffer = 256;

template <std::size_t Count>
bool Contains(const std::array<std::uint32_t, Count>& models, std::uint32_t ssid) {
  return std::binary_search(models.begin(), models.end(), ssid);
}

}  // namespace

bool IsSupportedModel(std::uint32_t ssid, platform::FileSystem& files) {
  const bool supported = Contains(resources::kSupportedModels, ssid);
  if (const std::unique_ptr<platform::File> log = store::OpenDiagnosticLog(files)) {
    std::array<char, kLineBuffer> line{};
    const int length =
        std::snprintf(line.data(), line.size(), "SSID 0x%08X was %s by Tonalyx\r\n\r\n", ssid,
                      supported ? "supported" : "not supported");
    log->Write(std::as_bytes(std::span(line)).first(static_cast<std::size_t>(length)));
  }
  return supported;
}

bool HasThreeGuiLayers(std::uint32_t ssid) {
  return Contains(resources::kThreeGuiLayerModels, ssid);
}

bool IsDavrinModel(std::uint32_t ssid) {
  return Contains(resources::kDavrinModels, ssid);
}

}  // namespace app
