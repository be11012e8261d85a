// How lines reach pages: what is current first, then each as it comes, less when a page is slow.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "tests/view/NotedLines.h"
#include "tools/view/LineLog.h"

namespace fyn::productionrules::testing {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kNow{0};
constexpr std::chrono::seconds kSoon{20};

ViewLine line(std::int64_t t, const std::string& key, LineWorth worth = LineWorth::Kept) {
  return {t, worth, key, "{\"t\":" + std::to_string(t) + ",\"" + key + "\":0}"};
}
ViewLine result(std::int64_t t) {
  return line(t, "/ICDOut", LineWorth::VisionResult);
}

/** Bytes of a line with a number of two digits in session 1, as pages get it. */
std::int64_t eventSize(const ViewLine& line) {
  return static_cast<std::int64_t>(("id: 1-10\ndata: " + line.text + "\n\n").size());
}

/** The events that wait for a page: the data of each. */
std::vector<std::string> waiting(LineLog::Reader& page) {
  std::string text;
  for (std::optional<std::string> piece; (piece = page.next(kNow)) && !piece->empty();) {
    text += *piece;
  }
  std::vector<std::string> data;
  for (const std::string& part : linesOf(text)) {
    if (part.compare(0, 6, "data: ") == 0) {
      data.push_back(part.substr(6));
    }
  }
  return data;
}

TEST(LineLog, ANewPageGetsWhatIsCurrentInTheOrderOfItsComing) {
  LineLog log = LineLog::ofLive();
  log.put(line(1, "/camera"));
  log.put(line(2, "/PRBOut"));
  log.put(line(3, ""));
  log.put(line(4, "/PRBOut"));
  log.put(line(5, "/camera"));
  const std::unique_ptr<LineLog::Reader> page = log.open("");
  log.put(line(6, ""));
  EXPECT_EQ(waiting(*page),
            (std::vector<std::string>{line(4, "/PRBOut").text, line(5, "/camera").text, line(6, "").text}));
}

TEST(LineLog, APageThatComesBackGetsOnlyWhatIsNew) {
  LineLog log = LineLog::ofLive("run1");
  log.put(line(1, "/camera"));
  log.put(line(2, "/PRBOut"));
  EXPECT_EQ(waiting(*log.open("run1-1")), std::vector<std::string>{line(2, "/PRBOut").text});
  EXPECT_TRUE(waiting(*log.open("run1-2")).empty());
  // The id of another run says nothing about this one.
  for (const char* const other : {"run0-2", "run1-", "nonsense", "run1-x"}) {
    const std::vector<std::string> lines = waiting(*log.open(other));
    ASSERT_EQ(lines.size(), 3U) << other;
    EXPECT_NE(lines[0].find("\"notice\":\"the viewer was started anew"), std::string::npos) << lines[0];
  }
}

TEST(LineLog, OthersCannotFillTheMemoryWithTopics) {
  LineLog log = LineLog::ofLive();
  for (int i = 0; i < 5000; ++i) {
    log.put(line(i, "/cameraParameters/head/" + std::to_string(i)));
  }
  EXPECT_LE(waiting(*log.open("")).size(), 512U);
}

TEST(LineLog, ASlowPageLosesTheOldestResultsFirstAndNeverAScene) {
  const std::int64_t size = eventSize(result(10));
  LineLog log = LineLog::ofLive("1", {size * 6, size * 1000});
  const std::unique_ptr<LineLog::Reader> page = log.open("");
  log.put(line(1, "/PRBOut"));
  log.put(line(2, "frames", LineWorth::Replaceable));
  for (int t = 11; t < 31; ++t) {
    log.put(result(t));
  }
  log.put(line(40, "frames", LineWorth::Replaceable));
  const std::vector<std::string> lines = waiting(*page);
  ASSERT_GT(lines.size(), 4U);
  EXPECT_NE(lines[0].find("vision results and 0 waits"), std::string::npos) << lines[0];
  EXPECT_EQ(lines[1], line(1, "/PRBOut").text);
  EXPECT_EQ(lines[2], line(2, "frames").text);
  EXPECT_EQ(lines[lines.size() - 2], result(30).text);
  // What was said to be missing is what is missing.
  const std::size_t results = lines.size() - 4;
  EXPECT_EQ(lines[0].substr(lines[0].find("\"notice\":\"") + 10, 2), std::to_string(20 - results));
}

TEST(LineLog, ASlowPageTakesNothingFromAFastOne) {
  LineLog log = LineLog::ofLive("1", {eventSize(result(10)) * 6, 1'000'000});
  const std::unique_ptr<LineLog::Reader> slow = log.open("");
  const std::unique_ptr<LineLog::Reader> fast = log.open("");
  std::vector<std::string> scenes;
  for (int t = 100; t < 1000; ++t) {
    // More than goes out in one piece.
    scenes.push_back(line(t, "/PRBOut").text);
    log.put(line(t, "/PRBOut"));
    log.put(result(t));
    EXPECT_EQ(waiting(*fast), (std::vector<std::string>{scenes.back(), result(t).text}));
  }
  std::vector<std::string> seen = waiting(*slow);
  seen.erase(
      std::remove_if(seen.begin(), seen.end(),
                     [](const std::string& text) { return text.find("/PRBOut") == std::string::npos; }),
      seen.end());
  EXPECT_EQ(seen, scenes);
}

TEST(LineLog, StatesAreLeftOutOnlyForNewerOnes) {
  const std::int64_t size = eventSize(line(10, "frames"));
  LineLog log = LineLog::ofLive("1", {size * 5, size * 1000});
  const std::unique_ptr<LineLog::Reader> page = log.open("");
  for (int t = 10; t < 30; ++t) {
    log.put(line(t, t % 2 == 0 ? "frames" : "waits", LineWorth::Replaceable));
    log.put(line(t, "/PRBOut"));
  }
  const std::vector<std::string> lines = waiting(*page);
  EXPECT_EQ(lines.size(), 1U + 20U + 2U);
  EXPECT_NE(lines[0].find("0 vision results and 18 waits"), std::string::npos) << lines[0];
}

TEST(LineLog, APageThatFallsBehindWithScenesIsGivenUp) {
  LineLog log = LineLog::ofLive("1", {100, 1000});
  const std::unique_ptr<LineLog::Reader> page = log.open("");
  for (int t = 0; t < 100; ++t) {
    log.put(line(t, "/PRBOut"));
  }
  EXPECT_FALSE(page->next(kNow).has_value());
  // Others go on.
  EXPECT_EQ(waiting(*log.open("")).size(), 1U);
}

TEST(LineLog, TheEndWakesEveryPage) {
  LineLog log = LineLog::ofLive();
  std::vector<std::unique_ptr<LineLog::Reader>> pages;
  std::vector<std::thread> readers;
  for (int i = 0; i < 8; ++i) {
    pages.push_back(log.open(""));
    readers.emplace_back([&page = *pages.back()] {
      while (page.next(std::chrono::hours(1))) {
      }
    });
  }
  log.put(result(1));
  log.close();
  for (std::thread& reader : readers) {
    reader.join();
  }
  EXPECT_FALSE(log.open("")->next(kNow).has_value());
}

TEST(LineLog, EveryPageReadsAllLinesWhileTheyAreStillWritten) {
  constexpr int kLines = 20000;
  LineLog log = LineLog::ofRecording();
  std::vector<std::string> read(3);
  std::vector<std::thread> readers;
  for (std::string& text : read) {
    readers.emplace_back([&text, page = log.open("")] {
      while (const std::optional<std::string> piece = page->next(kSoon)) {
        text += *piece;
      }
    });
  }
  std::string all;
  for (int t = 0; t < kLines; ++t) {
    log.put(result(t));
    all += result(t).text + '\n';
  }
  log.finish();
  for (std::thread& reader : readers) {
    reader.join();
  }
  for (const std::string& text : read) {
    EXPECT_TRUE(text == all);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
