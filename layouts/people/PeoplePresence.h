#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "model/MLData.h"

namespace fyn::productionrules {

/**
 * Bridges the errors of a detector that reports each video frame by itself: heads that are missed for a
 * moment, boxes that flash up where nobody is. Both change who is seen faster than any wait of a layout
 * change is long, so that no change would ever come. All times are ticks in milliseconds.
 */
class PeoplePresence {
 public:
  /**
   * The vision result with the people who can be relied on: a newcomer counts when the first sight
   * is `holdMs` ago; who is missed counts for `holdMs` more, with the last boxes, and is then forgotten.
   * Whoever is in the first result counts at once. The seen ones keep their order, the missed ones follow by
   * id.
   */
  std::shared_ptr<MLData> steady(const MLData& data, std::uint32_t now, std::uint32_t holdMs);

  void forget();

 private:
  struct Sighting {
    std::shared_ptr<FynHead> person;
    std::uint32_t first = 0;
    std::uint32_t latest = 0;
    /** Number of the latest result with the person. */
    std::uint64_t result = 0;
    bool counts = false;
  };

  void note(const std::shared_ptr<FynHead>& person, std::uint32_t now, std::uint32_t holdMs);

  std::map<std::int32_t, Sighting> mSightings;
  /** Results so far. */
  std::uint64_t mResults = 0;
};

}  // namespace fyn::productionrules
