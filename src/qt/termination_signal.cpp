#include "qt/termination_signal.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/ui/form.h"
#include "qt/qt_event_loop.h"

namespace vellumar::qt {
namespace {

int pipeFds[2] = {-1, -1};  // [0] read by the notifier, [1] written by the handler
constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

void Handler(int signal) {
  const unsigned char number = static_cast<unsigned char>(signal);
  // Nothing else is safe here; a full pipe drops the signal, one is already pending then.
  [[maybe_unused]] const ssize_t written = ::write(pipeFds[1], &number, 1);
}

}  // namespace

TerminationSignal::TerminationSignal(std::function<void(int unloadMode)> onSignal)
    : onSignal_(std::move(onSignal)) {
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pipeFds) != 0) {
    qWarning("vellumar: no pipe for the termination signals; they end the process at once");
    return;
  }
  ::fcntl(pipeFds[1], F_SETFL, ::fcntl(pipeFds[1], F_GETFL) | O_NONBLOCK);
  notifier_ = new QSocketNotifier(pipeFds[0], QSocketNotifier::Read, this);
  connect(notifier_, &QSocketNotifier::activated, this, &TerminationSignal::Readable);
  struct sigaction action = {};
  action.sa_handler = Handler;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (int s : kSignals) ::sigaction(s, &action, nullptr);
}

TerminationSignal::~TerminationSignal() {
  for (int s : kSignals) ::signal(s, SIG_DFL);
  if (pipeFds[0] >= 0) {
    ::close(pipeFds[0]);
    ::close(pipeFds[1]);
    pipeFds[0] = pipeFds[1] = -1;
  }
}

void TerminationSignal::Readable() {
  unsigned char number = 0;
  if (::read(pipeFds[0], &number, 1) != 1) return;
  const int mode = number == SIGHUP ? ui::vbAppWindows : ui::vbAppTaskManager;
  RunEvent("the termination signal", [&] { onSignal_(mode); });
}

}  // namespace vellumar::qt
