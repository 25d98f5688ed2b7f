#include "qt/line_edit_link.h"

#include <QKeyEvent>
#include <QKeySequence>

#include "qt/conversions.h"
#include "qt/key_translation.h"
#include "qt/qt_event_loop.h"

namespace vellumar::qt {
namespace {

struct Counter {
  explicit Counter(int& n) : n_(n) { ++n_; }
  ~Counter() { --n_; }
  int& n_;
};

bool IsClipboardOrEditShortcut(const QKeyEvent& event) {
  for (auto key : {QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste, QKeySequence::Undo,
                   QKeySequence::Redo, QKeySequence::SelectAll})
    if (event.matches(key)) return true;
  return false;
}

}  // namespace

LineEditLink::LineEditLink(ui::TextBox& box, QLineEdit* edit)
    : QObject(edit), box_(box), edit_(edit) {
  edit->installEventFilter(this);
  connect(edit, &QLineEdit::textEdited, this, &LineEditLink::TextEdited);
  connect(edit, &QLineEdit::cursorPositionChanged, this, &LineEditLink::SelectionMoved);
  connect(edit, &QLineEdit::selectionChanged, this, &LineEditLink::SelectionMoved);
}

int LineEditLink::IndexFromOffset(const std::string& text, int offset) {
  offset = std::clamp(offset, 0, static_cast<int>(text.size()));
  return static_cast<int>(QString::fromUtf8(text.data(), offset).size());
}

int LineEditLink::OffsetFromIndex(const QString& text, int index) {
  index = std::clamp(index, 0, static_cast<int>(text.size()));
  return static_cast<int>(text.left(index).toUtf8().size());
}

void LineEditLink::ShowText() {
  if (!edit_) return;
  Counter c(updating_);
  const QString text = ToQString(box_.Text());
  if (edit_->text() != text) edit_->setText(text);
  ShowSelection();
}

void LineEditLink::ShowSelection() {
  if (!edit_) return;
  Counter c(updating_);
  const int start = IndexFromOffset(box_.Text(), box_.SelStart());
  const int end = IndexFromOffset(box_.Text(), box_.SelStart() + box_.SelLength());
  if (end > start) {
    edit_->setSelection(start, end - start);
  } else {
    edit_->setCursorPosition(start);
  }
}

void LineEditLink::ShowLocked() {
  if (edit_) edit_->setReadOnly(box_.Locked());
}

void LineEditLink::SelectionMoved() {
  if (updating_ || !edit_) return;
  // The user moved the cursor or selected: the model's SelStart and SelLength follow, without
  // the echo of their change coming back to the widget mid-drag.
  Counter c(updating_);
  const QString text = edit_->text();
  int start = edit_->cursorPosition();
  int length = 0;
  if (edit_->hasSelectedText()) {
    start = edit_->selectionStart();
    length = static_cast<int>(edit_->selectedText().size());
  }
  const int byteStart = OffsetFromIndex(text, start);
  const int byteLength = OffsetFromIndex(text, start + length) - byteStart;
  RunEvent("a text box's selection", [&] {
    if (box_.SelStart() != byteStart) box_.SetSelStart(byteStart);
    if (box_.SelLength() != byteLength) box_.SetSelLength(byteLength);
  });
}

void LineEditLink::TextEdited(const QString& text) {
  if (updating_) return;
  RunEvent("a text box's edit", [&] { box_.UserSetText(ToStdString(text)); });
  ShowText();  // a locked or disabled box refused it
}

bool LineEditLink::eventFilter(QObject* watched, QEvent* event) {
  if (watched != edit_ || event->type() != QEvent::KeyPress) return false;
  return Key(*static_cast<QKeyEvent*>(event));
}

bool LineEditLink::Key(QKeyEvent& event) {
  const VbKey key = TranslateKey(event);
  // A modifier alone is no key of its own here: its state travels in the shift mask.
  if (key.keyCode == ui::vbKeyShift || key.keyCode == ui::vbKeyControl ||
      key.keyCode == ui::vbKeyMenu)
    return false;
  SelectionMoved();  // the model edits at the cursor the user sees
  const bool edits = key.keyAscii != 0 || key.keyCode == ui::vbKeyDelete;
  if (key.nonAsciiText) return false;  // inserted by the widget, then UserSetText
  if (IsClipboardOrEditShortcut(event) || !edits) {
    // Cursor movement, Tab, the clipboard: the model hears the key, the widget does the work.
    // Tab moves the focus without a key event, as on the runtime's forms.
    if (key.keyCode != 0 && key.keyCode != ui::vbKeyTab)
      RunEvent("a text box's key", [&] { box_.UserKey(key.keyCode, key.shift, key.keyAscii); });
    return false;
  }
  RunEvent("a text box's key", [&] { box_.UserKey(key.keyCode, key.shift, key.keyAscii); });
  ShowText();
  return true;
}

}  // namespace vellumar::qt
