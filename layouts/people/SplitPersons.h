#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "layouts/people/PersonRenaming.h"
#include "model/MLData.h"

namespace fyn::productionrules {

/**
 * Persons of several cameras whose number breaks in one of them: the others go on with the old number, so
 * that the pipeline reports two persons where there is one. And those whom one camera misses for a moment:
 * for other cameras see them, nobody else would keep their place in that one. Times are ticks in
 * milliseconds.
 */
class SplitPersons {
 public:
  /**
   * The vision result with each person once, under the number that came first; the same one when nobody is
   * split. A new number is a person's at whose place a camera has lost that person, whom another camera has
   * seen of late, too; for as long as the camera does not show both. Whose head has another number since the
   * result before is added to `renamed`. Whom a camera misses keeps the last head there, untagged, for as
   * long as a missed head counts.
   */
  std::shared_ptr<MLData> rejoin(const std::shared_ptr<MLData>& data, std::uint32_t now,
                                 std::vector<PersonRenamed>& renamed);

 private:
  using Heads = std::unordered_map<std::uint32_t, std::shared_ptr<Head>>;

  struct Sight {
    std::shared_ptr<Head> head;
    std::uint32_t at = 0;
  };

  struct Person {
    /** The latest of each camera. */
    std::map<std::uint32_t, Sight> sights;
    /** Of this result. */
    Heads heads;
    /** Of those cameras that have missed the head for a moment. */
    Heads held;
    /** Whether some of these came under another number. */
    bool isRejoined = false;
  };

  struct FurtherNumber {
    /** By which number the person is known. */
    std::int32_t person = 0;
    std::uint32_t seenAt = 0;
  };

  void assign(const MLData& data, std::uint32_t now);
  Person* findLost(const FynHead& number, std::uint32_t now);
  void holdMissed(std::uint32_t now);
  bool isRejoining() const;
  std::shared_ptr<MLData> rejoined(const MLData& data);
  void remember(std::uint32_t now, std::vector<PersonRenamed>& renamed);

  /** By the number that came first. */
  std::map<std::int32_t, Person> mPersons;
  /** By number. */
  std::map<std::int32_t, FurtherNumber> mFurther;
};

}  // namespace fyn::productionrules
