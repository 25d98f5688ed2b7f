#pragma once
// Runs the built vellumar-cli as a user runs it: a process with a data folder and settings of
// the test's own (VELLUMAR_HOME, XDG_CONFIG_HOME under `dir`), its output and exit code kept.
// Needs VELLUMAR_BINARY_DIR, as every suite has it.
#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "support/temp_dir.h"

namespace vellumar::test {

struct CliRun {
  int exitCode = -1;
  std::string output;  // stdout and stderr together
};

// `arguments` already quoted for the shell.
inline CliRun RunCli(const TempDir& dir, const std::string& arguments) {
  const std::string command = "VELLUMAR_HOME='" + dir.Join("home") + "' XDG_CONFIG_HOME='" +
                              dir.Join("config") + "' '" + std::string(VELLUMAR_BINARY_DIR) +
                              "/bin/vellumar-cli' " + arguments + " 2>&1";
  CliRun run;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[4096];
  std::size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) run.output.append(buffer, n);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) run.exitCode = WEXITSTATUS(status);
  return run;
}

}  // namespace vellumar::test
