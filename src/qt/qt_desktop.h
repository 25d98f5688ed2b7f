#pragma once
// The desktop of the running program: Qt's message box, input dialog and file dialogs, and the
// freedesktop opener for files and links.
#include <QMessageBox>
#include <functional>
#include <string>
#include <vector>

#include "platform/services/desktop.h"

namespace vellumar::qt {

// One button of a message box: Qt's button and the runtime's answer for it.
struct MsgBoxButton {
  QMessageBox::StandardButton button;
  int result;  // ui::MsgBoxResult
};

// The buttons of a style's button group, in the order the runtime shows them.
std::vector<MsgBoxButton> MsgBoxButtons(int style);
// Qt's icon for the style's icon group.
QMessageBox::Icon MsgBoxIcon(int style);
// The runtime's answer for a Qt button; vbCancel for one outside the style's set.
int MsgBoxResultFor(int style, QMessageBox::StandardButton pressed);

class QtDesktop final : public ui::Desktop {
 public:
  QtDesktop() = default;

  int MsgBox(const std::string& prompt, int buttons, const std::string& title) override;
  std::string InputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;
  std::string OpenFileDialog(const ui::FileDialogRequest& request) override;
  std::string SaveFileDialog(const ui::FileDialogRequest& request) override;
  int ShellExecute(const std::string& operation, const std::string& file,
                   const std::string& parameters, const std::string& directory, int show) override;
  void OpenWith(const std::string& file) override;
  ui::ScreenSize Screen() const override;
  // Measured with the font's metrics on this screen.
  int TextWidth(const ui::Font& font, const std::string& text) const override;

  // The MIME type's default application, as the freedesktop database names it ("" for none).
  // Replaceable so that a test need not depend on the machine's associations.
  std::function<std::string(const std::string& file)> DefaultApplicationFor;

 private:
  std::string FileDialog(const ui::FileDialogRequest& request, bool save);
};

// The default application of the file's type from xdg-mime; "" when there is none or xdg-mime
// can't be run.
std::string XdgDefaultApplication(const std::string& file);

}  // namespace vellumar::qt
