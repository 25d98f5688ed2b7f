#pragma once
// The errors a link raises, as runtime errors with the runtime's numbers for them, so that a
// procedure's failure tail reports them like any other.
#include <string>

namespace vellumar::link {

enum LinkErrorNumber : int {
  // No program answered for "Application|Topic": nobody owns the name, it doesn't serve the
  // topic, or the peer has gone.
  kNoResponder = 282,
  // The peer won't do it: a command refused, an item it doesn't serve.
  kRefused = 285,
  // The peer didn't answer in time.
  kTimeout = 286,
  // A command or request on a link that isn't open.
  kNoChannel = 293,
};

// The runtime's description of each number above.
std::string LinkErrorDescription(int number);

// Raises vb::VbError with `number` and its description.
[[noreturn]] void RaiseLinkError(int number);

}  // namespace vellumar::link
