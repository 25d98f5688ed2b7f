#pragma once
// What the program asks of the desktop: message boxes, the input box, file dialogs, launching
// files and programs, and the screen's size. The Qt skin implements it for the running
// program; tests answer from a script.
#include <string>

#include "platform/services/font.h"

namespace vellumar::ui {

// Buttons, icon and default button of a message box, numbered as the runtime numbers them;
// add one of each group.
enum MsgBoxStyle : int {
  vbOKOnly = 0,
  vbOKCancel = 1,
  vbAbortRetryIgnore = 2,
  vbYesNoCancel = 3,
  vbYesNo = 4,
  vbRetryCancel = 5,
  vbCritical = 16,
  vbQuestion = 32,
  vbExclamation = 48,
  vbInformation = 64,
  vbDefaultButton1 = 0,
  vbDefaultButton2 = 256,
  vbDefaultButton3 = 512,
};
// The mask of the button group within a style.
inline constexpr int kMsgBoxButtonsMask = 7;

// The button the user pressed.
enum MsgBoxResult : int {
  vbOK = 1,
  vbCancel = 2,
  vbAbort = 3,
  vbRetry = 4,
  vbIgnore = 5,
  vbYes = 6,
  vbNo = 7,
};

// Window states for ShellExecute's `show`.
inline constexpr int kShowNormal = 1;
// ShellExecute results: above 32 is success; 31 means no program is associated with the file.
inline constexpr int kShellNoAssociation = 31;
inline constexpr int kShellFileNotFound = 2;

// The properties of the common file dialog that the program sets.
struct FileDialogRequest {
  std::string title;        // the dialog's title (DialogTitle)
  std::string filter;       // "description|patterns" pairs joined by "|": "ADIF (*.adi)|*.adi"
  std::string initialDir;   // folder shown first (InitDir); empty for the desktop's choice
  std::string initialFile;  // file name proposed (FileName)
  std::string defaultExt;   // added to a name typed without extension, e.g. ".adi"
  int flags = 0;            // the dialog's Flags: 4096 the file must exist, 8 keep the folder
};

// In the window system's units (pixels here).
struct ScreenSize {
  int width = 1920;   // pixels
  int height = 1080;  // pixels
};

// A text's width in twips from fixed proportions of the font's size: narrow characters (blank,
// "i", "l", punctuation) 0.3 of an em, wide ones ("M", "W", "m", "w", "@") 0.9, others 0.55;
// bold adds a tenth. An em is the size in points times 20 twips.
int ApproximateTextWidth(const Font& font, const std::string& text);

class Desktop {
 public:
  virtual ~Desktop() = default;

  // Shows a modal message box; returns the MsgBoxResult of the button pressed.
  virtual int MsgBox(const std::string& prompt, int buttons, const std::string& title) = 0;
  // Asks for one line of text; cancel gives "".
  virtual std::string InputBox(const std::string& prompt, const std::string& title,
                               const std::string& defaultText) = 0;
  // Both return the chosen pathname; cancel throws vb::VbError(32755).
  virtual std::string OpenFileDialog(const FileDialogRequest& request) = 0;
  virtual std::string SaveFileDialog(const FileDialogRequest& request) = 0;
  // Performs `operation` ("Open") on the file, with `parameters` when the file is a program;
  // returns a value above 32 on success, or an error code such as kShellNoAssociation.
  virtual int ShellExecute(const std::string& operation, const std::string& file,
                           const std::string& parameters, const std::string& directory,
                           int show) = 0;
  // Lets the user choose the program to open the file with.
  virtual void OpenWith(const std::string& file) = 0;
  // The screen's size; a desktop without a screen answers a common one.
  virtual ScreenSize Screen() const { return {}; }
  // The width of `text` drawn in `font`, in twips. A desktop without a screen measures with
  // fixed character widths (ApproximateTextWidth), so that layouts come out alike everywhere.
  virtual int TextWidth(const Font& font, const std::string& text) const {
    return ApproximateTextWidth(font, text);
  }
};

}  // namespace vellumar::ui
