#pragma once
// The award commands of vellumar-cli: rebuild a log's Progress table, print its DXCC Summary.
#include <string>
#include <vector>

namespace vellumar::cli {

// recompute LOG.vdb: clears the log's Progress table, refills it from the DXCC database and
// counts every QSO again, as the Check Progress tab's Recompute does over an unfiltered log.
// Prints the QSOs walked, those marked BROKEN and the time taken. 0 when done, 1 when the log
// can't be opened, 2 on a usage error, 3 when interrupted, 4 on a database error.
int Recompute(const std::vector<std::string>& args);
// summary LOG.vdb [dxcc|top]: the DXCC Summary's grids as aligned text; both without a choice.
int Summary(const std::vector<std::string>& args);

}  // namespace vellumar::cli
