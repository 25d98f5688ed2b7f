#include "awards/recompute.h"

namespace vellumar {

void ClearProgress(db::Recordset& progressView) {
  if (progressView.BOF() && progressView.EOF_()) return;
  progressView.MoveFirst();
  while (!progressView.EOF_()) {
    progressView.Delete();
    progressView.MoveNext();
  }
}

long CountEveryQSO(db::Recordset& log, db::Recordset& progressView, const RecomputeWalkHooks& hooks,
                   const ProgressErrorReporter& reportError) {
  long counted = 0;
  if (log.BOF() && log.EOF_()) return 0;
  log.MoveFirst();
  while (!log.EOF_()) {
    if (hooks.beforeQSO) hooks.beforeQSO();
    UpdateProgress(log, progressView, false, ProgressNotifications{}, reportError);
    log.MoveNext();
    ++counted;
    if (hooks.afterQSO && !hooks.afterQSO(counted)) break;
  }
  return counted;
}

}  // namespace vellumar
