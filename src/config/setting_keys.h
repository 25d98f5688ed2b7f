#pragma once
// The keys of the program's own settings (application "Vellumar"), each written here once: the
// configuration window's table of options and the Log page's windows read and write them by
// these names, so that a key read at start and written at the end cannot drift apart. Some keys
// look odd and are kept as they are, because existing settings files carry them: the two italic
// font keys begin with a blank, and the window state is read as "Windowstate" but written as
// "WindowState" (the store compares keys case-blind).
#include <string>

namespace vellumar {

// One key of one section.
struct SettingKey {
  const char* section;
  const char* key;
};

// A family of keys: the prefix followed by an index ("LogFrameVisible" + 0..3).
struct IndexedSettingKey {
  const char* section;
  const char* prefix;
  std::string Key(int index) const { return prefix + std::to_string(index); }
};

namespace setting {

inline constexpr const char* kConfigurationSection = "Configuration";
inline constexpr const char* kWindowsSection = "Windows";
inline constexpr const char* kGeneralSection = "General";
inline constexpr const char* kPrinterSection = "Printer";
inline constexpr const char* kRACSection = "RAC";
inline constexpr const char* kAwardSection = "Award";
inline constexpr const char* kLogGridSection = "LogGrid";
inline constexpr const char* kQSLSection = "QSL";

// The configuration window's general options.
inline constexpr SettingKey kCallsign{kConfigurationSection, "Callsign"};
inline constexpr SettingKey kTransmitPower{kConfigurationSection, "TransmitPower"};
inline constexpr SettingKey kQSLMsg{kConfigurationSection, "QSLMsg"};
inline constexpr SettingKey kRun{kConfigurationSection, "Run"};
inline constexpr SettingKey kConfirmDelete{kConfigurationSection, "ConfirmDelete"};
inline constexpr SettingKey kLookupPrevQSO{kConfigurationSection, "LookupPrevQSO"};
inline constexpr SettingKey kAutoSetDateTime{kConfigurationSection, "AutoSetDateTime"};
inline constexpr SettingKey kDateTimeFormat{kConfigurationSection, "DateTimeFormat"};
inline constexpr SettingKey kSetCaptureQSLRequest{kConfigurationSection, "SetCaptureQSLRequest"};
inline constexpr SettingKey kQSLPrintOpCallsign{kConfigurationSection, "QSLPrintOpCallsign"};
inline constexpr SettingKey kLogPathname{kConfigurationSection, "LogPathname"};
inline constexpr SettingKey kLogDirectory{kConfigurationSection, "LogDirectory"};
inline constexpr SettingKey kBackupDirectory{kConfigurationSection, "BackupDirectory"};
inline constexpr SettingKey keQSLUser{kConfigurationSection, "eQSLUser"};
inline constexpr SettingKey keQSLPassword{kConfigurationSection, "eQSLPassword"};
inline constexpr SettingKey kBrowserPathname{kConfigurationSection, "BrowserPathname"};
inline constexpr IndexedSettingKey kLogFrameVisible{kConfigurationSection, "LogFrameVisible"};
inline constexpr SettingKey kShowToolTips{kGeneralSection, "ShowToolTips"};

// The callbook, and the printer.
inline constexpr SettingKey kCallbookPathname{kRACSection, "Pathname"};
inline constexpr SettingKey kRACEnabled{kRACSection, "RACEnabled"};
inline constexpr SettingKey kPrinterName{kPrinterSection, "PrinterName"};
inline constexpr SettingKey kPrinterPaperSize{kPrinterSection, "PrinterPaperSize"};

// The main window's import and export options, and the Log page's rows and fonts.
inline constexpr SettingKey kDXBaseExport{kConfigurationSection, "DXBaseExport"};
inline constexpr SettingKey kLoggerImport{kConfigurationSection, "LoggerImport"};
inline constexpr SettingKey kMMTTYImport{kConfigurationSection, "MMTTYImport"};
inline constexpr SettingKey kDefaultImportCallsign{kConfigurationSection, "DefaultImportCallsign"};
inline constexpr SettingKey kSaveImportErrors{kConfigurationSection, "SaveImportErrors"};
// The folders the ADIF file dialogs open in: where the last import or export was.
inline constexpr const char* kADIFSection = "ADIF";
inline constexpr SettingKey kImportDirectory{kADIFSection, "ImportDirectory"};
inline constexpr SettingKey kExportDirectory{kADIFSection, "ExportDirectory"};
inline constexpr SettingKey kLogGridRows{kConfigurationSection, "LogGridRows"};

// A font's four keys.
struct FontKeys {
  SettingKey name, size, bold, italic;
};
inline constexpr FontKeys kLogGridFont{{kConfigurationSection, "LogFontName"},
                                       {kConfigurationSection, "LogFontSize"},
                                       {kConfigurationSection, "LogFontBold"},
                                       {kConfigurationSection, " LogFontItalic"}};
inline constexpr FontKeys kLogPanelFont{{kConfigurationSection, "LogPanelFontName"},
                                        {kConfigurationSection, "LogPanelFontSize"},
                                        {kConfigurationSection, "LogPanelFontBold"},
                                        {kConfigurationSection, " LogPanelFontItalic"}};

// The Log Page Display's table (one row per index, ended by a row without a field), LogGrid's
// column order and widths, and the widths of the configuration window's LogLayout grid.
struct LayoutRowKeys {
  IndexedSettingKey field, caption, alignment;  // the three cells of one row
};
inline constexpr LayoutRowKeys kLayoutRow{{kLogGridSection, "FieldName"},
                                          {kLogGridSection, "FieldCaption"},
                                          {kLogGridSection, "FieldAlignment"}};
inline constexpr IndexedSettingKey kLogGridFieldOrder{kLogGridSection, "FieldOrder"};
inline constexpr IndexedSettingKey kLogGridColumnWidth{kLogGridSection, "LogColumnWidth"};
inline constexpr IndexedSettingKey kLogLayoutColumnWidth{kLogGridSection, "LogLayoutColumnWidth"};

// The Log Page Display's filters and sorts: the advanced window's four SQL queries and four
// composed sorts with the one selected, and the date filter's range.
inline constexpr const char* kSQLFiltersSection = "SQLFilters";
inline constexpr IndexedSettingKey kSQLQuery{kSQLFiltersSection, "SQLQuery"};
inline constexpr IndexedSettingKey kSQLSort{kSQLFiltersSection, "SQLSort"};
inline constexpr SettingKey kSQLSortIndex{kSQLFiltersSection, "SQLSortIndex"};
inline constexpr SettingKey kDateFilterTolerance{kConfigurationSection, "DateFilterTolerance"};
inline constexpr SettingKey kDateFilterUpperBound{kConfigurationSection, "DateFilterUpperBound"};
inline constexpr SettingKey kDateFilterKind{kConfigurationSection, "DateFilterKind"};

// A window's placement: its form name followed by one of the words.
struct WindowWords {
  const char *left, *top, *width, *height;
  const char* stateRead;     // "Windowstate"
  const char* stateWritten;  // "WindowState"
};
inline constexpr WindowWords kWindow{"Left",   "Top",         "Width",
                                     "Height", "Windowstate", "WindowState"};
inline std::string WindowKey(const std::string& formName, const char* word) {
  return formName + word;
}

}  // namespace setting
}  // namespace vellumar
