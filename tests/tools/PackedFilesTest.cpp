// Packed recordings are read and written like plain ones.
#include <gtest/gtest.h>

#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tools/base/Codec.h"
#include "tools/base/InputFile.h"
#include "tools/live/Recorder.h"

namespace fyn::productionrules::testing {
namespace {

/** What the file holds when it is read as an input. */
std::string contentOf(const std::string& path) {
  std::istringstream none;
  InputFile file(path, none);
  std::ostringstream text;
  text << file.stream().rdbuf();
  return text.str();
}

class PackedFiles : public ::testing::TestWithParam<const char*> {
 protected:
  std::string named(const std::string& name) const { return mFolder.file(name + GetParam()); }
  std::string bytes(const std::string& name) const { return mFolder.read(name + GetParam()); }

  ScratchFolder mFolder;
};

INSTANTIATE_TEST_SUITE_P(Endings, PackedFiles, ::testing::Values(".gz", ".zst"));

TEST_P(PackedFiles, AMeetingIsTheSamePackedAndPlain) {
  const std::string plain = mFolder.file("meeting.jsonl");
  for (const std::string& path : {plain, named("meeting.jsonl")}) {
    ASSERT_EQ(runPrbWith({"simulate", "--seed", "1", "--minutes", "1", "-o", path}).status, 0);
  }
  const std::string text = mFolder.read("meeting.jsonl");
  const std::string packed = bytes("meeting.jsonl");
  EXPECT_LT(packed.size(), text.size() / 5);
  EXPECT_EQ(contentOf(named("meeting.jsonl")), text);
  const std::string effects = runPrbWith({"replay", plain}).out;
  EXPECT_EQ(runPrbWith({"replay", named("meeting.jsonl")}).out, effects);
  EXPECT_EQ(runPrbWith({"replay", "-"}, packed).out, effects);
  // Pieces behind one another, as a shell joins them, whatever they are called.
  EXPECT_EQ(contentOf(mFolder.write("joined", packed + packed)), text + text);
}

TEST_P(PackedFiles, DamageIsNamedAndNotTakenForTheEnd) {
  ASSERT_EQ(runPrbWith({"simulate", "--seed", "1", "--minutes", "1", "-o", named("whole")}).status, 0);
  const std::string whole = bytes("whole");
  std::string broken = whole;
  broken[whole.size() / 2] = static_cast<char>(~broken[whole.size() / 2]);
  for (const std::string& packed :
       {whole.substr(0, whole.size() / 2), whole.substr(0, whole.size() - 1), broken}) {
    const PrbRun run = runPrbWith({"replay", "-"}, packed);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("standard input"), std::string::npos) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

TEST_P(PackedFiles, ARecorderPacksEveryFileAndWhatIsFlushedCanBeRead) {
  std::int64_t now = 0;
  Recorder recorder({named("room"), 100, 2}, [&now] { return now++; });
  recorder.onMessage("/ctl", std::string(100, 'a'));
  recorder.onMessage("/ctl", "b");
  recorder.flush();
  const std::string line = "{\"t\":2,\"topic\":\"/ctl\",\"payload\":\"b\"}";
  EXPECT_EQ(contentOf(named("room")).substr(0, line.size()), line);
  recorder.finish();
  EXPECT_EQ(contentOf(named("room")), line + '\n');
  EXPECT_NE(contentOf(named("room") + ".1").find("aaaa"), std::string::npos);
}

}  // namespace
}  // namespace fyn::productionrules::testing
