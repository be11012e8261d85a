// How lines reach pages: what is current first, then each as it comes, less when a page is slow.
#include <gtest/gtest.h>

#include <thread>

#include "tests/view/NotedLines.h"
#include "tools/view/LineHub.h"
#include "tools/view/LineSpool.h"

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

/** The events that wait for a page: the data of each. */
std::vector<std::string> waiting(LineStream& page) {
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

TEST(LineHub, ANewPageGetsWhatIsCurrentInTheOrderOfItsComing) {
  LineHub hub;
  hub.put(line(1, "/camera"));
  hub.put(line(2, "/PRBOut"));
  hub.put(line(3, ""));
  hub.put(line(4, "/PRBOut"));
  hub.put(line(5, "/camera"));
  const std::unique_ptr<LineStream> page = hub.open("");
  hub.put(line(6, ""));
  EXPECT_EQ(waiting(*page),
            (std::vector<std::string>{line(4, "/PRBOut").text, line(5, "/camera").text, line(6, "").text}));
}

TEST(LineHub, APageThatComesBackGetsOnlyWhatIsNew) {
  LineHub hub("run1");
  hub.put(line(1, "/camera"));
  hub.put(line(2, "/PRBOut"));
  EXPECT_EQ(waiting(*hub.open("run1-1")), std::vector<std::string>{line(2, "/PRBOut").text});
  EXPECT_TRUE(waiting(*hub.open("run1-2")).empty());
  // The id of another run says nothing about this one.
  for (const char* const other : {"run0-2", "run1-", "nonsense", "run1-x"}) {
    const std::vector<std::string> lines = waiting(*hub.open(other));
    ASSERT_EQ(lines.size(), 3U) << other;
    EXPECT_NE(lines[0].find("\"notice\":\"the viewer was started anew"), std::string::npos) << lines[0];
  }
}

TEST(LineHub, OthersCannotFillTheMemoryWithTopics) {
  LineHub hub;
  for (int i = 0; i < 5000; ++i) {
    hub.put(line(i, "/cameraParameters/head/" + std::to_string(i)));
  }
  EXPECT_LE(waiting(*hub.open("")).size(), 512U);
}

TEST(LineHub, ASlowPageLosesTheOldestResultsFirstAndNeverAScene) {
  const std::size_t size = serverSentEvent("1-10", result(10)).size();
  LineHub hub("1", {size * 6, size * 1000});
  const std::unique_ptr<LineStream> page = hub.open("");
  hub.put(line(1, "/PRBOut"));
  hub.put(line(2, "frames", LineWorth::Replaceable));
  for (int t = 11; t < 31; ++t) {
    hub.put(result(t));
  }
  hub.put(line(40, "frames", LineWorth::Replaceable));
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

TEST(LineHub, StatesAreLeftOutOnlyForNewerOnes) {
  const std::size_t size = serverSentEvent("1-10", line(10, "frames")).size();
  LineHub hub("1", {size * 4, size * 1000});
  const std::unique_ptr<LineStream> page = hub.open("");
  for (int t = 10; t < 30; ++t) {
    hub.put(line(t, t % 2 == 0 ? "frames" : "waits", LineWorth::Replaceable));
    hub.put(line(t, "/PRBOut"));
  }
  const std::vector<std::string> lines = waiting(*page);
  EXPECT_EQ(lines.size(), 1U + 20U + 2U);
  EXPECT_NE(lines[0].find("0 vision results and 18 waits"), std::string::npos) << lines[0];
}

TEST(LineHub, APageThatFallsBehindWithScenesIsGivenUp) {
  LineHub hub("1", {100, 1000});
  const std::unique_ptr<LineStream> page = hub.open("");
  for (int t = 0; t < 100; ++t) {
    hub.put(line(t, "/PRBOut"));
  }
  EXPECT_FALSE(page->next(kNow).has_value());
  // Others go on.
  EXPECT_EQ(waiting(*hub.open("")).size(), 1U);
}

TEST(LineHub, TheEndWakesEveryPage) {
  LineHub hub;
  std::vector<std::unique_ptr<LineStream>> pages;
  std::vector<std::thread> readers;
  for (int i = 0; i < 8; ++i) {
    pages.push_back(hub.open(""));
    readers.emplace_back([&page = *pages.back()] {
      while (page.next(std::chrono::hours(1))) {
      }
    });
  }
  hub.put(result(1));
  hub.close();
  for (std::thread& reader : readers) {
    reader.join();
  }
  EXPECT_FALSE(hub.open("")->next(kNow).has_value());
}

TEST(LineSpool, EveryPageReadsAllLinesWhileTheyAreStillWritten) {
  constexpr int kLines = 20000;
  LineSpool spool;
  std::vector<std::string> read(3);
  std::vector<std::thread> readers;
  for (std::string& text : read) {
    readers.emplace_back([&text, page = spool.open()] {
      while (const std::optional<std::string> piece = page->next(kSoon)) {
        text += *piece;
      }
    });
  }
  std::string all;
  for (int t = 0; t < kLines; ++t) {
    spool.put(result(t));
    all += result(t).text + '\n';
  }
  spool.finish();
  for (std::thread& reader : readers) {
    reader.join();
  }
  for (const std::string& text : read) {
    EXPECT_TRUE(text == all);
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
