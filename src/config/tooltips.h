#pragma once
// The operator may hide every control's explanation (its tool tip) and bring it back. The
// texts are saved once, after all windows are loaded, into a table of form by control; clearing
// empties every control's tool tip and restoring puts the saved texts back. The choice is the
// setting "ShowToolTips" of section "General".
#include <functional>
#include <string>
#include <vector>

#include "frame/error_log.h"
#include "frame/settings_store.h"
#include "platform/ui/form.h"

namespace vellumar {

class TooltipTable {
 public:
  // The loaded forms, in the order they were loaded.
  using FormList = std::function<std::vector<ui::Form*>()>;

  TooltipTable(FormList forms, SettingsStore& settings, ErrorLog& errorLog)
      : forms_(std::move(forms)), settings_(settings), errorLog_(errorLog) {}

  // Sizes the table by the forms loaded now and their largest count of controls, saves the
  // texts, and returns "ShowToolTips" (default true); false after a failure.
  bool InitializeTooltips();
  // Stores each control's tool tip in the table; a place beyond the table is passed over.
  void SaveTooltips();
  // Empties every control's tool tip.
  void ClearTooltips();
  // Puts the saved texts back; a control beyond the table is passed over.
  void RestoreTooltips();
  void SaveTooltipSetting(bool value);

  int FormCount() const { return formCount_; }
  int MaxControlCount() const { return maxControls_; }

 private:
  FormList forms_;
  SettingsStore& settings_;
  ErrorLog& errorLog_;
  int formCount_ = 0;                            // forms loaded when the table was sized
  int maxControls_ = 0;                          // the largest count of controls of one of them
  std::vector<std::vector<std::string>> saved_;  // [form][control]: the saved tool tip texts
};

}  // namespace vellumar
