#include "platform/bound/data_control.h"

#include "platform/vb/error.h"

namespace vellumar::ui {
namespace {

bool HasCurrentRow(const db::Recordset& rs) { return rs && !rs.EOF_() && !rs.BOF(); }

}  // namespace

void DataControl::SetRecordset(db::Recordset recordset) {
  recordset_ = std::move(recordset);
  Notify(Property::List);
  UpdateControls();
}

void DataControl::UpdateControls() {
  const bool row = HasCurrentRow(recordset_);
  for (TextBox* box : bound_) {
    std::string text;
    if (row && !box->DataField.empty()) {
      try {
        text = recordset_.Fields(box->DataField).Value().ToStringOrEmpty();
      } catch (const vb::VbError&) {
        text.clear();  // a deleted row or a missing column shows empty
      }
    }
    box->SetText(text);
    box->DataChanged = false;
  }
}

void DataControl::UpdateRecord() {
  for (TextBox* box : bound_) {
    if (!box->DataChanged || box->DataField.empty()) continue;
    db::Field f;
    try {
      f = recordset_.Fields(box->DataField);
    } catch (const vb::VbError&) {
      continue;
    }
    // An empty box stands for Null, as a bound control writes it.
    f.SetValue(box->Text().empty() ? vb::Variant::Null() : vb::Variant(box->Text()));
  }
}

void DataControl::AfterMove() {
  UpdateControls();
  Notify(Property::Value);
  if (Reposition) Reposition();
}

void DataControl::MoveFirst() {
  recordset_.MoveFirst();
  AfterMove();
}

void DataControl::MoveLast() {
  recordset_.MoveLast();
  AfterMove();
}

void DataControl::MoveNext() {
  recordset_.MoveNext();
  AfterMove();
}

void DataControl::MovePrevious() {
  recordset_.MovePrevious();
  AfterMove();
}

void DataControl::GoTo(const db::BookmarkValue& bookmark) {
  recordset_.SetBookmark(bookmark);
  AfterMove();
}

}  // namespace vellumar::ui
