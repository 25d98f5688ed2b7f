#pragma once
// A data control: a current row that windows, walks and reports share. It holds a recordset and
// keeps the text boxes bound to it (by their DataField) showing the current row's values.
// The program moves through the control's own Move... operations so that the bound boxes follow,
// as the runtime's control does on its Reposition.
#include <functional>
#include <string>
#include <vector>

#include "platform/db/recordset.h"
#include "platform/ui/controls.h"

namespace vellumar::ui {

class DataControl : public Control {
 public:
  using Control::Control;

  const db::Recordset& Recordset() const { return recordset_; }
  db::Recordset& Recordset() { return recordset_; }
  // Binds a recordset; the bound boxes show its current row (or empty with none).
  void SetRecordset(db::Recordset recordset);
  std::string DatabaseName;  // pathname of the database the rows come from
  std::string RecordSource;  // name of the table

  // Text boxes whose DataField names a column of the recordset.
  void Bind(TextBox& box) { bound_.push_back(&box); }
  const std::vector<TextBox*>& BoundControls() const { return bound_; }

  // Reloads the bound boxes from the current row, dropping unsaved edits in them. Each box's
  // Text is set, so its Change runs, as with the runtime's control.
  void UpdateControls();
  // Writes the boxes the user changed into the recordset's edit buffer (Edit or AddNew must be
  // open). A box whose column is missing is passed over.
  void UpdateRecord();

  // Moves of the current row; each refreshes the bound boxes and raises Reposition.
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  void GoTo(const db::BookmarkValue& bookmark);
  // The program moved the recordset itself (a FindFirst, an AddNew's return): the bound boxes
  // and the views follow, as after one of the moves above.
  void Repositioned() { AfterMove(); }

  std::function<void()> Reposition;
  // Tells the views (a grid over the rows) that the set of rows changed.
  void RowsChanged() { Notify(Property::List); }

 private:
  void AfterMove();
  db::Recordset recordset_;
  std::vector<TextBox*> bound_;
};

}  // namespace vellumar::ui
