#pragma once
// Replacing a file so that a reader, or a crash at any moment, finds either the old content or
// the new one complete, never a mixture: the new content goes to a temporary file in the same
// folder, is flushed to the disk, and is then renamed over the old file.
#include <string>

namespace vellumar {

// The temporary file's name for a target and a process: "." + name + "." + pid + ".tmp" in the
// target's folder. Hidden and with another extension, so it is never taken for the file.
std::string AtomicTemporaryName(const std::string& path, long pid);

// Raises vb::VbError(75) when the file can't be written; the old content then stays.
void WriteFileAtomically(const std::string& path, const std::string& content, int mode = 0600);

// Renames a finished temporary file (AtomicTemporaryName's) over `path` and makes the rename
// durable; raises vb::VbError(75), removing the temporary, when it can't.
void MoveIntoPlace(const std::string& temporary, const std::string& path);

// Writes all of `content` to the open file, going on after an interrupted write; false when a
// write fails. The error log appends its entries with it too, each with as few writes as can be.
bool WriteAll(int fd, const std::string& content);

// Removes temporary files of `path` left behind by processes that died while writing.
void RemoveStaleTemporaries(const std::string& path);

}  // namespace vellumar
