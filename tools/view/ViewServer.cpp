#include "tools/view/ViewServer.h"

#include <httplib.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <thread>
#include <utility>

#include "tools/page/PageFiles.h"
#include "tools/view/LimitedServer.h"
#include "tools/view/VideoFile.h"
#include "tools/view/ViewAccess.h"

namespace fyn::productionrules {

namespace {

using std::chrono::seconds;

// One is always free: for the request that is one too many, and so has another shut down.
constexpr std::size_t kThreads = ViewServer::kMostStreams + RequestLimits::kMost + 8;
constexpr seconds kHeartbeat{10};
/** How long one attempt to write may take, which is also how long the end waits for a page that reads
 * nothing. */
constexpr seconds kWriteLimit{1};
/** A page that has read nothing for this long is gone. */
constexpr int kUnreadAttempts = 30;
/** Bytes that the kernel holds for one page, so that a slow one is noticed. */
constexpr int kSendBuffer = 128 * 1024;

/** Where a page reads the second side. */
constexpr std::string_view kBeside = "/api/beside";

/** Before the number of a camera whose video a page reads. */
constexpr const char* kVideo = "/api/video/";

constexpr const char* kText = "text/plain; charset=utf-8";

/** What a browser finds at each path. */
struct ServedFile {
  std::string_view path;
  const char* name;
  const char* type;
};
constexpr std::array<ServedFile, 5> kFiles{{
    {"/", "index.html", "text/html; charset=utf-8"},
    {"/index.html", "index.html", "text/html; charset=utf-8"},
    {"/viewer.js", "viewer.js", "text/javascript; charset=utf-8"},
    {"/viewer.css", "viewer.css", "text/css; charset=utf-8"},
    {"/viewer.svg", "viewer.svg", "image/svg+xml"},
}};

// Its own options instead of the library's, which let two servers share a port without a word.
void setSocketOptions(socket_t socket) {
  constexpr int kYes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &kYes, sizeof kYes);
  setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
}

// All addresses of the machine are none that a browser could open: its name is.
std::string hostOf(const std::string& address) {
  std::array<char, 256> name{};
  if ((address == "0.0.0.0" || address == "::") && gethostname(name.data(), name.size() - 1) == 0) {
    return name.data();
  }
  return address.find(':') != std::string::npos ? '[' + address + ']' : address;
}

void answer(httplib::Response& response, int status, const std::string& words) {
  response.status = status;
  response.set_content(words + '\n', kText);
}

}  // namespace

/** The HTTP side. */
class ViewServer::Pages {
 public:
  Pages(LineLog& lines, std::string name, const ViewServerOptions& options);
  ~Pages();

  int port() const { return mPort; }
  std::string url() const;

 private:
  using Next = httplib::Server::HandlerResponse;

  void setUp();
  Next guard(const httplib::Request& request, httplib::Response& response);
  void get(const httplib::Request& request, httplib::Response& response);
  nlohmann::ordered_json info() const;
  void sendLines(LineLog& log, const httplib::Request& request, httplib::Response& response);
  void sendVideo(const VideoFile& video, const httplib::Request& request, httplib::Response& response);
  void sendPieces(const char* contentType, const httplib::Request& request, httplib::Response& response,
                  const Pieces& pieces);

  LineLog& mLines;
  const std::string mName;
  const std::string mQuestion;
  const std::optional<SideBySide> mSides;
  const std::vector<VideoFile> mVideos;
  const std::string mAddress;
  int mPort = 0;
  std::unique_ptr<ViewAccess> mAccess;
  std::atomic<int> mStreams{0};
  std::atomic<bool> mEnding{false};
  std::atomic<bool> mEnded{false};
  LimitedServer mServer;
  std::thread mThread;
};

ViewServer::Pages::Pages(LineLog& lines, std::string name, const ViewServerOptions& options)
    : mLines(lines),
      mName(std::move(name)),
      mQuestion(options.question),
      mSides(options.sides),
      mVideos(options.videos.begin(), options.videos.end()),
      mAddress(options.address),
      mServer({options.requestLimit, kWriteLimit}, mEnding) {
  if (options.token.empty() && !isLoopback(options.address)) {
    throw std::invalid_argument("an address that others reach needs a token");
  }
  setUp();
  socket_t listening = INVALID_SOCKET;
  mServer.set_socket_options([&listening](socket_t socket) {
    setSocketOptions(socket);
    listening = socket;
  });
  mPort = options.port == 0 ? mServer.bind_to_any_port(options.address) : options.port;
  if (mPort <= 0 || (options.port != 0 && !mServer.bind_to_port(options.address, options.port))) {
    throw std::runtime_error("port " + std::to_string(options.port) + " of " + options.address +
                             " cannot be had: " + std::strerror(errno));
  }
  // The library lets only five wait, and whoever comes next tries again after a second.
  listen(listening, SOMAXCONN);
  // A cookie belongs to a host whatever the port.
  mAccess = std::make_unique<ViewAccess>(options.token, "prb-view-" + std::to_string(mPort));
  mThread = std::thread([this] {
    mServer.listen_after_bind();
    mEnded = true;
  });
  // What is not running yet cannot be stopped.
  while (!mServer.is_running() && !mEnded) {
    std::this_thread::yield();
  }
}

ViewServer::Pages::~Pages() {
  mEnding = true;
  mLines.close();
  if (mSides) {
    mSides->lines->close();
  }
  mServer.stop();
  mThread.join();
}

std::string ViewServer::Pages::url() const {
  return "http://" + hostOf(mAddress) + ':' + std::to_string(mPort) + '/';
}

void ViewServer::Pages::setUp() {
  mServer.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  mServer.set_write_timeout(kWriteLimit);
  mServer.set_payload_max_length(0);
  mServer.set_tcp_nodelay(true);
  mServer.set_default_headers({
      {"Content-Security-Policy",
       "default-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
      {"X-Content-Type-Options", "nosniff"},
      {"Referrer-Policy", "no-referrer"},
      {"Cross-Origin-Resource-Policy", "same-origin"},
      {"Cache-Control", "no-store"},
  });
  mServer.set_pre_routing_handler(
      [this](const auto& request, auto& response) { return guard(request, response); });
  mServer.Get(".*", [this](const auto& request, auto& response) { get(request, response); });
}

ViewServer::Pages::Next ViewServer::Pages::guard(const httplib::Request& request,
                                                 httplib::Response& response) {
  if (request.method != "GET" && request.method != "HEAD") {
    response.set_header("Allow", "GET, HEAD");
    answer(response, 405, "only GET and HEAD");
    return Next::Handled;
  }
  switch (mAccess->judge(request.get_header_value("Host"), request.get_header_value("Cookie"),
                         request.get_param_value("token"))) {
    case ViewAccess::Verdict::Allowed:
      return Next::Unhandled;
    case ViewAccess::Verdict::TokenGiven:
      response.set_header("Set-Cookie", mAccess->cookie());
      response.set_redirect("/", 303);
      return Next::Handled;
    case ViewAccess::Verdict::NoToken:
      answer(response, 401, "a token is needed: open the address that prb printed");
      return Next::Handled;
    case ViewAccess::Verdict::ForeignHost:
      answer(response, 403, "this page is for this machine only: open it as localhost");
      return Next::Handled;
  }
  return Next::Handled;
}

void ViewServer::Pages::get(const httplib::Request& request, httplib::Response& response) {
  if (request.path == mLines.form().path) {
    sendLines(mLines, request, response);
    return;
  }
  if (mSides && request.path == kBeside) {
    sendLines(*mSides->lines, request, response);
    return;
  }
  if (request.path == "/api/info") {
    response.set_content(info().dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                         "application/json");
    return;
  }
  for (std::size_t camera = 0; camera < mVideos.size(); ++camera) {
    if (request.path == kVideo + std::to_string(camera)) {
      sendVideo(mVideos[camera], request, response);
      return;
    }
  }
  for (const ServedFile& file : kFiles) {
    if (request.path == file.path) {
      const std::string_view content = pageFile(file.name);
      response.set_content(content.data(), content.size(), file.type);
      return;
    }
  }
  answer(response, 404, "there is nothing here");
}

nlohmann::ordered_json ViewServer::Pages::info() const {
  nlohmann::ordered_json info{{"source", mLines.form().source}, {"name", mName}};
  if (!mQuestion.empty()) {
    info["question"] = mQuestion;
  }
  if (mSides) {
    for (const SideBySide::Side& side : mSides->sides) {
      nlohmann::ordered_json& entry = info["sides"].emplace_back(nlohmann::ordered_json::object());
      entry["name"] = side.name;
      entry["question"] = side.question;
    }
  }
  for (const VideoFile& video : mVideos) {
    info["videos"].push_back(video.name());
  }
  return info;
}

void ViewServer::Pages::sendLines(LineLog& log, const httplib::Request& request,
                                  httplib::Response& response) {
  const char* const heartbeat = mLines.form().heartbeat;
  sendPieces(log.form().contentType, request, response,
             [heartbeat, lines = std::shared_ptr(log.open(request.get_header_value("Last-Event-ID")))] {
               std::optional<std::string> piece = lines->next(kHeartbeat);
               return piece && piece->empty() ? heartbeat : std::move(piece);
             });
}

void ViewServer::Pages::sendVideo(const VideoFile& video, const httplib::Request& request,
                                  httplib::Response& response) {
  if (const Pieces pieces = video.answer(request, response)) {
    sendPieces(video.contentType(), request, response, pieces);
  }
}

// A piece is taken only when it can be sent, so that what a slow page leaves unread stays where it is
// counted.
void ViewServer::Pages::sendPieces(const char* contentType, const httplib::Request& request,
                                   httplib::Response& response, const Pieces& pieces) {
  if (request.method == "HEAD") {
    response.set_header("Content-Type", contentType);
    return;
  }
  if (++mStreams > kMostStreams) {
    --mStreams;
    response.headers.erase("Content-Range");
    answer(response, 503, "too many pages are open: close one and load this one again");
    return;
  }
  response.set_chunked_content_provider(
      contentType,
      [this, pieces, unread = 0](std::size_t /*offset*/, httplib::DataSink& sink) mutable {
        if (!sink.is_writable()) {
          return !mEnding && ++unread < kUnreadAttempts;
        }
        unread = 0;
        const std::optional<std::string> piece = pieces();
        if (!piece) {
          sink.done();
          return true;
        }
        return piece->empty() || sink.write(piece->data(), piece->size());
      },
      [this](bool /*success*/) { --mStreams; });
}

// ---- ViewServer ----

ViewServer::ViewServer(LineLog& lines, std::string name, const ViewServerOptions& options)
    : mPages(std::make_unique<Pages>(lines, std::move(name), options)) {}

ViewServer::~ViewServer() = default;

int ViewServer::port() const {
  return mPages->port();
}

std::string ViewServer::url() const {
  return mPages->url();
}

}  // namespace fyn::productionrules
