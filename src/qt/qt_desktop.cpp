#include "qt/qt_desktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetrics>
#include <QInputDialog>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>

#include "platform/vb/error.h"
#include "qt/conversions.h"
#include "qt/file_filter.h"

namespace vellumar::qt {
namespace {

constexpr int kCancelError = 32755;        // the common dialog's "cancel was selected"
constexpr int kShellLaunched = 42;         // any value above 32 is success
constexpr int kIconMask = 0x70;            // vbCritical..vbInformation
constexpr int kDefaultButtonMask = 0x300;  // vbDefaultButton1..3

// Dialogs sit over the window the operator works in, if any is active.
QWidget* DialogParent() { return QApplication::activeWindow(); }

QString TitleOr(const std::string& title) {
  return title.empty() ? QApplication::applicationName() : ToQString(title);
}

bool IsLink(const QString& file) {
  return file.startsWith(QLatin1String("http://")) || file.startsWith(QLatin1String("https://")) ||
         file.startsWith(QLatin1String("mailto:")) || file.startsWith(QLatin1String("file:"));
}

}  // namespace

std::vector<MsgBoxButton> MsgBoxButtons(int style) {
  using B = QMessageBox;
  switch (style & ui::kMsgBoxButtonsMask) {
    case ui::vbOKCancel:
      return {{B::Ok, ui::vbOK}, {B::Cancel, ui::vbCancel}};
    case ui::vbAbortRetryIgnore:
      return {{B::Abort, ui::vbAbort}, {B::Retry, ui::vbRetry}, {B::Ignore, ui::vbIgnore}};
    case ui::vbYesNoCancel:
      return {{B::Yes, ui::vbYes}, {B::No, ui::vbNo}, {B::Cancel, ui::vbCancel}};
    case ui::vbYesNo:
      return {{B::Yes, ui::vbYes}, {B::No, ui::vbNo}};
    case ui::vbRetryCancel:
      return {{B::Retry, ui::vbRetry}, {B::Cancel, ui::vbCancel}};
    default:
      return {{B::Ok, ui::vbOK}};
  }
}

QMessageBox::Icon MsgBoxIcon(int style) {
  switch (style & kIconMask) {
    case ui::vbCritical:
      return QMessageBox::Critical;
    case ui::vbQuestion:
      return QMessageBox::Question;
    case ui::vbExclamation:
      return QMessageBox::Warning;
    case ui::vbInformation:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

int MsgBoxResultFor(int style, QMessageBox::StandardButton pressed) {
  for (const MsgBoxButton& b : MsgBoxButtons(style))
    if (b.button == pressed) return b.result;
  // A box closed without a button of its own: the runtime answers Cancel where there is one,
  // and OK for a box that has only OK.
  const auto buttons = MsgBoxButtons(style);
  return buttons.size() == 1 ? buttons.front().result : ui::vbCancel;
}

int QtDesktop::MsgBox(const std::string& prompt, int buttons, const std::string& title) {
  QMessageBox box(DialogParent());
  box.setWindowTitle(TitleOr(title));
  box.setText(ToQString(prompt));
  box.setIcon(MsgBoxIcon(buttons));
  const auto set = MsgBoxButtons(buttons);
  QMessageBox::StandardButtons standard;
  for (const MsgBoxButton& b : set) standard |= b.button;
  box.setStandardButtons(standard);
  const size_t defaultIndex = static_cast<size_t>((buttons & kDefaultButtonMask) >> 8);
  box.setDefaultButton(set[defaultIndex < set.size() ? defaultIndex : 0].button);
  const int answer = box.exec();
  return MsgBoxResultFor(buttons, static_cast<QMessageBox::StandardButton>(answer));
}

std::string QtDesktop::InputBox(const std::string& prompt, const std::string& title,
                                const std::string& defaultText) {
  QInputDialog dialog(DialogParent());
  dialog.setObjectName(QStringLiteral("InputBox"));  // named for scripts that drive the program
  dialog.setWindowTitle(TitleOr(title));
  dialog.setInputMode(QInputDialog::TextInput);
  dialog.setLabelText(ToQString(prompt));
  dialog.setTextValue(ToQString(defaultText));
  return dialog.exec() == QDialog::Accepted ? ToStdString(dialog.textValue()) : std::string();
}

std::string QtDesktop::FileDialog(const ui::FileDialogRequest& request, bool save) {
  QFileDialog dialog(DialogParent(), ToQString(request.title));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  const QString filter = QtFileFilter(request.filter);
  if (!filter.isEmpty()) dialog.setNameFilter(filter);
  if (!request.initialDir.empty()) dialog.setDirectory(ToQString(request.initialDir));
  if (!request.initialFile.empty()) {
    const QFileInfo proposed(ToQString(request.initialFile));
    if (proposed.isAbsolute()) dialog.setDirectory(proposed.absolutePath());
    dialog.selectFile(proposed.fileName());
  }
  QString suffix = ToQString(request.defaultExt);
  if (suffix.startsWith(QLatin1Char('.'))) suffix.remove(0, 1);
  if (!suffix.isEmpty()) dialog.setDefaultSuffix(suffix);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
    vb::Raise(kCancelError, "Cancel was selected.");
  return ToStdString(dialog.selectedFiles().front());
}

std::string QtDesktop::OpenFileDialog(const ui::FileDialogRequest& request) {
  return FileDialog(request, false);
}

std::string QtDesktop::SaveFileDialog(const ui::FileDialogRequest& request) {
  return FileDialog(request, true);
}

int QtDesktop::ShellExecute(const std::string& operation, const std::string& file,
                            const std::string& parameters, const std::string& directory, int show) {
  const QString path = ToQString(file);
  if (IsLink(path))
    return QDesktopServices::openUrl(QUrl(path)) ? kShellLaunched : ui::kShellNoAssociation;

  QFileInfo info(path);
  if (info.isRelative() && !directory.empty()) info = QFileInfo(QDir(ToQString(directory)), path);
  // A program is started with its parameters; a document goes to the program of its type.
  const bool program = !parameters.empty() || (info.isFile() && info.isExecutable());
  if (program) {
    // A bare name is looked for on the PATH, as the shell would.
    const QString executable =
        info.exists() ? info.absoluteFilePath() : QStandardPaths::findExecutable(path);
    if (executable.isEmpty()) return ui::kShellFileNotFound;
    const QStringList arguments = QProcess::splitCommand(ToQString(parameters));
    const QString workingDir = directory.empty() ? QString() : ToQString(directory);
    return QProcess::startDetached(executable, arguments, workingDir) ? kShellLaunched
                                                                      : ui::kShellFileNotFound;
  }
  if (!info.exists()) return ui::kShellFileNotFound;
  const auto lookUp = DefaultApplicationFor ? DefaultApplicationFor : XdgDefaultApplication;
  if (lookUp(ToStdString(info.absoluteFilePath())).empty()) return ui::kShellNoAssociation;
  return QDesktopServices::openUrl(QUrl::fromLocalFile(info.absoluteFilePath()))
             ? kShellLaunched
             : ui::kShellNoAssociation;
}

void QtDesktop::OpenWith(const std::string& file) {
  const QString program = QFileDialog::getOpenFileName(
      DialogParent(), QStringLiteral("Open %1 with").arg(QFileInfo(ToQString(file)).fileName()),
      QStringLiteral("/usr/bin"));
  if (program.isEmpty()) return;
  QProcess::startDetached(program, {ToQString(file)});
}

ui::ScreenSize QtDesktop::Screen() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  return {screen->size().width(), screen->size().height()};
}

int QtDesktop::TextWidth(const ui::Font& font, const std::string& text) const {
  // The models' default font stands for the desktop's own, as in the widgets.
  const QFont base = QApplication::font();
  const QFont drawn = font == ui::Font{} ? base : ToQFont(font, base);
  return TwipsFromPixels(QFontMetrics(drawn).horizontalAdvance(ToQString(text)));
}

std::string XdgDefaultApplication(const std::string& file) {
  auto run = [](const QStringList& arguments) -> QString {
    QProcess process;
    process.start(QStringLiteral("xdg-mime"), arguments);
    if (!process.waitForFinished(5000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
      return {};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
  };
  const QString type = run({QStringLiteral("query"), QStringLiteral("filetype"), ToQString(file)});
  if (type.isEmpty()) return {};
  return ToStdString(run({QStringLiteral("query"), QStringLiteral("default"), type}));
}

}  // namespace vellumar::qt
