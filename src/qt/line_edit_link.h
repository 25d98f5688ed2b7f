#pragma once
// The link between a text box model and a QLineEdit (a text box's, or an editable combo's):
// keys go to the model as UserKey and the widget shows the model's text and cursor; edits the
// widget makes by itself (a paste, a cut, an input method's text) go to UserSetText.
//
// Keys the model edits with (characters, Backspace, Delete, Enter, Escape, Ctrl+letter) are
// swallowed: the model's KeyDown and KeyPress may change or refuse them, and what the box
// shows is then the model's Text. Keys that only move the cursor, Tab, and the clipboard's
// shortcuts reach the model's KeyDown/KeyUp and then the widget too.
#include <QLineEdit>
#include <QObject>
#include <QPointer>

#include "platform/ui/controls.h"

namespace vellumar::qt {

class LineEditLink : public QObject {
 public:
  LineEditLink(ui::TextBox& box, QLineEdit* edit);

  // Shows the model's text (keeping the cursor where the model has it), selection, lock.
  void ShowText();
  void ShowSelection();
  void ShowLocked();

  // UTF-8 byte offsets of the model and character positions of the widget.
  static int IndexFromOffset(const std::string& text, int offset);
  static int OffsetFromIndex(const QString& text, int index);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Key(QKeyEvent& event);
  void TextEdited(const QString& text);
  void SelectionMoved();
  ui::TextBox& box_;
  QPointer<QLineEdit> edit_;
  int updating_ = 0;  // the link is writing to the widget
};

}  // namespace vellumar::qt
