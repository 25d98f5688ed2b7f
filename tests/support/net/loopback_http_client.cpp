#include "support/net/loopback_http_client.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/net/http_encoding.h"

namespace vellumar::test {

namespace {

using Clock = std::chrono::steady_clock;

net::HttpResponse Failure(std::string error) {
  net::HttpResponse response;
  response.error = std::move(error);
  return response;
}

// Milliseconds left until `deadline`, at least 0.
int Left(Clock::time_point deadline) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

// Closes the socket on every path.
struct Socket {
  int fd = -1;
  ~Socket() {
    if (fd >= 0) ::close(fd);
  }
};

}  // namespace

net::HttpResponse LoopbackHttpClient::Send(const net::HttpRequest& request) {
  const auto url = net::ParseUrl(request.url);
  if (!url || url->scheme != "http" || (url->host != "127.0.0.1" && url->host != "localhost")) {
    return Failure("only http://127.0.0.1 is served by the loopback client: " + request.url);
  }
  const auto start = Clock::now();
  const auto total = start + request.totalTimeout;
  const auto connectBy = std::min(total, start + request.connectTimeout);

  std::string target = net::WithQuery(url->target, request.query);
  std::string head = request.method + " " + target + " HTTP/1.1\r\nHost: " + url->host + ":" +
                     std::to_string(url->port) + "\r\nConnection: close\r\n";
  std::string body;
  if (!request.form.empty()) {
    net::MultipartBody multipart = net::EncodeMultipart(request.form);
    head += "Content-Type: " + multipart.contentType + "\r\n";
    body = std::move(multipart.body);
  }
  if (request.method == "POST" || !body.empty()) {
    head += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  }
  const std::string bytes = head + "\r\n" + body;

  Socket socket;
  socket.fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socket.fd < 0) return Failure(std::string("socket: ") + std::strerror(errno));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<uint16_t>(url->port));
  if (::connect(socket.fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    if (errno != EINPROGRESS) return Failure(std::string("connect: ") + std::strerror(errno));
    pollfd wait{socket.fd, POLLOUT, 0};
    if (::poll(&wait, 1, Left(connectBy)) <= 0) return Failure("connect: timed out");
    int error = 0;
    socklen_t length = sizeof error;
    ::getsockopt(socket.fd, SOL_SOCKET, SO_ERROR, &error, &length);
    if (error != 0) return Failure(std::string("connect: ") + std::strerror(error));
  }

  for (std::size_t sent = 0; sent < bytes.size();) {
    pollfd wait{socket.fd, POLLOUT, 0};
    if (::poll(&wait, 1, Left(total)) <= 0) return Failure("send: timed out");
    const ssize_t n = ::send(socket.fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (n < 0 && errno != EAGAIN) return Failure(std::string("send: ") + std::strerror(errno));
    if (n > 0) sent += static_cast<std::size_t>(n);
  }

  // The answer: everything until the server closes, or Content-Length bytes of body.
  std::string answer;
  std::size_t wanted = std::string::npos;  // whole answer's size once known
  while (answer.size() < wanted) {
    pollfd wait{socket.fd, POLLIN, 0};
    if (::poll(&wait, 1, Left(total)) <= 0) return Failure("receive: timed out");
    char chunk[16384];
    const ssize_t n = ::recv(socket.fd, chunk, sizeof chunk, 0);
    if (n < 0 && errno == EAGAIN) continue;
    if (n < 0) return Failure(std::string("receive: ") + std::strerror(errno));
    if (n == 0) break;
    answer.append(chunk, static_cast<std::size_t>(n));
    const std::size_t headEnd = answer.find("\r\n\r\n");
    if (wanted == std::string::npos && headEnd != std::string::npos) {
      std::string lower = answer.substr(0, headEnd);
      for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      const std::size_t at = lower.find("\r\ncontent-length:");
      if (at != std::string::npos) wanted = headEnd + 4 + std::stoul(lower.substr(at + 17));
    }
  }
  const std::size_t headEnd = answer.find("\r\n\r\n");
  if (answer.rfind("HTTP/1.", 0) != 0 || headEnd == std::string::npos || answer.size() < 12) {
    return Failure(answer.empty() ? "receive: connection closed without an answer"
                                  : "receive: not an HTTP answer");
  }
  if (wanted != std::string::npos && answer.size() < wanted) {
    return Failure("receive: answer cut short");
  }
  net::HttpResponse response;
  response.ok = true;
  response.status = std::atoi(answer.substr(9, 3).c_str());
  response.body = answer.substr(headEnd + 4);
  if (wanted != std::string::npos) response.body.resize(wanted - headEnd - 4);
  return response;
}

}  // namespace vellumar::test
