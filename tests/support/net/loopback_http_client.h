#pragma once
// A plain-HTTP client for tests that only talks to 127.0.0.1: one connection per request,
// "Connection: close", Content-Length bodies. It goes through the program's client interface
// and encodings, so a test can run a request to the test server and back without a real
// client library. Anything else (another host, https) is a transport error.
#include "platform/net/http_client.h"

namespace vellumar::test {

class LoopbackHttpClient final : public net::HttpClient {
 public:
  net::HttpResponse Send(const net::HttpRequest& request) override;
};

}  // namespace vellumar::test
