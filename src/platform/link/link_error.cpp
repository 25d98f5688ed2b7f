#include "platform/link/link_error.h"

#include "platform/vb/error.h"

namespace vellumar::link {

std::string LinkErrorDescription(int number) {
  switch (number) {
    case kNoResponder:
      return "No foreign application responded to a DDE initiate";
    case kRefused:
      return "Foreign application won't perform DDE method or operation";
    case kTimeout:
      return "Timeout while waiting for DDE response";
    case kNoChannel:
      return "DDE method invoked with no channel open";
    default:
      return vb::ErrorDescription(number);
  }
}

void RaiseLinkError(int number) { throw vb::VbError(number, LinkErrorDescription(number)); }

}  // namespace vellumar::link
