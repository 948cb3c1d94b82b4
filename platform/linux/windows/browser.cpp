#include <QProcess>

#include "platform/linux/windows/qt_text.h"
#include "platform/shell.h"

namespace platform {

void OpenInBrowser(std::u16string_view location) {
  QProcess process;
  process.setProgram(QStringLiteral("xdg-open"));
  process.setArguments({ToQString(location)});
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  process.startDetached();
}

}  // namespace platform
