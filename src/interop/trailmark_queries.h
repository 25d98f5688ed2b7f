#pragma once
// The questions this program puts to Trailmark, the QSL route program: "getqslinfo" with the
// callsign, on a link to its server topic. Each question is counted, so that the places that ask
// can be seen asking, and handed to the sender, the client's link, once one is set.
#include <functional>
#include <string>

namespace vellumar::interop {

class TrailmarkQueries {
 public:
  // Asks for the QSL route of a callsign; the answer arrives later in the lookup slots.
  void GetQSLInfo(const std::string& callsign) {
    ++questions_;
    lastCallsign_ = callsign;
    if (sender_) sender_(callsign);
  }
  void SetSender(std::function<void(const std::string& callsign)> sender) {
    sender_ = std::move(sender);
  }
  int Questions() const { return questions_; }
  const std::string& LastCallsign() const { return lastCallsign_; }

 private:
  int questions_ = 0;
  std::string lastCallsign_;
  std::function<void(const std::string&)> sender_;
};

}  // namespace vellumar::interop
