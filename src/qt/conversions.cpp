#include "qt/conversions.h"

#include <QFontDatabase>

namespace vellumar::qt {

QColor ToQColor(ui::Color color) {
  return QColor(static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                static_cast<int>((color >> 16) & 0xFF));
}

ui::Color FromQColor(const QColor& color) {
  return static_cast<ui::Color>(color.red()) | (static_cast<ui::Color>(color.green()) << 8) |
         (static_cast<ui::Color>(color.blue()) << 16);
}

QFont ToQFont(const ui::Font& font, const QFont& base) {
  QFont result = base;
  const QString family = ToQString(font.Name);
  if (!family.isEmpty() && QFontDatabase::hasFamily(family)) result.setFamily(family);
  if (font.Size > 0) result.setPointSizeF(font.Size);
  result.setBold(font.Bold);
  result.setItalic(font.Italic);
  return result;
}

QString WithoutMnemonic(const std::string& caption) {
  QString out;
  const QString text = ToQString(caption);
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == QLatin1Char('&')) {
      if (i + 1 < text.size() && text[i + 1] == QLatin1Char('&')) {
        out += QLatin1Char('&');
        ++i;
      }
      continue;
    }
    out += text[i];
  }
  return out;
}

}  // namespace vellumar::qt
