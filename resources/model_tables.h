// The models that the product supports: constant tables made from models.txt.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace resources {

struct ModelRow {
  std::uint32_t ssid;
  bool threeGuiLayers;
  bool davrinModel;
};

inline constexpr auto kModelRows = std::to_array<ModelRow>({
#include "resources/model_rows.inc"
});

namespace detail {

template <std::size_t Count>
constexpr std::array<std::uint32_t, Count> CollectSsids(bool (*belongs)(const ModelRow&)) {
  std::array<std::uint32_t, Count> ssids{};
  std::size_t used = 0;
  for (const ModelRow& row : kModelRows) {
    if (belongs(row)) ssids.at(used++) = row.ssid;
  }
  return ssids;
}

constexpr bool AnyModel(const ModelRow&) {
  return true;
}
constexpr bool ThreeGuiLayers(const ModelRow& row) {
  return row.threeGuiLayers;
}
constexpr bool Davrin(const ModelRow& row) {
  return row.davrinModel;
}

constexpr auto CountModels(bool (*belongs)(const ModelRow&)) {
  return std::count_if(kModelRows.begin(), kModelRows.end(), belongs);
}

}  // namespace detail

static_assert(detail::CountModels(detail::AnyModel) == 327, "supported models");
static_assert(detail::CountModels(detail::ThreeGuiLayers) == 144, "three-GUI-layer models");
static_assert(detail::CountModels(detail::Davrin) == 27, "Davrin models");
static_assert(std::none_of(kModelRows.begin(), kModelRows.end(),
                           [](const ModelRow& row) {
                             return row.davrinModel && !row.threeGuiLayers;
                           }),
              "every Davrin model has three GUI layers");
static_assert(std::adjacent_find(kModelRows.begin(), kModelRows.end(),
                                 [](const ModelRow& left, const ModelRow& right) {
                                   return left.ssid >= right.ssid;
                                 }) == kModelRows.end(),
              "models stand once each, in rising order");

inline constexpr auto kSupportedModels = detail::CollectSsids<327>(detail::AnyModel);
inline constexpr auto kThreeGuiLayerModels = detail::CollectSsids<144>(detail::ThreeGuiLayers);
inline constexpr auto kDavrinModels = detail::CollectSsids<27>(detail::Davrin);

}  // namespace resources
