#pragma once
// An HTTP client as the program sees it: one request in, a response or a transport error
// out. Implementations follow no redirects and keep certificate checks on for HTTPS.
#include <chrono>
#include <string>
#include <vector>

namespace vellumar::net {

// A name and value of a query or a form. A form field with a file name is sent as a file.
struct FormField {
  FormField() = default;
  FormField(std::string name, std::string value, std::string fileName = {},
            std::string contentType = {})
      : name(std::move(name)),
        value(std::move(value)),
        fileName(std::move(fileName)),
        contentType(std::move(contentType)) {}

  std::string name;
  std::string value;        // bytes as they go out
  std::string fileName;     // non-empty: a file part with this name
  std::string contentType;  // of a file part; "" for application/octet-stream
};

struct HttpRequest {
  std::string method = "GET";    // "GET" or "POST"
  std::string url;               // "https://host/path", without the query
  std::vector<FormField> query;  // added to the URL, each name and value URL-encoded
  std::vector<FormField> form;   // a POST's body as multipart/form-data
  std::chrono::milliseconds connectTimeout{10000};  // to have a connection
  std::chrono::milliseconds totalTimeout{30000};    // for the whole exchange
};

struct HttpResponse {
  bool ok = false;    // an answer came; false: a transport failure, described in `error`
  int status = 0;     // the HTTP status, when ok
  std::string body;   // bytes as received, when ok
  std::string error;  // what failed: refused, unresolved, certificate, timeout...
};

class HttpClient {
 public:
  virtual ~HttpClient() = default;
  // Never throws for a transport failure: the response tells it.
  virtual HttpResponse Send(const HttpRequest& request) = 0;
};

}  // namespace vellumar::net
