#include <gtest/gtest.h>
#include <httplib.h>

#include <thread>

namespace {

/**
 * cpp-httplib makes its tables at the first request, under guards that the thread sanitizer does not see
 * because the library is not compiled for it. One request that is over before a test begins keeps two first
 * requests from meeting.
 */
class FirstRequest : public testing::Environment {
 public:
  void SetUp() override {
    httplib::Server server;
    server.Get("/", [](const httplib::Request& /*request*/, httplib::Response& response) {
      response.set_chunked_content_provider("text/plain",
                                            [](std::size_t /*offset*/, httplib::DataSink& sink) {
                                              sink.write("x", 1);
                                              sink.done();
                                              return true;
                                            });
    });
    const int port = server.bind_to_any_port("127.0.0.1");
    ASSERT_GT(port, 0);
    std::thread serving([&server] { server.listen_after_bind(); });
    const httplib::Result answer = httplib::Client("127.0.0.1", port).Get("/");
    server.stop();
    serving.join();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->body, "x");
  }
};

[[maybe_unused]] const auto* const kFirstRequest = testing::AddGlobalTestEnvironment(new FirstRequest);

}  // namespace
