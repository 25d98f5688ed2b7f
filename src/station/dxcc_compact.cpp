#include "station/dxcc_compact.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

namespace vellumar {

namespace {

constexpr char kMagic[8] = {'V', 'L', 'M', 'D', 'X', 'C', 'C', '\n'};
constexpr uint32_t kFormat = 2;  // raised whenever the layout below changes

// The database file as it stands: what a change of its content changes.
struct SourceStamp {
  uint64_t device = 0;
  uint64_t inode = 0;
  uint64_t size = 0;
  uint64_t modifiedNs = 0;  // modification time, nanoseconds since 1970
  uint64_t walSize = 0;     // the write-ahead log beside it; 0 when there is none or it's empty
  uint64_t walModifiedNs = 0;
  bool operator==(const SourceStamp&) const = default;
};

struct Header {
  char magic[8];
  uint32_t format;
  uint32_t headerBytes;  // sizeof(Header): another build's layout shows here too
  SourceStamp source;
  uint64_t sourceDigest;  // of the database's bytes (and its log's): a copy of it is the same
  uint64_t payloadBytes;
  uint64_t checksum;  // of the payload
};

bool Stamp(const std::string& path, SourceStamp& stamp) {
  struct stat st {};
  if (stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
  stamp.device = st.st_dev;
  stamp.inode = st.st_ino;
  stamp.size = static_cast<uint64_t>(st.st_size);
  stamp.modifiedNs = static_cast<uint64_t>(st.st_mtim.tv_sec) * 1000000000ull +
                     static_cast<uint64_t>(st.st_mtim.tv_nsec);
  // An empty log holds nothing: SQLite makes one at every open, even a read-only one.
  struct stat wal {};
  if (stat((path + "-wal").c_str(), &wal) == 0 && wal.st_size > 0) {
    stamp.walSize = static_cast<uint64_t>(wal.st_size);
    stamp.walModifiedNs = static_cast<uint64_t>(wal.st_mtim.tv_sec) * 1000000000ull +
                          static_cast<uint64_t>(wal.st_mtim.tv_nsec);
  }
  return true;
}

// A 64-bit checksum, eight bytes a step: it finds a damaged or cut form, not an adversary.
uint64_t Checksum(const char* data, size_t n) {
  uint64_t h = 0x9e3779b97f4a7c15ull ^ n;
  size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    uint64_t w;
    std::memcpy(&w, data + i, 8);
    h = (h ^ w) * 0xff51afd7ed558ccdull;
    h ^= h >> 32;
  }
  for (; i < n; ++i) h = (h ^ static_cast<unsigned char>(data[i])) * 0xc4ceb9fe1a85ec53ull;
  return h ^ (h >> 29);
}

// The database's content: its file's bytes, and its write-ahead log's when that holds any. A
// form copied with the database it was made from (the installed pair, on a first start) is
// recognised by this when the file's stamp is new; nullopt when a file can't be read.
std::optional<uint64_t> SourceDigest(const std::string& path) {
  auto digestOf = [](const std::string& file, bool mustExist) -> std::optional<uint64_t> {
    std::ifstream in(file, std::ios::binary);
    if (!in) return mustExist ? std::nullopt : std::optional<uint64_t>(0);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) return std::nullopt;
    return bytes.empty() ? 0 : Checksum(bytes.data(), bytes.size());
  };
  std::optional<uint64_t> main = digestOf(path, true);
  std::optional<uint64_t> wal = digestOf(path + "-wal", false);
  if (!main || !wal) return std::nullopt;
  return *main ^ ((*wal << 1) | (*wal >> 63));
}

// The payload, section by section, each padded to eight bytes.
class Writer {
 public:
  template <typename T>
  void Array(const std::vector<T>& v) {
    Word(v.size());
    Bytes(v.data(), v.size() * sizeof(T));
  }
  void Text(const std::string& s) {
    Word(s.size());
    Bytes(s.data(), s.size());
  }
  void Word(uint64_t w) { Bytes(&w, sizeof w); }
  std::string out;

 private:
  void Bytes(const void* p, size_t n) {
    out.append(static_cast<const char*>(p), n);
    out.append((8 - out.size() % 8) % 8, '\0');
  }
};

class Reader {
 public:
  Reader(const char* data, size_t n) : data_(data), n_(n) {}
  bool Word(uint64_t& w) { return Bytes(&w, sizeof w); }
  template <typename T>
  bool Array(std::vector<T>& v) {
    uint64_t count = 0;
    if (!Word(count) || count > (n_ - at_) / sizeof(T)) return false;
    v.resize(count);
    return Bytes(v.data(), count * sizeof(T));
  }
  bool Text(std::string& s) {
    uint64_t count = 0;
    if (!Word(count) || count > n_ - at_) return false;
    s.assign(data_ + at_, count);
    return Skip(count);
  }
  bool AtEnd() const { return at_ == n_; }

 private:
  bool Bytes(void* p, size_t n) {
    if (n > n_ - at_) return false;
    if (n) std::memcpy(p, data_ + at_, n);
    return Skip(n);
  }
  bool Skip(size_t n) {
    size_t padded = n + (8 - n % 8) % 8;
    if (padded > n_ - at_) return false;
    at_ += padded;
    return true;
  }
  const char* data_;
  size_t n_;
  size_t at_ = 0;
};

}  // namespace

std::string DXCCCompactPath(const std::string& databasePath) { return databasePath + ".lookup"; }

bool ReadDXCCCompact(const std::string& databasePath, DXCCTables& tables) {
  tables.Clear();
  SourceStamp now;
  if (!Stamp(databasePath, now)) return false;
  const std::string formPath = DXCCCompactPath(databasePath);
  std::ifstream in(formPath, std::ios::binary);
  if (!in) return false;
  Header header{};
  if (!in.read(reinterpret_cast<char*>(&header), sizeof header)) return false;
  if (std::memcmp(header.magic, kMagic, sizeof kMagic) != 0 || header.format != kFormat ||
      header.headerBytes != sizeof(Header) || header.payloadBytes > (uint64_t{1} << 31) ||
      header.payloadBytes % 8 != 0)
    return false;
  // Made from another file: used only when that file had the same bytes, and then stamped with
  // this one, so that the next start needn't read the database to know.
  bool restamp = false;
  if (!(header.source == now)) {
    std::optional<uint64_t> digest = SourceDigest(databasePath);
    if (!digest || *digest != header.sourceDigest) return false;
    restamp = true;
  }
  std::string payload(header.payloadBytes, '\0');
  if (!in.read(payload.data(), static_cast<std::streamsize>(payload.size())) ||
      in.peek() != std::char_traits<char>::eof())
    return false;  // cut short, or longer than it says
  if (Checksum(payload.data(), payload.size()) != header.checksum) return false;

  DXCCTables::Parts parts = tables.MutableParts();
  Reader r(payload.data(), payload.size());
  bool ok =
      r.Word(*parts.longestPrefixKey) && r.Array(*parts.lengthsByStart) && r.Text(*parts.text);
  for (DXCCTables::Table* t : parts.tables) {
    uint64_t width = 0;
    ok = ok && r.Word(width) && width < 16 && r.Array(t->cells) && r.Array(t->hashSlots);
    t->width = static_cast<uint32_t>(width);
  }
  if (!ok || !r.AtEnd() || !tables.Consistent()) {
    tables.Clear();
    return false;
  }
  // The database may have changed while the form was read: its stamp is taken again.
  SourceStamp after;
  if (!Stamp(databasePath, after) || !(after == now)) {
    tables.Clear();
    return false;
  }
  if (restamp) {
    // The header alone is written over; one cut short fails the checks above next time, and
    // the form is then made anew from the database.
    in.close();
    header.source = now;
    std::fstream out(formPath, std::ios::binary | std::ios::in | std::ios::out);
    if (out) out.write(reinterpret_cast<const char*>(&header), sizeof header);
  }
  return true;
}

namespace {

// Writes the form of tables read from the database as `source` stamped it and `digest` summed it.
bool WriteStamped(const std::string& databasePath, DXCCTables& tables, const SourceStamp& source,
                  uint64_t digest) {
  DXCCTables::Parts parts = tables.MutableParts();
  Writer w;
  w.Word(*parts.longestPrefixKey);
  w.Array(*parts.lengthsByStart);
  w.Text(*parts.text);
  for (const DXCCTables::Table* t : parts.tables) {
    w.Word(t->width);
    w.Array(t->cells);
    w.Array(t->hashSlots);
  }
  Header header{};
  std::memcpy(header.magic, kMagic, sizeof kMagic);
  header.format = kFormat;
  header.headerBytes = sizeof(Header);
  header.source = source;
  header.sourceDigest = digest;
  header.payloadBytes = w.out.size();
  header.checksum = Checksum(w.out.data(), w.out.size());

  const std::string target = DXCCCompactPath(databasePath);
  const std::string partial = target + ".partial." + std::to_string(getpid());
  {
    std::ofstream out(partial, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(w.out.data(), static_cast<std::streamsize>(w.out.size()));
    out.close();
    if (!out) {
      std::remove(partial.c_str());
      return false;
    }
  }
  if (std::rename(partial.c_str(), target.c_str()) != 0) {
    std::remove(partial.c_str());
    return false;
  }
  return true;
}

}  // namespace

bool WriteDXCCCompact(const std::string& databasePath, DXCCTables& tables) {
  SourceStamp source;
  if (!Stamp(databasePath, source)) return false;
  std::optional<uint64_t> digest = SourceDigest(databasePath);
  SourceStamp after;
  return digest && Stamp(databasePath, after) && after == source &&
         WriteStamped(databasePath, tables, source, *digest);
}

void LoadDXCCTables(const std::string& databasePath, db::Database& database, DXCCTables& tables,
                    bool* fromCompact) {
  if (fromCompact) *fromCompact = false;
  if (ReadDXCCCompact(databasePath, tables)) {
    if (fromCompact) *fromCompact = true;
    return;
  }
  // Stamped before the rows are read: a database changed meanwhile leaves no form behind.
  SourceStamp before, after;
  bool stamped = Stamp(databasePath, before);
  tables.Load(database);
  std::optional<uint64_t> digest = stamped ? SourceDigest(databasePath) : std::nullopt;
  if (digest && Stamp(databasePath, after) && after == before)
    WriteStamped(databasePath, tables, before, *digest);
}

}  // namespace vellumar
