#pragma once
// A font as windows and the desktop's text measure know it.
#include <string>

namespace vellumar::ui {

struct Font {
  std::string Name = "MS Sans Serif";  // face name
  double Size = 8.25;                  // points
  bool Bold = false;
  bool Italic = false;
  bool operator==(const Font&) const = default;
};

}  // namespace vellumar::ui
