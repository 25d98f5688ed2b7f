#include "logview/filter_strings.h"

#include "frame/common.h"
#include "platform/vb/ascii.h"
#include "platform/vb/dateops.h"
#include "platform/vb/format.h"

namespace vellumar::logview {
namespace {

// The date filter's captions: the short date, two blanks, hours and minutes.
constexpr const char* kCaptionDateFormat = "ddddd  hh:nn";

template <size_t N>
FilterText ChecklistFilter(const char* column, const std::array<bool, N>& checked,
                           const std::array<std::string, N>& labels, const char* allCaption,
                           const char* noneCaption) {
  FilterText out;
  std::string joined;
  int count = 0;
  for (size_t i = 1; i < N; ++i) {
    if (!checked[i]) continue;
    out.filter += std::string(count == 0 ? "" : " OR ") + "(" + column + " = '" + labels[i] + "')";
    joined += (count == 0 ? "" : ", ") + labels[i];
    ++count;
  }
  if (count == static_cast<int>(N) - 1) return {"TRUE", allCaption};
  if (count == 0) return {"FALSE", noneCaption};
  out.caption = "Filter: " + joined;
  return out;
}

}  // namespace

FilterText NoFilter() { return {"", kNoFilterCaption}; }

FilterText CallFilter(const std::string& pattern) {
  return {"Call LIKE '" + pattern + "'", "Filter: Call=" + vb::UpperAscii(pattern)};
}

FilterText DXCCFilter(const std::string& pattern) {
  return {"DXCCPrefix LIKE '" + pattern + "'", "Filter: DXCC=" + vb::UpperAscii(pattern)};
}

FilterText BrokenFilter(bool haveQTHs) {
  return {haveQTHs ? "(BROKEN = 'Y') OR (myQTHID='')" : "BROKEN = 'Y'", "Filter: Broken"};
}

FilterText DateFilter(double lower, double upper) {
  return {"QSO_Begin between #" + Common::ISODateTime(lower) + "# and #" +
              Common::ISODateTime(upper) + "#",
          "Filter: " + vb::FormatDate(lower, kCaptionDateFormat) + " to " +
              vb::FormatDate(upper, kCaptionDateFormat)};
}

FilterText SQLFilter(const std::string& query) { return {query, kSQLCaption}; }

FilterText BandFilter(const std::array<bool, kBandBoxes + 1>& checked,
                      const std::array<std::string, kBandBoxes + 1>& labels) {
  return ChecklistFilter("Band", checked, labels, "Filter: all bands", "Filter: no bands");
}

FilterText ModeFilter(const std::array<bool, kModeBoxes + 1>& checked,
                      const std::array<std::string, kModeBoxes + 1>& labels) {
  return ChecklistFilter("Mode", checked, labels, "Filter: all Modes", "Filter: no Modes");
}

DateRange RangeAround(double at, double toleranceMinutes) {
  return {vb::DateAdd("n", -toleranceMinutes, at), vb::DateAdd("n", toleranceMinutes, at)};
}

std::string Locator(const std::string& call, const std::string& begin) {
  return "(Call = '" + call + "') and (QSO_Begin = #" + begin + "#)";
}

bool NamesOneStation(const std::string& pattern) {
  return pattern.find_first_of("?*%_") == std::string::npos;
}

std::string ComposeSort(const std::array<SortFieldChoice, 3>& fields) {
  std::string sort;
  for (size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].field.empty()) continue;  // an empty field adds nothing, not even its comma
    sort += fields[i].field;
    if (fields[i].descending) sort += " DESC";
    if (i < 2 && !fields[i + 1].field.empty()) sort += ", ";
  }
  return sort;
}

}  // namespace vellumar::logview
