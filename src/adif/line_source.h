#pragma once
// Where the parser reads further lines from: the import's input file, or bytes held in memory.
// A line ends at CR LF, LF or CR; its end is not part of it. The text is handed out as the
// program's UTF-8, decoded as the whole input's encoding says (see text_encoding.h), and a
// byte-order mark at the very start is dropped.
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "adif/text_encoding.h"

namespace vellumar::adif {

class LineSource {
 public:
  virtual ~LineSource() = default;
  // The next line, without its end. False at the end of the input or on a failure; the line
  // is then left as it was.
  virtual bool ReadLine(std::string& line) = 0;
  // The error number a false ReadLine stands for: 62 (input past end of file) at the end.
  virtual int ReadError() const = 0;
  // The input's encoding, which tells how a declared length counts.
  virtual TextEncoding Encoding() const = 0;
};

// Splits a stream of bytes into decoded lines. Subclasses give the bytes, chunk by chunk.
class ByteLineSource : public LineSource {
 public:
  bool ReadLine(std::string& line) override;
  int ReadError() const override { return error_; }
  TextEncoding Encoding() const override { return encoding_; }

 protected:
  // Reads up to `size` bytes into `buffer`: the count, 0 at the end, -1 on a failure.
  virtual long ReadBytes(char* buffer, std::size_t size) = 0;
  // Starts the splitting over from the first byte, read as `encoding`.
  void Restart(TextEncoding encoding);
  void SetError(int number) { error_ = number; }

 private:
  bool FillChunk();  // false at the end or on a failure (error_ tells which)

  TextEncoding encoding_ = TextEncoding::kUtf8;
  int error_ = 0;
  std::string chunk_;       // bytes read and not yet split
  std::size_t next_ = 0;    // first unsplit byte of chunk_
  bool skipLf_ = false;     // the last line ended at a CR: a LF right after it belongs to it
  bool atStart_ = true;     // no line handed out yet: a byte-order mark may follow
  bool finished_ = false;   // end or failure seen
};

// The import's input file. Open refuses what isn't a readable regular file (a directory, a
// missing or unreadable file) with the error number and the system's description.
class FileLineSource : public ByteLineSource {
 public:
  FileLineSource() = default;
  ~FileLineSource() override;
  FileLineSource(const FileLineSource&) = delete;
  FileLineSource& operator=(const FileLineSource&) = delete;

  // Opens the file and scans it once for its encoding; false with OpenError() set on failure.
  bool Open(const std::string& pathname);
  void Close();
  int OpenError() const { return openError_; }
  const std::string& OpenErrorDescription() const { return openDescription_; }

 protected:
  long ReadBytes(char* buffer, std::size_t size) override;

 private:
  bool Fail(int number, int systemError);

  int fd_ = -1;
  int openError_ = 0;
  std::string openDescription_;
};

// Bytes held in memory, split and decoded exactly as a file of those bytes would be.
class MemoryLineSource : public ByteLineSource {
 public:
  explicit MemoryLineSource(std::string bytes);

 protected:
  long ReadBytes(char* buffer, std::size_t size) override;

 private:
  std::string bytes_;
  std::size_t offset_ = 0;
};

// The encoding of a whole input, from its bytes: UTF-8 if they are valid UTF-8 throughout.
TextEncoding DetectEncoding(std::string_view bytes);

}  // namespace vellumar::adif
