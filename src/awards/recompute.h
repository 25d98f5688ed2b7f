#pragma once
// Rebuilding the Progress table from the log: the rows go, the table refills from the DXCC
// database, and every QSO of the walked recordset is counted again. Statuses lowered by deleted
// or edited QSOs come back down only this way.
#include <functional>

#include "awards/progress_update.h"
#include "platform/db/recordset.h"

namespace vellumar {

// Deletes every row of the Progress view, walking it from its first row; an empty view is left
// alone. Removing the rows (rather than blanking their letters) is what lets entities added to
// or deleted from a newer DXCC database reach the log when the table refills.
void ClearProgress(db::Recordset& progressView);

// What the recompute walk does around each QSO.
struct RecomputeWalkHooks {
  // Before a QSO's writes: the place where a group of writes may be committed.
  std::function<void()> beforeQSO;
  // After a QSO, with the number counted so far: the bar and the yield. False stops the walk
  // (the program ended during the yield).
  std::function<bool(long counted)> afterQSO;
};

// Counts every QSO of `log` from its first row to its end into `progressView`, without telling
// the siblings, and returns how many were walked. A QSO that can't be counted is marked BROKEN
// and the walk goes on; UpdateProgress reports its own failures. An error of the walk itself
// (a move, a refused commit) goes up to the caller.
long CountEveryQSO(db::Recordset& log, db::Recordset& progressView, const RecomputeWalkHooks& hooks,
                   const ProgressErrorReporter& reportError);

}  // namespace vellumar
