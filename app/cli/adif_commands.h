#pragma once
// The ADIF commands of vellumar-cli: import a file into a log, export a log to a file.
#include <string>
#include <vector>

namespace vellumar::cli {

// import LOG.vdb FILE.adi [--Option=value...]: creates the log when it doesn't exist, imports
// the file as the Import tab does, prints the five counters. 0 at end of file, 1 when the file
// or the log can't be read, 2 on a usage error, 3 when interrupted, 4 on a program error.
int Import(const std::vector<std::string>& args);
// export LOG.vdb FILE.adi [--Option=value...]: writes every QSO of the log, by start time.
int Export(const std::vector<std::string>& args);

}  // namespace vellumar::cli
