// The baseline of the start-up benchmark: a bare Qt program that shows one empty window, with
// the same first-paint report as the desktop program.
#include <QApplication>
#include <QWidget>

#include "qt/first_paint_probe.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  vellumar::qt::FirstPaintProbe::InstallWhenAsked();
  QWidget window;
  window.setObjectName(QStringLiteral("Bare"));
  window.resize(800, 600);
  window.show();
  return QApplication::exec();
}
