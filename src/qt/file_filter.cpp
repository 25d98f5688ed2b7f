#include "qt/file_filter.h"

#include <QStringList>

#include "qt/conversions.h"

namespace vellumar::qt {
namespace {

QString PatternsOf(const QString& patterns) {
  QStringList out;
  for (QString p : patterns.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    p = p.trimmed();
    if (p.isEmpty()) continue;
    if (p == QLatin1String("*.*")) p = QStringLiteral("*");
    out << p;
  }
  return out.isEmpty() ? QStringLiteral("*") : out.join(QLatin1Char(' '));
}

// The description without a trailing "(*.x)" list of its own.
QString DescriptionOf(QString description) {
  description = description.trimmed();
  if (description.endsWith(QLatin1Char(')'))) {
    const qsizetype open = description.lastIndexOf(QLatin1Char('('));
    if (open >= 0) {
      const QString group = description.mid(open);
      if (group.contains(QLatin1Char('*')) || group.contains(QLatin1Char('?')))
        description = description.left(open).trimmed();
    }
  }
  return description;
}

}  // namespace

QString QtFileFilter(const std::string& filter) {
  const QStringList parts = ToQString(filter).split(QLatin1Char('|'));
  QStringList entries;
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    const QString description = DescriptionOf(parts[i]);
    const QString patterns = PatternsOf(i + 1 < parts.size() ? parts[i + 1] : QString());
    if (description.isEmpty() && parts[i].trimmed().isEmpty() && i + 1 >= parts.size()) continue;
    entries << (description.isEmpty() ? patterns : description) + QStringLiteral(" (") + patterns +
                   QLatin1Char(')');
  }
  return entries.join(QStringLiteral(";;"));
}

}  // namespace vellumar::qt
