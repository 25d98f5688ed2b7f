#include "platform/services/desktop.h"

#include <cmath>
#include <cstring>

namespace vellumar::ui {

int ApproximateTextWidth(const Font& font, const std::string& text) {
  constexpr double kTwipsPerPoint = 20;
  const double em = font.Size * kTwipsPerPoint;
  double width = 0;
  for (unsigned char c : text) {
    if ((c & 0xC0) == 0x80) continue;  // a continuation byte of a UTF-8 character
    if (std::strchr(" il.,:;|!'`", c) != nullptr && c != 0)
      width += 0.3 * em;
    else if (std::strchr("MWmw@", c) != nullptr && c != 0)
      width += 0.9 * em;
    else
      width += 0.55 * em;
  }
  if (font.Bold) width *= 1.1;
  return static_cast<int>(std::lround(width));
}

}  // namespace vellumar::ui
