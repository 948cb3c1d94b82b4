// One model of each kind, for virtual laptops: whichever comes first in the tables.
#pragma once

#include <algorithm>
#include <cstdint>

#include "resources/model_tables.h"

namespace resources {

namespace detail {

constexpr std::uint32_t FirstModel(bool threeGuiLayers, bool davrinModel) {
  return std::find_if(kModelRows.begin(), kModelRows.end(),
                      [=](const ModelRow& row) {
                        return row.threeGuiLayers == threeGuiLayers &&
                               row.davrinModel == davrinModel;
                      })
      ->ssid;
}

// The SSID after the last supported one.
constexpr std::uint32_t FirstUnsupported() {
  return kModelRows.back().ssid + 1;
}

}  // namespace detail

inline constexpr std::uint32_t kStandardSample = detail::FirstModel(false, false);
inline constexpr std::uint32_t kLayersSample = detail::FirstModel(true, false);
inline constexpr std::uint32_t kDavrinSample = detail::FirstModel(true, true);
inline constexpr std::uint32_t kUnsupportedSample = detail::FirstUnsupported();

}  // namespace resources
