#pragma once
// Read-only files installed with the program (the generated DXCC.vdb, Bands.txt, help pages)
// are copied into the user's data folder on first start, so that the operator may edit or
// replace them there.
#include <string>
#include <vector>

namespace vellumar {

struct InstalledFile {
  std::string installed;  // path below the installed folder, e.g. "DXCC.vdb"
  std::string data;       // path below the data folder, e.g. "Databases/DXCC.vdb"
};

// The folder of the installed read-only files: "data" beside the folder of the running
// executable (the build puts executables in bin/ and these files in data/).
std::string InstalledDataFolder();

// The installed files of the station information: the DXCC database and the band table.
const std::vector<InstalledFile>& StationInstalledFiles();

// Copies each file that is missing below dataFolder and present below installedFolder,
// creating folders as needed. Returns the data paths copied; a copy that fails is left out (the
// program then reports the missing file where it needs it).
std::vector<std::string> CopyInstalledFilesWhenMissing(const std::string& installedFolder,
                                                       const std::string& dataFolder,
                                                       const std::vector<InstalledFile>& files);

}  // namespace vellumar
