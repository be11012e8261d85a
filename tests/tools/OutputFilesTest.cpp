// No command destroys a file that it was not told to replace.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tools/live/Recorder.h"

namespace fyn::productionrules::testing {
namespace {

namespace fs = std::filesystem;

const std::string kRecording = "{\"t\":0,\"topic\":\"/camera\",\"payload\":{\"fynCamId\":0}}\n";

/** A folder with a recording, two kinds of link to it, a configuration and an earlier result. */
class OutputFiles : public ::testing::Test {
 protected:
  OutputFiles() {
    mFolder.write("room.jsonl", kRecording);
    mFolder.write("a.conf", "# none\n");
    mFolder.write("old", "old");
    fs::create_symlink(mFolder.file("room.jsonl"), mFolder.file("soft"));
    fs::create_hard_link(mFolder.file("room.jsonl"), mFolder.file("hard"));
  }

  /** The arguments, files of the folder for words that begin with '@'. */
  std::vector<std::string> arguments(std::vector<std::string> words) const {
    for (std::string& word : words) {
      word = word.front() == '@' ? mFolder.file(word.substr(1)) : word;
    }
    return words;
  }

  void expectUntouched(const std::string& after) const {
    EXPECT_EQ(mFolder.read("room.jsonl"), kRecording) << after;
    EXPECT_EQ(mFolder.read("a.conf"), "# none\n") << after;
    EXPECT_EQ(mFolder.read("old"), "old") << after;
    EXPECT_EQ(std::distance(fs::directory_iterator(mFolder.file("")), {}), 5)
        << after << " left a file behind";
  }

  ScratchFolder mFolder;
};

TEST_F(OutputFiles, WhatACommandReadsItNeverWrites) {
  for (std::vector<std::string> words : std::vector<std::vector<std::string>>{
           {"replay", "@room.jsonl", "-o", "@room.jsonl"},
           {"replay", "@room.jsonl", "-o", "@./room.jsonl"},
           {"replay", "@room.jsonl", "-o", "@soft"},
           {"replay", "@soft", "-o", "@hard"},
           {"replay", "@room.jsonl", "--dump", "@hard"},
           {"replay", "@room.jsonl", "--config", "@a.conf", "-o", "@a.conf"},
           {"report", "@room.jsonl", "--config", "@a.conf", "--html", "@a.conf"},
           {"report", "@old", "@room.jsonl", "--json", "@soft"},
           {"compare", "@a.conf", "@old", "@room.jsonl", "--json", "@old"},
           {"import", "@room.jsonl", "-o", "@room.jsonl"},
           {"simulate", "--seed", "1", "--turns", "@old", "-o", "@old"},
           {"tune", "@room.jsonl", "--key", "animation.ease.duration=0..9", "--html", "@room.jsonl"},
           {"demo", "@room.jsonl", "--once", "--fast", "--scenes", "@room.jsonl"},
       }) {
    words.emplace_back("--force");
    expectRefused(arguments(words), "is read by this command");
    expectUntouched(words.front());
  }
}

TEST_F(OutputFiles, WhatIsThereIsReplacedOnlyOnDemand) {
  const std::vector<std::vector<std::string>> commands{
      {"replay", "@room.jsonl", "-o", "@old"},
      {"replay", "@room.jsonl", "--dump", "@old"},
      {"report", "@room.jsonl", "--json", "@old"},
      {"report", "@room.jsonl", "--html", "@old"},
      {"compare", "@a.conf", "@a.conf", "@room.jsonl", "--json", "@old"},
      {"simulate", "--seed", "1", "--minutes", "1", "-o", "@old"},
      {"record", "-o", "@old", "--bus", "mqtt://127.0.0.1:1"},
  };
  for (const std::vector<std::string>& words : commands) {
    expectRefused(arguments(words), "old is there already; name another file, or replace it with --force");
    expectUntouched(words.front());
  }
  EXPECT_EQ(runPrbWith(arguments({"replay", "@room.jsonl", "-o", "@old", "--force"})).status, 0);
  EXPECT_EQ(mFolder.read("old").substr(0, 5), "{\"t\":");
}

TEST_F(OutputFiles, ARunThatFailsLeavesWhatIsThere) {
  mFolder.write("room.jsonl", kRecording + "{");
  for (const auto& words : std::vector<std::vector<std::string>>{
           {"report", "@room.jsonl", "--json", "@old", "--force"},
           {"import", "@a.conf", "-o", "@old", "--force"},
           {"tune", "@a.conf", "--key", "animation.ease.duration=0..9", "--results", "@old"},
       }) {
    EXPECT_EQ(runPrbWith(arguments(words)).status, 2) << words.front();
    EXPECT_EQ(mFolder.read("old"), "old") << words.front();
  }
}

TEST_F(OutputFiles, ALinkKeepsLeadingToWhatItsFileBecomes) {
  fs::permissions(mFolder.file("old"), fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("old", mFolder.file("link"));
  EXPECT_EQ(runPrbWith(arguments({"replay", "@room.jsonl", "-o", "@link", "--force"})).status, 0);
  EXPECT_TRUE(fs::is_symlink(mFolder.file("link")));
  EXPECT_EQ(mFolder.read("old").substr(0, 5), "{\"t\":");
  EXPECT_EQ(fs::status(mFolder.file("old")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(OutputFiles, ARecordingReplacesAnotherOnlyWhenSomethingComes) {
  {
    Recorder nothing({mFolder.file("old"), 0, 1, {true, {}}}, [] { return std::int64_t{0}; });
    nothing.finish();
  }
  expectUntouched("a recorder that nothing came to");
  mFolder.write("new.1", "older");
  EXPECT_NE(usageFaultOf([&] {
              Recorder({mFolder.file("new"), 1, 3}, [] { return std::int64_t{0}; });
            }),
            "none");
  EXPECT_EQ(mFolder.read("new.1"), "older");
}

}  // namespace
}  // namespace fyn::productionrules::testing
