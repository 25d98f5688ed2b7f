#include "platform/net/http_encoding.h"

#include <algorithm>
#include <cctype>

namespace vellumar::net {

namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// The value of `key="value"` (or key=value) in a header's parameters, if present.
std::optional<std::string> HeaderParameter(const std::string& header, const std::string& key) {
  const std::string lower = Lower(header);
  std::size_t at = 0;
  while ((at = lower.find(key + "=", at)) != std::string::npos) {
    // Only a whole parameter name: at the start or after ";" or a blank.
    if (at == 0 || lower[at - 1] == ';' || lower[at - 1] == ' ') break;
    at += key.size();
  }
  if (at == std::string::npos) return std::nullopt;
  std::size_t start = at + key.size() + 1;
  if (start < header.size() && header[start] == '"') {
    const std::size_t end = header.find('"', start + 1);
    if (end == std::string::npos) return std::nullopt;
    return header.substr(start + 1, end - start - 1);
  }
  const std::size_t end = header.find(';', start);
  return header.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

}  // namespace

std::string UrlEncode(const std::string& text) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : text) {
    if (std::isalnum(c) || c == '-' || c == '.' || c == '_' || c == '~') {
      out += static_cast<char>(c);
    } else {
      out += '%';
      out += kHex[c >> 4];
      out += kHex[c & 15];
    }
  }
  return out;
}

std::string UrlDecode(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '+') {
      out += ' ';
    } else if (text[i] == '%' && i + 2 < text.size() && HexValue(text[i + 1]) >= 0 &&
               HexValue(text[i + 2]) >= 0) {
      out += static_cast<char>(HexValue(text[i + 1]) * 16 + HexValue(text[i + 2]));
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::string QueryString(const std::vector<FormField>& fields) {
  std::string out;
  for (const FormField& field : fields) {
    if (!out.empty()) out += '&';
    out += UrlEncode(field.name) + "=" + UrlEncode(field.value);
  }
  return out;
}

std::vector<FormField> ParseQueryString(const std::string& query) {
  std::vector<FormField> fields;
  std::size_t start = 0;
  while (start <= query.size() && !query.empty()) {
    std::size_t end = query.find('&', start);
    if (end == std::string::npos) end = query.size();
    const std::string pair = query.substr(start, end - start);
    if (!pair.empty()) {
      const std::size_t equals = pair.find('=');
      FormField field;
      field.name = UrlDecode(pair.substr(0, equals));
      if (equals != std::string::npos) field.value = UrlDecode(pair.substr(equals + 1));
      fields.push_back(std::move(field));
    }
    start = end + 1;
  }
  return fields;
}

std::string WithQuery(const std::string& url, const std::vector<FormField>& fields) {
  if (fields.empty()) return url;
  return url + (url.find('?') == std::string::npos ? "?" : "&") + QueryString(fields);
}

MultipartBody EncodeMultipart(const std::vector<FormField>& fields) {
  std::string boundary = "vellumar-form-boundary";
  const auto occurs = [&fields](const std::string& b) {
    return std::any_of(fields.begin(), fields.end(), [&b](const FormField& field) {
      return field.value.find(b) != std::string::npos || field.name.find(b) != std::string::npos ||
             field.fileName.find(b) != std::string::npos;
    });
  };
  for (int n = 1; occurs(boundary); ++n) boundary = "vellumar-form-boundary-" + std::to_string(n);

  MultipartBody out;
  out.contentType = "multipart/form-data; boundary=" + boundary;
  for (const FormField& field : fields) {
    out.body += "--" + boundary + "\r\n";
    out.body += "Content-Disposition: form-data; name=\"" + field.name + "\"";
    if (!field.fileName.empty()) {
      out.body += "; filename=\"" + field.fileName + "\"\r\n";
      out.body += "Content-Type: " +
                  (field.contentType.empty() ? "application/octet-stream" : field.contentType);
    }
    out.body += "\r\n\r\n" + field.value + "\r\n";
  }
  out.body += "--" + boundary + "--\r\n";
  return out;
}

std::optional<std::vector<FormField>> ParseMultipart(const std::string& contentType,
                                                     const std::string& body) {
  if (Lower(contentType).rfind("multipart/form-data", 0) != 0) return std::nullopt;
  const auto boundary = HeaderParameter(contentType, "boundary");
  if (!boundary || boundary->empty()) return std::nullopt;
  const std::string delimiter = "--" + *boundary;
  std::vector<FormField> fields;
  std::size_t at = body.find(delimiter);
  if (at == std::string::npos) return std::nullopt;
  while (true) {
    at += delimiter.size();
    if (body.compare(at, 2, "--") == 0) return fields;  // the closing delimiter
    if (body.compare(at, 2, "\r\n") != 0) return std::nullopt;
    at += 2;
    const std::size_t headersEnd = body.find("\r\n\r\n", at);
    if (headersEnd == std::string::npos) return std::nullopt;
    const std::size_t next = body.find("\r\n" + delimiter, headersEnd + 4);
    if (next == std::string::npos) return std::nullopt;
    FormField field;
    std::size_t line = at;
    while (line < headersEnd) {
      std::size_t lineEnd = body.find("\r\n", line);
      if (lineEnd == std::string::npos || lineEnd > headersEnd) lineEnd = headersEnd;
      const std::string header = body.substr(line, lineEnd - line);
      const std::size_t colon = header.find(':');
      const std::string name = Lower(header.substr(0, colon));
      const std::string value =
          colon == std::string::npos ? "" : header.substr(header.find_first_not_of(' ', colon + 1));
      if (name == "content-disposition") {
        field.name = HeaderParameter(value, "name").value_or("");
        field.fileName = HeaderParameter(value, "filename").value_or("");
      } else if (name == "content-type") {
        field.contentType = value;
      }
      line = lineEnd + 2;
    }
    field.value = body.substr(headersEnd + 4, next - headersEnd - 4);
    fields.push_back(std::move(field));
    at = next + 2;
  }
}

std::optional<UrlParts> ParseUrl(const std::string& url) {
  const std::size_t schemeEnd = url.find("://");
  if (schemeEnd == std::string::npos) return std::nullopt;
  UrlParts parts;
  parts.scheme = Lower(url.substr(0, schemeEnd));
  if (parts.scheme == "http") {
    parts.port = 80;
  } else if (parts.scheme == "https") {
    parts.port = 443;
  } else {
    return std::nullopt;
  }
  const std::size_t hostStart = schemeEnd + 3;
  std::size_t hostEnd = url.find_first_of("/?", hostStart);
  if (hostEnd == std::string::npos) hostEnd = url.size();
  std::string authority = url.substr(hostStart, hostEnd - hostStart);
  const std::size_t colon = authority.rfind(':');
  if (colon != std::string::npos) {
    const std::string port = authority.substr(colon + 1);
    if (port.empty() || port.size() > 5 ||
        !std::all_of(port.begin(), port.end(), [](unsigned char c) { return std::isdigit(c); })) {
      return std::nullopt;
    }
    parts.port = std::stoi(port);
    if (parts.port <= 0 || parts.port > 65535) return std::nullopt;
    authority.resize(colon);
  }
  if (authority.empty()) return std::nullopt;
  parts.host = authority;
  parts.target = url.substr(hostEnd);
  if (parts.target.empty() || parts.target[0] != '/') parts.target = "/" + parts.target;
  return parts;
}

}  // namespace vellumar::net
