#pragma once
// Encodings shared by every kind of HTTP client and by the test server: URL encoding, query
// strings, multipart/form-data bodies, and taking a URL apart.
#include <optional>
#include <string>
#include <vector>

#include "platform/net/http_client.h"

namespace vellumar::net {

// Every byte but A-Z a-z 0-9 - . _ ~ as %XX (upper-case hex).
std::string UrlEncode(const std::string& text);
// %XX back to bytes and "+" to a blank; a broken escape stays as it is.
std::string UrlDecode(const std::string& text);
// "a=1&b=x%20y" from the fields, in order; "" for none.
std::string QueryString(const std::vector<FormField>& fields);
// The fields of "a=1&b=x%20y", decoded, in order.
std::vector<FormField> ParseQueryString(const std::string& query);
// `url` with the fields' query string added ("?" or "&" as the URL needs).
std::string WithQuery(const std::string& url, const std::vector<FormField>& fields);

struct MultipartBody {
  std::string contentType;  // "multipart/form-data; boundary=..."
  std::string body;
};
// The fields as one multipart/form-data body, with a boundary found in none of the values.
MultipartBody EncodeMultipart(const std::vector<FormField>& fields);
// The fields of a multipart/form-data body given its Content-Type; nullopt if it isn't one.
std::optional<std::vector<FormField>> ParseMultipart(const std::string& contentType,
                                                     const std::string& body);

struct UrlParts {
  std::string scheme;  // "http", "https", lower case
  std::string host;
  int port = 0;        // given or the scheme's own
  std::string target;  // path and query, "/" at least
};
// nullopt for a URL that isn't http(s)://host[:port][/...].
std::optional<UrlParts> ParseUrl(const std::string& url);

}  // namespace vellumar::net
