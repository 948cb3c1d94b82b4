#pragma once

namespace store {

// What the product's model tables say about the machine.
struct ModelFlags {
  bool threeGuiLayers = false;  // the main window has the Advanced entry
  bool davrinModel = false;     // the Davrin skin, modes and accents
};

}  // namespace store
