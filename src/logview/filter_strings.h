#pragma once
// The filters of the Log Page Display as texts. Every filter is one criteria string in the
// record layer's Jet language, with the caption FilterFrame shows while it is in force. The
// operator's pattern goes into the string unchanged: its LIKE wildcards work as Jet's do, and
// an apostrophe in it makes the string fail when the view is opened, which is the message the
// operator gets.
#include <array>
#include <string>

namespace vellumar::logview {

struct FilterText {
  std::string filter;   // criteria for LogRecordset.Filter; empty: all QSOs
  std::string caption;  // FilterFrame's caption
};

// The caption with no filter, as a cleared filter sets it (with its trailing blank).
inline constexpr const char* kNoFilterCaption = "Filter: None ";
// The caption the start-up gives, before any filter was applied.
inline constexpr const char* kInitialCaption = "Filter: None";
// What the caption reads after a filter string that failed.
inline constexpr const char* kFailedFilterCaption = "None";
inline constexpr const char* kSQLCaption = "Filter: SQL Query";

FilterText NoFilter();
// "Call LIKE '<P>'", captioned with P upper-cased while the string keeps P as typed.
FilterText CallFilter(const std::string& pattern);
FilterText DXCCFilter(const std::string& pattern);
// Without QTHs of the operator's a QSO with no myQTHID can't be broken by lacking one.
FilterText BrokenFilter(bool haveQTHs);
// The QSOs begun between the two date values, both bounds included.
FilterText DateFilter(double lower, double upper);
FilterText SQLFilter(const std::string& query);

// The band and mode check boxes of the advanced window: index 1..15 and 1..14 as the boxes
// are numbered (slot 0 unused).
inline constexpr int kBandBoxes = 15;
inline constexpr int kModeBoxes = 14;
inline constexpr std::array<const char*, kBandBoxes + 1> kBandLabels = {
    "",    "160M", "80M", "40M",  "30M",  "20M",  "17M", "15M",
    "12M", "10M",  "6M",  "2M",   "70CM", "33CM", "23CM", "3CM"};
inline constexpr std::array<const char*, kModeBoxes + 1> kModeLabels = {
    "",   "SSB", "CW",   "RTTY", "AM",   "ATV", "EME", "FM",
    "HELL", "HSCW", "MFSK", "MT63", "PSK", "SSTV", "THROB"};

// The boxes in their order: "(Band = 'L')" joined by " OR ", the labels by ", ". All boxes
// checked is "TRUE" (so a QSO with no band shows too), none "FALSE".
FilterText BandFilter(const std::array<bool, kBandBoxes + 1>& checked,
                      const std::array<std::string, kBandBoxes + 1>& labels);
FilterText ModeFilter(const std::array<bool, kModeBoxes + 1>& checked,
                      const std::array<std::string, kModeBoxes + 1>& labels);

// The date filter's range around T: T - m minutes to T + m minutes.
struct DateRange {
  double lower = 0;
  double upper = 0;
};
DateRange RangeAround(double at, double toleranceMinutes);

// The criteria that finds the QSO in hand again in a new view: its callsign and start time as
// the panel shows them. A callsign with an apostrophe makes it fail, which the caller ignores.
std::string Locator(const std::string& call, const std::string& begin);

// Whether a callsign pattern names one station: none of the wildcards "?", "*" and the SQL ones
// "%" and "_" (plain characters to Jet, but the station program would read them as wildcards).
bool NamesOneStation(const std::string& pattern);

// A composed sort from the three fields of the advanced window. Each filled field is written,
// " DESC" after it when descending is chosen, and ", " when the next field is filled. So a
// hole in the row (first and third filled) leaves the two without a comma between them, and
// the text fails when the view opens: that is how the window has always composed it. A field
// after an empty first one stands at the start, without a comma before it.
struct SortFieldChoice {
  std::string field;
  bool descending = false;
};
std::string ComposeSort(const std::array<SortFieldChoice, 3>& fields);

}  // namespace vellumar::logview
