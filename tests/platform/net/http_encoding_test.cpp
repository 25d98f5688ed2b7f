// URL encoding, query strings, multipart bodies and URLs taken apart.
#include "platform/net/http_encoding.h"

#include <gtest/gtest.h>

namespace vellumar::net {
namespace {

TEST(HttpEncodingTest, UrlEncodingKeepsOnlyUnreservedBytes) {
  EXPECT_EQ(UrlEncode("K1AB/p a&b=c~d_e.f-g"), "K1AB%2Fp%20a%26b%3Dc~d_e.f-g");
  EXPECT_EQ(UrlEncode("\xc3\xa9"), "%C3%A9");
  EXPECT_EQ(UrlDecode("x%20y+z%2f%zz%4"), "x y z/%zz%4");
  EXPECT_EQ(UrlDecode(UrlEncode("p@ss w%rd")), "p@ss w%rd");
}

TEST(HttpEncodingTest, QueryStringsAddToTheUrl) {
  const std::vector<FormField> fields = {{"callsign", "K1AB"}, {"s", "a b"}};
  EXPECT_EQ(QueryString(fields), "callsign=K1AB&s=a%20b");
  EXPECT_EQ(WithQuery("http://h/x", fields), "http://h/x?callsign=K1AB&s=a%20b");
  EXPECT_EQ(WithQuery("http://h/x?a=1", {{"b", "2"}}), "http://h/x?a=1&b=2");
  EXPECT_EQ(WithQuery("http://h/x", {}), "http://h/x");
  const auto parsed = ParseQueryString("callsign=K1AB&s=a+b&flag&=v");
  ASSERT_EQ(parsed.size(), 4u);
  EXPECT_EQ(parsed[1].value, "a b");
  EXPECT_EQ(parsed[2].name, "flag");
  EXPECT_EQ(parsed[2].value, "");
  EXPECT_EQ(parsed[3].name, "");
}

TEST(HttpEncodingTest, MultipartRoundTripWithAFilePart) {
  const std::vector<FormField> fields = {
      {"EQSL_USER", "K1AB"},
      {"Filename", "<CALL:4>W1AW<EOR>\r", "upload.adi", "text/plain"},
      {"empty", ""},
  };
  const MultipartBody encoded = EncodeMultipart(fields);
  EXPECT_EQ(encoded.contentType, "multipart/form-data; boundary=vellumar-form-boundary");
  const auto parsed = ParseMultipart(encoded.contentType, encoded.body);
  ASSERT_TRUE(parsed.has_value());
  ASSERT_EQ(parsed->size(), 3u);
  EXPECT_EQ((*parsed)[0].name, "EQSL_USER");
  EXPECT_EQ((*parsed)[0].value, "K1AB");
  EXPECT_EQ((*parsed)[1].fileName, "upload.adi");
  EXPECT_EQ((*parsed)[1].contentType, "text/plain");
  EXPECT_EQ((*parsed)[1].value, "<CALL:4>W1AW<EOR>\r");
  EXPECT_EQ((*parsed)[2].value, "");
}

TEST(HttpEncodingTest, TheBoundaryAvoidsTheValues) {
  const std::vector<FormField> fields = {{"a", "x--vellumar-form-boundary\r\ny"}};
  const MultipartBody encoded = EncodeMultipart(fields);
  EXPECT_EQ(encoded.contentType, "multipart/form-data; boundary=vellumar-form-boundary-1");
  const auto parsed = ParseMultipart(encoded.contentType, encoded.body);
  ASSERT_TRUE(parsed.has_value());
  ASSERT_EQ(parsed->size(), 1u);
  EXPECT_EQ((*parsed)[0].value, fields[0].value);
}

TEST(HttpEncodingTest, NotMultipartIsNoForm) {
  EXPECT_FALSE(ParseMultipart("text/plain", "x").has_value());
  EXPECT_FALSE(ParseMultipart("multipart/form-data", "x").has_value());
  EXPECT_FALSE(ParseMultipart("multipart/form-data; boundary=b", "--b\r\nno end").has_value());
}

TEST(HttpEncodingTest, UrlsTakenApart) {
  auto url = ParseUrl("https://www.example.org/qslcard/Import.cfm");
  ASSERT_TRUE(url.has_value());
  EXPECT_EQ(url->scheme, "https");
  EXPECT_EQ(url->host, "www.example.org");
  EXPECT_EQ(url->port, 443);
  EXPECT_EQ(url->target, "/qslcard/Import.cfm");
  url = ParseUrl("HTTP://127.0.0.1:8080?x=1");
  ASSERT_TRUE(url.has_value());
  EXPECT_EQ(url->scheme, "http");
  EXPECT_EQ(url->port, 8080);
  EXPECT_EQ(url->target, "/?x=1");
  EXPECT_FALSE(ParseUrl("ftp://host/").has_value());
  EXPECT_FALSE(ParseUrl("http://:80/").has_value());
  EXPECT_FALSE(ParseUrl("http://host:99999/").has_value());
  EXPECT_FALSE(ParseUrl("no scheme").has_value());
}

}  // namespace
}  // namespace vellumar::net
