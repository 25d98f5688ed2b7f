#pragma once
// The options as the rest of the program reads them. The configuration window's controls are the
// live configuration; this is the typed face of them that other windows and modules see, so that
// they never reach into its controls.
#include <string>

namespace vellumar {

class Configuration {
 public:
  virtual ~Configuration() = default;

  virtual std::string MyCallsign() const = 0;     // operator of new QSOs
  virtual std::string TransmitPower() const = 0;  // TX_Power of new QSOs
  virtual std::string QSLMessage() const = 0;     // QSLMsg of new QSOs
  virtual std::string LogPathname() const = 0;    // the log to open or create
  virtual bool RunMode() const = 0;               // Enter in the last field begins the next QSO
  virtual bool ConfirmDelete() const = 0;         // a delete asks first
  virtual bool AutoSetDateTime() const = 0;       // a new QSO is given the start time
  // The Progress column (3..17, bands then modes) counts for the awards.
  virtual bool AwardTracked(int column) const = 0;
  // The format of the QSO date-time fields: with or without seconds.
  virtual std::string DateTimeFormat() const = 0;
};

// What the configuration window asks of the windows above it when an option changes. The main
// window registers one; without it the window changes only its own controls and settings.
class ConfigObserver {
 public:
  virtual ~ConfigObserver() = default;

  // The log to work on changed: the open one is closed and `pathname` opened; false when it
  // could not be.
  virtual bool SwitchLog(const std::string& pathname) = 0;
  virtual void CloseLog() = 0;
  virtual void UpdateCaption() = 0;
  // An optional panel of the Log page is shown (1) or hidden (0).
  virtual void LogFrameVisibilityChanged(int index, int value) = 0;
  virtual void CallbookEnabledChanged(bool enabled) = 0;
  virtual void MyCallsignChanged(const std::string& callsign) = 0;
  // The Log Page Display's layout table was edited.
  virtual void LayoutRowDeleting(int row) = 0;
  virtual void LayoutCellChanged(int row, int column) = 0;
  virtual void LayoutChanged() = 0;
  virtual void SaveLogGridColumnWidths() = 0;
};

}  // namespace vellumar
