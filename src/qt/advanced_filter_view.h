#pragma once
// The Advanced Log Sorts and Filters window, designed: the mode and band boxes side by side,
// the composed sorts with their three fields, the SQL queries, the date filter's range.
#include "logpage/advanced_filter.h"
#include "qt/form_view.h"

namespace vellumar::qt {

class AdvancedFilterView : public FormView {
 public:
  explicit AdvancedFilterView(AdvancedFilter& form);

 private:
  QWidget* ModeFrame(QWidget* parent);
  QWidget* BandFrame(QWidget* parent);
  QWidget* SortFrame(QWidget* parent);
  QWidget* SQLFrame(QWidget* parent);
  QWidget* UTCFrame(QWidget* parent);
  AdvancedFilter& form_;
};

}  // namespace vellumar::qt
