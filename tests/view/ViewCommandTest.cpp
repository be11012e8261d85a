// prb view and prb demo --view as programs, with a real browser's requests and a real broker.
#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <set>

#include "tests/linux/Servers.h"
#include "tests/testing/Folders.h"
#include "tests/view/NotedLines.h"
#include "tests/view/OpenPage.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

const std::string kPrb = programFolder() + "/prb";

/** A viewer program that has said where its page is. */
class Viewer {
 public:
  explicit Viewer(std::vector<std::string> command,
                  const std::map<std::string, std::string>& environment = {})
      : process(std::move(command), environment) {
    EXPECT_TRUE(eventually([this] { return !address().empty(); })) << process.errorText();
  }

  std::string address() const {
    for (const std::string& line : process.outputLines()) {
      if (const std::size_t at = line.find("http://"); at != std::string::npos) {
        return line.substr(at);
      }
    }
    return {};
  }

  int port() const { return std::stoi(address().substr(address().rfind(':') + 1)); }

  httplib::Client client() const {
    httplib::Client made("127.0.0.1", port());
    made.set_read_timeout(60);
    return made;
  }

  /** Reads whole live lines until `isEnough` of the text so far. */
  std::string linesUntil(const std::function<bool(const std::string& text)>& isEnough) const {
    std::string text;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    client().Get("/api/events", [&](const char* data, std::size_t length) {
      text.append(data, length);
      return !isEnough(text) && std::chrono::steady_clock::now() < end;
    });
    // Pieces end anywhere, events end with a blank line.
    return text.substr(0, text.rfind("\n\n") + 1);
  }

  void endsWith(int signal) {
    process.signal(signal);
    EXPECT_EQ(process.wait(), 0) << process.errorText();
  }

  Process process;
};

std::function<bool(const std::string&)> holds(std::string part) {
  return [part = std::move(part)](const std::string& text) { return text.find(part) != std::string::npos; };
}

TEST(ViewCommand, ShowsARecordingUntilASignalComes) {
  const ScratchFolder folder;
  const std::string meeting = folder.file("meeting.jsonl");
  runTool({kPrb, "simulate", "--seed", "3", "--minutes", "1", "-o", meeting});
  Viewer viewer({kPrb, "view", meeting, "--property", "vendor.talkertracking.flag=4", "--at", "1:00:05.5"});
  EXPECT_EQ(viewer.process.outputLines().size(), 1U);
  EXPECT_EQ(viewer.address().substr(viewer.address().find('#')), "#t=3605500");
  EXPECT_EQ(json::parse(viewer.client().Get("/api/info")->body).at("question"),
            "prb why '" + meeting + "' --property 'vendor.talkertracking.flag=4'");
  const httplib::Result lines = viewer.client().Get("/api/recording");
  ASSERT_TRUE(lines);
  EXPECT_EQ(linesOf(lines->body).size() > 1800, true);
  EXPECT_NE(lines->body.find("\"TrackingMode\":\"PeopleFraming\""), std::string::npos);
  EXPECT_NE(lines->body.find("\"decision\""), std::string::npos);
  viewer.endsWith(SIGTERM);
}

TEST(ViewCommand, TwoSidesHaveTheirOwnLines) {
  const ScratchFolder folder;
  const std::string meeting = folder.file("meeting.jsonl");
  const std::string replayed = folder.file("replayed.jsonl");
  const std::string config = folder.file("quick.conf");
  runTool({kPrb, "simulate", "--seed", "3", "--minutes", "1", "-o", meeting});
  runTool({kPrb, "replay", meeting, "-o", replayed});
  std::ofstream(config) << "persist.fdtimers.layoutchange.headcountchange=0\n";
  struct Case {
    std::vector<std::string> options;
    json names;
    /** Which side holds decisions, as only a replay does. */
    std::array<bool, 2> replayed;
  };
  for (const Case& c :
       {Case{{"--config", "/dev/null", "--config", config}, json::array({"/dev/null", config}), {true, true}},
        Case{{"--recorded"}, json::array({"recorded", "replayed"}), {false, true}},
        Case{{"--beside", replayed}, json::array({meeting, replayed}), {false, false}}}) {
    std::vector<std::string> command{kPrb, "view", meeting};
    command.insert(command.end(), c.options.begin(), c.options.end());
    Viewer viewer(command);
    const json sides = json::parse(viewer.client().Get("/api/info")->body).at("sides");
    for (const std::size_t i : {0U, 1U}) {
      EXPECT_EQ(sides[i]["name"], c.names[i]);
      const std::string lines = viewer.client().Get(i == 0 ? "/api/recording" : "/api/beside")->body;
      EXPECT_EQ(lines.find("\"decision\"") != std::string::npos, c.replayed[i]) << c.names[i];
    }
    viewer.endsWith(SIGTERM);
  }
}

TEST(ViewCommand, APipeFromWhichNothingMoreComesDoesNotKeepIt) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const ScratchFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    // Opened for both, the pipe never ends.
    Viewer viewer({"/bin/sh", "-c", "exec \"$0\" view - <>\"$1\"", kPrb, pipe});
    std::ofstream(pipe) << R"({"t":0,"topic":"/ctl","payload":"first"})"
                        << "\n{\"t\":9}\n"
                        << std::flush;
    std::string text;
    viewer.client().Get("/api/recording", [&](const char* data, std::size_t length) {
      text.append(data, length);
      return text.find("first") == std::string::npos;
    });
    EXPECT_NE(text.find("first"), std::string::npos);
    viewer.endsWith(signal);
  }
}

TEST(ViewCommand, AShortTokenIsRefusedAndNotRepeated) {
  const ScratchFolder folder;
  const std::string meeting = folder.write("meeting.jsonl", "");
  Process shortToken({kPrb, "view", meeting}, {{"PRB_VIEW_TOKEN", "secret"}});
  EXPECT_EQ(shortToken.wait(), 2);
  EXPECT_EQ(shortToken.errorText().find("secret"), std::string::npos) << shortToken.errorText();
}

TEST(ViewCommand, TheDemoGoesOnWithoutAPort) {
  const ScratchFolder folder;
  const std::string meeting =
      folder.write("meeting.jsonl", R"({"t":0,"topic":"/ICDOut","payload":{"heads":[]}})"
                                    "\n{\"t\":100}\n");
  const std::vector<std::string> demo{kPrb,     "demo",     meeting,
                                      "--view", "--scenes", folder.file("scenes.jsonl")};
  Viewer first(demo);
  const std::string lines = first.linesUntil(holds("\"topic\":\"/PRBOut\""));
  EXPECT_NE(lines.find("\"kind\":\"adopted\""), std::string::npos) << lines;
  std::vector<std::string> second = demo;
  second.insert(second.end(), {"--force", "--once", "--port", std::to_string(first.port())});
  Process other(second);
  EXPECT_EQ(other.wait(), 0);
  EXPECT_NE(other.errorText().find("no viewer page: port"), std::string::npos) << other.errorText();
}

#if PR_HAVE_MQTT
TEST(ViewCommand, ShowsALiveBusWithScenesAndReasonsOfTheService) {
  Broker broker;
  const ScratchFolder folder;
  const std::string store = folder.file("properties.db");
  runTool({kPrb, "prop", "set", "vendor.talkertracking.flag", "4", "--properties", store});
  runTool({kPrb, "prop", "set", "vendor.fyndebug.decisions", "1", "--properties", store});
  Process service({programFolder() + "/productionrulesd", "--bus", broker.url(), "--properties", store,
                   "--log", "stderr"});
  Viewer viewer({kPrb, "view", "--bus", broker.url()});
  const std::string meeting = folder.file("meeting.jsonl");
  runTool({kPrb, "simulate", "--seed", "3", "--minutes", "1", "--noise", "none", "-o", meeting});
  Process player({kPrb, "play", meeting, "--bus", broker.url(), "--loop", "--speed", "20"});
  // A meeting of a minute has tiles sooner or later; each page begins with what is current.
  const std::string lines = viewer.linesUntil([](const std::string& text) {
    return text.find("\"topic\":\"/PRBOut\"") != std::string::npos &&
           text.find("\"sentence\"") != std::string::npos && text.find("/ICDOut") != std::string::npos;
  });
  EXPECT_NE(lines.find("\"TrackingMode\":\"PeopleFraming\""), std::string::npos) << lines.substr(0, 3000);
  std::set<std::string> ids;
  for (const std::string& line : linesOf(lines)) {
    if (line.compare(0, 6, "data: ") == 0) {
      EXPECT_TRUE(json::accept(line.substr(6))) << line;
    } else if (line.compare(0, 4, "id: ") == 0) {
      EXPECT_TRUE(ids.insert(line).second) << line;
    }
  }
  player.signal(SIGTERM);
  EXPECT_EQ(player.wait(), 0);
  const OpenPage page(viewer.port());
  EXPECT_TRUE(page.has("data: "));
  broker.kill();
  EXPECT_TRUE(page.has("lost the connection"));
  viewer.endsWith(SIGTERM);
}
#endif

}  // namespace
}  // namespace fyn::productionrules::testing
