#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <vector>

namespace fyn::productionrules {

/** How the word has gone round of late. All times are ticks in milliseconds. */
class SpeechTurns {
 public:
  static constexpr std::int64_t kNobody = -1;

  /** How often the word has passed on, and among whom. */
  struct Handovers {
    unsigned count = 0;
    std::set<std::int64_t> persons;
  };

  /** These speak now. Silence leaves the word where it is. */
  void update(const std::set<std::int64_t>& speakers, std::uint32_t now);

  /** The person with the number `before` has another one now. */
  void rename(std::int64_t before, std::int64_t now);

  /** Who has the word, and who had it before; kNobody for nobody. */
  std::int64_t holder() const { return mHolder; }
  std::int64_t holderBefore() const { return mHolderBefore; }

  /** For how long nobody but the holder has spoken. */
  std::uint32_t aloneMs(std::uint32_t now) const { return now - mAloneSince; }

  /** The handovers of the last `ms`, of not more than 10 s. */
  Handovers handovers(std::uint32_t ms, std::uint32_t now) const;

  /** Who has spoken within the last `ms`, of not more than ten minutes, the latest first. */
  std::vector<std::int64_t> spokeWithin(std::uint32_t ms, std::uint32_t now) const;

 private:
  struct Handover {
    std::uint32_t at = 0;
    std::int64_t from = kNobody;
    std::int64_t to = kNobody;
  };

  std::int64_t mHolder = kNobody;
  std::int64_t mHolderBefore = kNobody;
  std::uint32_t mAloneSince = 0;
  std::deque<Handover> mHandovers;
  /** By person, when the person spoke last. */
  std::map<std::int64_t, std::uint32_t> mSpokeAt;
};

}  // namespace fyn::productionrules
