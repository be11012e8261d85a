#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "model/FynCamerasConfig.h"
#include "output/JsonLayoutBuilder.h"
#include "platform/VisionSettings.h"
#include "tests/testing/TestEnvironment.h"

namespace fyn::productionrules {
namespace {

constexpr std::uint32_t kCamera = 2;

// A layout of any numbers; what a document does not carry keeps its default.
class RandomLayout {
 public:
  Layout make() {
    Layout layout;
    layout.layoutType = static_cast<FramingType>(below(8));
    if (layout.layoutType == FramingType::LARGE_PROXIMITY) {
      layout.layoutType = FramingType::NONE;  // a layout's type has no text of its own for it
    }
    layout.animation = below(2) == 0 ? "cut" : "dissolve";
    layout.duration = anyInt();
    layout.faceCount = anyInt();
    layout.streamId = anyInt();
    layout.isLogicalStream = below(2) == 0;
    layout.frameNumber = static_cast<std::int64_t>(mEngine());
    for (int count = 1 + below(4); count > 0; --count) {
      layout.frames.push_back(makeFrame(static_cast<std::int32_t>(layout.frames.size())));
    }
    return layout;
  }

 private:
  Frame makeFrame(std::int32_t index) {
    Frame frame;
    frame.frameIndex = index;
    frame.frameType = static_cast<FramingType>(below(8));
    frame.frameLayout = static_cast<FrameLayout>(below(10));
    frame.source = {anyInt(), anyInt(), anyInt(), anyInt()};
    // Scaling multiplies by the picture's size, so larger numbers than a picture's would wrap.
    frame.dest = {below(1281), below(721), below(1281), below(721)};
    frame.srcRef = {1 + below(5000), below(5000)};
    frame.fynCamId = kCamera;
    for (int count = below(4); count > 0; --count) {
      frame.fynHeads.insert(static_cast<std::int64_t>(mEngine()));
    }
    return frame;
  }

  int below(int limit) { return static_cast<int>(mEngine() % static_cast<unsigned>(limit)); }
  std::int32_t anyInt() { return static_cast<std::int32_t>(mEngine()); }

  std::mt19937_64 mEngine{20};
};

void expectSameFrame(const Frame& read, const Frame& written) {
  EXPECT_EQ(read.frameIndex, written.frameIndex);
  EXPECT_EQ(read.frameType, written.frameType);
  EXPECT_EQ(read.frameLayout, written.frameLayout);
  EXPECT_EQ(read.source, written.source);
  EXPECT_EQ(read.dest, written.dest);
  EXPECT_EQ(read.srcRef, written.srcRef);
  EXPECT_EQ(read.fynCamId, written.fynCamId);
  EXPECT_EQ(read.fynHeads, written.fynHeads);
  EXPECT_EQ(read.heads, written.fynHeads);
}

TEST(SecondaryDocument, ReadsBackAsTheLayoutThatWasWritten) {
  const testing::TestEnvironment environment(VisionSettings::kInfoLevel);
  RandomLayout random;
  for (int round = 0; round < 500; ++round) {
    const Layout written = random.make();
    const std::string text = JsonLayoutBuilder().generateSecondaryLayout({written}, 1, kCamera, "uid", false);
    const nlohmann::json document = nlohmann::json::parse(text);
    Layout read;
    read.from_json(document["streams"][0]);
    EXPECT_EQ(read.layoutType, written.layoutType);
    EXPECT_EQ(read.animation, written.animation);
    EXPECT_EQ(read.duration, written.duration);
    EXPECT_EQ(read.faceCount, written.faceCount);
    EXPECT_EQ(read.streamId, written.streamId);
    EXPECT_EQ(read.isLogicalStream, written.isLogicalStream);
    EXPECT_EQ(read.frameNumber, written.frameNumber);
    ASSERT_EQ(read.frames.size(), written.frames.size());
    for (std::size_t index = 0; index < read.frames.size(); ++index) {
      expectSameFrame(read.frames[index], written.frames[index]);
    }
    ASSERT_FALSE(HasFailure()) << text;
  }
  FynCamerasConfig::dispose();
}

}  // namespace
}  // namespace fyn::productionrules
