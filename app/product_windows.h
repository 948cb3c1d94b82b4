// What start-up shows to a person.
#pragma once

#include "app/model_support.h"

namespace app {

class ProductWindows {
 public:
  virtual ~ProductWindows() = default;

  // Says that the model is not supported; returns when the person has dismissed it.
  virtual void ShowUnsupportedModel() = 0;

  // Runs the main window until it closes.
  virtual void RunMainWindow(const ModelInfo& model) = 0;
};

}  // namespace app
