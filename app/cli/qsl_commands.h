#pragma once
// The QSL queue's command of vellumar-cli.
#include <string>
#include <vector>

namespace vellumar::cli {

// add-needed LOG.vdb: "Add Needed" over the whole log on the installation's queue
// (Databases/QSL.vdb of the data folder), with the award choices of the settings. Prints one
// line per row added or raised (call, start as ISO UTC, band, mode, NEEDED; tab-separated),
// then the count. Messages go to stderr. 0 when done, 2 when the log or the queue can't be
// opened or on a usage error, 3 when interrupted.
int AddNeeded(const std::vector<std::string>& args);

}  // namespace vellumar::cli
