// Vellumar, the desktop program: the application's models on the real platform (the user's
// data folder and settings, the system clock, the Qt event loop and desktop), shown in Qt
// windows. The program ends the way its main window unloads: a close by the window manager
// asks the main window's QueryUnload, a termination signal runs the same order as the task
// manager's ending, and the unload's last step ends the Qt loop with its exit code.
#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QTextStream>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <optional>

#include "frame/common.h"
#include "frame/data_folder.h"
#include "frame/settings_store.h"
#include "platform/services/clock.h"
#include "program/application.h"
#include "qt/dbus_endpoint.h"
#include "qt/first_paint_probe.h"
#include "qt/program_views.h"
#include "qt/qt_desktop.h"
#include "qt/qt_event_loop.h"
#include "qt/termination_signal.h"
#include "station/installed_files.h"

namespace {

// For scripts that drive the program from outside (the screenshots): once the windows are up,
// the file named by VELLUMAR_WIDGET_MAP lists each named widget shown, with its place on the
// screen, one per line: "name x y width height" in pixels.
void WriteWidgetMapWhenAsked() {
  const QString path = qEnvironmentVariable("VELLUMAR_WIDGET_MAP");
  if (path.isEmpty()) return;
  QTimer::singleShot(1000, [path] {
    QFile file(path + QStringLiteral(".part"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) return;
    QTextStream out(&file);
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      QList<QWidget*> widgets = window->findChildren<QWidget*>();
      widgets.prepend(window);
      for (QWidget* w : widgets) {
        if (w->objectName().isEmpty() || !w->isVisible()) continue;
        const QPoint at = w->mapToGlobal(QPoint(0, 0));
        out << w->objectName() << ' ' << at.x() << ' ' << at.y() << ' ' << w->width() << ' '
            << w->height() << '\n';
      }
    }
    file.close();
    QFile::remove(path);
    file.rename(path);  // whole or not at all, for the reader
  });
}

}  // namespace

int main(int argc, char** argv) {
  QApplication qapp(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Vellumar"));
  // The menu entry's name: the window manager groups the windows under the entry and its icon
  // (the icon theme holds it once the program is installed).
  QGuiApplication::setDesktopFileName(QStringLiteral("org.vellumar.Vellumar"));
  QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.vellumar.Vellumar")));
  // Windows close when their forms unload; the last one closing ends nothing by itself.
  QApplication::setQuitOnLastWindowClosed(false);
  vellumar::qt::FirstPaintProbe::InstallWhenAsked();

  vellumar::qt::QtEventLoop loop;
  vellumar::qt::QtDesktop desktop;
  vellumar::ui::SystemClock clock;
  const vellumar::DataFolder dataFolder = vellumar::DataFolder::FromEnvironment();

  std::optional<int> exitCode;  // set by the unload's last step
  // The sibling programs' transport, on the session bus; it outlives the program's links.
  vellumar::qt::DBusEndpoint siblingBus;
  vellumar::Application app(vellumar::ApplicationPlatform{
      .common =
          vellumar::CommonContext{.dataFolder = dataFolder, .clock = clock, .desktop = desktop},
      .loop = loop,
      .settingsRoot = vellumar::SettingsStore::DefaultRoot(),
      .installedData = vellumar::InstalledDataFolder(),
      .exitProcess =
          [&exitCode](int code) {
            exitCode = code;
            QCoreApplication::exit(code);
          },
      .link = &siblingBus,
  });
  vellumar::qt::ProgramViews views(app);
  vellumar::qt::TerminationSignal termination([&app, &exitCode](int unloadMode) {
    if (!app.Ended()) app.CloseMainWindow(unloadMode);
    if (!app.Ended()) {
      // Refused (an import is running): the process is asked to end all the same.
      std::fprintf(stderr, "vellumar: ending without the main window's unload\n");
      exitCode = 1;
      QCoreApplication::exit(1);
    }
  });

  app.Start();
  // A fatal condition of the start-up ends the program before the loop runs.
  if (exitCode) return *exitCode;
  WriteWidgetMapWhenAsked();
  const int code = QApplication::exec();
  return exitCode.value_or(code);
}
