// Who speaks: by the sound of the room and by the mouths in the picture.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/linux/Processes.h"
#include "tests/testing/Folders.h"
#include "tools/base/UsageError.h"
#include "tools/video/source/SoundInput.h"
#include "tools/video/source/VideoInput.h"
#include "tools/video/vision/FaceNetDetector.h"
#include "tools/video/vision/Pipeline.h"

namespace fyn::productionrules::video::testing {
namespace {

using productionrules::testing::runTool;
using productionrules::testing::ScratchFolder;

/** Two people, of whom each moves mouth or head as it is told, at ten looks a second. */
class Talk {
 public:
  explicit Talk(WithoutSound withoutSound = WithoutSound::nobody) : mFinder(withoutSound) {}

  enum Moves { nothing, mouth, head };

  /** Who speaks after so many looks; 0 for nobody. */
  std::int32_t after(int looks, std::optional<bool> speech, Moves first, Moves second) {
    std::vector<TrackedPerson> persons;
    for (int look = 0; look < looks; ++look) {
      mMs += 100;
      persons = {{1, {{0, seen(first)}}}, {2, {{0, seen(second)}}}};
      mFinder.mark(persons, speech, mMs);
    }
    for (const TrackedPerson& person : persons) {
      if (person.views.at(0).detection.speaking) {
        return person.id;
      }
    }
    return 0;
  }

 private:
  Detection seen(Moves moves) const {
    Detection person;
    person.face = cv::Mat(kFaceHeight, kFaceWidth, CV_8U, cv::Scalar::all(100));
    const cv::Scalar now = cv::Scalar::all(mMs % 200 == 0 ? 100 : 110);
    if (moves == head) {
      person.face.setTo(now);
    } else if (moves == mouth) {
      person.face(kMouthInFace).setTo(now);
    }
    return person;
  }

  SpeakerFinder mFinder;
  std::int64_t mMs = 0;
};

TEST(SpeakerFinder, SpeechIsThatOfTheLiveliestMouth) {
  constexpr auto kUnheard = std::nullopt;
  struct Case {
    const char* name;
    WithoutSound withoutSound;
    std::optional<bool> speech;
    Talk::Moves first;
    Talk::Moves second;
    std::int32_t speaker;
  };
  for (const Case& one :
       {Case{"speech", WithoutSound::nobody, true, Talk::nothing, Talk::mouth, 2},
        Case{"of the first", WithoutSound::nobody, true, Talk::mouth, Talk::nothing, 1},
        Case{"a nod is no word", WithoutSound::nobody, true, Talk::head, Talk::nothing, 0},
        Case{"who nods beside a speaker", WithoutSound::nobody, true, Talk::head, Talk::mouth, 2},
        Case{"chewing in silence", WithoutSound::liveliestMouth, false, Talk::mouth, Talk::nothing, 0},
        Case{"no sound, nobody", WithoutSound::nobody, kUnheard, Talk::mouth, Talk::nothing, 0},
        Case{"no sound, mouths", WithoutSound::liveliestMouth, kUnheard, Talk::mouth, Talk::nothing, 1}}) {
    EXPECT_EQ(Talk(one.withoutSound).after(20, one.speech, one.first, one.second), one.speaker) << one.name;
  }
}

TEST(SpeakerFinder, ASpeakerStaysItForHalfASecond) {
  Talk talk;
  EXPECT_EQ(talk.after(20, true, Talk::mouth, Talk::nothing), 1);
  EXPECT_EQ(talk.after(5, false, Talk::nothing, Talk::nothing), 1);
  EXPECT_EQ(talk.after(1, false, Talk::nothing, Talk::nothing), 0);
  EXPECT_EQ(talk.after(20, true, Talk::mouth, Talk::nothing), 1);
  EXPECT_EQ(talk.after(1, true, Talk::nothing, Talk::mouth), 1) << "a smile of the other";
  EXPECT_EQ(talk.after(25, true, Talk::nothing, Talk::mouth), 2);
}

TEST(SpeakerFinder, WhomADetectorHasMarkedStaysSo) {
  Detection marked;
  marked.speaking = true;
  std::vector<TrackedPerson> persons{{1, {{0, marked}}}};
  SpeakerFinder(WithoutSound::nobody).mark(persons, false, 100);
  EXPECT_TRUE(persons.at(0).views.at(0).detection.speaking);
}

// Somebody says a sentence in a room that hums.
TEST(SoundInput, TellsSpeechFromNoise) {
  const ScratchFolder folder;
  const std::string file = folder.file("room.mkv");
  runTool({"ffmpeg", "-v", "error", "-f", "lavfi", "-i",
           "flite=text='Good morning everybody let us begin with the budget',aresample=16000,atrim=0:2.5,"
           "adelay=3000,apad=whole_dur=8[voice];anoisesrc=r=16000:d=8:a=0.02:c=pink:seed=1[hum];"
           "[voice][hum]amix=normalize=0",
           file});
  SoundInput sound(file, {});
  std::string heard;
  for (std::int64_t ms = 500; ms <= 7500; ms += 500) {
    const std::optional<bool> speech = sound.speechAt(ms);
    heard += !speech ? '?' : *speech ? '#' : '.';
  }
  EXPECT_EQ(heard, ".......####....");
  EXPECT_FALSE(sound.speechAt(20000)) << "it has ended";
}

TEST(SoundInput, SaysNothingWithoutSound) {
  const ScratchFolder folder;
  for (const std::string& source :
       {std::string("none"), std::string(""), folder.write("silent.mkv", "no sound")}) {
    EXPECT_FALSE(SoundInput(source, {{"/dev/video0", 0, 1}}).speechAt(1000)) << source;
  }
  EXPECT_THROW(SoundInput(folder.file("absent.mkv"), {}), UsageError);
}

// Speech is heard: of somebody who opens the mouth for words, and who later only looks around.
TEST(SpeakerFinder, FindsWhoTalksInAClip) {
  const std::string fetched = sourceFolder() + "/build/fetched/";
  if (!std::filesystem::exists(fetched + "talking.mp4") || !std::filesystem::exists(fetched + "faces.onnx")) {
    GTEST_SKIP() << "tools/setup/fetch.sh model photographs has not been run";
  }
  struct Case {
    int fromSecond;
    double least;
    double most;
  };
  for (const Case& one : {Case{13, 0.6, 1}, Case{24, 0, 0.2}}) {
    VideoInput clip(fetched + "talking.mp4");
    Pipeline pipeline({{"", 0, 1}}, std::make_unique<FaceNetDetector>(fetched + "faces.onnx"), 3, false,
                      WithoutSound::nobody);
    while (clip.position() < 25 * one.fromSecond && clip.skip()) {
    }
    int speaking = 0;
    cv::Mat picture;
    for (int number = 1; number <= 75 && clip.next(picture); ++number) {
      for (const SeenPerson& person : pipeline.look({number, 40 * number, {picture}, true}).persons) {
        speaking += number > 25 && person.heads.at(0).speaking ? 1 : 0;
      }
    }
    EXPECT_GE(speaking / 50.0, one.least) << "from " << one.fromSecond << " s";
    EXPECT_LE(speaking / 50.0, one.most) << "from " << one.fromSecond << " s";
  }
}

}  // namespace
}  // namespace fyn::productionrules::video::testing
