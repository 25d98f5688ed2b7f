#pragma once
// The questions this program puts to Trailmark, the QSL route program: "getqslinfo" with the
// callsign, on a link to its server topic. That link comes with the other conversations; until
// it exists a question is counted and goes no further, so that the places that ask can already
// be seen asking.
#include <string>

namespace vellumar::interop {

class TrailmarkQueries {
 public:
  // Asks for the QSL route of a callsign; the answer arrives later in the lookup slots.
  void GetQSLInfo(const std::string& callsign) {
    ++questions_;
    lastCallsign_ = callsign;
  }
  int Questions() const { return questions_; }
  const std::string& LastCallsign() const { return lastCallsign_; }

 private:
  int questions_ = 0;
  std::string lastCallsign_;
};

}  // namespace vellumar::interop
