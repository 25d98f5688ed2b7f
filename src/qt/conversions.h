#pragma once
// Translations between the control models' values and Qt's: UTF-8 text, 0xBBGGRR colours,
// fonts, twips and captions with mnemonics.
#include <QColor>
#include <QFont>
#include <QString>
#include <string>

#include "frame/common.h"
#include "platform/ui/control.h"

namespace vellumar::qt {

// The models measure in twips, kTwipsPerPixel of them to a pixel of the screen.
inline int PixelsFromTwips(int twips) { return twips / kTwipsPerPixel; }
inline int TwipsFromPixels(int pixels) { return pixels * kTwipsPerPixel; }

inline QString ToQString(const std::string& text) { return QString::fromUtf8(text); }
inline std::string ToStdString(const QString& text) { return text.toUtf8().toStdString(); }

// A 0xBBGGRR colour: 0xFF0000 is blue.
QColor ToQColor(ui::Color color);
ui::Color FromQColor(const QColor& color);

// The model's font on top of the widget's: the face is taken only when the system has it
// (the models' default face is a name of another platform), size, bold and italic always.
QFont ToQFont(const ui::Font& font, const QFont& base);

// A caption for a widget that shows "&" literally (a label): single "&"s, which mark the
// mnemonic, go; "&&" becomes "&".
QString WithoutMnemonic(const std::string& caption);

}  // namespace vellumar::qt
