// The filter text of file dialogs.
#pragma once

#include <QString>
#include <QStringList>
#include <string_view>
#include <vector>

namespace platform {

struct FileFilter {
  // In the toolkit's form, "Name (*.ext)". The name may have patterns of its own to show.
  QString nameAndPatterns;
  QString suffix;  // of its first pattern that names one, without the dot; may be empty
};

// Parses "Name|*.ext;*.other|Name|*.*||"; a name without patterns is left out.
std::vector<FileFilter> ParseFileFilter(std::u16string_view filter);

}  // namespace platform
