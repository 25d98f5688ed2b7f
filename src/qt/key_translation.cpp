#include "qt/key_translation.h"

#include "platform/ui/control.h"

namespace vellumar::qt {

int VbShiftFromModifiers(Qt::KeyboardModifiers modifiers) {
  int shift = 0;
  if (modifiers & Qt::ShiftModifier) shift |= ui::vbShiftMask;
  if (modifiers & Qt::ControlModifier) shift |= ui::vbCtrlMask;
  if (modifiers & Qt::AltModifier) shift |= ui::vbAltMask;
  return shift;
}

int VbKeyCodeFromQtKey(int qtKey, Qt::KeyboardModifiers modifiers) {
  // Letters and digits: Qt's codes are the ASCII of the upper case, as the runtime's are; the
  // digits of the keypad have codes of their own.
  if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) return qtKey;
  if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
    return (modifiers & Qt::KeypadModifier) ? 96 + (qtKey - Qt::Key_0) : qtKey;
  if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return ui::vbKeyF1 + (qtKey - Qt::Key_F1);
  switch (qtKey) {
    case Qt::Key_Backspace:
      return ui::vbKeyBack;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return ui::vbKeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return ui::vbKeyReturn;
    case Qt::Key_Shift:
      return ui::vbKeyShift;
    case Qt::Key_Control:
      return ui::vbKeyControl;
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
      return ui::vbKeyMenu;
    case Qt::Key_Pause:
      return 19;
    case Qt::Key_CapsLock:
      return 20;
    case Qt::Key_Escape:
      return ui::vbKeyEscape;
    case Qt::Key_Space:
      return ui::vbKeySpace;
    case Qt::Key_PageUp:
      return ui::vbKeyPageUp;
    case Qt::Key_PageDown:
      return ui::vbKeyPageDown;
    case Qt::Key_End:
      return ui::vbKeyEnd;
    case Qt::Key_Home:
      return ui::vbKeyHome;
    case Qt::Key_Left:
      return ui::vbKeyLeft;
    case Qt::Key_Up:
      return ui::vbKeyUp;
    case Qt::Key_Right:
      return ui::vbKeyRight;
    case Qt::Key_Down:
      return ui::vbKeyDown;
    case Qt::Key_Insert:
      return ui::vbKeyInsert;
    case Qt::Key_Delete:
      return ui::vbKeyDelete;
    case Qt::Key_NumLock:
      return 144;
    case Qt::Key_ScrollLock:
      return 145;
    // The punctuation keys of a US keyboard, by either of their characters.
    case Qt::Key_Asterisk:
      return (modifiers & Qt::KeypadModifier) ? 106 : 56;
    case Qt::Key_Plus:
      return (modifiers & Qt::KeypadModifier) ? 107 : 187;
    case Qt::Key_Minus:
      return (modifiers & Qt::KeypadModifier) ? 109 : 189;
    case Qt::Key_Period:
      return (modifiers & Qt::KeypadModifier) ? 110 : 190;
    case Qt::Key_Slash:
      return (modifiers & Qt::KeypadModifier) ? 111 : 191;
    case Qt::Key_Semicolon:
    case Qt::Key_Colon:
      return 186;
    case Qt::Key_Equal:
      return 187;
    case Qt::Key_Comma:
    case Qt::Key_Less:
      return 188;
    case Qt::Key_Underscore:
      return 189;
    case Qt::Key_Greater:
      return 190;
    case Qt::Key_Question:
      return 191;
    case Qt::Key_QuoteLeft:
    case Qt::Key_AsciiTilde:
      return 192;
    case Qt::Key_BracketLeft:
    case Qt::Key_BraceLeft:
      return 219;
    case Qt::Key_Backslash:
    case Qt::Key_Bar:
      return 220;
    case Qt::Key_BracketRight:
    case Qt::Key_BraceRight:
      return 221;
    case Qt::Key_Apostrophe:
    case Qt::Key_QuoteDbl:
      return 222;
    // Shifted digits of a US keyboard are the digit keys.
    case Qt::Key_Exclam:
      return '1';
    case Qt::Key_At:
      return '2';
    case Qt::Key_NumberSign:
      return '3';
    case Qt::Key_Dollar:
      return '4';
    case Qt::Key_Percent:
      return '5';
    case Qt::Key_AsciiCircum:
      return '6';
    case Qt::Key_Ampersand:
      return '7';
    case Qt::Key_ParenLeft:
      return '9';
    case Qt::Key_ParenRight:
      return '0';
    default:
      return 0;
  }
}

VbKey TranslateKey(const QKeyEvent& event) {
  VbKey key;
  const Qt::KeyboardModifiers modifiers = event.modifiers();
  key.shift = VbShiftFromModifiers(modifiers);
  key.keyCode = VbKeyCodeFromQtKey(event.key(), modifiers);

  // The character: Enter, Backspace and Escape type their control characters, Ctrl with a
  // letter types 1..26, as the runtime's KeyPress sees them.
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      key.keyAscii = ui::vbKeyReturn;
      return key;
    case Qt::Key_Backspace:
      key.keyAscii = ui::vbKeyBack;
      return key;
    case Qt::Key_Escape:
      key.keyAscii = ui::vbKeyEscape;
      return key;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Delete:
      return key;
    default:
      break;
  }
  if ((modifiers & Qt::ControlModifier) && event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z) {
    key.keyAscii = event.key() - Qt::Key_A + 1;
    return key;
  }
  if (modifiers & (Qt::ControlModifier | Qt::AltModifier)) return key;
  const QString text = event.text();
  if (text.isEmpty()) return key;
  const char16_t c = text.at(0).unicode();
  if (text.size() == 1 && c >= 32 && c < 127) {
    key.keyAscii = c;
  } else if (c >= 32 && c != 127) {
    key.nonAsciiText = true;
  }
  return key;
}

int VbButtonFromQt(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return ui::vbLeftButton;
    case Qt::RightButton:
      return ui::vbRightButton;
    case Qt::MiddleButton:
      return ui::vbMiddleButton;
    default:
      return 0;
  }
}

}  // namespace vellumar::qt
