#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace fyn::productionrules {

/** What a vision result says of the speech of somebody in view. */
struct SpeechHint {
  std::int64_t person = -1;
  /** The pipeline takes the person for a speaker. */
  bool isTagged = false;
  /** The person is believed to be there, but is not in the result. */
  bool isMissed = false;
  /** The picture on screen shows the person whole. */
  bool isShown = false;
};

/**
 * Who speaks. A tag is a hint, not a word: it comes late, goes on after the last word, drops out, and is on
 * the wrong person now and then. Each person has a level between 0 and 1 that tags raise and their absence
 * lowers; speech begins at a high level and ends at a low one. All times are ticks in milliseconds.
 */
class SpeechBelief {
 public:
  /** Takes in the hints of one vision result, one for each person in view. In the first result a tag is
   * believed at once: the talk has begun before. */
  void update(const std::vector<SpeechHint>& hints, std::uint32_t now);

  /**
   * Who has the word. Who is no longer tagged gives way to somebody who is; while somebody on screen goes on
   * speaking, somebody else counts only after a second.
   */
  const std::set<std::int64_t>& speakers() const { return mSpeakers; }

  /** For how long a speaker has been speaking, in milliseconds; 0 for anybody else. */
  std::uint32_t speechMs(std::int64_t person, std::uint32_t now) const;

  /** The person with the number `before` has another one now. */
  void rename(std::int64_t before, std::int64_t now);

 private:
  struct Voice {
    double level = 0;
    bool speaks = false;
    /** Since when the speech has been tagged, gaps bridged. */
    std::uint32_t began = 0;
    std::optional<std::uint32_t> taggedAt;
    std::uint32_t seenAt = 0;
  };

  /** What a result says of somebody, and what is known. */
  struct Heard {
    const SpeechHint* hint;
    const Voice* voice;
  };

  static void listen(Voice& voice, const SpeechHint& hint, std::uint32_t now);
  void giveTheWord(std::uint32_t now);

  std::map<std::int64_t, Voice> mVoices;
  /** Of the latest result; kept only for their memory. */
  std::vector<Heard> mResult;
  std::vector<std::int64_t> mWord;
  std::set<std::int64_t> mSpeakers;
  /** When the latest result came; nothing before the first. */
  std::optional<std::uint32_t> mLatest;
};

}  // namespace fyn::productionrules
