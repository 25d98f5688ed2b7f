#include "qt/first_paint_probe.h"

#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <cstdio>
#include <ctime>
#include <string>

namespace vellumar::qt {

FirstPaintProbe::FirstPaintProbe(int fd) : QObject(qApp), fd_(fd) {}

void FirstPaintProbe::InstallWhenAsked() {
  const QByteArray fd = qgetenv("VELLUMAR_FIRST_PAINT_FD");
  if (fd.isEmpty()) return;
  bool number = false;
  const int n = fd.toInt(&number);
  if (!number || n < 0) return;
  qApp->installEventFilter(new FirstPaintProbe(n));
}

bool FirstPaintProbe::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Paint || !watched->isWidgetType()) return false;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const QWidget* window = static_cast<QWidget*>(watched)->window();
  if (painted_.contains(window)) return false;
  painted_.insert(window);
  std::string line = std::to_string(static_cast<long long>(now.tv_sec) * 1000000000LL +
                                    now.tv_nsec) +
                     " " + window->objectName().toStdString() + "\n";
  if (write(fd_, line.data(), line.size()) < 0) {
    // The reader has gone: nothing more to tell.
    qApp->removeEventFilter(this);
    deleteLater();
  }
  return false;
}

}  // namespace vellumar::qt
