#pragma once
// For the start-up benchmark: when VELLUMAR_FIRST_PAINT_FD names an open file descriptor, the
// first paint of each window writes one line to it, "<CLOCK_MONOTONIC nanoseconds> <window's
// object name>", so that a parent that noted the clock before exec knows how long the start took
// up to what the operator sees. Otherwise it does nothing.
#include <QObject>
#include <QSet>

namespace vellumar::qt {

class FirstPaintProbe : public QObject {
 public:
  // Installs itself on the application when the variable is set.
  static void InstallWhenAsked();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  explicit FirstPaintProbe(int fd);
  int fd_;
  QSet<const QObject*> painted_;  // windows already told
};

}  // namespace vellumar::qt
