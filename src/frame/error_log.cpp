#include "frame/error_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <new>

#include "frame/atomic_file.h"
#include "frame/version.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"

namespace vellumar {
namespace {

// Error number of a failure that carries none of its own.
constexpr int kInternalError = 51;

}  // namespace

ErrorLog::ErrorLog(const ui::Clock& clock, BannerSource banner)
    : utc_(clock), banner_(std::move(banner)) {}

void ErrorLog::BeginRun(std::string pathname, double startTime) {
  pathname_ = std::move(pathname);
  startTime_ = startTime;
  started_ = false;
}

std::string ErrorLog::FormatEntry(double date, const std::string& text) {
  return vb::FormatDate(date, "dd-mmm-yyyy hh:nn:ss") + " > " + text;
}

void ErrorLog::WriteErrorLog(const std::string& text) {
  // Each step on its own: a failing step is passed over and the next one runs.
  const int fd = open(pathname_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (!started_) {
    try {
      const ErrorLogBanner b = banner_ ? banner_() : ErrorLogBanner{};
      std::string banner;
      const auto line = [&](const std::string& s) { banner += FormatEntry(startTime_, s) + "\n"; };
      line(std::string(kApplicationTitle) + " version " + VersionText());
      line("App.Path        : " + b.applicationDirectory);
      line("App.exe         : " + b.executableName);
      line("Operating System: " + b.osName + " build " + b.osBuild);
      line("Country         : " + b.country);
      line("Language        : " + b.language);
      if (fd >= 0) WriteAll(fd, banner);
    } catch (...) {
    }
    started_ = true;
    try {
      ErrorLogExists();
    } catch (...) {
    }
  }
  try {
    if (fd >= 0) WriteAll(fd, FormatEntry(utc_.CurrentTime(), text) + "\n");
  } catch (...) {
  }
  if (fd >= 0) close(fd);
}

void ErrorLog::ReportError(std::int64_t code, const std::string& where,
                           const std::string& description) {
  if (code < std::numeric_limits<std::int16_t>::min() ||
      code > std::numeric_limits<std::int16_t>::max()) {
    return;  // the narrowing fails within the tail: nothing can be reported
  }
  const int number = static_cast<std::int16_t>(code);
  WriteErrorLog("program error " + std::to_string(number) + " in module " + where + ": " +
                (description.empty() ? vb::ErrorDescription(number) : description));
}

void ErrorLog::ReportCurrentException(const std::string& where) {
  try {
    throw;
  } catch (const vb::VbError& e) {
    ReportError(e.number(), where, e.description());
  } catch (const std::bad_alloc&) {
    ReportError(7, where);
  } catch (const std::exception& e) {
    ReportError(kInternalError, where, e.what());
  } catch (...) {
    ReportError(kInternalError, where);
  }
}

void ErrorLog::ErrorLogExists() {
  present_ = true;
  if (updateCaption_) updateCaption_();
}

}  // namespace vellumar
