// What the main window does for the sibling programs: their `log` command's ADIF added to the
// open log, and the timers that tell them of the log and retry their links.
#include <memory>
#include <string>

#include "adif/adif_import.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logstore/field_table.h"
#include "platform/vb/error.h"

namespace vellumar {

void VellumMain::ProcessSiblingLog(const std::string& text) {
  int state = 1;
  try {
    // The QSO in hand: its end time, then its check. A faulty one loses its edit, and the
    // sibling's QSOs go in all the same.
    if (LogHasRows()) {
      if (Fieldbox(logstore::field::QSO_End).Text().empty()) {
        if (page_.config.AutoSetDateTime()) {
          SetQSOEndTime();
        } else {
          DefaultQSOEndTime();
        }
      }
      if (!ValidFields()) {
        db::Recordset& rs = Log();
        if (rs && rs.EditMode() != db::dbEditNone) rs.CancelUpdate();
      }
    }
    state = 2;
    if (!page_.module.LogOpen()) vb::Raise(3420);  // no log to add to
    // A file import or a recompute that yielded holds its group of writes open: the sibling's
    // QSOs join that group and reach the file with it, each whole. Otherwise they are committed
    // before the command returns.
    db::Database& log = page_.module.LogDatabase;
    adif::ImportSettings settings;
    settings.myCallsign = page_.config.MyCallsign();
    adif::AdifImport import(
        adif::ImportServices{log.InTransaction() ? db::Database() : log,
                             ProgressPosition.Recordset(), &page_.dxcc, &page_.lookupSlots,
                             &page_.bands, &page_.common.errorLog()},
        settings);
    state = 3;
    import.Process(text, Log());
    state = 4;
    if (LogHasRows()) SetFieldEnable(true);
    UpdateCaption();
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "ADIF.Process; state = " + std::to_string(state));
  }
}

void VellumMain::AtlasineNewlogTimer_Timer() {
  AtlasineNewlogTimer.SetEnabled(false);
  page_.siblings.client.SendAtlasineNewlog();
}

void VellumMain::ClustrineNewlogTimer_Timer() {
  ClustrineNewlogTimer.SetEnabled(false);
  page_.siblings.client.SendClustrineNewlog();
}

void VellumMain::ServerRetryTimer_Timer() { page_.siblings.client.RetryDeadServers(); }

}  // namespace vellumar
