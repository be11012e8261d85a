// Replays every recording of tests/replay/cases and tests/regressions and compares what the service does with
// the expectation beside it. PR_UPDATE_GOLDEN=1 in the environment rewrites the expectations instead.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/TextFile.h"
#include "tests/replay/ReadableEffects.h"
#include "tests/testing/Folders.h"
#include "tests/tools/RunPrb.h"
#include "tools/replay/RecordingRun.h"

namespace fyn::productionrules::testing {
namespace {

namespace fs = std::filesystem;

constexpr int kWarnings = 2;

bool rewrites() {
  const char* const wish = std::getenv("PR_UPDATE_GOLDEN");
  return wish != nullptr && std::string(wish) == "1";
}

/** The lines before the first effect: what the case shows and which rule gives its outcome. */
std::string comments(const std::string& text) {
  std::size_t end = 0;
  while (end < text.size() && text[end] == '#') {
    end = text.find('\n', end) + 1;
  }
  return text.substr(0, end);
}

void compareOrRewrite(const fs::path& file, const std::string& expected, const std::string& seen) {
  if (rewrites()) {
    std::ofstream(file, std::ios::binary) << seen;
    return;
  }
  EXPECT_EQ(seen, expected) << "Differs from " << file << ". PR_UPDATE_GOLDEN=1 takes it over.";
}

std::string readableEffects(const fs::path& recording) {
  const fs::path dump =
      fs::path(::testing::TempDir()) / (recording.parent_path().filename().string() + ".dump");
  fs::remove(dump);
  Replay* running = nullptr;
  ReadableEffects effects([&running] { return running->now(); });
  std::ostringstream printed;
  ReplayOptions options;
  options.logLevel = kWarnings;
  options.dumpPath = dump.string();
  options.standardOutput = &printed;
  options.decisions = &effects;
  std::ifstream input(recording);
  RecordingReader reader(input, recording.string());
  Replay replay(options, effects);
  running = &replay;
  runRecording(reader, replay);

  std::string text = effects.text();
  const auto append = [&text](const char* title, const std::string& lines) {
    std::istringstream in(lines);
    for (std::string line; std::getline(in, line);) {
      text.append(title).append(line).append("\n");
    }
  };
  append("printed: ", printed.str());
  append("dumped: ", readTextFile(dump.string()).value_or(""));
  fs::remove(dump);
  return text;
}

class ReplayCase : public ::testing::TestWithParam<fs::path> {};

TEST_P(ReplayCase, DoesWhatTheExpectationSays) {
  const fs::path folder = GetParam();
  const std::string expected = readTextFile((folder / "expected.txt").string()).value_or("");
  const std::string head = comments(expected);
  EXPECT_NE(head, "") << "expected.txt begins with a # line that says what the case shows";
  compareOrRewrite(folder / "expected.txt", expected, head + readableEffects(folder / "recording.jsonl"));

  // A case may hold the effect lines too, byte for byte.
  const fs::path exact = folder / "effects.jsonl";
  if (fs::exists(exact)) {
    const PrbRun run = runPrbWith({"replay", (folder / "recording.jsonl").string(), "--log", "I"});
    EXPECT_EQ(run.status, 0) << run.err;
    compareOrRewrite(exact, readTextFile(exact.string()).value_or(""), run.out);
  }
}

std::vector<fs::path> caseFolders() {
  std::vector<fs::path> folders;
  for (const std::string& parent :
       {sourceFolder() + "/tests/replay/cases", sourceFolder() + "/tests/regressions"}) {
    for (const auto& entry : fs::directory_iterator(parent)) {
      if (entry.is_directory()) {
        folders.push_back(entry.path());
      }
    }
  }
  return folders;
}

INSTANTIATE_TEST_SUITE_P(Cases, ReplayCase, ::testing::ValuesIn(caseFolders()),
                         [](const auto& instance) { return instance.param.filename().string(); });

}  // namespace
}  // namespace fyn::productionrules::testing
