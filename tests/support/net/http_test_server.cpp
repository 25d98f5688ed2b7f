#include "support/net/http_test_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <stdexcept>

#include "platform/net/http_encoding.h"

namespace vellumar::test {

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kSlice = std::chrono::milliseconds(20);  // how often waits look at Stop
constexpr auto kIdle = std::chrono::seconds(5);         // a connection silent this long is closed

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string Trim(const std::string& text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

const char* Reason(int status) {
  switch (status) {
    case 200:
      return "OK";
    case 404:
      return "Not Found";
    case 413:
      return "Payload Too Large";
    case 500:
      return "Internal Server Error";
    case 501:
      return "Not Implemented";
    case 503:
      return "Service Unavailable";
    default:
      return "Status";
  }
}

void WriteAll(int socket, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t n = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (n <= 0) return;
    sent += static_cast<std::size_t>(n);
  }
}

void Respond(int socket, const ScriptedResponse& response) {
  std::string head = "HTTP/1.1 " + std::to_string(response.status) + " " + Reason(response.status) +
                     "\r\nContent-Type: " + response.contentType +
                     "\r\nContent-Length: " + std::to_string(response.body.size()) + "\r\n\r\n";
  WriteAll(socket, head + response.body);
}

}  // namespace

std::string RecordedRequest::Header(const std::string& name) const {
  for (const auto& [key, value] : headers) {
    if (key == name) return value;
  }
  return "";
}

const net::FormField* RecordedRequest::Field(const std::string& name) const {
  for (const net::FormField& field : form) {
    if (field.name == name) return &field;
  }
  return nullptr;
}

HttpTestServer::HttpTestServer(Limits limits)
    : limits_(limits), deadline_(Clock::now() + limits.lifetime) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (listener_ < 0) throw std::runtime_error("test server: no socket");
  const int yes = 1;
  ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = 0;
  socklen_t length = sizeof address;
  if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(listener_, 64) != 0 ||
      ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    ::close(listener_);
    throw std::runtime_error("test server: can't listen on 127.0.0.1");
  }
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { AcceptLoop(); });
}

HttpTestServer::~HttpTestServer() { Stop(); }

std::string HttpTestServer::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

void HttpTestServer::Answer(ScriptedResponse response) {
  std::lock_guard lock(mutex_);
  script_.push_back(std::move(response));
}

void HttpTestServer::Answer(int status, std::string body) {
  ScriptedResponse response;
  response.status = status;
  response.body = std::move(body);
  Answer(std::move(response));
}

std::vector<RecordedRequest> HttpTestServer::Requests() const {
  std::lock_guard lock(mutex_);
  return requests_;
}

std::size_t HttpTestServer::Unscripted() const {
  std::lock_guard lock(mutex_);
  return unscripted_;
}

bool HttpTestServer::Stopping() const { return stop_ || Clock::now() >= deadline_; }

void HttpTestServer::Stop() {
  stop_ = true;
  if (acceptor_.joinable()) acceptor_.join();
  for (std::thread& connection : connections_) {
    if (connection.joinable()) connection.join();
  }
  connections_.clear();
  if (listener_ >= 0) ::close(listener_);
  listener_ = -1;
}

void HttpTestServer::AcceptLoop() {
  while (!Stopping()) {
    pollfd wait{listener_, POLLIN, 0};
    if (::poll(&wait, 1, static_cast<int>(kSlice.count())) <= 0) continue;
    sockaddr_in peer{};
    socklen_t length = sizeof peer;
    const int socket =
        ::accept4(listener_, reinterpret_cast<sockaddr*>(&peer), &length, SOCK_CLOEXEC);
    if (socket < 0) continue;
    const bool loopback = (ntohl(peer.sin_addr.s_addr) >> 24) == 127;
    if (!loopback || connections_.size() >= limits_.maxConnections) {
      ::close(socket);
      continue;
    }
    connections_.emplace_back([this, socket] {
      Serve(socket);
      ::close(socket);
    });
  }
}

void HttpTestServer::Serve(int socket) {
  std::string buffer;  // bytes read and not yet used
  while (!Stopping()) {
    RecordedRequest request;
    if (!ReadRequest(socket, buffer, request)) return;
    const ScriptedResponse response = NextAnswer(request);
    if (response.drop) return;
    for (auto until = Clock::now() + response.silence; Clock::now() < until;) {
      if (Stopping()) return;
      std::this_thread::sleep_for(std::min<Clock::duration>(kSlice, until - Clock::now()));
    }
    Respond(socket, response);
    if (Lower(request.Header("connection")) == "close") return;
  }
}

bool HttpTestServer::ReadRequest(int socket, std::string& buffer, RecordedRequest& request) {
  auto lastData = Clock::now();
  // Reads more bytes into the buffer; false when the connection ends, idles or stops.
  const auto readMore = [&]() {
    while (!Stopping() && Clock::now() - lastData < kIdle) {
      pollfd wait{socket, POLLIN, 0};
      if (::poll(&wait, 1, static_cast<int>(kSlice.count())) <= 0) continue;
      char chunk[16384];
      const ssize_t n = ::recv(socket, chunk, sizeof chunk, 0);
      if (n <= 0) return false;
      buffer.append(chunk, static_cast<std::size_t>(n));
      lastData = Clock::now();
      return true;
    }
    return false;
  };

  std::size_t headEnd;
  while ((headEnd = buffer.find("\r\n\r\n")) == std::string::npos) {
    if (buffer.size() > limits_.maxRequestBytes) {
      Respond(socket, {413, "request too large", "text/plain"});
      return false;
    }
    if (!readMore()) return false;
  }
  const std::string head = buffer.substr(0, headEnd);
  std::size_t lineEnd = head.find("\r\n");
  const std::string requestLine = head.substr(0, lineEnd);
  const std::size_t firstBlank = requestLine.find(' ');
  const std::size_t secondBlank = requestLine.find(' ', firstBlank + 1);
  if (firstBlank == std::string::npos || secondBlank == std::string::npos) return false;
  request.method = requestLine.substr(0, firstBlank);
  request.target = requestLine.substr(firstBlank + 1, secondBlank - firstBlank - 1);
  const std::size_t question = request.target.find('?');
  request.path = request.target.substr(0, question);
  if (question != std::string::npos) {
    request.query = net::ParseQueryString(request.target.substr(question + 1));
  }
  while (lineEnd != std::string::npos && lineEnd < head.size()) {
    const std::size_t start = lineEnd + 2;
    lineEnd = head.find("\r\n", start);
    const std::string line =
        head.substr(start, lineEnd == std::string::npos ? std::string::npos : lineEnd - start);
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    request.headers.emplace_back(Lower(Trim(line.substr(0, colon))), Trim(line.substr(colon + 1)));
  }

  if (!request.Header("transfer-encoding").empty()) {
    Respond(socket, {501, "only Content-Length bodies", "text/plain"});
    return false;
  }
  std::size_t length = 0;
  const std::string lengthText = request.Header("content-length");
  if (!lengthText.empty()) {
    try {
      length = std::stoul(lengthText);
    } catch (...) {
      return false;
    }
  }
  if (length > limits_.maxRequestBytes) {
    Respond(socket, {413, "request too large", "text/plain"});
    return false;
  }
  while (buffer.size() < headEnd + 4 + length) {
    if (!readMore()) return false;
  }
  request.body = buffer.substr(headEnd + 4, length);
  buffer.erase(0, headEnd + 4 + length);

  const std::string contentType = request.Header("content-type");
  if (auto fields = net::ParseMultipart(contentType, request.body)) {
    request.form = std::move(*fields);
  } else if (Lower(contentType).rfind("application/x-www-form-urlencoded", 0) == 0) {
    request.form = net::ParseQueryString(request.body);
  }
  return true;
}

ScriptedResponse HttpTestServer::NextAnswer(const RecordedRequest& request) {
  std::lock_guard lock(mutex_);
  if (requests_.size() >= limits_.maxRequests) {
    return {503, "too many requests for this test server", "text/plain"};
  }
  requests_.push_back(request);
  if (script_.empty()) {
    ++unscripted_;
    return {500, "no scripted response", "text/plain"};
  }
  ScriptedResponse response = std::move(script_.front());
  script_.pop_front();
  return response;
}

}  // namespace vellumar::test
