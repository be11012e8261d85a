#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/PrbContext.h"
#include "tools/why/PersonCourses.h"

namespace fyn::productionrules {

/** What somebody wants to know of a moment. */
enum class WhyAbout {
  /** The change of the picture at that moment, when there is one, else whoever is not in the picture. */
  Guess,
  /** The change that is nearest to the moment. */
  Change,
  /** One person. */
  Person,
};

struct WhyQuestion {
  std::string recording;
  MeasuredSetup setup;
  /** In milliseconds from the start of the recording. */
  std::int64_t t = 0;
  WhyAbout about = WhyAbout::Guess;
  /** Whom a question about a person is about. */
  std::int64_t person = 0;
};

/** What one stream showed at the moment. Times in milliseconds from the start of the recording. */
struct ShownPicture {
  int stream = 0;
  FramingType type = FramingType::NONE;
  std::int64_t since = 0;
  /** Ids of those who were in view, ascending. */
  std::vector<std::int64_t> people;
};

/** A person who was asked about, or who was not in the picture. */
struct AskedPerson {
  std::int64_t id = 0;
  /** Nothing when the recording never shows the person. */
  std::optional<PersonCourses::Stage> stage;
  /** When the detector sees again who was not seen. */
  std::optional<std::int64_t> seenAgain;
};

/** How often a wait began, and went before it had run out, while somebody waited for the picture. */
struct WaitCount {
  std::string key;
  int begun = 0;
  int dropped = 0;
};

/** What happened at one moment of a recording, why, and what would have changed it. */
struct WhyAnswer {
  std::string recording;
  /** The moment: the one that was asked for, or that of the change. */
  std::int64_t t = 0;
  std::string mode;
  bool knowsTruth = false;
  std::vector<ShownPicture> pictures;
  /** What changed the picture; nothing when the question is not about a change. */
  std::optional<TimedDecision> change;
  /** The stream whose picture changed. */
  std::optional<int> changedStream;
  /** Everybody who is meant, ascending by id. */
  std::vector<AskedPerson> persons;
  /** Ids of all who were in the room. */
  std::vector<std::int64_t> present;
  /** What waited at the moment, and what came of it before. */
  std::vector<OpenWait> waits;
  std::vector<WaitCount> counts;
  /** The latest decision about the picture. */
  std::optional<TimedDecision> latest;
  /** Whether changes of single keys were tried, and which helped, as findRemedies orders them. */
  bool isSearched = false;
  std::vector<KeyChange> remedies;
  /** The whole recording as it was, and with the first of the remedies. */
  Measurement before;
  std::optional<Measurement> after;
};

/** A picture that is to stay calm does not change from the begin of the wait to so long after the moment, in
 * milliseconds. */
inline constexpr std::int64_t kCalmMs = 5000;

/** Replays the recording as often as it needs. Raises UsageError for a bad recording and for a moment behind
 * its end. */
WhyAnswer answerWhy(const WhyQuestion& question, PrbContext& context);

}  // namespace fyn::productionrules
