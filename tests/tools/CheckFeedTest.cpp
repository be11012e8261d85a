// What prb check-feed says of feeds that are wrong in one way.
#include <gtest/gtest.h>

#include <functional>

#include "tests/tools/RunPrb.h"
#include "tools/feed/ContractFiles.h"
#include "tools/feed/SchemaCheck.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

/** Lines of a recording. */
using Feed = std::vector<json>;

constexpr std::size_t kDocuments = 3;
constexpr std::size_t kResults = 90;
const json::json_pointer kHead("/payload/heads/0/associatedHeads/0");

json head(int left) {
  return {{"id", 7},
          {"camId", 0},
          {"bbox", {{"left", left}, {"top", 200}, {"right", left + 100}, {"bottom", 320}}}};
}

json person(int number, int left) {
  return {{"fynId", number}, {"associatedHeads", {head(left)}}};
}

/** Three seconds of somebody who sits still, with all camera documents, and no fault. */
Feed goodFeed() {
  Feed feed{
      {{"t", 0}, {"topic", "/camera"}, {"payload", {{"fynCamId", 0}}}},
      {{"t", 0}, {"topic", "/cameras"}, {"payload", {{{"isAttached", true}, {"ids", {{"fynCamId", 0}}}}}}},
      {{"t", 0},
       {"topic", "/cameraParameters/head"},
       {"payload", {{"imageWidth", 800}, {"imageHeight", 600}}}}};
  for (std::size_t number = 0; number < kResults; ++number) {
    const std::size_t t = number * 33;
    feed.push_back({{"t", t},
                    {"topic", "/ICDOut"},
                    {"payload", {{"timestamp", t}, {"frameNumber", number}, {"heads", {person(3, 400)}}}}});
  }
  return feed;
}

PrbRun checked(const Feed& feed) {
  std::string lines;
  for (const json& line : feed) {
    lines += line.dump() + '\n';
  }
  return runPrbWith({"check-feed", "-"}, lines);
}

/** The lines that tell of faults, without their heading. */
std::string faultsOf(const PrbRun& run) {
  std::istringstream out(run.out);
  std::string faults;
  for (std::string line; std::getline(out, line);) {
    if (line.rfind("fault     ", 0) == 0) {
      faults += (faults.empty() ? "" : "\n") + line.substr(10);
    }
  }
  return faults;
}

struct Row {
  std::function<void(Feed&)> spoil;
  const char* fault;
};

/** Puts `value` at `place` of the result in the middle. */
std::function<void(Feed&)> with(const std::string& place, const json& value) {
  return [=](Feed& feed) { feed[kDocuments + 45][json::json_pointer("/payload" + place)] = value; };
}

void drop(Feed& feed, std::size_t from, std::size_t to) {
  feed.erase(feed.begin() + static_cast<std::ptrdiff_t>(from),
             feed.begin() + static_cast<std::ptrdiff_t>(to));
}

void forEachResult(Feed& feed, const std::function<void(json&)>& change) {
  for (std::size_t line = kDocuments; line < feed.size(); ++line) {
    change(feed[line]);
  }
}

TEST(CheckFeed, NamesTheOneFaultOfAFeed) {
  const std::string heads = "/heads/0/associatedHeads/0";
  const Row rows[] = {
      {[](Feed&) {}, ""},
      {with("", "{"), "/ICDOut: not JSON: 1 time, first at 00:01.485"},
      {with("", json::object()),
       "/ICDOut: frameNumber is missing: 1 time, first at 00:01.485\n"
       "/ICDOut: heads is missing: 1 time, first at 00:01.485"},
      {with("/heads/0/fynId", "3"),
       "/ICDOut: heads[].fynId is of type string, not integer: 1 time, first at 00:01.485"},
      {with("/heads/0/fynId", -1), "/ICDOut: heads[].fynId is below 0: 1 time, first at 00:01.485"},
      {with("/heads/0/associatedHeads", json::array()),
       "/ICDOut: heads[].associatedHeads has too few entries: 1 time, first at 00:01.485"},
      {with(heads + "/isSpeeker", true),
       "/ICDOut: heads[].associatedHeads[].isSpeeker is not known; is it misspelt?: 1 time, first at "
       "00:01.485"},
      {with(heads + "/bbox/right", 400),
       "a bbox is empty or upside down: 1 time, first at 00:01.485 (camera 0: 400,200 to 400,320)"},
      {with(heads + "/bbox/bottom", 601),
       "a bbox reaches out of the image of camera 0, 800 x 600: 1 time, first at 00:01.485 (400,200 to "
       "500,601)"},
      {with("/heads", {person(3, 400), person(3, 600)}),
       "two persons of one result have the same fynId: 1 time, first at 00:01.485 (3)"},
      {with(heads + "/camId", 5),
       "heads of camera 5, which no camera document names: 1 time, first at 00:01.485"},
      {with("/frameNumber", 44),
       "frameNumber stays: 1 time, first at 00:01.485 (44 after 44)\n"
       "frame numbers are left out: results are lost on the way: 1 time, first at "
       "00:02.937 (1 gap)"},
      {with("/timestamp", 10), "timestamp goes back: 1 time, first at 00:01.485 (10 after 1452)"},
      {[](Feed& feed) { feed[1]["payload"][0]["ids"]["name"] = "front"; },
       "/cameras: [].ids.name is not known; is it misspelt?: 1 time, first at 00:00.000"},
      {[](Feed& feed) {
         drop(feed, 2, 3);
         feed[40][kHead]["bbox"]["right"] = 1281;
       },
       "a bbox reaches out of the image of camera 0, 1280 x 720, which is assumed: no document told its "
       "size: 1 "
       "time, first at 00:00.000 (400,200 to 1281,320)"},
      {[](Feed& feed) { drop(feed, 20, 23); },
       "frame numbers are left out: results are lost on the way: 1 time, first at 00:02.937 (1 gap)"},
      {[](Feed& feed) {
         forEachResult(feed, [](json& line) { line["t"] = line["t"].get<int>() * 3; });
         forEachResult(feed, [](json& line) { line["payload"].erase("timestamp"); });
       },
       "less than 15 results a second: 1 time, first at 00:08.811"},
      {[](Feed& feed) {
         forEachResult(feed, [](json& line) {
           line["t"] = line["t"].get<int>() + (line["t"] > 1000 ? 600 : 0);
           line["payload"].erase("timestamp");
         });
       },
       "more than 500 ms between two results: 1 time, first at 00:03.537 (at the most 633 ms)"},
      {[](Feed& feed) { forEachResult(feed, [](json& line) { line["t"] = line["t"].get<int>() + 301; }); },
       "results come more than 300 ms after their pictures: 1 time, first at 00:03.238 (one in twenty later "
       "than "
       "301 ms)"},
      {[](Feed& feed) {
         forEachResult(feed, [](json& line) { line["payload"]["timestamp"] = line["t"].get<int>() + 50; });
       },
       "timestamp is ahead of the clock here: 1 time, first at 00:02.937 (50 ms; set both clocks, by NTP for "
       "example)"},
      {[](Feed& feed) { drop(feed, kDocuments, feed.size()); },
       "no vision result has come on /ICDOut: 1 time, first at 00:00.000"},
  };
  for (const Row& row : rows) {
    Feed feed = goodFeed();
    row.spoil(feed);
    const PrbRun run = checked(feed);
    EXPECT_EQ(faultsOf(run), row.fault) << run.out << run.err;
    EXPECT_EQ(run.status, *row.fault == '\0' ? 0 : 1) << row.fault;
  }
}

// A keyword that the check does not know raises.
TEST(CheckFeed, KnowsTheWholeSchemasOfWhatComesIn) {
  for (const char* const name :
       {"vision-result.json", "camera.json", "cameras.json", "camera-parameters.json"}) {
    const json schema = json::parse(contractFile(name));
    for (const json& example : schema.at("examples")) {
      EXPECT_EQ(schemaFaults(name, example), std::vector<std::string>()) << name << ": " << example;
    }
  }
}

/** The line of the report that begins with `title`. */
std::string lineOf(const PrbRun& run, const std::string& title) {
  const std::size_t start = run.out.find(title);
  return start == std::string::npos ? "" : run.out.substr(start, run.out.find('\n', start) - start);
}

TEST(CheckFeed, SaysWhatTheServiceDrops) {
  Feed feed = goodFeed();
  feed[kDocuments]["payload"].erase("heads");
  feed[kDocuments + 1]["payload"].erase("frameNumber");  // counts as 0
  EXPECT_NE(lineOf(checked(feed), "feed ").find("the service drops 1;"), std::string::npos);
}

TEST(CheckFeed, MeasuresTheDetector) {
  Feed feed = goodFeed();
  for (std::size_t number = 20; number < 29; ++number) {
    feed[kDocuments + number]["payload"]["heads"] = json::array();
  }
  for (std::size_t number = 60; number < kResults; ++number) {
    feed[kDocuments + number]["payload"]["heads"] = json::array({person(4, 400)});
  }
  const std::string line = lineOf(checked(feed), "detector");
  EXPECT_NE(
      line.find(
          "10.0 % of the heads missed (one drop-out in ten longer than 9 results), 1 time a new number"),
      std::string::npos)
      << line;
}

TEST(CheckFeed, TellsWalkersFromPeopleWhoSit) {
  Feed feed = goodFeed();
  EXPECT_NE(lineOf(checked(feed), "fits ").find("prb config preset seated"), std::string::npos);
  for (std::size_t number = 0; number < kResults; ++number) {
    feed[kDocuments + number]["payload"]["heads"] = json::array({person(3, static_cast<int>(number) * 6)});
  }
  EXPECT_NE(lineOf(checked(feed), "fits ").find("prb config preset walking"), std::string::npos);
}

}  // namespace
}  // namespace fyn::productionrules::testing
