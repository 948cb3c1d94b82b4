// Controls that a template has and no object draws: the toolkit's own.
#pragma once

#include <QFont>
#include <QRect>

#include "platform/dialog_template.h"
#include "platform/linux/windows/dialog_window.h"

namespace platform {

void MakeSystemControl(DialogWindow& dialog, const DialogControl& control, const QRect& place,
                       const QFont& font);

}  // namespace platform
