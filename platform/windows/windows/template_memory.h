// A dialog template in the system's form.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/dialog_template.h"

namespace platform {

// What the system makes the dialog from: hidden, each control in its class. `isDrawn` tells which
// buttons draw themselves.
std::vector<WORD> MakeTemplateMemory(const DialogTemplate& dialogTemplate,
                                     const std::function<bool(const DialogControl&)>& isDrawn);

// The class of a custom control, for those that name none, too.
std::wstring CustomClassOf(const DialogControl& control);

}  // namespace platform
