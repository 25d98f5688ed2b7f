#pragma once
// VellumModule: the central module. It owns the open log for as long as it is open (the
// database, its dynasets and views), and the state every window reads: whether a log is open,
// whether the QSO in hand is modified, the caption's interoperation text.
//
// States of the log:
//   no log --OpenLog--> open (LogIsOpen) --CloseLog--> no log
// OpenLog on an open log first closes the old recordsets. A failure inside OpenLog is
// reported with its state number and ends in CloseLog, so no half-bound view is left.
#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "logstore/field_table.h"
#include "logview/filter_strings.h"
#include "platform/db/database.h"

namespace vellumar {

class LogPage;
namespace adif {
class WriteBatch;
}

class VellumModule {
 public:
  explicit VellumModule(LogPage& page) : page_(page) {}

  void Initialize();
  void Terminate();

  // Opens a log and binds the windows to it; LogOpen() tells the outcome.
  void OpenLog(const std::string& pathname, bool beginNewQSO);
  void CloseLog();
  bool LogOpen() const { return LogIsOpen; }
  db::Database GetLogDatabase() const { return LogDatabase; }
  void EnableLogActions(bool enable);

  void SetModified(bool modified);
  bool RecordModified() const { return RecordIsModified; }
  void SetInteropCaption(const std::string& text);
  const std::string& GetInteropCaption() const { return InteropCaption; }
  bool RecomputeInProgress() const { return RecomputeRunning; }
  std::string GetLogFilter() const;
  bool LogFiltered() const { return LogFilteredFlag; }

  // The QSO's field slots: which have a list, the size and name of their columns in the open
  // log, and the defaults a new QSO is given. An index outside 0..34 raises 9.
  void InitializeCombos();
  void InitializeFields() {}  // the place in the start-up order for field set-up
  bool FieldIsCombo(int index) const;
  int FieldWidth(int index) const;
  std::string FieldName(int index) const;
  static std::string FieldValue(const db::Recordset& recordset, int index);
  // Fills an empty slot, cut to the column's size (1024 for the address); a slot that holds a
  // value keeps it.
  void InitializeField(int index, const std::string& value);
  void InitializePrevFieldValues();
  void SavePrevFieldValues();
  void SetPrevFieldValue(int index, const std::string& value) {
    PrevFields.SetPrevFieldValue(index, value);
  }
  std::string GetPrevFieldValue(int index) const { return PrevFields.GetPrevFieldValue(index); }
  logstore::PrevFieldValues PrevFields;  // what the next new QSO is given

  // The state, as other windows and modules read it.
  bool LogIsOpen = false;           // a log database is open
  bool RecordIsModified = false;    // the QSO on the Log page differs from its row
  bool RecomputeRunning = false;    // a progress recompute is under way
  bool LogFilteredFlag = false;     // the Log Page Display is filtered
  std::string InteropCaption;       // " [" + name + "]" or empty
  double QSOStartTime = 0;          // the last start time SetQSOStartTime gave, UTC
  int16_t LogGridRows = 4;          // rows of the Log Page Display
  db::Database LogDatabase;         // the open log
  db::Workspace LogWorkspace;       // the default workspace
  db::Recordset ProgressRecordset;  // table Progress as a dynaset
  db::Recordset ProgressView;       // sorted view of it, shown by ProgressPosition
  db::Recordset LogRecordset;       // table QSOs as a dynaset; Filter and Sort are set on it
  db::Recordset LogView;            // the sorted, filtered view shown by LogPosition
  db::Recordset QTHRecordset;       // table QTHs, shown by QTHPosition

  // ---- Filters and sorts of the Log Page Display (vellum_module_filters.cpp) ----
  // FilterDisplay sets the filter, opens a fresh view and positions it; a string that fails to
  // open shows all QSOs and the caption becomes "None". Both arguments are the caller's.
  void FilterDisplay(std::string& filter, std::string& caption);
  void FilterDisplay(const logview::FilterText& text);
  void FilterCall(const std::string& pattern);
  void FilterDXCCPrefix(const std::string& pattern);
  void FilterDate(const std::string& dateText);
  void FilterBroken();
  void FilterBand();
  void FilterMode();
  void FilterSQL(int index);
  void SortDisplay(const std::string& sort);
  void SortLog(const std::string& sort);  // without positioning, for the reports
  void UpdateAdvancedSort(int index);
  void UpdateAdvancedSortIndex(int index);
  std::string GetCurrentAdvancedSort() const;
  void InitializeBandModeFilters();
  void InitializeSQLFilters();
  void SaveSQLFilter(int index);
  int16_t CurrentAdvancedSort = 0;  // the selected composed sort, 0..3

  // ---- The Log Page Display's layout (vellum_module_layout.cpp) ----
  // The layout table is the array of VellumSetup's LogLayout grid: one row per column of
  // LogGrid, holding the field's name, the caption and the alignment ("Left", "Center" or
  // "Right"). Section "LogGrid" of the settings keeps the table (FieldName, FieldCaption,
  // FieldAlignment + row; an empty FieldName ends it) and LogGrid's column order and widths
  // (FieldOrder, LogColumnWidth + column). Failures are reported as "VellumModule." + the
  // procedure, with ", State = " + the state reached for the two that keep one.
  void InitializeLogLayout();
  void InitializeColumn(int column, int fieldIndex, const std::string& caption,
                        const std::string& alignment);
  void FormatLogGrid();
  void RefreshLogGrid();
  // "LEFT", "RIGHT" or "CENTER" in any case; anything else aligns right.
  void SetColumnAlignment(int column, const std::string& alignment);
  void HideLayoutColumn(int row);
  void ChangeLayoutColumn(int row, int column);
  void UpdateLayout(int row, int column, const std::string& value);
  void SaveLogLayoutRow(int row);
  void SaveLogLayout();
  void SaveLogOrder();
  void SaveLogGridColumnWidths();
  void SaveLogLayoutGridColumnWidths();
  // The last row of the table that names a field; -1 for an empty table.
  int LogLayoutUpperBound() const;
  // LogGrid could not format a cell with its column's format.
  void LogGridFormatError(int colIndex, const std::string& text);
  // ---- end of the layout ----

  // ---- The Progress table as a whole (vellum_module_progress.cpp) ----
  // Rebuilds Progress from the QSOs of the Log Page Display (a filter in force limits it): the
  // rows go, the table refills from the DXCC database, every QSO is counted again with one
  // yield and one bar step each. RecomputeRunning holds meanwhile; a failure leaves it and the
  // hourglass set. The end of the program during the walk leaves the table as it stands.
  void RecomputeProgress();
  // Deletes every row of ProgressPosition's recordset.
  void ClearProgress();
  // Moves ProgressPosition to the entity the map program shows and sends it that entity's
  // progress.
  void UpdateAtlasineProgress();
  // ProgressGrid's columns: CountryCode and Valid hidden, the modes right behind the prefix,
  // each as wide as its caption and three blanks and its field's size in letters, right-aligned.
  void FormatProgressGrid();
  // The prefix lists of the panel and of the Capture window, from the DXCC database.
  void InitializeDXCCCombos();
  // What the siblings are told of the log and its progress. One seam: nothing is sent until
  // links to the siblings exist; OnSiblingNotice observes each notice meanwhile.
  enum class SiblingNotice { kAtlasineNewLog, kClustrineNewLog, kAtlasineUpdateProgress };
  void NotifySibling(SiblingNotice notice, const std::string& text);
  std::function<void(SiblingNotice notice, const std::string& text)> OnSiblingNotice;
  // The recompute's open group of writes, which CloseLog commits before the file closes.
  adif::WriteBatch* RecomputeBatch = nullptr;

 private:
  bool AddMissingFieldDefinitions();
  static void CheckFieldIndex(int index);
  std::array<bool, logstore::kQSOFieldCount> fieldCombo_{};  // the slot has a Fieldcombo
  LogPage& page_;
  bool started_ = false;  // Initialize has run
};

}  // namespace vellumar
