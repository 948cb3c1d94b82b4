// The filter text of file dialogs.
#pragma once

#include <QString>
#include <QStringList>
#include <string_view>
#include <vector>

namespace platform {

struct FileFilter {
  QString shownName;  // in the toolkit's form, "Name (*.ext)"
  QString suffix;     // of its first pattern that names one, without the dot; may be empty
};

// Parses "Name|*.ext;*.other|Name|*.*||"; a name without patterns is left out.
std::vector<FileFilter> ParseFileFilter(std::u16string_view filter);

}  // namespace platform
