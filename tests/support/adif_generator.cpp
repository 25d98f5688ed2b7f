#include "support/adif_generator.h"

#include <random>

namespace vellumar::test {

namespace {

void Tag(std::string& out, const char* name, const std::string& value) {
  out += '<';
  out += name;
  out += ':';
  out += std::to_string(value.size());
  out += '>';
  out += value;
}

std::string TwoDigits(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

}  // namespace

std::string GenerateAdif(const AdifGeneratorOptions& o) {
  struct Band {
    const char* name;
    const char* freq;
  };
  static const Band kBands[] = {{"160M", "1.830"},  {"80M", "3.525"},  {"40M", "7.025"},
                                {"30M", "10.120"}, {"20M", "14.025"}, {"17M", "18.080"},
                                {"15M", "21.025"}, {"12M", "24.900"}, {"10M", "28.025"},
                                {"6M", "50.100"},  {"2M", "144.300"}};
  static const char* kModes[] = {"CW", "SSB", "RTTY", "PSK31", "FT8", "AM", "FM"};
  static const char* kQsl[] = {"Y", "N", "V", "R", ""};
  static const char* kNames[] = {"Hans", "Peter", "Yuki", "Maria", "Bob", "Ana"};
  std::mt19937 random(o.seed);
  std::string out = "Generated log\r\n<ADIF_VER:5>3.1.4 <PROGRAMID:8>GENERATE<EOH>\r\n";
  std::vector<std::string> written;
  written.reserve(o.duplicatePercent > 0 ? o.count : 0);
  // One minute a QSO from 1 January 1995, in whole days and minutes.
  int year = 1995, month = 1, day = 1, minute = 0;
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int i = 0; i < o.count; ++i) {
    if (!written.empty() && static_cast<int>(random() % 100) < o.duplicatePercent) {
      const std::string& again = written[random() % written.size()];
      out += again;
      written.push_back(again);
      continue;
    }
    std::string r;
    const GeneratedEntity& e = o.entities[random() % o.entities.size()];
    std::string call = e.callPrefix + std::to_string(random() % 10);
    for (int k = 0; k < 1 + static_cast<int>(random() % 3); ++k)
      call += static_cast<char>('A' + random() % 26);
    const Band& band = kBands[random() % 11];
    const char* mode = kModes[random() % 7];
    const std::string report = (mode[0] == 'S' || mode[0] == 'A' || (mode[0] == 'F' && mode[1] == 'M'))
                                   ? "59"
                                   : "599";
    Tag(r, "CALL", call);
    Tag(r, "QSO_DATE", std::to_string(year) + TwoDigits(month) + TwoDigits(day));
    Tag(r, "TIME_ON", TwoDigits(minute / 60) + TwoDigits(minute % 60) + "00");
    Tag(r, "BAND", band.name);
    Tag(r, "FREQ", band.freq);
    Tag(r, "MODE", mode);
    Tag(r, "RST_SENT", report);
    Tag(r, "RST_RCVD", report);
    Tag(r, "NAME", kNames[random() % 6]);
    const char* qsl = kQsl[random() % 5];
    if (*qsl) Tag(r, "QSL_RCVD", qsl);
    if (e.dxccCode > 0 && static_cast<int>(random() % 100) >= o.withoutDxccPercent)
      Tag(r, "DXCC", std::to_string(e.dxccCode));
    r += "<EOR>\r\n";
    out += r;
    if (o.duplicatePercent > 0) written.push_back(std::move(r));
    if (++minute == 24 * 60) {
      minute = 0;
      const bool leap = month == 2 && year % 4 == 0;
      if (++day > kDays[month - 1] + (leap ? 1 : 0)) {
        day = 1;
        if (++month > 12) month = 1, ++year;
      }
    }
  }
  return out;
}

std::string FirstRecords(const std::string& adif, int records) {
  std::size_t end = adif.find("<EOH>\r\n");
  end = end == std::string::npos ? 0 : end + 7;
  for (int i = 0; i < records && end < adif.size(); ++i) {
    const std::size_t eor = adif.find("<EOR>\r\n", end);
    if (eor == std::string::npos) break;
    end = eor + 7;
  }
  return adif.substr(0, end);
}

}  // namespace vellumar::test
