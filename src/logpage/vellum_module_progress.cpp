// The Progress table as a whole: the recompute from the log, the Check Progress grid's format,
// the entity the map program shows, and the one place through which the siblings hear of the
// log and its progress.
#include <algorithm>
#include <string>

#include "adif/write_batch.h"
#include "awards/progress_columns.h"
#include "awards/progress_init.h"
#include "awards/recompute.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_module.h"
#include "logstore/schema_tables.h"
#include "platform/vb/error.h"

namespace vellumar {

namespace {

// The Check Progress grid's captions where they differ from the field's name; the blanks
// line the letters up under a right-aligned caption.
const char* ProgressCaption(int column) {
  switch (column) {
    case kProgressPhone:
      return "  PH";
    case kProgressCW:
      return "  CW";
    case kProgressRTTY:
      return "RTTY";
    case kProgressPSK:
      return " PSK";
    case 12:
      return " 6M";
    case 13:
      return " 2M";
    default:
      return nullptr;
  }
}

// The grid's columns in the order shown: the mode columns right behind the prefix, before the
// bands. CountryCode and Valid keep a place but are hidden.
constexpr int kProgressDisplayOrder[kProgressColumnCount] = {kProgressCountryCode,
                                                             kProgressPrefix,
                                                             kProgressPhone,
                                                             kProgressCW,
                                                             kProgressRTTY,
                                                             kProgressPSK,
                                                             kProgressValid,
                                                             3,
                                                             4,
                                                             5,
                                                             6,
                                                             7,
                                                             8,
                                                             9,
                                                             10,
                                                             11,
                                                             12,
                                                             13};

bool HasRows(const db::Recordset& rs) { return !(rs.BOF() && rs.EOF_()); }

}  // namespace

void VellumModule::NotifySibling(SiblingNotice notice, const std::string& text) {
  if (OnSiblingNotice) OnSiblingNotice(notice, text);  // tests watch the notices here
  interop::DDEClientModule& client = page_.siblings.client;
  switch (notice) {
    case SiblingNotice::kAtlasineNewLog:
      client.AtlasineNewLog(text);
      break;
    case SiblingNotice::kClustrineNewLog:
      client.ClustrineNewLog(text);
      break;
    case SiblingNotice::kAtlasineUpdateProgress:
      client.AtlasineUpdateProgress(text);
      break;
  }
}

void VellumModule::FormatProgressGrid() {
  VellumMain& main = page_.main;
  ui::Grid& grid = main.ProgressGrid;
  std::vector<ui::GridColumn>& columns = grid.Columns();
  columns.assign(kProgressColumnCount, ui::GridColumn{});
  const ui::Font& font = main.Font();
  const int letterWidth = page_.desktop.TextWidth(font, "A");
  for (int i = 0; i < kProgressColumnCount; ++i) {
    const logstore::FieldSpec& spec = logstore::kProgressFields[static_cast<size_t>(i)];
    ui::GridColumn& column = columns[static_cast<size_t>(i)];
    column.DataField = spec.name;
    const char* caption = ProgressCaption(i);
    column.Caption = caption ? caption : spec.name;
    column.Visible = i != kProgressCountryCode && i != kProgressValid;
    column.Width = std::max(page_.desktop.TextWidth(font, column.Caption + "   "),
                            static_cast<int>(spec.size) * letterWidth);
    column.Alignment = ui::dbgRight;
  }
  for (int place = 0; place < kProgressColumnCount; ++place)
    columns[static_cast<size_t>(kProgressDisplayOrder[place])].Order = place;
  grid.ColumnsChanged();
}

void VellumModule::ClearProgress() {
  db::Recordset& view = page_.main.ProgressPosition.Recordset();
  vellumar::ClearProgress(view);
}

void VellumModule::UpdateAtlasineProgress() {
  try {
    const std::string code = page_.dxcc.GetAtlasinePrefixID();
    if (code.empty()) return;
    ui::DataControl& position = page_.main.ProgressPosition;
    db::Recordset& progress = position.Recordset();
    progress.FindFirst("CountryCode = '" + code + "'");
    if (progress.NoMatch()) return;
    position.Repositioned();  // the Check Progress grid shows the map's entity
    const std::string record = progress.Fields(kProgressCountryCode).Value().ToStringOrEmpty() +
                               "|" + ProgressString(progress);
    NotifySibling(SiblingNotice::kAtlasineUpdateProgress, record);
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumModule.UpdateAtlasineProgress");
  }
}

void VellumModule::RecomputeProgress() {
  VellumMain& main = page_.main;
  const auto report = [this](int number, const std::string& where) {
    page_.common.ReportError(number, where);
  };
  // The walk leaves at its next yield once the program has ended or the log was closed
  // meanwhile (the configuration window's unload closes it): their recordsets are gone then.
  const auto ended = [this] { return page_.ProcessEnding() || !LogIsOpen; };
  adif::WriteBatch batch;
  try {
    // 1
    RecomputeRunning = true;
    main.SetMousePointer(ui::vbHourglass);

    // 2
    ui::DataControl& logPosition = main.LogPosition;
    db::Recordset& log = logPosition.Recordset();
    ui::ProgressBar& bar = main.RecomputeProgress;
    bar.Min = 0;
    bar.Max = static_cast<double>(CountRows(log));
    bar.SetValue(0);
    bar.SetVisible(true);
    main.ProgressGrid.SetVisible(false);

    // 3
    ClearProgress();
    InitializeProgressTableFromDatabase(LogDatabase, page_.dxcc.GetDXCCRecordset(),
                                        ProgressRecordset, report);

    // 4: new recordsets; the grid is rebound before anything reads the old ones again.
    IgnoringErrors([&] { ProgressRecordset.Close(); });
    ProgressRecordset = LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    ProgressRecordset.SetSort("Prefix");
    ProgressRecordset.SetFilter("");
    IgnoringErrors([&] { ProgressView.Close(); });
    ProgressView = ProgressRecordset.OpenRecordset();
    main.ProgressPosition.SetRecordset(ProgressView);

    // 5
    InitializeDXCCCombos();
    FormatProgressGrid();

    // 6: the Log Page Display's recordset, so a filter in force limits the walk. Its writes go
    // to the file in groups, never splitting one QSO's; what another event writes during a
    // yield (a QSO saved meanwhile) is committed as soon as the yield returns.
    if (HasRows(log)) {
      logPosition.MoveFirst();
      batch.Start(LogDatabase);
      RecomputeBatch = &batch;
      RecomputeWalkHooks hooks;
      hooks.beforeQSO = [&] { batch.BeforeRecord(); };
      hooks.afterQSO = [&](long counted) {
        batch.AfterRecord(true);
        bar.SetValue(static_cast<double>(counted));
        const long long written = LogDatabase.TotalChanges();
        page_.loop.Yield();
        if (ended()) return false;
        if (LogDatabase.TotalChanges() != written) batch.Commit();
        return true;
      };
      CountEveryQSO(log, ProgressView, hooks, report);
      if (ended()) {
        if (LogIsOpen) batch.Commit();
        RecomputeBatch = nullptr;
        return;
      }
      batch.Commit();
      RecomputeBatch = nullptr;
    }

    // 7
    if (HasRows(log)) logPosition.MoveLast();
    main.ProgressPosition.RowsChanged();

    // 8
    UpdateAtlasineProgress();

    // 9
    bar.SetVisible(false);
    main.ProgressGrid.SetVisible(true);
    main.SetMousePointer(ui::vbDefault);

    // 10
    NotifySibling(SiblingNotice::kAtlasineNewLog, logPosition.DatabaseName);
    NotifySibling(SiblingNotice::kClustrineNewLog, logPosition.DatabaseName);

    // 11
    RecomputeRunning = false;
  } catch (const ProgramTermination&) {
    RecomputeBatch = nullptr;
    throw;
  } catch (const vb::VbError& e) {
    // What was written stays; RecomputeRunning and the hourglass stay set: only the normal path
    // resets them.
    RecomputeBatch = nullptr;
    if (batch.Open() && LogIsOpen) {
      try {
        batch.Commit();
      } catch (const vb::VbError&) {
        batch.Abandon();
      }
    }
    page_.common.ReportError(e.number(), "VellumModule.RecomputeProgress");
  }
}

}  // namespace vellumar
