#include "platform/linux/windows/file_filter.h"

#include "platform/linux/windows/qt_text.h"

namespace platform {
namespace {

QString SuffixOf(const QString& pattern) {
  if (!pattern.startsWith(QLatin1String("*."))) return {};
  const QString suffix = pattern.mid(2);
  return suffix.contains(QLatin1Char('*')) || suffix.contains(QLatin1Char('?')) ? QString()
                                                                                : suffix;
}

}  // namespace

std::vector<FileFilter> ParseFileFilter(std::u16string_view filter) {
  std::vector<FileFilter> filters;
  const QStringList parts = ToQString(filter).split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    if (parts[i].isEmpty()) break;
    FileFilter parsed;
    QStringList patterns;
    for (const QString& pattern : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
      // "*.*" means all files here, those without a dot as well.
      patterns.append(pattern == QLatin1String("*.*") ? QStringLiteral("*") : pattern);
      if (parsed.suffix.isEmpty()) parsed.suffix = SuffixOf(pattern);
    }
    if (patterns.isEmpty()) continue;
    parsed.nameAndPatterns =
        QStringLiteral("%1 (%2)").arg(parts[i], patterns.join(QLatin1Char(' ')));
    filters.push_back(parsed);
  }
  return filters;
}

}  // namespace platform
