#pragma once
// The signals that ask the process to end (SIGTERM, SIGINT, SIGHUP), delivered as an event of
// the Qt loop: the handler only writes the signal's number into a pipe, and a socket notifier
// runs the callback on the program's thread, where the model may run its unload order.
#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace vellumar::qt {

class TerminationSignal : public QObject {
 public:
  // `onSignal` gets the form unload mode that fits the signal: vbAppWindows for a hang-up (the
  // session ends), vbAppTaskManager for the others.
  explicit TerminationSignal(std::function<void(int unloadMode)> onSignal);
  ~TerminationSignal() override;
  TerminationSignal(const TerminationSignal&) = delete;
  TerminationSignal& operator=(const TerminationSignal&) = delete;

 private:
  void Readable();
  std::function<void(int)> onSignal_;
  QSocketNotifier* notifier_ = nullptr;
};

}  // namespace vellumar::qt
