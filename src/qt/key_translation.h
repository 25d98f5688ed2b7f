#pragma once
// Keys as the control models know them: the runtime's key codes (letters by their upper case,
// F1 = 112), the shift mask (Shift 1, Ctrl 2, Alt 4) and the character a key types.
#include <QKeyEvent>

namespace vellumar::qt {

struct VbKey {
  int keyCode = 0;   // the runtime's key code; 0 for a key it has none for
  int shift = 0;     // vbShiftMask | vbCtrlMask | vbAltMask
  int keyAscii = 0;  // the character typed (1..127), 0 when the key types none in the ASCII range
  bool nonAsciiText = false;  // the key types text beyond ASCII (given to the box whole)
};

int VbShiftFromModifiers(Qt::KeyboardModifiers modifiers);
int VbKeyCodeFromQtKey(int qtKey, Qt::KeyboardModifiers modifiers);
VbKey TranslateKey(const QKeyEvent& event);

// The runtime's mouse button (vbLeftButton 1, vbRightButton 2, vbMiddleButton 4).
int VbButtonFromQt(Qt::MouseButton button);

}  // namespace vellumar::qt
