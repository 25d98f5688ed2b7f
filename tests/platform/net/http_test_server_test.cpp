// The loopback test server and client: requests recorded with their fields, scripted answers
// in order, silence past the timeout, dropped connections, a closed port, and the server's
// own limits.
#include "support/net/http_test_server.h"

#include <gtest/gtest.h>

#include "support/net/loopback_http_client.h"

namespace vellumar::test {
namespace {

using namespace std::chrono_literals;

net::HttpRequest Post(const HttpTestServer& server, std::vector<net::FormField> form) {
  net::HttpRequest request;
  request.method = "POST";
  request.url = server.Url("/qslcard/ImportADIF.cfm");
  request.form = std::move(form);
  return request;
}

TEST(HttpTestServerTest, ListensOnLoopbackOnAPortOfItsOwn) {
  HttpTestServer a;
  HttpTestServer b;
  EXPECT_GT(a.Port(), 0);
  EXPECT_NE(a.Port(), b.Port());
  EXPECT_EQ(a.Url("/x"), "http://127.0.0.1:" + std::to_string(a.Port()) + "/x");
}

TEST(HttpTestServerTest, APostRoundTripIsRecordedAndAnswered) {
  HttpTestServer server;
  server.Answer(200, "<BODY>Result: 1 out of 1 records added</BODY>");
  LoopbackHttpClient client;
  const auto response =
      client.Send(Post(server, {{"EQSL_USER", "K1AB"},
                                {"EQSL_PSWD", "s3cret&x"},
                                {"Filename", "<CALL:4>W1AW<EOR>\r", "upload.adi", "text/plain"}}));
  ASSERT_TRUE(response.ok) << response.error;
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, "<BODY>Result: 1 out of 1 records added</BODY>");

  const auto requests = server.Requests();
  ASSERT_EQ(requests.size(), 1u);
  const RecordedRequest& request = requests[0];
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.path, "/qslcard/ImportADIF.cfm");
  EXPECT_TRUE(request.query.empty());
  EXPECT_EQ(request.Header("host"), "127.0.0.1:" + std::to_string(server.Port()));
  ASSERT_NE(request.Field("EQSL_PSWD"), nullptr);
  EXPECT_EQ(request.Field("EQSL_PSWD")->value, "s3cret&x");
  ASSERT_NE(request.Field("Filename"), nullptr);
  EXPECT_EQ(request.Field("Filename")->fileName, "upload.adi");
  EXPECT_EQ(request.Field("Filename")->value, "<CALL:4>W1AW<EOR>\r");
  EXPECT_EQ(request.Field("missing"), nullptr);
  EXPECT_EQ(server.Unscripted(), 0u);
}

TEST(HttpTestServerTest, AnswersGoInOrderAndQueriesAreDecoded) {
  HttpTestServer server;
  server.Answer(200, "first");
  server.Answer(500, "second");
  LoopbackHttpClient client;
  net::HttpRequest get;
  get.url = server.Url("/xml/current");
  get.query = {{"callsign", "VP2E/K1AB"}, {"s", "a b"}};
  const auto first = client.Send(get);
  const auto second = client.Send(get);
  const auto third = client.Send(get);
  EXPECT_EQ(first.status, 200);
  EXPECT_EQ(first.body, "first");
  EXPECT_EQ(second.status, 500);
  EXPECT_EQ(second.body, "second");
  EXPECT_EQ(third.status, 500);
  EXPECT_EQ(third.body, "no scripted response");
  EXPECT_EQ(server.Unscripted(), 1u);
  const auto requests = server.Requests();
  ASSERT_EQ(requests.size(), 3u);
  EXPECT_EQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].target, "/xml/current?callsign=VP2E%2FK1AB&s=a%20b");
  ASSERT_EQ(requests[0].query.size(), 2u);
  EXPECT_EQ(requests[0].query[0].value, "VP2E/K1AB");
  EXPECT_EQ(requests[0].query[1].value, "a b");
}

TEST(HttpTestServerTest, BinaryAndLargeBodiesArriveWhole) {
  HttpTestServer server;
  std::string garbage(5000, '\0');
  for (std::size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<char>(i * 7);
  server.Answer(200, garbage);
  LoopbackHttpClient client;
  const auto response = client.Send(Post(server, {{"big", std::string(200000, 'x')}}));
  ASSERT_TRUE(response.ok) << response.error;
  EXPECT_EQ(response.body, garbage);
  ASSERT_EQ(server.Requests().size(), 1u);
  EXPECT_EQ(server.Requests()[0].Field("big")->value.size(), 200000u);
}

TEST(HttpTestServerTest, SilencePastTheTimeoutIsATransportError) {
  HttpTestServer server;
  ScriptedResponse slow;
  slow.body = "late";
  slow.silence = 2s;
  server.Answer(slow);
  LoopbackHttpClient client;
  auto request = Post(server, {{"a", "1"}});
  request.totalTimeout = 200ms;
  const auto start = std::chrono::steady_clock::now();
  const auto response = client.Send(request);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1500ms);
  EXPECT_FALSE(response.ok);
  EXPECT_EQ(response.error, "receive: timed out");
  EXPECT_EQ(server.Requests().size(), 1u);  // it arrived
}

TEST(HttpTestServerTest, ADroppedConnectionAndAClosedPortAreTransportErrors) {
  int port = 0;
  {
    HttpTestServer server;
    port = server.Port();
    ScriptedResponse drop;
    drop.drop = true;
    server.Answer(drop);
    LoopbackHttpClient client;
    const auto response = client.Send(Post(server, {{"a", "1"}}));
    EXPECT_FALSE(response.ok);
    EXPECT_EQ(response.error, "receive: connection closed without an answer");
    EXPECT_EQ(server.Requests().size(), 1u);
  }
  LoopbackHttpClient client;
  net::HttpRequest request;
  request.url = "http://127.0.0.1:" + std::to_string(port) + "/";
  const auto response = client.Send(request);
  EXPECT_FALSE(response.ok);
  EXPECT_EQ(response.error, "connect: Connection refused");
}

TEST(HttpTestServerTest, TheLoopbackClientGoesNowhereElse) {
  LoopbackHttpClient client;
  net::HttpRequest request;
  request.url = "https://www.example.org/";
  const auto response = client.Send(request);
  EXPECT_FALSE(response.ok);
  EXPECT_NE(response.error.find("only http://127.0.0.1"), std::string::npos);
}

TEST(HttpTestServerTest, LimitsBoundWhatTheServerTakes) {
  HttpTestServer::Limits limits;
  limits.maxRequests = 2;
  limits.maxRequestBytes = 1000;
  HttpTestServer server(limits);
  LoopbackHttpClient client;
  const auto tooLarge = client.Send(Post(server, {{"a", std::string(2000, 'x')}}));
  ASSERT_TRUE(tooLarge.ok) << tooLarge.error;
  EXPECT_EQ(tooLarge.status, 413);
  server.Answer(200, "one");
  server.Answer(200, "two");
  server.Answer(200, "three");
  EXPECT_EQ(client.Send(Post(server, {})).body, "one");
  EXPECT_EQ(client.Send(Post(server, {})).body, "two");
  EXPECT_EQ(client.Send(Post(server, {})).status, 503);
  EXPECT_EQ(server.Requests().size(), 2u);
}

TEST(HttpTestServerTest, StopsByItselfAtTheEndOfItsLifetime) {
  HttpTestServer::Limits limits;
  limits.lifetime = 1s;
  HttpTestServer server(limits);
  server.Answer(200, "alive");
  LoopbackHttpClient client;
  net::HttpRequest request;
  request.url = server.Url("/");
  EXPECT_EQ(client.Send(request).body, "alive");
  std::this_thread::sleep_for(1200ms);
  request.totalTimeout = 300ms;
  EXPECT_FALSE(client.Send(request).ok);  // no one accepts any more
}

}  // namespace
}  // namespace vellumar::test
