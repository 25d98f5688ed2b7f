#include "adif/line_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/vb/error.h"

namespace vellumar::adif {

namespace {
// Bytes read from the input at a time; a line longer than this is gathered over several.
constexpr std::size_t kChunkSize = 64 * 1024;
}  // namespace

TextEncoding DetectEncoding(std::string_view bytes) {
  Utf8Validator validator;
  validator.Feed(bytes);
  return validator.Valid() ? TextEncoding::kUtf8 : TextEncoding::kWindows1252;
}

void ByteLineSource::Restart(TextEncoding encoding) {
  encoding_ = encoding;
  error_ = 0;
  chunk_.clear();
  next_ = 0;
  skipLf_ = false;
  atStart_ = true;
  finished_ = false;
}

bool ByteLineSource::FillChunk() {
  if (finished_) return false;
  chunk_.resize(kChunkSize);
  const long got = ReadBytes(chunk_.data(), chunk_.size());
  if (got <= 0) {
    chunk_.clear();
    finished_ = true;
    if (got == 0) error_ = vb::kInputPastEndOfFile;
    else if (error_ == 0) error_ = 57;  // device I/O error
    return false;
  }
  chunk_.resize(static_cast<std::size_t>(got));
  next_ = 0;
  return true;
}

bool ByteLineSource::ReadLine(std::string& line) {
  std::string raw;
  bool begun = false;  // bytes of a line were seen: an unterminated last line still counts
  bool ended = false;  // its end was found
  while (!ended) {
    if (next_ >= chunk_.size() && !FillChunk()) break;
    if (skipLf_) {
      skipLf_ = false;
      if (chunk_[next_] == '\n') ++next_;
      continue;
    }
    begun = true;
    const char* begin = chunk_.data() + next_;
    const char* end = chunk_.data() + chunk_.size();
    const char* stop = std::find_if(begin, end, [](char c) { return c == '\r' || c == '\n'; });
    raw.append(begin, stop);
    next_ = static_cast<std::size_t>(stop - chunk_.data());
    if (stop != end) {
      skipLf_ = *stop == '\r';
      ++next_;
      ended = true;
    }
  }
  // Without an end the input is over: a failure, or the end with nothing left of a line.
  if (!ended && (!begun || error_ != vb::kInputPastEndOfFile)) return false;
  std::string_view text = raw;
  if (atStart_ && text.substr(0, kUtf8Bom.size()) == kUtf8Bom) text.remove_prefix(kUtf8Bom.size());
  atStart_ = false;
  if (encoding_ == TextEncoding::kUtf8) {
    line.assign(text);
  } else {
    line.clear();
    AppendWindows1252(line, text);
  }
  return true;
}

FileLineSource::~FileLineSource() { Close(); }

void FileLineSource::Close() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
}

bool FileLineSource::Fail(int number, int systemError) {
  Close();
  openError_ = number;
  openDescription_ = systemError != 0 ? std::strerror(systemError) : vb::ErrorDescription(number);
  return false;
}

bool FileLineSource::Open(const std::string& pathname) {
  Close();
  openError_ = 0;
  openDescription_.clear();
  fd_ = ::open(pathname.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd_ < 0) return Fail(errno == ENOENT ? vb::kFileNotFound : vb::kPathFileAccessError, errno);
  struct stat info {};
  if (::fstat(fd_, &info) != 0) return Fail(vb::kPathFileAccessError, errno);
  // Only a regular file can be scanned and then read again from its start.
  if (!S_ISREG(info.st_mode))
    return Fail(vb::kPathFileAccessError, S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
  // One pass over the file for its encoding, in chunks, so that memory stays small.
  Utf8Validator validator;
  std::string chunk(kChunkSize, '\0');
  for (;;) {
    const ssize_t got = ::read(fd_, chunk.data(), chunk.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return Fail(57, errno);
    if (got == 0) break;
    validator.Feed(std::string_view(chunk.data(), static_cast<std::size_t>(got)));
  }
  if (::lseek(fd_, 0, SEEK_SET) != 0) return Fail(vb::kPathFileAccessError, errno);
  Restart(validator.Valid() ? TextEncoding::kUtf8 : TextEncoding::kWindows1252);
  return true;
}

long FileLineSource::ReadBytes(char* buffer, std::size_t size) {
  if (fd_ < 0) {
    SetError(vb::kBadFileNameOrNumber);
    return -1;
  }
  for (;;) {
    const ssize_t got = ::read(fd_, buffer, size);
    if (got < 0 && errno == EINTR) continue;
    return static_cast<long>(got);
  }
}

MemoryLineSource::MemoryLineSource(std::string bytes) : bytes_(std::move(bytes)) {
  Restart(DetectEncoding(bytes_));
}

long MemoryLineSource::ReadBytes(char* buffer, std::size_t size) {
  const std::size_t n = std::min(size, bytes_.size() - offset_);
  std::memcpy(buffer, bytes_.data() + offset_, n);
  offset_ += n;
  return static_cast<long>(n);
}

}  // namespace vellumar::adif
