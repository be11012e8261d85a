#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>

#include "layouts/speaker/SpeechTurns.h"

namespace fyn::productionrules {

/** People who talk with one another and share one picture, so that it does not go to and fro between them.
 * All times are ticks in milliseconds. */
class Exchange {
 public:
  using Persons = std::set<std::int64_t>;

  /** Whether these persons have room in one picture that is clearly closer than that of everybody. */
  using Fit = std::function<bool(const Persons&)>;

  /** Begins and ends the exchange by how the word goes round. */
  void update(const SpeechTurns& turns, const Fit& fit, std::uint32_t now);

  void begin(const Persons& persons);
  void end();

  /** The person with the number `before` has another one now. */
  void rename(std::int64_t before, std::int64_t now);

  bool isOn() const { return !mPersons.empty(); }

  /** So lively, and among so many, that the picture is that of the whole room. */
  bool isOfEverybody() const { return mIsOfEverybody; }

  const Persons& persons() const { return mPersons; }

 private:
  Persons mPersons;
  bool mIsOfEverybody = false;
  /** When one of them had spoken alone for long enough: what was before has been answered. */
  std::optional<std::uint32_t> mCalmedAt;
};

}  // namespace fyn::productionrules
