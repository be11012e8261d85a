// The server, asked as a browser asks, and as others might.
#include <gtest/gtest.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <fstream>
#include <future>

#include "platform/TextFile.h"
#include "tests/linux/Processes.h"
#include "tests/testing/Folders.h"
#include "tests/view/OpenPage.h"
#include "tools/base/UsageError.h"
#include "tools/view/LineLog.h"
#include "tools/view/RequestLimits.h"
#include "tools/view/RequestStream.h"
#include "tools/view/ViewServer.h"

namespace fyn::productionrules::testing {
namespace {

const std::string kPage = sourceFolder() + "/viewer/page/";
const std::string kToken = "a-token-of-the-tests";

/** A server that shows a live log, and its client. */
class LiveViewer : public ::testing::Test {
 protected:
  explicit LiveViewer(const std::string& token = "")
      : server(log, "the room", {"127.0.0.1", 0, token}), client("127.0.0.1", server.port()) {}

  LineLog log = LineLog::ofLive("run1");
  ViewServer server;
  httplib::Client client;
};

TEST_F(LiveViewer, ServesThePageAndSaysWhatItShows) {
  const httplib::Result page = client.Get("/");
  ASSERT_TRUE(page);
  EXPECT_EQ(page->status, 200);
  EXPECT_EQ(page->body, readTextFile(kPage + "index.html"));
  for (const auto& [name, type] : {std::pair("index.html", "text/html"),
                                   {"viewer.js", "text/javascript"},
                                   {"viewer.css", "text/css"},
                                   {"viewer.svg", "image/svg+xml"}}) {
    const httplib::Result file = client.Get(std::string("/") + name);
    ASSERT_TRUE(file) << name;
    EXPECT_EQ(file->body, readTextFile(kPage + name)) << name;
    EXPECT_EQ(file->get_header_value("Content-Type").compare(0, std::string(type).size(), type), 0) << name;
    EXPECT_EQ(file->get_header_value("X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(file->get_header_value("Content-Security-Policy").substr(0, 18), "default-src 'self'");
    EXPECT_EQ(file->get_header_value("Cache-Control"), "no-store");
    EXPECT_FALSE(file->has_header("Access-Control-Allow-Origin"));
  }
  EXPECT_EQ(client.Get("/api/info")->body, R"({"source":"live","name":"the room"})");
}

TEST_F(LiveViewer, HasNothingElse) {
  for (const char* const path : {"/no", "/api", "/api/", "/api/recording", "/index.html/", "//index.html",
                                 "/../page/index.html", "/%2e%2e/%2e%2e/etc/passwd", "/..%2f..%2fetc/passwd",
                                 "/etc/passwd", "/viewer.js%00.html", "/built-from"}) {
    const httplib::Result result = client.Get(path);
    ASSERT_TRUE(result) << path;
    EXPECT_EQ(result->status, 404) << path;
  }
}

TEST_F(LiveViewer, AnswersOnlyReadersOfThisMachine) {
  EXPECT_EQ(client.Get("/", {{"Host", "evil.example"}})->status, 403);
  EXPECT_EQ(client.Get("/api/events", {{"Host", "evil.example:80"}})->status, 403);
  EXPECT_EQ(client.Get("/", {{"Host", "localhost:1"}})->status, 200);
  EXPECT_EQ(client.Post("/", "a=1", "application/x-www-form-urlencoded")->status, 405);
  EXPECT_EQ(client.Delete("/")->status, 405);
  EXPECT_EQ(client.Options("/")->status, 405);
  const httplib::Result head = client.Head("/api/events");
  EXPECT_EQ(head->status, 200);
  EXPECT_EQ(head->get_header_value("Content-Type"), "text/event-stream");
}

TEST_F(LiveViewer, PagesGetWhatIsCurrentAndThenEveryLine) {
  log.put({1, LineWorth::Kept, "/camera", R"({"t":1,"camera":1})"});
  log.put({2, LineWorth::Kept, "", R"({"t":2,"gone":1})"});
  const OpenPage first(server.port());
  const OpenPage second(server.port(), {{"Last-Event-ID", "run1-1"}});
  EXPECT_TRUE(first.has("id: run1-1\ndata: {\"t\":1,\"camera\":1}\n\n"));
  EXPECT_TRUE(second.isAnswered());
  // Subscribed or not yet: a page sees a state line either way.
  log.put({3, LineWorth::Kept, "/PRBOut", R"({"t":3,"scene":1})"});
  EXPECT_TRUE(first.has("data: {\"t\":3,\"scene\":1}\n\n"));
  EXPECT_TRUE(second.has("data: {\"t\":3,\"scene\":1}\n\n"));
  EXPECT_EQ(second.text().find("camera"), std::string::npos);
  EXPECT_EQ(first.text().find("gone"), std::string::npos);
  log.close();
}

/** A connection that sends no more than it is told to. */
class Dripping {
 public:
  Dripping(int port, const std::string& begin) : mSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    send(mSocket, begin.data(), begin.size(), MSG_NOSIGNAL);
  }
  ~Dripping() { close(mSocket); }
  Dripping(const Dripping&) = delete;
  Dripping& operator=(const Dripping&) = delete;

  /** What the server says until it closes the connection. */
  std::string answer() const {
    std::string text;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = recv(mSocket, part.data(), part.size(), 0)) > 0;) {
      text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  const int mSocket;
};

TEST(ViewServer, RequestsWithoutEndGoForNewerOnes) {
  LineLog log = LineLog::ofLive();
  const ViewServer server(log, "room", {"127.0.0.1", 0, "", std::chrono::hours(1)});
  std::vector<std::unique_ptr<Dripping>> dripping;
  for (std::size_t i = 0; i < 3 * RequestLimits::kMostPerAddress; ++i) {
    dripping.push_back(std::make_unique<Dripping>(server.port(), "GET / HT"));
  }
  EXPECT_EQ(httplib::Client("127.0.0.1", server.port()).Get("/api/info")->status, 200);
}

TEST_F(LiveViewer, ARequestHasASize) {
  const std::string line = "X-Y: " + std::string(1000, 'z') + "\r\n";
  std::string headers = "GET / HTTP/1.1\r\n";
  while (headers.size() <= RequestStream::kLargest) {
    headers += line;
  }
  EXPECT_EQ(Dripping(server.port(), "GET /" + std::string(1 << 20, 'x')).answer(), "");
  EXPECT_EQ(Dripping(server.port(), headers + "\r\n").answer().find("200 OK"), std::string::npos);
  EXPECT_NE(Dripping(server.port(), "GET / HTTP/1.1\r\nHost: localhost\r\n" + line + "\r\n")
                .answer()
                .find("200 OK"),
            std::string::npos);
}

TEST(ViewServer, ARequestHasATime) {
  LineLog log = LineLog::ofLive();
  const ViewServer server(log, "room", {"127.0.0.1", 0, "", std::chrono::milliseconds(50)});
  EXPECT_EQ(Dripping(server.port(), "").answer(), "");
  EXPECT_EQ(Dripping(server.port(), "GET / HTTP/1.1\r\nHo").answer().find("200 OK"), std::string::npos);
}

TEST_F(LiveViewer, TwentyOpenPagesLeaveRoomForOthersAndTheNextIsTurnedAway) {
  std::vector<std::unique_ptr<OpenPage>> pages;
  log.put({1, LineWorth::Kept, "/camera", R"({"t":1})"});
  for (int i = 0; i < ViewServer::kMostStreams; ++i) {
    pages.push_back(std::make_unique<OpenPage>(server.port()));
  }
  for (const std::unique_ptr<OpenPage>& page : pages) {
    EXPECT_TRUE(page->has("data: "));
  }
  EXPECT_EQ(client.Get("/api/info")->status, 200);
  EXPECT_EQ(client.Get("/api/events")->status, 503);
  log.close();
  pages.clear();
  EXPECT_TRUE(eventually([this] { return client.Get("/api/events")->status == 200; }));
}

TEST(ViewServer, EndsWithPagesOpen) {
  LineLog log = LineLog::ofLive();
  auto server = std::make_unique<ViewServer>(log, "room", ViewServerOptions{});
  log.put({1, LineWorth::Kept, "/camera", R"({"t":1})"});
  const OpenPage reading(server->port());
  EXPECT_TRUE(reading.has("data: "));
  const int port = server->port();
  const auto start = std::chrono::steady_clock::now();
  server.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
  EXPECT_TRUE(eventually([&] { return reading.hasEnded(); }));
  EXPECT_FALSE(isListening(port));
}

TEST(ViewServer, EndsWithAPageThatReadsNothing) {
  LineLog log = LineLog::ofLive();
  auto server = std::make_unique<ViewServer>(log, "room", ViewServerOptions{});
  httplib::Client client("127.0.0.1", server->port());
  std::promise<void> stalled;
  std::promise<void> goOn;
  std::thread page([&] {
    bool isFirst = true;
    client.Get("/api/events", [&](const char* /*data*/, std::size_t /*length*/) {
      if (std::exchange(isFirst, false)) {
        stalled.set_value();
        goOn.get_future().wait();
      }
      return true;
    });
  });
  log.put({0, LineWorth::Kept, "/camera", R"({"t":0})"});
  stalled.get_future().wait();
  // More than the connection holds.
  const std::string text(100'000, 'x');
  for (int t = 1; t < 100; ++t) {
    log.put({t, LineWorth::Kept, "", text});
  }
  server.reset();
  goOn.set_value();
  page.join();
}

TEST(ViewServer, AVideoIsReadInParts) {
  const ScratchFolder folder;
  const std::string video = folder.file("front.mp4");
  // More than one piece, and more than the connection holds.
  std::string content;
  while (content.size() < 1'000'000) {
    content += std::to_string(content.size()) + ' ';
  }
  std::ofstream(video, std::ios::binary) << content;
  const std::string size = std::to_string(content.size());
  LineLog log = LineLog::ofRecording();
  ViewServerOptions options;
  options.videos = {"/dev/null", video};
  EXPECT_THROW(ViewServer(log, "room", options), UsageError);
  options.videos = {video, video};
  const ViewServer server(log, "room", options);
  httplib::Client client("127.0.0.1", server.port());
  EXPECT_EQ(client.Get("/api/info")->body,
            R"({"source":"recording","name":"room","videos":["front.mp4","front.mp4"]})");
  struct Case {
    std::string range;
    int status;
    std::string contentRange;
    std::string body;
  };
  const auto range = [&](std::size_t first, std::size_t last) {
    return "bytes " + std::to_string(first).append("-").append(std::to_string(last)).append("/").append(size);
  };
  const std::size_t last = content.size() - 1;
  for (const Case& c : {Case{"", 200, "", content}, Case{"bytes=0-", 206, range(0, last), content},
                        Case{"bytes=2-4", 206, range(2, 4), content.substr(2, 3)},
                        Case{"bytes=100000-", 206, range(100'000, last), content.substr(100'000)},
                        Case{"bytes=-5", 206, range(last - 4, last), content.substr(last - 4)},
                        Case{"bytes=5-99999999", 206, range(5, last), content.substr(5)},
                        Case{"bytes=" + size + '-', 416, "bytes */" + size, ""}}) {
    const httplib::Result part = client.Get(
        "/api/video/1", c.range.empty() ? httplib::Headers{} : httplib::Headers{{"Range", c.range}});
    ASSERT_TRUE(part) << c.range;
    EXPECT_EQ(part->status, c.status) << c.range;
    EXPECT_EQ(part->get_header_value("Content-Range"), c.contentRange);
    EXPECT_EQ(part->body == c.body, true) << c.range << ' ' << part->body.size();
  }
  EXPECT_EQ(client.Head("/api/video/0")->get_header_value("Content-Type"), "video/mp4");
  EXPECT_EQ(client.Get("/api/video/2")->status, 404);
}

TEST(ViewServer, TwoDoNotShareAPort) {
  LineLog log = LineLog::ofLive();
  const ViewServer first(log, "room", {});
  LineLog other = LineLog::ofLive();
  EXPECT_THROW(ViewServer(other, "room", {"127.0.0.1", first.port(), ""}), std::runtime_error);
  EXPECT_EQ(first.url(), "http://127.0.0.1:" + std::to_string(first.port()) + "/");
}

class ViewerWithToken : public LiveViewer {
 protected:
  ViewerWithToken() : LiveViewer(kToken) {}
};

TEST_F(ViewerWithToken, HandsOutACookieForTheTokenAndNothingWithout) {
  for (const char* const path :
       {"/", "/viewer.js", "/api/info", "/api/events", "/no", "/?token=", "/?token=wrong"}) {
    const httplib::Result refused = client.Get(path);
    ASSERT_TRUE(refused) << path;
    EXPECT_EQ(refused->status, 401) << path;
    EXPECT_EQ(refused->body.find(kToken), std::string::npos);
    EXPECT_FALSE(refused->has_header("Set-Cookie")) << path;
  }
  const httplib::Result given = client.Get("/?token=" + kToken);
  EXPECT_EQ(given->status, 303);
  EXPECT_EQ(given->get_header_value("Location"), "/");
  const std::string cookie = given->get_header_value("Set-Cookie");
  EXPECT_NE(cookie.find("; HttpOnly; SameSite=Strict"), std::string::npos) << cookie;
  const httplib::Headers with{{"Cookie", cookie.substr(0, cookie.find(';'))}};
  EXPECT_EQ(client.Get("/", with)->status, 200);
  EXPECT_EQ(client.Get("/api/info", with)->status, 200);
}

TEST(ViewServer, ServesARecordingWhole) {
  LineLog log = LineLog::ofRecording();
  const ViewServer server(log, "meeting.jsonl", {});
  httplib::Client client("127.0.0.1", server.port());
  EXPECT_EQ(client.Get("/api/info")->body, R"({"source":"recording","name":"meeting.jsonl"})");
  EXPECT_EQ(client.Get("/api/events")->status, 404);
  std::string all;
  for (int t = 0; t < 30000; ++t) {
    const ViewLine line = messageLine(t, "/ICDOut", R"({"heads":[]})");
    all += line.text + '\n';
    log.put(line);
  }
  log.finish();
  const httplib::Result lines = client.Get("/api/recording");
  ASSERT_TRUE(lines);
  EXPECT_EQ(lines->get_header_value("Content-Type"), "application/x-ndjson");
  EXPECT_TRUE(lines->body == all);
}

}  // namespace
}  // namespace fyn::productionrules::testing
