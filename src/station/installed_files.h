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

// The folder of the installed read-only files, found from the running executable: in an
// installed tree the data folder of the installation (share/vellumar beside bin/), in the build
// tree "data" beside bin/.
std::string InstalledDataFolder();

// The same for an executable's path, so that either layout can be tried: the installed
// layout's folder when it exists, else the build tree's.
std::string InstalledDataFolderFor(const std::string& executable);

// Every regular file below installedFolder/folder, each copied to the same path below the data
// folder (the help pages: "Help/Log.htm"), in name order. An absent folder gives none.
std::vector<InstalledFile> InstalledFolderFiles(const std::string& installedFolder,
                                                const std::string& folder);

// The installed files of the station information: the DXCC database and the band table.
const std::vector<InstalledFile>& StationInstalledFiles();

// Copies each file that is missing below dataFolder and present below installedFolder,
// creating folders as needed. Returns the data paths copied; a copy that fails is left out (the
// program then reports the missing file where it needs it).
std::vector<std::string> CopyInstalledFilesWhenMissing(const std::string& installedFolder,
                                                       const std::string& dataFolder,
                                                       const std::vector<InstalledFile>& files);

}  // namespace vellumar
