#pragma once

namespace store {

// What the product's model tables say about the machine.
struct ModelFlags {
  bool threeGuiLayers;
  bool davrinModel;
};

}  // namespace store
