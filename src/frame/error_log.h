#pragma once
// The error log: ErrorLog.txt in the application directory, appended to and never truncated.
// Every procedure's failure tail ends here. The first entry of a run comes after a six-line
// banner dated with the run's start time; each entry is dated with the UTC time it was
// written, "dd-mmm-yyyy hh:nn:ss > text". The file is held open only for one entry, so that
// siblings and editors can read it meanwhile.
#include <cstdint>
#include <functional>
#include <string>

#include "frame/utc.h"
#include "platform/services/clock.h"

namespace vellumar {

// What the banner says about the program and its host, gathered when the banner is written.
struct ErrorLogBanner {
  std::string applicationDirectory;  // the data folder
  std::string executableName;        // file name of the running program
  std::string osName;                // GetOSName
  std::string osBuild;               // GetOSBuild
  std::string country;               // GetLocaleCountry
  std::string language;              // GetLocaleLanguage
};

class ErrorLog {
 public:
  using BannerSource = std::function<ErrorLogBanner()>;

  ErrorLog(const ui::Clock& clock, BannerSource banner);

  // A fresh run: the file to write, the run's start time (a UTC date value); no banner yet.
  void BeginRun(std::string pathname, double startTime);

  // Writes one entry, the banner first if this run has none yet. Failures are ignored, step by
  // step as the entry is written: a file that can't be opened costs the entry, and the run
  // still counts its banner as written.
  void WriteErrorLog(const std::string& text);
  // "program error " + code + " in module " + where + ": " + the error's description (the
  // runtime's text for the number unless one is given). The code is narrowed to 16 bits first;
  // a code outside them is a failure within the tail, and nothing is written.
  void ReportError(std::int64_t code, const std::string& where,
                   const std::string& description = {});
  // For a catch block: reports the exception in flight under `where`; a vb::VbError with its
  // number and text, anything else as an internal error.
  void ReportCurrentException(const std::string& where);
  // Sets ErrorLogPresent and calls the caption hook.
  void ErrorLogExists();

  // The main window refreshes its caption through this; it may be left empty.
  void SetUpdateCaption(std::function<void()> hook) { updateCaption_ = std::move(hook); }

  const std::string& ErrorLogPathname() const { return pathname_; }
  double StartTime() const { return startTime_; }
  bool ErrorLogStarted() const { return started_; }
  // Whether this run has written to the log; the caption warns while it is set.
  bool ErrorLogPresent() const { return present_; }
  void SetErrorLogPresent(bool present) { present_ = present; }

  // One line of the file without its line end: date, " > ", text.
  static std::string FormatEntry(double date, const std::string& text);

 private:
  UTC utc_;
  BannerSource banner_;
  std::function<void()> updateCaption_;  // UpdateCaption of the main window
  std::string pathname_;  // ErrorLogPathname: application directory + "/ErrorLog.txt"
  double startTime_ = 0;  // StartTime: UTC date value of the run's start
  bool started_ = false;  // ErrorLogStarted: this run's banner is written
  bool present_ = false;  // ErrorLogPresent: the caption's warning is due
};

// The failure tail of a procedure: runs `body`; a failure is reported under `where` (module,
// ".", procedure) and ends the procedure. True when the body ran to its end.
template <class Body>
bool WithFailureTail(ErrorLog& log, const std::string& where, Body&& body) {
  try {
    body();
    return true;
  } catch (...) {
    log.ReportCurrentException(where);
    return false;
  }
}

}  // namespace vellumar
