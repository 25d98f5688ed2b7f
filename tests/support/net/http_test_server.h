#pragma once
// An HTTP/1.1 server for tests, on 127.0.0.1 only, on a port the system picks. Each request
// gets the next scripted answer in order (a status and body, after an optional silence, or a
// connection dropped without answer); a request with no answer left gets 500 and is counted
// as unscripted. Every request is recorded with its headers, body and the fields of its query
// and form. It is bounded: requests and their sizes are limited, and it stops by itself after
// its lifetime, or when destroyed.
#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/net/http_client.h"

namespace vellumar::test {

struct RecordedRequest {
  std::string method;                                        // "GET", "POST"
  std::string target;                                        // path and query as sent
  std::string path;                                          // before "?"
  std::vector<net::FormField> query;                         // decoded, in order
  std::vector<std::pair<std::string, std::string>> headers;  // names lower-cased
  std::string body;                                          // bytes as received
  std::vector<net::FormField> form;  // multipart or URL-encoded body, decoded

  // The first header of that (lower-case) name, or "".
  std::string Header(const std::string& name) const;
  // The first form field of that name, or null.
  const net::FormField* Field(const std::string& name) const;
};

struct ScriptedResponse {
  int status = 200;
  std::string body;
  std::string contentType = "text/html";
  std::chrono::milliseconds silence{0};  // wait before answering
  bool drop = false;                     // close the connection without answering
};

class HttpTestServer {
 public:
  struct Limits {
    std::size_t maxRequests = 1000;                 // further ones are answered 503
    std::size_t maxRequestBytes = 8 * 1024 * 1024;  // a larger request gets 413
    std::size_t maxConnections = 256;               // further ones are closed at once
    std::chrono::seconds lifetime{300};             // then the server stops by itself
  };

  HttpTestServer() : HttpTestServer(Limits{}) {}
  explicit HttpTestServer(Limits limits);
  ~HttpTestServer();
  HttpTestServer(const HttpTestServer&) = delete;
  HttpTestServer& operator=(const HttpTestServer&) = delete;

  int Port() const { return port_; }
  // "http://127.0.0.1:<port>" + path.
  std::string Url(const std::string& path) const;

  // Answers, taken in order by the requests to come.
  void Answer(ScriptedResponse response);
  void Answer(int status, std::string body);

  std::vector<RecordedRequest> Requests() const;
  std::size_t Unscripted() const;
  // Stops accepting and closes every connection; waits for its threads.
  void Stop();

 private:
  void AcceptLoop();
  void Serve(int socket);
  // Reads one request; false when the connection ended or broke the limits (then answered).
  bool ReadRequest(int socket, std::string& buffer, RecordedRequest& request);
  ScriptedResponse NextAnswer(const RecordedRequest& request);
  bool Stopping() const;

  Limits limits_;
  int listener_ = -1;
  int port_ = 0;
  std::chrono::steady_clock::time_point deadline_;
  std::atomic<bool> stop_{false};
  std::thread acceptor_;
  std::vector<std::thread> connections_;  // touched by the acceptor only, joined at Stop

  mutable std::mutex mutex_;  // guards what follows
  std::deque<ScriptedResponse> script_;
  std::vector<RecordedRequest> requests_;
  std::size_t unscripted_ = 0;
};

}  // namespace vellumar::test
