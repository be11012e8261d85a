#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/testing/ScratchFolder.h"
#include "tests/tools/RunPrb.h"
#include "tools/recording/RecordingReader.h"

namespace fyn::productionrules::testing {
namespace {

using nlohmann::json;

/** The results of a recording as "T: PERSON@CAMERA[l,t,r,b]* ...", '*' behind one who speaks. */
std::vector<std::string> resultsOf(const std::string& recording) {
  std::istringstream in(recording);
  RecordingReader reader(in, "recording");
  RecordingEvent event;
  std::vector<std::string> lines;
  while (reader.next(event)) {
    const auto* const message = std::get_if<BusMessage>(&event.what);
    if (message == nullptr || message->topic != "/ICDOut") {
      continue;
    }
    std::string line = std::to_string(event.t) + ":";
    const json document = json::parse(message->payload);
    for (const json& person : document["heads"]) {
      for (const json& head : person["associatedHeads"]) {
        const json& box = head["bbox"];
        line += " " + person["fynId"].dump() + "@" + head["camId"].dump() + "[" + box["left"].dump() + "," +
                box["top"].dump() + "," + box["right"].dump() + "," + box["bottom"].dump() + "]" +
                (head["isSpeaker"] == true ? "*" : "");
      }
    }
    lines.push_back(line);
  }
  return lines;
}

constexpr const char* kHeader = "# image 640x360, 10 fps\nt_ms,person_id,left,top,right,bottom\n";

using Lines = std::vector<std::string>;

TEST(Import, OneResultForEachFrameTime) {
  const PrbRun run = runPrbWith({"import", "-"}, std::string(kHeader) +
                                                     "0,7,1,2,3,4\n"
                                                     "100,7,2,2,4,4\n"
                                                     "100,3,5,5,9,9\n"
                                                     "200,3,6,5,9,9\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(resultsOf(run.out),
            (Lines{"0: 7@0[1,2,3,4]", "100: 3@0[5,5,9,9] 7@0[2,2,4,4]", "200: 3@0[6,5,9,9]"}));
}

TEST(Import, AnEmptyRoomHasResultsToo) {
  const PrbRun run = runPrbWith({"import", "-"}, std::string(kHeader) +
                                                     "0,1,1,1,9,9\n100,1,1,1,9,9\n200,1,1,1,9,9\n"
                                                     "500,1,2,2,9,9\n");
  EXPECT_EQ(resultsOf(run.out), (Lines{"0: 1@0[1,1,9,9]", "100: 1@0[1,1,9,9]", "200: 1@0[1,1,9,9]",
                                       "351:", "451:", "500: 1@0[2,2,9,9]"}));
}

TEST(Import, ResamplingRepeatsAFrameAsLongAsTheGapAllows) {
  const std::string tracks =
      std::string(kHeader) + "0,1,1,1,9,9\n100,2,2,2,9,9\n200,2,3,3,9,9\n600,2,4,4,9,9\n";
  EXPECT_EQ(resultsOf(runPrbWith({"import", "-", "--fps", "20"}, tracks).out),
            (Lines{"0: 1@0[1,1,9,9]", "50: 1@0[1,1,9,9]", "100: 2@0[2,2,9,9]", "150: 2@0[2,2,9,9]",
                   "200: 2@0[3,3,9,9]", "250: 2@0[3,3,9,9]", "300: 2@0[3,3,9,9]", "350: 2@0[3,3,9,9]",
                   "400:", "450:", "500:", "550:", "600: 2@0[4,4,9,9]"}));
  EXPECT_EQ(resultsOf(runPrbWith({"import", "-", "--fps", "5", "--max-gap", "300"}, tracks).out),
            (Lines{"0: 1@0[1,1,9,9]", "200: 2@0[3,3,9,9]", "400: 2@0[3,3,9,9]", "600: 2@0[4,4,9,9]"}));
}

TEST(Import, CamerasMeetByPersonAndTime) {
  const ScratchFolder folder;
  const std::string front = folder.write("front.csv", std::string(kHeader) + "0,1,1,1,9,9\n100,1,2,1,9,9\n");
  const std::string side = folder.write("side.csv",
                                        "person_id,t_ms,left,top,right,bottom,note\n"
                                        "2,50,7,7,9,9,late\n1,0,5,5,9,9,\n1,50,6,5,9,9,\n");
  const PrbRun run = runPrbWith({"import", front, side, "--image", "1000x500"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(resultsOf(run.out),
            (Lines{"0: 1@0[1,1,9,9] 1@1[5,5,9,9]", "50: 1@0[1,1,9,9] 1@1[6,5,9,9] 2@1[7,7,9,9]",
                   "100: 1@0[2,1,9,9] 1@1[6,5,9,9] 2@1[7,7,9,9]"}));
  EXPECT_NE(run.out.find(R"("/cameraParameters/head/0","payload":{"imageWidth":640,"imageHeight":360})"),
            std::string::npos);
  EXPECT_NE(run.out.find(R"("/cameraParameters/head/1","payload":{"imageWidth":1000,"imageHeight":500})"),
            std::string::npos);
}

TEST(Import, SpeakersGoToPersonsByPresence) {
  const ScratchFolder folder;
  const std::string tracks = folder.write("tracks.csv", std::string(kHeader) +
                                                            "0,4,1,1,9,9\n100,4,1,1,9,9\n100,9,2,2,9,9\n"
                                                            "200,4,1,1,9,9\n200,9,2,2,9,9\n");
  const std::string turns = folder.write("turns.csv",
                                         "start_ms,end_ms,speaker\n200,300,late\n0,100,first\n"
                                         "150,250,nobody left\n200,201,first\n");
  // "first" is person 4 (three frames), "nobody left" person 9 (two frames); "late" comes third.
  const std::string recording = runPrbWith({"import", tracks, "--turns", turns}).out;
  EXPECT_NE(recording.find(
                R"({"t":100,"truth":[{"id":4,"fynCamId":0,"bbox":{"left":1,"top":1,"right":9,"bottom":9},)"
                R"("speaks":false},{"id":9,)"),
            std::string::npos);
  EXPECT_EQ(resultsOf(recording), (Lines{"0: 4@0[1,1,9,9]*", "100: 4@0[1,1,9,9] 9@0[2,2,9,9]",
                                         "200: 4@0[1,1,9,9]* 9@0[2,2,9,9]*"}));
}

TEST(Import, PosesAndRanksAreInTheDocument) {
  const ScratchFolder folder;
  const std::string tracks =
      folder.write("tracks.csv", std::string(kHeader) + "0,4,1,0,90,36\n0,5,1,0,9,9\n");
  const std::string pose = folder.write("pose.csv", "t_ms,person_id,yaw_deg,pitch_deg\n0,4,-61.5,3.4\n");
  const PrbRun run = runPrbWith({"import", tracks, "--pose", pose, "--property", "a.b=1"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')), R"({"t":0,"property":{"a.b":"1"}})");
  EXPECT_NE(run.out.find(R"("bottom":36},"yaw":62,"pitch":3,"qfactor":3,"camId":0})"), std::string::npos);
  EXPECT_NE(run.out.find(R"("bottom":9},"qfactor":5,"camId":0})"), std::string::npos)
      << "height 2.5 per cent";
}

TEST(Import, AMalformedFileIsNamedWithLineAndFault) {
  const std::string columns = "t_ms,person_id,left,top,right,bottom\n";
  const std::pair<std::string, const char*> cases[] = {
      {"", ":0: no line that names the columns"},
      {"# image 9x9\n", ":1: no line that names the columns"},
      {"t_ms,person_id,left,top,right\n",
       ":1: there is no column 'bottom' in 't_ms,person_id,left,top,right'"},
      {columns, ":1: there are no rows"},
      {columns + "0,1,1,1,9,9\n",
       ":2: no comment '# image WxH' tells the image size; give it with --image WxH"},
      {columns + "\n#\n0,1,1,1,9\n", ":4: 5 fields where the columns are 6"},
      {columns + "0,1,1,1,9,9,9\n", ":2: 7 fields where the columns are 6"},
      {columns + "zero,1,1,1,9,9\n", ":2: t_ms must be an integer, not 'zero'"},
      {columns + "0,1,1.5,1,9,9\n", ":2: left must be an integer, not '1.5'"},
      {columns + "0,1,,1,9,9\n", ":2: left must be an integer, not ''"},
      {columns + "-5,1,1,1,9,9\n", ":2: t_ms must be from 0 to 86400000, not '-5'"},
      {columns + "0,-1,1,1,9,9\n", ":2: person_id must be from 0 to 2147483647, not '-1'"},
      {columns + "0,1,1,1,99999999999999999999,9\n",
       ":2: right must be from -1000000 to 1000000, not '99999999999999999999'"},
      {columns + "0,1,9,1,9,9\n", ":2: the box is empty: left must be less than right, top less than bottom"},
      {columns + "0,1,1,1,9,9\n0,1,2,2,9,9\n", ":3: person 1 stands twice at 0 ms"},
  };
  for (const auto& [text, fault] : cases) {
    expectRefused({"import", "-"}, std::string("prb import: standard input") + fault + "\n", text);
  }
}

TEST(Import, MalformedTurnsAndPosesAreNamedToo) {
  const ScratchFolder folder;
  const std::string tracks = folder.write("tracks.csv", std::string(kHeader) + "0,4,1,0,90,36\n");
  const std::vector<std::array<std::string, 3>> cases{
      {"--turns", "start_ms,end_ms,speaker\n5,5,a\n", ":2: a turn must end after its start"},
      {"--turns", "start_ms,end_ms,speaker\n5,6,\n", ":2: the speaker is missing"},
      {"--turns", "start,end,speaker\n", ":1: there is no column 'start_ms' in 'start,end,speaker'"},
      {"--pose", "t_ms,person_id,yaw_deg,pitch_deg\n0,5,1,1\n",
       ":2: person 5 has no box at 0 ms in " + tracks},
      {"--pose", "t_ms,person_id,yaw_deg,pitch_deg\n0,4,nan,1\n", ":2: yaw_deg must be a number, not 'nan'"},
      {"--pose", "t_ms,person_id,yaw_deg,pitch_deg\n0,4,left,1\n",
       ":2: yaw_deg must be a number, not 'left'"},
  };
  for (const auto& [option, text, fault] : cases) {
    const std::string path = folder.write("bad.csv", text);
    expectRefused({"import", tracks, option, path}, "prb import: " + path + fault + "\n");
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
