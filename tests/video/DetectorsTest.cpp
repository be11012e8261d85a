#include <gtest/gtest.h>

#include <sstream>

#include "tests/testing/ScratchFolder.h"
#include "tools/base/UsageError.h"
#include "tools/video/vision/CascadeDetector.h"
#include "tools/video/vision/HogDetector.h"
#include "tools/video/vision/NetDetector.h"
#include "tools/video/vision/ScriptedDetector.h"

namespace fyn::productionrules::video::testing {
namespace {

using productionrules::testing::ScratchFolder;

template <typename Action>
std::string faultOf(Action action) {
  try {
    action();
  } catch (const UsageError& fault) {
    return fault.what();
  }
  return "none";
}

TEST(ScriptedDetector, ALineStandsUntilTheNextOneOfItsCamera) {
  std::istringstream script(
      R"({"frame":3,"heads":[{"left":10,"top":20,"right":30,"bottom":60,"score":0.5,"speaking":true,"yaw":5}]}
{"frame":2,"camera":1,"heads":[{"left":1,"top":2,"right":3,"bottom":4},{"left":5,"top":6,"right":7,"bottom":8}]}

{"frame":6,"heads":[]}
)");
  ScriptedDetector detector(script, "script");
  const auto count = [&](std::size_t camera, std::int64_t frame) {
    return detector.detect(cv::Mat(), camera, frame).size();
  };
  for (const auto& [frame, heads] : {std::pair{1, 0U}, {2, 0U}, {3, 1U}, {5, 1U}, {6, 0U}, {99, 0U}}) {
    EXPECT_EQ(count(0, frame), heads) << frame;
  }
  EXPECT_EQ(count(1, 1), 0U);
  EXPECT_EQ(count(1, 99), 2U);
  EXPECT_EQ(count(2, 99), 0U);
  const Detection head = detector.detect(cv::Mat(), 0, 4).at(0);
  EXPECT_EQ(head.box, cv::Rect2d(10, 20, 20, 40));
  EXPECT_EQ(head.score, 0.5);
  EXPECT_TRUE(head.speaking);
  EXPECT_EQ(head.yaw, 5);
  EXPECT_FALSE(head.pitch);
}

TEST(ScriptedDetector, SaysWhichLineCannotBeUsed) {
  for (const char* line :
       {"{", "[]", R"({"heads":[]})", R"({"frame":1})", R"({"frame":1,"heads":[{"left":1}]})",
        R"({"frame":1,"heads":[{"left":9,"top":2,"right":3,"bottom":4}]})"}) {
    std::istringstream script(std::string("{\"frame\":1,\"heads\":[]}\n") + line + "\n");
    EXPECT_EQ(faultOf([&] { ScriptedDetector(script, "script"); }).substr(0, 9), "script:2:") << line;
  }
}

TEST(NetDetector, ReadsBoxesOfTheWantedClass) {
  NetModel model;
  model.wanted = 15;
  model.threshold = 0.4;
  const float nan = std::nanf("");
  cv::Mat output = (cv::Mat_<float>(7, 7) << 0, 15, 0.9, 0.25, 0.5, 0.5, 0.75,  // half way down
                    0, 7, 0.9, 0.25, 0.5, 0.5, 0.75,                            // another class
                    0, 15, 0.39, 0.25, 0.5, 0.5, 0.75,                          // hardly certain
                    0, 15, 0.9, 0.5, 0.5, 0.25, 0.75,                           // inside out
                    0, 15, 0.9, nan, 0.5, 0.5, 0.75,                            // no number
                    0, 15, 0.9, 1.5, 0.5, 1.75, 0.75,                           // outside
                    0, 15, 1.2, -0.5, -0.5, 0.5, 0.5);                          // across the edge
  const int shape[] = {1, 1, 7, 7};
  const std::vector<Detection> found = detectionsOf(output.reshape(1, 4, shape), model);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].box, cv::Rect2d(320, 360, 320, 180));
  EXPECT_NEAR(found[0].score, 0.9, 1e-6);
  EXPECT_EQ(found[1].box, cv::Rect2d(0, 0, 640, 360));
  EXPECT_EQ(found[1].score, 1.0);
  model.findsBodies = true;
  // The head of a body of 320 x 180 is 24 high, and in the middle of its top edge.
  const cv::Rect2d head = detectionsOf(output, model).at(0).box;
  EXPECT_NEAR(head.height, 24, 1e-9);
  EXPECT_NEAR(head.x + head.width / 2, 480, 1e-9);
  EXPECT_EQ(head.y, 360);
  EXPECT_THROW(detectionsOf(cv::Mat::zeros(1, 6, CV_32F), model), std::runtime_error);
}

// A network that hands on the first row of a picture of 7 x 1: what the picture holds is what it finds.
TEST(NetDetector, RunsANetworkFromItsDescription) {
  const ScratchFolder folder;
  folder.write(
      "net.prototxt",
      "name: \"row\"\ninput: \"data\"\n"
      "input_shape { dim: 1 dim: 3 dim: 1 dim: 7 }\n"
      "layer { name: \"cut\" type: \"Slice\" bottom: \"data\" top: \"blue\" top: \"rest\"\n"
      "  slice_param { axis: 1 slice_point: 1 } }\n"
      "layer { name: \"row\" type: \"Power\" bottom: \"blue\" top: \"row\" power_param { scale: 1 } }\n");
  const std::string description =
      folder.write("model.json", R"({"network":"net.prototxt","width":7,"height":1,"scale":0.01,"class":1,)"
                                 R"("mean":[50,0,0],"threshold":0.5,"finds":"heads"})");
  NetDetector detector(readNetModel(description));
  cv::Mat picture(1, 7, CV_8UC3, cv::Scalar(0, 9, 9));
  const std::array<int, 7> blue{50, 150, 130, 75, 50, 100, 75};
  for (int x = 0; x < 7; ++x) {
    picture.at<cv::Vec3b>(0, x)[0] = static_cast<std::uint8_t>(blue[static_cast<std::size_t>(x)]);
  }
  const std::vector<Detection> found = detector.detect(picture, 0, 1);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_NEAR(found[0].score, 0.8, 1e-5);
  EXPECT_NEAR(found[0].box.x, 320, 1e-3);
  EXPECT_NEAR(found[0].box.y, 0, 1e-3);
  EXPECT_NEAR(found[0].box.width, 320, 1e-3);
  EXPECT_NEAR(found[0].box.height, 180, 1e-3);
}

TEST(NetDetector, SaysWhatIsWrongWithADescription) {
  const ScratchFolder folder;
  folder.write("empty.onnx", "");
  struct Case {
    const char* text;
    const char* fault;
  };
  for (const Case& one : {Case{"{", "parse error"}, Case{"{}", "'network' not found"},
                          Case{R"({"network":"x.onnx","width":0})", "cannot be used"},
                          Case{R"({"network":"x.onnx","mean":[1]})", "cannot be used"},
                          Case{R"({"network":"x.onnx","finds":"cats"})", "cannot be used"},
                          Case{R"({"network":"empty.onnx"})", "cannot be read as a network"},
                          Case{R"({"network":"absent.onnx"})", "cannot be read as a network"},
                          Case{R"({"network":"net.unknown"})", "cannot be read as a network"}}) {
    const std::string file = folder.write("model.json", one.text);
    const std::string fault = faultOf([&] { NetDetector detector(readNetModel(file)); });
    EXPECT_NE(fault.find(one.fault), std::string::npos) << one.text << ": " << fault;
  }
  EXPECT_NE(faultOf([&] { readNetModel(folder.file("absent.json")); }).find("cannot be read"),
            std::string::npos);
}

// Real detectors on a picture that is none of their business: nobody, and no fault.
TEST(Detectors, FindNobodyInAnEmptyRoom) {
  const cv::Mat grey(720, 1280, CV_8UC3, cv::Scalar::all(128));
  EXPECT_TRUE(HogDetector().detect(grey, 0, 1).empty());
  EXPECT_TRUE(CascadeDetector("/usr/share/opencv4/haarcascades").detect(grey, 0, 1).empty());
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
