#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <algorithm>

#include "platform/linux/windows/file_filter.h"
#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/qt_text.h"
#include "platform/linux/windows/window_table.h"
#include "platform/screen.h"
#include "platform/shell.h"

namespace platform {
namespace {

QString WithoutDot(std::u16string_view extension) {
  const QString text = ToQString(extension);
  return text.startsWith(QLatin1Char('.')) ? text.mid(1) : text;
}

// The toolkit's dialog, which for opening would take the default extension to be part of every name
// without one; a file that has that very name goes first.
class FileDialog : public QFileDialog {
 public:
  FileDialog(QWidget* owner, FileDialogKind kind) : QFileDialog(owner), kind_(kind) {}

  // What a typed name without an extension gets.
  void SetSuffix(const QString& suffix) {
    suffix_ = suffix;
    if (kind_ == FileDialogKind::Save) setDefaultSuffix(suffix);
  }

 protected:
  void accept() override {
    if (kind_ == FileDialogKind::Open) {
      setDefaultSuffix({});
      const QStringList named = selectedFiles();
      if (!named.isEmpty() && !QFileInfo::exists(named.constFirst())) setDefaultSuffix(suffix_);
    }
    QFileDialog::accept();
  }

 private:
  const FileDialogKind kind_;
  QString suffix_;
};

// The list of completions comes up some time after the typing and then takes the Enter key that was
// meant for the dialog.
void WithoutCompletion(const QFileDialog& dialog) {
  if (auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
    name->setCompleter(nullptr);
  }
}

// The extension that a typed name without one gets: the chosen filter's, else the default one. The
// dialog appends it before it asks whether to overwrite.
void FollowFilter(FileDialog& dialog, const std::vector<FileFilter>& filters,
                  const QString& defaultSuffix) {
  const auto apply = [&dialog, filters, defaultSuffix] {
    const QString selected = dialog.selectedNameFilter();
    const auto chosen = std::find_if(filters.begin(), filters.end(), [&](const FileFilter& filter) {
      return filter.nameAndPatterns == selected;
    });
    const bool named = chosen != filters.end() && !chosen->suffix.isEmpty();
    dialog.SetSuffix(named ? chosen->suffix : defaultSuffix);
  };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, apply);
  apply();
}

}  // namespace

std::optional<std::u16string> ShowFileDialog(WindowHandle owner, FileDialogKind kind,
                                             std::u16string_view defaultExtension,
                                             std::u16string_view filter) {
  FileDialog dialog(WindowTable::Instance().Find(owner), kind);
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  // The names stand as they are given; "*.*", which means every file, is another pattern here.
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  const std::vector<FileFilter> filters = ParseFileFilter(filter);
  QStringList names;
  for (const FileFilter& each : filters) names.append(each.nameAndPatterns);
  dialog.setNameFilters(names);
  if (kind == FileDialogKind::Save) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
  } else {
    dialog.setFileMode(QFileDialog::ExistingFile);
  }
  FollowFilter(dialog, filters, WithoutDot(defaultExtension));
  WithoutCompletion(dialog);
  dialog.setViewMode(QFileDialog::List);
  dialog.resize(QSize(640, 420) * GetScreenDpi().y / 96);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().constFirst().toStdU16String();
}

}  // namespace platform
